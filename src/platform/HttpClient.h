// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace quillabrae::platform {

struct HttpRequest {
    QUrl url;
    QByteArray method;
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// How long the line may be silent.
    std::chrono::milliseconds timeout{60'000};
    /// A longer answer is a failure.
    qint64 maximumReplyBytes = qint64{16} * 1024 * 1024;
};

/// What a server answered, whatever its status.
struct HttpReply {
    /// 0 where something answered that does not speak HTTP.
    int status = 0;
    QByteArray body;
};

/// There is no whole answer. The description is a sentence for the user.
struct HttpFailure {
    QString description;
};

using HttpOutcome = std::variant<HttpReply, HttpFailure>;

/// Bytes so far; `expected` is below 0 while the server has not told.
struct HttpProgress {
    qint64 sent = 0;
    qint64 toSend = 0;
    qint64 received = 0;
    qint64 expected = -1;
};

/// An exchange under way. Destroying it ends the exchange, without a word to those who wait.
class HttpExchange {
public:
    virtual ~HttpExchange() = default;
};

/// Speaks HTTP and HTTPS with servers whose certificates the system trusts. Nothing is cached, no
/// cookie is kept, and a redirect is the server's answer: what a request carries goes to the host
/// that it names and to no other. Belongs to the thread that sends with it.
class HttpClient {
public:
    virtual ~HttpClient() = default;

    using Watch = std::function<void(const HttpProgress&)>;
    using Completion = std::function<void(HttpOutcome)>;

    /// `completion` is called once, from the event loop, and may destroy the exchange.
    virtual std::unique_ptr<HttpExchange> send(const HttpRequest& request, Watch watch,
                                               Completion completion) = 0;
};

} // namespace quillabrae::platform
