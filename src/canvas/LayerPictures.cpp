// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/LayerPictures.h"

#include "raster/BlendKernels.h"
#include "raster/DecodeCache.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// Where floating pixels stand: whole canvas pixels, as they are put down.
QRectF floatingTarget(const model::PixelSelection& selection) {
    const QRectF rect =
        QRectF(selection.x, selection.y, selection.width, selection.height).normalized();
    return {std::trunc(rect.x()), std::trunc(rect.y()), std::max(std::trunc(rect.width()), 1.0),
            std::max(std::trunc(rect.height()), 1.0)};
}

} // namespace

LayerPictures::LayerPictures(const model::PaintProject& project,
                             std::span<const model::PaintLayer> layers, CoverageCache& coverage)
    : m_coverage(coverage) {
    const QRectF canvas(0.0, 0.0, project.canvasWidth, project.canvasHeight);
    const auto& floating = project.floatingSelection;
    for (const model::PaintLayer& layer : layers) {
        const std::uint8_t fraction = raster::unitByte(layer.opacity);
        if (!layer.isVisible || fraction == 0) continue;
        if (layer.bitmapPNGData) m_sources.push_back({*layer.bitmapPNGData, canvas, fraction});
        if (floating && floating->layerID == layer.id && project.pixelSelection)
            m_sources.push_back(
                {floating->pngData, floatingTarget(*project.pixelSelection), fraction});
    }
}

std::vector<CanvasPicture> LayerPictures::nextGroup() {
    std::vector<CanvasPicture> group;
    const std::size_t budget = groupBudget();
    std::size_t held = 0;
    while (!isAtEnd() && (group.empty() || held < budget)) {
        const Source& source = m_sources[m_next++];
        raster::RasterImage image = raster::decodedImage(source.bytes);
        if (image.isNull()) continue;
        held += image.byteCount();
        auto known = m_coverage.coverageOf(source.bytes, image);
        group.push_back({std::move(image), source.target, source.fraction, std::move(known)});
    }
    return group;
}

std::size_t LayerPictures::groupBudget() {
    return raster::decodeCacheBudget() / 2;
}

} // namespace quillabrae::canvas
