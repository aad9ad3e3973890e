// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngCodec.h"
#include "store/CommandTest.h"

namespace quillabrae::store {
namespace {

using model::PixelSelection;

class CopyAndCut : public CommandTest {
protected:
    /// What the clipboard holds.
    model::PastedImage copied() const {
        const auto image = store->clipboard().pastedImage();
        EXPECT_TRUE(image);
        return image.value_or(model::PastedImage());
    }
    QColor copiedPixel(int x, int y) const {
        return raster::decodePng(copied().pngData).toQImage().pixelColor(x, y);
    }
    bool hasCopied() const { return pasteboard.changeCount() > 0; }
};

TEST_F(CopyAndCut, WithoutAProjectOrASelectionThereIsNothingToTake) {
    expectNothing([&] {
        EXPECT_FALSE(store->copySelectedCanvasPixels());
        EXPECT_FALSE(store->cutSelectedCanvasPixels());
    });
    store->closeProject(id);
    EXPECT_FALSE(store->copySelectedCanvasPixels());
    EXPECT_FALSE(store->cutSelectedCanvasPixels());
    EXPECT_FALSE(hasCopied());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));
}

TEST_F(CopyAndCut, ACopyTakesTheSelectedLayersPixelsWithTheirOrigin) {
    paintRed(0, {0, 0, 8, 6});
    store->addLayer();
    fill(1, {0, 0, 1, 0.5}, 0.5);
    lock(1);
    selectRect({2, 1, 3, 2});
    expectNothing([&] { EXPECT_TRUE(store->copySelectedCanvasPixels()); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Copied selected pixels"));
    const model::PastedImage image = copied();
    EXPECT_EQ(QSizeF(image.width, image.height), QSizeF(3, 2));
    EXPECT_EQ(image.sourceX, 2.0);
    EXPECT_EQ(image.sourceY, 1.0);
    // Of the selected layer alone, at full strength.
    EXPECT_EQ(copiedPixel(1, 1), QColor(0, 0, 255, 128));
}

TEST_F(CopyAndCut, ASelectedCanvasIsTakenWhole) {
    store->editActiveProject([](model::PaintProject& edited) { edited.isCanvasSelected = true; });
    EXPECT_TRUE(store->copySelectedCanvasPixels());
    EXPECT_EQ(QSizeF(copied().width, copied().height), QSizeF(8, 6));
}

TEST_F(CopyAndCut, TheMaskShapesTheCopyAndTheHole) {
    QImage mask(2, 1, QImage::Format_ARGB32);
    mask.fill(Qt::transparent);
    mask.setPixelColor(1, 0, Qt::white);
    const auto bytes = raster::encodedImage(raster::RasterImage::fromQImage(std::move(mask)));
    store->editActiveProject([&](model::PaintProject& edited) {
        edited.pixelSelection = PixelSelection{3, 2, 2, 1, bytes};
        edited.isCanvasSelected = true;
    });
    EXPECT_TRUE(store->cutSelectedCanvasPixels());
    EXPECT_EQ(copiedPixel(0, 0).alpha(), 0);
    EXPECT_EQ(copiedPixel(1, 0), QColor(Qt::white));
    EXPECT_EQ(pixel(0, 3, 2), QColor(Qt::white));
    EXPECT_EQ(pixel(0, 4, 2).alpha(), 0);
}

TEST_F(CopyAndCut, ASelectionOffTheCanvasCopiesNothing) {
    selectRect({20, 20, 4, 4});
    expectNothing([&] {
        EXPECT_FALSE(store->copySelectedCanvasPixels());
        EXPECT_FALSE(store->cutSelectedCanvasPixels());
    });
    EXPECT_FALSE(hasCopied());
}

TEST_F(CopyAndCut, FloatingPixelsAreCopiedAtTheSizeTheyAreShownAt) {
    floatRed(2, 2, PixelSelection{-3, 1, 6, 4, std::nullopt});
    EXPECT_TRUE(store->copySelectedCanvasPixels());
    EXPECT_EQ(QSizeF(copied().width, copied().height), QSizeF(6, 4));
    EXPECT_EQ(copied().sourceX, -3.0);
    EXPECT_EQ(copiedPixel(5, 3), QColor(Qt::red));
}

TEST_F(CopyAndCut, FloatingPixelsThatDoNotDecodeLeaveTheLayersToCopy) {
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    store->editActiveProject([](model::PaintProject& edited) {
        edited.floatingSelection->pngData = model::PngBytes(QByteArray("no picture"));
    });
    EXPECT_TRUE(store->copySelectedCanvasPixels());
    EXPECT_EQ(copiedPixel(0, 0), QColor(Qt::white));
}

TEST_F(CopyAndCut, ACutLeavesAHoleWithItsOutline) {
    selectRect({2, 1, 3, 2});
    const QDateTime before = project().lastModified;
    EXPECT_TRUE(store->cutSelectedCanvasPixels());
    EXPECT_EQ(pixel(0, 2, 1).alpha(), 0);
    EXPECT_EQ(pixel(0, 4, 2).alpha(), 0);
    EXPECT_EQ(pixel(0, 5, 2), QColor(Qt::white));
    EXPECT_EQ(project().pixelSelection, (PixelSelection{2, 1, 3, 2, std::nullopt}));
    EXPECT_TRUE(project().isCanvasSelected);
    EXPECT_GT(project().lastModified, before);
    EXPECT_EQ(copiedPixel(0, 0), QColor(Qt::white));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Cut selected pixels"));
    expectLastEntry(QStringLiteral("Cut"), QStringLiteral("scissors"));
    store->undo(id);
    EXPECT_EQ(pixel(0, 2, 1), QColor(Qt::white));
    store->redo(id);
    EXPECT_EQ(pixel(0, 2, 1).alpha(), 0);
}

TEST_F(CopyAndCut, ALockedOrMissingLayerIsNotCut) {
    selectRect({2, 1, 3, 2});
    lock(0);
    const auto cut = [&] { EXPECT_FALSE(store->cutSelectedCanvasPixels()); };
    expectNothing(cut);
    selectNoLayer();
    expectNothing(cut);
    EXPECT_FALSE(hasCopied());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));
}

