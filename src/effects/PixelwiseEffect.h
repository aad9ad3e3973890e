// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/Parallel.h"
#include "raster/RasterImage.h"
#include "raster/RowBands.h"

#include <cstddef>

namespace quillabrae::effects {

/// A picture each of whose pixels is made from the one in its place, by runs:
/// `kernel(to, from, pixelCount)`. Null for a null picture, and where there is no memory for it.
template <typename Kernel>
raster::RasterImage pixelwise(const raster::RasterImage& image, Kernel&& kernel) {
    if (image.isNull()) return {};
    auto result = raster::RasterImage::uninitialized(image.width(), image.height());
    if (result.isNull()) return {};
    result.setLogicalSize(image.logicalSize());
    std::uint8_t* const to = result.mutableRow(0);
    const std::uint8_t* const from = image.row(0);
    const auto width = static_cast<std::size_t>(image.width());
    raster::parallelForRowBands(
        image.height(), raster::rowsPerBand(image.width()), [&](int first, int last) {
            const std::size_t start = static_cast<std::size_t>(first) * width;
            kernel(to + 4 * start, from + 4 * start,
                   static_cast<std::size_t>(last - first) * width);
        });
    return result;
}

} // namespace quillabrae::effects
