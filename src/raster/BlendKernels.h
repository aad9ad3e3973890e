// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"

#include <cstddef>
#include <cstdint>

/// Compositing of runs of premultiplied RGBA8 pixels. With x * y standing for round(x * y / 255)
/// of two bytes, halves up, for each component c with the pixel's alpha a:
///
///   source-over:       c = c_source + c * (255 - a_source), the source first multiplied by the
///                      fraction as c_source * fraction
///   destination-out:   c = c * (255 - a_source)
///   destination-in:    c = c * a_source
///
/// Sources have no component above their alpha, so nothing overflows. Runs do not overlap.
namespace quillabrae::raster {

/// round(x * y / 255) of two bytes, halves up.
constexpr std::uint8_t byteProduct(unsigned x, unsigned y) {
    const unsigned t = x * y + 128;
    return static_cast<std::uint8_t>((t + (t >> 8)) >> 8);
}

/// 0 to 1 as a byte, rounded; what is outside is held to the ends, and NaN is 0.
std::uint8_t unitByte(double value);

/// A straight colour as bytes.
struct PixelColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;

    static PixelColor of(const model::ColorValue& color);
};

void sourceOverPixels(std::uint8_t* pixels, const std::uint8_t* source, std::size_t pixelCount,
                      std::uint8_t fraction);

/// Source-over of a colour whose alpha is `alpha` (one byte for each pixel), not its own.
void sourceOverColor(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount,
                     PixelColor color);
/// The same with the colour's own alpha everywhere.
void sourceOverColor(std::uint8_t* pixels, std::size_t pixelCount, PixelColor color);

void destinationOutPixels(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount);
void destinationOutPixels(std::uint8_t* pixels, std::size_t pixelCount, std::uint8_t alpha);

void destinationInPixels(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount);

/// pixels[i] = source[index[i]]
void gatherPixels(std::uint8_t* pixels, const std::uint8_t* source, const std::int32_t* index,
                  std::size_t pixelCount);

/// From R, G, B, A in memory to B, G, R, A.
void swapRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount);

} // namespace quillabrae::raster
