// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintLayer.h"
#include "model/PixelSelection.h"

#include <optional>

/// Regions of similar colour, and the colour of one pixel. All look at the layer's own pixels, at
/// full strength whatever its opacity. A point lands on the canvas pixel it lies in, one outside
/// the canvas on the nearest, and a coordinate that is no number on the first.
namespace quillabrae::raster::LayerRasterService {

/// The pixels around `point` that are alike (see SimilarRegion) at a percentage from 0, equal
/// colours, to 100, which is the whole canvas without a mask. Nothing for a canvas that no picture
/// has.
std::optional<model::PixelSelection> magicWandSelection(const model::PaintLayer& layer,
                                                        double canvasWidth, double canvasHeight,
                                                        model::CanvasPoint point,
                                                        double matchPercentage);

/// Lays `color` over the pixels that `magicWandSelection` selects. False when there are none; the
/// layer is then as it was.
bool fillSimilarPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                       model::CanvasPoint point, const model::ColorValue& color,
                       double matchPercentage);

/// The layer's colour at `point`; nothing where it is transparent.
std::optional<model::ColorValue> color(const model::PaintLayer& layer, double canvasWidth,
                                       double canvasHeight, model::CanvasPoint point);

} // namespace quillabrae::raster::LayerRasterService
