// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PastedImage.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/StoreTest.h"

#include <QSignalSpy>

namespace quillabrae::store {
namespace {

using ProjectLifecycle = StoreTest;
using testing::ElementsAre;

model::PastedImage pastedImage() {
    const auto bytes = raster::LayerRasterService::solidColorPNGData(7, 3, {0.0, 1.0, 0.0, 1.0});
    return {*bytes, 7.0, 3.0, std::nullopt, std::nullopt};
}

TEST_F(ProjectLifecycle, AStoreStartsEmptyAndReady) {
    const auto store = makeStore();
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_EQ(store->activeProjectID(), std::nullopt);
    EXPECT_FALSE(store->hasActiveProject());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
    EXPECT_EQ(store->settings(), model::PaintAppSettings());
}

TEST_F(ProjectLifecycle, ANewProjectIsOneWhiteLayerStandingAtItsFirstHistoryEntry) {
    const auto store = makeStore();
    const model::PaintProject made = store->createUntitledProject(8, 6, 72);
    ASSERT_EQ(store->openProjects().size(), 1u);
    const model::PaintProject& project = store->openProjects().front();
    EXPECT_EQ(project, made);
    EXPECT_EQ(store->activeProjectID(), made.id);
    EXPECT_EQ(project.title, QStringLiteral("Untitled"));
    EXPECT_EQ(project.fileURL, std::nullopt);
    EXPECT_EQ(project.resolutionDPI, 72.0);
    EXPECT_FALSE(project.isCanvasSelected);
    EXPECT_EQ(project.pixelSelection, std::nullopt);
    ASSERT_EQ(project.layers.size(), 1u);
    EXPECT_EQ(project.layers.front().name, QStringLiteral("Background"));
    EXPECT_EQ(project.selectedLayerID, project.layers.front().id);
    EXPECT_EQ(project.layers.front().opacity, 1.0);
    ASSERT_TRUE(project.layers.front().bitmapPNGData);
    const QImage pixels = raster::decodedImage(*project.layers.front().bitmapPNGData).toQImage();
    EXPECT_EQ(pixels.size(), QSize(8, 6));
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x) EXPECT_EQ(pixels.pixel(x, y), 0xFFFFFFFFu);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));
    EXPECT_EQ(titles(*store, made.id), QStringList{QStringLiteral("New Project")});
    EXPECT_EQ(store->history(made.id).entries.front().symbolName, QStringLiteral("plus.square"));
}

TEST_F(ProjectLifecycle, UntitledNumbersAreNotUsedTwice) {
    const auto store = makeStore();
    makeProject(*store);
    const QUuid second = makeProject(*store);
    EXPECT_EQ(store->projectTitle(second), QStringLiteral("Untitled 2"));
    store->closeProject(second);
    EXPECT_EQ(store->projectTitle(makeProject(*store)), QStringLiteral("Untitled 3"));
}

TEST_F(ProjectLifecycle, SizesAreRoundedToWholeNumbersOfAtLeastOne) {
    const auto store = makeStore();
    const auto project = store->createUntitledProject(0.4, 99.5, -3);
    EXPECT_EQ(project.canvasWidth, 1.0);
    EXPECT_EQ(project.canvasHeight, 100.0);
    EXPECT_EQ(project.resolutionDPI, 1.0);
}

TEST_F(ProjectLifecycle, AProjectFromAnImageIsSelectedWholeWithTheMoveTool) {
    const auto store = makeStore();
    store->setCanvasViewportSize({900, 700});
    const QUuid fit = store->zoomToFitRequestID();
    const auto project = store->createProject(pastedImage());
    EXPECT_EQ(project.title, QStringLiteral("Pasted Image"));
    EXPECT_TRUE(project.isCanvasSelected);
    EXPECT_EQ(project.pixelSelection, (model::PixelSelection{0, 0, 7, 3, std::nullopt}));
    EXPECT_EQ(store->settings().selectedTool, model::PaintTool::moveSelectedPixels);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Pasted Image from clipboard"));
    EXPECT_EQ(titles(*store, project.id), QStringList{QStringLiteral("Paste")});
    EXPECT_EQ(store->zoomToFitRequestID(), fit);
    EXPECT_EQ(store->createProject(pastedImage()).title, QStringLiteral("Pasted Image 2"));
    EXPECT_TRUE(store->hasUnsavedChanges(project.id));
}

TEST_F(ProjectLifecycle, ANewProjectClosesWithoutAQuestion) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    EXPECT_TRUE(store->isProjectUnsaved(*store->project(id)));
    EXPECT_FALSE(store->hasUnsavedChanges(id));
    EXPECT_TRUE(store->closeProjectRequestingSave(id));
    EXPECT_TRUE(panels.shown.isEmpty());
    EXPECT_TRUE(store->openProjects().empty());
}

TEST_F(ProjectLifecycle, AnEditedProjectAsksBeforeItCloses) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    edit(*store);
    EXPECT_FALSE(store->closeProjectRequestingSave(id));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Close cancelled"));
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("save Untitled")});
    ASSERT_TRUE(store->project(id));

    panels.closeChoices = {SaveBeforeCloseChoice::discard};
    EXPECT_TRUE(store->closeActiveProjectRequestingSave());
    EXPECT_EQ(store->project(id), nullptr);
}

