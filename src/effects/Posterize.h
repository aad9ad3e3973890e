// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// Each colour channel reduced to a few evenly spaced values. Alpha stays.
struct Posterize {
    /// How many values a channel keeps, black and full strength among them: whole, 2 to 256.
    float levels = 6.0F;
};

/// Null for a null picture.
raster::RasterImage applied(const Posterize& posterize, const raster::RasterImage& image);

} // namespace quillabrae::effects
