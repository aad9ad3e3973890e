// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasView.h"

#include "canvas/CanvasHost.h"
#include "canvas/FloatingSelection.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"

#include <array>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

namespace {

/// How far outside the document, in screen points, a pinch still counts as the canvas's.
constexpr double magnifyMargin = 80.0;

bool drawsWithEitherButton(PaintTool tool) {
    return model::drawsContinuousStroke(tool);
}

bool hasWorkspaceSurface(PaintTool tool) {
    return tool == PaintTool::gradient || tool == PaintTool::eraser ||
           model::createsSelectionRegion(tool);
}

} // namespace

CanvasView::CanvasView(CanvasHost& host, CanvasTimers& timers, const PointerState& pointer)
    : m_context(host, timers, pointer),
      m_zoom(m_context),
      m_pan(m_context),
      m_drawing(m_context),
      m_stroke(m_drawing),
      m_showsPixelGrid(host.settings().showsPixelGrid) {}

// Surroundings

void CanvasView::setScroller(Scroller* scroller) {
    m_context.scroller = scroller;
    updateLayout();
    m_zoom.scrollerResolved();
}

void CanvasView::setViewportSize(QSizeF size) {
    if (size != m_context.viewportSize) {
        const CanvasPoint center = m_zoom.canvasPointAtViewportCenter();
        m_context.viewportSize = size;
        updateLayout();
        m_zoom.centerViewportOn(center);
    }
    m_context.host.onViewportChange(size);
}

void CanvasView::projectChanged() {
    updateLayout();
    // The canvas reports itself what its own edits have changed on screen.
    if (!m_context.isEditing()) m_context.repaintViewport();
}

void CanvasView::activeProjectChanged() {
    updateLayout();
    m_zoom.centerCanvasInViewport();
    m_context.repaintViewport();
}

void CanvasView::settingsChanged() {
    m_zoom.zoomScaleChanged();
    const bool showsPixelGrid = m_context.host.settings().showsPixelGrid;
    if (std::exchange(m_showsPixelGrid, showsPixelGrid) != showsPixelGrid) {
        m_context.repaintViewport();
    }
}

void CanvasView::updateLayout() {
    if (m_context.scroller == nullptr) return;
    const QSizeF size = m_context.documentViewSize(currentZoom());
    if (size != m_context.scroller->documentSize()) m_context.scroller->setDocumentSize(size);
}

PaintTool CanvasView::selectedTool() const {
    return m_context.host.settings().selectedTool;
}

QPointF CanvasView::canvasOriginInViewport(double devicePixelRatio) const {
    QPointF origin = geometry().canvasDocumentOrigin(currentZoom());
    if (m_context.scroller != nullptr) origin -= m_context.scroller->clipBounds().topLeft();
    const auto snapped = [=](double value) {
        return std::round(value * devicePixelRatio) / devicePixelRatio;
    };
    return {snapped(origin.x()), snapped(origin.y())};
}

CanvasFrame CanvasView::frame(double devicePixelRatio) const {
    CanvasFrame frame;
    frame.project = m_context.host.project();
    frame.zoomScale = currentZoom();
    frame.canvasOrigin = canvasOriginInViewport(devicePixelRatio);
    frame.viewportSize = m_context.viewportSize;
    frame.devicePixelRatio = devicePixelRatio;
    frame.showsPixelGrid = m_context.host.settings().showsPixelGrid;
    if (!m_drawing.liveDrawingImage().isNull()) {
        frame.liveLayerID = m_drawing.activeDrawingLayerID();
        frame.liveImage = &m_drawing.liveDrawingImage();
    }
    return frame;
}

// Routing

