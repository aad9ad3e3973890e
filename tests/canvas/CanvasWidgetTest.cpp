// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidgetFixture.h"

#include <cmath>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;

TEST_F(WidgetTest, WithoutAProjectItPaintsTheEmptyWorkspaceAndTakesAnyInput) {
    widget.resize(300, 200);
    widget.show();
    settle();
    const QColor workspace = onScreen({5.0, 5.0});
    EXPECT_EQ(onScreen({150.0, 100.0}), workspace);
    EXPECT_EQ(onScreen({295.0, 195.0}), workspace);
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, {50, 50});
    QTest::mouseClick(viewport(), Qt::RightButton, {}, {50, 50});
    wheel({50.0, 50.0}, {0, 120}, Qt::ControlModifier);
    pinch({50.0, 50.0}, 0.3, 1000);
    QTest::keyClick(&widget, Qt::Key_Space);
    EXPECT_EQ(widget.horizontalScrollBar()->maximum(), 0);
    EXPECT_FALSE(projects->canvasCursorPosition());
}

TEST_F(WidgetTest, TheFirstLayoutReportsTheViewportAndFitsANewProject) {
    projects->createUntitledProject(2000, 1000, 96);
    widget.resize(900, 700);
    widget.show();
    settle();
    EXPECT_EQ(projects->canvasViewportSize(), QSizeF(viewport()->size()));
    EXPECT_DOUBLE_EQ(projects->settings().zoomScale, (viewport()->width() - 180.0) / 2000.0);
    expectUnder(QRectF(viewport()->rect()).center(), {1000.0, 500.0});
}

TEST_F(WidgetTest, ALeftDragPaintsInThePrimaryColor) {
    showProject();
    drag(Qt::LeftButton, {{20.0, 20.0}, {60.0, 20.0}, {60.0, 80.0}});
    EXPECT_EQ(stored(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(stored(60, 50), QColor(255, 0, 0));
    EXPECT_EQ(stored(40, 50), QColor(255, 255, 255));
    EXPECT_THAT(historyTitles(),
                testing::ElementsAre(QStringLiteral("New Project"), QStringLiteral("Paintbrush")));
}

TEST_F(WidgetTest, ARightDragPaintsInTheSecondaryColor) {
    showProject();
    drag(Qt::RightButton, {{20.0, 20.0}, {60.0, 20.0}});
    EXPECT_EQ(stored(40, 20), QColor(0, 0, 255));
    EXPECT_EQ(historyTitles().size(), 2U);
}

TEST_F(WidgetTest, UndoAndRedoShowAtOnce) {
    showProject();
    drag(Qt::LeftButton, {{20.0, 20.0}, {60.0, 20.0}});
    EXPECT_EQ(onScreen(shown({40.0, 20.0})), QColor(255, 0, 0));
    projects->undo(*projects->activeProjectID());
    EXPECT_EQ(onScreen(shown({40.0, 20.0})), QColor(255, 255, 255));
    projects->redo(*projects->activeProjectID());
    EXPECT_EQ(onScreen(shown({40.0, 20.0})), QColor(255, 0, 0));
}

TEST_F(WidgetTest, TheStrokeShowsWhileItIsDrawnAndRepaintsOnlyItsSurroundings) {
    showProject();
    QTest::mousePress(viewport(), Qt::LeftButton, {}, at({20.0, 20.0}));
    settle();
    PaintWatch watch(*viewport());
    move(Qt::LeftButton, at({60.0, 20.0}));
    settle();
    ASSERT_FALSE(watch.region.isEmpty());
    const QRect stroke = QRectF(shown({14.0, 14.0}), shown({66.0, 26.0})).toAlignedRect();
    EXPECT_TRUE(stroke.adjusted(-4, -4, 4, 4).contains(watch.region.boundingRect()));
    EXPECT_EQ(onScreen(shown({40.0, 20.0})), QColor(255, 0, 0));
    EXPECT_EQ(stored(40, 20), QColor(255, 255, 255));
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, at({60.0, 20.0}));
    EXPECT_EQ(stored(40, 20), QColor(255, 0, 0));
}

TEST_F(WidgetTest, TheCanvasHasASharpEdgeAndASoftShadow) {
    showProject();
    const QImage image = viewport()->grab().toImage();
    const double ratio = image.devicePixelRatio();
    const QPointF corner = widget.canvasOriginInViewport() * ratio;
    const int left = static_cast<int>(std::lround(corner.x()));
    const int row = static_cast<int>(std::lround(corner.y() + 60.0 * ratio));
    const auto brightness = [&](int x) { return qGray(image.pixel(x, row)); };
    EXPECT_EQ(brightness(left + 4), 255);
    const int workspace = brightness(left - static_cast<int>(60 * ratio));
    EXPECT_LT(brightness(left - 2), workspace - 10);
    EXPECT_LT(brightness(left - 2), brightness(left - static_cast<int>(7 * ratio)));
    EXPECT_EQ(brightness(left - static_cast<int>(20 * ratio)), workspace);
}

TEST_F(WidgetTest, OneNotchOfTheWheelWithControlZoomsAboutThePointer) {
    showProject();
    const QPointF place = shown({150.0, 30.0});
    wheel(place, {0, 120}, Qt::ControlModifier);
    EXPECT_NEAR(widget.view().currentZoom(), 2.5, 1e-9);
    expectUnder(place, {150.0, 30.0});
    for (int i = 0; i < 8; ++i) wheel(place, {0, -15}, Qt::ControlModifier);
    EXPECT_NEAR(widget.view().currentZoom(), 2.0, 1e-9);
    expectUnder(place, {150.0, 30.0});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return projects->settings().zoomScale != 2.0 || !widget.view().zoom().liveZoomScale();
    }));
    EXPECT_NEAR(projects->settings().zoomScale, 2.0, 1e-9);
}

