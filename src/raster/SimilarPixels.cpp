// SPDX-License-Identifier: GPL-3.0-or-later
// With whole numbers D = dr^2 + dg^2 + db^2 + da^2 over bytes, sqrt(D) / 255 <= t holds exactly for
// the D up to one limit, which is found once for each seed; the same with alpha / 255 <= t.
#include "raster/SimilarPixels.h"

#include "raster/AlphaKernels.h"
#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

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

using lanes::evenBytes;
using lanes::Halves;
using lanes::loadPixels;
using lanes::Words;

/// The squares of the differences of two bytes in each word, 16 bits apart, added up. The
/// difference may wrap around in its 16 bits, and its square is right all the same.
[[gnu::always_inline]] inline Words squareSum(Words bytes, Words seed) {
    const Halves difference = reinterpret_cast<Halves>(bytes) - reinterpret_cast<Halves>(seed);
    const auto squares = reinterpret_cast<Words>(difference * difference);
    return (squares & 0xffffU) + (squares >> 16);
}

/// With bit k of lane i for pixel 8 k + i: bit 8 k + i. The lanes' low bytes are an 8 by 8 matrix
/// of bits, which is transposed in blocks of 1, 2 and 4.
[[gnu::always_inline]] inline std::uint64_t transposedBits(Words columns) {
    const auto bytes = __builtin_convertvector(columns, lanes::Alphas);
    std::uint64_t bits;
    std::memcpy(&bits, &bytes, sizeof bits);
    std::uint64_t swapped = (bits ^ (bits >> 7)) & 0x00aa00aa00aa00aaU;
    bits ^= swapped ^ (swapped << 7);
    swapped = (bits ^ (bits >> 14)) & 0x0000cccc0000ccccU;
    bits ^= swapped ^ (swapped << 14);
    swapped = (bits ^ (bits >> 28)) & 0x00000000f0f0f0f0U;
    return bits ^ swapped ^ (swapped << 28);
}

[[gnu::always_inline]] inline bool isAllZero(Words words) {
    std::array<std::uint64_t, 4> parts{};
    std::memcpy(parts.data(), &words, sizeof words);
    return (parts[0] | parts[1] | parts[2] | parts[3]) == 0;
}

/// What the seed asks of straight pixels.
struct Near {
    std::uint32_t seed;
    std::uint32_t greatestDistance;

    [[gnu::always_inline]] Words operator()(Words pixel) const {
        const Words square =
            squareSum(pixel & evenBytes, Words{} + (seed & evenBytes)) +
            squareSum((pixel >> 8) & evenBytes, Words{} + ((seed >> 8) & evenBytes));
        return reinterpret_cast<Words>(square <= greatestDistance) &
               reinterpret_cast<Words>(pixel != 0U);
    }
};
struct Faint {
    std::uint32_t greatestAlpha;

    [[gnu::always_inline]] Words operator()(Words pixel) const {
        return reinterpret_cast<Words>((pixel >> 24) <= greatestAlpha);
    }
};

/// 64 pixels; `translucent` becomes other than 0 where some are neither opaque nor transparent.
template <typename Matches>
[[gnu::always_inline]] inline std::uint64_t matchingBits(const std::uint8_t* pixels,
                                                         const Matches& matches,
                                                         Words& translucent) {
    Words columns{};
    for (std::uint32_t k = 0; k < pixelsPerWord / lanes::count; ++k) {
        const Words pixel = loadPixels(pixels + 4 * lanes::count * k);
        columns |= matches(pixel) & (1U << k);
        translucent |= ((pixel >> 24) + 1U) & 0xfeU;
    }
    return transposedBits(columns);
}

/// Whole words of pixels; those with translucent ones are compared after a detour.
QUILLABRAE_WIDE_KERNEL
void nearWords(const std::uint8_t* pixels, std::size_t wordCount, const Near& matches,
               std::uint64_t* words) {
    for (std::size_t word = 0; word < wordCount; ++word) {
        const std::uint8_t* from = pixels + 4 * pixelsPerWord * word;
        Words translucent{};
        words[word] = matchingBits(from, matches, translucent);
        if (isAllZero(translucent)) continue;
        std::array<std::uint8_t, 4 * pixelsPerWord> straight{};
        unpremultiplyPixels(from, straight.data(), pixelsPerWord);
        words[word] = matchingBits(straight.data(), matches, translucent);
    }
}

QUILLABRAE_WIDE_KERNEL
void faintWords(const std::uint8_t* pixels, std::size_t wordCount, const Faint& matches,
                std::uint64_t* words) {
    Words unused{};
    for (std::size_t word = 0; word < wordCount; ++word)
        words[word] = matchingBits(pixels + 4 * pixelsPerWord * word, matches, unused);
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

void SimilarPixels::writeWords(const std::uint8_t* pixels, std::size_t wordCount,
                               std::uint64_t* words) const {
    if (m_seed.alpha == 0)
        faintWords(pixels, wordCount, {m_greatestAlpha}, words);
    else
        nearWords(pixels, wordCount, {wordOf(m_seed), m_greatestDistance}, words);
}

void SimilarPixels::writeBits(const std::uint8_t* pixels, std::size_t pixelCount,
                              std::uint64_t* words) const {
    const std::size_t wholeWords = pixelCount / pixelsPerWord;
    writeWords(pixels, wholeWords, words);
    const std::size_t rest = pixelCount % pixelsPerWord;
    if (rest == 0) return;
    std::array<std::uint8_t, 4 * pixelsPerWord> padded{};
    std::memcpy(padded.data(), pixels + 4 * pixelsPerWord * wholeWords, 4 * rest);
    writeWords(padded.data(), 1, words + wholeWords);
    words[wholeWords] &= ~std::uint64_t{0} >> (pixelsPerWord - rest);
}

} // namespace quillabrae::raster
