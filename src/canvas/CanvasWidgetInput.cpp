// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidgetInput.h"

#include "canvas/CanvasView.h"
#include "canvas/CanvasWidgetText.h"
#include "canvas/Scroller.h"
#include "canvas/StoreCanvasHost.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QTabletEvent>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// The angle of one notch of a wheel, in eighths of a degree.
constexpr double notchAngle = 120.0;
/// Screen points of one line of scrolling.
constexpr double lineHeight = 20.0;
/// What the zoom is multiplied by for one unit of magnification.
constexpr double magnificationBase = 1.85;

bool startsPan(const QMouseEvent& event, bool isSpaceDown) {
    return event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && isSpaceDown);
}

/// How far a wheel event scrolls, in screen points, before Shift turns it sideways.
QPointF scrollDistance(const QWheelEvent& event) {
    if (!event.pixelDelta().isNull()) return event.pixelDelta();
    const double lines = QApplication::wheelScrollLines();
    return QPointF(event.angleDelta()) / notchAngle * lines * lineHeight;
}

} // namespace

void CanvasWidgetPointer::setModifiers(Qt::KeyboardModifiers down) {
    m_modifiers = {down.testFlag(Qt::ShiftModifier), down.testFlag(Qt::MetaModifier),
                   down.testFlag(Qt::AltModifier), down.testFlag(Qt::ControlModifier)};
}

CanvasWidgetInput::CanvasWidgetInput(StoreCanvasHost& host, CanvasView& view, Scroller& scroller,
                                     CanvasWidgetPointer& pointer)
    : m_host(host), m_view(view), m_scroller(scroller), m_pointer(pointer) {
    m_clock.start();
}

void CanvasWidgetInput::takeModifiers(Qt::KeyboardModifiers down) {
    m_pointer.setModifiers(down);
    m_view.modifiersChanged();
}

QPointF CanvasWidgetInput::documentPoint(QPointF inViewport) const {
    return m_scroller.clipBounds().topLeft() + inViewport;
}

DragValue CanvasWidgetInput::dragValue(QPointF inViewport) const {
    return {m_drag->startLocation, m_view.localPoint(m_drag->surface, documentPoint(inViewport)),
            inViewport - m_drag->startInViewport};
}

bool CanvasWidgetInput::mousePress(const QMouseEvent& event) {
    usePenEnd(PenEnd::tip);
    return press(event);
}

bool CanvasWidgetInput::mouseMove(const QMouseEvent& event) {
    usePenEnd(PenEnd::tip);
    return move(event);
}

bool CanvasWidgetInput::mouseRelease(const QMouseEvent& event) {
    return release(event);
}

bool CanvasWidgetInput::tablet(const QTabletEvent& event) {
    static constexpr std::array<std::pair<QEvent::Type, QEvent::Type>, 3> types{{
        {QEvent::TabletPress, QEvent::MouseButtonPress},
        {QEvent::TabletMove, QEvent::MouseMove},
        {QEvent::TabletRelease, QEvent::MouseButtonRelease},
    }};
    usePenEnd(event.pointerType() == QPointingDevice::PointerType::Eraser ? PenEnd::eraser
                                                                          : PenEnd::tip);
    const auto* row = std::ranges::find(types, event.type(),
                                        [](const auto& candidate) { return candidate.first; });
    if (row == types.end()) return false;
    const QMouseEvent mouse(row->second, event.position(), event.globalPosition(), event.button(),
                            event.buttons(), event.modifiers());
    // Taken in any case: what is not would come again as the mouse's.
    if (mouse.type() == QEvent::MouseButtonPress) {
        press(mouse);
    } else if (mouse.type() == QEvent::MouseMove) {
        move(mouse);
    } else {
        release(mouse);
    }
    return true;
}

/// Takes up another end of the pen, or the mouse, unless the one in use has a button down.
void CanvasWidgetInput::usePenEnd(PenEnd end) {
    if (isDragging() || isPanning() || std::exchange(m_penEnd, end) == end) return;
    m_host.setHeldTool(end == PenEnd::eraser ? std::optional(model::PaintTool::eraser)
                                             : std::nullopt);
    m_view.settingsChanged();
}

bool CanvasWidgetInput::press(const QMouseEvent& event) {
    const QPointF at = event.position();
    m_pointer.setLocation(at);
    takeModifiers(event.modifiers());
    if (isPanning()) return true;
    if (!isDragging() && startsPan(event, m_isSpaceDown)) {
        m_panStart = at;
        return true;
    }
    if (event.button() == Qt::RightButton) return rightMouse(event, RightMousePhase::down);
    if (event.button() != Qt::LeftButton) return false;
    const Surface surface = m_view.surfaceAt(documentPoint(at));
    m_drag = Drag{surface, m_view.localPoint(surface, documentPoint(at)), at};
    m_view.dragChanged(surface, dragValue(at));
    return true;
}

bool CanvasWidgetInput::move(const QMouseEvent& event) {
    const QPointF at = event.position();
    m_pointer.setLocation(at);
    takeModifiers(event.modifiers());
    if (isPanning()) {
        m_view.panChanged(at - *m_panStart);
        return true;
    }
    if (event.buttons().testFlag(Qt::RightButton) && rightMouse(event, RightMousePhase::dragged)) {
        return true;
    }
    if (isDragging()) {
        m_view.dragChanged(m_drag->surface, dragValue(at));
    } else if (event.buttons() == Qt::NoButton) {
        m_view.hover(documentPoint(at));
    }
    return true;
}

