// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFixture.h"

#include <cmath>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;

class Zoom : public CanvasFixture {
protected:
    ZoomController& zoom = view.zoom();

    void pinch(double magnification, double timestamp) {
        zoom.applyMagnification(magnification, timestamp);
    }
    /// Two events close together, which leave the pinch with a velocity.
    void flick(double magnification) {
        pinch(magnification, 10.0);
        pinch(magnification, 10.0 + 1.0 / 60.0);
    }
    void expectCanvasPoint(CanvasPoint expected, QPointF viewportPoint) const {
        EXPECT_NEAR(canvasPointAt(viewportPoint).x, expected.x, 1e-9);
        EXPECT_NEAR(canvasPointAt(viewportPoint).y, expected.y, 1e-9);
    }
};

TEST_F(Zoom, APointerOverTheCanvasIsTheAnchor) {
    pointer.location = inViewport({150.0, 20.0});
    const auto plan = zoom.zoomAnchorPlan(1.0, scroller.clipBounds());
    EXPECT_EQ(plan.canvasPoint, (CanvasPoint{150.0, 20.0}));
    EXPECT_EQ(plan.viewportOffset, *pointer.location);
}

TEST_F(Zoom, APointerOffTheCanvasAnchorsItsCenterAtTheViewportCenter) {
    const ZoomAnchorPlan center{{100.0, 50.0}, {450.0, 350.0}};
    for (const std::optional<QPointF> place :
         {std::optional<QPointF>(), std::optional(QPointF(3.0, 3.0)),
          std::optional(QPointF(-1.0, 350.0)), std::optional(QPointF(900.0, 350.0))}) {
        pointer.location = place;
        EXPECT_EQ(zoom.zoomAnchorPlan(1.0, scroller.clipBounds()), center);
    }
}

TEST_F(Zoom, APinchKeepsTheCanvasPixelUnderThePointer) {
    pointer.location = inViewport({150.0, 20.0});
    pinch(1.0, 1.0);
    EXPECT_DOUBLE_EQ(view.currentZoom(), 1.85);
    expectCanvasPoint({150.0, 20.0}, *pointer.location);
    pinch(-0.5, 1.5);
    expectCanvasPoint({150.0, 20.0}, *pointer.location);
}

TEST_F(Zoom, APinchWithThePointerOffTheCanvasZoomsAroundTheCanvasCenter) {
    pointer.location = QPointF(5.0, 5.0);
    scroller.origin += QPointF(37.0, -11.0);
    pinch(1.0, 1.0);
    expectCanvasPoint({100.0, 50.0}, {450.0, 350.0});
}

TEST_F(Zoom, MagnificationsUpToTheThresholdArePassedOn) {
    for (const double magnification : {0.0, 0.0005, -0.0005, 0.0003}) {
        EXPECT_FALSE(zoom.applyMagnification(magnification, 1.0));
        EXPECT_FALSE(view.handleMagnifyEvent({magnification, 1.0, inDocument({10.0, 10.0})}));
    }
    EXPECT_FALSE(zoom.liveZoomScale());
    EXPECT_TRUE(zoom.applyMagnification(0.0006, 1.0));
}

TEST_F(Zoom, ZoomStopsAtItsLimits) {
    EXPECT_TRUE(zoom.applyZoomDelta(50.0));
    EXPECT_EQ(view.currentZoom(), 64.0);
    EXPECT_FALSE(zoom.applyZoomDelta(0.5));
    EXPECT_TRUE(zoom.applyZoomDelta(-50.0));
    EXPECT_EQ(view.currentZoom(), 0.1);
    EXPECT_FALSE(zoom.applyZoomDelta(-0.5));
}

TEST_F(Zoom, DeltasTooSmallToSeeChangeNothing) {
    EXPECT_FALSE(zoom.applyZoomDelta(0.0001));
    EXPECT_FALSE(zoom.applyZoomDelta(std::nan("")));
    EXPECT_FALSE(zoom.liveZoomScale());
}

TEST_F(Zoom, WithoutAScrollerNothingZooms) {
    view.setScroller(nullptr);
    EXPECT_FALSE(zoom.applyZoomDelta(1.0));
    EXPECT_FALSE(zoom.applyMagnification(1.0, 1.0));
    EXPECT_FALSE(view.handleMagnifyEvent({1.0, 1.0, {600.0, 600.0}}));
    EXPECT_EQ(view.currentZoom(), 1.0);
}

