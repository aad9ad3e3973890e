// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"
#include "services/AppAnalyticsEvent.h"
#include "services/ProgramIdentity.h"

#include <QUrl>

#include <optional>

namespace quillabrae::services {

/// Where events go, and as whose.
struct AppAnalyticsConfiguration {
    QUrl endpoint;
    QString websiteID;
    /// The host that events say they come from; it need not exist.
    QString hostName;

    /// Nothing unless the endpoint is HTTPS and all three are there.
    static std::optional<AppAnalyticsConfiguration> from(const QUrl& endpoint,
                                                         const QString& websiteID,
                                                         const QString& hostName);
};

/// The post that reports one event. What the program says of itself wins over `data`.
platform::HttpRequest makeAnalyticsRequest(const AppAnalyticsConfiguration& configuration,
                                           const ProgramIdentity& identity, AppAnalyticsEvent event,
                                           const AnalyticsData& data);

} // namespace quillabrae::services
