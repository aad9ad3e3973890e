// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/ToolDrags.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/DrawingGestures.h"
#include "canvas/PointerState.h"
#include "canvas/SelectionGestures.h"
#include "canvas/TextDraft.h"
#include "canvas/ToolCursor.h"
#include "canvas/ZoomController.h"
#include "raster/LayerRasterServiceRegions.h"

#include <array>
#include <cmath>

namespace quillabrae::canvas {

using model::PaintTool;

namespace {

template <PaintTool wanted>
bool isTool(PaintTool tool) {
    return tool == wanted;
}

} // namespace

const ToolDrags::Route* ToolDrags::route(Surface surface, PaintTool tool) {
    using enum Surface;
    static constexpr std::array routes{
        Route{interactiveView, model::usesSelectionGesture, &ToolDrags::selectionChanged,
              &ToolDrags::selectionEnded},
        Route{interactiveView, isTool<PaintTool::colorPicker>, &ToolDrags::pickColor,
              &ToolDrags::pickColor},
        Route{interactiveView, isTool<PaintTool::pan>, &ToolDrags::panToolChanged,
              &ToolDrags::panToolEnded},
        Route{interactiveView, isTool<PaintTool::zoom>, &ToolDrags::ignoreDrag,
              &ToolDrags::zoomToolEnded},
        Route{interactiveView, isTool<PaintTool::text>, &ToolDrags::ignoreDrag,
              &ToolDrags::textToolEnded},
        Route{interactiveView, DrawingGestures::serves, &ToolDrags::drawChanged,
              &ToolDrags::drawEnded},
        Route{workspace, isTool<PaintTool::eraser>, &ToolDrags::eraserWorkspaceChanged,
              &ToolDrags::eraserWorkspaceEnded},
        Route{workspace, isTool<PaintTool::gradient>, &ToolDrags::gradientWorkspaceChanged,
              &ToolDrags::gradientWorkspaceEnded},
        Route{workspace, model::createsSelectionRegion, &ToolDrags::selectionWorkspaceChanged,
              &ToolDrags::selectionWorkspaceEnded},
    };
    for (const Route& candidate : routes) {
        if (candidate.surface == surface && candidate.serves(tool)) return &candidate;
    }
    return nullptr;
}

void ToolDrags::dragChanged(Surface surface, const DragValue& value) {
    m_surface = surface;
    if (surface == Surface::interactiveView) m_workers.cursor.updateToolCursor(value.location);
    const Route* found = route(surface, m_context.host.settings().selectedTool);
    if (found != nullptr) (this->*found->changed)(value);
}

void ToolDrags::dragEnded(Surface surface, const DragValue& value) {
    m_surface.reset();
    if (surface == Surface::interactiveView) m_workers.cursor.updateToolCursor(value.location);
    const Route* found = route(surface, m_context.host.settings().selectedTool);
    if (found != nullptr) (this->*found->ended)(value);
}

void ToolDrags::toolChanged(PaintTool former) {
    if (!m_surface || route(*m_surface, m_context.host.settings().selectedTool) != nullptr) return;
    m_workers.selection.finishAsItStands();
    m_workers.drawing.finishAsItStands(former);
}

void ToolDrags::panToolChanged(const DragValue& value) {
    m_workers.pan.panCanvas(value.translation);
}

void ToolDrags::panToolEnded(const DragValue&) {
    m_workers.pan.finish();
}

void ToolDrags::zoomToolEnded(const DragValue& value) {
    ZoomController& zoom = m_workers.zoom;
    zoom.commitLiveZoom();
    m_workers.cursor.setHoveredCanvasPoint(
        m_context.geometry().clampedCanvasPoint(value.location, zoom.currentZoom()));
    zoom.stepZoom(m_context.pointer.modifiers().option ? ZoomStep::out : ZoomStep::in);
}

void ToolDrags::textToolEnded(const DragValue& value) {
    m_workers.text.beginTextEditing(
        m_context.geometry().clampedCanvasPoint(value.location, m_workers.zoom.currentZoom()));
}

void ToolDrags::pickColor(const DragValue& value) {
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project->selectedLayer();
    if (layer == nullptr) return;
    const auto color = raster::LayerRasterService::color(
        *layer, project->canvasWidth, project->canvasHeight,
        m_context.geometry().clampedCanvasPoint(value.location, m_workers.zoom.currentZoom()));
    if (color) m_context.host.pickPrimaryColor(*color);
}

void ToolDrags::drawChanged(const DragValue& value) {
    m_workers.drawing.beginWith(DrawingButton::left);
    m_workers.drawing.rasterizeDrawing(m_workers.cursor.toolPoint(value.location));
}

void ToolDrags::drawEnded(const DragValue&) {
    m_workers.drawing.finishRasterDrawing();
}

void ToolDrags::eraserWorkspaceChanged(const DragValue& value) {
    m_workers.cursor.updateToolCursorFromWorkspace(value.location);
    m_workers.drawing.rasterizeDrawing(m_context.geometry().unclampedCanvasPointFromWorkspace(
        value.location, m_workers.zoom.currentZoom()));
}

void ToolDrags::eraserWorkspaceEnded(const DragValue& value) {
    eraserWorkspaceChanged(value);
    m_workers.drawing.finishRasterDrawing();
}

void ToolDrags::gradientWorkspaceChanged(const DragValue& value) {
    m_workers.cursor.hoverOverWorkspace(value.location);
    m_workers.drawing.beginWith(DrawingButton::left);
    m_workers.drawing.rasterizeDrawing(m_context.geometry().unclampedCanvasPointFromWorkspace(
        value.location, m_workers.zoom.currentZoom()));
}

void ToolDrags::gradientWorkspaceEnded(const DragValue& value) {
    gradientWorkspaceChanged(value);
    m_workers.drawing.finishRasterDrawing();
}

void ToolDrags::selectionChanged(const DragValue& value) {
    m_workers.selection.updateSelectionGesture(value);
}

void ToolDrags::selectionEnded(const DragValue& value) {
    m_workers.selection.finishSelectionGesture(
        std::hypot(value.translation.x(), value.translation.y()));
}

void ToolDrags::selectionWorkspaceChanged(const DragValue& value) {
    m_workers.cursor.hoverOverWorkspace(value.location);
    m_workers.selection.selectionWorkspaceChanged(value);
}

void ToolDrags::selectionWorkspaceEnded(const DragValue& value) {
    m_workers.selection.selectionWorkspaceEnded(value);
}

} // namespace quillabrae::canvas
