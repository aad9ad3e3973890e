// SPDX-License-Identifier: GPL-3.0-or-later
// Feedback on its way to a real HTTPS server on loopback.
#include "platform/NetworkHttpClient.h"
#include "services/FeedbackService.h"
#include "support/LoopbackServer.h"
#include "support/ScriptedHttpClient.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

using tests::LoopbackServer;

const ProgramIdentity program{.version = QStringLiteral("1.2.3"),
                              .build = QStringLiteral("77"),
                              .channel = QStringLiteral("beta"),
                              .language = QStringLiteral("en-GB"),
                              .operatingSystemVersion = QStringLiteral("A System 12 (twelve)")};
const QString success = QStringLiteral("success");
const QString tryAgain = QStringLiteral("Feedback could not be sent. Please try again.");

class FeedbackServiceTest : public testing::Test {
protected:
    /// What came of it: "success" or the error's text.
    QString send(const QUrl& url, const QString& text = QStringLiteral("Nice."),
                 const std::optional<FeedbackImageAttachment>& image = std::nullopt) {
        const FeedbackService service(http, WebService(url), program);
        std::optional<QString> found;
        const auto exchange =
            service.send(text, image, {}, [&](const std::optional<FeedbackError>& error) {
                found = error ? error->description : success;
            });
        EXPECT_TRUE(QTest::qWaitFor([&] { return found.has_value(); }, 20'000));
        return found.value_or(QStringLiteral("nothing came"));
    }
    QString answer(int status, const QByteArray& body, const QByteArray& headers = {}) {
        const LoopbackServer server(LoopbackServer::respond(status, body, headers), identity);
        return send(server.url());
    }
    static QJsonObject bodyOf(const LoopbackServer& server) {
        EXPECT_EQ(server.requests().size(), 1U);
        if (server.requests().empty()) return {};
        return QJsonDocument::fromJson(server.requests().front().body).object();
    }

    tests::CertificateAuthority authority;
    tests::TrustedAuthority trusted{authority};
    tests::TlsIdentity identity = authority.issue();
    platform::NetworkHttpClient http;
};

TEST_F(FeedbackServiceTest, PostsTheTextWithWhatTheProgramIs) {
    const LoopbackServer server(LoopbackServer::respond(204, ""), identity);
    EXPECT_EQ(send(server.url(), QStringLiteral("More “brushes”,\nplease 🎨")), success);
    ASSERT_EQ(server.requests().size(), 1U);
    LoopbackServer::Request sent = server.requests().front();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/api/feedback");
    EXPECT_EQ(sent.headers["content-type"], "application/json");
    EXPECT_EQ(sent.headers["accept"], "application/json");
    EXPECT_EQ(sent.headers["x-quillabrae-client"], "app");
    EXPECT_EQ(sent.headers["user-agent"], "Quillabrae-macOS/1.2.3");
    EXPECT_FALSE(sent.headers.contains("authorization"));
    EXPECT_FALSE(sent.headers.contains("cookie"));
    EXPECT_EQ(bodyOf(server),
              (QJsonObject{
                  {QStringLiteral("feedback"), QStringLiteral("More “brushes”,\nplease 🎨")},
                  {QStringLiteral("appVersion"), QStringLiteral("1.2.3")},
                  {QStringLiteral("systemVersion"), QStringLiteral("A System 12 (twelve)")},
                  {QStringLiteral("image"), QJsonValue::Null},
              }));
}

TEST_F(FeedbackServiceTest, APictureGoesAlongInBase64) {
    const LoopbackServer server(LoopbackServer::respond(200, "{}"), identity);
    QByteArray jpeg;
    for (int i = 0; i < 1'500'000; ++i) jpeg.append(static_cast<char>(i * 31));
    EXPECT_EQ(
        send(server.url(), QStringLiteral("See."),
             FeedbackImageAttachment{jpeg, QStringLiteral("été.jpg"), QStringLiteral("été!.png")}),
        success);
    const QJsonObject image = bodyOf(server)[QStringLiteral("image")].toObject();
    EXPECT_EQ(image.keys(), (QStringList{QStringLiteral("content"), QStringLiteral("contentType"),
                                         QStringLiteral("filename")}));
    EXPECT_EQ(QByteArray::fromBase64(image[QStringLiteral("content")].toString().toLatin1()), jpeg);
    EXPECT_EQ(image[QStringLiteral("contentType")].toString(), QStringLiteral("image/jpeg"));
    EXPECT_EQ(image[QStringLiteral("filename")].toString(), QStringLiteral("été.jpg"));
}

TEST_F(FeedbackServiceTest, FiveThousandCharactersAreSentAndOneMoreIsNot) {
    const LoopbackServer server(LoopbackServer::respond(200, ""), identity);
    const QString refusal = QStringLiteral("Enter feedback of up to 5,000 characters.");
    const QString greatest(5'000, u'x');
    EXPECT_EQ(send(server.url(), greatest), success);
    EXPECT_EQ(send(server.url(), greatest + u'x'), refusal);
    EXPECT_EQ(send(server.url(), QString()), refusal);
    EXPECT_EQ(send(server.url(), QStringLiteral("é").repeated(5'000)), success);
    EXPECT_EQ(send(server.url(), QStringLiteral("é").repeated(5'001)), refusal);
    EXPECT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(server.connectionCount(), 2);
}

TEST(FeedbackLength, CountsWhatPeopleSeeAsOneCharacter) {
    const std::pair<const char*, int> expected[] = {
        {"", 0},
        {"abc", 3},
        {" \n", 2},
        {"\r\n", 1},
        {"\u00e9", 1},
        {"e\u0301", 1},
        {"n\u0303a\u0302\u0301", 2},
        {"\U0001F3A8", 1},
        // A thumb with a tone of skin, a flag, and a family.
        {"\U0001F44D\U0001F3FD", 1},
        {"\U0001F1EB\U0001F1F7", 1},
        {"\U0001F1EB\U0001F1F7\U0001F1E9\U0001F1EA", 2},
        {"\U0001F468\u200d\U0001F469\u200d\U0001F467\u200d\U0001F466", 1},
        // A syllable of Hangul in its parts, and one of Devanagari.
        {"\u1112\u1161\u11ab", 1},
        {"\u0928\u093f", 1},
    };
    for (const auto& [text, length] : expected)
        EXPECT_EQ(feedbackLength(QString::fromUtf8(text)), length) << text;
    EXPECT_EQ(feedbackLength(QString(10, u'x'), 4), 4);
}

TEST(FeedbackLength, IsCountedAsFastAsOneTypes) {
    const QString text = QStringLiteral("e\u0301 ").repeated(2'500);
    QElapsedTimer clock;
    clock.start();
    constexpr int rounds = 100;
    for (int i = 0; i < rounds; ++i) ASSERT_EQ(feedbackLength(text), 5'000);
    // Generous: a machine that is busy with other things needs a fraction of this.
    EXPECT_LT(clock.elapsed() / rounds, 20);
}

TEST_F(FeedbackServiceTest, ARefusalIsToldInTheServersWords) {
    EXPECT_EQ(answer(429, R"({"error":"Too much feedback. Please wait a “little”."})"),
              QStringLiteral("Too much feedback. Please wait a “little”."));
    for (const int status : {400, 401, 404, 413, 500, 503})
        EXPECT_EQ(answer(status, R"({"code":1,"error":"No."})"), QStringLiteral("No."));
}

TEST_F(FeedbackServiceTest, ARefusalWithoutWordsAsksToTryAgain) {
    EXPECT_EQ(answer(500, "<html><body>Oops</body></html>"), tryAgain);
    for (const char* body : {"", "{}", "[]", "null", R"({"error":""})", R"({"error":null})",
                             R"({"error":5})", R"({"error":{"message":"x"}})", R"({"error":"x")"})
        EXPECT_EQ(answer(422, body), tryAgain) << body;
}

TEST_F(FeedbackServiceTest, EverySuccessCounts) {
    for (const int status : {200, 201, 202, 299}) EXPECT_EQ(answer(status, "anything"), success);
}

TEST_F(FeedbackServiceTest, NothingFollowsARedirect) {
    const LoopbackServer elsewhere(LoopbackServer::respond(200, ""), identity);
    for (const int status : {301, 302, 303, 307, 308})
        EXPECT_EQ(answer(status, "", "Location: " + elsewhere.url().toEncoded() + "/\r\n"),
                  tryAgain);
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(FeedbackServiceTest, WhatDoesNotSpeakHttpIsNoAnswer) {
    EXPECT_EQ(feedbackOutcome({0, "220 ready"})->description,
              QStringLiteral("Quillabrae received an invalid response from the server."));
}

TEST_F(FeedbackServiceTest, AConnectionThatBreaksIsToldAsItIs) {
    const LoopbackServer dropped([](const auto&, QTcpSocket& socket) { socket.abort(); }, identity);
    const QString broken = send(dropped.url());
    EXPECT_FALSE(broken.isEmpty());
    EXPECT_NE(broken, success);
    // A server of an authority that nobody knows hears nothing.
    const tests::CertificateAuthority stranger;
    const LoopbackServer unknown(LoopbackServer::respond(200, ""), stranger.issue());
    EXPECT_NE(send(unknown.url()), success);
    EXPECT_TRUE(unknown.requests().empty());
}

TEST_F(FeedbackServiceTest, WithoutAServiceNothingIsSent) {
    tests::ScriptedHttpClient unasked;
    for (const char* address : {"", "http://127.0.0.1:1", "ftp://example.org", "https://",
                                "example.org", "file:///etc/passwd"}) {
        const FeedbackService service(unasked, WebService(QUrl(QString::fromLatin1(address))),
                                      program);
        EXPECT_FALSE(service.isConfigured()) << address;
        std::optional<FeedbackError> told;
        EXPECT_FALSE(
            service.send(QStringLiteral("x"), {}, {},
                         [&](const std::optional<FeedbackError>& error) { told = error; }));
        EXPECT_EQ(told, FeedbackError::noService()) << address;
    }
    EXPECT_TRUE(unasked.requests.empty());
}

TEST_F(FeedbackServiceTest, AServerThatIsSilentForAMinuteIsGivenUp) {
    tests::ScriptedHttpClient scripted;
    const FeedbackService service(
        scripted, WebService(QUrl(QStringLiteral("https://example.org/base?x#y"))), program);
    std::optional<FeedbackError> told;
    const auto exchange =
        service.send(QStringLiteral("x"), {}, {},
                     [&](const std::optional<FeedbackError>& error) { told = error; });
    ASSERT_EQ(scripted.requests.size(), 1U);
    EXPECT_EQ(scripted.requests.front().timeout, std::chrono::seconds(60));
    EXPECT_EQ(scripted.requests.front().url,
              QUrl(QStringLiteral("https://example.org/api/feedback")));
    scripted.answer(platform::HttpFailure{QStringLiteral("The request timed out.")});
    ASSERT_TRUE(told);
    EXPECT_EQ(told->description, QStringLiteral("The request timed out."));
}

TEST_F(FeedbackServiceTest, AnExchangeThatIsDroppedEndsTheConnection) {
    QTcpSocket* held = nullptr;
    const LoopbackServer server([&](const auto&, QTcpSocket& socket) { held = &socket; }, identity);
    const FeedbackService service(http, WebService(server.url()), program);
    bool isCalled = false;
    auto exchange = service.send(QStringLiteral("x"), {}, {},
                                 [&](const std::optional<FeedbackError>&) { isCalled = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return held != nullptr; }, 20'000));
    bool isClosed = false;
    QObject::connect(held, &QTcpSocket::disconnected, held, [&] { isClosed = true; });
    exchange.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isClosed; }, 20'000));
    EXPECT_FALSE(isCalled);
}

} // namespace
} // namespace quillabrae::services