TEST_F(CopyAndCut, CuttingFloatingPixelsLeavesEveryLayerAlone) {
    const auto pixels = project().layers[0].bitmapPNGData;
    lock(0);
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    EXPECT_TRUE(store->cutSelectedCanvasPixels());
    EXPECT_EQ(project().layers[0].bitmapPNGData, pixels);
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_EQ(copiedPixel(1, 1), QColor(Qt::red));
    expectLastEntry(QStringLiteral("Cut"), QStringLiteral("scissors"));
}

TEST_F(CopyAndCut, AClipboardThatTakesNothingStopsBoth) {
    pasteboard.isReadOnly = true;
    selectRect({2, 1, 3, 2});
    expectNothing([&] {
        EXPECT_FALSE(store->copySelectedCanvasPixels());
        EXPECT_FALSE(store->cutSelectedCanvasPixels());
    });
    floatRed(2, 2, PixelSelection{1, 1, 2, 2, std::nullopt});
    expectNothing([&] { EXPECT_FALSE(store->cutSelectedCanvasPixels()); });
}

TEST_F(CopyAndCut, WhatWasCopiedIsPastedOverItsSource) {
    selectRect({2, 1, 3, 2});
    EXPECT_TRUE(store->copySelectedCanvasPixels());
    ASSERT_TRUE(store->pasteImage(copied()));
    EXPECT_EQ(project().pixelSelection, (PixelSelection{2, 1, 3, 2, std::nullopt}));
    EXPECT_TRUE(project().floatingSelection);
}

} // namespace
} // namespace quillabrae::store
