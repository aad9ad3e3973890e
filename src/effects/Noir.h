// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// Black and white with the contrast of film behind a coloured filter. Alpha stays.
struct Noir {
    /// The weights of the channels; their sum is 1.
    float red = 0.42F;
    float green = 0.46F;
    float blue = 0.12F;
    /// How much of the S-curve there is, 0 to 1.
    float contrast = 0.85F;
};

/// Null for a null picture.
raster::RasterImage applied(const Noir& noir, const raster::RasterImage& image);

} // namespace quillabrae::effects
