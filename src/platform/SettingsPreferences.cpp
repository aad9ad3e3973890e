// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SettingsPreferences.h"

#include "platform/PreferencesFile.h"

#include <chrono>

namespace quillabrae::platform {
namespace {

constexpr std::chrono::milliseconds gatheringTime{250};

} // namespace

SettingsPreferences::SettingsPreferences(const QString& file, Writing writing)
    : m_settings(file, QSettings::IniFormat), m_writing(writing) {
    m_settings.setFallbacksEnabled(false);
    removeKilledPreferences(file);
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(gatheringTime);
    QObject::connect(&m_flushTimer, &QTimer::timeout, &m_settings, [this] { flush(); });
}

SettingsPreferences::~SettingsPreferences() {
    flush();
}

QVariant SettingsPreferences::value(const QString& key) const {
    for (const auto* changes : {&m_pending, &m_written})
        if (const auto change = changes->constFind(key); change != changes->constEnd())
            return *change;
    return m_settings.value(key);
}

void SettingsPreferences::setValue(const QString& key, const QVariant& value) {
    change(key, value);
}

void SettingsPreferences::remove(const QString& key) {
    change(key, QVariant());
}

void SettingsPreferences::change(const QString& key, const QVariant& newValue) {
    if (newValue == value(key)) return;
    m_pending.insert(key, newValue);
    if (m_writing == Writing::atOnce)
        flush();
    else if (!m_flushTimer.isActive())
        m_flushTimer.start();
    Q_EMIT changes().changed(key);
}

void SettingsPreferences::flush() {
    m_flushTimer.stop();
    if (m_pending.isEmpty()) return;
    // What cannot be written goes along with the next change.
    if (!rewritePreferences(m_settings.fileName(), m_pending)) return;
    m_written.insert(m_pending);
    m_pending.clear();
}

} // namespace quillabrae::platform
