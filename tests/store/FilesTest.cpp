// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "store/OpenAndSaveFixture.h"

#include <QFile>
#include <QImage>

namespace quillabrae::store {
namespace {

using persistence::SaveFormat;

TEST_F(OpenAndSave, ASavedProjectIsAttachedToItsPackageAndUnmodified) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    const QDateTime before = store->project(id)->lastModified;
    saveTo(*store, boat);
    EXPECT_EQ(store->project(id)->fileURL, file(boat));
    EXPECT_GT(store->project(id)->lastModified, before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Saved boat.quillabrae"));
    EXPECT_FALSE(store->isProjectUnsaved(*store->project(id)));
    EXPECT_EQ(store->recents().front().title, QStringLiteral("boat"));
    EXPECT_EQ(titles(*store, id), QStringList{QStringLiteral("New Project")});
}

TEST_F(OpenAndSave, AnOpenedPackageIsWhatWasSaved) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    addLayer(*store);
    saveTo(*store, boat);
    const model::PaintProject saved = *store->project(id);
    store->closeProject(id);

    const auto opened = store->openProject(file(boat));
    ASSERT_TRUE(opened) << qPrintable(store->statusMessage());
    EXPECT_EQ(model::ProjectFingerprint::of(*opened), model::ProjectFingerprint::of(saved));
    EXPECT_EQ(opened->fileURL, file(boat));
    EXPECT_EQ(store->activeProjectID(), id);
    EXPECT_FALSE(store->hasUnsavedChanges(id));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Opened boat"));
    EXPECT_EQ(titles(*store, id), QStringList{QStringLiteral("Open Project")});
    EXPECT_EQ(store->history(id).entries.front().symbolName, QStringLiteral("folder"));
}

TEST_F(OpenAndSave, ASlashAfterAPackageChangesNothing) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, boat);
    const QUrl withSlash = QUrl::fromLocalFile(folder.filePath(boat) + QLatin1Char('/'));
    ASSERT_TRUE(store->openFile(withSlash));
    EXPECT_EQ(store->openProjects().size(), 1u);
    EXPECT_EQ(store->project(id)->fileURL, file(boat));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Opened boat"));
    store->saveActiveProject();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Saved boat.quillabrae"));
    EXPECT_TRUE(panels.shown.isEmpty());
    EXPECT_EQ(store->recents().size(), 1u);
}

TEST_F(OpenAndSave, AnOpenPackageOpenedAgainReplacesItsTabInPlace) {
    const auto store = makeStore();
    const QUuid first = makeProject(*store);
    saveTo(*store, boat);
    const QUuid second = makeProject(*store);
    store->setActiveProjectID(first);
    edit(*store);
    ASSERT_TRUE(store->openProject(file(boat)));
    ASSERT_EQ(store->openProjects().size(), 2u);
    EXPECT_EQ(store->openProjects()[0].id, first);
    EXPECT_EQ(store->openProjects()[1].id, second);
    EXPECT_EQ(store->openProjects()[0].layers.front().name, QStringLiteral("Background"));
    EXPECT_FALSE(store->hasUnsavedChanges(first));
    EXPECT_EQ(titles(*store, first),
              QStringList({QStringLiteral("New Project"), QStringLiteral("Edit"),
                           QStringLiteral("Open Project")}));
}

TEST_F(OpenAndSave, ACopyAtAnotherPathIsATabAndAProjectOfItsOwn) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, QStringLiteral("copy.quillabrae"));
    saveTo(*store, boat);
    const auto copy = store->openProject(file(QStringLiteral("copy.quillabrae")));
    ASSERT_TRUE(copy);
    ASSERT_EQ(store->openProjects().size(), 2u);
    EXPECT_NE(copy->id, id);
    EXPECT_EQ(store->activeProjectID(), copy->id);
    edit(*store);
    EXPECT_TRUE(store->hasUnsavedChanges(copy->id));
    EXPECT_FALSE(store->hasUnsavedChanges(id));
}

