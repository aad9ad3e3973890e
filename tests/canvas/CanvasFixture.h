// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasDisplay.h"
#include "canvas/CanvasHost.h"
#include "canvas/CanvasView.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"
#include "canvas/VirtualTimers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillabrae::canvas {

/// A host whose project and settings the test holds in its hand, and which keeps what it is told.
class FakeHost final : public CanvasHost {
public:
    const model::PaintProject* project() const override { return active ? &*active : nullptr; }
    void editProject(const std::function<void(model::PaintProject&)>& edit) override {
        ++edits;
        edit(*active);
    }
    const model::PaintAppSettings& settings() const override { return tools; }
    QDateTime now() const override { return QDateTime::fromMSecsSinceEpoch(1'000, Qt::UTC); }
    void setZoomScale(double zoomScale) override {
        zoomWrites.push_back(zoomScale);
        tools.zoomScale = zoomScale;
        if (zoomScaleChanged) zoomScaleChanged();
    }
    void onViewportChange(QSizeF size) override { viewports.push_back(size); }
    void onCursorPositionChange(std::optional<model::CanvasPoint> point) override {
        cursor = point;
        ++cursorReports;
    }
    void pickPrimaryColor(const model::ColorValue& color) override { tools.primaryColor = color; }
    void recordHistory(const QString& title, const QString& symbolName) override {
        history.emplace_back(title.toStdString(), symbolName.toStdString());
    }

    std::optional<model::PaintProject> active;
    model::PaintAppSettings tools;
    std::function<void()> zoomScaleChanged;
    int edits = 0;
    std::vector<double> zoomWrites;
    std::vector<QSizeF> viewports;
    std::optional<model::CanvasPoint> cursor;
    int cursorReports = 0;
    std::vector<std::pair<std::string, std::string>> history;
};

class FakeScroller final : public Scroller {
public:
    QRectF clipBounds() const override { return {origin, clip}; }
    void setClipBoundsOrigin(QPointF newOrigin) override {
        origin = newOrigin;
        ++scrolls;
    }
    QSizeF documentSize() const override { return document; }
    void setDocumentSize(QSizeF size) override { document = size; }

    QPointF origin;
    QSizeF clip{900.0, 700.0};
    QSizeF document{0.0, 0.0};
    int scrolls = 0;
};

class FakePointer final : public PointerState {
public:
    Modifiers modifiers() const override { return keys; }
    std::optional<QPointF> viewportLocation() const override { return location; }

    Modifiers keys;
    std::optional<QPointF> location;
};

class FakeDisplay final : public CanvasDisplay {
public:
    void repaintCanvasPixels(const QRect& rect) override { rects.push_back(rect); }
    void repaintOverlays() override { ++overlayRepaints; }
    void repaintViewport() override { ++wholeRepaints; }

    std::vector<QRect> rects;
    int overlayRepaints = 0;
    int wholeRepaints = 0;
};

/// One layer without pixels.
inline model::PaintLayer emptyLayer() {
    model::PaintLayer layer;
    layer.id = QUuid::createUuid();
    return layer;
}

/// A canvas of 200 by 100 with one layer, in a viewport of 900 by 700 at zoom 1, scrolled to its
/// middle.
class CanvasFixture : public testing::Test {
protected:
    CanvasFixture() {
        model::PaintProject project;
        project.id = QUuid::createUuid();
        project.canvasWidth = 200.0;
        project.canvasHeight = 100.0;
        project.layers = {emptyLayer()};
        project.selectedLayerID = project.layers.front().id;
        host.active = project;
        host.tools.zoomScale = 1.0;
        host.zoomScaleChanged = [this] { view.settingsChanged(); };
        view.setDisplay(&display);
        view.setScroller(&scroller);
        view.setViewportSize(scroller.clip);
        view.zoom().centerCanvasInViewport();
        timers.turn();
        display.wholeRepaints = 0;
        scroller.scrolls = 0;
    }

    model::PaintProject& project() { return *host.active; }
    model::PaintLayer& layer() { return host.active->layers.front(); }

    /// A canvas point in the viewport's screen points, where the pointer would be over it.
    QPointF inViewport(model::CanvasPoint point) const {
        const double zoom = view.currentZoom();
        return QPointF(point.x * zoom, point.y * zoom) +
               view.geometry().canvasDocumentOrigin(zoom) - scroller.origin;
    }
    model::CanvasPoint canvasPointAt(QPointF viewportPoint) const {
        return view.geometry().unclampedCanvasPointFromWorkspace(scroller.origin + viewportPoint,
                                                                 view.currentZoom());
    }
    /// A canvas point in the interactive view's coordinates.
    QPointF local(model::CanvasPoint point) const {
        return view.geometry().interactiveViewPoint(point, view.currentZoom());
    }
    QPointF inDocument(model::CanvasPoint point) const {
        return local(point) + view.geometry().canvasPaddings(view.currentZoom());
    }

    FakeHost host;
    FakeScroller scroller;
    FakePointer pointer;
    FakeDisplay display;
    VirtualTimers timers;
    CanvasView view{host, timers, pointer};
};

} // namespace quillabrae::canvas
