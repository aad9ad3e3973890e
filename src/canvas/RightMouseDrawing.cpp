// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/RightMouseDrawing.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/DrawingGestures.h"
#include "canvas/ZoomController.h"

namespace quillabrae::canvas {

bool RightMouseDrawing::handleRightMouseEvent(const RightMouseEvent& event) {
    if (m_context.host.project() == nullptr ||
        !DrawingGestures::serves(m_context.host.settings().selectedTool))
        return false;
    const auto point = canvasPointFromRightMouseEvent(event);
    if (!point) return false;
    m_context.host.onCursorPositionChange(point);
    if (event.phase == RightMousePhase::down) {
        m_isRightMouseDrawing = true;
        m_drawing.beginWith(DrawingButton::right);
    }
    if (!m_isRightMouseDrawing) return false;
    m_drawing.rasterizeDrawing(*point);
    if (event.phase == RightMousePhase::up) {
        m_drawing.finishRasterDrawing();
        m_isRightMouseDrawing = false;
    }
    return true;
}

/// The point held to the canvas; none for a place that is not over it. A button that is released
/// off the canvas is therefore not seen as released: the stroke stays open until the next press and
/// release of that button on the canvas.
std::optional<model::CanvasPoint> RightMouseDrawing::canvasPointFromRightMouseEvent(
    const RightMouseEvent& event) const {
    if (m_context.scroller == nullptr) return std::nullopt;
    const CanvasGeometry geometry = m_context.geometry();
    const double zoom = m_zoom.currentZoom();
    const QPointF location =
        geometry.localPoint(Surface::interactiveView, event.documentPoint, zoom);
    if (!geometry.isCanvasLocation(location, zoom)) return std::nullopt;
    return geometry.clampedCanvasPoint(location, zoom);
}

} // namespace quillabrae::canvas
