// SPDX-License-Identifier: GPL-3.0-or-later
// Sign-in with a browser that does as it is told and a real HTTPS server on loopback.
#include "platform/MemoryPreferences.h"
#include "platform/MemorySecretStore.h"
#include "platform/NetworkHttpClient.h"
#include "platform/SecureRandom.h"
#include "services/BrowserAuthentication.h"
#include "services/QuillabraeAccountService.h"
#include "services/ScriptedBrowser.h"
#include "support/LoopbackServer.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

using namespace std::chrono_literals;
using tests::LoopbackServer;

const platform::SecretName tokenName{QStringLiteral("Quillabrae.Account"),
                                     QStringLiteral("BetterAuthBearerToken")};
const QString nameKey = QStringLiteral("Quillabrae.accountName");
const QString emailKey = QStringLiteral("Quillabrae.accountEmail");
const QString waiting = QStringLiteral("Complete sign-in in your browser…");
const QString unverified = QStringLiteral("Quillabrae could not verify the sign-in response.");
const QString unfinished =
    QStringLiteral("Quillabrae could not finish signing in. Please try again.");

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

class AccountTest : public testing::Test {
protected:
    AccountTest() {
        serve(200, R"({"token":"secret-token","name":"Zoë","email":"z@example.org"})");
    }