TEST_F(OpenAndSave, WhatCannotBeReadIsSaidAndChangesNothing) {
    const auto store = makeStore();
    EXPECT_EQ(store->openProject(file(QStringLiteral("none.quillabrae"))), std::nullopt);
    EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Open failed: ")));
    EXPECT_GT(store->statusMessage().size(), 13);
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_TRUE(store->recents().empty());
}

TEST_F(OpenAndSave, AFailedSaveSaysWhyAndChangesNothing) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    const model::PaintProject before = *store->project(id);
    QFile notAFolder(folder.filePath(QStringLiteral("plain")));
    ASSERT_TRUE(notAFolder.open(QIODevice::WriteOnly));
    for (const auto format : {SaveFormat::project, SaveFormat::png}) {
        const QUrl target = file(QStringLiteral("plain/boat.x"));
        EXPECT_FALSE(store->saveProject(0, {target, format}));
        EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Save failed: ")));
        EXPECT_EQ(*store->project(id), before);
    }
    EXPECT_TRUE(store->recents().empty());
    EXPECT_FALSE(store->saveProject(7, {file(boat), SaveFormat::project}));
}

TEST_F(OpenAndSave, SavingAProjectWithoutAFileAsksWhere) {
    const auto store = makeStore();
    makeProject(*store);
    store->saveActiveProject();
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("destination Untitled")});
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));
    panels.saveDestinations = {{file(boat), SaveFormat::project}};
    store->saveActiveProject();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Saved boat.quillabrae"));
    panels.shown.clear();
    store->saveActiveProject();
    EXPECT_TRUE(panels.shown.isEmpty());
    store->saveActiveProjectAs();
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("destination boat")});
}

TEST_F(OpenAndSave, AnUnknownExtensionIsAskedAbout) {
    const auto store = makeStore();
    makeProject(*store);
    store->editActiveProject([&](model::PaintProject& project) {
        project.fileURL = file(QStringLiteral("drawing.xyz"));
    });
    store->saveActiveProject();
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("destination drawing")});
}

TEST_F(OpenAndSave, SavingWithoutAProjectDoesNothing) {
    const auto store = makeStore();
    store->saveActiveProject();
    store->saveActiveProjectAs();
    EXPECT_TRUE(panels.shown.isEmpty());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
}

TEST_F(OpenAndSave, LayersAreFlattenedIntoAnImageOnlyWhenThatIsAgreed) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    addLayer(*store);
    const QUrl target = file(QStringLiteral("boat.png"));
    EXPECT_FALSE(store->saveProject(0, {target, SaveFormat::png}));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Save cancelled"));
    EXPECT_FALSE(QFile::exists(target.toLocalFile()));

    panels.flattenedSaves = {true, true};
    EXPECT_TRUE(store->saveProject(0, {target, SaveFormat::png}));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Saved boat.png"));
    EXPECT_EQ(store->project(id)->fileURL, target);
    EXPECT_FALSE(store->hasUnsavedChanges(id));
    EXPECT_TRUE(store->recents().empty());
    EXPECT_EQ(QImage(target.toLocalFile()).size(), QSize(8, 6));
    store->saveActiveProject();
    EXPECT_EQ(panels.shown, QStringList(3, QStringLiteral("flatten 2")));
}

TEST_F(OpenAndSave, AnImageOpensAsAnUnmodifiedProjectOfThatFile) {
    const auto store = makeStore();
    const QUrl picture = writePicture(QStringLiteral("red sail.png"));
    const auto project = store->createProject(picture);
    ASSERT_TRUE(project);
    EXPECT_EQ(project->title, QStringLiteral("red sail"));
    EXPECT_EQ(project->fileURL, picture);
    EXPECT_EQ(project->canvasWidth, 5.0);
    EXPECT_EQ(project->canvasHeight, 4.0);
    EXPECT_FALSE(store->hasUnsavedChanges(project->id));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Opened red sail.png"));
    EXPECT_TRUE(store->recents().empty());
    const QImage pixels = raster::decodedImage(*project->layers.front().bitmapPNGData).toQImage();
    EXPECT_EQ(pixels.pixel(4, 3), 0xFFFF0000u);
}

