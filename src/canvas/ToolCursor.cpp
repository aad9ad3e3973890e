// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/ToolCursor.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/ZoomController.h"

#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

namespace {

bool hasWorkspaceSurface(PaintTool tool) {
    return tool == PaintTool::gradient || tool == PaintTool::eraser ||
           model::createsSelectionRegion(tool);
}

} // namespace

PaintTool ToolCursor::tool() const {
    return m_context.host.settings().selectedTool;
}

void ToolCursor::hover(QPointF documentPoint) {
    if (m_context.host.project() == nullptr) return hoverEnded();
    const CanvasGeometry geometry = m_context.geometry();
    const double zoom = m_zoom.currentZoom();
    if (geometry.surfaceAt(documentPoint, zoom) == Surface::interactiveView) {
        return setHoveredCanvasPoint(geometry.clampedCanvasPoint(
            geometry.localPoint(Surface::interactiveView, documentPoint, zoom), zoom));
    }
    if (!hasWorkspaceSurface(tool())) return hoverEnded();
    if (tool() == PaintTool::eraser) return updateToolCursorFromWorkspace(documentPoint);
    hoverOverWorkspace(documentPoint);
}

void ToolCursor::hoverOverWorkspace(QPointF documentPoint) {
    setHoveredCanvasPoint(m_context.geometry().unclampedCanvasPointFromWorkspace(
        documentPoint, m_zoom.currentZoom()));
}

void ToolCursor::hoverEnded() {
    setHoveredCanvasPoint(std::nullopt);
}

void ToolCursor::setHoveredCanvasPoint(std::optional<CanvasPoint> point) {
    const bool hasMoved = std::exchange(m_hoveredCanvasPoint, point) != point;
    if (hasMoved && tool() == PaintTool::eraser) m_context.repaintOverlays();
    m_context.host.onCursorPositionChange(point);
}

CanvasPoint ToolCursor::toolPoint(QPointF location) const {
    const CanvasGeometry geometry = m_context.geometry();
    return tool() == PaintTool::eraser
               ? geometry.unclampedCanvasPoint(location, m_zoom.currentZoom())
               : geometry.clampedCanvasPoint(location, m_zoom.currentZoom());
}

void ToolCursor::updateToolCursor(QPointF location) {
    setHoveredCanvasPoint(toolPoint(location));
}

void ToolCursor::updateToolCursorFromWorkspace(QPointF location) {
    updateToolCursor(
        m_context.geometry().localPoint(Surface::interactiveView, location, m_zoom.currentZoom()));
}

} // namespace quillabrae::canvas
