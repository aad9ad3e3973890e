// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/GrabTarget.h"
#include "canvas/PointerState.h"

#include <QElapsedTimer>
#include <QPointF>

#include <optional>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QPinchGesture;
class QTabletEvent;
class QWheelEvent;

namespace quillabrae::canvas {

class CanvasView;
class Scroller;
class StoreCanvasHost;

/// The pointer and the modifier keys as the widget's last event left them.
class CanvasWidgetPointer final : public PointerState {
public:
    Modifiers modifiers() const override { return m_modifiers; }
    std::optional<QPointF> viewportLocation() const override { return m_location; }
    /// In the viewport's coordinates; none when the pointer has left it.
    void setLocation(std::optional<QPointF> location) { m_location = location; }
    void setModifiers(Qt::KeyboardModifiers down);

private:
    Modifiers m_modifiers;
    std::optional<QPointF> m_location;
};

/// Turns Qt events of the viewport into the canvas's input model. Each handler returns whether the
/// event was used.
class CanvasWidgetInput {
public:
    CanvasWidgetInput(StoreCanvasHost& host, CanvasView& view, Scroller& scroller,
                      CanvasWidgetPointer& pointer);

    bool mousePress(const QMouseEvent& event);
    bool mouseMove(const QMouseEvent& event);
    bool mouseRelease(const QMouseEvent& event);
    /// The second press of two quick ones, in the text of a draft; nothing elsewhere.
    bool doubleClick(const QMouseEvent& event);
    /// A pen: its tip is the left button, its other end erases.
    bool tablet(const QTabletEvent& event);
    void leave();
    bool wheel(const QWheelEvent& event);
    bool keyPress(const QKeyEvent& event);
    bool keyRelease(const QKeyEvent& event);
    /// Whether the key is the keyboard pixel's, and no shortcut of the window.
    bool isKeyboardPointerKey(const QKeyEvent& event);
    /// The keyboard has gone elsewhere.
    void focusOut();
    bool nativeGesture(const QNativeGestureEvent& event);
    /// `location`: the fingers' middle in the viewport's coordinates.
    bool pinch(const QPinchGesture& gesture, QPointF location);
    /// What a press where the pointer is would take hold of.
    GrabTarget grabTarget() const;
    bool isPanning() const { return m_panStart.has_value(); }
    /// Whether a press would scroll whatever the tool.
    bool isReadyToPan() const { return m_isSpaceDown; }
    bool isDragging() const { return m_drag.has_value(); }

private:
    enum class PenEnd { tip, eraser };

    struct Drag {
        Surface surface;
        QPointF startLocation;
        QPointF startInViewport;
    };

    void usePenEnd(PenEnd end);
    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool release(const QMouseEvent& event);
    void takeModifiers(Qt::KeyboardModifiers down);
    QPointF documentPoint(QPointF inViewport) const;
    DragValue dragValue(QPointF inViewport) const;
    bool rightMouse(const QMouseEvent& event, RightMousePhase phase);
    bool scroll(const QWheelEvent& event);

    StoreCanvasHost& m_host;
    CanvasView& m_view;
    Scroller& m_scroller;
    CanvasWidgetPointer& m_pointer;
    std::optional<Drag> m_drag;
    std::optional<QPointF> m_panStart;
    /// While the space bar is down, a drag scrolls.
    bool m_isSpaceDown = false;
    PenEnd m_penEnd = PenEnd::tip;
    QElapsedTimer m_clock;
};

/// The key of the canvas that a `Qt::Key` is, if it is one.
std::optional<CanvasKey> canvasKey(int key);

} // namespace quillabrae::canvas
