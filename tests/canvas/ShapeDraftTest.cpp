// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DraftHandles.h"
#include "canvas/SelectionGestureFixture.h"
#include "canvas/ShapeDraft.h"

#include <vector>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::CanvasShape;
using model::PaintTool;
using model::ShapeDrawingMode;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr QSizeF canvas(200.0, 100.0);
constexpr model::ColorValue red{1.0, 0.0, 0.0, 1.0};
constexpr model::ColorValue blue{0.0, 0.0, 1.0, 1.0};
constexpr model::ColorValue green{0.0, 1.0, 0.0, 1.0};
const QColor clear(0, 0, 0, 0);

TEST(ClampedShapeDraftRect, HoldsTheRectToTheCanvasAndToAPixel) {
    const std::vector<std::pair<QRectF, QRectF>> rows{
        {{10.5, 20.25, 30, 40}, {10.5, 20.25, 30, 40}},
        {{-5, -6, 20, 30}, {0, 0, 15, 24}},
        {{190, 90, 40, 40}, {190, 90, 10, 10}},
        {{300, 300, 10, 10}, {199, 99, 1, 1}},
        {{-50, -50, 10, 10}, {0, 0, 1, 1}},
        {{50, 40, -20, -10}, {30, 30, 20, 10}},
        {{10, 10, 0.2, 0.3}, {10, 10, 1, 1}},
        {{199.5, 50, 5, 5}, {199, 50, 1, 5}},
    };
    for (const auto& [rect, expected] : rows)
        EXPECT_EQ(clampedShapeDraftRect(rect, canvas), expected) << rect.x() << ' ' << rect.y();
    EXPECT_EQ(clampedShapeDraftRect({0.2, 0.2, 5, 5}, {0.5, 0.5}), QRectF(0, 0, 0.5, 0.5));
}

TEST(ShapeHandles, StandWhereTheSelectionsDo) {
    const QRectF box(10, 20, 30, 40);
    for (const SelectionHandle handle : allSelectionHandles) {
        const DraftHandle* row = draftHandleNamed(DraftKind::shape, name(handle));
        ASSERT_NE(row, nullptr) << name(handle).toStdString();
        EXPECT_EQ(std::get<SelectionHandle>(row->action), handle);
        EXPECT_EQ(row->place(box), handlePoint(handle, box));
        EXPECT_EQ(row->mark(box).size(), QSizeF(8, 8));
        EXPECT_EQ(draftHandleAt(DraftKind::shape, handlePoint(handle, box), box), row);
    }
    EXPECT_EQ(draftHandles(DraftKind::shape).size(), 8U);
    EXPECT_EQ(draftHandleNamed(DraftKind::shape, QStringLiteral("move")), nullptr);
    EXPECT_EQ(draftHandleAt(DraftKind::shape, box.center(), box), nullptr);
}

class Shapes : public SelectionGestureFixture {
protected:
    Shapes() {
        host.tools.primaryColor = red;
        host.tools.secondaryColor = blue;
        host.tools.shapeOutlineWidth = 4.0;
        host.tools.shapeDrawingMode = ShapeDrawingMode::fillAndOutline;
        useTool(PaintTool::shapes);
    }

    const std::optional<CanvasShapeDraft>& draft() const {
        return view.shapeDraft().activeShapeDraft();
    }
    void change(const std::function<void(model::PaintAppSettings&)>& edit) {
        edit(host.tools);
        view.settingsChanged();
    }
    void rightDrag(CanvasPoint from, CanvasPoint to) {
        view.handleRightMouseEvent({RightMousePhase::down, inDocument(from)});
        view.handleRightMouseEvent({RightMousePhase::dragged, inDocument(to)});
        view.handleRightMouseEvent({RightMousePhase::up, inDocument(to)});
    }
    void dragHandle(SelectionHandle handle, QPointF by) {
        const QPointF at = handlePoint(handle, draft()->rect);
        drag({at.x(), at.y()}, {at.x() + by.x(), at.y() + by.y()});
    }
};