TEST_F(Zoom, ThePersistentZoomIsWrittenOnceWhenTheLiveZoomHasRested) {
    pinch(0.2, 1.0);
    timers.advance(0.1);
    pinch(0.2, 1.5);
    timers.advance(0.15);
    EXPECT_TRUE(host.zoomWrites.empty());
    EXPECT_EQ(host.tools.zoomScale, 1.0);
    const double shown = view.currentZoom();
    timers.advance(10.0);
    ASSERT_FALSE(host.zoomWrites.empty());
    EXPECT_EQ(host.zoomWrites.size(), 1U);
    EXPECT_GE(host.zoomWrites.front(), shown);
    EXPECT_FALSE(zoom.liveZoomScale());
}

TEST_F(Zoom, TheCommitDoesNotScrollASecondTime) {
    pointer.location = inViewport({150.0, 20.0});
    pinch(0.4, 1.0);
    timers.advance(0.1);
    const QPointF origin = scroller.origin;
    pointer.location = inViewport({20.0, 80.0});
    const int scrolls = scroller.scrolls;
    timers.advance(1.0);
    EXPECT_EQ(host.zoomWrites.size(), 1U);
    EXPECT_EQ(scroller.scrolls, scrolls);
    EXPECT_EQ(scroller.origin, origin);
}

TEST_F(Zoom, TheFirstPinchEventGivesNoMomentum) {
    pinch(0.4, 1.0);
    EXPECT_EQ(zoom.magnifyVelocity(), 0.0);
    const double shown = view.currentZoom();
    timers.advance(5.0);
    EXPECT_EQ(view.currentZoom(), shown);
}

TEST_F(Zoom, VelocityIsSmoothedAndLimited) {
    pinch(0.02, 10.0);
    pinch(0.02, 10.02);
    EXPECT_NEAR(zoom.magnifyVelocity(), 1.0 * 0.55, 1e-9);
    pinch(0.02, 10.04);
    EXPECT_NEAR(zoom.magnifyVelocity(), 1.0 * 0.55 + 0.55 * 0.45, 1e-9);
    pinch(9.0, 10.06);
    EXPECT_NEAR(zoom.magnifyVelocity(), 3.8 * 0.55 + 0.7975 * 0.45, 1e-9);
}

TEST_F(Zoom, VelocityTakesIntervalsWithinTheirLimits) {
    pinch(0.01, 10.0);
    pinch(0.01, 10.0);
    EXPECT_NEAR(zoom.magnifyVelocity(), 0.01 * 120.0 * 0.55, 1e-9);
    timers.advance(5.0);
    pinch(0.01, 50.0);
    pinch(0.16, 90.0);
    EXPECT_NEAR(zoom.magnifyVelocity(), 0.16 / 0.08 * 0.55, 1e-9);
}

TEST_F(Zoom, MomentumBeginsWhenTheFingersHaveBeenStillAndDiesAway) {
    flick(0.02);
    const double velocity = zoom.magnifyVelocity();
    const double shown = view.currentZoom();
    timers.advance(0.044);
    EXPECT_EQ(view.currentZoom(), shown);
    timers.advance(0.002);
    EXPECT_NEAR(view.currentZoom(), shown * std::pow(1.85, velocity / 60.0), 1e-12);
    double expected = shown;
    for (double v = velocity; v > 0.08; v *= 0.84) expected *= std::pow(1.85, v / 60.0);
    timers.advance(3.0);
    EXPECT_NEAR(view.currentZoom(), expected, 1e-9);
    EXPECT_EQ(host.zoomWrites.size(), 1U);
    EXPECT_EQ(zoom.magnifyVelocity(), 0.0);
}

TEST_F(Zoom, MomentumTakesAtMostTwentyTwoSteps) {
    for (int i = 0; i < 12; ++i) pinch(0.5, 10.0 + i / 60.0);
    for (int i = 0; i < 12; ++i) pinch(-0.5, 11.0 + i / 60.0);
    const double velocity = zoom.magnifyVelocity();
    const double shown = view.currentZoom();
    ASSERT_LT(velocity * std::pow(0.84, 21), -0.08);
    double expected = shown;
    for (int step = 0; step < 22; ++step) {
        expected *= std::pow(1.85, velocity * std::pow(0.84, step) / 60.0);
    }
    timers.advance(3.0);
    EXPECT_NEAR(view.currentZoom(), expected, 1e-9);
}

