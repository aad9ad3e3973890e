// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <stdexcept>

namespace quillabrae::effects {

/// Why a plugin was not installed or not removed.
class PluginLibraryError : public std::runtime_error {
public:
    enum class Reason { installFailed, uninstallFailed, pluginNotInCatalog };

    /// `detail` is the system's reason, where there is one.
    explicit PluginLibraryError(Reason reason, const QString& detail = QString());

    Reason reason() const { return m_reason; }
    /// For the user.
    const QString& description() const { return m_description; }

private:
    Reason m_reason;
    QString m_description;
};

} // namespace quillabrae::effects
