// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionGestureFixture.h"

#include <QColor>

#include <string>

namespace quillabrae::canvas {
namespace {

using model::PaintTool;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Modifiers moving{.option = true, .command = true};
constexpr Modifiers movingFar{.shift = true, .option = true, .command = true};
const QColor clear(0, 0, 0, 0);
const QColor red(255, 0, 0);

class Keyboard : public SelectionGestureFixture {
protected:
    Keyboard() {
        host.tools.primaryColor = {1.0, 0.0, 0.0, 1.0};
        host.tools.brushSize = 2.0;
        useTool(PaintTool::paintbrush);
    }

    bool key(CanvasKey key, Modifiers keys = {}) {
        hold(keys);
        const bool wasTaken = view.handleKey(key);
        hold({});
        return wasTaken;
    }
    /// Shows the pixel at that place.
    void pointAt(QPoint pixel) {
        view.keyboardLeft();
        view.hover(inDocument({pixel.x() + 0.5, pixel.y() - 0.5}));
        ASSERT_TRUE(key(CanvasKey::down, moving));
        ASSERT_EQ(pointed(), pixel);
    }
    void moveBy(int columns, int rows) {
        for (int i = 0; i < std::abs(columns); ++i)
            key(columns < 0 ? CanvasKey::left : CanvasKey::right, moving);
        for (int i = 0; i < std::abs(rows); ++i)
            key(rows < 0 ? CanvasKey::up : CanvasKey::down, moving);
    }
    std::optional<QPoint> pointed() const { return view.keyboardPointer().pixel(); }
    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const auto& [title, symbol] : host.history) result.push_back(title);
        return result;
    }
};

TEST_F(Keyboard, ThePixelAppearsWhereThePointerIsAndMovesByOneOrWithShiftByTen) {
    EXPECT_FALSE(pointed());
    view.hover(inDocument({30.5, 40.5}));
    EXPECT_TRUE(key(CanvasKey::right, moving));
    EXPECT_EQ(pointed(), QPoint(31, 40));
    EXPECT_TRUE(key(CanvasKey::up, movingFar));
    EXPECT_EQ(pointed(), QPoint(31, 30));
    EXPECT_TRUE(key(CanvasKey::left, movingFar));
    EXPECT_TRUE(key(CanvasKey::down, moving));
    EXPECT_EQ(pointed(), QPoint(21, 31));
    EXPECT_EQ(host.cursor, (model::CanvasPoint{21.5, 31.5}));
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Keyboard, WithoutAPointerItAppearsInTheMiddleOfWhatIsSeen) {
    EXPECT_TRUE(key(CanvasKey::right, moving));
    EXPECT_EQ(pointed(), QPoint(101, 50));
}

TEST_F(Keyboard, ThePixelStaysOnTheCanvas) {
    pointAt({3, 2});
    moveBy(-9, -9);
    EXPECT_EQ(pointed(), QPoint(0, 0));
    for (int i = 0; i < 30; ++i) key(CanvasKey::right, movingFar);
    for (int i = 0; i < 30; ++i) key(CanvasKey::down, movingFar);
    EXPECT_EQ(pointed(), QPoint(199, 99));
    project().canvasWidth = 50.0;
    view.projectChanged();
    EXPECT_EQ(pointed(), QPoint(49, 99));
}

TEST_F(Keyboard, ThePixelIsScrolledIntoView) {
    host.tools.zoomScale = 32.0;
    view.settingsChanged();
    for (const QPoint corner : {QPoint(0, 0), QPoint(199, 99), QPoint(0, 99)}) {
        while (pointed() != corner) {
            const QPoint way = corner - pointed().value_or(QPoint(100, 50));
            moveBy(way.x(), way.y());
            if (!pointed()) FAIL();
        }
        const QPointF shown = inViewport({corner.x() + 0.5, corner.y() + 0.5});
        EXPECT_TRUE(QRectF({0.0, 0.0}, scroller.clip).contains(shown));
    }
}

