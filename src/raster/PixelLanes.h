// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Eight RGBA8 pixels at a time, for kernels: as words of alpha, blue, green, red from the high
/// byte down, and as pairs of 16-bit lanes for products of bytes.
///
/// Everything here is inlined into kernels that are built for several processors, so the calling
/// convention of wide vectors does not matter: files that include this are built with -Wno-psabi.
namespace quillabrae::raster::lanes {

constexpr std::size_t count = 8;
using Words = std::uint32_t __attribute__((vector_size(4 * count)));
using Halves = std::uint16_t __attribute__((vector_size(4 * count)));
using Bytes = std::uint8_t __attribute__((vector_size(4 * count)));
using Alphas = std::uint8_t __attribute__((vector_size(count)));

constexpr std::uint32_t evenBytes = 0x00ff00ffU;

[[gnu::always_inline]] inline Words loadPixels(const std::uint8_t* from) {
    Words pixels;
    std::memcpy(&pixels, from, sizeof pixels);
    return pixels;
}

/// Eight bytes, each in a word of its own.
[[gnu::always_inline]] inline Words loadAlpha(const std::uint8_t* from) {
    Alphas alpha;
    std::memcpy(&alpha, from, sizeof alpha);
    return __builtin_convertvector(alpha, Words);
}

[[gnu::always_inline]] inline void storePixels(std::uint8_t* to, Words pixels) {
    std::memcpy(to, &pixels, sizeof pixels);
}

/// pixels[places[i]]; places are 0 to 7.
[[gnu::always_inline]] inline Words picked(Words pixels, Words places) {
#if defined(__clang__)
    Words result{};
    for (std::size_t i = 0; i < count; ++i) result[i] = pixels[places[i]];
    return result;
#else
    return __builtin_shuffle(pixels, places);
#endif
}

/// The same of sixteen pixels; places are 0 to 15.
[[gnu::always_inline]] inline Words picked(Words first, Words second, Words places) {
#if defined(__clang__)
    Words result{};
    for (std::size_t i = 0; i < count; ++i)
        result[i] = places[i] < count ? first[places[i]] : second[places[i] - count];
    return result;
#else
    return __builtin_shuffle(first, second, places);
#endif
}

/// round(n / 255) of n up to 255 * 255, halves up.
[[gnu::always_inline]] inline Halves over255(Halves n) {
    const Halves t = n + 128;
    return (t + (t >> 8)) >> 8;
}

[[gnu::always_inline]] inline Halves product(Halves x, Halves y) {
    return over255(x * y);
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

/// to[i] = combine(from[i], other[i]), eight at a time; the rest goes through a padded copy. `to`
/// may be `from`.
template <Operand operand, typename Combine>
[[gnu::always_inline]] inline void combineRun(std::uint8_t* to, const std::uint8_t* from,
                                              const std::uint8_t* other, std::size_t pixelCount,
                                              Combine combine) {
    constexpr auto unit = static_cast<std::size_t>(operand);
    std::size_t i = 0;
    for (; i + count <= pixelCount; i += count)
        storePixels(to + 4 * i, combine(loadPixels(from + 4 * i), load<operand>(other + unit * i)));
    const std::size_t rest = pixelCount - i;
    if (rest == 0) return;
    std::array<std::uint8_t, 4 * count> paddedPixels{};
    std::array<std::uint8_t, 4 * count> paddedOther{};
    std::memcpy(paddedPixels.data(), from + 4 * i, 4 * rest);
    if constexpr (unit != 0) std::memcpy(paddedOther.data(), other + unit * i, unit * rest);
    storePixels(paddedPixels.data(),
                combine(loadPixels(paddedPixels.data()), load<operand>(paddedOther.data())));
    std::memcpy(to + 4 * i, paddedPixels.data(), 4 * rest);
}

} // namespace quillabrae::raster::lanes
