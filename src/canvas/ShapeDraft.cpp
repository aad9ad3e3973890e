// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/ShapeDraft.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/LiveDrawing.h"
#include "canvas/PointerState.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

/// A box with a shorter side makes no shape.
constexpr double leastSide = 1.0;

void applySettings(CanvasShapeDraft& draft, const model::PaintAppSettings& settings) {
    draft.shape = settings.selectedShape;
    draft.drawingMode = settings.shapeDrawingMode;
    draft.outlineWidth = settings.shapeOutlineWidth;
    draft.outlineColor = draft.usesSwappedColors ? settings.secondaryColor : settings.primaryColor;
    draft.fillColor = draft.usesSwappedColors ? settings.primaryColor : settings.secondaryColor;
}

model::PaintStroke strokeOf(const CanvasShapeDraft& draft) {
    model::PaintStroke stroke;
    stroke.id = QUuid::createUuid();
    stroke.tool = model::PaintTool::shapes;
    stroke.color = draft.outlineColor;
    stroke.secondaryColor = draft.fillColor;
    stroke.lineWidth = draft.outlineWidth;
    stroke.points = {{draft.rect.left(), draft.rect.top()},
                     {draft.rect.right(), draft.rect.bottom()}};
    stroke.shape = draft.shape;
    stroke.shapeDrawingMode = draft.drawingMode;
    return stroke;
}

QSizeF canvasSize(const model::PaintProject& project) {
    return {project.canvasWidth, project.canvasHeight};
}

} // namespace

QRectF clampedShapeDraftRect(const QRectF& rect, QSizeF canvas) {
    const QRectF standard = rect.normalized();
    const double left =
        std::min(std::max(canvas.width() - 1.0, 0.0), std::max(standard.left(), 0.0));
    const double top =
        std::min(std::max(canvas.height() - 1.0, 0.0), std::max(standard.top(), 0.0));
    const double right = std::min(std::max(left + 1.0, standard.right()), canvas.width());
    const double bottom = std::min(std::max(top + 1.0, standard.bottom()), canvas.height());
    return {left, top, right - left, bottom - top};
}

bool ShapeDraft::begin(model::CanvasPoint from, model::CanvasPoint to) {
    const model::PaintProject* project = m_context.host.project();
    if (project == nullptr || !m_drawing.isRunning()) return false;
    const QRectF box(std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x),
                     std::abs(to.y - from.y));
    if (box.width() < leastSide || box.height() < leastSide) return false;
    CanvasShapeDraft draft;
    draft.id = QUuid::createUuid();
    draft.rect = clampedShapeDraftRect(box, canvasSize(*project));
    draft.layerID = *m_drawing.activeDrawingLayerID();
    draft.usesSwappedColors = m_drawing.button() == DrawingButton::right;
    applySettings(draft, m_context.host.settings());
    m_activeShapeDraft = draft;
    m_drawing.keepAsDraft();
    renderActiveShapeDraft();
    m_context.repaintOverlays();
    return true;
}

void ShapeDraft::renderActiveShapeDraft() {
    if (!m_activeShapeDraft || m_drawing.activeDrawingLayerID() != m_activeShapeDraft->layerID)
        return;
    m_drawing.drawInstead(strokeOf(*m_activeShapeDraft));
}

void ShapeDraft::refreshActiveShapeStyle() {
    if (!m_activeShapeDraft) return;
    applySettings(*m_activeShapeDraft, m_context.host.settings());
    renderActiveShapeDraft();
}

void ShapeDraft::projectChanged() {
    if (!m_activeShapeDraft || !m_drawing.isStale()) return;
    const model::PaintProject* project = m_context.host.project();
    if (project == nullptr) return;
    const auto layer =
        std::ranges::find(project->layers, m_activeShapeDraft->layerID, &model::PaintLayer::id);
    // The layer may come back: by undo, or with its tab.
    if (layer == project->layers.end()) return;
    m_drawing.begin(*layer);
    m_activeShapeDraft->rect =
        clampedShapeDraftRect(m_activeShapeDraft->rect, canvasSize(*project));
    m_shapeResizeStartRect.reset();
    renderActiveShapeDraft();
    m_context.repaintOverlays();
}

void ShapeDraft::resize(SelectionHandle handle, QPointF translation) {
    const model::PaintProject* project = m_context.host.project();
    if (!m_activeShapeDraft || project == nullptr) return;
    if (!m_shapeResizeStartRect) m_shapeResizeStartRect = m_activeShapeDraft->rect;
    const AspectRatio aspectRatio =
        m_context.pointer.modifiers().shift ? AspectRatio::kept : AspectRatio::free;
    m_activeShapeDraft->rect = clampedShapeDraftRect(
        resizedRect(*m_shapeResizeStartRect, handle, translation, aspectRatio),
        canvasSize(*project));
    renderActiveShapeDraft();
    m_context.repaintOverlays();
}

void ShapeDraft::write() {
    if (!m_activeShapeDraft) return;
    renderActiveShapeDraft();
    m_drawing.writeDraft(QCoreApplication::translate("CanvasHistory", "Shapes"),
                         QStringLiteral("square.on.circle"));
}

void ShapeDraft::reset() {
    m_shapeResizeStartRect.reset();
    if (!m_activeShapeDraft) return;
    m_activeShapeDraft.reset();
    m_context.repaintOverlays();
}

} // namespace quillabrae::canvas
