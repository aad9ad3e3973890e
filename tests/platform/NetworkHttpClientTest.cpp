// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NetworkHttpClient.h"
#include "support/LoopbackServer.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

using tests::CertificateAuthority;
using tests::LoopbackServer;
using tests::TrustedAuthority;
using namespace std::chrono_literals;

class NetworkHttpClientTest : public testing::Test {
protected:
    HttpRequest request(const LoopbackServer& server) const {
        return {server.url().resolved(QUrl(QStringLiteral("/path?query=1"))),
                "POST",
                {{"X-Word", "value"}, {"Content-Type", "text/plain"}},
                "the body",
                5s};
    }
    /// Sends and waits for what comes of it.
    HttpOutcome outcome(const HttpRequest& message) {
        std::optional<HttpOutcome> found;
        const auto exchange =
            client.send(message, watch, [&](HttpOutcome result) { found = std::move(result); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return found.has_value(); }, 20'000));
        return found.value_or(HttpFailure{QStringLiteral("nothing came")});
    }
    HttpReply reply(const HttpRequest& message) {
        const HttpOutcome result = outcome(message);
        const auto* found = std::get_if<HttpReply>(&result);
        EXPECT_TRUE(found) << qPrintable(failureOf(result));
        return found ? *found : HttpReply{};
    }
    QString failure(const HttpRequest& message) { return failureOf(outcome(message)); }
    static QString failureOf(const HttpOutcome& result) {
        const auto* found = std::get_if<HttpFailure>(&result);
        return found ? found->description : QString();
    }

    HttpClient::Watch watch;
    NetworkHttpClient client;
};

TEST_F(NetworkHttpClientTest, SendsMethodPathHeadersAndBody) {
    const LoopbackServer server(LoopbackServer::respond(200, "hello"));
    const HttpReply answer = reply(request(server));
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "hello");
    ASSERT_EQ(server.requests().size(), 1U);
    LoopbackServer::Request got = server.requests().front();
    EXPECT_EQ(got.method, "POST");
    EXPECT_EQ(got.target, "/path?query=1");
    EXPECT_EQ(got.headers["x-word"], "value");
    EXPECT_EQ(got.headers["content-type"], "text/plain");
    EXPECT_EQ(got.headers["user-agent"], "Quillabrae");
    EXPECT_EQ(got.body, "the body");
    EXPECT_FALSE(got.headers.contains("cookie"));
}

TEST_F(NetworkHttpClientTest, AnyStatusIsAnAnswerWithItsBody) {
    for (const int status : {201, 204, 304, 400, 401, 404, 418, 429, 500, 503}) {
        const QByteArray body = status == 204 || status == 304 ? "" : "why";
        const LoopbackServer server(LoopbackServer::respond(status, body));
        const HttpReply answer = reply(request(server));
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.body, body) << status;
    }
}

