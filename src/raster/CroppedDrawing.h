// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/CroppedImage.h"
#include "raster/RasterImage.h"
#include "raster/Stretch.h"

namespace quillabrae::raster {

/// What of `whole` shows one of `count` sources from source `first` on, counted from that.
AxisSamples samplesWithin(const AxisSamples& whole, int first, int count);

/// Source-over of the picture, its margins with it, stretched to all of `destination`,
/// nearest-neighbour, and multiplied by `fraction` (0 to 1).
void drawCropped(RasterImage& destination, const CroppedImage& picture, double fraction = 1.0);

} // namespace quillabrae::raster
