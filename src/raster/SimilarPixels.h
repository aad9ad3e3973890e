// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/BlendKernels.h"

#include <cstddef>
#include <cstdint>

namespace quillabrae::raster {

/// Which pixels are like a seed. Components are straight bytes over 255.
///
/// Like a visible seed is a visible pixel no further from it than the percentage times 1.732 / 100,
/// by the distance over all four components. Like a transparent seed is a pixel whose alpha is at
/// most the percentage / 100. A negative percentage, and one that is no number, counts as 0.
class SimilarPixels {
public:
    SimilarPixels(PixelColor seed, double matchPercentage);

    /// Bit i (of word i / 64, the lowest bit first) says whether premultiplied pixel i is like the
    /// seed; bits behind the last pixel are 0.
    void writeBits(const std::uint8_t* pixels, std::size_t pixelCount, std::uint64_t* words) const;

private:
    /// 64 pixels a word.
    void writeWords(const std::uint8_t* pixels, std::size_t wordCount, std::uint64_t* words) const;

    PixelColor m_seed;
    /// The greatest distance, squared, in units of 1 / 255.
    std::uint32_t m_greatestDistance = 0;
    /// For a transparent seed.
    std::uint32_t m_greatestAlpha = 0;
};

} // namespace quillabrae::raster