const CanvasView::Route* CanvasView::route(Surface surface, PaintTool tool) {
    static constexpr std::array<Route, 4> routes{{
        {Surface::interactiveView, [](PaintTool t) { return t == PaintTool::pan; },
         &CanvasView::panToolChanged, &CanvasView::panToolEnded},
        {Surface::interactiveView, [](PaintTool t) { return t == PaintTool::zoom; },
         &CanvasView::ignoreDrag, &CanvasView::zoomToolEnded},
        {Surface::interactiveView, model::drawsContinuousStroke, &CanvasView::drawChanged,
         &CanvasView::drawEnded},
        {Surface::workspace, [](PaintTool t) { return t == PaintTool::eraser; },
         &CanvasView::eraserWorkspaceChanged, &CanvasView::eraserWorkspaceEnded},
    }};
    for (const Route& candidate : routes) {
        if (candidate.surface == surface && candidate.serves(tool)) return &candidate;
    }
    return nullptr;
}

Surface CanvasView::surfaceAt(QPointF documentPoint) const {
    return containsPoint(geometry().interactiveViewRect(currentZoom()), documentPoint)
               ? Surface::interactiveView
               : Surface::workspace;
}

QPointF CanvasView::localPoint(Surface surface, QPointF documentPoint) const {
    if (surface == Surface::workspace) return documentPoint;
    return documentPoint - geometry().canvasPaddings(currentZoom());
}

void CanvasView::dragChanged(Surface surface, const DragValue& value) {
    if (m_context.host.project() == nullptr) return;
    if (surface == Surface::interactiveView) updateToolCursor(value.location);
    if (const Route* found = route(surface, selectedTool())) (this->*found->changed)(value);
}

void CanvasView::dragEnded(Surface surface, const DragValue& value) {
    if (m_context.host.project() == nullptr) return;
    if (surface == Surface::interactiveView) updateToolCursor(value.location);
    if (const Route* found = route(surface, selectedTool())) (this->*found->ended)(value);
}

// Pointer position

void CanvasView::hover(QPointF documentPoint) {
    if (m_context.host.project() == nullptr) return hoverEnded();
    const double zoom = currentZoom();
    if (surfaceAt(documentPoint) == Surface::interactiveView) {
        return setHoveredCanvasPoint(geometry().clampedCanvasPoint(
            localPoint(Surface::interactiveView, documentPoint), zoom));
    }
    const PaintTool tool = selectedTool();
    if (!hasWorkspaceSurface(tool)) return hoverEnded();
    if (tool == PaintTool::eraser) return updateToolCursorFromWorkspace(documentPoint);
    setHoveredCanvasPoint(geometry().unclampedCanvasPointFromWorkspace(documentPoint, zoom));
}

void CanvasView::hoverEnded() {
    setHoveredCanvasPoint(std::nullopt);
}

void CanvasView::setHoveredCanvasPoint(std::optional<CanvasPoint> point) {
    m_hoveredCanvasPoint = point;
    m_context.host.onCursorPositionChange(point);
}

CanvasPoint CanvasView::toolPoint(QPointF location) const {
    return selectedTool() == PaintTool::eraser
               ? geometry().unclampedCanvasPoint(location, currentZoom())
               : geometry().clampedCanvasPoint(location, currentZoom());
}

void CanvasView::updateToolCursor(QPointF location) {
    setHoveredCanvasPoint(toolPoint(location));
}

void CanvasView::updateToolCursorFromWorkspace(QPointF location) {
    updateToolCursor(localPoint(Surface::interactiveView, location));
}

void CanvasView::scrollBy(QPointF distance) {
    Scroller* scroller = m_context.scroller;
    if (scroller == nullptr) return;
    const QRectF clip = scroller->clipBounds();
    scroller->setClipBoundsOrigin(
        limitedScrollOrigin(clip.topLeft() + distance, scroller->documentSize(), clip.size()));
    m_context.repaintViewport();
}

// Tools

void CanvasView::panToolChanged(const DragValue& value) {
    m_pan.panCanvas(value.translation);
}

void CanvasView::panToolEnded(const DragValue&) {
    m_pan.finish();
}

