// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/StoreTest.h"

#include <QFile>
#include <QSignalSpy>

namespace quillabrae::store {
namespace {

using EditHistory = StoreTest;

/// A store whose active project has the entries New Project, B, C and stands at C.
class HistoryOfThree : public StoreTest {
protected:
    HistoryOfThree() : store(makeStore()), id(makeProject(*store)) {
        edit(*store, QStringLiteral("B"));
        edit(*store, QStringLiteral("C"));
    }

    std::unique_ptr<ProjectStore> store;
    QUuid id;
};

TEST_F(HistoryOfThree, UndoAndRedoWalkTheEntries) {
    const auto state = [&] { return store->history(id).selectedIndex; };
    EXPECT_EQ(state(), 2);
    store->undo(id);
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored B"));
    store->undo(id);
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored New Project"));
    store->undo(id);
    EXPECT_EQ(state(), 0);
    store->redo(id);
    EXPECT_EQ(state(), 1);
    store->redo(id);
    store->redo(id);
    EXPECT_EQ(state(), 2);
    EXPECT_EQ(titles(*store, id).size(), 3);
}

TEST_F(HistoryOfThree, RestoringAnEntryBringsBackTheWholeProject) {
    const auto entries = store->history(id).entries;
    store->restoreHistory(id, entries[0].id);
    EXPECT_EQ(*store->project(id), entries[0].project);
    store->restoreHistory(id, entries[2].id);
    EXPECT_EQ(*store->project(id), entries[2].project);
    store->restoreHistory(id, QUuid::createUuid());
    store->restoreHistory(QUuid::createUuid(), entries[0].id);
    EXPECT_EQ(*store->project(id), entries[2].project);
}

TEST_F(HistoryOfThree, AnEditDropsWhatCouldBeRedone) {
    store->undo(id);
    edit(*store, QStringLiteral("D"));
    EXPECT_EQ(titles(*store, id), QStringList({QStringLiteral("New Project"), QStringLiteral("B"),
                                               QStringLiteral("D")}));
    EXPECT_EQ(store->history(id).selectedIndex, 2);
}

TEST_F(HistoryOfThree, AnEqualProjectAddsNoEntryButStillDropsWhatCouldBeRedone) {
    store->undo(id);
    store->recordHistory(id, QStringLiteral("Same"), QStringLiteral("pencil"));
    EXPECT_EQ(titles(*store, id),
              QStringList({QStringLiteral("New Project"), QStringLiteral("B")}));
    EXPECT_EQ(store->history(id).selectedIndex, 1);
}

TEST_F(HistoryOfThree, ACommandThatChangesNothingWritesNoRecoveryFile) {
    ASSERT_TRUE(QFile::remove(recoveryFile()));
    store->recordHistory(id, QStringLiteral("Same"), QStringLiteral("pencil"));
    EXPECT_EQ(titles(*store, id).size(), 3);
    EXPECT_FALSE(QFile::exists(recoveryFile()));
}

TEST_F(HistoryOfThree, ATimeStampAloneIsAnEdit) {
    store->editActiveProject(
        [&](model::PaintProject& project) { project.lastModified = clock.now(); });
    store->recordHistory(id, QStringLiteral("Touch"), QStringLiteral("pencil"));
    EXPECT_EQ(titles(*store, id).size(), 4);
}

TEST_F(HistoryOfThree, WhatObserversRecordWhileAnEntryIsRestoredIsNotRecorded) {
    int observed = 0;
    const auto record = [&] {
        ++observed;
        store->editActiveProject(
            [&](model::PaintProject& project) { project.lastModified = clock.now(); });
        store->recordHistory(id, QStringLiteral("Echo"), QStringLiteral("pencil"));
    };
    const auto connection = QObject::connect(store.get(), &ProjectStore::historyChanged, record);
    store->undo(id);
    QObject::disconnect(connection);
    EXPECT_EQ(observed, 1);
    EXPECT_EQ(titles(*store, id).size(), 3);
    EXPECT_EQ(store->history(id).selectedIndex, 1);
    edit(*store, QStringLiteral("D"));
    EXPECT_EQ(titles(*store, id).last(), QStringLiteral("D"));
}

TEST_F(HistoryOfThree, UndoKeepsTheFileThatTheProjectWasSavedTo) {
    saveTo(*store, QStringLiteral("boat.quillabrae"));
    store->undo(id);
    EXPECT_EQ(store->project(id)->fileURL, file(QStringLiteral("boat.quillabrae")));
}

TEST_F(HistoryOfThree, UndoActivatesTheProject) {
    const QUuid other = makeProject(*store);
    ASSERT_EQ(store->activeProjectID(), other);
    store->undo(id);
    EXPECT_EQ(store->activeProjectID(), id);
}

TEST_F(HistoryOfThree, UndoLeavesTheToolSettingsAlone) {
    store->editSettings([](model::PaintAppSettings& settings) { settings.brushSize = 31; });
    store->undo(id);
    EXPECT_EQ(store->settings().brushSize, 31.0);
}

TEST_F(EditHistory, SelectionAndFloatingPixelsAreUndoneToo) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    store->editActiveProject([&](model::PaintProject& project) {
        project.isCanvasSelected = true;
        project.pixelSelection = model::PixelSelection{1, 2, 3, 4, std::nullopt};
        project.floatingSelection = model::FloatingPixelSelection{
            *project.layers.front().bitmapPNGData, 3, 4, project.selectedLayerID};
        project.lastModified = clock.now();
    });
    store->recordHistory(id, QStringLiteral("Paste"), QStringLiteral("doc.on.clipboard"));
    store->undo(id);
    EXPECT_EQ(store->project(id)->floatingSelection, std::nullopt);
    EXPECT_EQ(store->project(id)->pixelSelection, std::nullopt);
    store->redo(id);
    EXPECT_TRUE(store->project(id)->floatingSelection);
}

TEST_F(EditHistory, AnUnknownIdHasAnEmptyHistory) {
    const auto store = makeStore();
    const QUuid stranger = QUuid::createUuid();
    EXPECT_EQ(store->history(stranger).selectedIndex, -1);
    EXPECT_TRUE(store->history(stranger).entries.empty());
    store->undo(stranger);
    store->redo(stranger);
    store->recordHistory(stranger, QStringLiteral("Edit"), QStringLiteral("pencil"));
    EXPECT_TRUE(store->history(stranger).entries.empty());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
}

TEST_F(EditHistory, EntriesShareTheLayersThatAnEditDidNotTouch) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    const model::PngBytes pixels = *store->project(id)->layers.front().bitmapPNGData;
    for (int i = 0; i < 20; ++i) edit(*store);
    for (const auto& entry : store->history(id).entries)
        EXPECT_TRUE(entry.project.layers.front().bitmapPNGData->sharesBufferWith(pixels));
}

} // namespace
} // namespace quillabrae::store
