// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/KeyboardPointer.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/Scroller.h"
#include "canvas/ToolCursor.h"
#include "canvas/ZoomController.h"
#include "model/PaintTool.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

using model::PaintTool;

namespace {

/// How far from the viewport's edge, in screen points, the pixel is kept.
constexpr double visibleMargin = 40.0;

/// A tool that does all it does at one place.
bool onlyClicks(PaintTool tool) {
    return tool == PaintTool::zoom || tool == PaintTool::text || tool == PaintTool::colorPicker ||
           tool == PaintTool::paintBucket || tool == PaintTool::magicWand;
}

/// The least a scroll has to move `low` to `high` into 0 to `length`; their middle when both
/// do not fit.
double scrollInto(double low, double high, double length) {
    if (high - low > length) return (low + high - length) / 2.0;
    return std::min(low, 0.0) + std::max(high - length, 0.0);
}

} // namespace

KeyboardPointer::KeyboardPointer(CanvasContext& context, const ZoomController& zoom,
                                 ToolCursor& cursor, Drags drags)
    : m_context(context), m_zoom(zoom), m_cursor(cursor), m_drags(std::move(drags)) {}

std::optional<QPoint> KeyboardPointer::pixel() const {
    if (!m_isShown || m_context.host.project() == nullptr) return std::nullopt;
    return heldToCanvas(*m_pixel);
}

QPoint KeyboardPointer::heldToCanvas(QPoint pixel) const {
    const CanvasGeometry geometry = m_context.geometry();
    const auto held = [](int value, double length) {
        return std::clamp(value, 0, std::max(static_cast<int>(length) - 1, 0));
    };
    return {held(pixel.x(), geometry.canvasWidth), held(pixel.y(), geometry.canvasHeight)};
}

QPoint KeyboardPointer::firstPixel() const {
    const auto under = [](model::CanvasPoint point) {
        return QPoint(static_cast<int>(std::floor(point.x)), static_cast<int>(std::floor(point.y)));
    };
    if (const auto hovered = m_cursor.hoveredCanvasPoint()) return under(*hovered);
    if (m_pixel) return *m_pixel;
    return under(m_zoom.canvasPointAtViewportCenter());
}

QPointF KeyboardPointer::location(QPoint pixel) const {
    constexpr double half = 0.5;
    return m_context.geometry().interactiveViewPoint({pixel.x() + half, pixel.y() + half},
                                                     m_zoom.currentZoom());
}

DragValue KeyboardPointer::dragValue() const {
    return DragValue::between(location(*m_pressedAt), location(*m_pixel));
}

void KeyboardPointer::move(QPoint distance) {
    if (m_context.host.project() == nullptr) return;
    m_pixel = heldToCanvas(heldToCanvas(m_isShown ? *m_pixel : firstPixel()) + distance);
    m_isShown = true;
    if (isPressed()) {
        m_drags.changed(dragValue());
    } else {
        m_cursor.updateToolCursor(location(*m_pixel));
    }
    // The hand moves the canvas and not the pixel.
    if (m_context.host.settings().selectedTool != PaintTool::pan) scrollToPixel();
    m_context.repaintOverlays();
}

void KeyboardPointer::scrollToPixel() const {
    Scroller* scroller = m_context.scroller;
    if (scroller == nullptr) return;
    const double zoom = m_zoom.currentZoom();
    const QRectF clip = scroller->clipBounds();
    const QPointF middle = location(*m_pixel) + m_context.geometry().canvasPaddings(zoom);
    const double reach = zoom / 2.0 + visibleMargin;
    const QPointF inClip = middle - clip.topLeft();
    const QPointF distance(scrollInto(inClip.x() - reach, inClip.x() + reach, clip.width()),
                           scrollInto(inClip.y() - reach, inClip.y() + reach, clip.height()));
    if (distance.isNull()) return;
    scroller->setClipBoundsOrigin(
        limitedScrollOrigin(clip.topLeft() + distance, scroller->documentSize(), clip.size()));
    m_context.repaintViewport();
}

void KeyboardPointer::pressOrRelease() {
    if (!pixel() || release()) return;
    m_pixel = pixel();
    m_drags.willBegin(location(*m_pixel));
    m_pressedAt = m_pixel;
    m_before = *m_context.host.project();
    m_drags.changed(dragValue());
    m_context.repaintOverlays();
    if (onlyClicks(m_context.host.settings().selectedTool)) release();
}

bool KeyboardPointer::release() {
    const auto value = letGo();
    if (value) m_drags.ended(*value);
    return value.has_value();
}

std::optional<DragValue> KeyboardPointer::letGo() {
    if (!isPressed()) return std::nullopt;
    const DragValue value = dragValue();
    m_pressedAt.reset();
    m_before.reset();
    m_context.repaintOverlays();
    return value;
}

bool KeyboardPointer::cancel() {
    if (!isPressed()) return false;
    const QPointF start = location(*m_pressedAt);
    m_pressedAt.reset();
    m_drags.cancelled(DragValue::between(start, start));
    const auto before = std::exchange(m_before, std::nullopt);
    const model::PaintProject* project = m_context.host.project();
    if (before && project != nullptr && *project != *before)
        m_context.editProject([&](model::PaintProject& edited) { edited = *before; });
    m_context.repaintViewport();
    return true;
}

void KeyboardPointer::leave() {
    release();
    if (!std::exchange(m_isShown, false)) return;
    m_context.repaintOverlays();
}

} // namespace quillabrae::canvas