TEST_F(Zoom, MomentumHoldsTheAnchorOfThePinch) {
    pointer.location = inViewport({150.0, 20.0});
    flick(0.03);
    const QPointF place = *pointer.location;
    pointer.location = QPointF(1.0, 1.0);
    timers.advance(3.0);
    expectCanvasPoint({150.0, 20.0}, place);
}

TEST_F(Zoom, ANewPinchEventEndsTheMomentumOfTheLast) {
    flick(0.03);
    timers.advance(0.08);
    const double shown = view.currentZoom();
    pinch(-0.01, 20.0);
    const double after = view.currentZoom();
    EXPECT_LT(after, shown);
    timers.advance(0.04);
    EXPECT_EQ(view.currentZoom(), after);
}

TEST_F(Zoom, MomentumEndsAtTheLimitAndIsCommitted) {
    host.tools.zoomScale = 63.0;
    view.settingsChanged();
    flick(0.03);
    timers.advance(0.08);
    EXPECT_EQ(view.currentZoom(), 64.0);
    timers.advance(0.3);
    EXPECT_EQ(zoom.magnifyVelocity(), 0.0);
    EXPECT_THAT(host.zoomWrites, testing::ElementsAre(64.0));
    EXPECT_TRUE(timers.isIdle());
}

TEST_F(Zoom, AFitRequestStopsMomentumAndThePendingCommitNeverFires) {
    pointer.location = inViewport({150.0, 20.0});
    flick(0.03);
    timers.advance(0.08);
    host.tools.zoomScale = 3.0;
    view.settingsChanged();
    view.zoomToFitRequested(QUuid::createUuid());
    EXPECT_EQ(view.currentZoom(), 3.0);
    expectCanvasPoint({100.0, 50.0}, {450.0, 350.0});
    timers.advance(5.0);
    EXPECT_TRUE(host.zoomWrites.empty());
    EXPECT_EQ(view.currentZoom(), 3.0);
    expectCanvasPoint({100.0, 50.0}, {450.0, 350.0});
}

TEST_F(Zoom, AFitRequestBeforeTheScrollerIsThereWaitsForIt) {
    view.setScroller(nullptr);
    host.tools.zoomScale = 20.0;
    view.settingsChanged();
    view.zoomToFitRequested(QUuid::createUuid());
    scroller.origin = {};
    view.setScroller(&scroller);
    expectCanvasPoint({100.0, 50.0}, {450.0, 350.0});
}

TEST_F(Zoom, AChangeFromOutsideKeepsTheAnchor) {
    pointer.location = inViewport({30.0, 40.0});
    host.tools.zoomScale = 4.0;
    view.settingsChanged();
    expectCanvasPoint({30.0, 40.0}, *pointer.location);
    EXPECT_EQ(scroller.document, view.geometry().documentViewSize(4.0));
}

TEST_F(Zoom, AChangeFromOutsideDuringAPinchScrollsNothing) {
    pinch(0.4, 1.0);
    timers.turn();
    const int scrolls = scroller.scrolls;
    host.tools.zoomScale = 4.0;
    view.settingsChanged();
    EXPECT_EQ(scroller.scrolls, scrolls);
    EXPECT_DOUBLE_EQ(view.currentZoom(), std::pow(1.85, 0.4));
}

TEST_F(Zoom, TheScrollIsAppliedAgainAfterTheLayout) {
    pointer.location = inViewport({30.0, 40.0});
    zoom.applyZoomDelta(1.0);
    const QPointF origin = scroller.origin;
    scroller.origin = {1.0, 2.0};
    timers.turn();
    EXPECT_EQ(scroller.origin, origin);
}

TEST_F(Zoom, AZoomStepIsPaintedOnceWhereTheLayoutMovedNothing) {
    zoom.applyZoomDelta(1.0);
    EXPECT_EQ(display.wholeRepaints, 1);
    timers.turn();
    EXPECT_EQ(display.wholeRepaints, 1);
    zoom.applyZoomDelta(0.5);
    scroller.origin = {1.0, 2.0};
    timers.turn();
    EXPECT_EQ(display.wholeRepaints, 3);
}

