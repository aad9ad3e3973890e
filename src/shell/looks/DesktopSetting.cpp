// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/DesktopSetting.h"

#include "platform/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace quillabrae::shell {
namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");

/// The value inside the one or two variants that services wrap it in.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSetting::DesktopSetting(QString nameSpace, QString key)
    : m_nameSpace(std::move(nameSpace)), m_key(std::move(key)) {}

void DesktopSetting::follow() {
    if (!platform::hasSessionBus()) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question.setArguments({m_nameSpace, m_key});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) Q_EMIT told(unwrapped(reply.value().variant()));
        watcher->deleteLater();
    });
}

void DesktopSetting::settingChanged(const QString& nameSpace, const QString& key,
                                    const QDBusVariant& value) {
    if (nameSpace == m_nameSpace && key == m_key) Q_EMIT told(unwrapped(value.variant()));
}

} // namespace quillabrae::shell
