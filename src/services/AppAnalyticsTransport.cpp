// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/AppAnalyticsTransport.h"

#include "platform/NetworkHttpClient.h"

#include <variant>

namespace quillabrae::services {
namespace {

class NetworkAnalyticsTransport final : public AppAnalyticsTransport {
public:
    std::unique_ptr<platform::HttpExchange> send(const platform::HttpRequest& request,
                                                 std::function<void(Outcome)> completion) override {
        return m_http.send(
            request, {},
            [completion = std::move(completion)](const platform::HttpOutcome& outcome) {
                const auto* reply = std::get_if<platform::HttpReply>(&outcome);
                const bool isAccepted = reply && reply->status >= 200 && reply->status <= 299;
                completion(isAccepted ? Outcome::accepted : Outcome::failed);
            });
    }

private:
    platform::NetworkHttpClient m_http;
};

} // namespace

std::unique_ptr<AppAnalyticsTransport> makeNetworkAnalyticsTransport() {
    return std::make_unique<NetworkAnalyticsTransport>();
}

} // namespace quillabrae::services
