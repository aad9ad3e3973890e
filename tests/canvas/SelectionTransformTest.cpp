// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionGestureFixture.h"

namespace quillabrae::canvas {
namespace {

using model::PaintTool;
using testing::IsEmpty;

const QColor clear(0, 0, 0, 0);
const QColor red(Qt::red);

class OutlineTransform : public SelectionGestureFixture {
protected:
    OutlineTransform() {
        useTool(PaintTool::moveSelection);
        select({20.0, 20.0, 40.0, 20.0});
    }
};

TEST_F(OutlineTransform, ADragInsideMovesTheOutlineAlone) {
    layer().isLocked = true;
    drag({40.0, 30.0}, {50.4, 24.0});
    EXPECT_EQ(selected(), QRectF(30.0, 14.0, 40.0, 20.0));
    EXPECT_EQ(host.history, (History{{"Move Selection", "cursorarrow"}}));
    EXPECT_FALSE(layer().bitmapPNGData);
}

TEST_F(OutlineTransform, AHandleResizesItAndTheMaskStays) {
    project().pixelSelection->maskPNGData = block({0, 0, 5, 5}, Qt::white);
    const auto mask = project().pixelSelection->maskPNGData;
    drag({60.0, 40.0}, {70.0, 60.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 50.0, 40.0));
    EXPECT_EQ(project().pixelSelection->maskPNGData, mask);
    EXPECT_EQ(host.history,
              (History{{"Resize Selection Outline", "arrow.up.left.and.arrow.down.right"}}));
}

TEST_F(OutlineTransform, APressOutsideDoesNothing) {
    drag({120.0, 80.0}, {50.0, 30.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 40.0, 20.0));
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(OutlineTransform, APressAndReleaseCountsAsAMove) {
    drag({40.0, 30.0}, {40.0, 30.0});
    EXPECT_EQ(host.history, (History{{"Move Selection", "cursorarrow"}}));
}

TEST_F(OutlineTransform, ACornerDraggedPastTheOppositeStopsAPixelShort) {
    drag({60.0, 40.0}, {0.0, 0.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 1.0, 1.0));
}

TEST_F(OutlineTransform, ShiftKeepsTheAspectRatioAtOnce) {
    press({60.0, 40.0});
    moveTo({80.0, 42.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 60.0, 22.0));
    hold({.shift = true});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 60.0, 30.0));
    hold({});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 60.0, 22.0));
}

TEST_F(OutlineTransform, TheZoomScalesTheDragAndNotTheHandles) {
    host.tools.zoomScale = 4.0;
    view.settingsChanged();
    // Five screen points beside the corner, and 40 of them to the right.
    const QPointF corner = local({60.0, 40.0}) + QPointF(5.0, 5.0);
    const DragValue value = DragValue::between(corner, corner + QPointF(40.0, 0.0));
    view.dragChanged(Surface::interactiveView, value);
    view.dragEnded(Surface::interactiveView, value);
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 50.0, 20.0));
}

class PixelTransform : public SelectionGestureFixture {
protected:
    PixelTransform() {
        useTool(PaintTool::moveSelectedPixels);
        layer().bitmapPNGData = block({20, 20, 30, 30}, Qt::red);
        select({20.0, 20.0, 30.0, 30.0});
    }

    const History moveEntry{{"Move Pixels", "arrow.up.and.down.and.arrow.left.and.right"}};
};

TEST_F(PixelTransform, ThePixelsLiftAtOnceAndLandAtTheRelease) {
    const auto before = layer().bitmapPNGData;
    press({35.0, 35.0});
    moveTo({95.0, 65.0});
    EXPECT_EQ(layer().bitmapPNGData, before);
    EXPECT_EQ(livePixel(25, 25), clear);
    EXPECT_EQ(livePixel(85, 55), red);
    moveTo({155.0, 65.0});
    EXPECT_EQ(livePixel(85, 55), clear);
    release({155.0, 65.0});
    EXPECT_EQ(pixel(25, 25), clear);
    EXPECT_EQ(pixel(140, 50), red);
    EXPECT_EQ(pixel(169, 79), red);
    EXPECT_EQ(pixel(170, 79), clear);
    EXPECT_EQ(selected(), QRectF(140.0, 50.0, 30.0, 30.0));
    EXPECT_EQ(host.history, moveEntry);
    EXPECT_EQ(view.frame(1.0).liveImage, nullptr);
}

