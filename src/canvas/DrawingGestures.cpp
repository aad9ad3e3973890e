// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DrawingGestures.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/FloatingSelection.h"
#include "canvas/PointerState.h"

namespace quillabrae::canvas {

using model::PaintTool;

namespace {

/// Whether a gesture that one of the tools has begun can go on as the other's.
bool drawsAlike(PaintTool a, PaintTool b) {
    return (model::drawsContinuousStroke(a) && model::drawsContinuousStroke(b)) ||
           (model::drawsFromEndpoints(a) && model::drawsFromEndpoints(b));
}

} // namespace

DrawingGestures::DrawingGestures(CanvasContext& context)
    : m_context(context),
      m_live(context),
      m_stroke(m_live),
      m_endpoints(context, m_live),
      m_bucket(context, m_live),
      m_shape(context, m_live) {}

bool DrawingGestures::serves(PaintTool tool) {
    return model::drawsContinuousStroke(tool) || model::drawsFromEndpoints(tool) ||
           tool == PaintTool::paintBucket;
}

void DrawingGestures::beginWith(DrawingButton button) {
    m_live.setButton(button);
    if (button == DrawingButton::left && m_live.activeDrawingColor()) return;
    const model::PaintAppSettings& settings = m_context.host.settings();
    m_live.setActiveDrawingColor(button == DrawingButton::left ? settings.primaryColor
                                                               : settings.secondaryColor);
}

void DrawingGestures::rasterizeDrawing(model::CanvasPoint point) {
    const PaintTool tool = m_context.host.settings().selectedTool;
    if (tool == PaintTool::shapes) commitActiveShape();
    commitFloatingSelectionIfNeeded(m_context);
    giveUpStaleGesture();
    if (tool != PaintTool::paintBucket) m_bucket.forgetSeed();

    const model::PaintProject* project = m_context.host.project();
    const model::PaintLayer* layer = project == nullptr ? nullptr : project->selectedLayer();
    if (layer == nullptr || !layer->isVisible || layer->isLocked) return resetRasterDrawing();
    if (!m_live.isRunning()) m_live.begin(*layer);
    if (m_live.activeDrawingLayerID() != layer->id) return;

    if (tool == PaintTool::paintBucket) {
        if (!m_live.didRasterizeDrawing() && !m_bucket.fillBucket(point, *layer))
            resetRasterDrawing();
    } else if (model::drawsFromEndpoints(tool)) {
        m_endpoints.addSample(point);
    } else if (model::drawsContinuousStroke(tool)) {
        m_stroke.addSample(point);
    }
}

void DrawingGestures::finishRasterDrawing() {
    finishRasterDrawing(m_context.host.settings().selectedTool);
}

void DrawingGestures::finishRasterDrawing(PaintTool tool) {
    if (tool == PaintTool::shapes) return finishShapeDrawing();
    m_live.finishRasterDrawing(tool);
    resetRasterDrawing();
}

void DrawingGestures::finishShapeDrawing() {
    const model::PaintProject* project = m_context.host.project();
    const auto& start = m_endpoints.drawingStartPoint();
    const auto& current = m_endpoints.currentDrawingPoint();
    if (project == nullptr || !start || !current || !m_live.isRunning())
        return resetRasterDrawing();
    const model::CanvasPoint end =
        endpointDrawingPoint(PaintTool::shapes, *start, *current, m_context.pointer.modifiers(),
                             QSizeF(project->canvasWidth, project->canvasHeight));
    if (!m_shape.begin(*start, end)) return resetRasterDrawing();
    m_stroke.reset();
    m_endpoints.reset();
}

void DrawingGestures::commitActiveShape() {
    if (!m_shape.activeShapeDraft()) return;
    m_shape.write();
    resetRasterDrawing();
}

void DrawingGestures::resetRasterDrawing() {
    m_shape.reset();
    m_live.resetRasterDrawing();
    m_stroke.reset();
    m_endpoints.reset();
}

void DrawingGestures::finishAsItStands(PaintTool tool) {
    if (isDrawing()) finishRasterDrawing(tool);
}

bool DrawingGestures::toolChanged(PaintTool tool, PaintTool former) {
    const bool ends = isDrawing() && !drawsAlike(tool, former);
    // Its release would come to another tool, and what it drew would go on covering the layer.
    if (ends) finishRasterDrawing(former);
    if (tool != PaintTool::paintBucket) m_bucket.forgetSeed();
    if (tool != PaintTool::shapes) commitActiveShape();
    return ends;
}

void DrawingGestures::projectChanged() {
    if (m_shape.activeShapeDraft())
        m_shape.projectChanged();
    else
        giveUpStaleGesture();
}

/// What it would write in the end is from before the change, which would be lost.
void DrawingGestures::giveUpStaleGesture() {
    if (isDrawing() && m_live.isStale()) resetRasterDrawing();
}

} // namespace quillabrae::canvas
