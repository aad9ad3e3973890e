// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/CommandTest.h"

namespace quillabrae::store {
namespace {

using model::PixelSelection;

class Trim : public CommandTest {
protected:
    Trim() {
        store->editActiveProject(
            [](model::PaintProject& edited) { edited.layers[0].bitmapPNGData.reset(); });
        edit(*store);
    }
    QSizeF canvasSize() const { return {project().canvasWidth, project().canvasHeight}; }
};

TEST_F(Trim, CropsTheCanvasToTheContentOfAllLayers) {
    paintRed(0, {2, 1, 2, 2});
    store->addLayer();
    paintRed(1, {5, 4, 1, 1});
    store->editActiveProject([](model::PaintProject& edited) {
        edited.layers[1].isVisible = false;
        edited.layers[0].isLocked = true;
        edited.resolutionDPI = 72;
    });
    store->trimTransparentWhitespace();
    EXPECT_EQ(canvasSize(), QSizeF(4, 4));
    EXPECT_EQ(redPixels(0), QRect(0, 0, 2, 2));
    EXPECT_EQ(redPixels(1), QRect(3, 3, 1, 1));
    EXPECT_EQ(project().resolutionDPI, 72);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Trimmed image to 4 x 4"));
    EXPECT_EQ(store->lastRepeatableAction(), std::nullopt);
    expectLastEntry(QStringLiteral("Trim Whitespace"), QStringLiteral("crop"));
    store->undo(id);
    EXPECT_EQ(canvasSize(), QSizeF(8, 6));
    store->redo(id);
    EXPECT_EQ(canvasSize(), QSizeF(4, 4));
}

TEST_F(Trim, FaintPixelsAreContentToo) {
    fill(0, {0, 0, 0, 1.0 / 255.0});
    expectNothing([&] { store->trimTransparentWhitespace(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("No transparent whitespace to trim"));
}

TEST_F(Trim, WithoutContentItSaysSo) {
    expectNothing([&] { store->trimTransparentWhitespace(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("No non-transparent pixels to trim"));
}

TEST_F(Trim, ContentThatTouchesAllEdgesLeavesNothingToTrimAndFloatingPixelsAfloat) {
    paintRed(0, {0, 0, 1, 1});
    store->addLayer();
    paintRed(1, {7, 5, 1, 1});
    floatRed(2, 2, PixelSelection{3, 3, 2, 2, std::nullopt});
    expectNothing([&] { store->trimTransparentWhitespace(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("No transparent whitespace to trim"));
}

TEST_F(Trim, FloatingPixelsAreContentAndArePutDown) {
    floatRed(2, 2, PixelSelection{3, 3, 4, 2, std::nullopt});
    store->trimTransparentWhitespace();
    EXPECT_EQ(canvasSize(), QSizeF(4, 2));
    EXPECT_EQ(redPixels(0), QRect(0, 0, 4, 2));
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_FALSE(project().isCanvasSelected);
}

TEST_F(Trim, FloatingPixelsThatOverhangCountAsFarAsTheCanvas) {
    floatRed(4, 4, PixelSelection{6, -1, 4, 4, std::nullopt});
    store->trimTransparentWhitespace();
    EXPECT_EQ(canvasSize(), QSizeF(2, 3));
    EXPECT_EQ(redPixels(0), QRect(0, 0, 2, 3));
}

TEST_F(Trim, CancelLeavesTheProjectAsItWas) {
    paintRed(0, {2, 1, 2, 2});
    floatRed(2, 2, PixelSelection{3, 3, 2, 2, std::nullopt});
    work.isCancelled = true;
    expectNothing([&] { store->trimTransparentWhitespace(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Trim cancelled"));
    // The search is over; now the cropping is cancelled.
    work.isCancelled = false;
    work.meanwhile = [&] { work.isCancelled = true; };
    expectNothing([&] { store->trimTransparentWhitespace(); });
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Trim cancelled"));
}

TEST_F(Trim, AProjectThatChangedDuringTheSearchIsLeftAlone) {
    paintRed(0, {2, 1, 2, 2});
    work.meanwhile = [&] {
        work.meanwhile = nullptr;
        paintRed(0, {0, 0, 8, 6});
    };
    store->trimTransparentWhitespace();
    EXPECT_EQ(canvasSize(), QSizeF(8, 6));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Trim cancelled"));
}

} // namespace
} // namespace quillabrae::store