TEST_F(PixelTransform, ThePlainEncodingOfTheLiveImageIsStored) {
    press({35.0, 35.0});
    moveTo({75.0, 65.0});
    const raster::RasterImage shown = *view.frame(1.0).liveImage;
    release({75.0, 65.0});
    EXPECT_EQ(*layer().bitmapPNGData, raster::LayerRasterService::pngData(shown));
}

TEST_F(PixelTransform, OnlyThePixelsUnderTheMaskMove) {
    QImage mask(30, 30, QImage::Format_RGBA8888);
    mask.fill(Qt::transparent);
    QPainter(&mask).fillRect(0, 0, 10, 30, Qt::white);
    project().pixelSelection->maskPNGData =
        raster::encodedImage(raster::RasterImage::fromQImage(std::move(mask)));
    drag({35.0, 35.0}, {135.0, 35.0});
    EXPECT_EQ(pixel(25, 25), clear);
    EXPECT_EQ(pixel(35, 25), red);
    EXPECT_EQ(pixel(125, 25), red);
    EXPECT_EQ(pixel(135, 25), clear);
}

TEST_F(PixelTransform, ADragFromOutsideTheSelectionMovesItToo) {
    drag({150.0, 80.0}, {160.0, 80.0});
    EXPECT_EQ(pixel(55, 25), red);
    EXPECT_EQ(pixel(25, 25), clear);
    EXPECT_EQ(host.history, moveEntry);
}

