// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PixelLanes.h"

#include <array>
#include <cstring>

/// The components of eight pixels as numbers, for kernels that work in real arithmetic. Components
/// are premultiplied and run from 0 to 255, as they are stored.
///
/// As with the lanes of bytes, files that include this are built with -Wno-psabi.
namespace quillabrae::effects::lanes {

using raster::lanes::count;
using raster::lanes::Words;
using Integers = std::int32_t __attribute__((vector_size(4 * count)));
using Floats = float __attribute__((vector_size(4 * count)));

struct Colors {
    Floats red;
    Floats green;
    Floats blue;
    Floats alpha;
};

[[gnu::always_inline]] inline Floats lesser(Floats a, Floats b) {
    return a < b ? a : b;
}

[[gnu::always_inline]] inline Floats greater(Floats a, Floats b) {
    return a > b ? a : b;
}

[[gnu::always_inline]] inline Floats held(Floats value, Floats least, Floats most) {
    return lesser(greater(value, least), most);
}

[[gnu::always_inline]] inline Floats loaded(const float* from) {
    Floats floats;
    std::memcpy(&floats, from, sizeof floats);
    return floats;
}

[[gnu::always_inline]] inline void store(float* to, Floats floats) {
    std::memcpy(to, &floats, sizeof floats);
}

[[gnu::always_inline]] inline Floats magnitude(Floats value) {
    return reinterpret_cast<Floats>(reinterpret_cast<Integers>(value) & 0x7fffffff);
}

/// The same number in every lane.
[[gnu::always_inline]] inline Floats all(float value) {
    return Floats{} + value;
}

[[gnu::always_inline]] inline Floats component(Words pixels, int shift) {
    // Signed: numbers of that kind are converted in one step.
    return __builtin_convertvector(reinterpret_cast<Integers>((pixels >> shift) & 0xffU), Floats);
}

[[gnu::always_inline]] inline Colors unpacked(Words pixels) {
    return {component(pixels, 0), component(pixels, 8), component(pixels, 16),
            component(pixels, 24)};
}

/// Numbers of 0 or more without their fraction.
[[gnu::always_inline]] inline Floats truncated(Floats value) {
    return __builtin_convertvector(__builtin_convertvector(value, Integers), Floats);
}

/// The nearest bytes, halves up, of components from 0 to 255, each in a word of its own.
[[gnu::always_inline]] inline Words bytesOf(Floats value) {
    return reinterpret_cast<Words>(__builtin_convertvector(value + 0.5F, Integers));
}

/// Pixels of these colours and of the alphas of `pixels`.
[[gnu::always_inline]] inline Words packed(Floats red, Floats green, Floats blue, Words pixels) {
    return bytesOf(red) | bytesOf(green) << 8 | bytesOf(blue) << 16 | (pixels & 0xff000000U);
}

/// Calls `visit(i, pixels)` for each eight pixels of a run, the first of which is number `i`; where
/// the run ends within eight, transparent ones fill up.
template <typename Visit>
[[gnu::always_inline]] inline void visitRun(const std::uint8_t* from, std::size_t pixelCount,
                                            Visit visit) {
    std::size_t i = 0;
    for (; i + count <= pixelCount; i += count) visit(i, raster::lanes::loadPixels(from + 4 * i));
    if (i == pixelCount) return;
    std::array<std::uint8_t, 4 * count> padded{};
    std::memcpy(padded.data(), from + 4 * i, 4 * (pixelCount - i));
    visit(i, raster::lanes::loadPixels(padded.data()));
}

} // namespace quillabrae::effects::lanes
