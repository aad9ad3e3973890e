// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"

#include "raster/KernelTargets.h"

#include <algorithm>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::uint32_t opaqueAlpha = 0xff000000U;

} // namespace

QUILLABRAE_WIDE_KERNEL
void premultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + 4 * i, 4);
        const std::uint32_t alpha = pixel >> 24;
        // Two components at once, 16 bits apart; (t + (t >> 8)) >> 8 with t = c * a + 128 is the
        // rounded c * a / 255 for every product of two bytes.
        std::uint32_t redBlue = (pixel & 0x00ff00ffU) * alpha + 0x00800080U;
        redBlue = ((redBlue + ((redBlue >> 8) & 0x00ff00ffU)) >> 8) & 0x00ff00ffU;
        std::uint32_t green = ((pixel >> 8) & 0xffU) * alpha + 0x80U;
        green = (green + (green >> 8)) & 0xff00U;
        pixel = (pixel & opaqueAlpha) | green | redBlue;
        std::memcpy(to + 4 * i, &pixel, 4);
    }
}

QUILLABRAE_WIDE_KERNEL
void unpremultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    // c' * 255 / a is a multiple of 1 / a, so it is at least 1 / 510 away from every half that it
    // does not hit: the small excess over 0.5 makes exact halves go up and outweighs the error of
    // the single-precision product.
    constexpr float rounding = 0.5F + 1.0F / 1024.0F;
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + 4 * i, 4);
        const auto alpha = static_cast<std::int32_t>(pixel >> 24);
        const float scale = 255.0F / static_cast<float>(std::max(alpha, 1));
        const auto red = static_cast<float>(static_cast<std::int32_t>(pixel & 0xffU));
        const auto green = static_cast<float>(static_cast<std::int32_t>((pixel >> 8) & 0xffU));
        const auto blue = static_cast<float>(static_cast<std::int32_t>((pixel >> 16) & 0xffU));
        const float limit = alpha == 0 ? 0.0F : 255.5F;
        const auto straightRed = static_cast<std::int32_t>(std::min(red * scale + rounding, limit));
        const auto straightGreen =
            static_cast<std::int32_t>(std::min(green * scale + rounding, limit));
        const auto straightBlue =
            static_cast<std::int32_t>(std::min(blue * scale + rounding, limit));
        pixel = (pixel & opaqueAlpha) | static_cast<std::uint32_t>(straightRed) |
                (static_cast<std::uint32_t>(straightGreen) << 8) |
                (static_cast<std::uint32_t>(straightBlue) << 16);
        std::memcpy(to + 4 * i, &pixel, 4);
    }
}

QUILLABRAE_WIDE_KERNEL
bool isAlphaTrivial(const std::uint8_t* pixels, std::size_t pixelCount) {
    constexpr std::size_t step = 64;
    std::uint32_t anyBit = 0;
    std::uint32_t everyBit = opaqueAlpha;
    std::size_t i = 0;
    while (i < pixelCount) {
        const std::size_t end = std::min(i + step, pixelCount);
        for (; i < end; ++i) {
            std::uint32_t pixel;
            std::memcpy(&pixel, pixels + 4 * i, 4);
            anyBit |= pixel;
            everyBit &= pixel;
        }
        if (anyBit != 0 && everyBit != opaqueAlpha) return false;
    }
    return true;
}

QUILLABRAE_WIDE_KERNEL
bool isAllZero(const std::uint8_t* bytes, std::size_t byteCount) {
    constexpr std::size_t step = 256;
    std::size_t i = 0;
    while (i < byteCount) {
        const std::size_t end = std::min(i + step, byteCount);
        std::uint8_t anyBit = 0;
        for (; i < end; ++i) anyBit = static_cast<std::uint8_t>(anyBit | bytes[i]);
        if (anyBit != 0) return false;
    }
    return true;
}

} // namespace quillabrae::raster
