// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"

#include <QHash>
#include <QNetworkAccessManager>

#include <memory>
#include <optional>

namespace quillabrae::platform {

class NameLookup;

/// Through the system's network, which is set up with the first request. Its end waits for nothing,
/// a name that is being looked up included.
class NetworkHttpClient final : public HttpClient {
public:
    std::unique_ptr<HttpExchange> send(const HttpRequest& request, Watch watch,
                                       Completion completion) override;

private:
    /// The lookup of a host's name that is under way, or a new one.
    std::shared_ptr<NameLookup> lookup(const QString& host);

    QHash<QString, std::weak_ptr<NameLookup>> m_lookups;
    std::optional<QNetworkAccessManager> m_network;
};

} // namespace quillabrae::platform
