// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <cstdint>

namespace quillabrae::raster {

/// One of the two images of a merge, and its strength over 255.
struct FlattenedPart {
    const RasterImage& image;
    std::uint8_t fraction;
};

/// The lower image drawn on nothing and the upper one over it, source-over. Both are of one size.
/// Null when the result cannot be allocated.
RasterImage flattenedImage(const FlattenedPart& lower, const FlattenedPart& upper);

} // namespace quillabrae::raster
