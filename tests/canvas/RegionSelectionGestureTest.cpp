// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionGestureFixture.h"

namespace quillabrae::canvas {
namespace {

using model::PaintTool;
using testing::IsEmpty;

class RegionSelection : public SelectionGestureFixture {
protected:
    RegionSelection() { useTool(PaintTool::rectangleSelect); }

    const History selectEntry{{"Select", "selection.pin.in.out"}};
};

TEST_F(RegionSelection, ADragSelectsWholePixelsAndIsRecorded) {
    drag({10.6, 20.4}, {30.2, 45.7});
    EXPECT_EQ(selected(), QRectF(10.0, 20.0, 21.0, 26.0));
    EXPECT_FALSE(project().pixelSelection->maskPNGData);
    EXPECT_EQ(host.history, selectEntry);
    EXPECT_EQ(project().lastModified, host.now());
}

TEST_F(RegionSelection, AClickDeselectsWithoutAnEntry) {
    select({5.0, 5.0, 50.0, 50.0});
    drag({100.0, 50.0}, {100.0, 50.0});
    EXPECT_TRUE(selected().isNull());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(RegionSelection, AClickWithAModifierLeavesTheSelection) {
    for (const Modifiers keys : {Modifiers{.option = true}, Modifiers{.command = true}}) {
        select({5.0, 5.0, 50.0, 50.0});
        hold(keys);
        drag({100.0, 50.0}, {100.0, 50.0});
        EXPECT_EQ(selected(), QRectF(5.0, 5.0, 50.0, 50.0));
    }
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(RegionSelection, ThreePointsMakeADragAndAnythingLessAClick) {
    drag({10.0, 20.0}, {12.9, 20.0});
    EXPECT_TRUE(selected().isNull());
    drag({10.0, 20.5}, {13.0, 20.5});
    EXPECT_EQ(selected(), QRectF(10.0, 20.0, 3.0, 1.0));
    EXPECT_EQ(host.history, selectEntry);
}

TEST_F(RegionSelection, ADragThatReturnsIsAClick) {
    press({10.0, 20.0});
    moveTo({90.0, 80.0});
    EXPECT_EQ(selected(), QRectF(10.0, 20.0, 80.0, 60.0));
    moveTo({11.0, 21.0});
    release({11.0, 21.0});
    EXPECT_TRUE(selected().isNull());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(RegionSelection, ARectangleUnderAPixelWideGivesTheBaseBackMeanwhile) {
    select({5.0, 5.0, 50.0, 50.0});
    hold({.command = true});
    press({100.0, 20.0});
    moveTo({110.0, 30.0});
    EXPECT_EQ(selected(), QRectF(5.0, 5.0, 105.0, 50.0));
    moveTo({100.0, 30.0});
    EXPECT_EQ(selected(), QRectF(5.0, 5.0, 50.0, 50.0));
    moveTo({110.0, 30.0});
    EXPECT_EQ(selected(), QRectF(5.0, 5.0, 105.0, 50.0));
}

TEST_F(RegionSelection, APlainDragDropsTheOldSelectionAtOnce) {
    select({5.0, 5.0, 50.0, 50.0});
    press({100.0, 50.0});
    EXPECT_TRUE(selected().isNull());
}

TEST_F(RegionSelection, OptionTakesAwayAndWinsOverCommand) {
    select({0.0, 0.0, 50.0, 50.0});
    hold({.option = true, .command = true});
    drag({25.0, 0.0}, {60.0, 60.0});
    EXPECT_EQ(selected(), QRectF(0.0, 0.0, 25.0, 50.0));
    EXPECT_EQ(host.history, selectEntry);
}

TEST_F(RegionSelection, TakingAwayFromNothingSelectsNothing) {
    hold({.option = true});
    drag({25.0, 0.0}, {60.0, 60.0});
    EXPECT_TRUE(selected().isNull());
    EXPECT_EQ(host.history, selectEntry);
}

TEST_F(RegionSelection, AddingToNothingIsANewSelection) {
    hold({.command = true});
    drag({25.0, 0.0}, {60.0, 60.0});
    EXPECT_EQ(selected(), QRectF(25.0, 0.0, 35.0, 60.0));
    EXPECT_FALSE(project().pixelSelection->maskPNGData);
}

TEST_F(RegionSelection, ShiftMakesItSquareAndCutsItToTheCanvas) {
    press({150.0, 20.0});
    moveTo({180.0, 30.0});
    hold({.shift = true});
    EXPECT_EQ(selected(), QRectF(150.0, 20.0, 30.0, 30.0));
    moveTo({200.0, 100.0});
    EXPECT_EQ(selected(), QRectF(150.0, 20.0, 50.0, 50.0));
    hold({});
    EXPECT_EQ(selected(), QRectF(150.0, 20.0, 50.0, 80.0));
}

TEST_F(RegionSelection, TheEllipseHasAMask) {
    useTool(PaintTool::ellipseSelect);
    drag({10.0, 20.0}, {30.0, 40.0});
    EXPECT_EQ(selected(), QRectF(10.0, 20.0, 20.0, 20.0));
    const QImage mask = raster::decodedImage(*project().pixelSelection->maskPNGData).toQImage();
    EXPECT_EQ(mask.size(), QSize(20, 20));
    EXPECT_EQ(mask.pixelColor(10, 10).alpha(), 255);
    EXPECT_EQ(mask.pixelColor(0, 0).alpha(), 0);
}

TEST_F(RegionSelection, TheLassoFollowsItsPathAndShiftHasNoSayInIt) {
    useTool(PaintTool::lassoSelect);
    hold({.shift = true});
    press({10.0, 10.0});
    for (const auto point : {model::CanvasPoint{50.0, 10.0}, {50.0, 10.0}, {50.0, 50.0}})
        moveTo(point);
    release({50.0, 50.0});
    EXPECT_EQ(selected(), QRectF(10.0, 10.0, 40.0, 40.0));
    const QImage mask = raster::decodedImage(*project().pixelSelection->maskPNGData).toQImage();
    EXPECT_EQ(mask.pixelColor(35, 5).alpha(), 255);
    EXPECT_EQ(mask.pixelColor(5, 35).alpha(), 0);
    EXPECT_EQ(host.history, selectEntry);
}

TEST_F(RegionSelection, ADragPutsFloatingPixelsDownFirst) {
    floatPixels();
    drag({50.0, 50.0}, {60.0, 60.0});
    EXPECT_FALSE(project().floatingSelection);
    EXPECT_EQ(pixel(25, 25), QColor(Qt::red));
    EXPECT_EQ(selected(), QRectF(50.0, 50.0, 10.0, 10.0));
    EXPECT_EQ(host.history, selectEntry);
}

class WorkspaceSelection : public RegionSelection {
protected:
    WorkspaceSelection() {
        host.tools.zoomScale = 8.0;
        view.settingsChanged();
        timers.turn();
        scroller.origin = view.geometry().canvasDocumentOrigin(8.0);
    }
    void dragTo(QPointF from, QPointF to) {
        pointer.location = to - scroller.origin;
        view.dragChanged(Surface::workspace, DragValue::between(from, to));
    }
    QPointF origin() const { return scroller.origin; }
};

TEST_F(WorkspaceSelection, ADragFromOutsideReachesInAndStaysOnTheCanvas) {
    const QPointF outside = inDocument({-10.0, -10.0});
    dragTo(outside, inDocument({20.0, 30.0}));
    EXPECT_EQ(selected(), QRectF(0.0, 0.0, 20.0, 30.0));
    EXPECT_EQ(host.cursor, (model::CanvasPoint{20.0, 30.0}));
    view.dragEnded(Surface::workspace, DragValue::between(outside, inDocument({20.0, 30.0})));
    EXPECT_EQ(host.history, selectEntry);
}

TEST_F(WorkspaceSelection, NearTheEdgeOfTheViewportTheCanvasMovesUnderTheDrag) {
    const QPointF before = origin();
    const QPointF right = before + QPointF(scroller.clip.width() - 28.0, 300.0);
    dragTo(before + QPointF(-10.0, 300.0), right);
    const QRectF first = selected();
    timers.advance(1.0 / 60.0);
    // Half way into the edge: 14 points a tick.
    EXPECT_EQ(origin() - before, QPointF(14.0, 0.0));
    timers.advance(1.0 / 60.0);
    EXPECT_EQ(origin() - before, QPointF(28.0, 0.0));
    EXPECT_GT(selected().width(), first.width());
    dragTo(before + QPointF(-10.0, 300.0), origin() + QPointF(400.0, 300.0));
    timers.advance(0.2);
    EXPECT_EQ(origin() - before, QPointF(28.0, 0.0));
}

TEST_F(WorkspaceSelection, AToolChangeStopsThePanning) {
    const QPointF before = origin();
    dragTo(before + QPointF(-10.0, 300.0), before + QPointF(scroller.clip.width() - 28.0, 300.0));
    useTool(PaintTool::pencil);
    timers.advance(0.2);
    EXPECT_EQ(origin(), before);
}

TEST(AutoPan, RunsFromFourToFortyPointsATick) {
    EXPECT_EQ(selectionAutoPanStep(56.0, 0.0, 1000.0), 0.0);
    EXPECT_EQ(selectionAutoPanStep(944.0, 0.0, 1000.0), 0.0);
    EXPECT_EQ(selectionAutoPanStep(28.0, 0.0, 1000.0), -14.0);
    EXPECT_EQ(selectionAutoPanStep(1000.0, 0.0, 1000.0), 24.0);
    EXPECT_EQ(selectionAutoPanStep(-500.0, 0.0, 1000.0), -40.0);
}

} // namespace
} // namespace quillabrae::canvas
