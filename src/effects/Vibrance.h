// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::effects {

/// Saturation raised where it is low; strong colours and the hues of skin are held back. Hue, luma
/// and alpha stay.
struct Vibrance {
    /// How much the chroma of the faintest colour grows: by this part of itself; 0 or more.
    float amount = 0.72F;
};

/// Null for a null picture.
raster::RasterImage applied(const Vibrance& vibrance, const raster::RasterImage& image);

} // namespace quillabrae::effects
