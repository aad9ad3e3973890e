// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MemoryPreferences.h"
#include "platform/MemorySecretStore.h"
#include "platform/NetworkHttpClient.h"
#include "platform/SecureRandom.h"
#include "services/BrowserAuthentication.h"
#include "services/QuillabraeAccountService.h"
#include "services/ScriptedBrowser.h"
#include "support/LoopbackServer.h"

#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace quillabrae::services {

using tests::LoopbackServer;

inline const platform::SecretName tokenName{QStringLiteral("Quillabrae.Account"),
                                            QStringLiteral("BetterAuthBearerToken")};
inline const QString nameKey = QStringLiteral("Quillabrae.accountName");
inline const QString emailKey = QStringLiteral("Quillabrae.accountEmail");
inline const QString waiting = QStringLiteral("Complete sign-in in your browser…");
inline const QString unverified =
    QStringLiteral("Quillabrae could not verify the sign-in response.");
inline const QString unfinished =
    QStringLiteral("Quillabrae could not finish signing in. Please try again.");

/// An account with a browser that does as it is told and a real HTTPS server on loopback.
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

} // namespace quillabrae::services
