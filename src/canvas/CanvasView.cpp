// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasView.h"

#include "canvas/CanvasHost.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionHandle.h"

#include <cmath>
#include <tuple>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

namespace {

/// How far outside the document, in screen points, a pinch still counts as the canvas's.
constexpr double magnifyMargin = 80.0;

} // namespace

CanvasView::CanvasView(CanvasHost& host, CanvasTimers& timers, const PointerState& pointer)
    : m_modifiers(pointer),
      m_context(host, timers, m_modifiers),
      m_zoom(m_context),
      m_pan(m_context),
      m_cursor(m_context, m_zoom),
      m_drawing(m_context),
      m_text(m_context),
      m_drafts(m_context, m_zoom, m_drawing.shape(), m_text),
      m_selection(m_context, m_zoom,
                  [this](QPointF documentPoint) { m_cursor.hoverOverWorkspace(documentPoint); }),
      m_drags(m_context, {m_zoom, m_pan, m_cursor, m_drawing, m_text, m_selection}),
      m_rightMouse(m_context, m_zoom, m_drawing),
      m_keyboard(m_context, m_zoom, m_cursor,
                 {[this](QPointF location) { keyboardWillPress(location); },
                  [this](const DragValue& value) { dragByKeyboard(value); },
                  [this](const DragValue& value) { dragByKeyboardEnded(value); },
                  [this](const DragValue& value) { dragByKeyboardCancelled(value); }}),
      m_keys(m_context, pointer, {m_drawing, m_text, m_drafts, m_selection, m_keyboard}),
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
    if (m_context.isEditing()) return;
    m_keyboard.projectChangedElsewhere();
    m_text.projectChanged();
    const bool wasDrawing = m_drawing.live().isRunning();
    m_drawing.projectChanged();
    if (wasDrawing && !m_drawing.live().isRunning()) m_rightMouse.forgetButton();
    m_selection.projectChanged();
    m_context.repaintViewport();
}

void CanvasView::activeProjectChanged() {
    m_keyboard.projectChangedElsewhere();
    m_keyboard.cancel();
    m_keyboard.leave();
    cancelDrawing();
    m_text.projectChanged();
    m_drawing.projectChanged();
    m_selection.reset();
    updateLayout();
    m_zoom.centerCanvasInViewport();
    m_context.repaintViewport();
}

void CanvasView::settingsChanged() {
    attempt([this] { applySettings(); });
}

void CanvasView::applySettings() {
    m_zoom.zoomScaleChanged();
    const model::PaintAppSettings& settings = m_context.host.settings();
    const model::PaintAppSettings before = std::exchange(m_settings, settings);
    if (before.showsPixelGrid != settings.showsPixelGrid) m_context.repaintViewport();
    if (before.selectedTool != settings.selectedTool) toolChanged(before.selectedTool);
    if (before.brushSize != settings.brushSize) m_context.repaintOverlays();
    draftStyleChanged(before);
    if (before.paintBucketMatchPercentage != settings.paintBucketMatchPercentage)
        m_drawing.bucketMatchChanged();
    if (before.magicWandMatchPercentage != settings.magicWandMatchPercentage)
        m_selection.wandMatchChanged();
}

void CanvasView::toolChanged(PaintTool former) {
    if (const auto last = m_keyboard.letGo()) finishKeyboardDrag(*last, former);
    m_drags.toolChanged(former);
    m_selection.toolChanged(selectedTool());
    if (selectedTool() != PaintTool::text) m_text.commitActiveText();
    if (m_drawing.toolChanged(selectedTool(), former)) m_rightMouse.forgetButton();
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
        state.eraserCenter = m_cursor.hoveredCanvasPoint();
        state.eraserDiameter = m_context.host.settings().brushSize;
    }
    state.keyboardPixel = m_keyboard.pixel();
    state.isKeyboardPressed = m_keyboard.isPressed();
    return state;
}

// Input

Surface CanvasView::surfaceAt(QPointF documentPoint) const {
    return geometry().surfaceAt(documentPoint, currentZoom());
}

QPointF CanvasView::localPoint(Surface surface, QPointF documentPoint) const {
    return geometry().localPoint(surface, documentPoint, currentZoom());
}

GrabTarget CanvasView::grabTargetAt(QPointF documentPoint) const {
    GrabTarget target;
    if (!hasProject() || surfaceAt(documentPoint) == Surface::workspace) return target;
    const QPointF location = localPoint(Surface::interactiveView, documentPoint);
    target.draftHandle = m_drafts.handleAt(location);
    if (target.draftHandle != nullptr) return target;
    target.isText = m_drafts.isInText(location);
    const PaintTool tool = selectedTool();
    const auto selection = selectionInForce(m_context);
    const bool takesHandles =
        tool == PaintTool::moveSelection || tool == PaintTool::moveSelectedPixels;
    if (target.isText || !takesHandles || !selection) return target;
    const double zoom = currentZoom();
    const QRectF rect = rectOf(*selection);
    const QRectF shown(geometry().interactiveViewPoint({rect.x(), rect.y()}, zoom),
                       rect.size() * zoom);
    if (const auto mode = selectionDragMode(location, shown)) target.selectionHandle = mode->handle;
    return target;
}