TEST_F(WidgetTest, ThePlainWheelScrollsDownAndWithShiftSideways) {
    showProject();
    const CanvasPoint before = under({450.0, 350.0});
    wheel({450.0, 350.0}, {0, -120});
    const CanvasPoint below = under({450.0, 350.0});
    EXPECT_NEAR(below.x, before.x, 1e-9);
    EXPECT_GT(below.y, before.y + 5.0);
    wheel({450.0, 350.0}, {0, -120}, Qt::ShiftModifier);
    EXPECT_GT(under({450.0, 350.0}).x, before.x + 5.0);
    EXPECT_NEAR(under({450.0, 350.0}).y, below.y, 1e-9);
}

TEST_F(WidgetTest, ASmoothWheelScrollsByItsPixels) {
    showProject();
    const QPointF origin = widget.canvasOriginInViewport();
    wheel({450.0, 350.0}, {0, 0}, {}, {-7, -11});
    expectOrigin(origin + QPointF(-7.0, -11.0));
}

TEST_F(WidgetTest, APinchZoomsAboutThePointerAndIsStoredAfterwards) {
    showProject();
    const QPointF place = shown({150.0, 30.0});
    pinch(place, 0.2, 1000);
    EXPECT_NEAR(widget.view().currentZoom(), 2.0 * std::pow(1.85, 0.2), 1e-9);
    pinch(place, 0.2, 1016);
    EXPECT_EQ(projects->settings().zoomScale, 2.0);
    EXPECT_GT(widget.view().zoom().magnifyVelocity(), 0.0);
    expectUnder(place, {150.0, 30.0});
    EXPECT_TRUE(QTest::qWaitFor([&] { return projects->settings().zoomScale != 2.0; }));
    EXPECT_GT(projects->settings().zoomScale, 2.0 * std::pow(1.85, 0.4));
    expectUnder(place, {150.0, 30.0});
}

