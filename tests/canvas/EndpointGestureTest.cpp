// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/EndpointGesture.h"
#include "canvas/SelectionGestureFixture.h"

#include <cmath>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;
using testing::IsEmpty;

constexpr QSizeF canvas(200.0, 100.0);
constexpr Modifiers shift{.shift = true};
const QColor clear(0, 0, 0, 0);

void expectNear(CanvasPoint point, CanvasPoint expected) {
    EXPECT_NEAR(point.x, expected.x, 1e-9);
    EXPECT_NEAR(point.y, expected.y, 1e-9);
}

TEST(EndpointDrawingPoint, WithoutShiftIsThePointer) {
    expectNear(endpointDrawingPoint(PaintTool::lineCurve, {10, 10}, {50, 33}, {}, canvas),
               {50, 33});
}

TEST(EndpointDrawingPoint, ShiftSnapsLinesAndGradientsToEighthsOfATurn) {
    for (const PaintTool tool : {PaintTool::lineCurve, PaintTool::gradient}) {
        const double length = std::hypot(40.0, 5.0);
        expectNear(endpointDrawingPoint(tool, {10, 10}, {50, 15}, shift, canvas),
                   {10.0 + length, 10.0});
        const double diagonal = std::hypot(20.0, 18.0) / std::sqrt(2.0);
        expectNear(endpointDrawingPoint(tool, {50, 50}, {30, 32}, shift, canvas),
                   {50.0 - diagonal, 50.0 - diagonal});
    }
}

TEST(EndpointDrawingPoint, ASnappedLineStopsAtTheEdgeAlongItsAngle) {
    expectNear(endpointDrawingPoint(PaintTool::lineCurve, {150, 50}, {260, 150}, shift, canvas),
               {200, 100});
    expectNear(endpointDrawingPoint(PaintTool::lineCurve, {190, 50}, {260, 120}, shift, canvas),
               {200, 60});
}

TEST(EndpointDrawingPoint, ShiftMakesShapesSquareInTheDragsQuadrant) {
    for (const PaintTool tool : {PaintTool::shapes, PaintTool::rectangle, PaintTool::ellipse}) {
        expectNear(endpointDrawingPoint(tool, {50, 50}, {30, 60}, shift, canvas), {30, 70});
        expectNear(endpointDrawingPoint(tool, {50, 50}, {50, 20}, shift, canvas), {80, 20});
        expectNear(endpointDrawingPoint(tool, {50, 90}, {90, 95}, shift, canvas), {60, 100});
        expectNear(endpointDrawingPoint(tool, {50, 50}, {50, 50}, shift, canvas), {50, 50});
    }
}

TEST(MaximumEndpointLength, IsTheWayToTheNearerEdgeAndNeverNegative) {
    EXPECT_EQ(maximumEndpointLength({150, 50}, 1.0, 0.0, canvas), 50.0);
    EXPECT_EQ(maximumEndpointLength({150, 50}, 0.0, -1.0, canvas), 50.0);
    EXPECT_EQ(maximumEndpointLength({250, 50}, 1.0, 0.0, canvas), 0.0);
}

class Line : public SelectionGestureFixture {
protected:
    Line() {
        host.tools.primaryColor = {1.0, 0.0, 0.0, 1.0};
        host.tools.secondaryColor = {0.0, 0.0, 1.0, 1.0};
        host.tools.brushSize = 4.0;
        useTool(PaintTool::lineCurve);
    }
};

TEST_F(Line, EachSampleDrawsItAnewFromTheLayersPixels) {
    press({20.0, 20.0});
    moveTo({120.0, 20.0});
    EXPECT_EQ(livePixel(80, 20), QColor(Qt::red));
    moveTo({20.0, 80.0});
    EXPECT_EQ(livePixel(80, 20), clear);
    EXPECT_EQ(livePixel(20, 60), QColor(Qt::red));
    release({20.0, 80.0});
    EXPECT_EQ(pixel(80, 20), clear);
    EXPECT_EQ(pixel(20, 60), QColor(Qt::red));
    EXPECT_EQ(host.history, (History{{model::title(PaintTool::lineCurve).toStdString(),
                                      model::symbolName(PaintTool::lineCurve).toStdString()}}));
}

TEST_F(Line, APressAndReleaseDrawsFromAPointToItself) {
    drag({20.0, 20.0}, {20.0, 20.0});
    EXPECT_EQ(pixel(20, 20), QColor(Qt::red));
    EXPECT_EQ(host.history.size(), 1U);
}

TEST_F(Line, ShiftRedrawsItAtOnce) {
    press({20.0, 20.0});
    moveTo({120.0, 24.0});
    hold({.shift = true});
    EXPECT_EQ(livePixel(110, 20), QColor(Qt::red));
    EXPECT_EQ(livePixel(110, 23), clear);
}

TEST_F(Line, TheRightButtonDrawsInTheSecondaryColor) {
    view.handleRightMouseEvent({RightMousePhase::down, inDocument({20.0, 20.0})});
    view.handleRightMouseEvent({RightMousePhase::dragged, inDocument({120.0, 20.0})});
    view.handleRightMouseEvent({RightMousePhase::up, inDocument({120.0, 20.0})});
    EXPECT_EQ(pixel(80, 20), QColor(Qt::blue));
}

TEST_F(Line, ADrawingDropsTheSelectionAtItsFirstMark) {
    select({10.0, 10.0, 10.0, 10.0});
    press({20.0, 20.0});
    EXPECT_TRUE(selected().isNull());
}