TEST_F(Shapes, ReleasingADragLeavesADraftAndTheLayerAsItWas) {
    drag({60, 70}, {20, 30});
    ASSERT_TRUE(draft().has_value());
    EXPECT_EQ(draft()->rect, QRectF(20, 30, 40, 40));
    EXPECT_EQ(draft()->layerID, layer().id);
    EXPECT_EQ(draft()->outlineColor, red);
    EXPECT_EQ(draft()->fillColor, blue);
    EXPECT_FALSE(draft()->usesSwappedColors);
    EXPECT_EQ(livePixel(40, 50), QColor(Qt::blue));
    EXPECT_EQ(livePixel(20, 50), QColor(Qt::red));
    EXPECT_FALSE(layer().bitmapPNGData.has_value());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Shapes, ABoxOfLessThanAPixelMakesNoDraft) {
    drag({20, 30}, {80, 30.4});
    EXPECT_FALSE(draft().has_value());
    drag({20, 30}, {20.9, 80});
    EXPECT_FALSE(draft().has_value());
    drag({20, 30}, {20, 30});
    EXPECT_FALSE(draft().has_value());
    EXPECT_FALSE(view.drawing().isRunning());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Shapes, ShiftAtTheReleaseMakesASquare) {
    press({20, 20});
    moveTo({60, 30});
    hold({.shift = true});
    release({60, 30});
    EXPECT_EQ(draft()->rect, QRectF(20, 20, 40, 40));
}

TEST_F(Shapes, TheRightButtonSwapsTheColors) {
    rightDrag({20, 30}, {80, 70});
    ASSERT_TRUE(draft().has_value());
    EXPECT_TRUE(draft()->usesSwappedColors);
    EXPECT_EQ(draft()->outlineColor, blue);
    EXPECT_EQ(draft()->fillColor, red);
    EXPECT_EQ(livePixel(50, 50), QColor(Qt::red));
    EXPECT_EQ(livePixel(20, 50), QColor(Qt::blue));
    change([](auto& tools) { tools.primaryColor = green; });
    EXPECT_EQ(draft()->fillColor, green);
    EXPECT_EQ(draft()->outlineColor, blue);
    EXPECT_EQ(livePixel(50, 50), QColor(0, 255, 0));
}

TEST_F(Shapes, TheSettingsApplyToTheDraftAsTheyChange) {
    drag({20, 30}, {80, 70});
    change([](auto& tools) {
        tools.selectedShape = CanvasShape::ellipse;
        tools.shapeDrawingMode = ShapeDrawingMode::fill;
        tools.shapeOutlineWidth = 9.0;
        tools.primaryColor = green;
        tools.secondaryColor = red;
    });
    EXPECT_EQ(draft()->shape, CanvasShape::ellipse);
    EXPECT_EQ(draft()->drawingMode, ShapeDrawingMode::fill);
    EXPECT_EQ(draft()->outlineWidth, 9.0);
    EXPECT_EQ(draft()->outlineColor, green);
    EXPECT_EQ(draft()->fillColor, red);
    EXPECT_EQ(livePixel(50, 50), QColor(Qt::red));
    EXPECT_EQ(livePixel(21, 31), clear) << "the rectangle's corner";
}

TEST_F(Shapes, EachHandleResizesTheDraft) {
    const std::vector<std::pair<SelectionHandle, QRectF>> rows{
        {SelectionHandle::topLeft, {65, 35, 55, 35}},
        {SelectionHandle::top, {60, 35, 60, 35}},
        {SelectionHandle::topRight, {60, 35, 65, 35}},
        {SelectionHandle::right, {60, 30, 65, 40}},
        {SelectionHandle::bottomRight, {60, 30, 65, 45}},
        {SelectionHandle::bottom, {60, 30, 60, 45}},
        {SelectionHandle::bottomLeft, {65, 30, 55, 45}},
        {SelectionHandle::left, {65, 30, 55, 40}},
    };
    for (const auto& [handle, expected] : rows) {
        drag({60, 30}, {120, 70});
        const QUuid id = draft()->id;
        dragHandle(handle, {5, 5});
        EXPECT_EQ(draft()->rect, expected) << name(handle).toStdString();
        EXPECT_EQ(draft()->id, id) << "no new shape was begun";
        view.cancelDrawing();
        view.handleKey(CanvasKey::escape);
    }
}

