// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/BucketGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/LiveDrawing.h"
#include "raster/LayerRasterServiceRegions.h"

#include <algorithm>

namespace quillabrae::canvas {

bool BucketGesture::fillBucket(model::CanvasPoint point, const model::PaintLayer& layer) {
    if (m_drawing.activeDrawingLayerID() != layer.id) return false;
    const auto color =
        m_drawing.activeDrawingColor().value_or(m_context.host.settings().primaryColor);
    m_paintBucketSeed = PaintBucketSeed{layer.id, point, color, layer.bitmapPNGData};
    model::PaintLayer filled = layer;
    if (!fill(filled, *m_paintBucketSeed)) return false;
    m_drawing.showInstead(filled);
    return true;
}

bool BucketGesture::fill(model::PaintLayer& layer, const PaintBucketSeed& seed) const {
    const model::PaintProject& project = *m_context.host.project();
    return raster::LayerRasterService::fillSimilarPixels(
        layer, project.canvasWidth, project.canvasHeight, seed.point, seed.color,
        m_context.host.settings().paintBucketMatchPercentage);
}

void BucketGesture::refreshPaintBucketFillForMatchChange() {
    const model::PaintProject* project = m_context.host.project();
    if (!m_paintBucketSeed || project == nullptr ||
        m_context.host.settings().selectedTool != model::PaintTool::paintBucket)
        return;
    const auto found =
        std::ranges::find(project->layers, m_paintBucketSeed->layerID, &model::PaintLayer::id);
    if (found == project->layers.end() || !found->isVisible || found->isLocked) return;

    model::PaintLayer filled = *found;
    filled.bitmapPNGData = m_paintBucketSeed->originalBitmapPNGData;
    if (!fill(filled, *m_paintBucketSeed)) return;
    const auto index = static_cast<std::size_t>(found - project->layers.begin());
    m_context.editProject([&](model::PaintProject& edited) {
        edited.layers[index] = filled;
        edited.lastModified = m_context.host.now();
    });
    m_drawing.forgetLiveImage();
    m_context.repaintViewport();
}

} // namespace quillabrae::canvas
