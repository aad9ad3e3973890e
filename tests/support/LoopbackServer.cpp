// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LoopbackServer.h"

#include <QList>
#include <QSslConfiguration>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>

namespace quillabrae::tests {
namespace {

constexpr qsizetype headEndLength = 4;

LoopbackServer::Request parsedHead(const QByteArray& head) {
    LoopbackServer::Request request;
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> first = lines.front().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
    }
    return request;
}

std::unique_ptr<QTcpServer> makeServer(const std::optional<TlsIdentity>& identity) {
    if (!identity) return std::make_unique<QTcpServer>();
    auto server = std::make_unique<QSslServer>();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(identity->certificate);
    configuration.setPrivateKey(identity->key);
    server->setSslConfiguration(configuration);
    return server;
}

} // namespace

LoopbackServer::LoopbackServer(Answer answer, const std::optional<TlsIdentity>& identity)
    : m_server(makeServer(identity)),
      m_answer(std::move(answer)),
      m_isSecure(identity.has_value()) {
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, &LoopbackServer::accept);
    m_server->listen(QHostAddress::LocalHost);
}

LoopbackServer::~LoopbackServer() = default;

QUrl LoopbackServer::url() const {
    QUrl url;
    url.setScheme(m_isSecure ? QStringLiteral("https") : QStringLiteral("http"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(m_server->serverPort());
    return url;
}

LoopbackServer::Answer LoopbackServer::respond(int status, const QByteArray& body,
                                               const QByteArray& headers) {
    return [=](const Request&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 " + QByteArray::number(status) +
                     " Answer\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\nConnection: close\r\n" + headers + "\r\n");
        socket.write(body);
        socket.disconnectFromHost();
    };
}

void LoopbackServer::accept() {
    while (QTcpSocket* socket = m_server->nextPendingConnection()) {
        ++m_connectionCount;
        const auto received = std::make_shared<QByteArray>();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, received] {
            *received += socket->readAll();
            read(*socket, *received);
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0) Q_EMIT socket->readyRead();
    }
}

void LoopbackServer::read(QTcpSocket& socket, QByteArray& received) {
    const qsizetype headLength = received.indexOf("\r\n\r\n");
    if (headLength < 0) return;
    Request request = parsedHead(received.left(headLength));
    const qsizetype bodyLength = request.headers["content-length"].toLongLong();
    const qsizetype length = headLength + headEndLength + bodyLength;
    if (received.size() < length) return;
    request.body = received.mid(headLength + headEndLength, bodyLength);
    received.remove(0, length);
    m_requests.push_back(request);
    m_answer(request, socket);
}

} // namespace quillabrae::tests
