// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngBandFilter.h"
#include "raster/PngBands.h"
#include "raster/PngFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

using Bytes = std::vector<std::uint8_t>;

/// By the definition: the first row less what is a pixel to the left, the others less what is
/// above.
Bytes expectedRows(const RasterImage& image, int firstRow, int rowCount) {
    const Bytes straight = straightPixels(image);
    const std::size_t stride = image.stride();
    Bytes rows;
    for (int i = 0; i < rowCount; ++i) {
        const std::uint8_t* row = straight.data() + static_cast<std::size_t>(firstRow + i) * stride;
        rows.push_back(i == 0 ? 1 : 2);
        for (std::size_t at = 0; at < stride; ++at) {
            const int left = at < 4 ? 0 : row[at - 4];
            rows.push_back(
                static_cast<std::uint8_t>(row[at] - (i == 0 ? left : *(row + at - stride))));
        }
    }
    return rows;
}

void expectHoldAllButZeros(const SparseBytes& rows) {
    std::size_t at = 0;
    for (const ByteRange& range : rows.live) {
        ASSERT_TRUE(at == 0 || range.begin > at);
        ASSERT_LT(range.begin, range.end);
        for (; at < range.begin; ++at) ASSERT_EQ(rows.bytes[at], 0) << at;
        at = range.end;
    }
    ASSERT_LE(at, rows.bytes.size());
    for (; at < rows.bytes.size(); ++at) ASSERT_EQ(rows.bytes[at], 0) << at;
}

TEST(PngBandFilter, AgreesWithTheDefinitionBandAfterBand) {
    PngBandFilter filter;
    unsigned seed = 0;
    for (const int width : {1, 63, 64, 65, 300, 64})
        for (int round = 0; round < 6; ++round) {
            const RasterImage image =
                round % 2 == 0 ? calmImage(width, 40, ++seed) : randomImage(width, 40, ++seed);
            for (const auto& [first, count] : {std::pair{0, 16}, {16, 16}, {32, 8}, {5, 1}}) {
                const SparseBytes rows = filter.filter(image, first, count);
                ASSERT_TRUE(std::ranges::equal(rows.bytes, expectedRows(image, first, count)))
                    << width << " wide, rows from " << first;
                expectHoldAllButZeros(rows);
                EXPECT_EQ(adlerOf(rows), adlerOf(rows.bytes));
            }
        }
}

TEST(PngBandFilter, LiveRangesDependOnThePixelsAlone) {
    PngBandFilter used;
    for (unsigned seed = 1; seed < 8; ++seed) {
        const RasterImage image = calmImage(700, 20, seed);
        PngBandFilter fresh;
        const SparseBytes expected = fresh.filter(image, 0, 20);
        EXPECT_TRUE(std::ranges::equal(used.filter(image, 0, 20).live, expected.live)) << seed;
    }
}

TEST(PngBandFilter, RowsThatRepeatTheOneAboveAreNotLive) {
    const RasterImage clear(300, 10);
    PngBandFilter filter;
    EXPECT_EQ(filter.filter(clear, 0, 10).liveSize(), 10U);
}

} // namespace
} // namespace quillabrae::raster
