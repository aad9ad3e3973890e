// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"

#include "raster/KernelTargets.h"

#include <algorithm>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::uint32_t opaqueAlpha = 0xff000000U;

inline std::uint32_t load(const std::uint8_t* pixels, std::size_t index) {
    std::uint32_t pixel;
    std::memcpy(&pixel, pixels + 4 * index, 4);
    return pixel;
}

inline void store(std::uint8_t* pixels, std::size_t index, std::uint32_t pixel) {
    std::memcpy(pixels + 4 * index, &pixel, 4);
}

QUILLABRAE_WIDE_KERNEL
void premultiplyRun(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const std::uint32_t pixel = load(from, i);
        const std::uint32_t alpha = pixel >> 24;
        // Two components at once, 16 bits apart; (t + (t >> 8)) >> 8 with t = c * a + 128 is the
        // rounded c * a / 255 for every product of two bytes.
        std::uint32_t redBlue = (pixel & 0x00ff00ffU) * alpha + 0x00800080U;
        redBlue = ((redBlue + ((redBlue >> 8) & 0x00ff00ffU)) >> 8) & 0x00ff00ffU;
        std::uint32_t green = ((pixel >> 8) & 0xffU) * alpha + 0x80U;
        green = (green + (green >> 8)) & 0xff00U;
        store(to, i, (pixel & opaqueAlpha) | green | redBlue);
    }
}

/// min(255, c * 255 / a) rounded, as an integer; `scale` is 255 / a.
inline std::uint32_t straightComponent(std::uint32_t component, float scale) {
    // c' * 255 / a is a multiple of 1 / a, so it is at least 1 / 510 away from every half that it
    // does not hit: the small excess over 0.5 makes exact halves go up and outweighs the error of
    // the single-precision product.
    constexpr float rounding = 0.5F + 1.0F / 1024.0F;
    const float value = static_cast<float>(static_cast<std::int32_t>(component)) * scale + rounding;
    const auto whole = static_cast<std::int32_t>(value);
    return static_cast<std::uint32_t>(whole > 255 ? 255 : whole);
}

QUILLABRAE_WIDE_KERNEL
void unpremultiplyRun(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const std::uint32_t pixel = load(from, i);
        const std::uint32_t alpha = pixel >> 24;
        // All bits, or none where alpha is 0: a branch here would keep the loop from vectorising.
        const std::uint32_t visible = 0U - ((alpha + 255U) >> 8);
        const auto divisor = static_cast<std::int32_t>(alpha | (1U & ~visible));
        const float scale = 255.0F / static_cast<float>(divisor);
        const std::uint32_t straight = (pixel & opaqueAlpha) |
                                       straightComponent(pixel & 0xffU, scale) |
                                       (straightComponent((pixel >> 8) & 0xffU, scale) << 8) |
                                       (straightComponent((pixel >> 16) & 0xffU, scale) << 16);
        store(to, i, straight & visible);
    }
}

/// Long runs of clear or opaque pixels are the rule: they are found a stretch at a time and copied.
template <typename Convert>
void convertPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount,
                   Convert convert) {
    constexpr std::size_t stretch = 64;
    for (std::size_t i = 0; i < pixelCount; i += stretch) {
        const std::size_t count = std::min(stretch, pixelCount - i);
        if (!isAlphaTrivial(from + 4 * i, count))
            convert(from + 4 * i, to + 4 * i, count);
        else if (from != to)
            std::memcpy(to + 4 * i, from + 4 * i, 4 * count);
    }
}

} // namespace

void premultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    convertPixels(from, to, pixelCount, premultiplyRun);
}

void unpremultiplyPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    convertPixels(from, to, pixelCount, unpremultiplyRun);
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
            const std::uint32_t pixel = load(pixels, i);
            anyBit |= pixel;
            everyBit &= pixel;
        }
        if (anyBit != 0 && everyBit != opaqueAlpha) return false;
    }
    return true;
}

QUILLABRAE_WIDE_KERNEL
bool isPremultiplied(const std::uint8_t* pixels, std::size_t pixelCount) {
    constexpr std::size_t step = 256;
    std::size_t i = 0;
    while (i < pixelCount) {
        const std::size_t end = std::min(i + step, pixelCount);
        std::uint32_t excess = 0;
        for (; i < end; ++i) {
            const std::uint32_t pixel = load(pixels, i);
            const std::uint32_t alpha = pixel >> 24;
            // A component above its alpha borrows into the top bit.
            excess |= (alpha - (pixel & 0xffU)) | (alpha - ((pixel >> 8) & 0xffU)) |
                      (alpha - ((pixel >> 16) & 0xffU));
        }
        if ((excess >> 31) != 0) return false;
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
