// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterServiceColorRemoval.h"

#include "raster/ColorRemoval.h"
#include "raster/LayerRewrite.h"

namespace quillabrae::raster::LayerRasterService {

bool removeColor(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                 const model::ColorValue& targetColor, double tolerancePercentage,
                 double transparentAlphaThresholdPercentage) {
    const LayerRewrite rewrite(layer, canvasWidth, canvasHeight);
    if (rewrite.image().isNull()) return false;
    const RasterImage image = imageWithColorRemoved(
        rewrite.image(),
        ColorRemoval::of(targetColor, tolerancePercentage, transparentAlphaThresholdPercentage));
    if (image.isNull()) return false;
    rewrite.store(image, QRect(0, 0, image.width(), image.height()));
    return true;
}

} // namespace quillabrae::raster::LayerRasterService
