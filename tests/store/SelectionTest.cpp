// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CommandTest.h"
#include "store/SelectionState.h"

namespace quillabrae::store {
namespace {

using model::PixelSelection;

class SelectionCommands : public CommandTest {
protected:
    QStringList entryTitles() const { return titles(*store, id); }
    void commit(HistoryRecording recording) {
        committed = store->commitFloatingSelectionIfNeeded(*store->activeIndex(), recording);
    }

    bool committed = false;
};

TEST_F(SelectionCommands, WithoutAProjectTheyDoNothing) {
    store->closeProject(id);
    const QString status = store->statusMessage();
    store->selectAllCanvas();
    store->dropSelection();
    EXPECT_FALSE(store->canDropSelection());
    EXPECT_FALSE(store->commitFloatingSelectionIfNeeded(0, HistoryRecording::recorded));
    EXPECT_EQ(store->statusMessage(), status);
}

TEST_F(SelectionCommands, TheActiveSelectionIsTheOutlineElseTheFloatingPixelsElseTheCanvas) {
    model::PaintProject edited = project();
    EXPECT_EQ(activeSelection(edited), std::nullopt);
    edited.isCanvasSelected = true;
    EXPECT_EQ(activeSelection(edited), (PixelSelection{0, 0, 8, 6, std::nullopt}));
    edited.floatingSelection =
        model::FloatingPixelSelection{*edited.layers[0].bitmapPNGData, 3, 2, edited.layers[0].id};
    EXPECT_EQ(activeSelection(edited), (PixelSelection{0, 0, 3, 2, std::nullopt}));
    edited.pixelSelection = PixelSelection{1, 2, 3, 4, edited.layers[0].bitmapPNGData};
    EXPECT_EQ(activeSelection(edited), edited.pixelSelection);
}

TEST_F(SelectionCommands, ACommitDrawsTheFloatingPixelsAndEndsTheSelection) {
    lock(0);
    floatRed(2, 2, PixelSelection{5, 3, 2, 2, std::nullopt});
    const QDateTime before = project().lastModified;
    commit(HistoryRecording::recorded);
    EXPECT_TRUE(committed);
    EXPECT_EQ(redPixels(0), QRect(5, 3, 2, 2));
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Dropped selection"));
    expectLastEntry(QStringLiteral("Drop Selection"), QStringLiteral("selection.pin.in.out"));
    commit(HistoryRecording::recorded);
    EXPECT_FALSE(committed);
}

TEST_F(SelectionCommands, ASilentCommitLeavesNoMessageAndNoEntry) {
    floatRed(2, 2, std::nullopt);
    const QString status = store->statusMessage();
    commit(HistoryRecording::omitted);
    EXPECT_TRUE(committed);
    EXPECT_EQ(redPixels(0), QRect(0, 0, 2, 2));
    EXPECT_EQ(store->statusMessage(), status);
    EXPECT_EQ(entryTitles().size(), 1);
}

TEST_F(SelectionCommands, ACommitTruncatesItsPlaceTowardZero) {
    floatRed(2, 2, PixelSelection{-0.9, 1.9, 2.7, 3.9, std::nullopt});
    commit(HistoryRecording::omitted);
    EXPECT_EQ(redPixels(0), QRect(0, 1, 2, 3));
}

TEST_F(SelectionCommands, ACommitDrawsAtLeastOnePixel) {
    floatRed(2, 2, PixelSelection{3.5, 2.5, 0.2, 0.0, std::nullopt});
    commit(HistoryRecording::omitted);
    EXPECT_EQ(redPixels(0), QRect(3, 2, 1, 1));
}

TEST_F(SelectionCommands, ACommitStandardizesAPlaceOfNegativeSize) {
    floatRed(2, 2, PixelSelection{6, 5, -3, -2, std::nullopt});
    commit(HistoryRecording::omitted);
    EXPECT_EQ(redPixels(0), QRect(3, 3, 3, 2));
}

TEST_F(SelectionCommands, ACommitWithoutItsLayerOrWithoutAPictureDoesNothing) {
    floatRed(2, 2, std::nullopt);
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->layerID = QUuid::createUuid();
    });
    expectNothing([&] { commit(HistoryRecording::recorded); });
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->layerID = edited.layers[0].id;
        edited.floatingSelection->pngData = model::PngBytes(QByteArray("no picture"));
    });
    expectNothing([&] { commit(HistoryRecording::recorded); });
    EXPECT_FALSE(committed);
}

