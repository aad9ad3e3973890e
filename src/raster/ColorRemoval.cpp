// SPDX-License-Identifier: GPL-3.0-or-later
// a = factor * |p - t|; c = (p - t * (1 - a / 255)) / (a / 255)
#include "raster/ColorRemoval.h"

#include "raster/AlphaKernels.h"
#include "raster/BlendKernels.h"
#include "raster/KernelTargets.h"
#include "raster/Parallel.h"
#include "raster/RowBands.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

/// Pixels worked on at once: few enough that all their numbers stay in the nearest cache.
constexpr std::size_t runLength = 128;

/// Straight pixels of a run, and the alpha that each would have.
struct Run {
    std::array<std::uint32_t, runLength> straight{};
    std::array<double, runLength> alpha{};
};

/// How many pixels of a run become transparent, and how many stay.
struct Verdict {
    std::size_t cleared;
    std::size_t kept;
};

[[gnu::always_inline]] inline double component(std::uint32_t pixel, int shift) {
    return static_cast<std::int32_t>((pixel >> shift) & 0xffU);
}

QUILLABRAE_WIDE_KERNEL
Verdict judge(Run& run, const ColorRemoval& removal) {
    const double removedRed = removal.red;
    const double removedGreen = removal.green;
    const double removedBlue = removal.blue;
    const double factor = removal.factor;
    const double threshold = removal.threshold;
    std::int64_t cleared = 0;
    std::int64_t kept = 0;
    for (std::size_t i = 0; i < runLength; ++i) {
        const double red = component(run.straight[i], 0) - removedRed;
        const double green = component(run.straight[i], 8) - removedGreen;
        const double blue = component(run.straight[i], 16) - removedBlue;
        const double alpha = factor * std::sqrt(red * red + green * green + blue * blue);
        run.alpha[i] = alpha;
        const std::int64_t isCleared = alpha <= threshold ? 1 : 0;
        cleared += isCleared;
        kept += alpha >= component(run.straight[i], 24) ? 1 - isCleared : 0;
    }
    return {static_cast<std::size_t>(cleared), static_cast<std::size_t>(kept)};
}

/// Four pixels' numbers.
constexpr std::size_t lanes = 4;
using Numbers = double __attribute__((vector_size(8 * lanes)));
using Words = std::int32_t __attribute__((vector_size(4 * lanes)));

[[gnu::always_inline]] inline Numbers components(Words pixels, int shift) {
    return __builtin_convertvector((pixels >> shift) & 0xff, Numbers);
}

/// (p - t * (1 - n)) / n as bytes; what a share of 0 leaves undefined is any byte.
[[gnu::always_inline]] inline Words unmixed(Numbers mixed, double removed, Numbers share) {
    const Numbers value = (mixed - removed * (1.0 - share)) / share;
    const Numbers held = value > 0.0 ? value : Numbers{};
    return __builtin_convertvector(held < 255.0 ? held : Numbers{} + 255.0, Words);
}

/// 0 to 1 as bytes, halves up.
[[gnu::always_inline]] inline Words bytesOf(Numbers share) {
    const Numbers value = share * 255.0;
    const Numbers held = value < 255.0 ? value : Numbers{} + 255.0;
    const Words whole = __builtin_convertvector(held, Words);
    const Numbers rest = held - __builtin_convertvector(whole, Numbers);
    return whole - __builtin_convertvector(rest >= 0.5, Words);
}

QUILLABRAE_WIDE_KERNEL
void unmix(Run& run, const ColorRemoval& removal) {
    for (std::size_t i = 0; i < runLength; i += lanes) {
        Words pixels;
        Numbers alpha;
        std::memcpy(&pixels, run.straight.data() + i, sizeof pixels);
        std::memcpy(&alpha, run.alpha.data() + i, sizeof alpha);
        const Numbers share = alpha / 255.0;
        const Words written = unmixed(components(pixels, 0), removal.red, share) |
                              unmixed(components(pixels, 8), removal.green, share) << 8 |
                              unmixed(components(pixels, 16), removal.blue, share) << 16 |
                              bytesOf(share) << 24;
        const auto isCleared = __builtin_convertvector(alpha <= removal.threshold, Words);
        const auto isKept =
            __builtin_convertvector((alpha >= components(pixels, 24)) | (share <= 0.0), Words);
        pixels = ~isCleared & ((isKept & pixels) | (~isKept & written));
        std::memcpy(run.straight.data() + i, &pixels, sizeof pixels);
    }
}

/// Whether any pixel was written.
bool removeFromRun(const std::uint8_t* from, std::uint8_t* to, std::size_t count,
                   const ColorRemoval& removal) {
    Run run;
    auto* const straight = reinterpret_cast<std::uint8_t*>(run.straight.data());
    unpremultiplyPixels(from, straight, count);
    // A short run ends in copies of its first pixel: they change no verdict that asks for all.
    std::fill(run.straight.begin() + static_cast<std::ptrdiff_t>(count), run.straight.end(),
              run.straight.front());
    const Verdict verdict = judge(run, removal);
    if (verdict.kept == runLength) {
        std::memcpy(to, from, 4 * count);
        return false;
    }
    if (verdict.cleared == runLength) {
        std::memset(to, 0, 4 * count);
        return true;
    }
    unmix(run, removal);
    premultiplyPixels(straight, to, count);
    return true;
}

/// Written so that NaN is 0.
double held(double value, double limit) {
    return value > 0.0 ? std::min(value, limit) : 0.0;
}

} // namespace

ColorRemoval ColorRemoval::of(const model::ColorValue& targetColor, double tolerancePercentage,
                              double transparentAlphaThresholdPercentage) {
    return {.red = held(targetColor.red * 255.0, 255.0),
            .green = held(targetColor.green * 255.0, 255.0),
            .blue = held(targetColor.blue * 255.0, 255.0),
            .factor = held(tolerancePercentage, 20.0),
            .threshold = held(transparentAlphaThresholdPercentage, 255.0)};
}

RasterImage imageWithColorRemoved(const RasterImage& image, const ColorRemoval& removal) {
    RasterImage result = RasterImage::uninitialized(image.width(), image.height());
    if (result.isNull()) return result;
    result.setLogicalSize(image.logicalSize());
    const auto width = static_cast<std::size_t>(image.width());
    std::uint8_t* const target = result.mutableRow(0);
    std::atomic<bool> isAnyWritten = false;
    parallelForRowBands(image.height(), rowsPerBand(image.width()), [&](int first, int last) {
        const std::size_t begin = width * static_cast<std::size_t>(first);
        const std::size_t end = width * static_cast<std::size_t>(last);
        bool isWritten = false;
        for (std::size_t i = begin; i < end; i += runLength)
            isWritten |= removeFromRun(image.row(0) + 4 * i, target + 4 * i,
                                       std::min(runLength, end - i), removal);
        if (isWritten) isAnyWritten.store(true, std::memory_order_relaxed);
    });
    return isAnyWritten ? result : RasterImage();
}

} // namespace quillabrae::raster