TEST_F(Shapes, AHandleDraggedOverTheEdgeStaysOnTheCanvas) {
    drag({60, 30}, {120, 70});
    dragHandle(SelectionHandle::bottomRight, {500, 500});
    EXPECT_EQ(draft()->rect, QRectF(60, 30, 140, 70));
    dragHandle(SelectionHandle::left, {-500, 0});
    EXPECT_EQ(draft()->rect, QRectF(0, 30, 200, 70));
    dragHandle(SelectionHandle::topLeft, {500, 500});
    EXPECT_EQ(draft()->rect, QRectF(199, 99, 1, 1));
}

TEST_F(Shapes, ShiftKeepsTheProportionsOfAResize) {
    drag({60, 30}, {100, 50});
    hold({.shift = true});
    dragHandle(SelectionHandle::bottomRight, {20, 1});
    EXPECT_EQ(draft()->rect, QRectF(60, 30, 60, 30));
}

TEST_F(Shapes, AHandleMovesOnlyOnceThePointerHasMovedAPoint) {
    drag({60, 30}, {120, 70});
    press({120, 70});
    moveTo({120.5, 70.5});
    EXPECT_EQ(draft()->rect, QRectF(60, 30, 60, 40));
    moveTo({121, 71});
    EXPECT_EQ(draft()->rect, QRectF(60, 30, 61, 41));
    moveTo({120.5, 70.5});
    EXPECT_EQ(draft()->rect, QRectF(60, 30, 60.5, 40.5));
    release({120.5, 70.5});
}

TEST_F(Shapes, EveryTriggerCommitsTheDraftWithOneEntry) {
    const std::vector<std::pair<const char*, std::function<void()>>> triggers{
        {"escape", [this] { EXPECT_TRUE(view.handleKey(CanvasKey::escape)); }},
        {"text tool", [this] { useTool(PaintTool::text); }},
        {"bucket", [this] { useTool(PaintTool::paintBucket); }},
        {"brush", [this] { useTool(PaintTool::paintbrush); }},
        {"disappearing", [this] { view.disappear(); }},
    };
    for (const auto& [what, trigger] : triggers) {
        useTool(PaintTool::shapes);
        host.history.clear();
        layer().bitmapPNGData.reset();
        drag({20, 30}, {80, 70});
        trigger();
        EXPECT_FALSE(draft().has_value()) << what;
        EXPECT_FALSE(view.drawing().isRunning()) << what;
        EXPECT_EQ(pixel(50, 50), QColor(Qt::blue)) << what;
        EXPECT_EQ(pixel(20, 50), QColor(Qt::red)) << what;
        EXPECT_THAT(host.history, ElementsAre(Pair("Shapes", "square.on.circle"))) << what;
        EXPECT_EQ(project().lastModified, host.now());
    }
}

TEST_F(Shapes, ANewShapeCommitsTheDraft) {
    drag({20, 20}, {60, 60});
    press({100, 20});
    EXPECT_FALSE(draft().has_value());
    EXPECT_THAT(host.history, ElementsAre(Pair("Shapes", "square.on.circle")));
    moveTo({150, 60});
    release({150, 60});
    EXPECT_EQ(draft()->rect, QRectF(100, 20, 50, 40));
    EXPECT_EQ(pixel(40, 40), QColor(Qt::blue));
    EXPECT_EQ(pixel(120, 40), clear);
    EXPECT_EQ(livePixel(40, 40), QColor(Qt::blue));
    view.handleKey(CanvasKey::escape);
    EXPECT_EQ(pixel(120, 40), QColor(Qt::blue));
    EXPECT_EQ(host.history.size(), 2U);
}

