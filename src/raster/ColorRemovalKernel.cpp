// SPDX-License-Identifier: GPL-3.0-or-later
// a = factor * |p - t|; c = (p - t * (1 - a / 255)) / (a / 255), truncated
//
// The definition is in double precision and its results are truncated, so
// single precision gives the same bytes except where a value comes out close to
// a border: a whole number, the threshold, the pixel's own alpha. Those pixels
// are found by bounds on the error and done again exactly.
//
// The bounds, with single-precision rounding of 2^-24 relative and components up to 255: t is off
// by 8e-6 and p - t by 1.6e-5; the distance by 2.8e-5 and 2.5e-7 of itself; a by 2.8e-5 * factor
// and 4e-7 of itself. c = t + (p - t) * 255 / a, where it lies between 0 and 256, is off by less
// than 1.8e-4 + 1.2e-2 / a. All doubts below are half as large again.
#include "raster/ColorRemovalKernel.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr float alphaDoubt = 2e-4F;
/// Times the factor.
constexpr float alphaDoubtByFactor = 4.5e-5F;
constexpr float componentDoubt = 3e-4F;
/// Times 255 / a.
constexpr float componentDoubtByShare = 7e-5F;
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

/// A run at work.
struct Run {
    std::array<std::uint32_t, runLength> straight{};
    /// The alpha that each pixel would have, nearly.
    std::array<float, runLength> alpha{};
    /// What becomes of each pixel, straight.
    std::array<std::uint32_t, runLength> result{};
    /// Where the fours of pixels begin that are to be done again. They are gathered first: the
    /// exact form is slow one at a time, and no branch can tell ahead where it is needed.
    std::array<std::size_t, runLength / exactLanes + 1> doubtful{};
    std::size_t doubtfulCount = 0;
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

/// The removed colour and the limits in single precision.
struct Rough {
    explicit Rough(const ColorRemoval& removal)
        : red(static_cast<float>(removal.red)),
          green(static_cast<float>(removal.green)),
          blue(static_cast<float>(removal.blue)),
          factor(static_cast<float>(removal.factor)),
          threshold(static_cast<float>(removal.threshold)),
          doubt(alphaDoubt + alphaDoubtByFactor * factor) {}

