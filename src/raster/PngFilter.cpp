// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngFilter.h"

#include "raster/KernelTargets.h"

#include <cstdlib>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillabrae::raster {
namespace {

std::uint8_t paethPredictor(int left, int above, int aboveLeft) {
    const int towardsLeft = std::abs(above - aboveLeft);
    const int towardsAbove = std::abs(left - aboveLeft);
    const int towardsAboveLeft = std::abs(left + above - 2 * aboveLeft);
    if (towardsLeft <= towardsAbove && towardsLeft <= towardsAboveLeft)
        return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(towardsAbove <= towardsAboveLeft ? above : aboveLeft);
}

std::uint8_t sum(int a, int b) {
    return static_cast<std::uint8_t>(a + b);
}

void unfilterSub(std::uint8_t* row, std::size_t byteCount, std::size_t step) {
    for (std::size_t i = step; i < byteCount; ++i) row[i] = sum(row[i], row[i - step]);
}

void unfilterAverage(std::uint8_t* row, const std::uint8_t* above, std::size_t byteCount,
                     std::size_t step) {
    for (std::size_t i = 0; i < byteCount; ++i) {
        const int left = i < step ? 0 : row[i - step];
        row[i] = sum(row[i], (left + above[i]) / 2);
    }
}

void unfilterPaeth(std::uint8_t* row, const std::uint8_t* above, std::size_t byteCount,
                   std::size_t step) {
    for (std::size_t i = 0; i < byteCount; ++i) {
        const int left = i < step ? 0 : row[i - step];
        const int aboveLeft = i < step ? 0 : above[i - step];
        row[i] = sum(row[i], paethPredictor(left, above[i], aboveLeft));
    }
}

#if defined(__SSE2__)

// Three bytes go as two and one: a 4-byte load from a copy just written bytewise would wait for it.

template <std::size_t Step>
__m128i loadPixel(const std::uint8_t* bytes) {
    std::uint32_t pixel = 0;
    if constexpr (Step == 4) {
        std::memcpy(&pixel, bytes, 4);
    } else {
        std::uint16_t low = 0;
        std::memcpy(&low, bytes, 2);
        pixel = low | (static_cast<std::uint32_t>(bytes[2]) << 16);
    }
    return _mm_cvtsi32_si128(static_cast<int>(pixel));
}

template <std::size_t Step>
void storePixel(std::uint8_t* bytes, __m128i value) {
    const auto pixel = static_cast<std::uint32_t>(_mm_cvtsi128_si32(value));
    if constexpr (Step == 4) {
        std::memcpy(bytes, &pixel, 4);
    } else {
        const auto low = static_cast<std::uint16_t>(pixel & 0xffffU);
        std::memcpy(bytes, &low, 2);
        bytes[2] = static_cast<std::uint8_t>((pixel >> 16) & 0xffU);
    }
}

/// Rows of 3- or 4-byte pixels, a pixel at a time: each depends on the one to its left.
template <std::size_t Step>
struct PixelUnfilter {
    static void sub(std::uint8_t* row, std::size_t byteCount) {
        __m128i left = _mm_setzero_si128();
        for (std::size_t i = 0; i + Step <= byteCount; i += Step) {
            left = _mm_add_epi8(loadPixel<Step>(row + i), left);
            storePixel<Step>(row + i, left);
        }
    }

    static void average(std::uint8_t* row, const std::uint8_t* above, std::size_t byteCount) {
        const __m128i ones = _mm_set1_epi8(1);
        __m128i left = _mm_setzero_si128();
        for (std::size_t i = 0; i + Step <= byteCount; i += Step) {
            const __m128i up = loadPixel<Step>(above + i);
            // The instruction rounds the mean up; the filter rounds it down.
            const __m128i excess = _mm_and_si128(_mm_xor_si128(left, up), ones);
            const __m128i mean = _mm_sub_epi8(_mm_avg_epu8(left, up), excess);
            left = _mm_add_epi8(loadPixel<Step>(row + i), mean);
            storePixel<Step>(row + i, left);
        }
    }

