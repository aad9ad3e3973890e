// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionNudge.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/SelectionEdit.h"
#include "canvas/SelectionHandle.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"

#include <QCoreApplication>

namespace quillabrae::canvas {
namespace {

namespace engine = raster::LayerRasterService;

/// Lifts the pixels of the selection `from` and sets them down where it has gone. False when there
/// are none on the canvas.
bool nudgePixels(CanvasContext& context, const model::PixelSelection& from,
                 const model::PixelSelection& to) {
    const model::PaintProject& project = *context.host.project();
    const double width = project.canvasWidth;
    const double height = project.canvasHeight;
    if (engine::pixelAlignedRect(rectOf(from), width, height).isEmpty()) return false;
    const raster::RasterImage layer = engine::renderLayer(*project.selectedLayer(), width, height);
    const raster::RasterImage pixels = engine::croppedPixels(layer, width, height, from);
    raster::RasterImage moved = engine::clearedPixels(layer, width, height, from);
    engine::drawImage(moved, pixels, rectOf(to).toRect());
    const model::PngBytes png = raster::encodedImage(moved);
    context.editProject(
        [&](model::PaintProject& edited) { edited.selectedLayer()->bitmapPNGData = png; });
    context.repaintViewport();
    return true;
}

} // namespace

void nudgeSelection(CanvasContext& context, QSizeF delta) {
    const auto selection = selectionInForce(context);
    if (!selection) return;
    const auto nudged = truncatedSelection(
        *selection, rectOf(*selection).translated(delta.width(), delta.height()));
    select(context, nudged);
    if (context.host.settings().selectedTool != model::PaintTool::moveSelectedPixels) {
        return recordEdit(context, QCoreApplication::translate("CanvasHistory", "Move Selection"),
                          QStringLiteral("cursorarrow"));
    }
    const model::PaintProject& project = *context.host.project();
    const model::PaintLayer* layer = project.selectedLayer();
    if (layer == nullptr || !layer->isVisible || layer->isLocked) return;
    if (project.floatingSelection && project.floatingSelection->layerID == layer->id) {
        return context.editProject(
            [&](model::PaintProject& edited) { edited.lastModified = context.host.now(); });
    }
    if (!nudgePixels(context, *selection, nudged)) return;
    recordEdit(context, QCoreApplication::translate("CanvasHistory", "Move Pixels"),
               QStringLiteral("arrow.up.and.down.and.arrow.left.and.right"));
}

} // namespace quillabrae::canvas
