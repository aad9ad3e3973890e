// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/PointerState.h"

#include <QElapsedTimer>
#include <QPointF>

#include <optional>

class QMouseEvent;
class QNativeGestureEvent;
class QPinchGesture;
class QWheelEvent;

namespace quillabrae::canvas {

class CanvasView;
class Scroller;

/// The pointer as the widget's last event left it; the keyboard as the system has it.
class CanvasWidgetPointer final : public PointerState {
public:
    Modifiers modifiers() const override;
    std::optional<QPointF> viewportLocation() const override { return m_location; }
    /// In the viewport's coordinates; none when the pointer has left it.
    void setLocation(std::optional<QPointF> location) { m_location = location; }

private:
    std::optional<QPointF> m_location;
};

/// Turns Qt events of the viewport into the canvas's input model. Each handler returns whether the
/// event was used.
class CanvasWidgetInput {
public:
    CanvasWidgetInput(CanvasView& view, Scroller& scroller, CanvasWidgetPointer& pointer);

    bool mousePress(const QMouseEvent& event);
    bool mouseMove(const QMouseEvent& event);
    bool mouseRelease(const QMouseEvent& event);
    void leave();
    bool wheel(const QWheelEvent& event);
    bool nativeGesture(const QNativeGestureEvent& event);
    /// `location`: the fingers' middle in the viewport's coordinates.
    bool pinch(const QPinchGesture& gesture, QPointF location);
    /// While the space bar is down, a drag scrolls.
    void setSpaceDown(bool isDown) { m_isSpaceDown = isDown; }

    bool isPanning() const { return m_panStart.has_value(); }
    /// Whether a press would scroll whatever the tool.
    bool isReadyToPan() const { return m_isSpaceDown; }
    bool isDragging() const { return m_drag.has_value(); }

private:
    struct Drag {
        Surface surface;
        QPointF startLocation;
        QPointF startInViewport;
    };

    QPointF documentPoint(QPointF inViewport) const;
    DragValue dragValue(QPointF inViewport) const;
    bool rightMouse(const QMouseEvent& event, RightMousePhase phase);
    bool scroll(const QWheelEvent& event);

    CanvasView& m_view;
    Scroller& m_scroller;
    CanvasWidgetPointer& m_pointer;
    std::optional<Drag> m_drag;
    std::optional<QPointF> m_panStart;
    bool m_isSpaceDown = false;
    QElapsedTimer m_clock;
};

} // namespace quillabrae::canvas