    float red;
    float green;
    float blue;
    float factor;
    float threshold;
    /// Of an alpha.
    float doubt;
};

QUILLABRAE_WIDE_KERNEL
void measure(Run& run, std::size_t count, const Rough& rough) {
    const Rough removed = rough;
    for (std::size_t i = 0; i < count; ++i) {
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

/// What becomes of pixels, and which of them are in doubt.
struct Nearly {
    Removed<Words> removed;
    Words isDoubtful;
};

[[gnu::always_inline]] inline Nearly removed(Words pixels, Floats alpha, const Rough& rough) {
    const Floats own = components((pixels >> 24) & 0xff, 0);
    const Words isCleared = alpha <= rough.threshold;
    const Words isSettled = isCleared | (alpha >= own);
    const Words isVerdictDoubtful =
        (magnitude(alpha - rough.threshold) < rough.doubt) | (magnitude(alpha - own) < rough.doubt);
    if (!isAny(~isSettled)) return {{~isCleared & pixels, isCleared}, isVerdictDoubtful};

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
    const Truncated stored = truncated(alpha + 0.5F, Floats{} + rough.doubt);
    const Words isDoubtful = red.isDoubtful | green.isDoubtful | blue.isDoubtful |
                             stored.isDoubtful | (alpha < leastAlpha);
    const Words written = red.whole | green.whole << 8 | blue.whole << 16 | stored.whole << 24;
    return {{~isCleared & chosen(isSettled, pixels, written), isCleared | ~isSettled},
            isVerdictDoubtful | (~isSettled & isDoubtful)};
}

/// Whether any pixel was written that is not in doubt.
QUILLABRAE_WIDE_KERNEL
bool removeNearly(Run& run, std::size_t count, const Rough& rough) {
    Words isWritten{};
    std::size_t doubtful = 0;
    for (std::size_t i = 0; i < count; i += lanes) {
        const Nearly nearly = removed(loaded<Words>(run.straight.data() + i),
                                      loaded<Floats>(run.alpha.data() + i), rough);
        std::memcpy(run.result.data() + i, &nearly.removed.pixels, sizeof nearly.removed.pixels);
        isWritten |= nearly.removed.isWritten & ~nearly.isDoubtful;
        const auto doubts =
            reinterpret_cast<std::int64_t __attribute__((vector_size(32)))>(nearly.isDoubtful);
        run.doubtful[doubtful] = i;
        doubtful += (doubts[0] | doubts[1]) != 0 ? 1 : 0;
        run.doubtful[doubtful] = i + exactLanes;
        doubtful += (doubts[2] | doubts[3]) != 0 ? 1 : 0;
    }
    run.doubtfulCount = doubtful;
    return isAny(isWritten);
}

/// Whether any pixel was written of those in doubt.
QUILLABRAE_WIDE_KERNEL
bool removeExactly(Run& run, const ColorRemoval& removal) {
    ExactWords isWritten{};
    ExactWords lastPixels{};
    Removed<ExactWords> last{};
    for (std::size_t i = 0; i < run.doubtfulCount; ++i) {
        const std::size_t place = run.doubtful[i];
        const auto pixels = loaded<ExactWords>(run.straight.data() + place);
        const ExactWords change = pixels ^ lastPixels;
        // Flat colour that is the removed one, or shares a component with it, is all in doubt: it
        // is worked out once.
        if (i == 0 || (change[0] | change[1] | change[2] | change[3]) != 0) {
            last = removedExactly(pixels, removal);
            lastPixels = pixels;
        }
        isWritten |= last.isWritten;
        std::memcpy(run.result.data() + place, &last.pixels, sizeof last.pixels);
    }
    return (isWritten[0] | isWritten[1] | isWritten[2] | isWritten[3]) != 0;
}

/// What becomes of the first `count` pixels, a multiple of the lanes. Whether any was written.
bool removeFromRun(Run& run, std::size_t count, const Rough& rough, const ColorRemoval& removal) {
    measure(run, count, rough);
    const bool isSureWritten = removeNearly(run, count, rough);
    const bool isDoubtfulWritten = removeExactly(run, removal);
    return isSureWritten || isDoubtfulWritten;
}

std::uint8_t* bytesOf(std::array<std::uint32_t, runLength>& pixels) {
    return reinterpret_cast<std::uint8_t*>(pixels.data());
}

} // namespace

bool removeColorFromPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount,
                           const ColorRemoval& removal) {
    const Rough rough(removal);
    Run run;
    bool isAnyWritten = false;
    for (std::size_t i = 0; i < pixelCount;
         i += runLength, from += 4 * runLength, to += 4 * runLength) {
        const std::size_t count = std::min(runLength, pixelCount - i);
        // Flat colour is the rule in pictures that a colour is removed from.
        const bool isFlat = std::memcmp(from, from + 4, 4 * (count - 1)) == 0;
        const std::size_t distinct = isFlat ? 1 : count;
        const std::size_t worked = (distinct + lanes - 1) / lanes * lanes;
        unpremultiplyPixels(from, bytesOf(run.straight), distinct);
        // Lanes past the end hold the first pixel, whose verdict counts anyway.
        std::fill(run.straight.begin() + static_cast<std::ptrdiff_t>(distinct),
                  run.straight.begin() + static_cast<std::ptrdiff_t>(worked), run.straight.front());
        if (!removeFromRun(run, worked, rough, removal)) {
            if (from != to) std::memcpy(to, from, 4 * count);
            continue;
        }
        isAnyWritten = true;
        premultiplyPixels(bytesOf(run.result), bytesOf(run.result), distinct);
        if (isFlat) std::fill_n(run.result.begin() + 1, count - 1, run.result.front());
        std::memcpy(to, run.result.data(), 4 * count);
    }
    return isAnyWritten;
}

} // namespace quillabrae::raster
