// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "services/AppUpdater.h"

#include <QObject>
#include <QString>

#include <optional>

namespace quillabrae::platform {
class Clock;
class Preferences;
} // namespace quillabrae::platform

namespace quillabrae::services {

/// How far the update of the program is.
struct AppUpdateState {
    enum class Kind { idle, checking, available, installing, failed };

    Kind kind = Kind::idle;
    /// The version that is there, while one is `available`.
    QString version{};
    /// Why it `failed`.
    QString message{};

    friend bool operator==(const AppUpdateState&, const AppUpdateState&) = default;

    static AppUpdateState idle() { return {}; }
    static AppUpdateState checking() { return {.kind = Kind::checking}; }
    static AppUpdateState available(const QString& version) {
        return {.kind = Kind::available, .version = version};
    }
    static AppUpdateState installing() { return {.kind = Kind::installing}; }
    static AppUpdateState failed(const QString& message) {
        return {.kind = Kind::failed, .message = message};
    }

    /// What the button that updates the program says, tells, and whether it can be pressed.
    QString buttonTitle() const;
    QString helpText() const;
    bool isActionDisabled() const;
};

/// The state of the program's updates, for the button that shows it, and the daily look for them.
class AppUpdateService final : public QObject, private AppUpdaterDelegate {
    Q_OBJECT

public:
    /// Without a source there are no updates. Everything referenced outlives this.
    AppUpdateService(std::optional<UpdateSource> source, const AppUpdater::Environment& environment,
                     platform::Preferences& preferences, const platform::Clock& clock,
                     QObject* parent = nullptr);
    ~AppUpdateService() override;

    /// Whether this build has somewhere to look for updates at all.
    bool hasSource() const { return m_updater.has_value(); }
    const AppUpdateState& state() const { return m_state; }

    /// Looks for an update once, in silence, unless the feed was read within the last day.
    void start();
    /// The button: looks for an update, or installs the one that is there.
    void checkForUpdates();

Q_SIGNALS:
    void stateChanged();
    /// What the user asked for has ended with nothing to see: a message, and what it means.
    void endedWith(const QString& message, const QString& informativeText);

private:
    void didLoadAppcast() override;
    void didFindValidUpdate(const QString& displayVersionString) override;
    void didNotFindUpdate() override;
    void willInstallUpdate() override;
    void didAbort(const QString& description) override;
    void willFinishUpdateSession() override;

    void setState(const AppUpdateState& state);
    void tellUser(const QString& message, const QString& informativeText);
    bool isDue() const;
    void removeOldPackage() const;

    platform::Preferences& m_preferences;
    const platform::Clock& m_clock;
    QString m_folder;
    AppUpdateState m_state;
    std::optional<AppUpdater> m_updater;
    bool m_isAskedFor = false;
};

} // namespace quillabrae::services
