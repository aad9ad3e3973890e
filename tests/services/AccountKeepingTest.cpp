// SPDX-License-Identifier: GPL-3.0-or-later
// What is kept of a signed-in user, across starts, refusals of the secret store and the sign-out.
#include "services/AccountTest.h"

namespace quillabrae::services {
namespace {

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
