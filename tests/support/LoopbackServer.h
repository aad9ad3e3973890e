// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/TestCertificates.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace quillabrae::tests {

/// An HTTP server on a port of 127.0.0.1 that does with each request what it was told. It runs in
/// the event loop of the thread that made it.
class LoopbackServer final : public QObject {
public:
    struct Request {
        QByteArray method;
        QByteArray target;
        /// By their names in lower case.
        std::map<QByteArray, QByteArray> headers;
        QByteArray body;
    };
    using Answer = std::function<void(const Request& request, QTcpSocket& socket)>;

    /// Speaks TLS with an identity.
    explicit LoopbackServer(Answer answer,
                            const std::optional<TlsIdentity>& identity = std::nullopt);
    ~LoopbackServer() override;

    QUrl url() const;
    const std::vector<Request>& requests() const { return m_requests; }
    /// Connections, whether anything was said on them or not.
    int connectionCount() const { return m_connectionCount; }

    /// Sends a whole response and closes the connection.
    static Answer respond(int status, const QByteArray& body,
                          const QByteArray& headers = QByteArray());

private:
    void accept();
    /// Takes a request from the front of what has come, once it is whole.
    void read(QTcpSocket& socket, QByteArray& received);

    std::unique_ptr<QTcpServer> m_server;
    Answer m_answer;
    bool m_isSecure;
    std::vector<Request> m_requests;
    int m_connectionCount = 0;
};

} // namespace quillabrae::tests
