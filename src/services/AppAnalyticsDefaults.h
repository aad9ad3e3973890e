// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

#include <QMutex>
#include <QObject>

#include <atomic>
#include <optional>

namespace quillabrae::services {

/// What of the preferences concerns usage events, to be read on any thread. Preferences themselves
/// belong to the main thread, where this lives: it follows their changes, and brings its own there.
class AppAnalyticsDefaults final : public QObject {
    Q_OBJECT

public:
    /// `preferences` outlives this.
    explicit AppAnalyticsDefaults(platform::Preferences& preferences);
    /// Writes what is still on its way to the preferences.
    ~AppAnalyticsDefaults() override;

    /// Whether the user lets events be sent, as they do until they say otherwise. Any thread.
    bool sharesUsageData() const { return m_sharesUsageData; }
    /// The version of the last start that the server knows of. Any thread.
    std::optional<QString> lastTrackedVersion() const;
    void setLastTrackedVersion(const QString& version);

Q_SIGNALS:
    /// The user has taken back their leave.
    void switchedOff();

private:
    void readSwitch();
    void write();

    platform::Preferences& m_preferences;
    std::atomic<bool> m_sharesUsageData = false;
    mutable QMutex m_mutex;
    std::optional<QString> m_lastTrackedVersion;
    bool m_isWritten = true;
};

} // namespace quillabrae::services
