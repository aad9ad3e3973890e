// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasGeometry.h"

#include <gtest/gtest.h>

namespace quillabrae::canvas {
namespace {

model::PaintProject canvas(double width, double height) {
    model::PaintProject project;
    project.canvasWidth = width;
    project.canvasHeight = height;
    return project;
}

CanvasGeometry geometry(const model::PaintProject& project, QSizeF viewport = {900.0, 700.0}) {
    return CanvasGeometry::of(project, viewport);
}

model::PixelSelection selection(double x, double y, double width, double height) {
    return {x, y, width, height, std::nullopt};
}

TEST(CanvasGeometry, TheInteractiveViewIsTheZoomedCanvasWithAGutter) {
    const auto g = geometry(canvas(200.0, 100.0));
    EXPECT_EQ(g.interactiveViewWidth(2.5), 536.0);
    EXPECT_EQ(g.interactiveViewHeight(2.5), 286.0);
}

TEST(CanvasGeometry, ADocumentLargerThanTheViewportHasTheLeastPadding) {
    const auto g = geometry(canvas(1000.0, 1000.0));
    EXPECT_EQ(g.horizontalCanvasPadding(1.0), 520.0);
    EXPECT_EQ(g.verticalCanvasPadding(1.0), 520.0);
    EXPECT_EQ(g.canvasDocumentOrigin(1.0), QPointF(538.0, 538.0));
    EXPECT_EQ(g.documentViewSize(1.0), QSizeF(2076.0, 2076.0));
}

TEST(CanvasGeometry, AViewportLargerThanTheDocumentGrowsBothPaddingsAndCentersTheCanvas) {
    const QSizeF viewport(3000.0, 2000.0);
    const auto g = geometry(canvas(200.0, 100.0), viewport);
    EXPECT_EQ(g.horizontalCanvasPadding(1.0), (3000.0 - 236.0) / 2.0);
    EXPECT_EQ(g.verticalCanvasPadding(1.0), (2000.0 - 136.0) / 2.0);
    EXPECT_EQ(g.documentViewSize(1.0), viewport);
    EXPECT_EQ(g.canvasDocumentOrigin(1.0) + QPointF(100.0, 50.0), QPointF(1500.0, 1000.0));
}

TEST(CanvasGeometry, ASelectionOverhangingTheRightEdgeWidensTheDocument) {
    auto project = canvas(200.0, 100.0);
    project.pixelSelection = selection(150.0, 10.0, 100.0, 20.0);
    const auto g = geometry(project);
    EXPECT_EQ(g.interactiveViewWidth(2.0), 2.0 * 250.0 + 36.0);
    EXPECT_EQ(g.interactiveViewHeight(2.0), 2.0 * 100.0 + 36.0);
}

TEST(CanvasGeometry, ASelectionOverhangingTheLeftEdgeDoesNotWidenTheDocument) {
    auto project = canvas(200.0, 100.0);
    project.pixelSelection = selection(-150.0, -80.0, 100.0, 20.0);
    EXPECT_EQ(geometry(project).documentViewSize(1.0),
              geometry(canvas(200.0, 100.0)).documentViewSize(1.0));
    EXPECT_EQ(geometry(project).canvasDocumentOrigin(1.0),
              geometry(canvas(200.0, 100.0)).canvasDocumentOrigin(1.0));
}

TEST(CanvasGeometry, TheSelectionInForceIsTheOutlineThenTheFloatingPixelsThenTheWholeCanvas) {
    auto project = canvas(200.0, 100.0);
    EXPECT_FALSE(currentSelection(project));
    project.isCanvasSelected = true;
    EXPECT_EQ(currentSelection(project), selection(0.0, 0.0, 200.0, 100.0));
    project.floatingSelection = model::FloatingPixelSelection{{}, 30.0, 40.0, QUuid()};
    EXPECT_EQ(currentSelection(project), selection(0.0, 0.0, 30.0, 40.0));
    project.pixelSelection = selection(1.0, 2.0, 3.0, 4.0);
    EXPECT_EQ(currentSelection(project), selection(1.0, 2.0, 3.0, 4.0));
}

TEST(CanvasGeometry, PointsConvertWithoutRounding) {
    const auto g = geometry(canvas(200.0, 100.0));
    EXPECT_EQ(g.unclampedCanvasPoint({19.0, 17.0}, 4.0), (model::CanvasPoint{0.25, -0.25}));
    EXPECT_EQ(g.clampedCanvasPoint({19.0, 17.0}, 4.0), (model::CanvasPoint{0.25, 0.0}));
    EXPECT_EQ(g.clampedCanvasPoint({5000.0, 5000.0}, 4.0), (model::CanvasPoint{200.0, 100.0}));
    EXPECT_EQ(g.unclampedCanvasPoint(g.interactiveViewPoint({12.5, 99.25}, 4.0), 4.0),
              (model::CanvasPoint{12.5, 99.25}));
}

TEST(CanvasGeometry, AWorkspacePointIsCountedFromTheCanvasCorner) {
    const auto g = geometry(canvas(1000.0, 1000.0));
    EXPECT_EQ(g.unclampedCanvasPointFromWorkspace({538.0 - 20.0, 538.0 + 30.0}, 2.0),
              (model::CanvasPoint{-10.0, 15.0}));
}

TEST(CanvasGeometry, TheCanvasHoldsItsLeftAndTopEdgesButNotItsRightAndBottomOnes) {
    const auto g = geometry(canvas(200.0, 100.0));
    EXPECT_TRUE(g.isCanvasLocation({18.0, 18.0}, 2.0));
    EXPECT_FALSE(g.isCanvasLocation({17.9, 18.0}, 2.0));
    EXPECT_TRUE(g.isCanvasLocation({417.9, 217.9}, 2.0));
    EXPECT_FALSE(g.isCanvasLocation({418.0, 100.0}, 2.0));
    EXPECT_FALSE(g.isCanvasLocation({100.0, 218.0}, 2.0));
}

TEST(CanvasGeometry, WhatIsVisibleReachesAMarginBeyondTheViewport) {
    const auto g = geometry(canvas(1000.0, 1000.0));
    const QRectF clip(538.0, 638.0, 900.0, 700.0);
    EXPECT_EQ(g.visibleCanvasScreenRect(clip, {}, 2.0), QRectF(-96.0, 4.0, 1092.0, 892.0));
    EXPECT_EQ(g.visibleCanvasPixelRect(clip, {}, 2.0), QRectF(-48.0, 2.0, 546.0, 446.0));
}

TEST(CanvasGeometry, WithoutAScrollerTheViewportCountsAsUnscrolled) {
    const auto g = geometry(canvas(1000.0, 1000.0));
    EXPECT_EQ(g.visibleCanvasScreenRect(std::nullopt, {900.0, 700.0}, 1.0),
              QRectF(-538.0 - 96.0, -538.0 - 96.0, 1092.0, 892.0));
}

TEST(CanvasGeometry, NothingIsVisibleAtAZoomThatIsNotPositive) {
    EXPECT_EQ(geometry(canvas(10.0, 10.0)).visibleCanvasPixelRect(std::nullopt, {9.0, 9.0}, 0.0),
              QRectF(0.0, 0.0, 0.0, 0.0));
}

} // namespace
} // namespace quillabrae::canvas
