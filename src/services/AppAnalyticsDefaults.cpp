// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppAnalyticsDefaults.h"

#include <QMutexLocker>

#include <utility>

namespace quillabrae::services {
namespace {

const QString switchKey = QStringLiteral("Quillabrae.shareAnonymousUsageData");
const QString versionKey = QStringLiteral("Quillabrae.analytics.lastTrackedVersion");

} // namespace

AppAnalyticsDefaults::AppAnalyticsDefaults(platform::Preferences& preferences)
    : m_preferences(preferences) {
    if (const QVariant version = preferences.value(versionKey); version.isValid())
        m_lastTrackedVersion = version.toString();
    readSwitch();
    connect(&preferences.changes(), &platform::PreferenceChanges::changed, this,
            [this](const QString& key) {
                if (key == switchKey) readSwitch();
            });
}

AppAnalyticsDefaults::~AppAnalyticsDefaults() {
    write();
}

void AppAnalyticsDefaults::readSwitch() {
    // What is neither yes nor no is no leave.
    const bool isOn =
        !m_preferences.value(switchKey).isValid() || m_preferences.boolean(switchKey, false);
    if (m_sharesUsageData.exchange(isOn) && !isOn) Q_EMIT switchedOff();
}

std::optional<QString> AppAnalyticsDefaults::lastTrackedVersion() const {
    const QMutexLocker lock(&m_mutex);
    return m_lastTrackedVersion;
}

void AppAnalyticsDefaults::setLastTrackedVersion(const QString& version) {
    {
        const QMutexLocker lock(&m_mutex);
        m_lastTrackedVersion = version;
        m_isWritten = false;
    }
    QMetaObject::invokeMethod(this, &AppAnalyticsDefaults::write, Qt::QueuedConnection);
}

void AppAnalyticsDefaults::write() {
    std::optional<QString> version;
    {
        const QMutexLocker lock(&m_mutex);
        if (std::exchange(m_isWritten, true)) return;
        version = m_lastTrackedVersion;
    }
    m_preferences.setValue(versionKey, version.value_or(QString()));
}

} // namespace quillabrae::services
