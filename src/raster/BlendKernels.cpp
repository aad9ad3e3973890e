// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BlendKernels.h"

#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

/// Eight pixels: as words of alpha, blue, green, red from the high byte down, and as pairs of
/// 16-bit lanes for products of bytes.
constexpr std::size_t lanes = 8;
using Words = std::uint32_t __attribute__((vector_size(4 * lanes)));
using Halves = std::uint16_t __attribute__((vector_size(4 * lanes)));
using Bytes = std::uint8_t __attribute__((vector_size(lanes)));

constexpr std::uint32_t evenBytes = 0x00ff00ffU;

[[gnu::always_inline]] inline Words loadPixels(const std::uint8_t* from) {
    Words pixels;
    std::memcpy(&pixels, from, sizeof pixels);
    return pixels;
}

[[gnu::always_inline]] inline Words loadAlpha(const std::uint8_t* from) {
    Bytes alpha;
    std::memcpy(&alpha, from, sizeof alpha);
    return __builtin_convertvector(alpha, Words);
}

[[gnu::always_inline]] inline void storePixels(std::uint8_t* to, Words pixels) {
    std::memcpy(to, &pixels, sizeof pixels);
}

[[gnu::always_inline]] inline Halves product(Halves x, Halves y) {
    const Halves t = x * y + 128;
    return (t + (t >> 8)) >> 8;
}

/// Every component of each pixel times its pixel's factor (a byte in each word).
[[gnu::always_inline]] inline Words scaled(Words pixels, Words factor) {
    const auto factors = reinterpret_cast<Halves>(factor | (factor << 16));
    const auto even = reinterpret_cast<Halves>(pixels & evenBytes);
    const auto odd = reinterpret_cast<Halves>((pixels >> 8) & evenBytes);
    return reinterpret_cast<Words>(product(even, factors)) |
           (reinterpret_cast<Words>(product(odd, factors)) << 8);
}

[[gnu::always_inline]] inline Words sourceOver(Words pixels, Words source) {
    return source + scaled(pixels, 255 - (source >> 24));
}

/// What a run combines its pixels with: pixels, one byte for each pixel, or nothing.
enum class Operand : std::size_t { pixels = 4, alpha = 1, nothing = 0 };

template <Operand operand>
[[gnu::always_inline]] inline Words load(const std::uint8_t* from) {
    if constexpr (operand == Operand::pixels) return loadPixels(from);
    if constexpr (operand == Operand::alpha) return loadAlpha(from);
    return Words{};
}

/// pixels[i] = combine(pixels[i], other[i]), eight at a time; the rest goes through a padded copy.
template <Operand operand, typename Combine>
[[gnu::always_inline]] inline void combineRun(std::uint8_t* pixels, const std::uint8_t* other,
                                              std::size_t pixelCount, Combine combine) {
    constexpr auto unit = static_cast<std::size_t>(operand);
    std::size_t i = 0;
    for (; i + lanes <= pixelCount; i += lanes)
        storePixels(pixels + 4 * i,
                    combine(loadPixels(pixels + 4 * i), load<operand>(other + unit * i)));
    const std::size_t rest = pixelCount - i;
    if (rest == 0) return;
    std::array<std::uint8_t, 4 * lanes> paddedPixels{};
    std::array<std::uint8_t, 4 * lanes> paddedOther{};
    std::memcpy(paddedPixels.data(), pixels + 4 * i, 4 * rest);
    if constexpr (unit != 0) std::memcpy(paddedOther.data(), other + unit * i, unit * rest);
    storePixels(paddedPixels.data(),
                combine(loadPixels(paddedPixels.data()), load<operand>(paddedOther.data())));
    std::memcpy(pixels + 4 * i, paddedPixels.data(), 4 * rest);
}

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
        pixels, source, pixelCount,
        [](Words p, Words s) __attribute__((always_inline)) { return sourceOver(p, s); });
}

QUILLABRAE_WIDE_KERNEL
void sourceOverFraction(std::uint8_t* pixels, const std::uint8_t* source, std::size_t pixelCount,
                        std::uint8_t fraction) {
    const Words factor = Words{} + fraction;
    combineRun<Operand::pixels>(
        pixels, source, pixelCount, [&](Words p, Words s) __attribute__((always_inline)) {
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
        pixels, alpha, pixelCount, [&](Words p, Words a) __attribute__((always_inline)) {
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
        pixels, nullptr, pixelCount, [&](Words p, Words) __attribute__((always_inline)) {
            return sourceOver(p, source);
        });
}

QUILLABRAE_WIDE_KERNEL
void destinationOutPixels(std::uint8_t* pixels, const std::uint8_t* alpha, std::size_t pixelCount) {
    combineRun<Operand::alpha>(
        pixels, alpha, pixelCount,
        [](Words p, Words a) __attribute__((always_inline)) { return scaled(p, 255 - a); });
}

QUILLABRAE_WIDE_KERNEL
void destinationOutPixels(std::uint8_t* pixels, std::size_t pixelCount, std::uint8_t alpha) {
    const Words kept = Words{} + static_cast<std::uint32_t>(255 - alpha);
    combineRun<Operand::nothing>(
        pixels, nullptr,
        pixelCount, [&](Words p, Words) __attribute__((always_inline)) { return scaled(p, kept); });
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