TEST_F(PixelTransform, ADragFromOffTheCanvasDoesNothing) {
    drag({-7.0, 70.0}, {10.0, 70.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 30.0, 30.0));
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(PixelTransform, WithNothingSelectedTheWholeCanvasMoves) {
    project().isCanvasSelected = false;
    project().pixelSelection.reset();
    drag({100.0, 50.0}, {110.0, 40.0});
    EXPECT_EQ(selected(), QRectF(10.0, -10.0, 200.0, 100.0));
    EXPECT_EQ(pixel(30, 10), red);
    EXPECT_EQ(pixel(59, 39), red);
    EXPECT_EQ(pixel(25, 45), clear);
}

TEST_F(PixelTransform, APressAndReleaseLandsThePixelsWhereTheyWere) {
    drag({35.0, 35.0}, {35.0, 35.0});
    EXPECT_EQ(pixel(25, 25), red);
    EXPECT_EQ(host.history, moveEntry);
}

TEST_F(PixelTransform, PastTheEdgeTheRectangleStaysWholeAndThePixelsAreLost) {
    drag({35.0, 35.0}, {5.0, 35.0});
    EXPECT_EQ(selected(), QRectF(-10.0, 20.0, 30.0, 30.0));
    drag({6.0, 35.0}, {36.0, 35.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 30.0, 30.0));
    // What is left of the pixels fills the whole rectangle again.
    EXPECT_EQ(pixel(20, 35), red);
    EXPECT_EQ(pixel(49, 35), red);
}

TEST_F(PixelTransform, AHandleStretchesThePixels) {
    drag({50.0, 50.0}, {60.0, 70.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 40.0, 50.0));
    EXPECT_EQ(pixel(59, 69), red);
    EXPECT_EQ(host.history, (History{{"Resize Selection", "arrow.up.left.and.arrow.down.right"}}));
}

TEST_F(PixelTransform, AHiddenOrLockedLayerStopsItWithoutASound) {
    layer().isLocked = true;
    drag({35.0, 35.0}, {75.0, 65.0});
    layer().isLocked = false;
    layer().isVisible = false;
    drag({35.0, 35.0}, {75.0, 65.0});
    EXPECT_EQ(selected(), QRectF(20.0, 20.0, 30.0, 30.0));
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(PixelTransform, OfALayerLockedMeanwhileIsGivenUp) {
    const auto before = layer().bitmapPNGData;
    press({35.0, 35.0});
    moveTo({75.0, 65.0});
    layer().isLocked = true;
    release({75.0, 65.0});
    EXPECT_EQ(layer().bitmapPNGData, before);
    EXPECT_THAT(host.history, IsEmpty());
    EXPECT_FALSE(view.selection().pixels().isRunning());
}

TEST_F(PixelTransform, FloatingPixelsGoOnFloatingAtTheirNewPlace) {
    floatPixels();
    layer().bitmapPNGData = block({20, 20, 30, 30}, Qt::blue);
    const auto before = layer().bitmapPNGData;
    press({35.0, 35.0});
    moveTo({95.0, 65.0});
    EXPECT_EQ(livePixel(25, 25), QColor(Qt::blue));
    EXPECT_EQ(livePixel(85, 55), red);
    release({95.0, 65.0});
    EXPECT_EQ(layer().bitmapPNGData, before);
    EXPECT_TRUE(project().floatingSelection);
    EXPECT_EQ(selected(), QRectF(80.0, 50.0, 30.0, 30.0));
    EXPECT_EQ(host.history,
              (History{{"Move Floating Pixels", "arrow.up.and.down.and.arrow.left.and.right"}}));
    drag({110.0, 80.0}, {120.0, 80.0});
    EXPECT_EQ(host.history.back().first, "Resize Floating Pixels");
}

TEST_F(PixelTransform, FloatingPixelsThatDoNotDecodeLetTheLayersOwnLift) {
    floatPixels();
    layer().bitmapPNGData = block({20, 20, 30, 30}, Qt::blue);
    project().floatingSelection->pngData = model::PngBytes(QByteArray("no picture"));
    press({35.0, 35.0});
    moveTo({95.0, 65.0});
    EXPECT_EQ(livePixel(25, 25), clear);
    EXPECT_EQ(livePixel(85, 55), QColor(Qt::blue));
}

class Nudge : public SelectionGestureFixture {
protected:
    Nudge() {
        layer().bitmapPNGData = block({20, 20, 10, 10}, Qt::red);
        select({20.0, 20.0, 10.0, 10.0});
    }
};

TEST_F(Nudge, ArrowsMoveTheOutlineByOneOrTwentyPixels) {
    EXPECT_TRUE(view.handleKey(CanvasKey::left));
    EXPECT_EQ(selected(), QRectF(19.0, 20.0, 10.0, 10.0));
    hold({.command = true});
    EXPECT_TRUE(view.handleKey(CanvasKey::down));
    EXPECT_EQ(selected(), QRectF(19.0, 40.0, 10.0, 10.0));
    EXPECT_EQ(pixel(25, 25), red);
    EXPECT_EQ(host.history,
              (History{{"Move Selection", "cursorarrow"}, {"Move Selection", "cursorarrow"}}));
}

TEST_F(Nudge, WithoutASelectionArrowsAreNotTaken) {
    project().isCanvasSelected = false;
    project().pixelSelection.reset();
    EXPECT_FALSE(view.handleKey(CanvasKey::left));
}

TEST_F(Nudge, TheToolForPixelsTakesThemAlong) {
    useTool(PaintTool::moveSelectedPixels);
    hold({.command = true});
    view.handleKey(CanvasKey::right);
    EXPECT_EQ(pixel(25, 25), clear);
    EXPECT_EQ(pixel(45, 25), red);
    EXPECT_EQ(host.history,
              (History{{"Move Pixels", "arrow.up.and.down.and.arrow.left.and.right"}}));
}

TEST_F(Nudge, OnALockedLayerOnlyTheOutlineMovesAndNothingIsRecorded) {
    useTool(PaintTool::moveSelectedPixels);
    layer().isLocked = true;
    view.handleKey(CanvasKey::right);
    EXPECT_EQ(selected(), QRectF(21.0, 20.0, 10.0, 10.0));
    EXPECT_EQ(pixel(20, 25), red);
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Nudge, FloatingPixelsMoveWithoutAnEntry) {
    useTool(PaintTool::moveSelectedPixels);
    floatPixels();
    const auto before = layer().bitmapPNGData;
    view.handleKey(CanvasKey::right);
    EXPECT_EQ(selected(), QRectF(21.0, 20.0, 30.0, 30.0));
    EXPECT_EQ(layer().bitmapPNGData, before);
    EXPECT_EQ(project().lastModified, host.now());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Nudge, FractionsAreCutOffTowardsZero) {
    select({-2.5, 20.9, 10.7, 10.2});
    view.handleKey(CanvasKey::right);
    EXPECT_EQ(selected(), QRectF(-1.0, 20.0, 10.0, 10.0));
}

TEST_F(Nudge, ASelectedCanvasMovesAsAWhole) {
    project().pixelSelection.reset();
    view.handleKey(CanvasKey::down);
    EXPECT_EQ(selected(), QRectF(0.0, 1.0, 200.0, 100.0));
}

} // namespace
} // namespace quillabrae::canvas
