// SPDX-License-Identifier: GPL-3.0-or-later
// Sign-in with a browser that does as it is told and a real HTTPS server on loopback.
#include "services/AccountTest.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

namespace quillabrae::services {
namespace {

using namespace std::chrono_literals;

/// Everything that was said to the log while this object lives.
class LogWatch {
public:
    LogWatch() {
        s_said.clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { s_said += text; });
    }
    ~LogWatch() { qInstallMessageHandler(m_before); }
    LogWatch(const LogWatch&) = delete;
    LogWatch& operator=(const LogWatch&) = delete;
    static const QString& said() { return s_said; }

private:
    static inline QString s_said;
    QtMessageHandler m_before;
};

TEST_F(AccountTest, SignsInThroughTheBrowserAndKeepsTheTokenInTheSecretStoreAlone) {
    const LogWatch log;
    EXPECT_FALSE(account->isSignedIn());
    account->signIn();
    EXPECT_TRUE(account->isBusy());
    EXPECT_EQ(account->statusMessage(), waiting);
    ASSERT_EQ(browser.pages.size(), 1U);
    const QString state = browser.state();
    const QString challenge = browser.asked(QStringLiteral("code_challenge"));
    EXPECT_EQ(state.size(), 43);
    EXPECT_EQ(server->connectionCount(), 0);

    EXPECT_TRUE(web.takeLink(callback()));
    EXPECT_TRUE(account->isBusy());
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Finishing sign-in…"));
    ASSERT_TRUE(waitUntilDone());
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed in."));
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_EQ(account->name(), QStringLiteral("Zoë"));
    EXPECT_EQ(account->email(), QStringLiteral("z@example.org"));
    EXPECT_EQ(secrets.load(tokenName), QStringLiteral("secret-token"));
    EXPECT_EQ(preferences.value(nameKey).toString(), QStringLiteral("Zoë"));
    EXPECT_EQ(preferences.value(emailKey).toString(), QStringLiteral("z@example.org"));

    ASSERT_EQ(server->requests().size(), 1U);
    LoopbackServer::Request sent = server->requests().front();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/api/app-auth/token");
    EXPECT_EQ(sent.headers["content-type"], "application/json");
    EXPECT_FALSE(sent.headers.contains("authorization"));
    const QJsonObject body = QJsonDocument::fromJson(sent.body).object();
    EXPECT_EQ(body.size(), 2);
    EXPECT_EQ(body[QStringLiteral("code")].toString(), QStringLiteral("the-code"));
    const QString verifier = body[QStringLiteral("code_verifier")].toString();
    EXPECT_EQ(base64Url(QCryptographicHash::hash(verifier.toUtf8(), QCryptographicHash::Sha256)),
              challenge);
    for (const QString& secret : {state, verifier, QStringLiteral("secret-token")})
        EXPECT_FALSE(LogWatch::said().contains(secret));
}

TEST_F(AccountTest, AUserWithoutANameHasAnAddress) {
    serve(201, R"({"token":"t","email":"z@example.org"})");
    signIn();
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_TRUE(account->name().isEmpty());
    EXPECT_EQ(account->email(), QStringLiteral("z@example.org"));
}

TEST_F(AccountTest, ALinkThatWasNotAskedForIsRefusedAndNothingIsSent) {
    for (const char* link :
         {"quillabrae://auth/callback?code=the-code&state=another",
          "quillabrae://auth/callback?code=the-code", "quillabrae://other/callback?code=c"}) {
        account->signIn();
        EXPECT_TRUE(web.takeLink(QUrl(QString::fromLatin1(link))));
        EXPECT_FALSE(account->isBusy());
        EXPECT_EQ(account->statusMessage(), unverified) << link;
        expectSignedOut();
    }
    account->signIn();
    EXPECT_TRUE(web.takeLink(callback(QString())));
    EXPECT_EQ(account->statusMessage(), unverified);
    EXPECT_EQ(server->connectionCount(), 0);
}

TEST_F(AccountTest, AnOldLinkIsOfNoUse) {
    account->signIn();
    const QUrl old = callback();
    EXPECT_TRUE(web.takeLink(old));
    ASSERT_TRUE(waitUntilDone());
    EXPECT_FALSE(web.takeLink(old));
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed in."));
    signOut();
    EXPECT_FALSE(web.takeLink(old));
    EXPECT_FALSE(account->isSignedIn());
    account->signIn();
    EXPECT_TRUE(web.takeLink(old));
    EXPECT_EQ(account->statusMessage(), unverified);
    EXPECT_FALSE(account->isSignedIn());
}

TEST_F(AccountTest, EverySignInHasItsOwnStateAndVerifier) {
    account->signIn();
    const QUrl first = browser.pages.back();
    account->cancelSignIn();
    account->signIn();
    EXPECT_NE(browser.pages.back(), first);
}

TEST_F(AccountTest, CancellingLeavesThingsAsTheyWere) {
    signIn();
    const QString cancelled = QStringLiteral("Sign-in cancelled.");
    account->signIn();
    account->cancelSignIn();
    EXPECT_EQ(account->statusMessage(), cancelled);
    EXPECT_FALSE(account->isBusy());
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_EQ(account->name(), QStringLiteral("Zoë"));
    EXPECT_EQ(secrets.load(tokenName), QStringLiteral("secret-token"));
    EXPECT_FALSE(web.takeLink(callback()));
    account->cancelSignIn();
    EXPECT_EQ(account->statusMessage(), cancelled);
}

TEST_F(AccountTest, CancellingWhileTheServiceThinksEndsTheConnection) {
    QTcpSocket* held = nullptr;
    serve([&](const auto&, QTcpSocket& socket) { held = &socket; });
    account->signIn();
    EXPECT_TRUE(web.takeLink(callback()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return held != nullptr; }, 20'000));
    bool isClosed = false;
    QObject::connect(held, &QTcpSocket::disconnected, held, [&] { isClosed = true; });
    account->cancelSignIn();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Sign-in cancelled."));
    EXPECT_FALSE(account->isBusy());
    EXPECT_TRUE(QTest::qWaitFor([&] { return isClosed; }, 20'000));
    expectSignedOut();
}

TEST_F(AccountTest, SeveralSignInsAtOnceAreRefused) {
    account->signIn();
    account->signIn();
    EXPECT_EQ(browser.pages.size(), 1U);
    EXPECT_EQ(account->statusMessage(), waiting);
    account->signOut();
    EXPECT_TRUE(account->isBusy());
    EXPECT_EQ(account->statusMessage(), waiting);
    EXPECT_TRUE(web.takeLink(callback()));
    account->signIn();
    EXPECT_EQ(browser.pages.size(), 1U);
    ASSERT_TRUE(waitUntilDone());
    EXPECT_TRUE(account->isSignedIn());
}

TEST_F(AccountTest, AVisitThatLastsTooLongIsOver) {
    account.reset();
    BrowserAuthentication impatient(browser, 20ms);
    account = std::make_unique<QuillabraeAccountService>(
        QuillabraeAccountService::Environment{http, secrets, preferences, impatient, random},
        WebService(server->url()));
    account->signIn();
    ASSERT_TRUE(waitUntilDone());
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Sign-in took too long. Please try again."));
    EXPECT_FALSE(impatient.takeLink(callback()));
    account.reset();
}

TEST_F(AccountTest, WithoutRandomnessNothingBegins) {
    random = [](qsizetype) { return std::nullopt; };
    restart(server->url());
    account->signIn();
    EXPECT_EQ(account->statusMessage(),
              QStringLiteral("Could not start secure sign-in. Please try again."));
    EXPECT_FALSE(account->isBusy());
    EXPECT_TRUE(browser.pages.empty());
}

TEST_F(AccountTest, WithoutABrowserNothingBegins) {
    browser.isThere = false;
    account->signIn();
    EXPECT_EQ(account->statusMessage(),
              QStringLiteral("Could not open the Quillabrae sign-in page."));
    EXPECT_FALSE(account->isBusy());
}

TEST_F(AccountTest, ABuildWithoutAServiceSaysSoAndAsksNobody) {
    secrets.save(tokenName, QStringLiteral("left over"));
    for (const char* address : {"", "http://127.0.0.1:1"}) {
        restart(QUrl(QString::fromLatin1(address)));
        EXPECT_FALSE(account->isConfigured());
        EXPECT_FALSE(account->isSignedIn());
        account->signIn();
        EXPECT_EQ(account->statusMessage(),
                  QStringLiteral("This build of Quillabrae has no account service configured, so "
                                 "nobody can sign in."));
        EXPECT_FALSE(account->isBusy());
    }
    EXPECT_TRUE(browser.pages.empty());
}

TEST_F(AccountTest, AServiceThatRefusesOrTalksNonsenseSignsNobodyIn) {
    const QByteArray good = R"({"token":"t","email":"e"})";
    const LoopbackServer elsewhere(LoopbackServer::respond(200, good), identity);
    const QByteArray redirect = "Location: " + elsewhere.url().toEncoded() + "/\r\n";
    const std::tuple<int, QByteArray, QByteArray> answers[] = {
        {400, R"({"error":"no"})", ""},
        {401, good, ""},
        {429, good, ""},
        {500, "<html></html>", ""},
        {302, good, redirect},
        {307, good, redirect},
        {200, "", ""},
        {200, "{", ""},
        {200, R"({"email":"e"})", ""},
        {200, R"({"token":"","email":"e"})", ""},
        {200, R"({"token":"a\r\nX: y","email":"e"})", ""},
    };
    for (const auto& [status, body, headers] : answers) {
        serve(status, body, headers);
        signIn();
        EXPECT_EQ(account->statusMessage(), unfinished) << status << ' ' << body.constData();
        expectSignedOut();
    }
    EXPECT_EQ(elsewhere.connectionCount(), 0);
}

TEST_F(AccountTest, AServiceThatCannotBeReachedSaysWhy) {
    serve([](const auto&, QTcpSocket& socket) { socket.abort(); });
    signIn();
    EXPECT_FALSE(account->statusMessage().isEmpty());
    EXPECT_NE(account->statusMessage(), QStringLiteral("Signed in."));
    expectSignedOut();
    serve(LoopbackServer::respond(200, QByteArray(100'000, ' ')));
    signIn();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("The server's answer is too large."));
    const tests::CertificateAuthority stranger;
    server = std::make_unique<LoopbackServer>(LoopbackServer::respond(200, ""), stranger.issue());
    restart(server->url());
    signIn();
    EXPECT_TRUE(server->requests().empty());
    expectSignedOut();
}

} // namespace
} // namespace quillabrae::services
