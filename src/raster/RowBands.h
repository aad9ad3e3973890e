// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace quillabrae::raster {

/// How many rows of that many pixels are work enough for one thread to be woken for.
constexpr int rowsPerBand(int width) {
    constexpr int pixelsPerBand = 1 << 16;
    return std::max(pixelsPerBand / std::max(width, 1), 1);
}

} // namespace quillabrae::raster