TEST_F(OpenAndSave, AnImageEditedAndUndoneIsUnmodifiedUnderItsOwnName) {
    const auto store = makeStore();
    const auto opened = store->createProject(writePicture(QStringLiteral("sail.png")));
    ASSERT_TRUE(opened);
    edit(*store);
    EXPECT_TRUE(store->hasUnsavedChanges(opened->id));
    store->undo(opened->id);
    EXPECT_EQ(store->project(opened->id)->title, QStringLiteral("sail"));
    EXPECT_FALSE(store->hasUnsavedChanges(opened->id));
    EXPECT_EQ(titles(*store, opened->id),
              QStringList({QStringLiteral("Paste"), QStringLiteral("Edit")}));
}

TEST_F(OpenAndSave, SaveWritesTheOpenedImageAgain) {
    const auto store = makeStore();
    const QUrl picture = writePicture(QStringLiteral("sail.png"), Qt::red);
    const auto blue = writePicture(QStringLiteral("blue.png"), Qt::blue);
    ASSERT_TRUE(store->createProject(picture));
    QFile bytes(blue.toLocalFile());
    ASSERT_TRUE(bytes.open(QIODevice::ReadOnly));
    store->editActiveProject([&](model::PaintProject& project) {
        project.layers.front().bitmapPNGData = model::PngBytes(bytes.readAll());
        project.lastModified = clock.now();
    });
    EXPECT_TRUE(store->hasUnsavedChanges(*store->activeProjectID()));
    store->saveActiveProject();
    EXPECT_TRUE(panels.shown.isEmpty());
    EXPECT_EQ(QImage(picture.toLocalFile()).pixel(0, 0), 0xFF0000FFu);
    EXPECT_FALSE(store->hasUnsavedChanges(*store->activeProjectID()));
}

TEST_F(OpenAndSave, AnUnreadablePictureIsSaid) {
    const auto store = makeStore();
    QFile text(folder.filePath(QStringLiteral("note.png")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no picture");
    text.close();
    QFile::copy(text.fileName(), folder.filePath(QStringLiteral("note.svg")));
    for (const char* name : {"note.png", "note.svg", "none.jpg"}) {
        store->setStatusMessage(QStringLiteral("Ready"));
        EXPECT_EQ(store->openFile(file(QString::fromLatin1(name))), std::nullopt);
        EXPECT_EQ(store->statusMessage(), QStringLiteral("Open failed: image could not be read"));
    }
    EXPECT_TRUE(store->openProjects().empty());
}

TEST_F(OpenAndSave, ThePanelOpensPackagesAndImages) {
    const auto store = makeStore();
    makeProject(*store);
    saveTo(*store, boat);
    store->closeAllProjects();
    EXPECT_EQ(store->openProjectFromPanel(), std::nullopt);
    panels.projectsToOpen = {file(boat), writePicture(QStringLiteral("sail.PNG"))};
    EXPECT_TRUE(store->openProjectFromPanel());
    EXPECT_TRUE(store->openProjectFromPanel());
    EXPECT_EQ(store->openProjects().size(), 2u);
}

TEST_F(OpenAndSave, ClosingSavesToTheFileWithoutAskingWhere) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, boat);
    edit(*store);
    panels.closeChoices = {SaveBeforeCloseChoice::save};
    EXPECT_TRUE(store->closeProjectRequestingSave(id));
    EXPECT_EQ(panels.shown, QStringList{QStringLiteral("save boat")});
    EXPECT_EQ(store->openProject(file(boat))->layers.front().name, QStringLiteral("Backgroundx"));
}

