// SPDX-License-Identifier: GPL-3.0-or-later
// With whole numbers D = dr^2 + dg^2 + db^2 + da^2 over bytes, sqrt(D) / 255 <= t holds exactly for
// the D up to one limit, which is found once for each seed; the same with alpha / 255 <= t.
#include "raster/SimilarPixels.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::size_t pixelsPerWord = 64;
constexpr double distancePerPercent = 1.732 / 100.0;
constexpr double leastTransparentTolerance = 0.001;
constexpr std::uint32_t greatestSquare = 4 * 255 * 255;

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

/// The squares of the differences of two bytes in each word, 16 bits apart, added up. The
/// difference may wrap around in its 16 bits, and its square is right all the same.
[[gnu::always_inline]] inline Words squareSum(Words bytes, Words seed) {
    const Halves difference = reinterpret_cast<Halves>(bytes) - reinterpret_cast<Halves>(seed);
    const auto squares = reinterpret_cast<Words>(difference * difference);
    return (squares & 0xffffU) + (squares >> 16);
}

/// One bit for each lane of a comparison's result.
[[gnu::always_inline]] inline std::uint64_t laneBits(Words comparison) {
    const Bytes bytes = __builtin_convertvector(comparison & 1U, Bytes);
    std::uint64_t spread;
    std::memcpy(&spread, &bytes, sizeof spread);
    return (spread * 0x0102040810204080U) >> 56;
}

QUILLABRAE_WIDE_KERNEL
std::uint64_t nearBits(const std::uint8_t* pixels, std::uint32_t seed, std::uint32_t greatest) {
    const Words seedEven = Words{} + (seed & evenBytes);
    const Words seedOdd = Words{} + ((seed >> 8) & evenBytes);
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < pixelsPerWord; i += lanes) {
        const Words pixel = loadPixels(pixels + 4 * i);
        const Words square =
            squareSum(pixel & evenBytes, seedEven) + squareSum((pixel >> 8) & evenBytes, seedOdd);
        const auto isNear = reinterpret_cast<Words>(square <= greatest);
        const auto isVisible = reinterpret_cast<Words>((pixel >> 24) != 0U);
        bits |= laneBits(isNear & isVisible) << i;
    }
    return bits;
}

QUILLABRAE_WIDE_KERNEL
std::uint64_t faintBits(const std::uint8_t* pixels, std::uint32_t greatestAlpha) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < pixelsPerWord; i += lanes) {
        const Words pixel = loadPixels(pixels + 4 * i);
        bits |= laneBits(reinterpret_cast<Words>((pixel >> 24) <= greatestAlpha)) << i;
    }
    return bits;
}

/// The greatest n up to `end` for which `holds(n)`, which holds for 0 and up to some n.
template <typename Holds>
std::uint32_t greatest(std::uint32_t end, Holds holds) {
    std::uint32_t low = 0;
    while (low < end) {
        const std::uint32_t middle = low + (end - low + 1) / 2;
        if (holds(middle))
            low = middle;
        else
            end = middle - 1;
    }
    return low;
}

std::uint32_t wordOf(PixelColor color) {
    return static_cast<std::uint32_t>(color.red) | static_cast<std::uint32_t>(color.green) << 8 |
           static_cast<std::uint32_t>(color.blue) << 16 |
           static_cast<std::uint32_t>(color.alpha) << 24;
}

} // namespace

SimilarPixels::SimilarPixels(PixelColor seed, double matchPercentage) : m_seed(seed) {
    const double percentage = matchPercentage > 0.0 ? std::min(matchPercentage, 100.0) : 0.0;
    const double tolerance = percentage * distancePerPercent;
    const double transparentTolerance = std::max(percentage / 100.0, leastTransparentTolerance);
    m_greatestDistance = greatest(greatestSquare, [=](std::uint32_t square) {
        return std::sqrt(square / (255.0 * 255.0)) <= tolerance;
    });
    m_greatestAlpha =
        greatest(255, [=](std::uint32_t alpha) { return alpha / 255.0 <= transparentTolerance; });
}

std::uint64_t SimilarPixels::bitsOfStraight(const std::uint8_t* pixels) const {
    if (m_seed.alpha == 0) return faintBits(pixels, m_greatestAlpha);
    return nearBits(pixels, wordOf(m_seed), m_greatestDistance);
}

/// Up to a word's pixels.
std::uint64_t SimilarPixels::bitsOf(const std::uint8_t* pixels, std::size_t pixelCount) const {
    const bool isStraight = m_seed.alpha == 0 || isAlphaTrivial(pixels, pixelCount);
    if (isStraight && pixelCount == pixelsPerWord) return bitsOfStraight(pixels);
    std::array<std::uint8_t, 4 * pixelsPerWord> straight{};
    if (isStraight)
        std::memcpy(straight.data(), pixels, 4 * pixelCount);
    else
        unpremultiplyPixels(pixels, straight.data(), pixelCount);
    return bitsOfStraight(straight.data()) & (~std::uint64_t{0} >> (pixelsPerWord - pixelCount));
}

void SimilarPixels::writeBits(const std::uint8_t* pixels, std::size_t pixelCount,
                              std::uint64_t* words) const {
    for (std::size_t i = 0; i < pixelCount; i += pixelsPerWord)
        words[i / pixelsPerWord] = bitsOf(pixels + 4 * i, std::min(pixelsPerWord, pixelCount - i));
}

} // namespace quillabrae::raster