TEST_F(NetworkHttpClientTest, ARedirectIsNotFollowed) {
    const LoopbackServer elsewhere(LoopbackServer::respond(200, "stolen"));
    for (const int status : {301, 302, 303, 307, 308}) {
        const LoopbackServer server(LoopbackServer::respond(
            status, "moved", "Location: " + elsewhere.url().toEncoded() + "/\r\n"));
        EXPECT_EQ(reply(request(server)).status, status);
    }
    QTest::qWait(50);
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(NetworkHttpClientTest, NoCookieIsKept) {
    const LoopbackServer server(LoopbackServer::respond(200, "", "Set-Cookie: a=b; Path=/\r\n"));
    reply(request(server));
    reply(request(server));
    ASSERT_EQ(server.requests().size(), 2U);
    EXPECT_FALSE(server.requests().back().headers.contains("cookie"));
}

TEST_F(NetworkHttpClientTest, AServerThatIsNotThereIsAFailure) {
    QUrl url;
    {
        const LoopbackServer server(LoopbackServer::respond(200, ""));
        url = server.url();
    }
    EXPECT_EQ(failure({url, "GET", {}, {}, 5s}), QStringLiteral("Connection refused"));
}

TEST_F(NetworkHttpClientTest, AHostIsFoundByItsName) {
    const LoopbackServer server(LoopbackServer::respond(200, "hello"));
    HttpRequest message = request(server);
    message.url.setHost(QStringLiteral("localhost"));
    EXPECT_EQ(reply(message).body, "hello");
    // Several at once, of which one is given up.
    std::vector<std::unique_ptr<HttpExchange>> exchanges;
    int answers = 0;
    for (int i = 0; i < 3; ++i)
        exchanges.push_back(client.send(message, {}, [&](const auto&) { ++answers; }));
    exchanges.front().reset();
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers == 2; }));
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST_F(NetworkHttpClientTest, AHostThatNobodyKnowsIsAFailureEachTime) {
    const HttpRequest message{QUrl(QStringLiteral("http://nobody.invalid/")), "GET", {}, {}, 5s};
    int failures = 0;
    std::unique_ptr<HttpExchange> second;
    const auto first = client.send(message, {}, [&](const HttpOutcome& result) {
        EXPECT_EQ(failureOf(result), QStringLiteral("Host nobody.invalid not found"));
        ++failures;
        second = client.send(message, {}, [&](const auto&) { ++failures; });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return failures == 2; }, 20'000));
}

TEST(NetworkHttpClientEnd, WaitsForNoNameServer) {
    QProcess program;
    program.start(QCoreApplication::applicationDirPath() +
                  QStringLiteral("/ask-silent-name-server"));
    // The lookup takes a minute.
    EXPECT_TRUE(program.waitForFinished(20'000));
    EXPECT_EQ(program.exitCode(), 7);
}

TEST_F(NetworkHttpClientTest, ADroppedConnectionIsAFailure) {
    const LoopbackServer early([](const auto&, QTcpSocket& socket) { socket.abort(); });
    EXPECT_FALSE(failure(request(early)).isEmpty());
    const LoopbackServer late([](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nonly this");
        socket.disconnectFromHost();
    });
    EXPECT_FALSE(failure(request(late)).isEmpty());
}

TEST_F(NetworkHttpClientTest, WhatIsNoHttpIsAFailure) {
    const LoopbackServer server([](const auto&, QTcpSocket& socket) {
        socket.write("220 mail.example.org ready\r\n");
        socket.disconnectFromHost();
    });
    EXPECT_FALSE(failure(request(server)).isEmpty());
}

TEST_F(NetworkHttpClientTest, SilenceEndsAtTheTimeOut) {
    const LoopbackServer server([](const auto&, QTcpSocket&) {});
    HttpRequest message = request(server);
    message.timeout = 150ms;
    EXPECT_EQ(failure(message), QStringLiteral("The request timed out."));
}

TEST_F(NetworkHttpClientTest, AnAnswerThatTricklesIsWaitedFor) {
    QTimer drops;
    int sent = 0;
    const LoopbackServer server([&](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n");
        QObject::connect(&drops, &QTimer::timeout, &socket, [&] {
            if (sent++ < 20) socket.write("x");
        });
        drops.start(20);
    });
    HttpRequest message = request(server);
    message.timeout = 200ms;
    EXPECT_EQ(reply(message).body, QByteArray(20, 'x'));
}

TEST_F(NetworkHttpClientTest, ALargeAnswerComesWholeAndIsToldOf) {
    const QByteArray body(qsizetype{60} * 1024 * 1024, 'y');
    const LoopbackServer server(LoopbackServer::respond(200, body));
    HttpRequest message = request(server);
    message.maximumReplyBytes = body.size();
    HttpProgress last;
    watch = [&](const HttpProgress& progress) { last = progress; };
    EXPECT_EQ(reply(message).body, body);
    EXPECT_EQ(last.sent, message.body.size());
    EXPECT_EQ(last.received, body.size());
    EXPECT_EQ(last.expected, body.size());
}

TEST_F(NetworkHttpClientTest, AnAnswerBeyondTheLimitIsRefusedWithoutReadingItAll) {
    const LoopbackServer server(
        LoopbackServer::respond(200, QByteArray(qsizetype{8} * 1024 * 1024, 'z')));
    HttpRequest message = request(server);
    message.maximumReplyBytes = 1024;
    EXPECT_EQ(failure(message), QStringLiteral("The server's answer is too large."));
}

TEST_F(NetworkHttpClientTest, ADestroyedExchangeSaysNothingMore) {
    const LoopbackServer server([](const auto&, QTcpSocket&) {});
    bool isCompleted = false;
    auto exchange = client.send(request(server), {}, [&](const auto&) { isCompleted = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests().size() == 1; }));
    exchange.reset();
    QTest::qWait(50);
    EXPECT_FALSE(isCompleted);
}

TEST_F(NetworkHttpClientTest, ACertificateThatNobodyVouchesForIsRefused) {
    const CertificateAuthority authority;
    const LoopbackServer server(LoopbackServer::respond(200, "hello"), authority.issue());
    EXPECT_FALSE(failure(request(server)).isEmpty());
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(NetworkHttpClientTest, ATrustedCertificateIsSpokenWith) {
    const CertificateAuthority authority;
    const LoopbackServer server(LoopbackServer::respond(200, "hello"), authority.issue());
    const TrustedAuthority trusted(authority);
    EXPECT_EQ(reply(request(server)).body, "hello");
}

} // namespace
} // namespace quillabrae::platform
