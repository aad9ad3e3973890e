// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ApplicationService.h"

#include "platform/ApplicationIdentity.h"
#include "platform/SessionBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QEventLoop>
#include <QTimer>

#include <array>
#include <numeric>

namespace quillabrae::platform {
namespace {

/// The bus tells a program that it starts so; a program started in any other way is not told.
constexpr const char* starterType = "DBUS_STARTER_BUS_TYPE";
constexpr std::array starterVariables{starterType, "DBUS_STARTER_ADDRESS"};

/// The application id as a path.
QString objectPath() {
    QString path = u'/' + QString(applicationId);
    path.replace(u'.', u'/');
    return path;
}

QByteArray tokenIn(const QVariantMap& platformData) {
    for (const auto& key :
         {QStringLiteral("activation-token"), QStringLiteral("desktop-startup-id")}) {
        const QVariant value = platformData.value(key);
        if (value.metaType() != QMetaType::fromType<QString>()) continue;
        const QString text = value.toString();
        if (text.size() > maximumTokenLength) continue;
        if (const QByteArray token = checkedToken(text.toUtf8()); !token.isEmpty()) return token;
    }
    return {};
}

/// The interface itself. Its slots are the calls, with the argument types that the bus has for
/// them.
class ApplicationInterface final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationInterface(ApplicationService* service)
        : QDBusAbstractAdaptor(service), m_service(service) {}

public Q_SLOTS:
    // The names of the arguments are what introspection tells.
    void Activate(const QVariantMap& platform_data) { // NOLINT(readability-identifier-naming)
        later(ApplicationService::activation(platform_data));
    }
    void Open(const QStringList& uris, const QVariantMap& platform_data, // NOLINT
              const QDBusMessage& message) {
        if (const auto request = ApplicationService::opening(uris, platform_data)) {
            later(*request);
            return;
        }
        message.setDelayedReply(true);
        QDBusConnection::sessionBus().send(
            message.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("too many URIs")));
    }
    void ActivateAction(const QString& action_name, const QVariantList& /*parameter*/, // NOLINT
                        const QVariantMap& platform_data) {
        later(ApplicationService::actionCall(action_name, platform_data));
    }

private:
    void later(const StartRequest& request) {
        QMetaObject::invokeMethod(
            m_service, [service = m_service, request] { Q_EMIT service->asked(request); },
            Qt::QueuedConnection);
    }

    ApplicationService* m_service;
};

} // namespace

ApplicationService::ApplicationService(QObject* parent) : QObject(parent) {
    new ApplicationInterface(this);
}

ApplicationService::~ApplicationService() {
    if (!m_isOnBus) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(applicationId);
    bus.unregisterObject(objectPath());
}

bool ApplicationService::takeStartedByBus() {
    const bool wasStarted = qgetenv(starterType) == "session";
    for (const char* variable : starterVariables) qunsetenv(variable);
    return wasStarted;
}

void ApplicationService::start() {
    if (m_isOnBus || !hasSessionBus()) return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object first: a call may be waiting for the name.
    if (!bus.isConnected() || !bus.registerObject(objectPath(), this)) return;
    m_isOnBus = true;
    bus.interface()->registerService(applicationId, QDBusConnectionInterface::QueueService,
                                     QDBusConnectionInterface::DontAllowReplacement);
}

std::optional<StartRequest> ApplicationService::waitForCall(std::chrono::milliseconds patience) {
    std::optional<StartRequest> first;
    QEventLoop loop;
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    const auto waiting =
        connect(this, &ApplicationService::asked, &loop, [&](const StartRequest& request) {
            if (first) return;
            first = request;
            loop.quit();
        });
    start();
    if (m_isOnBus) loop.exec(QEventLoop::ExcludeUserInputEvents);
    disconnect(waiting);
    return first;
}

StartRequest ApplicationService::activation(const QVariantMap& platformData) {
    StartRequest request;
    request.activationToken = tokenIn(platformData);
    return request;
}

std::optional<StartRequest> ApplicationService::opening(const QStringList& uris,
                                                        const QVariantMap& platformData) {
    const qsizetype length =
        std::accumulate(uris.begin(), uris.end(), qsizetype{0},
                        [](qsizetype sum, const QString& uri) { return sum + uri.size(); });
    if (uris.size() > maximumUrlCount || length > maximumUrlLength) return std::nullopt;
    QList<QUrl> urls;
    for (const QString& uri : uris) urls.append(QUrl(uri, QUrl::StrictMode));
    StartRequest request = sortedRequest(urls);
    request.activationToken = tokenIn(platformData);
    return request;
}

StartRequest ApplicationService::actionCall(const QString& name, const QVariantMap& platformData) {
    StartRequest request;
    if (name.size() <= maximumActionLength) request = sortedRequest({actionUrl(name)});
    request.activationToken = tokenIn(platformData);
    return request;
}

} // namespace quillabrae::platform

#include "ApplicationService.moc"
