// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/RasterImage.h"

#include <cstddef>

namespace quillabrae::raster {

/// `decodePng`, remembering the images that were decoded or encoded last within a byte budget.
/// Invisible but for its speed: the same bytes give the same pixels without it. Safe on any thread.
RasterImage decodedImage(const model::PngBytes& bytes);

/// `encodePng`, which leaves the image as the cached decoding of its own bytes.
model::PngBytes encodedImage(const RasterImage& image);

/// Forgets every image that nobody else holds.
void clearDecodeCache();

/// The most bytes of pixels that the cache keeps.
void setDecodeCacheBudget(std::size_t bytes);

} // namespace quillabrae::raster
