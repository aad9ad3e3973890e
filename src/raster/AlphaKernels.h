// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// Between straight and premultiplied RGBA8, a run of pixels at a time.
///
///   premultiply:    c' = round(c * a / 255)
///   unpremultiply:  c  = min(255, round(c' * 255 / a)), and 0 where a is 0, halves rounded up
///
/// Unpremultiplying and then premultiplying gives back every pixel with c' <= a: the straight
/// component is off by at most 1/2, so the product by at most a/510, which is below 1/2 for a < 255
/// and exact for a = 255.
namespace quillabrae::raster {

/// `to` may be `from`.
void premultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount);
void unpremultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount);

/// Whether every pixel is opaque, or every byte is zero: runs that are the same either way.
bool isAlphaTrivial(const std::uint8_t* pixels, std::size_t pixelCount);
/// Whether no component of any pixel is above its alpha.
bool isPremultiplied(const std::uint8_t* pixels, std::size_t pixelCount);
bool isAllZero(const std::uint8_t* bytes, std::size_t byteCount);

} // namespace quillabrae::raster
