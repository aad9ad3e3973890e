// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"

#include <functional>
#include <memory>

namespace quillabrae::services {

/// How events reach the server. Lives on the thread that made it.
class AppAnalyticsTransport {
public:
    virtual ~AppAnalyticsTransport() = default;

    enum class Outcome { accepted, failed };
    /// `completion` is called once, from the event loop, and may destroy the exchange; not at all
    /// once that is destroyed.
    virtual std::unique_ptr<platform::HttpExchange> send(
        const platform::HttpRequest& request, std::function<void(Outcome)> completion) = 0;
};

using AppAnalyticsTransportFactory = std::function<std::unique_ptr<AppAnalyticsTransport>()>;

/// Over the network, without cookies, cache and redirects. A status from 200 to 299 accepts.
std::unique_ptr<AppAnalyticsTransport> makeNetworkAnalyticsTransport();

} // namespace quillabrae::services
