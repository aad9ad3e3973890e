// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/TestUpdates.h"
#include "shell/editor/ProjectTabBar.h"
#include "shell/editor/UpdateButton.h"
#include "shell/looks/Symbols.h"

#include <QTest>

namespace quillabrae::shell {
namespace {

using services::AppUpdateService;
using services::AppUpdateState;

class UpdateButtonTest : public ShellTest {
protected:
    void makeUpdates(const QString& feed) {
        updates = source.make(feed, folder.filePath(QStringLiteral("Updates")), preferences, clock);
    }
    void makeButton() {
        makeUpdates(QStringLiteral("https://example.org/feed"));
        button = std::make_unique<UpdateButton>(*updates);
    }
    void answer(const QByteArray& items) {
        http.answer(platform::HttpReply{200, "<rss><channel>" + items + "</channel></rss>"});
    }
    static QByteArray newerItem() {
        return "<item><enclosure url=\"https://example.org/q.deb\" length=\"1\" version=\"1.1\" "
               "edSignature=\"" +
               QByteArray(64, 's').toBase64() + "\"/></item>";
    }

    TestUpdates source;
    tests::ScriptedHttpClient& http = source.http;
    std::unique_ptr<AppUpdateService> updates;
    std::unique_ptr<UpdateButton> button;
};

TEST_F(UpdateButtonTest, FollowsTheStateOfTheUpdate) {
    makeButton();
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Check for Updates"));
    EXPECT_EQ(button->accessibleDescription(),
              QStringLiteral("Check whether a newer version of Quillabrae is available"));
    EXPECT_TRUE(button->isEnabled());
    const int alone = button->sizeHint().width();

    button->click();
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Checking…"));
    EXPECT_FALSE(button->isEnabled());
    EXPECT_GT(button->sizeHint().width(), alone);
    button->click();
    EXPECT_EQ(http.requests.size(), 1U);

    answer(newerItem());
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Update Now"));
    EXPECT_EQ(button->accessibleDescription(), QStringLiteral("Install Quillabrae 1.1"));
    EXPECT_TRUE(button->isEnabled());

    button->click();
    answer(newerItem());
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Installing…"));
    EXPECT_FALSE(button->isEnabled());
    http.answer(platform::HttpFailure{QStringLiteral("no network")});
    EXPECT_EQ(button->accessibleName(), QStringLiteral("Check for Updates"));
    EXPECT_EQ(button->sizeHint().width(), alone);
}

TEST_F(UpdateButtonTest, ItsSymbolIsKnown) {
    EXPECT_TRUE(Symbols::isKnown(QStringLiteral("arrow.down.circle.fill")));
}

TEST_F(UpdateButtonTest, IsInTheTabBarOnlyWhereThereAreUpdates) {
    makeUpdates({});
    const ProjectTabBar without(*store, *coordinator, updates.get());
    EXPECT_EQ(without.findChild<UpdateButton*>(), nullptr);
    makeUpdates(QStringLiteral("https://example.org/feed"));
    const ProjectTabBar with(*store, *coordinator, updates.get());
    EXPECT_NE(with.findChild<UpdateButton*>(), nullptr);
    const ProjectTabBar ofNobody(*store, *coordinator);
    EXPECT_EQ(ofNobody.findChild<UpdateButton*>(), nullptr);
}

} // namespace
} // namespace quillabrae::shell