TEST_F(Keyboard, SpacePressesAndReleasesTheToolAndTheMovesBetweenDraw) {
    pointAt({20, 30});
    EXPECT_TRUE(key(CanvasKey::space));
    EXPECT_TRUE(view.keyboardPointer().isPressed());
    moveBy(10, 0);
    EXPECT_EQ(livePixel(25, 30), red);
    EXPECT_THAT(host.history, IsEmpty());
    EXPECT_TRUE(key(CanvasKey::space));
    EXPECT_FALSE(view.keyboardPointer().isPressed());
    EXPECT_EQ(pixel(20, 30), red);
    EXPECT_EQ(pixel(30, 30), red);
    EXPECT_EQ(pixel(25, 33), clear);
    EXPECT_THAT(titles(), ElementsAre("Paintbrush"));
    moveBy(0, 10);
    EXPECT_EQ(pixel(30, 36), clear);
}

TEST_F(Keyboard, WithNoPixelShownSpaceAndEnterAreNotTaken) {
    EXPECT_FALSE(key(CanvasKey::space));
    EXPECT_FALSE(key(CanvasKey::enter));
    EXPECT_FALSE(key(CanvasKey::escape));
    EXPECT_FALSE(key(CanvasKey::right));
    pointAt({20, 30});
    EXPECT_FALSE(key(CanvasKey::enter));
    EXPECT_TRUE(key(CanvasKey::escape));
    EXPECT_FALSE(pointed());
    EXPECT_FALSE(key(CanvasKey::space));
}

TEST_F(Keyboard, EnterEndsALine) {
    useTool(PaintTool::lineCurve);
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(20, 20);
    EXPECT_TRUE(key(CanvasKey::enter));
    EXPECT_EQ(pixel(30, 40).red(), 255);
    EXPECT_GT(pixel(30, 40).alpha(), 200);
    EXPECT_EQ(pixel(40, 30), clear);
    EXPECT_THAT(titles(), ElementsAre("Line/Curve"));
}

TEST_F(Keyboard, TheKeysThatMoveThePixelDoNotConstrainALineButShiftAloneDoes) {
    useTool(PaintTool::lineCurve);
    pointAt({20, 30});
    key(CanvasKey::space);
    key(CanvasKey::right, movingFar);
    key(CanvasKey::right, movingFar);
    hold(movingFar);
    moveBy(0, 4);
    hold(movingFar);
    EXPECT_GT(livePixel(40, 34).alpha(), 100);
    EXPECT_EQ(livePixel(36, 30), clear);
    hold({.shift = true});
    EXPECT_GT(livePixel(36, 30).alpha(), 100);
    hold({});
    EXPECT_EQ(livePixel(36, 30), clear);
    key(CanvasKey::enter);
}

TEST_F(Keyboard, EscapeGivesUpTheGestureWithoutAHistoryEntry) {
    for (const PaintTool tool : model::allPaintTools()) {
        if (tool == PaintTool::zoom || tool == PaintTool::text || tool == PaintTool::pan) continue;
        useTool(tool);
        const model::PaintProject before = project();
        pointAt({20, 30});
        key(CanvasKey::space);
        moveBy(12, 7);
        key(CanvasKey::escape);
        const bool isDone = tool == PaintTool::paintBucket || tool == PaintTool::magicWand;
        if (isDone) {
            host.history.clear();
            host.active = before;
            continue;
        }
        EXPECT_THAT(titles(), IsEmpty()) << model::title(tool).toStdString();
        EXPECT_EQ(project(), before) << model::title(tool).toStdString();
        EXPECT_EQ(view.frame(1.0).liveImage, nullptr);
        EXPECT_FALSE(view.keyboardPointer().isPressed());
    }
}

TEST_F(Keyboard, EscapeGivesBackTheSelectionThatTheStrokeDropped) {
    pointAt({20, 30});
    select({10.0, 10.0, 40.0, 40.0});
    const model::PaintProject before = project();
    key(CanvasKey::space);
    EXPECT_FALSE(project().pixelSelection);
    key(CanvasKey::escape);
    EXPECT_EQ(project(), before);
}

