// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/BodyScroller.h"
#include "shell/welcome/ActionRow.h"
#include "shell/welcome/RecentRow.h"
#include "shell/welcome/WelcomeContent.h"
#include "shell/welcome/WelcomePanel.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace quillabrae::shell {
namespace {

class WelcomeTest : public ShellTest {
protected:
    void showPanel() {
        actions = std::make_unique<CommandActions>(CommandContext{*store, *coordinator});
        panel = std::make_unique<WelcomePanel>(*store, *coordinator, *actions);
        panel->show();
    }
    bool shows(const QString& text) const {
        const auto labels = panel->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) {
            return label->isVisible() && label->text() == text;
        });
    }

    std::unique_ptr<CommandActions> actions;
    std::unique_ptr<WelcomePanel> panel;
};

TEST_F(WelcomeTest, HasNothingToTellAtFirst) {
    const WelcomeContent content = WelcomeContent::of(*store);
    EXPECT_TRUE(content.recents.empty());
    EXPECT_FALSE(content.offersClosedWork);
    EXPECT_TRUE(content.status.isEmpty());
}

TEST_F(WelcomeTest, ListsRecentsWithTheirFolders) {
    savePackage(QStringLiteral("cat.quillabrae"));
    savePackage(QStringLiteral("dog.quillabrae"));
    const WelcomeContent content = WelcomeContent::of(*store);
    ASSERT_EQ(content.recents.size(), 2U);
    EXPECT_EQ(content.recents.front().project.title, QStringLiteral("dog"));
    EXPECT_EQ(content.recents.front().folder, folder.path());
}

TEST_F(WelcomeTest, OffersClosedWorkWhileItIsKept) {
    makeProject(*store);
    edit(*store);
    coordinator->showEditorWindow(std::nullopt);
    editor()->close();
    EXPECT_TRUE(WelcomeContent::of(*store).offersClosedWork);
    store->reopenClosedWork();
    EXPECT_FALSE(WelcomeContent::of(*store).offersClosedWork);
}

TEST_F(WelcomeTest, KeepsQuietAboutWhatWentWell) {
    store->setStatusMessage(QStringLiteral("Saved cat.quillabrae"));
    EXPECT_TRUE(WelcomeContent::of(*store).status.isEmpty());
}

TEST_F(WelcomeTest, TellsAFailure) {
    store->setStatusMessage(QStringLiteral("Open failed: image could not be read"),
                            store::StatusKind::failure);
    showPanel();
    EXPECT_TRUE(shows(QStringLiteral("Open failed: image could not be read")));
}

TEST_F(WelcomeTest, AFailureComesIntoSightOnALowScreen) {
    showPanel();
    QWidget screen;
    panel->setParent(&screen);
    panel->setGeometry(0, 0, 420, 200);
    screen.show();
    panel->show();
    runDeferred();
    store->setStatusMessage(QStringLiteral("Open failed: image could not be read"),
                            store::StatusKind::failure);
    runDeferred();
    const auto* told = panel->findChild<QLabel*>(QStringLiteral("welcomeStatus"));
    const QWidget* view = panel->findChild<BodyScroller*>()->viewport();
    EXPECT_TRUE(view->rect().contains(QRect(told->mapTo(view, QPoint()), told->size())));
    panel->setParent(nullptr);
}

TEST_F(WelcomeTest, SaysThatThereAreNoRecents) {
    showPanel();
    EXPECT_TRUE(shows(QStringLiteral("No recent projects yet")));
    EXPECT_TRUE(shows(QStringLiteral("Saved and opened projects will appear here.")));
    EXPECT_TRUE(shows(QStringLiteral("Native pixel editor")));
    EXPECT_FALSE(panel->findChild<ActionRow*>(QStringLiteral("reopenClosedWork"))->isVisible());
}

TEST_F(WelcomeTest, OpensTheRecentThatIsPressed) {
    const QUrl package = savePackage(QStringLiteral("cat.quillabrae"));
    showPanel();
    panel->findChild<RecentRow*>()->click();
    runDeferred();
    ASSERT_NE(store->activeProject(), nullptr);
    EXPECT_EQ(store->activeProject()->fileURL, package);
}

