// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasView.h"

#include "canvas/CanvasHost.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"
#include "canvas/SelectionEdit.h"
#include "raster/LayerRasterServiceRegions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

namespace {

/// How far outside the document, in screen points, a pinch still counts as the canvas's.
constexpr double magnifyMargin = 80.0;
/// Canvas pixels that an arrow key moves the selection by with Command.
constexpr int farNudge = 20;

template <PaintTool wanted>
bool isTool(PaintTool tool) {
    return tool == wanted;
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
      m_text(m_context),
      m_drafts(m_context, m_zoom, m_drawing.shape(), m_text),
      m_selection(m_context, m_zoom,
                  [this](QPointF documentPoint) { hoverOverWorkspace(documentPoint); }),
      m_settings(host.settings()) {}

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
    cancelDrawing();
    m_selection.reset();
    updateLayout();
    m_zoom.centerCanvasInViewport();
    m_context.repaintViewport();
}

void CanvasView::settingsChanged() {
    m_zoom.zoomScaleChanged();
    const model::PaintAppSettings& settings = m_context.host.settings();
    const model::PaintAppSettings before = std::exchange(m_settings, settings);
    if (before.showsPixelGrid != settings.showsPixelGrid) m_context.repaintViewport();
    if (before.selectedTool != settings.selectedTool) toolChanged();
    if (before.brushSize != settings.brushSize) m_context.repaintOverlays();
    draftStyleChanged(before);
    if (before.paintBucketMatchPercentage != settings.paintBucketMatchPercentage)
        m_drawing.bucketMatchChanged();
    if (before.magicWandMatchPercentage != settings.magicWandMatchPercentage)
        m_selection.wandMatchChanged();
}

void CanvasView::toolChanged() {
    m_selection.stopSelectionAutoPan();
    if (selectedTool() != PaintTool::text) m_text.commitActiveText();
    m_drawing.toolChanged(selectedTool());
    m_context.repaintOverlays();
}

void CanvasView::draftStyleChanged(const model::PaintAppSettings& before) {
    const model::PaintAppSettings& now = m_settings;
    const auto shapeStyle = [](const model::PaintAppSettings& s) {
        return std::tie(s.selectedShape, s.shapeDrawingMode, s.shapeOutlineWidth, s.primaryColor,
                        s.secondaryColor);
    };
    const auto textStyle = [](const model::PaintAppSettings& s) {
        return std::tie(s.primaryColor, s.textFontFamily, s.textFontSize, s.textAlignment,
                        s.textBold, s.textItalic, s.textUnderline, s.textStrikethrough);
    };
    if (shapeStyle(before) != shapeStyle(now)) m_drawing.shape().refreshActiveShapeStyle();
    if (textStyle(before) != textStyle(now)) m_text.refreshActiveTextStyle();
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
    const LiveDrawing& drawing = m_drawing.live();
    const PixelTransformGesture& moved = m_selection.pixels();
    if (!drawing.liveDrawingImage().isNull()) {
        frame.liveLayerID = drawing.activeDrawingLayerID();
        frame.liveImage = &drawing.liveDrawingImage();
    } else if (!moved.liveSelectionImage().isNull()) {
        frame.liveLayerID = moved.activeSelectionLayerID();
        frame.liveImage = &moved.liveSelectionImage();
    }
    return frame;
}

OverlayState CanvasView::overlays() const {
    OverlayState state;
    state.selection = selectionInForce(m_context);
    if (selectedTool() == PaintTool::eraser) {
        state.eraserCenter = m_hoveredCanvasPoint;
        state.eraserDiameter = m_context.host.settings().brushSize;
    }
    return state;
}

// Routing

const CanvasView::Route* CanvasView::route(Surface surface, PaintTool tool) {
    using enum Surface;
    static constexpr std::array routes{
        Route{interactiveView, model::usesSelectionGesture, &CanvasView::selectionChanged,
              &CanvasView::selectionEnded},
        Route{interactiveView, isTool<PaintTool::colorPicker>, &CanvasView::pickColor,
              &CanvasView::pickColor},
        Route{interactiveView, isTool<PaintTool::pan>, &CanvasView::panToolChanged,
              &CanvasView::panToolEnded},
        Route{interactiveView, isTool<PaintTool::zoom>, &CanvasView::ignoreDrag,
              &CanvasView::zoomToolEnded},
        Route{interactiveView, isTool<PaintTool::text>, &CanvasView::ignoreDrag,
              &CanvasView::textToolEnded},
        Route{interactiveView, DrawingGestures::serves, &CanvasView::drawChanged,
              &CanvasView::drawEnded},
        Route{workspace, isTool<PaintTool::eraser>, &CanvasView::eraserWorkspaceChanged,
              &CanvasView::eraserWorkspaceEnded},
        Route{workspace, isTool<PaintTool::gradient>, &CanvasView::gradientWorkspaceChanged,
              &CanvasView::gradientWorkspaceEnded},
        Route{workspace, model::createsSelectionRegion, &CanvasView::selectionWorkspaceChanged,
              &CanvasView::selectionWorkspaceEnded},
    };
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
    if (surface == Surface::interactiveView && m_drafts.dragChanged(value)) return;
    if (surface == Surface::interactiveView) updateToolCursor(value.location);
    if (const Route* found = route(surface, selectedTool())) (this->*found->changed)(value);
}

void CanvasView::dragEnded(Surface surface, const DragValue& value) {
    if (m_context.host.project() == nullptr) return;
    if (surface == Surface::interactiveView && m_drafts.dragEnded(value)) return;
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
    hoverOverWorkspace(documentPoint);
}

void CanvasView::hoverOverWorkspace(QPointF documentPoint) {
    setHoveredCanvasPoint(
        geometry().unclampedCanvasPointFromWorkspace(documentPoint, currentZoom()));
}

void CanvasView::hoverEnded() {
    setHoveredCanvasPoint(std::nullopt);
}

void CanvasView::setHoveredCanvasPoint(std::optional<CanvasPoint> point) {
    const bool hasMoved = std::exchange(m_hoveredCanvasPoint, point) != point;
    if (hasMoved && selectedTool() == PaintTool::eraser) m_context.repaintOverlays();
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

void CanvasView::textToolEnded(const DragValue& value) {
    m_text.beginTextEditing(geometry().clampedCanvasPoint(value.location, currentZoom()));
}

void CanvasView::pickColor(const DragValue& value) {
    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project->selectedLayer();
    if (layer == nullptr) return;
    const auto color = raster::LayerRasterService::color(
        *layer, project->canvasWidth, project->canvasHeight,
        geometry().clampedCanvasPoint(value.location, currentZoom()));
    if (color) m_context.host.pickPrimaryColor(*color);
}

void CanvasView::drawChanged(const DragValue& value) {
    m_drawing.beginWith(DrawingButton::left);
    m_drawing.rasterizeDrawing(toolPoint(value.location));
}

void CanvasView::drawEnded(const DragValue&) {
    m_drawing.finishRasterDrawing();
}

void CanvasView::eraserWorkspaceChanged(const DragValue& value) {
    updateToolCursorFromWorkspace(value.location);
    m_drawing.rasterizeDrawing(
        geometry().unclampedCanvasPointFromWorkspace(value.location, currentZoom()));
}

void CanvasView::eraserWorkspaceEnded(const DragValue& value) {
    eraserWorkspaceChanged(value);
    m_drawing.finishRasterDrawing();
}

void CanvasView::gradientWorkspaceChanged(const DragValue& value) {
    hoverOverWorkspace(value.location);
    m_drawing.beginWith(DrawingButton::left);
    m_drawing.rasterizeDrawing(
        geometry().unclampedCanvasPointFromWorkspace(value.location, currentZoom()));
}

void CanvasView::gradientWorkspaceEnded(const DragValue& value) {
    gradientWorkspaceChanged(value);
    m_drawing.finishRasterDrawing();
}

void CanvasView::cancelDrawing() {
    if (m_drawing.live().isRunning() && !m_drawing.shape().activeShapeDraft())
        m_drawing.resetRasterDrawing();
}

void CanvasView::disappear() {
    m_text.commitActiveText();
    m_drawing.commitActiveShape();
}

// Selection

void CanvasView::selectionChanged(const DragValue& value) {
    m_selection.updateSelectionGesture(value);
}

void CanvasView::selectionEnded(const DragValue& value) {
    m_selection.finishSelectionGesture(std::hypot(value.translation.x(), value.translation.y()));
}

void CanvasView::selectionWorkspaceChanged(const DragValue& value) {
    hoverOverWorkspace(value.location);
    m_selection.selectionWorkspaceChanged(value);
}

void CanvasView::selectionWorkspaceEnded(const DragValue& value) {
    m_selection.selectionWorkspaceEnded(value);
}

bool CanvasView::canNudgeSelectionWithArrowKeys() const {
    return !hasDraft() && selectionInForce(m_context).has_value();
}

bool CanvasView::commitDraft() {
    if (m_context.pointer.modifiers() != Modifiers{}) return false;
    if (m_drafts.hasText()) {
        m_text.commitActiveText();
    } else if (m_drafts.hasShape()) {
        m_drawing.commitActiveShape();
    } else {
        return false;
    }
    return true;
}

bool CanvasView::handleKey(CanvasKey key) {
    if (key == CanvasKey::escape) return commitDraft();
    static constexpr std::array<std::pair<CanvasKey, QPoint>, 4> directions{{
        {CanvasKey::left, QPoint(-1, 0)},
        {CanvasKey::right, QPoint(1, 0)},
        {CanvasKey::up, QPoint(0, -1)},
        {CanvasKey::down, QPoint(0, 1)},
    }};
    const auto* direction =
        std::ranges::find(directions, key, [](const auto& row) { return row.first; });
    if (direction == directions.end() || !canNudgeSelectionWithArrowKeys()) return false;
    const int step = m_context.pointer.modifiers().command ? farNudge : 1;
    m_selection.nudgeSelection(QSizeF(direction->second.x() * step, direction->second.y() * step));
    return true;
}

void CanvasView::modifiersChanged() {
    const bool isShiftDown = m_context.pointer.modifiers().shift;
    if (std::exchange(m_isShiftDown, isShiftDown) == isShiftDown) return;
    m_drawing.modifiersChanged();
    m_selection.modifiersChanged();
}

// Right button

bool CanvasView::handleRightMouseEvent(const RightMouseEvent& event) {
    if (m_context.host.project() == nullptr || !DrawingGestures::serves(selectedTool()))
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