TEST_F(Line, AGradientMayBeginAndEndOutsideTheCanvas) {
    useTool(PaintTool::gradient);
    const DragValue value =
        DragValue::between(inDocument({-100.0, 50.0}), inDocument({300.0, 50.0}));
    view.dragChanged(Surface::workspace,
                     DragValue::between(value.startLocation, value.startLocation));
    view.dragChanged(Surface::workspace, value);
    view.dragEnded(Surface::workspace, value);
    // A quarter and three quarters of the way.
    EXPECT_NEAR(pixel(0, 50).red(), 191, 2);
    EXPECT_NEAR(pixel(199, 50).blue(), 191, 2);
    EXPECT_EQ(host.history.size(), 1U);
}

class Bucket : public SelectionGestureFixture {
protected:
    Bucket() {
        host.tools.primaryColor = {1.0, 0.0, 0.0, 1.0};
        layer().bitmapPNGData = block({0, 0, 100, 100}, QColor(0, 0, 0));
        useTool(PaintTool::paintBucket);
    }
};

TEST_F(Bucket, OneGestureFillsOnceAtItsFirstPoint) {
    press({150.0, 50.0});
    moveTo({50.0, 50.0});
    release({50.0, 50.0});
    EXPECT_EQ(pixel(150, 50), QColor(Qt::red));
    EXPECT_EQ(pixel(50, 50), QColor(Qt::black));
    EXPECT_EQ(host.history.size(), 1U);
}

TEST_F(Bucket, TheLayerChangesAtTheRelease) {
    const auto before = layer().bitmapPNGData;
    press({150.0, 50.0});
    EXPECT_EQ(layer().bitmapPNGData, before);
    EXPECT_EQ(livePixel(150, 50), QColor(Qt::red));
}

TEST_F(Bucket, TheMatchSliderDoesTheFillAgainWithoutAnEntry) {
    layer().bitmapPNGData = block({0, 0, 200, 100}, QColor(0, 0, 0));
    QImage picture = raster::decodedImage(*layer().bitmapPNGData).toQImage().copy();
    QPainter(&picture).fillRect(100, 0, 100, 100, QColor(60, 60, 60));
    layer().bitmapPNGData =
        raster::encodedImage(raster::RasterImage::fromQImage(std::move(picture)));
    host.tools.paintBucketMatchPercentage = 0.0;
    view.settingsChanged();
    drag({50.0, 50.0}, {50.0, 50.0});
    EXPECT_EQ(pixel(150, 50), QColor(60, 60, 60));
    host.tools.paintBucketMatchPercentage = 90.0;
    view.settingsChanged();
    EXPECT_EQ(pixel(150, 50), QColor(Qt::red));
    host.tools.paintBucketMatchPercentage = 0.0;
    view.settingsChanged();
    EXPECT_EQ(pixel(50, 50), QColor(Qt::red));
    EXPECT_EQ(pixel(150, 50), QColor(60, 60, 60));
    EXPECT_EQ(host.history.size(), 1U);
}

TEST_F(Bucket, AnotherToolLetsTheFillBe) {
    drag({150.0, 50.0}, {150.0, 50.0});
    useTool(PaintTool::pencil);
    useTool(PaintTool::paintBucket);
    const auto before = layer().bitmapPNGData;
    host.tools.paintBucketMatchPercentage = 0.0;
    view.settingsChanged();
    EXPECT_EQ(layer().bitmapPNGData, before);
}

TEST_F(Bucket, ALockedLayerIsNotFilled) {
    layer().isLocked = true;
    drag({150.0, 50.0}, {150.0, 50.0});
    EXPECT_THAT(host.history, IsEmpty());
}

class Wand : public SelectionGestureFixture {
protected:
    Wand() {
        layer().bitmapPNGData = block({0, 0, 100, 100}, QColor(0, 0, 0));
        useTool(PaintTool::magicWand);
    }
};

TEST_F(Wand, SelectsOnThePressAndWithEverySample) {
    press({50.0, 50.0});
    EXPECT_EQ(selected(), QRectF(0.0, 0.0, 100.0, 100.0));
    moveTo({150.0, 50.0});
    EXPECT_EQ(selected(), QRectF(100.0, 0.0, 100.0, 100.0));
    EXPECT_THAT(host.history, IsEmpty());
    release({150.0, 50.0});
    EXPECT_EQ(host.history, (History{{"Select", "selection.pin.in.out"}}));
}

TEST_F(Wand, WithNoLayerTheSelectionGoes) {
    select({10.0, 10.0, 10.0, 10.0});
    project().selectedLayerID = QUuid();
    drag({50.0, 50.0}, {50.0, 50.0});
    EXPECT_TRUE(selected().isNull());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Wand, TheMatchSliderSelectsAgainWithoutAnEntry) {
    drag({50.0, 50.0}, {50.0, 50.0});
    layer().bitmapPNGData = block({0, 0, 60, 100}, QColor(0, 0, 0));
    host.tools.magicWandMatchPercentage = 60.0;
    view.settingsChanged();
    EXPECT_EQ(selected(), QRectF(0.0, 0.0, 60.0, 100.0));
    EXPECT_EQ(host.history.size(), 1U);
}

class Picker : public SelectionGestureFixture {};

TEST_F(Picker, TakesTheColorOfTheSelectedLayerAndRecordsNothing) {
    layer().bitmapPNGData = block({0, 0, 100, 100}, QColor(0, 128, 255));
    useTool(PaintTool::colorPicker);
    drag({50.0, 50.0}, {50.0, 50.0});
    EXPECT_EQ(host.tools.primaryColor, (model::ColorValue{0.0, 128.0 / 255.0, 1.0, 1.0}));
    EXPECT_THAT(host.history, IsEmpty());
}

} // namespace
} // namespace quillabrae::canvas