TEST_F(WidgetTest, TheSpaceBarAndTheMiddleButtonPanWhateverTheTool) {
    showProject();
    const QPointF origin = widget.canvasOriginInViewport();
    QTest::mousePress(viewport(), Qt::MiddleButton, {}, {400, 300});
    move(Qt::MiddleButton, {430.0, 280.0});
    EXPECT_EQ(viewport()->cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(viewport(), Qt::MiddleButton, {}, {430, 280});
    expectOrigin(origin + QPointF(30.0, -20.0));
    QTest::keyPress(&widget, Qt::Key_Space);
    EXPECT_EQ(viewport()->cursor().shape(), Qt::OpenHandCursor);
    QTest::mousePress(viewport(), Qt::LeftButton, {}, {430, 280});
    move(Qt::LeftButton, {400.0, 300.0});
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, {400, 300});
    QTest::keyRelease(&widget, Qt::Key_Space);
    expectOrigin(origin);
    EXPECT_EQ(viewport()->cursor().shape(), Qt::CrossCursor);
    EXPECT_EQ(historyTitles().size(), 1U);
}

TEST_F(WidgetTest, TheKeyboardAloneDrawsAndItsPixelShows) {
    showProject();
    constexpr Qt::KeyboardModifiers moving = Qt::ControlModifier | Qt::AltModifier;
    QTest::keyClick(&widget, Qt::Key_Right, moving);
    ASSERT_EQ(widget.view().keyboardPointer().pixel(), QPoint(101, 50));
    EXPECT_EQ(onScreen(shown({101.5, 50.5})), QColor(255, 255, 255));
    QTest::keyClick(&widget, Qt::Key_Left, moving | Qt::ShiftModifier);
    QTest::keyClick(&widget, Qt::Key_Space);
    QTest::keyClick(&widget, Qt::Key_Left, moving | Qt::ShiftModifier);
    QTest::keyClick(&widget, Qt::Key_Left, moving | Qt::ShiftModifier);
    EXPECT_EQ(viewport()->cursor().shape(), Qt::CrossCursor);
    QTest::keyClick(&widget, Qt::Key_Space);
    EXPECT_EQ(stored(80, 50), QColor(255, 0, 0));
    EXPECT_EQ(stored(60, 50), QColor(255, 255, 255));
    EXPECT_THAT(historyTitles(),
                testing::ElementsAre(QStringLiteral("New Project"), QStringLiteral("Paintbrush")));
    EXPECT_EQ(projects->canvasCursorPosition(), (CanvasPoint{71.0, 50.0}));
    QTest::keyClick(&widget, Qt::Key_Escape);
    EXPECT_FALSE(widget.view().keyboardPointer().pixel());
    QTest::keyPress(&widget, Qt::Key_Space);
    EXPECT_EQ(viewport()->cursor().shape(), Qt::OpenHandCursor);
    QTest::keyRelease(&widget, Qt::Key_Space);
}

TEST_F(WidgetTest, AHeldSpaceBarPressesTheToolOnce) {
    showProject();
    QTest::keyClick(&widget, Qt::Key_Right, Qt::ControlModifier | Qt::AltModifier);
    for (const bool isRepeat : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "),
                        isRepeat);
        QApplication::sendEvent(&widget, &press);
        EXPECT_TRUE(widget.view().keyboardPointer().isPressed());
    }
}

TEST_F(WidgetTest, TheKeyboardPixelsKeysAreNoShortcutsOfTheWindow) {
    showProject();
    const auto isHeldBack = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted();
    };
    constexpr Qt::KeyboardModifiers moving = Qt::ControlModifier | Qt::AltModifier;
    EXPECT_TRUE(isHeldBack(Qt::Key_Up, moving));
    EXPECT_FALSE(isHeldBack(Qt::Key_Space, {}));
    EXPECT_FALSE(isHeldBack(Qt::Key_Escape, {}));
    QTest::keyClick(&widget, Qt::Key_Right, moving);
    EXPECT_TRUE(isHeldBack(Qt::Key_Space, {}));
    EXPECT_FALSE(isHeldBack(Qt::Key_Return, {}));
    QTest::keyClick(&widget, Qt::Key_Space);
    EXPECT_TRUE(isHeldBack(Qt::Key_Return, {}));
    EXPECT_TRUE(isHeldBack(Qt::Key_Escape, {}));
    QTest::keyClick(&widget, Qt::Key_Escape);
    projects->selectAllCanvas();
    EXPECT_FALSE(isHeldBack(Qt::Key_Up, moving));
}

