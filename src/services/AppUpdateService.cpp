// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppUpdateService.h"

#include "platform/Clock.h"
#include "platform/FileOperations.h"
#include "platform/Preferences.h"

#include <QFileInfo>

#include <chrono>

namespace quillabrae::services {
namespace {

using Kind = AppUpdateState::Kind;

constexpr std::chrono::hours day{24};
const QString lastCheckKey = QStringLiteral("Quillabrae.updates.lastCheck");

bool isWithinADay(const QDateTime& moment, const QDateTime& now) {
    return moment.isValid() && moment <= now && moment.addDuration(day) > now;
}

} // namespace

QString AppUpdateState::buttonTitle() const {
    switch (kind) {
        case Kind::idle:
        case Kind::failed:
            return AppUpdateService::tr("Check for Updates");
        case Kind::checking:
            return AppUpdateService::tr("Checking…");
        case Kind::available:
            return AppUpdateService::tr("Update Now");
        case Kind::installing:
            return AppUpdateService::tr("Installing…");
    }
    return {};
}

QString AppUpdateState::helpText() const {
    if (kind == Kind::available) return AppUpdateService::tr("Install Quillabrae %1").arg(version);
    return AppUpdateService::tr("Check whether a newer version of Quillabrae is available");
}

bool AppUpdateState::isActionDisabled() const {
    return kind == Kind::checking || kind == Kind::installing;
}

AppUpdateService::AppUpdateService(std::optional<UpdateSource> source,
                                   const AppUpdater::Environment& environment,
                                   platform::Preferences& preferences, const platform::Clock& clock,
                                   QObject* parent)
    : QObject(parent), m_preferences(preferences), m_clock(clock), m_folder(environment.folder) {
    AppUpdaterDelegate& delegate = *this;
    if (source) m_updater.emplace(*std::move(source), environment, delegate);
}

AppUpdateService::~AppUpdateService() = default;

void AppUpdateService::start() {
    if (!m_updater) return;
    removeOldPackage();
    if (isDue()) m_updater->check(AppUpdater::Goal::find);
}

bool AppUpdateService::isDue() const {
    const QDateTime last =
        QDateTime::fromString(m_preferences.value(lastCheckKey).toString(), Qt::ISODate);
    return !isWithinADay(last, m_clock.now());
}

void AppUpdateService::removeOldPackage() const {
    // An installer may still read the one of today.
    const QFileInfo folder(m_folder);
    if (!folder.exists() || isWithinADay(folder.lastModified(), m_clock.now())) return;
    try {
        platform::systemFileOperations().removeTree(m_folder);
    } catch (const platform::FileOperationError&) {
        // It is in nobody's way.
    }
}

void AppUpdateService::checkForUpdates() {
    if (!m_updater || m_state.isActionDisabled()) return;
    const bool installs = m_state.kind == Kind::available;
    m_isAskedFor = true;
    setState(AppUpdateState::checking());
    m_updater->check(installs ? AppUpdater::Goal::install : AppUpdater::Goal::find);
}

void AppUpdateService::didLoadAppcast() {
    m_preferences.setValue(lastCheckKey, m_clock.now().toUTC().toString(Qt::ISODate));
}

void AppUpdateService::didFindValidUpdate(const QString& displayVersionString) {
    setState(AppUpdateState::available(displayVersionString));
}

void AppUpdateService::didNotFindUpdate() {
    setState(AppUpdateState::idle());
    tellUser(tr("You have the newest version."),
             tr("There is no newer Quillabrae than the one that is running."));
}

void AppUpdateService::willInstallUpdate() {
    setState(AppUpdateState::installing());
}

void AppUpdateService::didAbort(const QString& description) {
    setState(AppUpdateState::idle());
    tellUser(tr("Quillabrae could not be updated."), description);
}

void AppUpdateService::willFinishUpdateSession() {
    m_isAskedFor = false;
    if (m_state.kind != Kind::available) setState(AppUpdateState::idle());
}

void AppUpdateService::setState(const AppUpdateState& state) {
    if (state == m_state) return;
    m_state = state;
    Q_EMIT stateChanged();
}

void AppUpdateService::tellUser(const QString& message, const QString& informativeText) {
    if (m_isAskedFor) Q_EMIT endedWith(message, informativeText);
}

} // namespace quillabrae::services
