// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"

#include <QNetworkAccessManager>

#include <optional>

namespace quillabrae::platform {

/// Through the system's network, which is set up with the first request.
class NetworkHttpClient final : public HttpClient {
public:
    std::unique_ptr<HttpExchange> send(const HttpRequest& request, Watch watch,
                                       Completion completion) override;

private:
    std::optional<QNetworkAccessManager> m_network;
};

} // namespace quillabrae::platform
