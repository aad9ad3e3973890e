// SPDX-License-Identifier: GPL-3.0-or-later
// a = factor * |p - t|; c = (p - t * (1 - a / 255)) / (a / 255), truncated
//
// The definition is in double precision and its results are truncated, so single precision gives
// the same bytes except where a value comes out close to a border: a whole number, the threshold,
// the pixel's own alpha. Those pixels are found by bounds on the error and done again exactly.
//
// The bounds, with single-precision rounding of 2^-24 relative and components up to 255: t is off
// by 8e-6 and p - t by 1.6e-5; the distance by 2.8e-5 and 2.5e-7 of itself; a by 2.8e-5 * factor
// and 4e-7 of itself. c = t + (p - t) * 255 / a, where it lies between 0 and 256, is off by less
// than 1.8e-4 + 1.2e-2 / a. All doubts below are half as large again, less the step or two of 6e-5
// that numbers in fixed point lose.
#include "raster/ColorRemovalKernel.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

using lanes::Words;

constexpr float alphaDoubt = 2e-4F;
/// Times the factor.
constexpr float alphaDoubtByFactor = 4.5e-5F;
constexpr float componentDoubt = 3e-4F;
/// Times 255 / a.
constexpr float componentDoubtByShare = 7e-5F;

/// Alphas and components are compared in fixed point: the largest component that is not left to
/// the exact form, 255 * 255 / leastAlpha and a little, still fits.
constexpr int fixedBits = 14;
constexpr std::int32_t fixedOne = 1 << fixedBits;
constexpr auto fixedScale = static_cast<float>(fixedOne);
constexpr std::int32_t fixedFraction = fixedOne - 1;
/// Below it, alphas are left to the exact form.
constexpr std::int32_t leastAlpha = fixedOne;

/// Pixels worked on at once: few enough that what is noted about them stays in the nearest cache.
constexpr std::size_t runLength = 256;

using Ints = std::int32_t __attribute__((vector_size(4 * lanes::count)));
using Floats = float __attribute__((vector_size(4 * lanes::count)));

constexpr std::size_t exactLanes = 4;
using ExactWords = std::int32_t __attribute__((vector_size(4 * exactLanes)));
using Doubles = double __attribute__((vector_size(8 * exactLanes)));

/// Room for the pixels of a run.
using RunPixels = std::array<std::uint8_t, 4 * runLength>;

/// What is noted about a run of pixels, and room to work in.
struct Run {
    /// The alpha that each pixel would have, nearly, and 255 over it, both in fixed point. They are
    /// worked out ahead: roots and quotients take so long that little else is done meanwhile where
    /// each is waited for.
    std::array<float, runLength> alpha{};
    std::array<float, runLength> inverse{};
    /// Where the fours of pixels begin that are to be done again. They are gathered first: the
    /// exact form is slow one at a time, and no branch can tell ahead where it is needed.
    std::array<std::size_t, runLength / exactLanes + 1> doubtful{};
    std::size_t doubtfulCount = 0;
    /// What becomes of those, four after four.
    RunPixels exact{};
    RunPixels straight{};
};

