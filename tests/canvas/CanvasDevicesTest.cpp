// SPDX-License-Identifier: GPL-3.0-or-later
// Pens, wheels, touchpads and fingers on the canvas.
#include "canvas/CanvasWidgetFixture.h"

#include <QPointingDevice>
#include <QTabletEvent>
#include <QTouchEvent>

#include <memory>

namespace quillabrae::canvas {
namespace {

using model::CanvasPoint;
using model::PaintTool;

class Devices : public WidgetTest {
protected:
    void SetUp() override { showProject(); }

    /// One event of a pen; whether the canvas took it.
    bool pen(QEvent::Type type, QPointF place, Qt::MouseButton button, Qt::MouseButtons buttons,
             QPointingDevice::PointerType end = QPointingDevice::PointerType::Pen) {
        const QPointingDevice& device =
            end == QPointingDevice::PointerType::Eraser ? m_eraserEnd : m_pen;
        QTabletEvent event(type, &device, place, viewport()->mapToGlobal(place), 0.5, 0.0F, 0.0F,
                           0.0F, 0.0, 0.0F, Qt::NoModifier, button, buttons);
        event.ignore();
        QApplication::sendEvent(viewport(), &event);
        return event.isAccepted();
    }
    void penStroke(std::initializer_list<CanvasPoint> points, Qt::MouseButton button,
                   QPointingDevice::PointerType end = QPointingDevice::PointerType::Pen) {
        EXPECT_TRUE(pen(QEvent::TabletPress, shown(*points.begin()), button, button, end));
        for (const CanvasPoint point : points)
            EXPECT_TRUE(pen(QEvent::TabletMove, shown(point), Qt::NoButton, button, end));
        EXPECT_TRUE(pen(QEvent::TabletRelease, shown(*(points.end() - 1)), button, {}, end));
    }

private:
    const QPointingDevice m_pen{QStringLiteral("pen"),
                                1,
                                QInputDevice::DeviceType::Stylus,
                                QPointingDevice::PointerType::Pen,
                                QInputDevice::Capability::Position,
                                1,
                                3};
    const QPointingDevice m_eraserEnd{QStringLiteral("eraser"),
                                      2,
                                      QInputDevice::DeviceType::Stylus,
                                      QPointingDevice::PointerType::Eraser,
                                      QInputDevice::Capability::Position,
                                      1,
                                      3};
};

TEST_F(Devices, APenDrawsLikeTheLeftButton) {
    penStroke({{20.0, 20.0}, {60.0, 20.0}, {60.0, 80.0}}, Qt::LeftButton);
    EXPECT_EQ(stored(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(stored(60, 50), QColor(255, 0, 0));
    EXPECT_EQ(stored(40, 50), QColor(255, 255, 255));
    EXPECT_THAT(historyTitles(),
                testing::ElementsAre(QStringLiteral("New Project"), QStringLiteral("Paintbrush")));
}

TEST_F(Devices, APensBarrelButtonIsTheRightButton) {
    penStroke({{20.0, 20.0}, {60.0, 20.0}}, Qt::RightButton);
    EXPECT_EQ(stored(40, 20), QColor(0, 0, 255));
    EXPECT_EQ(historyTitles().size(), 2U);
}

TEST_F(Devices, APensOtherEndErasesAndTheToolStaysChosen) {
    penStroke({{20.0, 20.0}, {60.0, 20.0}}, Qt::LeftButton, QPointingDevice::PointerType::Eraser);
    EXPECT_EQ(stored(40, 20).alpha(), 0);
    EXPECT_EQ(stored(40, 40), QColor(255, 255, 255));
    EXPECT_EQ(projects->settings().selectedTool, PaintTool::paintbrush);
    penStroke({{20.0, 60.0}, {60.0, 60.0}}, Qt::LeftButton);
    EXPECT_EQ(stored(40, 60), QColor(255, 0, 0));
    EXPECT_THAT(historyTitles(),
                testing::ElementsAre(QStringLiteral("New Project"), QStringLiteral("Eraser"),
                                     QStringLiteral("Paintbrush")));
}

TEST_F(Devices, TheMouseDrawsAgainAfterThePensOtherEnd) {
    pen(QEvent::TabletMove, shown({30.0, 30.0}), Qt::NoButton, {},
        QPointingDevice::PointerType::Eraser);
    EXPECT_EQ(widget.view().selectedTool(), PaintTool::eraser);
    drag(Qt::LeftButton, {{20.0, 20.0}, {60.0, 20.0}});
    EXPECT_EQ(stored(40, 20), QColor(255, 0, 0));
    EXPECT_EQ(widget.view().selectedTool(), PaintTool::paintbrush);
}

TEST_F(Devices, PositionsAreFinerThanPixels) {
    const QPointF place = shown({50.0, 40.0});
    const auto expectMoved = [&](CanvasPoint before) {
        const auto now = widget.view().hoveredCanvasPoint();
        ASSERT_TRUE(now);
        EXPECT_NEAR(now->x - before.x, 0.15, 1e-6);
        EXPECT_NEAR(now->y - before.y, 0.1, 1e-6);
    };
    move({}, place);
    const CanvasPoint before = *widget.view().hoveredCanvasPoint();
    move({}, place + QPointF(0.3, 0.2));
    expectMoved(before);
    pen(QEvent::TabletMove, place, Qt::NoButton, {});
    pen(QEvent::TabletMove, place + QPointF(0.3, 0.2), Qt::NoButton, {});
    expectMoved(before);
}

TEST_F(Devices, TheMiddleButtonPansWithAnyTool) {
    for (const PaintTool tool : model::allPaintTools()) {
        useTool(tool);
        const QPointF origin = widget.canvasOriginInViewport();
        QTest::mousePress(viewport(), Qt::MiddleButton, {}, at({100.0, 50.0}));
        move(Qt::MiddleButton, at({100.0, 50.0}) + QPoint(13, -9));
        QTest::mouseRelease(viewport(), Qt::MiddleButton, {}, at({100.0, 50.0}));
        expectOrigin(origin + QPointF(13.0, -9.0));
    }
    EXPECT_EQ(historyTitles().size(), 1U);
}

TEST_F(Devices, TwoFingersOnAScreenPinchAndTheFirstDrawsNothing) {
    const std::unique_ptr<QPointingDevice> screen(
        QTest::createTouchDevice(QInputDevice::DeviceType::TouchScreen));
    // On the screen, however small it is in points.
    const QPoint middle = at({25.0, 40.0});
    const double before = widget.view().currentZoom();
    QTest::touchEvent(viewport(), screen.get()).press(0, middle - QPoint(20, 0), viewport());
    QTest::touchEvent(viewport(), screen.get())
        .stationary(0)
        .press(1, middle + QPoint(20, 0), viewport());
    for (int step = 1; step <= 12; ++step) {
        QTest::touchEvent(viewport(), screen.get())
            .move(0, middle - QPoint(20 + 4 * step, 0), viewport())
            .move(1, middle + QPoint(20 + 4 * step, 0), viewport());
    }
    QTest::touchEvent(viewport(), screen.get())
        .release(0, middle - QPoint(68, 0), viewport())
        .release(1, middle + QPoint(68, 0), viewport());
    EXPECT_GT(widget.view().currentZoom(), before * 1.5);
    EXPECT_FALSE(widget.view().drawing().isRunning());
    EXPECT_EQ(historyTitles().size(), 1U);
}

TEST_F(Devices, HoweverFarItIsScrolledSomeOfTheCanvasCanBeBroughtBack) {
    for (const double zoom : {0.1, 2.0, 64.0}) {
        setZoom(zoom);
        for (const QPoint way : {QPoint(-1, -1), QPoint(1, 1), QPoint(1, -1)}) {
            for (int i = 0; i < 300; ++i) wheel({450.0, 350.0}, {}, {}, way * 500);
            const QRectF bounds({0.0, 0.0}, widget.view().geometry().documentViewSize(zoom));
            const QRectF seen(
                QPointF(widget.horizontalScrollBar()->value(), widget.verticalScrollBar()->value()),
                QSizeF(viewport()->size()));
            EXPECT_TRUE(bounds.adjusted(-1.0, -1.0, 1.0, 1.0).contains(seen)) << zoom;
            // The padding around the canvas is less than the viewport: some of it shows.
            const QRectF canvas(widget.canvasOriginInViewport(), QSizeF(200.0, 100.0) * zoom);
            EXPECT_TRUE(canvas.intersects(QRectF(viewport()->rect()))) << zoom;
        }
    }
}

TEST_F(Devices, AltThatComesAfterThePressStillCounts) {
    useTool(PaintTool::rectangleSelect);
    drag(Qt::LeftButton, {{10.0, 10.0}, {100.0, 80.0}});
    QTest::mousePress(viewport(), Qt::LeftButton, {}, at({50.0, 40.0}));
    QTest::keyPress(&widget, Qt::Key_Alt, Qt::AltModifier);
    move(Qt::LeftButton, at({60.0, 50.0}), Qt::AltModifier);
    move(Qt::LeftButton, at({150.0, 95.0}), Qt::AltModifier);
    QTest::mouseRelease(viewport(), Qt::LeftButton, Qt::AltModifier, at({150.0, 95.0}));
    QTest::keyRelease(&widget, Qt::Key_Alt);
    const auto selection = projects->activeProject()->pixelSelection;
    ASSERT_TRUE(selection);
    EXPECT_EQ(selection->x, 10.0);
    EXPECT_EQ(selection->width, 90.0);
    ASSERT_TRUE(selection->maskPNGData);
}

TEST_F(Devices, TheCursorTellsWhatAPressWouldTakeHoldOf) {
    const auto cursorAt = [&](QPointF place) {
        move({}, place);
        return viewport()->cursor().shape();
    };
    useTool(PaintTool::moveSelection);
    projects->editActiveProject([](model::PaintProject& project) {
        project.isCanvasSelected = true;
        project.pixelSelection = model::PixelSelection{20.0, 20.0, 60.0, 40.0, std::nullopt};
    });
    EXPECT_EQ(cursorAt(shown({20.0, 20.0})), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorAt(shown({80.0, 20.0})), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorAt(shown({50.0, 60.0})), Qt::SizeVerCursor);
    EXPECT_EQ(cursorAt(shown({20.0, 40.0})), Qt::SizeHorCursor);
    EXPECT_EQ(cursorAt(shown({50.0, 40.0})), Qt::SizeAllCursor);
    useTool(PaintTool::paintbrush);
    EXPECT_EQ(cursorAt(shown({20.0, 20.0})), Qt::CrossCursor);
    useTool(PaintTool::text);
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, at({10.0, 10.0}));
    const QRectF box = widget.view().textDraft().boxRect();
    EXPECT_EQ(cursorAt(shown({box.left(), box.top()})), Qt::SizeAllCursor);
    EXPECT_EQ(cursorAt(shown({box.right(), box.bottom()})), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorAt(shown({box.center().x(), box.center().y()})), Qt::IBeamCursor);
}

TEST_F(Devices, AHandleTellsWhatItDoesUnlessADragIsOn) {
    useTool(PaintTool::shapes);
    drag(Qt::LeftButton, {{20.0, 20.0}, {80.0, 60.0}});
    const QPointF corner = shown({80.0, 60.0});
    const auto handle = widget.handleAt(corner + QPointF(1.0, 1.0));
    ASSERT_TRUE(handle);
    EXPECT_EQ(handle->title, QStringLiteral("Resize Shape"));
    EXPECT_EQ(handle->text, QStringLiteral("Drag this handle to resize the active shape. Hold "
                                           "Shift to preserve its proportions."));
    EXPECT_NEAR(QRectF(handle->mark).center().x(), corner.x(), 1.5);
    EXPECT_NEAR(QRectF(handle->mark).center().y(), corner.y(), 1.5);
    EXPECT_FALSE(widget.handleAt(shown({50.0, 40.0})));
    QTest::mousePress(viewport(), Qt::LeftButton, {}, corner.toPoint());
    EXPECT_FALSE(widget.handleAt(corner));
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, corner.toPoint());
}

} // namespace
} // namespace quillabrae::canvas
