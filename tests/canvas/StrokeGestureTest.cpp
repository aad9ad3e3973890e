// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/StrokeFixture.h"
#include "raster/PngCodec.h"

#include <utility>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(Stroke, APressAndReleaseMakesADotAndOneHistoryEntry) {
    press({50.0, 40.0});
    release({50.0, 40.0});
    EXPECT_EQ(pixel(50, 40), QColor(255, 0, 0));
    EXPECT_EQ(pixel(51, 40), QColor(255, 0, 0));
    EXPECT_EQ(pixel(54, 40), clear);
    EXPECT_THAT(host.history, ElementsAre(std::pair("Paintbrush", "paintbrush")));
    EXPECT_EQ(project().lastModified, host.now());
}

TEST_F(Stroke, TheProjectIsTouchedOnceAtTheEnd) {
    const auto before = project();
    press({50.0, 40.0});
    moveTo({90.0, 40.0});
    EXPECT_EQ(project(), before);
    EXPECT_EQ(livePixel(70, 40), QColor(255, 0, 0));
    EXPECT_EQ(host.edits, 0);
    release({90.0, 40.0});
    EXPECT_EQ(host.edits, 1);
    EXPECT_EQ(pixel(70, 40), QColor(255, 0, 0));
    EXPECT_FALSE(view.drawing().isRunning());
    EXPECT_TRUE(view.drawing().liveDrawingImage().isNull());
}

TEST_F(Stroke, EachContinuousToolDrawsUnderItsOwnName) {
    fillLayer(Qt::green);
    for (const PaintTool tool : model::allPaintTools()) {
        if (!model::drawsContinuousStroke(tool)) continue;
        host.history.clear();
        host.tools.selectedTool = tool;
        draw({{20.0, 20.0}, {60.0, 20.0}});
        EXPECT_THAT(host.history, ElementsAre(std::pair(model::title(tool).toStdString(),
                                                        model::symbolName(tool).toStdString())));
    }
}

