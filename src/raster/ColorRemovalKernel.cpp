// SPDX-License-Identifier: GPL-3.0-or-later
// a = factor * |p - t|; c = (p - t * (1 - a / 255)) / (a / 255), truncated
//
// The definition is in double precision and its results are truncated, so
// single precision gives the same bytes except where a value comes out close to
// a border: a whole number, the threshold, the pixel's own alpha. Those pixels
// are found by bounds on the error and done again exactly.
//
// The bounds, with single-precision rounding of 2^-24 relative and components
// up to 255: t and p - t are off by 8e-6 and 1.6e-5; the distance by 2.8e-5
// and 2.5e-7 of itself; a by 5.6e-4 and 4e-7 of itself, so by less than 7e-4 up
// to 256. c = t + (p - t) * 255 / a, where it lies between -1 and 256, is off
// by less than 3e-4 + 1.2e-2 / a.
#include "raster/ColorRemovalKernel.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr float alphaDoubt = 0.002F;
constexpr float componentDoubt = 5e-4F;
/// Times 255 / a.
constexpr float componentDoubtByShare = 1e-4F;
/// Below it, alphas are left to the exact form.
constexpr float leastAlpha = 1.0F;

/// Pixels worked on at once: few enough that all their numbers stay in the
/// nearest cache.
constexpr std::size_t runLength = 256;

constexpr std::size_t lanes = 8;
using Words = std::int32_t __attribute__((vector_size(4 * lanes)));
using Floats = float __attribute__((vector_size(4 * lanes)));

constexpr std::size_t exactLanes = 4;
using ExactWords = std::int32_t __attribute__((vector_size(4 * exactLanes)));
using Doubles = double __attribute__((vector_size(8 * exactLanes)));

/// Straight pixels of a run, and the alpha that each would have, nearly.
struct Run {
    std::array<std::uint32_t, runLength> straight{};
    std::array<float, runLength> alpha{};
};

template <typename Vector, typename Element>
[[gnu::always_inline]] inline Vector loaded(const Element* from) {
    Vector vector;
    std::memcpy(&vector, from, sizeof vector);
    return vector;
}

[[gnu::always_inline]] inline bool isAny(Words mask) {
    const auto halves = reinterpret_cast<std::int64_t __attribute__((vector_size(32)))>(mask);
    return ((halves[0] | halves[1]) | (halves[2] | halves[3])) != 0;
}

[[gnu::always_inline]] inline Words chosen(Words mask, Words yes, Words no) {
    return (mask & yes) | (~mask & no);
}

[[gnu::always_inline]] inline Floats magnitude(Floats value) {
    return reinterpret_cast<Floats>(reinterpret_cast<Words>(value) & 0x7fffffff);
}

[[gnu::always_inline]] inline Floats components(Words pixels, int shift) {
    return __builtin_convertvector((pixels >> shift) & 0xff, Floats);
}

[[gnu::always_inline]] inline Doubles components(ExactWords pixels, int shift) {
    return __builtin_convertvector((pixels >> shift) & 0xff, Doubles);
}

/// Values and whether each is so close to a whole number that the doubt
/// decides.
struct Truncated {
    Words whole;
    Words isDoubtful;
};

[[gnu::always_inline]] inline Truncated truncated(Floats value, Floats doubt) {
    const Words whole = __builtin_convertvector(value, Words);
    const Floats rest = value - __builtin_convertvector(whole, Floats);
    return {whole, magnitude(rest - 0.5F) > 0.5F - doubt};
}

/// As a byte. What lies beyond the first or the last byte is held well within
/// it, clear of doubt.
[[gnu::always_inline]] inline Truncated truncatedToByte(Floats value, Floats doubt) {
    const Floats low = value > 0.25F ? value : Floats{} + 0.25F;
    return truncated(low < 255.25F ? low : Floats{} + 255.25F, doubt);
}

/// Pixels, and which of them were written.
template <typename Pixels>
struct Removed {
    Pixels pixels;
    Pixels isWritten;
};

/// The definition, operation by operation.
[[gnu::always_inline]] inline Removed<ExactWords> removedExactly(ExactWords pixels,
                                                                 const ColorRemoval& removal) {
    const Doubles red = components(pixels, 0);
    const Doubles green = components(pixels, 8);
    const Doubles blue = components(pixels, 16);
    const Doubles squares = (red - removal.red) * (red - removal.red) +
                            (green - removal.green) * (green - removal.green) +
                            (blue - removal.blue) * (blue - removal.blue);
    Doubles alpha;
    for (std::size_t i = 0; i < exactLanes; ++i)
        alpha[i] = removal.factor * __builtin_sqrt(squares[i]);
    const Doubles share = alpha / 255.0;
    const auto byteOf = [](Doubles value) __attribute__((always_inline)) {
        const Doubles low = value > 0.0 ? value : Doubles{};
        return __builtin_convertvector(low < 255.0 ? low : Doubles{} + 255.0, ExactWords);
    };
    const auto unmixed = [&](Doubles mixed, double removed) __attribute__((always_inline)) {
        return byteOf((mixed - removed * (1.0 - share)) / share);
    };
    const Doubles stored = share * 255.0;
    const ExactWords whole = byteOf(stored);
    const ExactWords half = __builtin_convertvector(
        stored - __builtin_convertvector(whole, Doubles) >= 0.5, ExactWords);
    const ExactWords written = unmixed(red, removal.red) | unmixed(green, removal.green) << 8 |
                               unmixed(blue, removal.blue) << 16 | (whole - half) << 24;
    const auto isCleared = __builtin_convertvector(alpha <= removal.threshold, ExactWords);
    // An alpha so small that it has no share leaves its pixel alone.
    const auto isKept = __builtin_convertvector(
        (alpha >= components((pixels >> 24) & 0xff, 0)) | (share <= 0.0), ExactWords);
    return {~isCleared & ((isKept & pixels) | (~isKept & written)), isCleared | ~isKept};
}