TEST_F(Zoom, ASupersededScrollIsNotAppliedAgain) {
    pointer.location = inViewport({30.0, 40.0});
    zoom.applyZoomDelta(1.0);
    const QPointF first = scroller.origin;
    zoom.applyZoomDelta(0.5);
    const QPointF second = scroller.origin;
    ASSERT_NE(first, second);
    const int scrolls = scroller.scrolls;
    timers.turn();
    EXPECT_EQ(scroller.origin, second);
    EXPECT_EQ(scroller.scrolls, scrolls + 1);
}

TEST_F(Zoom, TheScrollStaysInsideTheDocument) {
    scroller.clip = {2000.0, 1500.0};
    view.setViewportSize(scroller.clip);
    pointer.location = inViewport({1.0, 1.0});
    zoom.applyZoomDelta(-3.0);
    EXPECT_GE(scroller.origin.x(), 0.0);
    EXPECT_LE(scroller.origin.x(), scroller.document.width() - 2000.0);
}

TEST_F(Zoom, APinchIsTakenUpToAMarginAroundTheDocument) {
    const QSizeF document = view.geometry().documentViewSize(1.0);
    EXPECT_TRUE(view.handleMagnifyEvent({0.1, 1.0, {-79.0, -79.0}}));
    timers.advance(1.0);
    EXPECT_FALSE(view.handleMagnifyEvent({0.1, 9.0, {-81.0, 10.0}}));
    EXPECT_FALSE(view.handleMagnifyEvent({0.1, 9.0, {10.0, document.height() + 1000.0}}));
}

TEST_F(Zoom, OneNotchOfTheWheelIsAQuarterMoreWithoutMomentum) {
    pointer.location = inViewport({150.0, 20.0});
    view.applyWheelZoom(1.0);
    view.applyWheelZoom(1.0);
    EXPECT_DOUBLE_EQ(view.currentZoom(), 1.25 * 1.25);
    expectCanvasPoint({150.0, 20.0}, *pointer.location);
    timers.advance(3.0);
    EXPECT_DOUBLE_EQ(host.tools.zoomScale, 1.25 * 1.25);
    view.applyWheelZoom(-0.5);
    view.applyWheelZoom(-0.5);
    EXPECT_DOUBLE_EQ(view.currentZoom(), 1.25);
}

TEST_F(Zoom, TheWheelEndsTheMomentumOfAPinch) {
    flick(0.03);
    view.applyWheelZoom(1.0);
    const double shown = view.currentZoom();
    timers.advance(3.0);
    EXPECT_EQ(view.currentZoom(), shown);
}

TEST_F(Zoom, TheZoomToolStepsInAndWithOptionOut) {
    host.tools.selectedTool = model::PaintTool::zoom;
    pointer.location = inViewport({30.0, 40.0});
    const DragValue click = DragValue::between(local({30.0, 40.0}), local({30.0, 40.0}));
    view.dragChanged(Surface::interactiveView, click);
    EXPECT_EQ(view.currentZoom(), 1.0);
    view.dragEnded(Surface::interactiveView, click);
    EXPECT_DOUBLE_EQ(host.tools.zoomScale, 1.25);
    expectCanvasPoint({30.0, 40.0}, *pointer.location);
    pointer.keys.option = true;
    view.dragEnded(Surface::interactiveView, click);
    EXPECT_DOUBLE_EQ(host.tools.zoomScale, 1.0);
}

TEST_F(Zoom, TheZoomToolStopsAtTheLimits) {
    host.tools.selectedTool = model::PaintTool::zoom;
    host.tools.zoomScale = 0.1;
    view.settingsChanged();
    pointer.keys.option = true;
    view.dragEnded(Surface::interactiveView, DragValue::between({20.0, 20.0}, {20.0, 20.0}));
    EXPECT_EQ(host.tools.zoomScale, 0.1);
    host.tools.zoomScale = 60.0;
    view.settingsChanged();
    pointer.keys.option = false;
    view.dragEnded(Surface::interactiveView, DragValue::between({20.0, 20.0}, {20.0, 20.0}));
    EXPECT_EQ(host.tools.zoomScale, 64.0);
}

TEST_F(Zoom, TheZoomToolCommitsALivePinchFirst) {
    host.tools.selectedTool = model::PaintTool::zoom;
    pinch(1.0, 1.0);
    view.dragEnded(Surface::interactiveView, DragValue::between({20.0, 20.0}, {20.0, 20.0}));
    EXPECT_FALSE(zoom.liveZoomScale());
    EXPECT_DOUBLE_EQ(host.tools.zoomScale, 1.85 * 1.25);
}

} // namespace
} // namespace quillabrae::canvas
