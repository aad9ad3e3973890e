// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/BrowserAuthentication.h"
#include "services/ScriptedBrowser.h"

#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace quillabrae::services {
namespace {

using namespace std::chrono_literals;

const QUrl page(QStringLiteral("https://example.org/sign-in"));
const QUrl link(QStringLiteral("quillabrae://auth/callback?code=c&state=s"));

class BrowserAuthenticationTest : public testing::Test {
protected:
    std::unique_ptr<WebAuthenticationSession> start(BrowserAuthentication& from) {
        return from.start(page, [this](const WebAuthenticationOutcome& outcome) {
            EXPECT_FALSE(found) << "ended twice";
            found = outcome;
        });
    }
    std::optional<WebAuthenticationError> error() const {
        if (!found) return std::nullopt;
        const auto* told = std::get_if<WebAuthenticationError>(&*found);
        return told ? std::optional(*told) : std::nullopt;
    }

    ScriptedBrowser browser;
    BrowserAuthentication authentication{browser};
    std::optional<WebAuthenticationOutcome> found;
};

TEST_F(BrowserAuthenticationTest, TheFirstLinkEndsTheVisit) {
    const auto session = start(authentication);
    EXPECT_EQ(browser.pages, std::vector<QUrl>{page});
    EXPECT_FALSE(found);
    EXPECT_TRUE(authentication.takeLink(link));
    ASSERT_TRUE(found);
    EXPECT_EQ(std::get<QUrl>(*found), link);
    EXPECT_FALSE(authentication.takeLink(link));
    session->cancel();
}

TEST_F(BrowserAuthenticationTest, ALinkThatNobodyWaitsForIsForgotten) {
    EXPECT_FALSE(authentication.takeLink(link));
    const auto session = start(authentication);
    EXPECT_FALSE(found);
}

TEST_F(BrowserAuthenticationTest, AVisitCanBeGivenUp) {
    const auto session = start(authentication);
    session->cancel();
    EXPECT_EQ(error(), WebAuthenticationError::cancelled);
    session->cancel();
    EXPECT_FALSE(authentication.takeLink(link));
}

TEST_F(BrowserAuthenticationTest, AVisitThatLastsTooLongIsOver) {
    BrowserAuthentication impatient(browser, 20ms);
    const auto session = start(impatient);
    EXPECT_TRUE(QTest::qWaitFor([this] { return found.has_value(); }, 20'000));
    EXPECT_EQ(error(), WebAuthenticationError::timedOut);
    EXPECT_FALSE(impatient.takeLink(link));
}

TEST_F(BrowserAuthenticationTest, ADestroyedVisitIsNotHeardOfAgain) {
    BrowserAuthentication impatient(browser, 20ms);
    start(impatient).reset();
    EXPECT_FALSE(impatient.takeLink(link));
    QTest::qWait(60);
    EXPECT_FALSE(found);
}

TEST_F(BrowserAuthenticationTest, WhoHearsTheEndMayDestroyTheVisit) {
    std::unique_ptr<WebAuthenticationSession> session;
    session = authentication.start(page, [&](const auto&) { session.reset(); });
    EXPECT_TRUE(authentication.takeLink(link));
    EXPECT_FALSE(session);
    session = authentication.start(page, [&](const auto&) { session.reset(); });
    session->cancel();
    EXPECT_FALSE(session);
}

TEST_F(BrowserAuthenticationTest, WithoutABrowserThereIsNoVisit) {
    browser.isThere = false;
    EXPECT_FALSE(start(authentication));
    EXPECT_FALSE(authentication.takeLink(link));
}

TEST_F(BrowserAuthenticationTest, AVisitMayOutliveWhatMadeIt) {
    auto shortLived = std::make_unique<BrowserAuthentication>(browser);
    const auto session = start(*shortLived);
    shortLived.reset();
    session->cancel();
    EXPECT_EQ(error(), WebAuthenticationError::cancelled);
}

} // namespace
} // namespace quillabrae::services
