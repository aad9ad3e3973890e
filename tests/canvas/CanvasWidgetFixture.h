// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "raster/DecodeCache.h"
#include "store/StoreTest.h"

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPointingDevice>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <vector>

namespace quillabrae::canvas {
/// Notes what is painted of a widget.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) region |= static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion region;
};

/// A canvas widget on a real store.
class WidgetTest : public store::StoreTest {
protected:
    WidgetTest() {
        projects->editSettings([](model::PaintAppSettings& settings) {
            settings.primaryColor = {1.0, 0.0, 0.0, 1.0};
            settings.secondaryColor = {0.0, 0.0, 1.0, 1.0};
            settings.brushSize = 8.0;
        });
    }

    /// A white project of 200 by 100, shown at zoom 2 in the middle of a viewport.
    void showProject() {
        projects->createUntitledProject(200, 100, 96);
        widget.resize(900, 700);
        widget.show();
        QTest::qWait(0);
        setZoom(2.0);
        widget.view().zoom().centerCanvasInViewport();
        settle();
    }
    void setZoom(double zoomScale) {
        projects->editSettings([=](auto& settings) { settings.zoomScale = zoomScale; });
    }
    void useTool(model::PaintTool tool) {
        projects->editSettings([=](auto& settings) { settings.selectedTool = tool; });
    }
    static void settle() {
        QApplication::processEvents();
        QApplication::processEvents();
    }

    QWidget* viewport() { return widget.viewport(); }
    /// Where a canvas point shows, in the viewport's coordinates.
    QPointF shown(model::CanvasPoint point) {
        return widget.canvasOriginInViewport() +
               QPointF(point.x, point.y) * widget.view().currentZoom();
    }
    QPoint at(model::CanvasPoint point) { return shown(point).toPoint(); }
    /// The canvas point under a place of the viewport.
    model::CanvasPoint under(QPointF place) {
        const QPointF distance = place - widget.canvasOriginInViewport();
        return {distance.x() / widget.view().currentZoom(),
                distance.y() / widget.view().currentZoom()};
    }
    void expectUnder(QPointF place, model::CanvasPoint expected) {
        const double pixel = 1.0 / widget.view().currentZoom();
        EXPECT_NEAR(under(place).x, expected.x, pixel);
        EXPECT_NEAR(under(place).y, expected.y, pixel);
    }

    /// The canvas stands on a whole device pixel, so within one of where it should be.
    void expectOrigin(QPointF expected) {
        const double devicePixel = 1.0 / viewport()->devicePixelRatioF();
        EXPECT_NEAR(widget.canvasOriginInViewport().x(), expected.x(), devicePixel - 1e-6);
        EXPECT_NEAR(widget.canvasOriginInViewport().y(), expected.y(), devicePixel - 1e-6);
    }

    QColor stored(int x, int y) {
        const auto& bytes = projects->activeProject()->layers.front().bitmapPNGData;
        return raster::decodedImage(*bytes).toQImage().pixelColor(x, y);
    }
    QColor onScreen(QPointF place) {
        const QImage image = viewport()->grab().toImage();
        const QPointF device = place * image.devicePixelRatio();
        return image.pixelColor(static_cast<int>(device.x()), static_cast<int>(device.y()));
    }
    std::vector<QString> historyTitles() {
        std::vector<QString> titles;
        for (const auto& entry : projects->history(*projects->activeProjectID()).entries) {
            titles.push_back(entry.title);
        }
        return titles;
    }

    void drag(Qt::MouseButton button, std::initializer_list<model::CanvasPoint> points,
              Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(viewport(), button, keys, at(*points.begin()));
        for (const model::CanvasPoint point : points) move(button, at(point));
        QTest::mouseRelease(viewport(), button, keys, at(*(points.end() - 1)));
    }
    /// A move with a button held, which QTest's own move does not do.
    void move(Qt::MouseButtons buttons, QPointF place, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(QEvent::MouseMove, place, viewport()->mapToGlobal(place), Qt::NoButton,
                          buttons, keys);
        QApplication::sendEvent(viewport(), &event);
    }
    void wheel(QPointF place, QPoint angle, Qt::KeyboardModifiers keys = {}, QPoint pixels = {}) {
        QWheelEvent event(place, viewport()->mapToGlobal(place), pixels, angle, Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }
    void pinch(QPointF place, double magnification, quint64 milliseconds) {
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(),
                                  2, place, place, viewport()->mapToGlobal(place), magnification,
                                  {});
        event.setTimestamp(milliseconds);
        QApplication::sendEvent(viewport(), &event);
    }

    std::unique_ptr<store::ProjectStore> projects = makeStore();
    CanvasWidget widget{*projects};
};

} // namespace quillabrae::canvas
