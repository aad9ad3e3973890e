// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// Edges of brightness made steeper. Colour differences and alpha stay.
struct SharpenLuminance {
    /// How much of the difference from the surroundings is added, 0 or more.
    float sharpness = 0.55F;
    /// The standard deviation of the surroundings in pixels, above 0, at most 16.
    float radius = 1.69F;
    /// What no halo exceeds, as a part of full strength, above 0.
    float haloLimit = 0.12F;
};

/// Null for a null picture, and where there is no memory for the result.
raster::RasterImage applied(const SharpenLuminance& sharpen, const raster::RasterImage& image);

} // namespace quillabrae::effects