TEST_F(WelcomeTest, TakesARecentOffTheList) {
    savePackage(QStringLiteral("cat.quillabrae"));
    showPanel();
    Q_EMIT panel->findChild<RecentRow*>()->removeRequested();
    runDeferred();
    EXPECT_TRUE(store->recents().empty());
    EXPECT_TRUE(shows(QStringLiteral("No recent projects yet")));
}

TEST_F(WelcomeTest, KeepsARecentWhoseFileHasGone) {
    const QUrl package = savePackage(QStringLiteral("cat.quillabrae"));
    ASSERT_TRUE(QDir(package.toLocalFile()).removeRecursively());
    showPanel();
    panel->findChild<RecentRow*>()->click();
    runDeferred();
    EXPECT_FALSE(store->hasActiveProject());
    EXPECT_EQ(store->recents().size(), 1U);
    EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Open failed: ")));
    EXPECT_TRUE(shows(store->statusMessage()));
    EXPECT_TRUE(panel->isVisible());
}

TEST_F(WelcomeTest, SaysThatADropHasNoPicture) {
    showPanel();
    coordinator->acceptDrop(dropOf(writeBrokenPicture(QStringLiteral("words.txt"))),
                            WindowRole::welcome);
    runDeferred();
    EXPECT_TRUE(shows(QStringLiteral("Drop failed: no image found")));
}

TEST_F(WelcomeTest, MakesAProjectOfADroppedPicture) {
    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(folder.filePath(QStringLiteral("red.png"))));
    coordinator->showWelcome();
    coordinator->acceptDrop(dropOf(file(QStringLiteral("red.png"))), WindowRole::welcome);
    runDeferred();
    ASSERT_NE(store->activeProject(), nullptr);
    EXPECT_EQ(store->activeProject()->canvasWidth, 30);
    EXPECT_EQ(welcome(), nullptr);
    EXPECT_NE(editor(), nullptr);
}

TEST_F(WelcomeTest, ShowsEightRecentsAtOnce) {
    for (int number = 0; number < 8; ++number)
        savePackage(QStringLiteral("cat %1.quillabrae").arg(number));
    showPanel();
    panel->setFixedSize(windowTraits(WindowRole::welcome).size);
    runDeferred();
    const auto rows = panel->findChildren<RecentRow*>();
    ASSERT_EQ(rows.size(), 8);
    for (const RecentRow* row : rows) EXPECT_EQ(row->visibleRegion().boundingRect(), row->rect());
}

TEST_F(WelcomeTest, ClosesByItsOwnControlAndWithEscape) {
    showPanel();
    panel->findChild<QAbstractButton*>(QStringLiteral("closeWelcome"))->click();
    runDeferred();
    EXPECT_FALSE(panel->isVisible());
    panel->show();
    QTest::keyClick(panel.get(), Qt::Key_Escape);
    runDeferred();
    EXPECT_FALSE(panel->isVisible());
}

TEST_F(WelcomeTest, HelpsWithTheTourAndTheList) {
    savePackage(QStringLiteral("cat.quillabrae"));
    showPanel();
    EXPECT_TRUE(shows(QStringLiteral("Coming from Paint.NET?")));
    EXPECT_TRUE(shows(QStringLiteral("Your muscle memory already knows most of this workspace.")));
    EXPECT_TRUE(shows(QStringLiteral("Take the 60-second workspace tour")));
    const auto* tour = panel->findChild<ActionRow*>();
    EXPECT_EQ(tour->accessibleDescription(),
              QStringLiteral("Open the Paint.NET quick-start guide"));
    const auto* remove = panel->findChild<RecentRow*>()->findChild<QAbstractButton*>();
    EXPECT_EQ(remove->accessibleName(), QStringLiteral("Remove from recents"));
}

TEST_F(WelcomeTest, LeadsItsButtonsToTheCoordinator) {
    showPanel();
    const auto buttons = panel->findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons.first()->text(), QStringLiteral("New Project"));
    EXPECT_EQ(buttons.last()->text(), QStringLiteral("Open Project..."));
    buttons.first()->click();
    buttons.last()->click();
    runDeferred();
    EXPECT_TRUE(dialogs.startedWith.has_value());
    EXPECT_EQ(panels.shown, QStringList(QStringLiteral("open")));
}

TEST_F(WelcomeTest, OpensTheTour) {
    showPanel();
    panel->findChild<ActionRow*>()->click();
    EXPECT_NE(quickStart(), nullptr);
}

} // namespace
} // namespace quillabrae::shell
