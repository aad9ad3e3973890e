// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "model/PaintLayer.h"

namespace quillabrae::raster::LayerRasterService {

/// Makes one colour of the whole layer transparent and takes it out of the colours that it was
/// mixed into. `tolerancePercentage` is held to 0 to 20 and is a plain multiplier: the higher, the
/// narrower the removal; at 0 everything goes. `transparentAlphaThresholdPercentage` is held to 0
/// to 255, the alpha up to which a pixel becomes fully transparent. The colour's alpha plays no
/// part. True when a pixel was written, even to what it was.
bool removeColor(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                 const model::ColorValue& targetColor, double tolerancePercentage,
                 double transparentAlphaThresholdPercentage);

} // namespace quillabrae::raster::LayerRasterService