TEST_F(Shapes, ANewRightButtonShapePreviewsInThePrimaryColorAndEndsSwapped) {
    drag({20, 20}, {60, 60});
    view.handleRightMouseEvent({RightMousePhase::down, inDocument({100, 20})});
    view.handleRightMouseEvent({RightMousePhase::dragged, inDocument({150, 60})});
    EXPECT_EQ(livePixel(100, 40), QColor(Qt::red)) << "the committed draft took the colours along";
    view.handleRightMouseEvent({RightMousePhase::up, inDocument({150, 60})});
    EXPECT_EQ(livePixel(100, 40), QColor(Qt::blue));
    EXPECT_EQ(livePixel(120, 40), QColor(Qt::red));
}

TEST_F(Shapes, EscapeWithAModifierOrWithoutADraftIsNotTaken) {
    EXPECT_FALSE(view.handleKey(CanvasKey::escape));
    drag({20, 30}, {80, 70});
    for (const Modifiers keys : {Modifiers{.shift = true}, Modifiers{.control = true},
                                 Modifiers{.option = true}, Modifiers{.command = true}}) {
        hold(keys);
        EXPECT_FALSE(view.handleKey(CanvasKey::escape));
        EXPECT_TRUE(draft().has_value());
    }
}

TEST_F(Shapes, EscapeCommitsTheDraftAndLeavesTheSelection) {
    drag({20, 30}, {80, 70});
    select({1, 1, 5, 5});
    EXPECT_FALSE(view.canNudgeSelectionWithArrowKeys());
    EXPECT_FALSE(view.handleKey(CanvasKey::left));
    EXPECT_TRUE(view.handleKey(CanvasKey::escape));
    EXPECT_EQ(selected(), QRectF(1, 1, 5, 5));
    EXPECT_TRUE(view.canNudgeSelectionWithArrowKeys());
}

TEST_F(Shapes, ALayerHiddenOrLockedMeanwhileLosesTheDraftSilently) {
    for (bool model::PaintLayer::*flag :
         {&model::PaintLayer::isVisible, &model::PaintLayer::isLocked}) {
        drag({20, 30}, {80, 70});
        layer().*flag = !(layer().*flag);
        view.handleKey(CanvasKey::escape);
        EXPECT_FALSE(draft().has_value());
        EXPECT_FALSE(layer().bitmapPNGData.has_value());
        EXPECT_THAT(host.history, IsEmpty());
        layer().*flag = !(layer().*flag);
    }
}

TEST_F(Shapes, ALayerThatIsGoneLosesTheDraftSilently) {
    drag({20, 30}, {80, 70});
    project().layers.front().id = QUuid::createUuid();
    project().selectedLayerID = layer().id;
    view.disappear();
    EXPECT_FALSE(draft().has_value());
    EXPECT_FALSE(layer().bitmapPNGData.has_value());
    EXPECT_THAT(host.history, IsEmpty());
}

TEST_F(Shapes, AHiddenOrLockedLayerTakesNoShape) {
    layer().isLocked = true;
    drag({20, 30}, {80, 70});
    EXPECT_FALSE(draft().has_value());
    EXPECT_FALSE(view.drawing().isRunning());
}

TEST_F(Shapes, APinchLeavesTheDraftAlone) {
    drag({20, 30}, {80, 70});
    view.cancelDrawing();
    EXPECT_TRUE(draft().has_value());
    EXPECT_EQ(livePixel(50, 50), QColor(Qt::blue));
}

TEST_F(Shapes, ADraftIsOutOfReachInAnotherProject) {
    drag({20, 30}, {80, 70});
    const model::PaintProject first = project();
    project().id = QUuid::createUuid();
    layer() = emptyLayer();
    project().selectedLayerID = layer().id;
    view.activeProjectChanged();
    EXPECT_FALSE(view.drafts().hasShape());
    EXPECT_FALSE(view.handleKey(CanvasKey::escape));
    EXPECT_EQ(view.drafts().handleAt(local({80, 70})), nullptr);
    host.active = first;
    view.activeProjectChanged();
    EXPECT_TRUE(view.drafts().hasShape());
    EXPECT_TRUE(view.handleKey(CanvasKey::escape));
    EXPECT_EQ(pixel(50, 50), QColor(Qt::blue));
}

} // namespace
} // namespace quillabrae::canvas
