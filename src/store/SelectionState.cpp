// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/SelectionState.h"

#include "model/WholePixelRect.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/ProjectLayers.h"

#include <algorithm>

namespace quillabrae::store {
namespace {

/// Where the floating pixels stand: the outline's rectangle, or their own size at the origin.
QRectF placementRect(const model::PaintProject& project) {
    if (project.pixelSelection) return rectOf(*project.pixelSelection);
    return {0.0, 0.0, project.floatingSelection->width, project.floatingSelection->height};
}

/// The pixels that they stand on.
QRect placedPixels(const model::PaintProject& project) {
    const QRectF rect = model::wholePixelRect(placementRect(project));
    const auto bounded = [](double value) {
        return static_cast<int>(std::clamp(value, -1e9, 1e9));
    };
    return {bounded(rect.x()), bounded(rect.y()), bounded(rect.width()), bounded(rect.height())};
}

} // namespace

QRectF rectOf(const model::PixelSelection& selection) {
    return {selection.x, selection.y, selection.width, selection.height};
}

std::optional<model::PixelSelection> activeSelection(const model::PaintProject& project) {
    if (project.pixelSelection) return project.pixelSelection;
    if (const auto& floating = project.floatingSelection)
        return model::PixelSelection{0.0, 0.0, floating->width, floating->height, std::nullopt};
    if (project.isCanvasSelected)
        return model::PixelSelection{0.0, 0.0, project.canvasWidth, project.canvasHeight,
                                     std::nullopt};
    return std::nullopt;
}

std::optional<QRectF> floatingSelectionBounds(const model::PaintProject& project) {
    if (!project.floatingSelection) return std::nullopt;
    const QRectF placement = placementRect(project).normalized();
    const raster::RasterImage pixels = raster::decodedImage(project.floatingSelection->pngData);
    if (pixels.isNull()) return std::nullopt;
    const raster::RasterImage placed =
        raster::LayerRasterService::resizedCopy(pixels, placement.width(), placement.height());
    const auto bounds = raster::LayerRasterService::opaquePixelBounds(
        placed, QRectF(0.0, 0.0, placed.width(), placed.height()));
    if (!bounds) return std::nullopt;
    const QRectF canvas(0.0, 0.0, project.canvasWidth, project.canvasHeight);
    const QRectF covered = bounds->translated(placement.topLeft()) & canvas;
    return covered.isEmpty() ? std::nullopt : std::optional(covered);
}

bool putDownFloatingSelection(model::PaintProject& project) {
    if (!project.floatingSelection) return false;
    const auto index = layerIndex(project, project.floatingSelection->layerID);
    if (!index) return false;
    const raster::RasterImage pixels = raster::decodedImage(project.floatingSelection->pngData);
    if (pixels.isNull()) return false;
    model::PaintLayer& layer = project.layers[*index];
    raster::RasterImage image =
        raster::LayerRasterService::renderLayer(layer, project.canvasWidth, project.canvasHeight);
    if (image.isNull()) return false;
    raster::LayerRasterService::drawImage(image, pixels, placedPixels(project));
    layer.bitmapPNGData = raster::LayerRasterService::pngData(image);
    clearSelection(project);
    return true;
}

void clearSelection(model::PaintProject& project) {
    project.isCanvasSelected = false;
    project.pixelSelection.reset();
    project.floatingSelection.reset();
}

} // namespace quillabrae::store
