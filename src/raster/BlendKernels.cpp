// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BlendKernels.h"

#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

using lanes::combineRun;
using lanes::Operand;
using lanes::scaled;
using lanes::sourceOver;
using lanes::Words;

/// The colour as a word, without its alpha: opaque.
std::uint32_t opaqueWord(PixelColor color) {
    return static_cast<std::uint32_t>(color.red) | static_cast<std::uint32_t>(color.green) << 8 |
           static_cast<std::uint32_t>(color.blue) << 16 | 0xff000000U;
}

std::uint32_t premultipliedWord(PixelColor color) {
    return static_cast<std::uint32_t>(byteProduct(color.red, color.alpha)) |
           static_cast<std::uint32_t>(byteProduct(color.green, color.alpha)) << 8 |
           static_cast<std::uint32_t>(byteProduct(color.blue, color.alpha)) << 16 |
           static_cast<std::uint32_t>(color.alpha) << 24;
}

QUILLABRAE_WIDE_KERNEL
void sourceOverWhole(std::uint8_t* pixels, const std::uint8_t* source, std::size_t pixelCount) {
    combineRun<Operand::pixels>(
        pixels, pixels, source, pixelCount,
        [](Words p, Words s) __attribute__((always_inline)) { return sourceOver(p, s); });
}

QUILLABRAE_WIDE_KERNEL
void sourceOverFraction(std::uint8_t* pixels, const std::uint8_t* source, std::size_t pixelCount,
                        std::uint8_t fraction) {
    const Words factor = Words{} + fraction;
    combineRun<Operand::pixels>(
        pixels, pixels, source, pixelCount, [&](Words p, Words s) __attribute__((always_inline)) {
            return sourceOver(p, scaled(s, factor));
        });
}

} // namespace

std::uint8_t unitByte(double value) {
    if (!(value > 0.0)) return 0;
    return static_cast<std::uint8_t>(std::lround(std::min(value, 1.0) * 255.0));
}

PixelColor PixelColor::of(const model::ColorValue& color) {
    return {unitByte(color.red), unitByte(color.green), unitByte(color.blue),
            unitByte(color.alpha)};
}

void sourceOverPixels(std::uint8_t* pixels, const std::uint8_t* source, std::size_t pixelCount,
                      std::uint8_t fraction) {
    if (fraction == 255) {
        sourceOverWhole(pixels, source, pixelCount);
    } else if (fraction != 0) {
        sourceOverFraction(pixels, source, pixelCount, fraction);
    }
}

QUILLABRAE_WIDE_KERNEL
void sourceOverColor(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount,
                     PixelColor color) {
    const Words opaque = Words{} + opaqueWord(color);
    combineRun<Operand::alpha>(
        pixels, pixels, alpha, pixelCount, [&](Words p, Words a) __attribute__((always_inline)) {
            return sourceOver(p, scaled(opaque, a));
        });
}

QUILLABRAE_WIDE_KERNEL
void sourceOverColor(std::uint8_t* pixels, std::size_t pixelCount, PixelColor color) {
    const std::uint32_t word = premultipliedWord(color);
    if (color.alpha == 255) {
        for (std::size_t i = 0; i < pixelCount; ++i) std::memcpy(pixels + 4 * i, &word, 4);
        return;
    }
    const Words source = Words{} + word;
    combineRun<Operand::nothing>(
        pixels, pixels, nullptr, pixelCount, [&](Words p, Words) __attribute__((always_inline)) {
            return sourceOver(p, source);
        });
}

QUILLABRAE_WIDE_KERNEL
void destinationOutPixels(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount) {
    combineRun<Operand::alpha>(
        pixels, pixels, alpha, pixelCount,
        [](Words p, Words a) __attribute__((always_inline)) { return scaled(p, 255 - a); });
}

QUILLABRAE_WIDE_KERNEL
void destinationOutPixels(std::uint8_t* pixels, std::size_t pixelCount, std::uint8_t alpha) {
    const Words kept = Words{} + static_cast<std::uint32_t>(255 - alpha);
    combineRun<Operand::nothing>(
        pixels, pixels, nullptr,
        pixelCount, [&](Words p, Words) __attribute__((always_inline)) { return scaled(p, kept); });
}

QUILLABRAE_WIDE_KERNEL
void destinationInPixels(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount) {
    combineRun<Operand::alpha>(
        pixels, pixels, alpha, pixelCount,
        [](Words p, Words a) __attribute__((always_inline)) { return scaled(p, a); });
}

void gatherPixels(std::uint8_t* pixels, const std::uint8_t* source, const std::int32_t* index,
                  std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i)
        std::memcpy(pixels + 4 * i, source + 4 * static_cast<std::size_t>(index[i]), 4);
}

QUILLABRAE_WIDE_KERNEL
void swapRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    for (std::size_t i = 0; i < pixelCount; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from + 4 * i, 4);
        pixel = (pixel & 0xff00ff00U) | ((pixel & 0xffU) << 16) | ((pixel >> 16) & 0xffU);
        std::memcpy(to + 4 * i, &pixel, 4);
    }
}

} // namespace quillabrae::raster