void CanvasView::zoomToolEnded(const DragValue& value) {
    m_zoom.commitLiveZoom();
    setHoveredCanvasPoint(geometry().clampedCanvasPoint(value.location, currentZoom()));
    m_zoom.stepZoom(m_context.pointer.modifiers().option ? ZoomStep::out : ZoomStep::in);
}

void CanvasView::drawChanged(const DragValue& value) {
    if (!m_drawing.activeDrawingColor()) {
        m_drawing.setActiveDrawingColor(m_context.host.settings().primaryColor);
    }
    rasterizeDrawing(toolPoint(value.location));
}

void CanvasView::drawEnded(const DragValue&) {
    finishRasterDrawing();
}

void CanvasView::eraserWorkspaceChanged(const DragValue& value) {
    updateToolCursorFromWorkspace(value.location);
    rasterizeDrawing(geometry().unclampedCanvasPointFromWorkspace(value.location, currentZoom()));
}

void CanvasView::eraserWorkspaceEnded(const DragValue& value) {
    eraserWorkspaceChanged(value);
    finishRasterDrawing();
}

// Drawing

void CanvasView::rasterizeDrawing(CanvasPoint point) {
    commitFloatingSelectionIfNeeded(m_context);
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project == nullptr ? nullptr : project->selectedLayer();
    if (layer == nullptr || !layer->isVisible || layer->isLocked) return resetRasterDrawing();
    if (!m_drawing.isRunning()) m_drawing.begin(*layer);
    if (m_drawing.activeDrawingLayerID() != layer->id) return;
    m_stroke.addSample(point);
}

void CanvasView::finishRasterDrawing() {
    m_drawing.finishRasterDrawing();
    m_stroke.reset();
}

void CanvasView::resetRasterDrawing() {
    m_drawing.resetRasterDrawing();
    m_stroke.reset();
}

void CanvasView::cancelDrawing() {
    if (m_drawing.isRunning()) resetRasterDrawing();
}

// Right button

bool CanvasView::handleRightMouseEvent(const RightMouseEvent& event) {
    if (m_context.host.project() == nullptr || !drawsWithEitherButton(selectedTool())) return false;
    const auto point = canvasPointFromRightMouseEvent(event);
    if (!point) return false;
    m_context.host.onCursorPositionChange(point);
    if (event.phase == RightMousePhase::down) {
        m_isRightMouseDrawing = true;
        m_drawing.setActiveDrawingColor(m_context.host.settings().secondaryColor);
    }
    if (!m_isRightMouseDrawing) return false;
    rasterizeDrawing(*point);
    if (event.phase == RightMousePhase::up) {
        finishRasterDrawing();
        m_isRightMouseDrawing = false;
    }
    return true;
}

/// The point held to the canvas; none for a place that is not over it. A button that is released
/// off the canvas is therefore not seen as released: the stroke stays open until the next press and
/// release of that button on the canvas.
std::optional<CanvasPoint> CanvasView::canvasPointFromRightMouseEvent(
    const RightMouseEvent& event) const {
    if (m_context.scroller == nullptr) return std::nullopt;
    const double zoom = currentZoom();
    const QPointF location = localPoint(Surface::interactiveView, event.documentPoint);
    if (!geometry().isCanvasLocation(location, zoom)) return std::nullopt;
    return geometry().clampedCanvasPoint(location, zoom);
}

bool CanvasView::handleMagnifyEvent(const MagnifyEvent& event) {
    if (m_context.host.project() == nullptr || m_context.scroller == nullptr) return false;
    const QRectF document(QPointF(), geometry().documentViewSize(currentZoom()));
    const QRectF area =
        document.adjusted(-magnifyMargin, -magnifyMargin, magnifyMargin, magnifyMargin);
    if (!containsPoint(area, event.documentPoint)) return false;
    return m_zoom.applyMagnification(event.magnification, event.timestamp);
}

} // namespace quillabrae::canvas