    void serve(int status, const QByteArray& body, const QByteArray& headers = {}) {
        serve(LoopbackServer::respond(status, body, headers));
    }
    void serve(const LoopbackServer::Answer& answer) {
        account.reset();
        server = std::make_unique<LoopbackServer>(answer, identity);
        restart(server->url());
    }
    /// The program starts anew and finds what it has left.
    void restart(const QUrl& service) {
        account.reset();
        account = std::make_unique<QuillabraeAccountService>(
            QuillabraeAccountService::Environment{http, secrets, preferences, web, random},
            WebService(service));
        look();
    }
    /// As whoever shows the account does.
    void look() {
        account->lookForToken();
        QTest::qWait(5);
    }
    QUrl callback(const QString& code = QStringLiteral("the-code")) const {
        return QUrl(QStringLiteral("quillabrae://auth/callback?code=%1&state=%2")
                        .arg(code, browser.state()));
    }
    bool waitUntilDone() {
        return QTest::qWaitFor([this] { return !account->isBusy(); }, 20'000);
    }
    void signIn() {
        account->signIn();
        ASSERT_EQ(account->statusMessage(), waiting);
        ASSERT_TRUE(web.takeLink(callback()));
        ASSERT_TRUE(waitUntilDone());
    }
    void signOut() {
        account->signOut();
        ASSERT_TRUE(waitUntilDone());
    }
    bool waitForRequests(std::size_t count) {
        return QTest::qWaitFor([=, this] { return server->requests().size() == count; }, 20'000);
    }
    void expectSignedOut() {
        EXPECT_FALSE(account->isSignedIn());
        EXPECT_TRUE(account->name().isEmpty());
        EXPECT_TRUE(account->email().isEmpty());
        EXPECT_EQ(secrets.count(), 0U);
        EXPECT_FALSE(preferences.value(nameKey).isValid());
        EXPECT_FALSE(preferences.value(emailKey).isValid());
    }

    tests::CertificateAuthority authority;
    tests::TrustedAuthority trusted{authority};
    tests::TlsIdentity identity = authority.issue();
    platform::NetworkHttpClient http;
    platform::MemorySecretStore secrets;
    platform::MemoryPreferences preferences;
    ScriptedBrowser browser;
    BrowserAuthentication web{browser};
    RandomBytes random = platform::secureRandomData;
    std::unique_ptr<LoopbackServer> server;
    std::unique_ptr<QuillabraeAccountService> account;
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

TEST_F(AccountTest, TheNextStartKnowsTheUser) {
    signIn();
    restart(server->url());
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_EQ(account->name(), QStringLiteral("Zoë"));
    EXPECT_EQ(account->email(), QStringLiteral("z@example.org"));
    EXPECT_TRUE(account->statusMessage().isEmpty());
}

TEST_F(AccountTest, ASecretStoreThatDoesNotAnswerMeansSignedOut) {
    signIn();
    secrets.refusal = QStringLiteral("The wallet is locked.");
    restart(server->url());
    EXPECT_FALSE(account->isSignedIn());
}

TEST_F(AccountTest, WhileTheSecretStoreThinksTheProfileIsShown) {
    signIn();
    secrets.isSlow = true;
    restart(server->url());
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_FALSE(account->isBusy());
    EXPECT_EQ(account->name(), QStringLiteral("Zoë"));
    secrets.isSlow = false;
    secrets.remove(tokenName);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !account->isSignedIn(); }, 20'000));
}

TEST_F(AccountTest, AnAnswerOfTheSecretStoreThatComesTooLateCountsNoMore) {
    secrets.isSlow = true;
    restart(server->url());
    account->signIn();
    secrets.isSlow = false;
    EXPECT_TRUE(web.takeLink(callback()));
    ASSERT_TRUE(waitUntilDone());
    QTest::qWait(20);
    EXPECT_TRUE(account->isSignedIn());
}

TEST_F(AccountTest, ASecretStoreThatIsSlowToKeepTheTokenCannotBeInterrupted) {
    account->signIn();
    EXPECT_TRUE(account->canCancel());
    secrets.isSlow = true;
    EXPECT_TRUE(web.takeLink(callback()));
    EXPECT_TRUE(account->canCancel());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !account->canCancel(); }, 20'000));
    account->cancelSignIn();
    account->signOut();
    EXPECT_TRUE(account->isBusy());
    secrets.isSlow = false;
    ASSERT_TRUE(waitUntilDone());
    EXPECT_TRUE(account->isSignedIn());
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

TEST_F(AccountTest, ATokenThatCannotBeSavedFailsTheSignIn) {
    account->signIn();
    secrets.refusal = QStringLiteral("The wallet is locked.");
    EXPECT_TRUE(web.takeLink(callback()));
    ASSERT_TRUE(waitUntilDone());
    EXPECT_EQ(account->statusMessage(), QStringLiteral("The wallet is locked."));
    EXPECT_FALSE(account->isSignedIn());
    EXPECT_TRUE(account->email().isEmpty());
    EXPECT_FALSE(preferences.value(emailKey).isValid());
}

TEST_F(AccountTest, SigningOutTellsTheServiceAndForgets) {
    signIn();
    signOut();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed out."));
    expectSignedOut();
    ASSERT_TRUE(waitForRequests(2));
    LoopbackServer::Request sent = server->requests().back();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.target, "/api/auth/sign-out");
    EXPECT_EQ(sent.headers["authorization"], "Bearer secret-token");
    EXPECT_TRUE(sent.body.isEmpty());
    restart(server->url());
    expectSignedOut();
}

TEST_F(AccountTest, SigningOutOfflineForgetsAllTheSame) {
    signIn();
    server.reset();
    signOut();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed out."));
    expectSignedOut();
    QTest::qWait(100);
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed out."));
    expectSignedOut();
}

TEST_F(AccountTest, SigningOutWithoutATokenAsksNobody) {
    preferences.setValue(emailKey, QStringLiteral("left over"));
    restart(server->url());
    signOut();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("Signed out."));
    expectSignedOut();
    QTest::qWait(50);
    EXPECT_EQ(server->connectionCount(), 0);
}

TEST_F(AccountTest, ATokenThatCannotBeRemovedKeepsTheUserSignedIn) {
    signIn();
    secrets.refusal = QStringLiteral("The wallet is locked.");
    signOut();
    EXPECT_EQ(account->statusMessage(), QStringLiteral("The wallet is locked."));
    EXPECT_TRUE(account->isSignedIn());
    EXPECT_EQ(account->email(), QStringLiteral("z@example.org"));
    QTest::qWait(50);
    EXPECT_EQ(server->requests().size(), 1U);
}

TEST_F(AccountTest, TellsOfEveryChange) {
    int changes = 0;
    QObject::connect(account.get(), &QuillabraeAccountService::changed, account.get(),
                     [&] { ++changes; });
    signIn();
    EXPECT_GE(changes, 3);
    const int before = changes;
    signOut();
    EXPECT_GE(changes, before + 2);
}

} // namespace
} // namespace quillabrae::services