TEST_F(SelectionCommands, SelectAllSelectsTheCanvasAndTakesTheRectangleTool) {
    const QDateTime before = project().lastModified;
    store->selectAllCanvas();
    EXPECT_TRUE(project().isCanvasSelected);
    EXPECT_EQ(project().pixelSelection, (PixelSelection{0, 0, 8, 6, std::nullopt}));
    EXPECT_EQ(store->settings().selectedTool, model::PaintTool::rectangleSelect);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Selected canvas pixels"));
    EXPECT_EQ(project().lastModified, before);
    expectLastEntry(QStringLiteral("Select All"), QStringLiteral("selection.pin.in.out"));
    expectNothing([&] { store->selectAllCanvas(); });
}

TEST_F(SelectionCommands, SelectAllPutsFloatingPixelsDownFirst) {
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    store->selectAllCanvas();
    EXPECT_EQ(redPixels(0), QRect(1, 1, 2, 2));
    EXPECT_EQ(entryTitles(),
              QStringList({QStringLiteral("New Project"), QStringLiteral("Drop Selection"),
                           QStringLiteral("Select All")}));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Selected canvas pixels"));
}

TEST_F(SelectionCommands, SelectAllGoesOnWhenFloatingPixelsCannotBePutDown) {
    floatRed(2, 2, std::nullopt);
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->layerID = QUuid::createUuid();
    });
    store->selectAllCanvas();
    EXPECT_TRUE(project().floatingSelection);
    EXPECT_EQ(project().pixelSelection->width, 8);
    EXPECT_EQ(entryTitles().size(), 2);
}

TEST_F(SelectionCommands, DroppingFloatingPixelsIsOneEntry) {
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    EXPECT_TRUE(store->canDropSelection());
    store->dropSelection();
    EXPECT_EQ(entryTitles(),
              QStringList({QStringLiteral("New Project"), QStringLiteral("Drop Selection")}));
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_FALSE(store->canDropSelection());
}

TEST_F(SelectionCommands, DroppingASelectedCanvasDeselects) {
    store->selectAllCanvas();
    EXPECT_TRUE(store->canDropSelection());
    const QDateTime before = project().lastModified;
    store->dropSelection();
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Deselected pixels"));
    expectLastEntry(QStringLiteral("Deselect"), QStringLiteral("xmark.square"));
    expectNothing([&] { store->dropSelection(); });
}

TEST_F(SelectionCommands, AnOutlineOfAnUnselectedCanvasCanBeDroppedButStays) {
    store->editActiveProject([](model::PaintProject& edited) {
        edited.pixelSelection = PixelSelection{1, 1, 2, 2, std::nullopt};
    });
    EXPECT_TRUE(store->canDropSelection());
    expectNothing([&] { store->dropSelection(); });
}

TEST_F(SelectionCommands, DroppingDiscardsFloatingPixelsThatCannotBePutDown) {
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->layerID = QUuid::createUuid();
    });
    store->dropSelection();
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_TRUE(redPixels(0).isNull());
    expectLastEntry(QStringLiteral("Deselect"), QStringLiteral("xmark.square"));
}

TEST_F(SelectionCommands, FloatingBoundsAreTheOpaquePixelsOnTheCanvas) {
    EXPECT_EQ(floatingSelectionBounds(project()), std::nullopt);
    // Four by four pixels of which the right half shows, at twice its size.
    QImage picture(4, 4, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    for (int y = 0; y < 4; ++y) {
        for (int x = 2; x < 4; ++x) picture.setPixelColor(x, y, Qt::red);
    }
    floatPicture(picture, PixelSelection{-2, 4, 8, 8, std::nullopt});
    EXPECT_EQ(floatingSelectionBounds(project()), QRectF(2, 4, 4, 2));
    floatPicture(picture, PixelSelection{8, 0, 4, 4, std::nullopt});
    EXPECT_EQ(floatingSelectionBounds(project()), std::nullopt);
    floatPicture(picture, std::nullopt);
    EXPECT_EQ(floatingSelectionBounds(project()), QRectF(2, 0, 2, 4));
    picture.fill(Qt::transparent);
    floatPicture(picture, std::nullopt);
    EXPECT_EQ(floatingSelectionBounds(project()), std::nullopt);
}

} // namespace
} // namespace quillabrae::store