TEST_F(ProjectLifecycle, AnUndoneEditDoesNotMakeAProjectBlankAgain) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    edit(*store);
    store->undo(id);
    EXPECT_FALSE(store->isBlankUntouchedProject(*store->project(id)));
    EXPECT_TRUE(store->hasUnsavedChanges(id));
}

TEST_F(ProjectLifecycle, ASavedProjectUndoneBackToItsSavedStateIsSaved) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, QStringLiteral("a.quillabrae"));
    EXPECT_FALSE(store->hasUnsavedChanges(id));
    edit(*store);
    EXPECT_TRUE(store->hasUnsavedChanges(id));
    store->undo(id);
    EXPECT_FALSE(store->hasUnsavedChanges(id));
}

TEST_F(ProjectLifecycle, AProjectWithoutAJsonFormCountsAsUnsaved) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, QStringLiteral("a.quillabrae"));
    store->editActiveProject([](model::PaintProject& project) {
        project.resolutionDPI = std::numeric_limits<double>::infinity();
    });
    EXPECT_TRUE(store->hasUnsavedChanges(id));
}

TEST_F(ProjectLifecycle, ClosingTheActiveTabActivatesTheOneThatTakesItsPlace) {
    const auto store = makeStore();
    const QUuid a = makeProject(*store);
    const QUuid b = makeProject(*store);
    const QUuid c = makeProject(*store);
    store->closeProject(c);
    EXPECT_EQ(store->activeProjectID(), b);
    store->setActiveProjectID(a);
    store->closeProject(a);
    EXPECT_EQ(store->activeProjectID(), b);
    store->closeProject(b);
    EXPECT_EQ(store->activeProjectID(), std::nullopt);
}

TEST_F(ProjectLifecycle, ClosingAnotherTabKeepsTheActiveOne) {
    const auto store = makeStore();
    const QUuid a = makeProject(*store);
    const QUuid b = makeProject(*store);
    store->closeProject(a);
    EXPECT_EQ(store->activeProjectID(), b);
    EXPECT_TRUE(store->history(a).entries.empty());
}

TEST_F(ProjectLifecycle, AnIdIsTakenFromTheProjectThatIsClosedByIt) {
    const auto store = makeStore();
    makeProject(*store);
    const QUuid second = makeProject(*store);
    store->setActiveProjectID(store->openProjects().front().id);
    store->closeProject(store->openProjects().front().id);
    EXPECT_EQ(store->activeProjectID(), second);
}

TEST_F(ProjectLifecycle, ClosingAllTabsLeavesNone) {
    const auto store = makeStore();
    makeProject(*store);
    makeProject(*store);
    store->closeAllProjects();
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_EQ(store->activeProjectID(), std::nullopt);
    EXPECT_EQ(makeStore()->openProjects().size(), 0u);
}

TEST_F(ProjectLifecycle, AStaleIdMeansNothingToDo) {
    const auto store = makeStore();
    const QUuid stranger = QUuid::createUuid();
    store->closeProject(stranger);
    EXPECT_FALSE(store->closeProjectRequestingSave(stranger));
    EXPECT_FALSE(store->closeActiveProjectRequestingSave());
    EXPECT_FALSE(store->hasUnsavedChanges(stranger));
    EXPECT_FALSE(store->saveProjectForClose(stranger));
    EXPECT_EQ(store->projectTitle(stranger), QStringLiteral("Quillabrae"));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
    store->setActiveProjectID(stranger);
    EXPECT_EQ(store->activeIndex(), std::nullopt);
    EXPECT_FALSE(store->hasActiveProject());
}

TEST_F(ProjectLifecycle, TitlesComeFromTheFileOnceThereIsOne) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, QStringLiteral("harbour.v2.quillabrae"));
    EXPECT_EQ(store->projectTitle(id), QStringLiteral("harbour.v2"));
}

TEST_F(ProjectLifecycle, ObserversHearOnlyOfWhatHasChanged) {
    const auto store = makeStore();
    makeProject(*store);
    QSignalSpy project(store.get(), &ProjectStore::projectChanged);
    QSignalSpy settings(store.get(), &ProjectStore::settingsChanged);
    QSignalSpy status(store.get(), &ProjectStore::statusMessageChanged);
    QSignalSpy active(store.get(), &ProjectStore::activeProjectChanged);
    EXPECT_TRUE(store->editActiveProject([](model::PaintProject&) {}));
    store->editSettings([](model::PaintAppSettings&) {});
    store->setStatusMessage(store->statusMessage());
    store->setActiveProjectID(store->activeProjectID());
    EXPECT_EQ(project.count() + settings.count() + status.count() + active.count(), 0);

    store->editActiveProject([](model::PaintProject& p) { p.title = QStringLiteral("Boat"); });
    EXPECT_EQ(project.count(), 1);
    EXPECT_EQ(store->activeProject()->title, QStringLiteral("Boat"));
}

TEST_F(ProjectLifecycle, AnEditWithoutAnActiveProjectIsRefused) {
    const auto store = makeStore();
    EXPECT_FALSE(store->editActiveProject([](model::PaintProject&) { FAIL(); }));
}

} // namespace
} // namespace quillabrae::store
