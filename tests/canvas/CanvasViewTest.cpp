// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFixture.h"

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;

class View : public CanvasFixture {};

TEST_F(View, TheViewportIsReportedOnAppearingAndOnEveryChange) {
    EXPECT_THAT(host.viewports, testing::ElementsAre(QSizeF(900.0, 700.0)));
    scroller.clip = {1000.0, 600.0};
    view.setViewportSize(scroller.clip);
    EXPECT_EQ(host.viewports.back(), QSizeF(1000.0, 600.0));
}

TEST_F(View, AResizedViewportKeepsWhatWasInItsMiddle) {
    scroller.origin += QPointF(20.0, -30.0);
    const CanvasPoint before = canvasPointAt({450.0, 350.0});
    scroller.clip = {700.0, 500.0};
    view.setViewportSize(scroller.clip);
    EXPECT_NEAR(canvasPointAt({350.0, 250.0}).x, before.x, 1e-9);
    EXPECT_NEAR(canvasPointAt({350.0, 250.0}).y, before.y, 1e-9);
}

TEST_F(View, ACanvasInAViewportThatGrowsPastTheDocumentIsCentered) {
    scroller.clip = {4000.0, 3000.0};
    view.setViewportSize(scroller.clip);
    EXPECT_EQ(canvasPointAt({2000.0, 1500.0}), (CanvasPoint{100.0, 50.0}));
}

TEST_F(View, AnotherActiveProjectIsShownCentered) {
    scroller.origin = {0.0, 0.0};
    project().canvasWidth = 3000.0;
    project().canvasHeight = 500.0;
    view.activeProjectChanged();
    EXPECT_EQ(scroller.document, view.geometry().documentViewSize(1.0));
    EXPECT_EQ(canvasPointAt({450.0, 350.0}), (CanvasPoint{1500.0, 250.0}));
}

TEST_F(View, WithoutAProjectTheDocumentIsTheViewport) {
    host.active.reset();
    view.activeProjectChanged();
    EXPECT_EQ(scroller.document, QSizeF(900.0, 700.0));
    EXPECT_EQ(scroller.origin, QPointF(0.0, 0.0));
}

TEST_F(View, WithoutAProjectInputDoesNothing) {
    host.active.reset();
    view.activeProjectChanged();
    const DragValue drag = DragValue::between({100.0, 100.0}, {120.0, 120.0});
    for (const PaintTool tool : model::allPaintTools()) {
        host.tools.selectedTool = tool;
        for (const Surface surface : {Surface::interactiveView, Surface::workspace}) {
            view.dragChanged(surface, drag);
            view.dragEnded(surface, drag);
        }
        view.hover({100.0, 100.0});
        EXPECT_FALSE(view.handleRightMouseEvent({RightMousePhase::down, {100.0, 100.0}}));
        EXPECT_FALSE(view.handleMagnifyEvent({0.1, 1.0, {100.0, 100.0}}));
    }
    EXPECT_TRUE(host.history.empty());
    EXPECT_FALSE(host.cursor);
    EXPECT_TRUE(host.zoomWrites.empty());
}

TEST_F(View, AProjectThatGrewGetsALargerDocument) {
    project().canvasWidth = 2000.0;
    view.projectChanged();
    EXPECT_EQ(scroller.document, view.geometry().documentViewSize(1.0));
}

TEST_F(View, TheInteractiveViewReachesAGutterBeyondTheCanvas) {
    EXPECT_EQ(view.surfaceAt(inDocument({-17.0, -17.0})), Surface::interactiveView);
    EXPECT_EQ(view.surfaceAt(inDocument({-19.0, 50.0})), Surface::workspace);
    EXPECT_EQ(view.surfaceAt(inDocument({217.0, 117.0})), Surface::interactiveView);
    EXPECT_EQ(view.surfaceAt(inDocument({219.0, 50.0})), Surface::workspace);
}

TEST_F(View, HoverOverTheInteractiveViewReportsThePointHeldToTheCanvas) {
    for (const PaintTool tool : {PaintTool::paintbrush, PaintTool::eraser, PaintTool::zoom}) {
        host.tools.selectedTool = tool;
        view.hover(inDocument({12.25, 3.5}));
        EXPECT_EQ(host.cursor, (CanvasPoint{12.25, 3.5}));
        view.hover(inDocument({-10.0, 110.0}));
        EXPECT_EQ(host.cursor, (CanvasPoint{0.0, 100.0}));
        EXPECT_EQ(view.hoveredCanvasPoint(), host.cursor);
    }
}

TEST_F(View, HoverInTheWorkspaceExistsOnlyForToolsWithASurfaceThere) {
    for (const PaintTool tool : model::allPaintTools()) {
        host.tools.selectedTool = tool;
        view.hover(inDocument({10.0, 10.0}));
        view.hover(inDocument({-50.0, 30.0}));
        const bool hasSurface = tool == PaintTool::gradient || tool == PaintTool::eraser ||
                                tool == PaintTool::rectangleSelect ||
                                tool == PaintTool::lassoSelect || tool == PaintTool::ellipseSelect;
        EXPECT_EQ(host.cursor, hasSurface ? std::optional(CanvasPoint{-50.0, 30.0}) : std::nullopt)
            << model::title(tool).toStdString();
    }
}

TEST_F(View, TheEndOfHoverClearsThePoint) {
    view.hover(inDocument({10.0, 10.0}));
    view.hoverEnded();
    EXPECT_FALSE(host.cursor);
    EXPECT_FALSE(view.hoveredCanvasPoint());
}

TEST_F(View, ADragReportsThePointClampedExceptForTheEraser) {
    const DragValue drag = DragValue::between(local({5.0, 5.0}), local({-12.0, 300.0}));
    host.tools.selectedTool = PaintTool::zoom;
    view.dragChanged(Surface::interactiveView, drag);
    EXPECT_EQ(host.cursor, (CanvasPoint{0.0, 100.0}));
    host.tools.selectedTool = PaintTool::eraser;
    view.dragChanged(Surface::interactiveView, drag);
    EXPECT_EQ(host.cursor, (CanvasPoint{-12.0, 300.0}));
}

TEST_F(View, OnlyTheEraserAndTheGradientDrawFromTheWorkspace) {
    const DragValue press =
        DragValue::between(inDocument({-50.0, 50.0}), inDocument({-50.0, 50.0}));
    for (const PaintTool tool : model::allPaintTools()) {
        host.tools.selectedTool = tool;
        view.dragChanged(Surface::workspace, press);
        EXPECT_EQ(view.drawing().isRunning(),
                  tool == PaintTool::eraser || tool == PaintTool::gradient)
            << model::title(tool).toStdString();
        view.dragEnded(Surface::workspace, press);
        EXPECT_FALSE(view.drawing().isRunning());
    }
}

} // namespace
} // namespace quillabrae::canvas
