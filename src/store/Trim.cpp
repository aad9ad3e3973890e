// SPDX-License-Identifier: GPL-3.0-or-later
// Crops the canvas to its content.
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "store/Attempt.h"
#include "store/LayerRewriting.h"
#include "store/ProjectStore.h"
#include "store/SelectionState.h"

#include <algorithm>
#include <vector>

namespace quillabrae::store {

namespace LayerRasterService = raster::LayerRasterService;

namespace {

QString progressTitle() {
    return ProjectStore::tr("Trimming image");
}

QRectF canvasOf(const model::PaintProject& project) {
    return {0.0, 0.0, project.canvasWidth, project.canvasHeight};
}

/// The bounds of the layer's pixels of any alpha; null without any.
QRectF contentOf(const model::PaintProject& project, std::size_t layer) {
    const raster::DecodeCacheReadOnly readOnly;
    const raster::RasterImage picture = LayerRasterService::renderLayer(
        project.layers[layer], project.canvasWidth, project.canvasHeight);
    return LayerRasterService::opaquePixelBounds(picture, canvasOf(project)).value_or(QRectF());
}

/// The bounds of all that can be seen on any layer, hidden or not, or floats over the canvas; null
/// without any. Nothing when the user did not wait for it.
std::optional<QRectF> contentOf(const model::PaintProject& project, platform::WorkRunner& work) {
    std::vector<QRectF> contents(project.layers.size());
    try {
        runSteps(work, progressTitle(), contents.size(),
                 [&](std::size_t layer) { contents[layer] = contentOf(project, layer); });
    } catch (const platform::WorkCancelled&) {
        return std::nullopt;
    }
    QRectF united = floatingSelectionBounds(project).value_or(QRectF());
    for (const QRectF& content : contents) united |= content;
    return united & canvasOf(project);
}

} // namespace

void ProjectStore::trimTransparentWhitespace() {
    return Attempt::run(*this, tr("Trim"), [&]() {
        if (!hasActiveProject()) return;
        const model::PaintProject before = *activeProject();
        const auto content = contentOf(before, m_environment.work);
        if (!content) return setStatusMessage(tr("Trim cancelled"));
        if (content->isEmpty()) return setStatusMessage(tr("No non-transparent pixels to trim"));
        const QSizeF size = content->size().expandedTo({1.0, 1.0});
        if (content->topLeft().isNull() && size == canvasOf(before).size())
            return setStatusMessage(tr("No transparent whitespace to trim"));

        model::PaintProject trimmed = before;
        putDownFloatingSelection(trimmed);
        const QSizeF canvas = canvasOf(before).size();
        const model::PixelSelection kept{content->x(), content->y(), size.width(), size.height(),
                                         std::nullopt};
        model::PaintProject* project =
            rewriteCanvas({tr("Trim"), progressTitle(), size, before.resolutionDPI,
                           [canvas, kept](const raster::RasterImage& picture) {
                               return LayerRasterService::croppedPixels(picture, canvas.width(),
                                                                        canvas.height(), kept);
                           }},
                          before, trimmed);
        if (!project) return;
        const QUuid id = finishEdit(*project);
        recordHistory(id, tr("Trim Whitespace"), QStringLiteral("crop"));
        setStatusMessage(tr("Trimmed image to %1").arg(sizeText(size)));
    });
}

} // namespace quillabrae::store
