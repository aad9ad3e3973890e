// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// A glow around what is bright. The one effect that changes alpha: the glow reaches out over
/// transparent pixels.
struct Bloom {
    /// How much of the glow is laid over the picture, 0 to 1.
    float intensity = 0.55F;
    /// The standard deviation of the glow's spread in pixels, 4 to 64.
    float radius = 7.0F;
    /// The luma, 0 to below 1, above which pixels glow.
    float threshold = 0.5F;
};

/// Null for a null picture, and where there is no memory for the result. Takes a quarter of the
/// picture's memory beside it.
raster::RasterImage applied(const Bloom& bloom, const raster::RasterImage& image);

} // namespace quillabrae::effects