TEST_F(Keyboard, EscapeGivesBackFloatingPixels) {
    pointAt({100, 80});
    floatPixels();
    const model::PaintProject before = project();
    key(CanvasKey::space);
    EXPECT_FALSE(project().floatingSelection);
    key(CanvasKey::escape);
    EXPECT_EQ(project(), before);
}

TEST_F(Keyboard, EscapeLeavesWhatSomebodyElseHasChangedMeanwhile) {
    pointAt({20, 30});
    select({10.0, 10.0, 40.0, 40.0});
    key(CanvasKey::space);
    project().layers.front().name = QStringLiteral("Renamed");
    view.projectChanged();
    key(CanvasKey::escape);
    EXPECT_EQ(layer().name, QStringLiteral("Renamed"));
    EXPECT_FALSE(layer().bitmapPNGData);
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Keyboard, ASelectionIsNudgedInsteadUnlessAGestureRuns) {
    select({10.0, 10.0, 40.0, 40.0});
    useTool(PaintTool::rectangleSelect);
    EXPECT_TRUE(key(CanvasKey::right, moving));
    EXPECT_FALSE(pointed());
    EXPECT_EQ(selected(), QRectF(30.0, 10.0, 40.0, 40.0));
    project().isCanvasSelected = false;
    project().pixelSelection.reset();
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(30, 20);
    EXPECT_EQ(selected(), QRectF(20.0, 30.0, 31.0, 21.0));
    key(CanvasKey::space);
    EXPECT_EQ(selected(), QRectF(20.0, 30.0, 31.0, 21.0));
    EXPECT_EQ(titles().back(), "Select");
}

TEST_F(Keyboard, AToolThatOnlyClicksIsPressedAndReleasedByOneSpace) {
    useTool(PaintTool::paintBucket);
    pointAt({20, 30});
    key(CanvasKey::space);
    EXPECT_FALSE(view.keyboardPointer().isPressed());
    EXPECT_EQ(pixel(150, 90), red);
    EXPECT_THAT(titles(), ElementsAre("Paint Bucket"));
    useTool(PaintTool::colorPicker);
    host.tools.primaryColor = {0.0, 0.0, 0.0, 1.0};
    key(CanvasKey::space);
    EXPECT_EQ(host.tools.primaryColor, (model::ColorValue{1.0, 0.0, 0.0, 1.0}));
    useTool(PaintTool::text);
    key(CanvasKey::space);
    ASSERT_TRUE(view.drafts().hasText());
    EXPECT_EQ(view.textDraft().activeTextDraft()->point, (model::CanvasPoint{21.0, 31.0}));
}

TEST_F(Keyboard, AShapeIsDrawnAndItsHandleDragged) {
    useTool(PaintTool::shapes);
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(40, 20);
    key(CanvasKey::enter);
    ASSERT_TRUE(view.drafts().hasShape());
    EXPECT_EQ(view.shapeDraft().activeShapeDraft()->rect, QRectF(20.5, 30.5, 40.0, 20.0));
    key(CanvasKey::space);
    moveBy(5, 6);
    EXPECT_EQ(view.shapeDraft().activeShapeDraft()->rect, QRectF(20.5, 30.5, 45.0, 26.0));
    key(CanvasKey::escape);
    EXPECT_EQ(view.shapeDraft().activeShapeDraft()->rect, QRectF(20.5, 30.5, 40.0, 20.0));
    EXPECT_THAT(host.history, IsEmpty());
    key(CanvasKey::escape);
    EXPECT_FALSE(view.drafts().hasShape());
    EXPECT_THAT(titles(), ElementsAre("Shapes"));
}

TEST_F(Keyboard, GivingUpAShapeLeavesTheOneThatItEnded) {
    useTool(PaintTool::shapes);
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(20, 20);
    key(CanvasKey::enter);
    moveBy(50, 10);
    key(CanvasKey::space);
    moveBy(20, 10);
    key(CanvasKey::escape);
    EXPECT_THAT(titles(), ElementsAre("Shapes"));
    EXPECT_TRUE(layer().bitmapPNGData);
    EXPECT_FALSE(view.drafts().hasShape());
}