void CanvasView::hover(QPointF documentPoint) {
    if (m_keyboard.isPressed()) return;
    m_keyboard.leave();
    m_cursor.hover(documentPoint);
}

void CanvasView::hoverEnded() {
    if (!m_keyboard.isShown()) m_cursor.hoverEnded();
}

void CanvasView::dragChanged(Surface surface, const DragValue& value) {
    if (m_context.host.project() == nullptr) return;
    m_keyboard.leave();
    if (m_isDragGivenUp) return;
    m_isDragGivenUp = !attempt([&] {
        if (surface == Surface::interactiveView && m_drafts.dragChanged(value)) return;
        m_drags.dragChanged(surface, value);
    });
}

void CanvasView::dragEnded(Surface surface, const DragValue& value) {
    if (std::exchange(m_isDragGivenUp, false) || m_context.host.project() == nullptr) return;
    attempt([&] {
        if (surface == Surface::interactiveView && m_drafts.dragEnded(value)) return;
        m_drags.dragEnded(surface, value);
    });
}

bool CanvasView::handleRightMouseEvent(const RightMouseEvent& event) {
    m_keyboard.leave();
    bool isTaken = true;
    attempt([&] { isTaken = m_rightMouse.handleRightMouseEvent(event); });
    return isTaken;
}

bool CanvasView::handleKey(CanvasKey key) {
    bool isTaken = true;
    attempt([&] { isTaken = m_keys.handleKey(key); });
    return isTaken;
}

bool CanvasView::draftDoubleClick(QPointF location) {
    bool isTaken = true;
    attempt([&] { isTaken = m_drafts.doubleClick(location); });
    return isTaken;
}

bool CanvasView::attempt(const std::function<void()>& gesture) {
    if (m_context.host.attempt(model::title(selectedTool()), gesture)) return true;
    // The project is what it was; what the gesture had begun beside it goes as well.
    m_drags.dragCancelled();
    m_pan.finish();
    m_selection.cancel();
    m_rightMouse.forgetButton();
    cancelDrawing();
    m_context.repaintViewport();
    return false;
}

void CanvasView::keyboardWillPress(QPointF location) {
    // A new shape ends the draft there is, which no cancelling takes back.
    if (m_drafts.handleAt(location) == nullptr && !m_drafts.isInText(location))
        m_drawing.commitActiveShape();
}

void CanvasView::dragByKeyboard(const DragValue& value) {
    if (!m_drafts.dragChanged(value)) m_drags.dragChanged(Surface::interactiveView, value);
    m_modifiers.isKeyboardDrawing = true;
}

void CanvasView::dragByKeyboardEnded(const DragValue& value) {
    if (!m_drafts.dragEnded(value)) m_drags.dragEnded(Surface::interactiveView, value);
    m_modifiers.isKeyboardDrawing = false;
}

void CanvasView::dragByKeyboardCancelled(const DragValue& value) {
    m_modifiers.isKeyboardDrawing = false;
    // A handle goes back to where it was.
    if (m_drafts.dragEnded(value)) return;
    m_drags.dragCancelled();
    m_pan.finish();
    m_selection.cancel();
    cancelDrawing();
}

void CanvasView::finishKeyboardDrag(const DragValue& last, PaintTool tool) {
    m_modifiers.isKeyboardDrawing = false;
    if (m_drafts.dragEnded(last)) return;
    m_drags.dragCancelled();
    m_pan.finish();
    m_selection.finishAsItStands();
    m_drawing.finishAsItStands(tool);
}

void CanvasView::scrollBy(QPointF distance) {
    Scroller* scroller = m_context.scroller;
    if (scroller == nullptr) return;
    const QRectF clip = scroller->clipBounds();
    scroller->setClipBoundsOrigin(
        limitedScrollOrigin(clip.topLeft() + distance, scroller->documentSize(), clip.size()));
    m_context.repaintViewport();
}

void CanvasView::cancelDrawing() {
    if (m_drawing.live().isRunning() && !m_drawing.shape().activeShapeDraft())
        m_drawing.resetRasterDrawing();
}

void CanvasView::disappear() {
    m_keyboard.leave();
    attempt([this] {
        m_text.commitActiveText();
        m_drawing.commitActiveShape();
    });
}

void CanvasView::modifiersChanged() {
    const Modifiers now = m_context.pointer.modifiers();
    const Modifiers before = std::exchange(m_reportedModifiers, now);
    if (now.option && !before.option) m_selection.optionPressed();
    if (now.shift == before.shift) return;
    m_drawing.modifiersChanged();
    m_selection.modifiersChanged();
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
