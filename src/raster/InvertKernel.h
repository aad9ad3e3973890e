// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// Inversion of runs of premultiplied RGBA8 pixels. A colour component c of a pixel of alpha a
/// under a coverage k becomes
///
///   round(c + (k / 255) * (max(a - c, 0) - c)),
///
/// so a pixel inverts within its own premultiplied range and keeps its alpha.
///
/// Both return the bitwise or of the alphas of the pixels that they inverted, those of coverage 0
/// left out: 0 when there was nothing to invert. `to` may be `from`.
namespace quillabrae::raster {

std::uint8_t invertPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount);

/// `coverage` holds one byte for each pixel.
std::uint8_t invertPixels(const std::uint8_t* from, std::uint8_t* to, const std::uint8_t* coverage,
                          std::size_t pixelCount);

} // namespace quillabrae::raster
