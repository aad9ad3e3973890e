// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/SystemColorScheme.h"

#include "platform/Preferences.h"
#include "shell/looks/Symbols.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>

namespace quillabrae::shell {
namespace {

const auto darkKey = QStringLiteral("Quillabrae.systemWasDark");
const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");

/// The service's values: 0 no preference, 1 dark, 2 light.
constexpr uint prefersDark = 1;

/// Looking for a bus where there is none would start one.
bool hasSessionBus() {
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

/// The value inside the one or two variants that services wrap it in.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

SystemColorScheme::SystemColorScheme(platform::Preferences& preferences)
    : m_preferences(preferences), m_scheme(Style::schemeOf(QApplication::palette())) {
    if (m_preferences.boolean(darkKey, false)) m_scheme = ColorScheme::dark;
    QApplication::setStyle(QStringLiteral("fusion"));
    Symbols::useScheme(m_scheme);
    Style::apply(m_scheme);
}

void SystemColorScheme::followSystem() {
    if (!hasSessionBus()) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question.setArguments({appearance, colorSchemeKey});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) take(reply.value().variant());
        watcher->deleteLater();
    });
}

void SystemColorScheme::settingChanged(const QString& nameSpace, const QString& key,
                                       const QDBusVariant& value) {
    if (nameSpace == appearance && key == colorSchemeKey) take(value.variant());
}

void SystemColorScheme::take(const QVariant& value) {
    const bool isDark = unwrapped(value).toUInt() == prefersDark;
    m_preferences.setValue(darkKey, isDark);
    use(isDark ? ColorScheme::dark : ColorScheme::light);
}

void SystemColorScheme::use(ColorScheme scheme) {
    if (scheme == m_scheme) return;
    m_scheme = scheme;
    Symbols::useScheme(scheme);
    Style::apply(scheme);
}

} // namespace quillabrae::shell