TEST_F(OpenAndSave, ACancelledDestinationStopsTheClose) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    edit(*store);
    panels.closeChoices = {SaveBeforeCloseChoice::save};
    EXPECT_FALSE(store->closeProjectRequestingSave(id));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Save cancelled"));
    EXPECT_TRUE(store->project(id));
}

TEST_F(OpenAndSave, ASavedImageClosesWithoutAQuestion) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    saveTo(*store, QStringLiteral("boat.png"), SaveFormat::png);
    EXPECT_TRUE(store->closeProjectRequestingSave(id));
    EXPECT_TRUE(panels.shown.isEmpty());
}

TEST_F(OpenAndSave, QuittingAsksAboutEveryUnsavedTabInTurn) {
    const auto store = makeStore();
    const QUuid blank = makeProject(*store);
    makeProject(*store);
    saveTo(*store, boat);
    const QUuid edited = makeProject(*store);
    edit(*store);
    std::vector<QUuid> active;
    panels.whileAsked = [&] { active.push_back(*store->activeProjectID()); };
    panels.closeChoices = {SaveBeforeCloseChoice::discard, SaveBeforeCloseChoice::save};
    panels.saveDestinations = {{file(QStringLiteral("c.quillabrae")), SaveFormat::project}};
    EXPECT_TRUE(store->shouldTerminateAfterHandlingUnsavedProjects());
    EXPECT_EQ(active, (std::vector{blank, edited}));
    EXPECT_EQ(panels.shown,
              QStringList({QStringLiteral("save Untitled"), QStringLiteral("save Untitled 3"),
                           QStringLiteral("destination Untitled 3")}));
    EXPECT_EQ(store->openProjects().size(), 3u);
}

TEST_F(OpenAndSave, ACancelledQuestionStopsTheQuit) {
    const auto store = makeStore();
    makeProject(*store);
    EXPECT_FALSE(store->shouldTerminateAfterHandlingUnsavedProjects());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Quit cancelled"));
    panels.closeChoices = {SaveBeforeCloseChoice::save};
    EXPECT_FALSE(store->shouldTerminateAfterHandlingUnsavedProjects());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Save cancelled"));
}

TEST_F(OpenAndSave, AProjectReplacedByAnotherInItsFileForgetsItsHistory) {
    const auto store = makeStore();
    const QUuid first = makeProject(*store);
    saveTo(*store, boat);
    const auto other = makeStore(Persistence::off);
    const QUuid second = makeProject(*other);
    saveTo(*other, boat);
    ASSERT_TRUE(store->openProject(file(boat)));
    ASSERT_EQ(store->openProjects().size(), 1u);
    EXPECT_EQ(store->openProjects().front().id, second);
    EXPECT_TRUE(store->history(first).entries.empty());
}

/// A user who cancels at once whatever takes long.
class ImpatientUser final : public platform::WorkRunner {
public:
    QStringList titles;

    void run(const QString& title,
             const std::function<void(platform::WorkControl&)>& work) override {
        titles << title;
        platform::WorkControl control;
        control.cancel();
        work(control);
    }
};

TEST_F(OpenAndSave, ASaveCancelledWhileItRunsChangesNothing) {
    ImpatientUser user;
    ProjectStore store({panels, preferences, clock, icons, pasteboard, paths, user},
                       Persistence::on);
    const QUuid id = makeProject(store);
    const QString picture = QStringLiteral("a.png");
    EXPECT_FALSE(store.saveProject(0, {file(boat), SaveFormat::project}));
    EXPECT_FALSE(store.saveProject(0, {file(picture), SaveFormat::png}));
    EXPECT_EQ(user.titles, QStringList({QStringLiteral("Saving “%1”").arg(boat),
                                        QStringLiteral("Saving “a.png”")}));
    EXPECT_EQ(store.statusMessage(), QStringLiteral("Save cancelled"));
    EXPECT_FALSE(store.project(id)->fileURL);
    EXPECT_TRUE(store.recents().empty());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

} // namespace
} // namespace quillabrae::store
