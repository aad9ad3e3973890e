// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ShellTest.h"
#include "shell/app/AppDelegate.h"

#include <QTest>

namespace quillabrae::shell {
namespace {

using store::SaveBeforeCloseChoice;

class AppDelegateTest : public ShellTest {
protected:
    AppDelegateTest() { makeDelegate(); }

    void makeDelegate() {
        delegate = std::make_unique<AppDelegate>(
            *store, *coordinator,
            AppDelegate::Hooks{.afterFirstFrame = [this] { ++lateLaunches; },
                               .quit = [this] { ++quits; },
                               .followLink = [this](const QUrl& link) { links.append(link); }});
    }
    void restart() {
        delegate.reset();
        makeShell();
        makeDelegate();
    }
    void waitForFirstFrame() const {
        EXPECT_TRUE(QTest::qWaitFor([this] { return lateLaunches > 0; }));
        runDeferred();
    }

    static platform::StartRequest files(const QUrl& file) { return {{file}}; }

    int lateLaunches = 0;
    int quits = 0;
    QList<QUrl> links;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(AppDelegateTest, LaunchesWithTheWelcomeWindow) {
    delegate->finishLaunching({});
    EXPECT_EQ(windows.made, std::vector{WindowRole::welcome});
}

TEST_F(AppDelegateTest, LaunchesStraightIntoRecoveredWork) {
    const QUuid id = makeProject(*store);
    edit(*store);
    restart();
    delegate->finishLaunching({});
    waitForFirstFrame();
    EXPECT_EQ(windows.made, std::vector{WindowRole::editor});
    EXPECT_EQ(store->activeProjectID(), id);
}

TEST_F(AppDelegateTest, LeavesWhatTheFirstFrameDoesNotNeedForAfterIt) {
    delegate->finishLaunching({});
    EXPECT_EQ(lateLaunches, 0);
    waitForFirstFrame();
    EXPECT_EQ(lateLaunches, 1);
}

TEST_F(AppDelegateTest, ShowsTheEditorAtOnceForFilesAndOpensThemAfterItsFirstFrame) {
    delegate->finishLaunching(files(writePicture(QStringLiteral("red.png"))));
    EXPECT_EQ(windows.made, std::vector{WindowRole::editor});
    EXPECT_TRUE(store->openProjects().empty());
    waitForFirstFrame();
    EXPECT_EQ(store->openProjects().size(), 1U);
    EXPECT_EQ(windows.made, std::vector{WindowRole::editor});
}

TEST_F(AppDelegateTest, FallsBackToTheWelcomeWindowWhenNoFileOpens) {
    delegate->finishLaunching(files(writeBrokenPicture(QStringLiteral("broken.png"))));
    waitForFirstFrame();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_NE(welcome(), nullptr);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
}

TEST_F(AppDelegateTest, OpensALaterStartsFilesAsTabs) {
    delegate->finishLaunching({});
    delegate->answer(files(writePicture(QStringLiteral("red.png"))));
    delegate->answer(files(writePicture(QStringLiteral("blue.png"), Qt::blue)));
    EXPECT_EQ(store->openProjects().size(), 2U);
    EXPECT_EQ(windows.countOf(WindowRole::editor), 1);
    EXPECT_EQ(welcome(), nullptr);
}

TEST_F(AppDelegateTest, ComesBackWhenALaterStartsFilesFailAndNothingIsVisible) {
    delegate->answer(files(writeBrokenPicture(QStringLiteral("broken.png"))));
    EXPECT_NE(welcome(), nullptr);
}

TEST_F(AppDelegateTest, FollowsLinksAtTheStartAndLater) {
    const QUrl early(QStringLiteral("quillabrae://auth/callback?code=1"));
    const QUrl late(QStringLiteral("quillabrae://auth/callback?code=2"));
    delegate->finishLaunching({.links = {early}});
    waitForFirstFrame();
    EXPECT_EQ(links, QList<QUrl>{early});
    const std::size_t made = windows.made.size();
    delegate->answer({.links = {late}});
    EXPECT_EQ(links, (QList<QUrl>{early, late}));
    EXPECT_EQ(windows.made.size(), made) << "a link by itself opens no window";
}

TEST_F(AppDelegateTest, RunsTheActionsOfTheDesktopFileAndNoOthers) {
    delegate->finishLaunching({});
    waitForFirstFrame();
    delegate->answer({.action = QStringLiteral("quit")});
    runDeferred();
    EXPECT_TRUE(panels.shown.isEmpty());
    delegate->answer({.action = QStringLiteral("open-file")});
    runDeferred();
    EXPECT_EQ(panels.shown, QStringList(QStringLiteral("open")));
}

TEST_F(AppDelegateTest, RunsAnActionThatItWasStartedFor) {
    delegate->finishLaunching({.action = QStringLiteral("open-file")});
    waitForFirstFrame();
    runDeferred();
    EXPECT_EQ(panels.shown, QStringList(QStringLiteral("open")));
}

TEST_F(AppDelegateTest, RunsNoActionWhileADialogWaitsForItsAnswer) {
    delegate->finishLaunching({});
    waitForFirstFrame();
    QWidget dialog;
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    delegate->answer({.action = QStringLiteral("open-file")});
    runDeferred();
    EXPECT_TRUE(panels.shown.isEmpty());
}

TEST_F(AppDelegateTest, LeavesNoRecoveryFileAfterACleanEnd) {
    makeProject(*store);
    saveTo(*store, QStringLiteral("cat.quillabrae"));
    ASSERT_TRUE(QFile::exists(recoveryFile()));
    delegate->terminate();
    EXPECT_EQ(quits, 1);
    EXPECT_FALSE(QFile::exists(recoveryFile()));
}

TEST_F(AppDelegateTest, AsksForEachUnsavedTabBeforeItEnds) {
    makeProject(*store);
    edit(*store);
    makeProject(*store);
    edit(*store);
    panels.closeChoices = {SaveBeforeCloseChoice::discard, SaveBeforeCloseChoice::discard};
    delegate->terminate();
    EXPECT_EQ(panels.shown,
              QStringList({QStringLiteral("save Untitled"), QStringLiteral("save Untitled 2")}));
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, StaysWhenTheUserCancels) {
    makeProject(*store);
    edit(*store);
    panels.closeChoices = {SaveBeforeCloseChoice::cancel};
    delegate->terminate();
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Quit cancelled"));
    EXPECT_TRUE(QFile::exists(recoveryFile()));
}

TEST_F(AppDelegateTest, AsksOneSetOfQuestionsAtATime) {
    makeProject(*store);
    edit(*store);
    panels.whileAsked = [this] { delegate->terminate(); };
    panels.closeChoices = {SaveBeforeCloseChoice::discard};
    delegate->terminate();
    EXPECT_EQ(panels.shown.size(), 1);
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, EndsWhenTheQuitCommandIsRun) {
    coordinator->requestQuit();
    runDeferred();
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, TakesTheDesktopsRequestToQuitAsItsOwn) {
    makeProject(*store);
    edit(*store);
    panels.closeChoices = {SaveBeforeCloseChoice::cancel, SaveBeforeCloseChoice::discard};
    QObject application;
    application.installEventFilter(delegate.get());
    QEvent refused(QEvent::Quit);
    QCoreApplication::sendEvent(&application, &refused);
    EXPECT_FALSE(refused.isAccepted());
    EXPECT_EQ(quits, 0);
    QEvent granted(QEvent::Quit);
    QCoreApplication::sendEvent(&application, &granted);
    EXPECT_TRUE(granted.isAccepted());
    EXPECT_EQ(quits, 1);
}

} // namespace
} // namespace quillabrae::shell
