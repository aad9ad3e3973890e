// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace quillabrae::platform {

/// The folders that the program keeps things in. Absolute paths; made on first use, not here.
struct AppPaths {
    /// The program's own folder in the user's data folder; holds "Autosave".
    QString applicationSupport;
    QString temporary;

    QString autosaveFolder() const { return applicationSupport + QStringLiteral("/Autosave"); }

    /// The folders of this user.
    static AppPaths standard();
    /// The same folders under another home, for tests and scripts.
    static AppPaths under(const QString& home);
};

} // namespace quillabrae::platform
