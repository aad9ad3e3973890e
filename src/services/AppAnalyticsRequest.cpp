// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppAnalyticsRequest.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>

namespace quillabrae::services {
namespace {

constexpr std::chrono::seconds timeout{10};
/// Nobody reads the answer.
constexpr qint64 maximumReplyBytes = qint64{64} * 1024;

QJsonObject eventData(const ProgramIdentity& identity, const AnalyticsData& data) {
    QJsonObject object;
    for (auto entry = data.cbegin(); entry != data.cend(); ++entry)
        object.insert(entry.key(), entry.value());
    object.insert(QStringLiteral("app_version"), identity.version);
    object.insert(QStringLiteral("build"), identity.build);
    object.insert(QStringLiteral("channel"), identity.channel);
    return object;
}

/// A header's value has no line ends.
QByteArray headerText(const QString& text) {
    return text.simplified().toUtf8();
}

} // namespace

std::optional<AppAnalyticsConfiguration> AppAnalyticsConfiguration::from(const QUrl& endpoint,
                                                                         const QString& websiteID,
                                                                         const QString& hostName) {
    const bool isSecure = endpoint.isValid() && endpoint.scheme() == QStringLiteral("https") &&
                          !endpoint.host().isEmpty();
    if (!isSecure || websiteID.isEmpty() || hostName.isEmpty()) return std::nullopt;
    return AppAnalyticsConfiguration{endpoint, websiteID, hostName};
}

platform::HttpRequest makeAnalyticsRequest(const AppAnalyticsConfiguration& configuration,
                                           const ProgramIdentity& identity, AppAnalyticsEvent event,
                                           const AnalyticsData& data) {
    // The server tells programs apart by these words, whatever desktop they run on.
    const QJsonObject payload{
        {QStringLiteral("hostname"), configuration.hostName},
        {QStringLiteral("language"), identity.language},
        {QStringLiteral("title"), QStringLiteral("Quillabrae for macOS")},
        {QStringLiteral("url"), QStringLiteral("/macos-app")},
        {QStringLiteral("website"), configuration.websiteID},
        {QStringLiteral("name"), eventName(event)},
        {QStringLiteral("data"), eventData(identity, data)},
    };
    const QJsonObject body{{QStringLiteral("payload"), payload},
                           {QStringLiteral("type"), QStringLiteral("event")}};
    const QString agent = QStringLiteral("Quillabrae/%1 (macOS; %2)")
                              .arg(identity.version, identity.operatingSystemVersion);
    return {configuration.endpoint,
            "POST",
            {{"Content-Type", "application/json"}, {"User-Agent", headerText(agent)}},
            QJsonDocument(body).toJson(QJsonDocument::Compact),
            timeout,
            maximumReplyBytes};
}

} // namespace quillabrae::services
