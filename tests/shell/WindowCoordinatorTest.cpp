// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PastedImage.h"
#include "persistence/AppPersistenceService.h"
#include "shell/ShellTest.h"

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QSpinBox>

namespace quillabrae::shell {
namespace {

using WindowCoordinatorTest = ShellTest;

TEST_F(WindowCoordinatorTest, MakesAtMostOneWindowOfARole) {
    coordinator->showWelcome();
    coordinator->showWelcome();
    coordinator->showPluginLibrary();
    coordinator->showPluginLibrary();
    EXPECT_EQ(windows.countOf(WindowRole::welcome), 1);
    EXPECT_EQ(windows.countOf(WindowRole::pluginLibrary), 1);
}

TEST_F(WindowCoordinatorTest, OpensTheQuickStartWithTheFirstWelcomeEverAndNotAgain) {
    coordinator->showWelcome();
    EXPECT_EQ(quickStart(), nullptr);
    runDeferred();
    ASSERT_NE(quickStart(), nullptr);
    quickStart()->close();
    welcome()->close();
    runDeferred();

    coordinator->showWelcome();
    runDeferred();
    EXPECT_EQ(quickStart(), nullptr);

    makeShell();
    coordinator->showWelcome();
    runDeferred();
    EXPECT_EQ(quickStart(), nullptr);
}

TEST_F(WindowCoordinatorTest, DoesNotCountTheWelcomeWindowAsVisible) {
    coordinator->showWelcome();
    EXPECT_EQ(coordinator->visibleWindowCount(), 0);
    coordinator->showPluginLibrary();
    EXPECT_EQ(coordinator->visibleWindowCount(), 1);
}

TEST_F(WindowCoordinatorTest, ShowsTheWelcomeWindowOnlyWhenNoOtherIsVisible) {
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    coordinator->showWelcomeIfNoVisibleWindows();
    EXPECT_EQ(windows.made, std::vector{WindowRole::editor});

    editor()->close();
    runDeferred();
    coordinator->showWelcomeIfNoVisibleWindows();
    EXPECT_NE(welcome(), nullptr);
}

TEST_F(WindowCoordinatorTest, ReopensWithTheWelcomeWindowWhenNothingIsVisible) {
    coordinator->reopen();
    ASSERT_NE(welcome(), nullptr);
    EXPECT_TRUE(welcome()->isVisible());
}

TEST_F(WindowCoordinatorTest, ReopensNothingNewWhileAWindowIsVisible) {
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    coordinator->reopen();
    EXPECT_EQ(windows.made, std::vector{WindowRole::editor});
}

TEST_F(WindowCoordinatorTest, BringsAMinimizedWindowBackOnReopening) {
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    editor()->showMinimized();
    coordinator->reopen();
    EXPECT_FALSE(editor()->isMinimized());
    EXPECT_EQ(welcome(), nullptr);
}

TEST_F(WindowCoordinatorTest, SelectsTheProjectThatTheEditorIsShownFor) {
    const QUuid first = makeProject(*store);
    makeProject(*store);
    coordinator->showEditorWindow(first);
    EXPECT_EQ(store->activeProjectID(), first);
    EXPECT_EQ(editor()->windowTitle(), QStringLiteral("Untitled - Quillabrae v1.0.0"));
}

TEST_F(WindowCoordinatorTest, KeepsTheEditorsTitleWithTheActiveProject) {
    const QUuid first = makeProject(*store);
    makeProject(*store);
    coordinator->showEditorWindow(std::nullopt);
    EXPECT_EQ(editor()->windowTitle(), QStringLiteral("Untitled 2 - Quillabrae v1.0.0"));
    coordinator->selectProject(first);
    EXPECT_EQ(editor()->windowTitle(), QStringLiteral("Untitled - Quillabrae v1.0.0"));
    saveTo(*store, QStringLiteral("cat.quillabrae"));
    EXPECT_EQ(editor()->windowTitle(), QStringLiteral("cat - Quillabrae v1.0.0"));
}

TEST_F(WindowCoordinatorTest, StartsTheNewProjectDialogAfterTheEventAndWithTheUsualSize) {
    coordinator->createNewProject();
    EXPECT_FALSE(dialogs.startedWith.has_value());
    runDeferred();
    EXPECT_EQ(dialogs.startedWith, QSizeF(900, 620));
    EXPECT_EQ(editor(), nullptr);
    EXPECT_TRUE(store->openProjects().empty());
}

TEST_F(WindowCoordinatorTest, StartsTheNewProjectDialogWithThePictureOnTheClipboard) {
    copyPicture(QSize(1234, 567));
    coordinator->createNewProject();
    runDeferred();
    EXPECT_EQ(dialogs.startedWith, QSizeF(1234, 567));
}

TEST_F(WindowCoordinatorTest, ShowsANewProjectInTheEditorInPlaceOfTheWelcomeWindow) {
    coordinator->showWelcome();
    runDeferred();
    dialogs.newProject = NewProjectDialogResult{30, 20, 72};
    coordinator->createNewProject();
    runDeferred();
    EXPECT_EQ(welcome(), nullptr);
    ASSERT_NE(editor(), nullptr);
    ASSERT_EQ(store->openProjects().size(), 1U);
    EXPECT_EQ(store->openProjects().front().canvasWidth, 30);
    EXPECT_EQ(store->openProjects().front().resolutionDPI, 72);
}

TEST_F(WindowCoordinatorTest, DropsWhatItPutOffWhenItGoes) {
    coordinator->createNewProject();
    coordinator.reset();
    runDeferred();
    EXPECT_FALSE(dialogs.startedWith.has_value());
}

TEST_F(WindowCoordinatorTest, BelongsDialogsToTheEditorElseToTheWelcomeWindow) {
    coordinator->showWelcome();
    EXPECT_EQ(coordinator->dialogParent(), welcome());
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    EXPECT_EQ(coordinator->dialogParent(), editor());
}

TEST_F(WindowCoordinatorTest, ClosesTheWelcomeWindowWhenOneFileOpens) {
    coordinator->showWelcome();
    coordinator->openFiles({writePicture(QStringLiteral("red.png"))});
    EXPECT_EQ(welcome(), nullptr);
    EXPECT_NE(editor(), nullptr);
}

TEST_F(WindowCoordinatorTest, LeavesTheWelcomeWindowUpWhenAFileFails) {
    coordinator->showWelcome();
    coordinator->openFiles({writeBrokenPicture(QStringLiteral("broken.png"))});
    EXPECT_NE(welcome(), nullptr);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
}

TEST_F(WindowCoordinatorTest, EndsWithTheLastOfSeveralFilesSelectedAndSkipsTheBrokenOne) {
    const QUrl package = savePackage(QStringLiteral("first.quillabrae"));
    const QUrl picture = writePicture(QStringLiteral("last.png"));
    coordinator->openFiles({package, writeBrokenPicture(QStringLiteral("broken.png")), picture});
    ASSERT_EQ(store->openProjects().size(), 2U);
    EXPECT_EQ(store->activeProject()->fileURL, picture);
}

TEST_F(WindowCoordinatorTest, OpensARecentProject) {
    const QUrl package = savePackage(QStringLiteral("cat.quillabrae"));
    coordinator->showWelcome();
    coordinator->openRecent(store->recents().front());
    EXPECT_EQ(welcome(), nullptr);
    ASSERT_NE(store->activeProject(), nullptr);
    EXPECT_EQ(store->activeProject()->fileURL, package);
}

TEST_F(WindowCoordinatorTest, LeavesAGoneRecentListedAndSaysWhyItFailed) {
    const QUrl package = savePackage(QStringLiteral("cat.quillabrae"));
    ASSERT_TRUE(QDir(package.toLocalFile()).removeRecursively());
    coordinator->showWelcome();
    coordinator->openRecent(store->recents().front());
    EXPECT_NE(welcome(), nullptr);
    EXPECT_EQ(store->recents().size(), 1U);
    EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Open failed: ")));
}

TEST_F(WindowCoordinatorTest, TakesInADropAfterItIsOver) {
    coordinator->acceptDrop(dropOf(writePicture(QStringLiteral("red.png"))), WindowRole::welcome);
    EXPECT_EQ(editor(), nullptr);
    runDeferred();
    EXPECT_NE(editor(), nullptr);
}

TEST_F(WindowCoordinatorTest, LeavesItsWindowsAsTheyAreWhenADropHoldsNoPicture) {
    coordinator->showWelcome();
    coordinator->acceptDrop(dropOf(writeBrokenPicture(QStringLiteral("letter.txt"))),
                            WindowRole::welcome);
    runDeferred();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_NE(welcome(), nullptr);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Drop failed: no image found"));
}

TEST_F(WindowCoordinatorTest, PastesAsAProjectWhereThereIsNoEditor) {
    coordinator->showWelcome();
    copyPicture(QSize(5, 4));
    coordinator->pasteImageFromClipboard();
    runDeferred();
    EXPECT_EQ(panels.shown, QStringList());
    EXPECT_EQ(welcome(), nullptr);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(store->activeProject()->title, QStringLiteral("Pasted Image"));
}

TEST_F(WindowCoordinatorTest, PastesIntoTheProjectOfTheEditor) {
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    copyPicture(QSize(5, 4));
    coordinator->pasteImageFromClipboard();
    EXPECT_FALSE(store->activeProject()->floatingSelection);
    runDeferred();
    EXPECT_EQ(store->openProjects().size(), 1U);
    EXPECT_TRUE(store->activeProject()->floatingSelection);
}

TEST_F(WindowCoordinatorTest, PastesAsAProjectWhileTheWelcomeWindowIsTheActiveOne) {
    makeProject(*store);
    coordinator->showEditorWindow(store->activeProjectID());
    coordinator->showWelcome();
    QApplication::setActiveWindow(welcome());
    copyPicture(QSize(5, 4));
    coordinator->pasteImageFromClipboard();
    runDeferred();
    EXPECT_EQ(store->openProjects().size(), 2U);
    EXPECT_EQ(welcome(), nullptr);
}

TEST_F(WindowCoordinatorTest, LeavesAPasteWithoutAnImageToTheTextFieldInFocus) {
    coordinator->showEditorWindow(std::nullopt);
    auto* field = new QSpinBox(editor());
    field->show();
    QApplication::setActiveWindow(editor());
    field->setFocus();
    field->selectAll();
    pasteboard.put({{platform::MimeTypes::text, "42"}});
    QGuiApplication::clipboard()->setText(QStringLiteral("42"));
    coordinator->pasteImageFromClipboard();
    runDeferred();
    EXPECT_EQ(field->value(), 42);
    EXPECT_TRUE(store->openProjects().empty());
}

TEST_F(WindowCoordinatorTest, ShowsAPastedImageAsAProject) {
    makeProject(*store);
    const auto pixels = store->activeProject()->layers.front().bitmapPNGData;
    store->closeProject(*store->activeProjectID());
    coordinator->openImageAsNewProject({*pixels, 8, 6, {}, {}});
    runDeferred();
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(store->activeProject()->canvasWidth, 8);
}

TEST_F(WindowCoordinatorTest, ClosesTheEditorWithItsLastTab) {
    makeProject(*store);
    const QUuid last = makeProject(*store);
    coordinator->showEditorWindow(last);
    coordinator->closeActiveProject();
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->windowTitle(), QStringLiteral("Untitled - Quillabrae v1.0.0"));
    coordinator->closeActiveProject();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(welcome(), nullptr);
}

TEST_F(WindowCoordinatorTest, KeepsTheEditorWhenClosingATabIsCancelled) {
    makeProject(*store);
    edit(*store);
    coordinator->showEditorWindow(std::nullopt);
    panels.closeChoices = {store::SaveBeforeCloseChoice::cancel};
    coordinator->closeProject(*store->activeProjectID());
    EXPECT_NE(editor(), nullptr);
    EXPECT_EQ(store->openProjects().size(), 1U);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Close cancelled"));
}

TEST_F(WindowCoordinatorTest, ClosesAllTabsSilentlyWithTheEditorsOwnCloseButton) {
    makeProject(*store);
    edit(*store);
    makeProject(*store);
    coordinator->showEditorWindow(std::nullopt);
    EXPECT_TRUE(editor()->close());
    EXPECT_TRUE(panels.shown.isEmpty());
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_TRUE(windows.countOf(WindowRole::welcome) == 0);
    const auto session = persistence::AppPersistenceService::loadAutosavedSession(recoveryFile());
    ASSERT_TRUE(session.has_value());
    EXPECT_TRUE(session->projects.empty());
}

TEST_F(WindowCoordinatorTest, SetsUnsavedWorkAsideBeforeTheEditorCloses) {
    const QUuid id = makeProject(*store);
    edit(*store, QStringLiteral("Paint"));
    coordinator->showEditorWindow(std::nullopt);
    editor()->close();
    EXPECT_TRUE(store->hasClosedWork());

    coordinator->showWelcome();
    coordinator->reopenClosedWork();
    EXPECT_EQ(welcome(), nullptr);
    ASSERT_NE(editor(), nullptr);
    ASSERT_EQ(store->openProjects().size(), 1U);
    EXPECT_EQ(titles(*store, id).last(), QStringLiteral("Paint"));
    EXPECT_FALSE(store->hasClosedWork());
}

TEST_F(WindowCoordinatorTest, SetsNothingAsideWhenNothingIsUnsaved) {
    makeProject(*store);
    saveTo(*store, QStringLiteral("cat.quillabrae"));
    makeProject(*store);
    coordinator->showEditorWindow(std::nullopt);
    editor()->close();
    EXPECT_FALSE(store->hasClosedWork());
}

TEST_F(WindowCoordinatorTest, StaysOpenWhenUnsavedWorkCannotBeSetAside) {
    makeProject(*store);
    edit(*store);
    coordinator->showEditorWindow(std::nullopt);
    // A folder in the file's place, which no file can replace.
    ASSERT_TRUE(QDir().mkpath(closedWorkFile() + QStringLiteral("/in/the/way")));
    EXPECT_FALSE(editor()->close());
    EXPECT_NE(editor(), nullptr);
    EXPECT_EQ(store->openProjects().size(), 1U);
    EXPECT_EQ(store->statusMessage(),
              QStringLiteral("Close cancelled: the open work could not be kept"));
}

TEST_F(WindowCoordinatorTest, WritesTheRecoveryFileWhenTheEditorBecomesActive) {
    makeProject(*store);
    coordinator->showEditorWindow(std::nullopt);
    runDeferred();
    QFile::remove(recoveryFile());
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(editor(), &activation);
    EXPECT_TRUE(QFile::exists(recoveryFile()));
}

TEST_F(WindowCoordinatorTest, GivesAnEditorWithoutTabsUpForTheWelcomeWindow) {
    coordinator->showEditorWindow(std::nullopt);
    coordinator->closeEmptyEditor();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_NE(welcome(), nullptr);
}

TEST_F(WindowCoordinatorTest, AsksForTheEndOnceTheEventIsOver) {
    const QSignalSpy asked(coordinator.get(), &WindowCoordinator::quitRequested);
    coordinator->requestQuit();
    EXPECT_EQ(asked.count(), 0);
    runDeferred();
    EXPECT_EQ(asked.count(), 1);
}

} // namespace
} // namespace quillabrae::shell