bool CanvasWidgetInput::release(const QMouseEvent& event) {
    const QPointF at = event.position();
    m_pointer.setLocation(at);
    takeModifiers(event.modifiers());
    if (isPanning() && event.button() != Qt::RightButton) {
        m_panStart.reset();
        m_view.panEnded();
        return true;
    }
    if (event.button() == Qt::RightButton) return rightMouse(event, RightMousePhase::up);
    if (event.button() != Qt::LeftButton || !isDragging()) return false;
    const DragValue value = dragValue(at);
    const Surface surface = std::exchange(m_drag, std::nullopt)->surface;
    m_view.dragEnded(surface, value);
    return true;
}

bool CanvasWidgetInput::rightMouse(const QMouseEvent& event, RightMousePhase phase) {
    return m_view.handleRightMouseEvent({phase, documentPoint(event.position())});
}

bool CanvasWidgetInput::doubleClick(const QMouseEvent& event) {
    const QPointF document = documentPoint(event.position());
    return m_view.surfaceAt(document) == Surface::interactiveView &&
           m_view.draftDoubleClick(m_view.localPoint(Surface::interactiveView, document));
}

GrabTarget CanvasWidgetInput::grabTarget() const {
    const auto place = m_pointer.viewportLocation();
    return place ? m_view.grabTargetAt(documentPoint(*place)) : GrabTarget();
}

void CanvasWidgetInput::leave() {
    m_pointer.setLocation(std::nullopt);
    m_view.hoverEnded();
}

std::optional<CanvasKey> canvasKey(int key) {
    static constexpr std::array<std::pair<int, CanvasKey>, 8> keys{{
        {Qt::Key_Escape, CanvasKey::escape},
        {Qt::Key_Left, CanvasKey::left},
        {Qt::Key_Right, CanvasKey::right},
        {Qt::Key_Up, CanvasKey::up},
        {Qt::Key_Down, CanvasKey::down},
        {Qt::Key_Space, CanvasKey::space},
        {Qt::Key_Return, CanvasKey::enter},
        {Qt::Key_Enter, CanvasKey::enter},
    }};
    const auto* row =
        std::ranges::find(keys, key, [](const auto& candidate) { return candidate.first; });
    if (row == keys.end()) return std::nullopt;
    return row->second;
}

bool CanvasWidgetInput::isKeyboardPointerKey(const QKeyEvent& event) {
    takeModifiers(event.modifiers());
    const auto key = canvasKey(event.key());
    return key && m_view.isKeyboardPointerKey(*key);
}

bool CanvasWidgetInput::keyPress(const QKeyEvent& event) {
    takeModifiers(event.modifiers());
    if (m_view.drafts().hasText() && applyTextKey(m_view.textDraft(), event)) return true;
    const auto key = canvasKey(event.key());
    if (key == CanvasKey::space && !m_view.isKeyboardPointerKey(*key)) {
        m_isSpaceDown = true;
        return true;
    }
    // A key that is held down presses the tool once.
    const bool repeatsPress = event.isAutoRepeat() && key == CanvasKey::space;
    return key && (repeatsPress || m_view.handleKey(*key));
}

bool CanvasWidgetInput::keyRelease(const QKeyEvent& event) {
    takeModifiers(event.modifiers());
    if (event.key() != Qt::Key_Space) return false;
    if (!event.isAutoRepeat()) m_isSpaceDown = false;
    return true;
}

void CanvasWidgetInput::focusOut() {
    m_isSpaceDown = false;
    takeModifiers(Qt::NoModifier);
    m_view.keyboardLeft();
}

bool CanvasWidgetInput::wheel(const QWheelEvent& event) {
    m_pointer.setLocation(event.position());
    takeModifiers(event.modifiers());
    if (!event.modifiers().testFlag(Qt::ControlModifier)) return scroll(event);
    const QPoint angle = event.angleDelta();
    m_view.applyWheelZoom((angle.y() != 0 ? angle.y() : angle.x()) / notchAngle);
    return true;
}

bool CanvasWidgetInput::scroll(const QWheelEvent& event) {
    QPointF distance = scrollDistance(event);
    if (event.modifiers().testFlag(Qt::ShiftModifier) && distance.x() == 0.0) {
        distance = distance.transposed();
    }
    m_view.scrollBy(-distance);
    if (!isDragging() && event.buttons() == Qt::NoButton) {
        m_view.hover(documentPoint(event.position()));
    }
    return true;
}

bool CanvasWidgetInput::nativeGesture(const QNativeGestureEvent& event) {
    if (event.gestureType() != Qt::ZoomNativeGesture) return false;
    m_pointer.setLocation(event.position());
    constexpr double millisecondsPerSecond = 1000.0;
    return m_view.handleMagnifyEvent(
        {event.value(), static_cast<double>(event.timestamp()) / millisecondsPerSecond,
         documentPoint(event.position())});
}

bool CanvasWidgetInput::pinch(const QPinchGesture& gesture, QPointF location) {
    if (gesture.state() == Qt::GestureStarted) {
        // The first finger came as a press: what it drew was no stroke.
        m_drag.reset();
        m_view.cancelDrawing();
    }
    m_pointer.setLocation(location);
    const double factor = gesture.scaleFactor();
    if (!(factor > 0.0)) return true;
    constexpr double nanosecondsPerSecond = 1e9;
    m_view.handleMagnifyEvent({std::log(factor) / std::log(magnificationBase),
                               static_cast<double>(m_clock.nsecsElapsed()) / nanosecondsPerSecond,
                               documentPoint(location)});
    return true;
}

} // namespace quillabrae::canvas
