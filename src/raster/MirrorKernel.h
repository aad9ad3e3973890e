// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillabrae::raster {

/// to[i] = from[pixelCount - 1 - i] of RGBA8 pixels. Runs do not overlap.
void reversePixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount);

} // namespace quillabrae::raster