[[gnu::always_inline]] inline Doubles components(ExactWords pixels, int shift) {
    return __builtin_convertvector((pixels >> shift) & 0xff, Doubles);
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

/// The removed colour and the limits in single precision and in fixed point.
struct Rough {
    explicit Rough(const ColorRemoval& removal)
        : color{static_cast<float>(removal.red), static_cast<float>(removal.green),
                static_cast<float>(removal.blue)},
          factor(static_cast<float>(removal.factor) * fixedScale),
          threshold(static_cast<std::int32_t>(removal.threshold * fixedOne)),
          doubt(static_cast<std::int32_t>(
              fixedScale * (alphaDoubt + alphaDoubtByFactor * static_cast<float>(removal.factor)) +
              1.0F)) {}

    std::array<float, 3> color;
    /// Gives alphas in fixed point.
    float factor;
    std::int32_t threshold;
    /// Of an alpha.
    std::int32_t doubt;
};

[[gnu::always_inline]] inline Ints larger(Ints a, Ints b) {
    return a > b ? a : b;
}

[[gnu::always_inline]] inline Ints smaller(Ints a, Ints b) {
    return a < b ? a : b;
}

/// Positive numbers in single precision have the order of their bits.
[[gnu::always_inline]] inline Floats atLeast(Floats value, float limit) {
    return reinterpret_cast<Floats>(
        larger(reinterpret_cast<Ints>(value), reinterpret_cast<Ints>(Floats{} + limit)));
}

[[gnu::always_inline]] inline Ints isWithin(Ints value, Ints center, std::int32_t doubt) {
    return reinterpret_cast<Words>(value - (center - doubt)) <=
           static_cast<std::uint32_t>(2 * doubt);
}

template <int shift>
[[gnu::always_inline]] inline Floats component(Words pixels) {
    return __builtin_convertvector(reinterpret_cast<Ints>((pixels >> shift) & 0xffU), Floats);
}

/// A pixel's alpha as `Run` holds those that it would have.
[[gnu::always_inline]] inline Ints ownAlpha(Words straight) {
    return reinterpret_cast<Ints>((straight >> 24) << fixedBits);
}

[[gnu::always_inline]] inline bool isAny(Ints mask) {
    const auto parts = reinterpret_cast<std::int64_t __attribute__((vector_size(32)))>(mask);
    return ((parts[0] | parts[1]) | (parts[2] | parts[3])) != 0;
}

/// Fills in the alphas of a run. Whether any pixel may not be left alone. `count` is a multiple of
/// the lanes.
QUILLABRAE_WIDE_KERNEL
bool measure(const std::uint8_t* straight, Run& run, std::size_t count, const Rough& rough) {
    const Rough limits = rough;
    Ints isAnyInReach{};
    for (std::size_t i = 0; i < count; i += lanes::count) {
        const Words pixels = lanes::loadPixels(straight + 4 * i);
        const Floats red = component<0>(pixels) - limits.color[0];
        const Floats green = component<8>(pixels) - limits.color[1];
        const Floats blue = component<16>(pixels) - limits.color[2];
        const Floats squares = red * red + green * green + blue * blue;
        Floats alpha;
        for (std::size_t k = 0; k < lanes::count; ++k) alpha[k] = __builtin_sqrtf(squares[k]);
        alpha *= limits.factor;
        const Floats inverse = (255.0F * fixedScale * fixedScale) / atLeast(alpha, leastAlpha);
        std::memcpy(run.alpha.data() + i, &alpha, sizeof alpha);
        std::memcpy(run.inverse.data() + i, &inverse, sizeof inverse);
        const Ints reach = larger(ownAlpha(pixels), Ints{} + limits.threshold) + limits.doubt;
        isAnyInReach |= __builtin_convertvector(alpha, Ints) <= reach;
    }
    return isAny(isAnyInReach);
}

/// What becomes of pixels, premultiplied, and which of them are in doubt.
struct Nearly {
    Words pixels;
    Ints isWritten;
    Ints isDoubtful;
};

[[gnu::always_inline]] inline Nearly removed(Words straight, Words original, Floats alpha,
                                             Floats inverse, const Rough& rough) {
    const Ints fixedAlpha = __builtin_convertvector(alpha, Ints);
    const Ints own = ownAlpha(straight);
    const Ints isCleared = fixedAlpha <= rough.threshold;
    const Ints isKept = fixedAlpha >= own;
    const Ints isVerdictDoubtful = isWithin(fixedAlpha, Ints{} + rough.threshold, rough.doubt) |
                                   isWithin(fixedAlpha, own, rough.doubt);

    // In fixed point, and more by the doubt: what would be less than twice the doubt above a whole
    // number is doubtful, and all else truncates as it should. What truncates to the first byte or
    // the last is held well within it.
    const Floats doubt = componentDoubt * fixedScale + componentDoubtByShare * inverse;
    const auto unmixed = [&](Floats mixed, float color) __attribute__((always_inline)) {
        const Floats value = (mixed - color) * inverse + (doubt + color * fixedScale);
        return smaller(larger(__builtin_convertvector(value, Ints), Ints{} + fixedOne / 2),
                       Ints{} + (255 * fixedOne + fixedOne / 2));
    };
    const Ints unmixedRed = unmixed(component<0>(straight), rough.color[0]);
    const Ints unmixedGreen = unmixed(component<8>(straight), rough.color[1]);
    const Ints unmixedBlue = unmixed(component<16>(straight), rough.color[2]);
    const Ints nearest = smaller(smaller(unmixedRed & fixedFraction, unmixedGreen & fixedFraction),
                                 unmixedBlue & fixedFraction);
    const Ints stored = fixedAlpha + (fixedOne / 2 + rough.doubt);
    const Ints isValueDoubtful = (nearest < __builtin_convertvector(doubt + doubt, Ints)) |
                                 ((stored & fixedFraction) < 2 * rough.doubt) |
                                 (fixedAlpha < leastAlpha);

    const auto whole = [](Ints value) __attribute__((always_inline)) {
        return reinterpret_cast<Words>(value) >> fixedBits;
    };
    // An alpha times itself whole stays.
    const Words factors = whole(stored) | whole(stored) << 16;
    const auto scaled = [&](Words components) __attribute__((always_inline)) {
        return reinterpret_cast<Words>(lanes::product(reinterpret_cast<lanes::Halves>(components),
                                                      reinterpret_cast<lanes::Halves>(factors)));
    };
    const Words written = scaled(whole(unmixedRed) | whole(unmixedBlue) << 16) |
                          scaled(whole(unmixedGreen) | 0xff0000U) << 8;
    const auto kept = reinterpret_cast<Words>(isKept);
    const auto cleared = reinterpret_cast<Words>(isCleared);
    return {((original & kept) | (written & ~kept)) & ~cleared, isCleared | ~isKept,
            isVerdictDoubtful | (~(isCleared | isKept) & isValueDoubtful)};
}

/// Whether any pixel was written that is not in doubt. `count` is a multiple of the lanes.
QUILLABRAE_WIDE_KERNEL
bool removeNearly(const std::uint8_t* straight, const std::uint8_t* from, std::uint8_t* to,
                  std::size_t count, Run& run, const Rough& rough) {
    const Rough limits = rough;
    Ints isWritten{};
    std::size_t doubtful = 0;
    for (std::size_t i = 0; i < count; i += lanes::count) {
        Floats alpha;
        Floats inverse;
        std::memcpy(&alpha, run.alpha.data() + i, sizeof alpha);
        std::memcpy(&inverse, run.inverse.data() + i, sizeof inverse);
        const Nearly nearly = removed(lanes::loadPixels(straight + 4 * i),
                                      lanes::loadPixels(from + 4 * i), alpha, inverse, limits);
        lanes::storePixels(to + 4 * i, nearly.pixels);
        isWritten |= nearly.isWritten & ~nearly.isDoubtful;
        const auto fours =
            reinterpret_cast<std::int64_t __attribute__((vector_size(32)))>(nearly.isDoubtful);
        run.doubtful[doubtful] = i;
        doubtful += (fours[0] | fours[1]) != 0 ? 1 : 0;
        run.doubtful[doubtful] = i + exactLanes;
        doubtful += (fours[2] | fours[3]) != 0 ? 1 : 0;
    }
    run.doubtfulCount = doubtful;
    return isAny(isWritten);
}

[[gnu::always_inline]] inline ExactWords fourPixels(const std::uint8_t* from) {
    ExactWords pixels;
    std::memcpy(&pixels, from, sizeof pixels);
    return pixels;
}

/// Whether any pixel was written of those in doubt.
QUILLABRAE_WIDE_KERNEL
bool removeExactly(const std::uint8_t* straight, Run& run, const ColorRemoval& removal) {
    ExactWords isWritten{};
    ExactWords lastPixels{};
    Removed<ExactWords> last{};
    for (std::size_t i = 0; i < run.doubtfulCount; ++i) {
        const ExactWords pixels = fourPixels(straight + 4 * run.doubtful[i]);
        const ExactWords change = pixels ^ lastPixels;
        // Flat colour that is the removed one, or shares a component with it, is all in doubt: it
        // is worked out once.
        if (i == 0 || (change[0] | change[1] | change[2] | change[3]) != 0) {
            last = removedExactly(pixels, removal);
            lastPixels = pixels;
        }
        isWritten |= last.isWritten;
        std::memcpy(run.exact.data() + i * sizeof last.pixels, &last.pixels, sizeof last.pixels);
    }
    premultiplyPixels(run.exact.data(), run.exact.data(), exactLanes * run.doubtfulCount);
    return (isWritten[0] | isWritten[1] | isWritten[2] | isWritten[3]) != 0;
}

/// Removes one colour from runs of at most `runLength` pixels; whether any was written.
class Remover {
public:
    explicit Remover(const ColorRemoval& removal) : m_removal(removal), m_rough(removal) {}

    bool removeFrom(const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
        // Flat colour is the rule in pictures that a colour is removed from.
        if (std::memcmp(from, from + 4, 4 * (count - 1)) == 0) return removeFlat(from, to, count);
        if (count % lanes::count != 0) return removePadded(from, to, count);
        return removeLanes(from, to, count);
    }

private:
    /// `count` is a multiple of the lanes.
    bool removeLanes(const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
        const std::uint8_t* straight = from;
        if (!isAlphaTrivial(from, count)) {
            unpremultiplyPixels(from, m_run.straight.data(), count);
            straight = m_run.straight.data();
        }
        if (!measure(straight, m_run, count, m_rough)) {
            std::memcpy(to, from, 4 * count);
            return false;
        }
        const bool isSureWritten = removeNearly(straight, from, to, count, m_run, m_rough);
        if (m_run.doubtfulCount == 0) return isSureWritten;
        const bool isDoubtfulWritten = removeExactly(straight, m_run, m_removal);
        for (std::size_t i = 0; i < m_run.doubtfulCount; ++i)
            std::memcpy(to + 4 * m_run.doubtful[i], m_run.exact.data() + sizeof(ExactWords) * i,
                        sizeof(ExactWords));
        return isSureWritten || isDoubtfulWritten;
    }

    bool removeFlat(const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
        for (std::size_t i = 0; i < lanes::count; ++i) std::memcpy(m_from.data() + 4 * i, from, 4);
        const bool isWritten = removeLanes(m_from.data(), m_to.data(), lanes::count);
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, m_to.data(), sizeof pixel);
        for (std::size_t i = 0; i < count; ++i) std::memcpy(to + 4 * i, &pixel, sizeof pixel);
        return isWritten;
    }

    /// A run that ends within the lanes: those past its end hold its first pixel, whose verdict
    /// counts anyway.
    bool removePadded(const std::uint8_t* from, std::uint8_t* to, std::size_t count) {
        const std::size_t padded = (count + lanes::count - 1) / lanes::count * lanes::count;
        std::memcpy(m_from.data(), from, 4 * count);
        for (std::size_t i = count; i < padded; ++i) std::memcpy(m_from.data() + 4 * i, from, 4);
        const bool isWritten = removeLanes(m_from.data(), m_to.data(), padded);
        std::memcpy(to, m_to.data(), 4 * count);
        return isWritten;
    }

    const ColorRemoval& m_removal;
    Rough m_rough;
    Run m_run;
    RunPixels m_from{};
    RunPixels m_to{};
};

} // namespace

bool removeColorFromPixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount,
                           const ColorRemoval& removal) {
    Remover remover(removal);
    bool isAnyWritten = false;
    for (std::size_t i = 0; i < pixelCount; i += runLength) {
        const std::size_t count = std::min(runLength, pixelCount - i);
        isAnyWritten = remover.removeFrom(from + 4 * i, to + 4 * i, count) || isAnyWritten;
    }
    return isAnyWritten;
}

} // namespace quillabrae::raster
