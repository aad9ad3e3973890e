// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::platform {

/// Where the program keeps things. Absolute paths; made on first use, not here.
struct AppPaths {
    /// The program's own folder in the user's data folder; holds "Autosave" and "Clipboard".
    QString applicationSupport;
    QString temporary;
    /// The file of the user's preferences.
    QString preferencesFile{};
    /// What is worth keeping between runs but belongs to no work of the user's.
    QString state{};

    QString crashFolder() const { return state + QStringLiteral("/Crashes"); }
    QString autosaveFolder() const { return applicationSupport + QStringLiteral("/Autosave"); }
    QString clipboardFolder() const { return applicationSupport + QStringLiteral("/Clipboard"); }

    /// The places of this user. Without a data folder of the user's the program's own folder is
    /// under the temporary one.
    static AppPaths standard();
    /// The same places under another home, for tests and scripts.
    static AppPaths under(const QString& home);
};

} // namespace quillabrae::platform
