// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/FloatingSelection.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

/// Where the floating pixels stand: the selection's rectangle, truncated to whole pixels.
QRect floatingTargetRect(const model::PaintProject& project) {
    const auto selection = currentSelection(project);
    const QRectF rect =
        QRectF(selection->x, selection->y, selection->width, selection->height).normalized();
    const auto whole = [](double value) {
        return static_cast<int>(std::clamp(std::trunc(value), -1e9, 1e9));
    };
    return {whole(rect.x()), whole(rect.y()), std::max(whole(rect.width()), 1),
            std::max(whole(rect.height()), 1)};
}

} // namespace

void commitFloatingSelectionIfNeeded(CanvasContext& context) {
    const model::PaintProject* project = context.host.project();
    if (project == nullptr || !project->floatingSelection) return;
    const model::FloatingPixelSelection& floating = *project->floatingSelection;
    const auto layer = std::ranges::find(project->layers, floating.layerID, &model::PaintLayer::id);
    if (layer == project->layers.end()) return;
    const raster::RasterImage pixels = raster::decodedImage(floating.pngData);
    if (pixels.isNull()) return;

    const QRect target = floatingTargetRect(*project);
    raster::RasterImage image = raster::LayerRasterService::renderLayer(
        *layer, project->canvasWidth, project->canvasHeight);
    raster::LayerRasterService::drawImage(image, pixels, target);
    const auto png = raster::LayerRasterService::pngData(image);
    const auto index = static_cast<std::size_t>(layer - project->layers.begin());
    context.editProject([&](model::PaintProject& edited) {
        edited.layers[index].bitmapPNGData = png;
        edited.floatingSelection.reset();
        edited.isCanvasSelected = false;
        edited.pixelSelection.reset();
        edited.lastModified = context.host.now();
    });
    context.repaintViewport();
}

} // namespace quillabrae::canvas