TEST_F(Stroke, StrokesAccumulate) {
    draw({{20.0, 20.0}, {60.0, 20.0}});
    host.tools.primaryColor = blue;
    draw({{20.0, 60.0}, {60.0, 60.0}});
    EXPECT_EQ(pixel(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(pixel(40, 60), QColor(0, 0, 255));
    EXPECT_EQ(host.history.size(), 2U);
}

TEST_F(Stroke, NothingOfATornFileGetsIntoTheNext) {
    fillLayer(Qt::green);
    QByteArray torn = layer().bitmapPNGData->toByteArray();
    torn[torn.size() / 2] = static_cast<char>(torn[torn.size() / 2] ^ 0x55);
    layer().bitmapPNGData = model::PngBytes(torn);
    draw({{20.0, 20.0}, {60.0, 20.0}});
    EXPECT_EQ(pixel(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(pixel(40, 80), clear);
}

TEST_F(Stroke, WhatIsStoredIsThePlainEncodingOfWhatWasShown) {
    fillLayer(Qt::green);
    press({20.0, 20.0});
    moveTo({60.0, 30.0});
    const raster::RasterImage shown = view.drawing().liveDrawingImage();
    release({60.0, 30.0});
    ASSERT_TRUE(layer().bitmapPNGData);
    EXPECT_EQ(*layer().bitmapPNGData, raster::encodePng(shown));
    raster::clearDecodeCache();
    EXPECT_EQ(raster::decodedImage(*layer().bitmapPNGData), shown);
}

TEST_F(Stroke, AStrokeThatHasBegunLeavesTheStoredPixelsAlone) {
    fillLayer(Qt::green);
    press({20.0, 20.0});
    moveTo({60.0, 30.0});
    EXPECT_EQ(pixel(40, 25), QColor(Qt::green));
    view.cancelDrawing();
    EXPECT_EQ(pixel(40, 25), QColor(Qt::green));
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Stroke, StepsBelowAQuarterPixelAreDroppedAndDoNotMoveTheLastPoint) {
    press({50.0, 40.0});
    const auto drawn = [this] { return view.drawing().liveDrawingRevision(); };
    const auto afterPress = drawn();
    moveTo({50.2, 40.0});
    EXPECT_EQ(drawn(), afterPress);
    moveTo({50.24, 40.0});
    EXPECT_EQ(drawn(), afterPress);
    moveTo({50.25, 40.0});
    EXPECT_EQ(drawn(), afterPress + 1);
    moveTo({50.49, 40.0});
    EXPECT_EQ(drawn(), afterPress + 1);
    moveTo({50.51, 40.0});
    EXPECT_EQ(drawn(), afterPress + 2);
}

TEST_F(Stroke, AHiddenALockedAndAMissingLayerTurnAStrokeIntoNothing) {
    const auto expectNothing = [this] {
        const auto before = project();
        draw({{20.0, 20.0}, {60.0, 20.0}});
        right(RightMousePhase::down, {20.0, 20.0});
        right(RightMousePhase::dragged, {60.0, 20.0});
        right(RightMousePhase::up, {60.0, 20.0});
        EXPECT_EQ(project(), before);
        EXPECT_THAT(host.history, IsEmpty());
        EXPECT_FALSE(view.drawing().isRunning());
    };
    fillLayer(Qt::green);
    project().isCanvasSelected = true;
    layer().isLocked = true;
    expectNothing();
    layer().isLocked = false;
    layer().isVisible = false;
    expectNothing();
    layer().isVisible = true;
    project().selectedLayerID = QUuid::createUuid();
    expectNothing();
}

TEST_F(Stroke, ALayerHiddenOrLockedMeanwhileTakesNothing) {
    fillLayer(Qt::green);
    const auto before = layer().bitmapPNGData;
    for (const auto change : {&model::PaintLayer::isLocked, &model::PaintLayer::isVisible}) {
        press({20.0, 20.0});
        moveTo({60.0, 20.0});
        layer().*change = !(layer().*change);
        release({60.0, 20.0});
        EXPECT_EQ(layer().bitmapPNGData, before);
        EXPECT_THAT(host.history, IsEmpty());
        EXPECT_FALSE(view.drawing().isRunning());
        layer().*change = !(layer().*change);
    }
}

TEST_F(Stroke, OtherToolsAreHeldAtTheBorderAndRunAlongIt) {
    draw({{180.0, 20.0}, {260.0, 20.0}, {260.0, 80.0}});
    EXPECT_EQ(pixel(199, 50), QColor(255, 0, 0));
    EXPECT_EQ(pixel(199, 79), QColor(255, 0, 0));
}

TEST_F(Stroke, TheEraserLeavesTheCanvasAndErasesUpToTheEdge) {
    fillLayer(Qt::green);
    host.tools.selectedTool = PaintTool::eraser;
    draw({{180.0, 20.0}, {260.0, 20.0}, {260.0, 80.0}});
    EXPECT_EQ(pixel(199, 20).alpha(), 0);
    EXPECT_EQ(pixel(199, 50), QColor(Qt::green));
    EXPECT_EQ(pixel(199, 79), QColor(Qt::green));
}

TEST_F(Stroke, TheEraserStartsInTheWorkspace) {
    fillLayer(Qt::green);
    host.tools.selectedTool = PaintTool::eraser;
    const QPointF start = inDocument({-60.0, 30.0});
    const QPointF end = inDocument({70.0, 30.0});
    view.dragChanged(Surface::workspace, DragValue::between(start, start));
    EXPECT_EQ(host.cursor, (CanvasPoint{-60.0, 30.0}));
    EXPECT_TRUE(view.drawing().isRunning());
    view.dragEnded(Surface::workspace, DragValue::between(start, end));
    EXPECT_EQ(pixel(0, 30).alpha(), 0);
    EXPECT_EQ(pixel(69, 30).alpha(), 0);
    EXPECT_EQ(pixel(90, 30), QColor(Qt::green));
    EXPECT_THAT(host.history, ElementsAre(std::pair("Eraser", "eraser")));
}

TEST_F(Stroke, TheEraserErasesTheSameWithEitherButton) {
    host.tools.selectedTool = PaintTool::eraser;
    host.tools.pencilHardness = 30.0;
    fillLayer(Qt::green);
    const auto full = layer().bitmapPNGData;
    draw({{20.0, 20.0}, {60.0, 20.0}});
    const auto left = layer().bitmapPNGData;
    layer().bitmapPNGData = full;
    right(RightMousePhase::down, {20.0, 20.0});
    right(RightMousePhase::dragged, {60.0, 20.0});
    right(RightMousePhase::up, {60.0, 20.0});
    EXPECT_NE(left, full);
    EXPECT_EQ(layer().bitmapPNGData, left);
}

TEST_F(Stroke, HardnessSoftensThePencilButNotTheBrush) {
    host.tools.brushSize = 40.0;
    host.tools.pencilHardness = 0.0;
    draw({{50.0, 50.0}});
    EXPECT_EQ(pixel(66, 50), QColor(255, 0, 0));
    layer().bitmapPNGData.reset();
    host.tools.selectedTool = PaintTool::pencil;
    draw({{50.0, 50.0}});
    EXPECT_GT(pixel(66, 50).alpha(), 0);
    EXPECT_LT(pixel(66, 50).alpha(), 128);
}

TEST_F(Stroke, TheRightButtonDrawsInTheSecondaryColor) {
    EXPECT_TRUE(right(RightMousePhase::down, {20.0, 20.0}));
    EXPECT_EQ(host.cursor, (CanvasPoint{20.0, 20.0}));
    EXPECT_TRUE(right(RightMousePhase::dragged, {60.0, 20.0}));
    EXPECT_TRUE(right(RightMousePhase::up, {80.0, 20.0}));
    EXPECT_EQ(pixel(40, 20), QColor(0, 0, 255));
    EXPECT_EQ(pixel(75, 20), QColor(0, 0, 255));
    EXPECT_THAT(host.history, ElementsAre(std::pair("Paintbrush", "paintbrush")));
    draw({{20.0, 60.0}, {60.0, 60.0}});
    EXPECT_EQ(pixel(40, 60), QColor(255, 0, 0));
}

TEST_F(Stroke, TheRightButtonIsTakenOnlyOnTheCanvasAndAfterItsPress) {
    EXPECT_FALSE(right(RightMousePhase::down, {-5.0, 20.0}));
    EXPECT_FALSE(right(RightMousePhase::dragged, {20.0, 20.0}));
    EXPECT_FALSE(right(RightMousePhase::up, {20.0, 20.0}));
    EXPECT_FALSE(right(RightMousePhase::down, {200.0, 20.0}));
    host.tools.selectedTool = PaintTool::zoom;
    EXPECT_FALSE(right(RightMousePhase::down, {20.0, 20.0}));
    EXPECT_FALSE(view.drawing().isRunning());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Stroke, ARightButtonReleasedOffTheCanvasLeavesTheStrokeOpen) {
    right(RightMousePhase::down, {20.0, 20.0});
    right(RightMousePhase::dragged, {60.0, 20.0});
    EXPECT_FALSE(right(RightMousePhase::up, {60.0, -30.0}));
    EXPECT_TRUE(view.drawing().isRunning());
    EXPECT_THAT(host.history, IsEmpty());
    EXPECT_TRUE(right(RightMousePhase::down, {60.0, 60.0}));
    EXPECT_TRUE(right(RightMousePhase::up, {60.0, 60.0}));
    EXPECT_FALSE(view.drawing().isRunning());
    EXPECT_THAT(host.history, ElementsAre(std::pair("Paintbrush", "paintbrush")));
    EXPECT_EQ(pixel(40, 20), QColor(0, 0, 255));
    EXPECT_EQ(pixel(60, 40), QColor(0, 0, 255));
}

TEST_F(Stroke, TheFirstMarkDropsTheSelection) {
    project().isCanvasSelected = true;
    project().pixelSelection = model::PixelSelection{10.0, 10.0, 5.0, 5.0, std::nullopt};
    press({50.0, 40.0});
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_FALSE(project().pixelSelection);
    const int edits = host.edits;
    moveTo({60.0, 40.0});
    EXPECT_EQ(host.edits, edits);
    release({60.0, 40.0});
    EXPECT_EQ(pixel(55, 40), QColor(255, 0, 0));
}

TEST_F(Stroke, FloatingPixelsAreNotLost) {
    fillLayer(Qt::green);
    project().isCanvasSelected = true;
    project().pixelSelection = model::PixelSelection{30.9, 50.9, 20.9, 10.9, std::nullopt};
    project().floatingSelection =
        model::FloatingPixelSelection{solid(2.0, 2.0, Qt::yellow), 2.0, 2.0, layer().id};
    draw({{150.0, 20.0}});
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_FALSE(project().pixelSelection);
    EXPECT_FALSE(project().isCanvasSelected);
    EXPECT_EQ(pixel(30, 50), QColor(Qt::yellow));
    EXPECT_EQ(pixel(49, 59), QColor(Qt::yellow));
    EXPECT_EQ(pixel(29, 50), QColor(Qt::green));
    EXPECT_EQ(pixel(50, 59), QColor(Qt::green));
    EXPECT_EQ(pixel(49, 60), QColor(Qt::green));
    EXPECT_EQ(pixel(150, 20), QColor(255, 0, 0));
    EXPECT_THAT(host.history, ElementsAre(std::pair("Paintbrush", "paintbrush")));
}

TEST_F(Stroke, FloatingPixelsLandAtTheirNaturalPlaceWithoutASelection) {
    project().floatingSelection =
        model::FloatingPixelSelection{solid(8.0, 4.0, Qt::yellow), 8.0, 4.0, layer().id};
    draw({{150.0, 20.0}});
    EXPECT_EQ(pixel(7, 3), QColor(Qt::yellow));
    EXPECT_EQ(pixel(8, 3), clear);
}

TEST_F(Stroke, FloatingPixelsLandOnALockedLayerToo) {
    project().floatingSelection =
        model::FloatingPixelSelection{solid(8.0, 4.0, Qt::yellow), 8.0, 4.0, layer().id};
    layer().isLocked = true;
    draw({{150.0, 20.0}});
    EXPECT_EQ(pixel(0, 0), QColor(Qt::yellow));
    EXPECT_EQ(pixel(150, 20), clear);
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Stroke, FloatingPixelsWithoutTheirLayerOrWithBadBytesStay) {
    project().floatingSelection =
        model::FloatingPixelSelection{solid(8.0, 4.0, Qt::yellow), 8.0, 4.0, QUuid::createUuid()};
    draw({{150.0, 20.0}});
    EXPECT_TRUE(project().floatingSelection);
    project().floatingSelection->layerID = layer().id;
    project().floatingSelection->pngData = model::PngBytes(QByteArrayLiteral("no picture"));
    draw({{150.0, 60.0}});
    EXPECT_TRUE(project().floatingSelection);
    EXPECT_EQ(host.history.size(), 2U);
}

TEST_F(Stroke, AChangeOfTheSelectedLayerEndsWhatTheStrokeReaches) {
    project().layers.push_back(emptyLayer());
    press({20.0, 20.0});
    moveTo({60.0, 20.0});
    project().selectedLayerID = project().layers.back().id;
    moveTo({60.0, 80.0});
    release({60.0, 80.0});
    EXPECT_EQ(pixel(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(pixel(60, 60), clear);
    EXPECT_FALSE(project().layers.back().bitmapPNGData);
    EXPECT_EQ(host.history.size(), 1U);
}

TEST_F(Stroke, ALayerThatIsGoneAtReleaseRecordsNothing) {
    press({20.0, 20.0});
    moveTo({60.0, 20.0});
    project().layers = {emptyLayer()};
    release({60.0, 20.0});
    EXPECT_FALSE(layer().bitmapPNGData);
    EXPECT_THAT(host.history, IsEmpty());
    EXPECT_FALSE(view.drawing().isRunning());
}

TEST_F(Stroke, EachSampleRepaintsWhatItTouched) {
    press({20.0, 20.0});
    moveTo({60.0, 20.0});
    ASSERT_EQ(display.rects.size(), 2U);
    EXPECT_TRUE(display.rects[1].contains(QRect(18, 18, 44, 4)));
    EXPECT_TRUE(QRect(10, 10, 60, 20).contains(display.rects[1]));
    release({60.0, 20.0});
    EXPECT_EQ(display.rects.size(), 2U);
    EXPECT_EQ(display.wholeRepaints, 0);
}

TEST_F(Stroke, AStrokeGivenUpRepaintsEverythingItDrew) {
    press({20.0, 20.0});
    moveTo({60.0, 20.0});
    moveTo({60.0, 80.0});
    display.rects.clear();
    view.cancelDrawing();
    ASSERT_EQ(display.rects.size(), 1U);
    EXPECT_TRUE(display.rects[0].contains(QRect(18, 18, 44, 64)));
}

TEST_F(Stroke, AStrokeAtHighZoomGoesWhereThePointerIs) {
    host.tools.zoomScale = 16.0;
    view.settingsChanged();
    host.tools.brushSize = 1.0;
    host.tools.selectedTool = PaintTool::pencil;
    draw({{50.5, 40.5}, {54.5, 40.5}});
    EXPECT_EQ(pixel(52, 40), QColor(255, 0, 0));
    EXPECT_EQ(pixel(52, 39).alpha(), 0);
    EXPECT_EQ(pixel(52, 41).alpha(), 0);
}

} // namespace
} // namespace quillabrae::canvas
