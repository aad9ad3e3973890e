// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/TestAccount.h"
#include "shell/settings/AccountPane.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

using platform::HttpReply;

class AccountPaneTest : public testing::Test {
protected:
    AccountPaneTest() { show(QStringLiteral("https://example.org")); }

    void show(const QString& service) {
        pane.reset();
        account = world.make(service);
        pane = std::make_unique<AccountPane>(*account);
        pane->show();
        settle();
    }
    static void settle() { QTest::qWait(10); }
    QPushButton* button(const char* title) const {
        for (QPushButton* found : pane->findChildren<QPushButton*>())
            if (found->text() == QString::fromLatin1(title) && found->isVisible()) return found;
        return nullptr;
    }
    void press(const char* title) const {
        QPushButton* found = button(title);
        ASSERT_TRUE(found && found->isEnabled()) << title;
        found->click();
    }
    /// What a label says, or nothing when it cannot be seen.
    QString shown(const char* name) const {
        const auto* label = pane->findChild<QLabel*>(QString::fromLatin1(name));
        return label && label->isVisible() ? label->text() : QString();
    }
    void comeBack() {
        const QString link = QStringLiteral("quillabrae://auth/callback?code=c&state=");
        world.web.takeLink(QUrl(link + world.browser.state()));
    }
    void signIn() {
        press("Sign in");
        comeBack();
        world.http.answer(HttpReply{200, R"({"token":"t","name":"Zoë","email":"z@example.org"})"});
        settle();
    }

    TestAccount world;
    std::unique_ptr<services::QuillabraeAccountService> account;
    std::unique_ptr<AccountPane> pane;
};

TEST_F(AccountPaneTest, OffersToSignInAndTellsHowThatGoes) {
    EXPECT_EQ(shown("accountName"), QStringLiteral("Not signed in"));
    EXPECT_TRUE(shown("accountEmail").isEmpty());
    EXPECT_TRUE(shown("accountStatus").isEmpty());
    EXPECT_FALSE(button("Sign Out"));
    EXPECT_FALSE(button("Cancel"));
    press("Sign in");
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Complete sign-in in your browser…"));
    EXPECT_FALSE(button("Sign in")->isEnabled());
    EXPECT_TRUE(button("Cancel"));
    comeBack();
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Finishing sign-in…"));
    world.http.answer(HttpReply{200, R"({"token":"t","name":"Zoë","email":"z@example.org"})"});
    settle();
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Signed in."));
    EXPECT_EQ(shown("accountName"), QStringLiteral("Zoë"));
    EXPECT_EQ(shown("accountEmail"), QStringLiteral("z@example.org"));
    EXPECT_FALSE(button("Sign in"));
    EXPECT_FALSE(button("Cancel"));
    EXPECT_TRUE(button("Sign Out")->isEnabled());
}

TEST_F(AccountPaneTest, SignsOut) {
    signIn();
    press("Sign Out");
    settle();
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Signed out."));
    EXPECT_EQ(shown("accountName"), QStringLiteral("Not signed in"));
    EXPECT_TRUE(shown("accountEmail").isEmpty());
    EXPECT_TRUE(button("Sign in")->isEnabled());
}

TEST_F(AccountPaneTest, CancelGivesTheSignInUp) {
    press("Sign in");
    press("Cancel");
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Sign-in cancelled."));
    EXPECT_TRUE(button("Sign in")->isEnabled());
    EXPECT_FALSE(button("Cancel"));
}

TEST_F(AccountPaneTest, AnotherPaneShowsWhoIsSignedIn) {
    signIn();
    show(QStringLiteral("https://example.org"));
    EXPECT_EQ(shown("accountName"), QStringLiteral("Zoë"));
    EXPECT_TRUE(button("Sign Out"));
}

TEST_F(AccountPaneTest, APaneThatGoesLeavesTheSignInUnderWay) {
    press("Sign in");
    pane = std::make_unique<AccountPane>(*account);
    pane->show();
    EXPECT_EQ(shown("accountStatus"), QStringLiteral("Complete sign-in in your browser…"));
    EXPECT_TRUE(button("Cancel"));
}

TEST_F(AccountPaneTest, ABuildWithoutAServiceSaysSo) {
    show(QString());
    const auto labels = pane->findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_TRUE(labels.front()->text().startsWith(
        QStringLiteral("This build of Quillabrae has no account service configured")));
    EXPECT_TRUE(pane->findChildren<QPushButton*>().isEmpty());
}

} // namespace
} // namespace quillabrae::shell
