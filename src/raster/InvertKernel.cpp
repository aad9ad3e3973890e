// SPDX-License-Identifier: GPL-3.0-or-later
// c + (k / 255) * (max(a - c, 0) - c) = ((255 - k) * c + k * max(a - c, 0)) / 255
#include "raster/InvertKernel.h"

#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

namespace quillabrae::raster {
namespace {

using lanes::Bytes;
using lanes::Halves;
using lanes::Operand;
using lanes::Words;

constexpr std::uint32_t alphaByte = 0xff000000U;

[[gnu::always_inline]] inline Words inverted(Words pixels) {
    const Words alpha = pixels >> 24;
    const auto ceiling = reinterpret_cast<Bytes>(alpha | (alpha << 8) | (alpha << 16));
    const auto color = reinterpret_cast<Bytes>(pixels & ~alphaByte);
    const Bytes below = (ceiling - color) & reinterpret_cast<Bytes>(ceiling > color);
    return reinterpret_cast<Words>(below) | (pixels & alphaByte);
}

/// Each component `part` of the way, a byte in each word, from one pixel to the other.
[[gnu::always_inline]] inline Words between(Words from, Words to, Words part) {
    const auto forward = reinterpret_cast<Halves>(part | (part << 16));
    const Halves back = 255 - forward;
    const auto mixed = [&](Words a, Words b) __attribute__((always_inline)) {
        return reinterpret_cast<Words>(
            lanes::over255(reinterpret_cast<Halves>(a & lanes::evenBytes) * back +
                           reinterpret_cast<Halves>(b & lanes::evenBytes) * forward));
    };
    return mixed(from, to) | (mixed(from >> 8, to >> 8) << 8);
}

/// The alpha of the or of all pixels seen.
std::uint8_t combinedAlpha(Words seen) {
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < lanes::count; ++i) all |= seen[i];
    return static_cast<std::uint8_t>(all >> 24);
}

} // namespace

QUILLABRAE_WIDE_KERNEL
std::uint8_t invertPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    Words seen{};
    lanes::combineRun<Operand::nothing>(
        to, from, nullptr, pixelCount, [&](Words pixels, Words) __attribute__((always_inline)) {
            seen |= pixels;
            return inverted(pixels);
        });
    return combinedAlpha(seen);
}

QUILLABRAE_WIDE_KERNEL
std::uint8_t invertPixels(const std::uint8_t* from, std::uint8_t* to, const std::uint8_t* coverage,
                          std::size_t pixelCount) {
    Words seen{};
    lanes::combineRun<Operand::alpha>(
        to, from, coverage,
        pixelCount, [&](Words pixels, Words covered) __attribute__((always_inline)) {
            seen |= pixels & reinterpret_cast<Words>(covered > 0);
            return between(pixels, inverted(pixels), covered);
        });
    return combinedAlpha(seen);
}

} // namespace quillabrae::raster