    static void paeth(std::uint8_t* row, const std::uint8_t* above, std::size_t byteCount) {
        const __m128i zero = _mm_setzero_si128();
        __m128i left = zero;
        __m128i aboveLeft = zero;
        for (std::size_t i = 0; i + Step <= byteCount; i += Step) {
            const __m128i up = _mm_unpacklo_epi8(loadPixel<Step>(above + i), zero);
            const __m128i towardsLeftSigned = _mm_sub_epi16(up, aboveLeft);
            const __m128i towardsAboveSigned = _mm_sub_epi16(left, aboveLeft);
            const __m128i towardsLeft = magnitude(towardsLeftSigned);
            const __m128i towardsAbove = magnitude(towardsAboveSigned);
            const __m128i towardsAboveLeft =
                magnitude(_mm_add_epi16(towardsLeftSigned, towardsAboveSigned));
            const __m128i least =
                _mm_min_epi16(towardsAboveLeft, _mm_min_epi16(towardsLeft, towardsAbove));
            const __m128i nearest =
                choose(_mm_cmpeq_epi16(least, towardsLeft), left,
                       choose(_mm_cmpeq_epi16(least, towardsAbove), up, aboveLeft));
            const __m128i filtered = _mm_unpacklo_epi8(loadPixel<Step>(row + i), zero);
            left = _mm_add_epi8(filtered, nearest);
            aboveLeft = up;
            storePixel<Step>(row + i, _mm_packus_epi16(left, zero));
        }
    }

private:
    static __m128i magnitude(__m128i value) {
        return _mm_max_epi16(value, _mm_sub_epi16(_mm_setzero_si128(), value));
    }
    static __m128i choose(__m128i mask, __m128i whenSet, __m128i otherwise) {
        return _mm_or_si128(_mm_and_si128(mask, whenSet), _mm_andnot_si128(mask, otherwise));
    }
};

template <std::size_t Step>
void unfilterPixels(PngFilter filter, std::uint8_t* row, const std::uint8_t* above,
                    std::size_t byteCount) {
    if (filter == PngFilter::sub) PixelUnfilter<Step>::sub(row, byteCount);
    if (filter == PngFilter::average) PixelUnfilter<Step>::average(row, above, byteCount);
    if (filter == PngFilter::paeth) PixelUnfilter<Step>::paeth(row, above, byteCount);
}

#endif

QUILLABRAE_WIDE_KERNEL
void unfilterUp(std::uint8_t* row, const std::uint8_t* above, std::size_t byteCount) {
    for (std::size_t i = 0; i < byteCount; ++i) row[i] = sum(row[i], above[i]);
}

} // namespace

QUILLABRAE_WIDE_KERNEL
void filterSub(const std::uint8_t* row, std::uint8_t* filtered, std::size_t byteCount,
               std::size_t bytesPerPixel) {
    const std::size_t first = byteCount < bytesPerPixel ? byteCount : bytesPerPixel;
    std::memcpy(filtered, row, first);
    for (std::size_t i = first; i < byteCount; ++i)
        filtered[i] = static_cast<std::uint8_t>(row[i] - row[i - bytesPerPixel]);
}

QUILLABRAE_WIDE_KERNEL
void filterUp(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* filtered,
              std::size_t byteCount) {
    for (std::size_t i = 0; i < byteCount; ++i)
        filtered[i] = static_cast<std::uint8_t>(row[i] - above[i]);
}

bool unfilterRow(std::uint8_t number, std::uint8_t* row, const std::uint8_t* above,
                 std::size_t byteCount, std::size_t bytesPerPixel) {
    if (number > static_cast<std::uint8_t>(PngFilter::paeth)) return false;
    const auto filter = static_cast<PngFilter>(number);
    if (filter == PngFilter::none) return true;
    if (filter == PngFilter::up) {
        unfilterUp(row, above, byteCount);
        return true;
    }
#if defined(__SSE2__)
    if (bytesPerPixel == 4) return unfilterPixels<4>(filter, row, above, byteCount), true;
    if (bytesPerPixel == 3) return unfilterPixels<3>(filter, row, above, byteCount), true;
#endif
    if (filter == PngFilter::sub) unfilterSub(row, byteCount, bytesPerPixel);
    if (filter == PngFilter::average) unfilterAverage(row, above, byteCount, bytesPerPixel);
    if (filter == PngFilter::paeth) unfilterPaeth(row, above, byteCount, bytesPerPixel);
    return true;
}

} // namespace quillabrae::raster