TEST_F(WidgetTest, TheHandPansWithoutJitter) {
    showProject();
    useTool(PaintTool::pan);
    EXPECT_EQ(viewport()->cursor().shape(), Qt::OpenHandCursor);
    const QPointF origin = widget.canvasOriginInViewport();
    const QPointF start = shown({100.0, 50.0});
    QTest::mousePress(viewport(), Qt::LeftButton, {}, start.toPoint());
    for (int step = 1; step <= 20; ++step) {
        move(Qt::LeftButton, start.toPoint() + QPoint(step, -2 * step));
        expectOrigin(origin + QPointF(step, -2.0 * step));
    }
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, start.toPoint() + QPoint(20, -40));
}

TEST_F(WidgetTest, TheScrollBarsScroll) {
    showProject();
    const QPointF origin = widget.canvasOriginInViewport();
    widget.verticalScrollBar()->setValue(widget.verticalScrollBar()->value() + 40);
    widget.horizontalScrollBar()->setValue(widget.horizontalScrollBar()->value() - 25);
    EXPECT_NEAR(widget.canvasOriginInViewport().y(), origin.y() - 40.0, 1.0);
    EXPECT_NEAR(widget.canvasOriginInViewport().x(), origin.x() + 25.0, 1.0);
}

TEST_F(WidgetTest, HoverReportsWholePixelsAndLeavingClearsThem) {
    showProject();
    move({}, shown({12.6, 34.6}));
    EXPECT_EQ(projects->canvasCursorPosition(), (CanvasPoint{12.0, 34.0}));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(viewport(), &leave);
    EXPECT_FALSE(projects->canvasCursorPosition());
}

TEST_F(WidgetTest, TheZoomToolZoomsInAtAClickAndOutWithAlt) {
    showProject();
    useTool(PaintTool::zoom);
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, at({150.0, 30.0}));
    EXPECT_DOUBLE_EQ(projects->settings().zoomScale, 2.5);
    QTest::mouseClick(viewport(), Qt::LeftButton, Qt::AltModifier, at({150.0, 30.0}));
    EXPECT_DOUBLE_EQ(projects->settings().zoomScale, 2.0);
}

TEST_F(WidgetTest, AnotherTabIsShownCentered) {
    showProject();
    const QUuid first = *projects->activeProjectID();
    projects->createUntitledProject(400, 300, 96);
    widget.verticalScrollBar()->setValue(0);
    projects->setActiveProjectID(first);
    settle();
    expectUnder(QRectF(viewport()->rect()).center(), {100.0, 50.0});
}

TEST_F(WidgetTest, ClosingTheLastProjectLeavesTheEmptyWorkspace) {
    showProject();
    projects->closeProject(*projects->activeProjectID());
    settle();
    EXPECT_EQ(onScreen(QRectF(viewport()->rect()).center()), onScreen({3.0, 3.0}));
    EXPECT_EQ(widget.verticalScrollBar()->maximum(), 0);
}

TEST_F(WidgetTest, AResizedWindowKeepsWhatWasInItsMiddle) {
    showProject();
    widget.resize(700, 600);
    settle();
    expectUnder(QRectF(viewport()->rect()).center(), {100.0, 50.0});
    EXPECT_EQ(projects->canvasViewportSize(), QSizeF(viewport()->size()));
}

TEST_F(WidgetTest, ItCanBeReachedByKeyboardAndHasAName) {
    EXPECT_FALSE(widget.accessibleName().isEmpty());
    EXPECT_TRUE(widget.focusPolicy() & Qt::TabFocus);
}

} // namespace
} // namespace quillabrae::canvas
