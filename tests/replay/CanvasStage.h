// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasTimers.h"
#include "canvas/CanvasView.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"
#include "canvas/StoreCanvasHost.h"
#include "raster/RasterImage.h"
#include "replay/VirtualTime.h"

#include <QObject>

#include <optional>

namespace quillabrae::replay {

/// Delayed callbacks on the script's time.
class ScriptTimers final : public canvas::CanvasTimers {
public:
    explicit ScriptTimers(VirtualTime& time) : m_time(time) {}
    void after(double seconds, std::function<void()> callback) override {
        m_time.schedule(seconds, std::move(callback));
    }

private:
    VirtualTime& m_time;
};

/// The pointer and the keys as the script's last line left them.
class ScriptPointer final : public canvas::PointerState {
public:
    canvas::Modifiers modifiers() const override { return keys; }
    std::optional<QPointF> viewportLocation() const override { return location; }

    canvas::Modifiers keys;
    std::optional<QPointF> location;
};

class ScriptScroller final : public canvas::Scroller {
public:
    QRectF clipBounds() const override { return {m_origin, clipSize}; }
    void setClipBoundsOrigin(QPointF origin) override { m_origin = origin; }
    QSizeF documentSize() const override { return m_documentSize; }
    void setDocumentSize(QSizeF size) override;

    QSizeF clipSize{900.0, 700.0};

private:
    QPointF m_origin;
    QSizeF m_documentSize{0.0, 0.0};
};

/// One canvas on the active project, fed by the store as the editor window feeds it.
class CanvasStage {
public:
    /// Where a place of a script is counted from: canvas pixels, the interactive view's screen
    /// points, or the document's, in which a press is the workspace's.
    enum class Space { canvas, view, workspace };

    CanvasStage(store::ProjectStore& store, VirtualTime& time);

    canvas::CanvasView& view() { return m_view; }
    ScriptScroller& scroller() { return m_scroller; }
    ScriptPointer& pointer() { return m_pointer; }

    void setViewportSize(QSizeF size);
    /// A place in document coordinates; the pointer goes there.
    QPointF moveTo(QPointF at, Space space);

    // One drag with the left button, in the coordinates of the surface that its press took.
    void press(QPointF at, Space space);
    void drag(QPointF at, Space space);
    void release(QPointF at, Space space);
    bool isDragging() const { return m_drag.has_value(); }

    /// What the canvas paints, of the viewport's size, transparent around the canvas.
    raster::RasterImage picture() const;

private:
    struct Drag {
        canvas::Surface surface;
        QPointF startLocation;
    };

    canvas::DragValue dragValue(QPointF at, Space space);

    canvas::StoreCanvasHost m_host;
    ScriptTimers m_timers;
    ScriptPointer m_pointer;
    ScriptScroller m_scroller;
    canvas::CanvasView m_view;
    std::optional<Drag> m_drag;
    QObject m_connections;
};

} // namespace quillabrae::replay