[[gnu::always_inline]] inline Removed<Words> removedExactly(Words pixels,
                                                            const ColorRemoval& removal) {
    Removed<Words> result{};
    for (std::size_t i = 0; i < 2; ++i) {
        const auto half = removedExactly(
            loaded<ExactWords>(reinterpret_cast<const std::uint8_t*>(&pixels) + 16 * i), removal);
        std::memcpy(reinterpret_cast<std::uint8_t*>(&result.pixels) + 16 * i, &half.pixels, 16);
        std::memcpy(reinterpret_cast<std::uint8_t*>(&result.isWritten) + 16 * i, &half.isWritten,
                    16);
    }
    return result;
}

/// The removed colour and the limits in single precision.
struct Rough {
    explicit Rough(const ColorRemoval& removal)
        : red(static_cast<float>(removal.red)),
          green(static_cast<float>(removal.green)),
          blue(static_cast<float>(removal.blue)),
          factor(static_cast<float>(removal.factor)),
          threshold(static_cast<float>(removal.threshold)) {}

    float red;
    float green;
    float blue;
    float factor;
    float threshold;
};

QUILLABRAE_WIDE_KERNEL
void measure(Run& run, const Rough& rough) {
    const Rough removed = rough;
    for (std::size_t i = 0; i < runLength; ++i) {
        const auto component = [&](int shift) {
            return static_cast<float>(
                static_cast<std::int32_t>((run.straight[i] >> shift) & 0xffU));
        };
        const float red = component(0) - removed.red;
        const float green = component(8) - removed.green;
        const float blue = component(16) - removed.blue;
        run.alpha[i] = removed.factor * std::sqrt(red * red + green * green + blue * blue);
    }
}

[[gnu::always_inline]] inline Removed<Words> removed(Words pixels, Floats alpha, const Rough& rough,
                                                     const ColorRemoval& removal) {
    const Floats own = components((pixels >> 24) & 0xff, 0);
    const Words isCleared = alpha <= rough.threshold;
    const Words isSettled = isCleared | (alpha >= own);
    const Words isVerdictDoubtful =
        (magnitude(alpha - rough.threshold) < alphaDoubt) | (magnitude(alpha - own) < alphaDoubt);
    if (isAny(isVerdictDoubtful)) return removedExactly(pixels, removal);
    if (!isAny(~isSettled)) return {~isCleared & pixels, isCleared};

    // Settled pixels get an alpha that raises no doubt.
    alpha = isSettled ? Floats{} + 128.25F : alpha;
    const Floats inverse = 255.0F / alpha;
    const Floats doubt = componentDoubt + componentDoubtByShare * inverse;
    const auto unmixed = [&](int shift, float mixedIn) __attribute__((always_inline)) {
        return truncatedToByte(mixedIn + (components(pixels, shift) - mixedIn) * inverse, doubt);
    };
    const Truncated red = unmixed(0, rough.red);
    const Truncated green = unmixed(8, rough.green);
    const Truncated blue = unmixed(16, rough.blue);
    const Truncated stored = truncated(alpha + 0.5F, Floats{} + alphaDoubt);
    const Words isDoubtful = red.isDoubtful | green.isDoubtful | blue.isDoubtful |
                             stored.isDoubtful | (alpha < leastAlpha);
    if (isAny(~isSettled & isDoubtful)) return removedExactly(pixels, removal);
    const Words written = red.whole | green.whole << 8 | blue.whole << 16 | stored.whole << 24;
    return {~isCleared & chosen(isSettled, pixels, written), isCleared | ~isSettled};
}

/// Whether any pixel was written.
QUILLABRAE_WIDE_KERNEL
bool remove(Run& run, const Rough& rough, const ColorRemoval& removal) {
    // Flat colour is the rule in pictures that a colour is removed from: it is
    // worked out once.
    Words lastPixels = ~loaded<Words>(run.straight.data());
    Removed<Words> last{};
    Words isWritten{};
    for (std::size_t i = 0; i < runLength; i += lanes) {
        const auto pixels = loaded<Words>(run.straight.data() + i);
        if (isAny(pixels ^ lastPixels)) {
            lastPixels = pixels;
            last = removed(pixels, loaded<Floats>(run.alpha.data() + i), rough, removal);
            isWritten |= last.isWritten;
        }
        std::memcpy(run.straight.data() + i, &last.pixels, sizeof last.pixels);
    }
    return isAny(isWritten);
}

} // namespace

bool removeColorFromPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount,
                           const ColorRemoval& removal) {
    const Rough rough(removal);
    Run run;
    auto* const straight = reinterpret_cast<std::uint8_t*>(run.straight.data());
    bool isAnyWritten = false;
    for (std::size_t i = 0; i < pixelCount; i += runLength) {
        const std::size_t count = std::min(runLength, pixelCount - i);
        unpremultiplyPixels(from + 4 * i, straight, count);
        // A short run ends in copies of its first pixel, whose verdict counts
        // anyway.
        std::fill(run.straight.begin() + static_cast<std::ptrdiff_t>(count), run.straight.end(),
                  run.straight.front());
        measure(run, rough);
        if (remove(run, rough, removal)) {
            premultiplyPixels(straight, to + 4 * i, count);
            isAnyWritten = true;
        } else if (from != to) {
            std::memcpy(to + 4 * i, from + 4 * i, 4 * count);
        }
    }
    return isAnyWritten;
}

} // namespace quillabrae::raster
