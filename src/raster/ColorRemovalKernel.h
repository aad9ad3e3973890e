// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/ColorRemoval.h"

#include <cstddef>
#include <cstdint>

namespace quillabrae::raster {

/// Removes a colour from a run of premultiplied pixels, as `ColorRemoval.h`
/// defines it. Returns whether any pixel became transparent or was un-mixed.
/// The two do not overlap.
bool removeColorFromPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount,
                           const ColorRemoval& removal);

} // namespace quillabrae::raster
