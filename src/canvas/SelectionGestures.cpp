// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionGestures.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionNudge.h"
#include "canvas/ZoomController.h"

#include <cmath>
#include <limits>
#include <utility>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

SelectionGestures::SelectionGestures(CanvasContext& context, const ZoomController& zoom,
                                     std::function<void(QPointF)> pointerMoved)
    : m_context(context),
      m_zoom(zoom),
      m_region(context),
      m_wand(context),
      m_outline(context, zoom),
      m_pixels(context, zoom),
      m_autoPan(context, {[this] { return m_region.isRunning(); },
                          [this, moved = std::move(pointerMoved)](QPointF documentPoint) {
                              moved(documentPoint);
                              m_region.updateSelectionCreation(
                                  m_context.geometry().unclampedCanvasPointFromWorkspace(
                                      documentPoint, m_zoom.currentZoom()));
                          }}) {}

void SelectionGestures::updateSelectionGesture(const DragValue& value) {
    const CanvasGeometry geometry = m_context.geometry();
    const double zoom = m_zoom.currentZoom();
    const CanvasPoint point = geometry.clampedCanvasPoint(value.location, zoom);
    const PaintTool tool = m_context.host.settings().selectedTool;
    if (tool == PaintTool::magicWand) return m_wand.selectMagicWandArea(point);
    if (m_region.isRunning()) return m_region.updateSelectionCreation(point);
    if (tool == PaintTool::moveSelectedPixels) {
        if (!selectionInForce(m_context) && geometry.isCanvasLocation(value.startLocation, zoom))
            selectFullCanvasForMove();
        return m_pixels.transformSelectedPixels(value);
    }
    if (tool == PaintTool::moveSelection) return m_outline.transformSelectionOutline(value);
    if (model::createsSelectionRegion(tool))
        createRegion(geometry.clampedCanvasPoint(value.startLocation, zoom), point);
}

void SelectionGestures::finishSelectionGesture(double dragDistance) {
    if (m_region.isRunning()) return m_region.finishSelectionCreation(dragDistance);
    if (m_context.host.settings().selectedTool == PaintTool::magicWand && m_wand.finish()) return;
    m_outline.finish();
    m_pixels.finish();
}

void SelectionGestures::createRegion(CanvasPoint start, CanvasPoint now) {
    m_wand.forgetSeed();
    if (!m_region.isRunning()) {
        m_outline.reset();
        m_pixels.reset();
        m_region.beginSelectionCreation(start);
    }
    m_region.updateSelectionCreation(now);
}

void SelectionGestures::selectionWorkspaceChanged(const DragValue& value) {
    const CanvasGeometry geometry = m_context.geometry();
    const double zoom = m_zoom.currentZoom();
    createRegion(geometry.unclampedCanvasPointFromWorkspace(value.startLocation, zoom),
                 geometry.unclampedCanvasPointFromWorkspace(value.location, zoom));
    m_autoPan.updateSelectionAutoPan(value.location);
}

void SelectionGestures::selectionWorkspaceEnded(const DragValue& value) {
    m_autoPan.stopSelectionAutoPan();
    finishSelectionGesture(std::hypot(value.translation.x(), value.translation.y()));
}

void SelectionGestures::selectFullCanvasForMove() {
    m_pixels.reset();
    m_wand.forgetSeed();
    const model::PaintProject& project = *m_context.host.project();
    select(m_context, model::PixelSelection{0.0, 0.0, project.canvasWidth, project.canvasHeight,
                                            std::nullopt});
}

void SelectionGestures::nudgeSelection(QSizeF delta) {
    quillabrae::canvas::nudgeSelection(m_context, delta);
}

void SelectionGestures::modifiersChanged() {
    if (!model::usesSelectionGesture(m_context.host.settings().selectedTool)) return;
    if (m_region.isRunning()) return m_region.refresh();
    m_outline.refresh();
    m_pixels.refresh();
}

void SelectionGestures::finishRegion() {
    if (m_region.isRunning())
        m_region.finishSelectionCreation(std::numeric_limits<double>::infinity());
}

void SelectionGestures::finishAsItStands() {
    m_autoPan.stopSelectionAutoPan();
    finishRegion();
    m_wand.finish();
    m_outline.finish();
    m_pixels.finish();
}

void SelectionGestures::toolChanged(PaintTool tool) {
    m_autoPan.stopSelectionAutoPan();
    if (!model::usesSelectionGesture(tool)) finishRegion();
    if (tool != PaintTool::magicWand) m_wand.finish();
    if (tool != PaintTool::moveSelection) m_outline.finish();
    if (tool != PaintTool::moveSelectedPixels) m_pixels.finish();
}

void SelectionGestures::projectChanged() {
    m_region.giveUpIfStale();
    m_outline.giveUpIfStale();
    m_pixels.giveUpIfStale();
}

void SelectionGestures::cancel() {
    m_autoPan.stopSelectionAutoPan();
    m_region.cancel();
    m_outline.reset();
    m_pixels.reset();
}

void SelectionGestures::reset() {
    cancel();
    m_wand.forgetSeed();
}

} // namespace quillabrae::canvas