TEST_F(Keyboard, ZoomingInMidGestureKeepsItsPlaces) {
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(5, 0);
    host.tools.zoomScale = 4.0;
    view.settingsChanged();
    moveBy(5, 0);
    key(CanvasKey::space);
    EXPECT_EQ(pixel(20, 30), red);
    EXPECT_EQ(pixel(30, 30), red);
    EXPECT_EQ(pixel(33, 30), clear);
    EXPECT_EQ(pixel(30, 33), clear);
}

TEST_F(Keyboard, AnotherToolFinishesTheGestureAsItStands) {
    for (const PaintTool tool : {PaintTool::pencil, PaintTool::zoom, PaintTool::rectangleSelect}) {
        useTool(PaintTool::paintbrush);
        host.history.clear();
        pointAt({20, 30});
        key(CanvasKey::space);
        moveBy(5, 0);
        useTool(tool);
        EXPECT_FALSE(view.keyboardPointer().isPressed());
        EXPECT_EQ(pixel(25, 30), red);
        EXPECT_THAT(titles(), ElementsAre("Paintbrush"));
        // What comes then is the new tool's, and nothing takes the stroke back.
        moveBy(0, 5);
        key(CanvasKey::escape);
        EXPECT_EQ(pixel(25, 30), red);
        EXPECT_THAT(titles(), ElementsAre("Paintbrush"));
    }
}

TEST_F(Keyboard, AnotherToolKeepsASelectionAndCommitsAShape) {
    useTool(PaintTool::rectangleSelect);
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(8, 6);
    useTool(PaintTool::shapes);
    ASSERT_TRUE(project().pixelSelection);
    EXPECT_EQ(project().pixelSelection->width, 9.0);
    EXPECT_THAT(titles(), ElementsAre("Select"));
    view.keyboardLeft();
    project().pixelSelection.reset();
    project().isCanvasSelected = false;
    pointAt({40, 30});
    key(CanvasKey::space);
    moveBy(10, 10);
    useTool(PaintTool::text);
    EXPECT_FALSE(view.drafts().hasShape());
    EXPECT_THAT(titles(), ElementsAre("Select", "Shapes"));
}

TEST_F(Keyboard, ThePointerTakesOverAndLeavesTheStrokeFinished) {
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(5, 0);
    view.hover(inDocument({100.0, 50.0}));
    EXPECT_TRUE(view.keyboardPointer().isPressed());
    press({100.0, 50.0});
    EXPECT_FALSE(pointed());
    EXPECT_EQ(pixel(25, 30), red);
    release({100.0, 50.0});
    EXPECT_THAT(titles(), ElementsAre("Paintbrush", "Paintbrush"));
    pointAt({20, 30});
    view.hover(inDocument({100.0, 50.0}));
    EXPECT_FALSE(pointed());
}

TEST_F(Keyboard, WhenTheKeysGoElsewhereTheStrokeIsFinished) {
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(5, 0);
    view.keyboardLeft();
    EXPECT_FALSE(pointed());
    EXPECT_EQ(pixel(25, 30), red);
    EXPECT_THAT(titles(), ElementsAre("Paintbrush"));
}

TEST_F(Keyboard, AnotherProjectGivesUpTheGesture) {
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(5, 0);
    const QUuid other = QUuid::createUuid();
    project().id = other;
    project().layers = {emptyLayer()};
    project().selectedLayerID = layer().id;
    view.activeProjectChanged();
    EXPECT_FALSE(pointed());
    EXPECT_FALSE(layer().bitmapPNGData);
    EXPECT_THAT(host.history, IsEmpty());
    host.active.reset();
    view.activeProjectChanged();
    EXPECT_FALSE(key(CanvasKey::right, moving));
}

TEST_F(Keyboard, OnALockedLayerNothingIsDrawn) {
    layer().isLocked = true;
    pointAt({20, 30});
    key(CanvasKey::space);
    moveBy(5, 0);
    key(CanvasKey::space);
    EXPECT_FALSE(layer().bitmapPNGData);
    EXPECT_THAT(host.history, IsEmpty());
}

} // namespace
} // namespace quillabrae::canvas
