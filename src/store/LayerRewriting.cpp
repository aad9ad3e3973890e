// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/LayerRewriting.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/Parallel.h"
#include "raster/SurfaceSize.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>
#include <vector>

namespace quillabrae::store {
namespace {

using Pixels = std::optional<model::PngBytes>;

/// The layer's picture before; it is looked at once and belongs to undo from now on.
raster::RasterImage formerPicture(const model::PaintProject& project, std::size_t index) {
    const raster::DecodeCacheReadOnly readOnly;
    return raster::LayerRasterService::renderLayer(project.layers[index], project.canvasWidth,
                                                   project.canvasHeight);
}

/// Whether the pictures of all layers are worth remembering: there is room for them beside others.
bool areRemembered(QSize size, std::size_t layerCount) {
    const auto bytes = static_cast<std::size_t>(size.width()) *
                       static_cast<std::size_t>(size.height()) * 4 * layerCount;
    return bytes <= raster::decodeCacheBudget() / 2;
}

Pixels encoded(const raster::RasterImage& picture, bool isRemembered) {
    if (isRemembered) return raster::LayerRasterService::pngData(picture);
    const raster::DecodeCacheReadOnly readOnly;
    return raster::LayerRasterService::pngData(picture);
}

} // namespace

QString sizeText(QSizeF size) {
    return QCoreApplication::translate("Size", "%1 x %2")
        .arg(static_cast<int>(size.width()))
        .arg(static_cast<int>(size.height()));
}

void runSteps(platform::WorkRunner& work, const QString& title, std::size_t count,
              const std::function<void(std::size_t)>& step) {
    work.run(title, [&](platform::WorkControl& control) {
        std::atomic<std::size_t> made = 0;
        raster::parallelFor(static_cast<int>(count), [&](int index) {
            control.stopIfCancelled();
            step(static_cast<std::size_t>(index));
            control.setFraction(static_cast<double>(++made) / static_cast<double>(count));
        });
    });
}

RewriteOutcome rewriteLayers(model::PaintProject& project, const CanvasRewrite& rewrite,
                             platform::WorkRunner& work) {
    const auto size = raster::surfaceSize(rewrite.size.width(), rewrite.size.height());
    if (!size) return RewriteOutcome::failed;
    const std::size_t count = project.layers.size();
    const bool isRemembered = areRemembered(*size, count);
    std::vector<Pixels> pixels(count);
    try {
        runSteps(work, rewrite.progressTitle, count, [&](std::size_t layer) {
            pixels[layer] = encoded(rewrite.rewritten(formerPicture(project, layer)), isRemembered);
        });
    } catch (const platform::WorkCancelled&) {
        return RewriteOutcome::cancelled;
    }
    if (std::ranges::any_of(pixels, [](const Pixels& layer) { return !layer; }))
        return RewriteOutcome::failed;
    for (std::size_t i = 0; i < count; ++i) project.layers[i].bitmapPNGData = std::move(pixels[i]);
    return RewriteOutcome::done;
}

} // namespace quillabrae::store
