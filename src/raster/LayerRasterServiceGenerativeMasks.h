// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "model/PixelSelection.h"
#include "model/PngBytes.h"
#include "raster/RasterImage.h"

#include <optional>

/// The masks that go with a picture to an image-edit service, and the way back for what it made.
/// In these masks opaque white must stay and transparent may change: the reverse of a selection's.
namespace quillabrae::raster::LayerRasterService {

/// The mask of the selection's rectangle alone, clipped to the canvas and snapped outward; wholly
/// transparent without a selection mask. Nothing when none of it is on the canvas, or for a canvas
/// of a size that no picture has.
std::optional<model::PngBytes> generativeEditMaskPNGData(const model::PixelSelection& selection,
                                                         double canvasWidth, double canvasHeight);

/// The mask of the whole canvas, white around what is selected. Nothing as above.
std::optional<model::PngBytes> fullCanvasGenerativeEditMaskPNGData(
    const model::PixelSelection& selection, double canvasWidth, double canvasHeight);

/// Replaces the selected pixels of the layer by `image`, stretched to the selection's rectangle
/// nearest-neighbour. False, and the layer untouched, when none of the selection is on the canvas,
/// for a canvas of a size that no picture has, and for a null image.
bool applyGeneratedImage(const RasterImage& image, model::PaintLayer& layer, double canvasWidth,
                         double canvasHeight, const model::PixelSelection& selection);

} // namespace quillabrae::raster::LayerRasterService
