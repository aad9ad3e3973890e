// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionMaskOutline.h"
#include "raster/DecodeCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string_view>
#include <vector>

namespace quillabrae::canvas {
namespace {

using Segment = SelectionMaskOutlineSegment;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A mask drawn with '#' for pixels that are in.
raster::RasterImage drawn(const std::vector<std::string_view>& rows) {
    raster::RasterImage mask(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        std::uint8_t* const row = mask.mutableRow(static_cast<int>(y));
        for (std::size_t x = 0; x < rows[y].size(); ++x)
            row[4 * x + 3] = rows[y][x] == '#' ? 255 : 0;
    }
    return mask;
}

model::PngBytes encoded(int width, std::uint8_t alpha) {
    raster::RasterImage mask(width, 1);
    for (std::uint8_t& byte : mask.mutableBytes()) byte = alpha;
    return raster::encodedImage(mask);
}

TEST(MaskOutline, RunsAlongStraightBordersOnce) {
    const auto plan = maskOutline(drawn({"....", ".##.", ".##.", "...."}));
    EXPECT_EQ(plan.width, 4);
    EXPECT_EQ(plan.height, 4);
    EXPECT_THAT(plan.segments, UnorderedElementsAre(Segment{1, 1, 3, 1}, Segment{1, 3, 3, 3},
                                                    Segment{1, 1, 1, 3}, Segment{3, 1, 3, 3}));
}

TEST(MaskOutline, FollowsTheEdgesOfTheMaskAndItsHoles) {
    const auto plan = maskOutline(drawn({"###", "#.#", "###"}));
    EXPECT_THAT(plan.segments,
                UnorderedElementsAre(Segment{0, 0, 3, 0}, Segment{0, 3, 3, 3}, Segment{0, 0, 0, 3},
                                     Segment{3, 0, 3, 3}, Segment{1, 1, 2, 1}, Segment{1, 2, 2, 2},
                                     Segment{1, 1, 1, 2}, Segment{2, 1, 2, 2}));
}

TEST(MaskOutline, PixelsThatTouchAtACornerHaveBordersOfTheirOwn) {
    const auto plan = maskOutline(drawn({"#.", ".#"}));
    EXPECT_THAT(plan.segments,
                UnorderedElementsAre(Segment{0, 0, 1, 0}, Segment{0, 1, 1, 1}, Segment{1, 1, 2, 1},
                                     Segment{1, 2, 2, 2}, Segment{0, 0, 0, 1}, Segment{1, 0, 1, 1},
                                     Segment{1, 1, 1, 2}, Segment{2, 1, 2, 2}));
}

TEST(MaskOutline, CoversEveryBorderBetweenInAndOut) {
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        const int width = 1 + static_cast<int>(random() % 17);
        const int height = 1 + static_cast<int>(random() % 17);
        raster::RasterImage mask(width, height);
        const auto isIn = [&](int x, int y) {
            return x >= 0 && y >= 0 && x < width && y < height && mask.row(y)[4 * x + 3] > 25;
        };
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                mask.mutableRow(y)[4 * x + 3] = static_cast<std::uint8_t>(random() % 2 * 200 + 20);
        }
        std::vector<int> across(static_cast<std::size_t>((width + 1) * (height + 1)), 0);
        std::vector<int> down(across);
        const auto at = [&](int x, int y) {
            return static_cast<std::size_t>(y) * static_cast<std::size_t>(width + 1) +
                   static_cast<std::size_t>(x);
        };
        for (const Segment& segment : maskOutline(mask).segments) {
            for (int x = segment.startX; x < segment.endX; ++x) ++across[at(x, segment.startY)];
            for (int y = segment.startY; y < segment.endY; ++y) ++down[at(segment.startX, y)];
        }
        for (int y = 0; y <= height; ++y) {
            for (int x = 0; x <= width; ++x) {
                if (x < width) {
                    ASSERT_EQ(across[at(x, y)], isIn(x, y) != isIn(x, y - 1) ? 1 : 0);
                }
                if (y < height) {
                    ASSERT_EQ(down[at(x, y)], isIn(x, y) != isIn(x - 1, y) ? 1 : 0);
                }
            }
        }
    }
}

TEST(MaskOutline, AnAlphaOfATenthIsOut) {
    EXPECT_THAT(maskOutline(raster::decodedImage(encoded(3, 25))).segments, IsEmpty());
    EXPECT_EQ(maskOutline(raster::decodedImage(encoded(3, 26))).segments.size(), 4U);
}

TEST(SelectionMaskOutlineCache, TheTwentyFifthMaskPutsOutTheOneThatCameFirst) {
    SelectionMaskOutlineCache cache;
    for (int width = 1; width <= 24; ++width) cache.outline(encoded(width, 255));
    EXPECT_EQ(cache.count(), 24U);
    EXPECT_EQ(cache.outline(encoded(1, 255)).width, 1);
    cache.outline(encoded(25, 255));
    EXPECT_EQ(cache.count(), 24U);
    // Asking for the first again did not keep it: it comes back as a new one.
    cache.outline(encoded(2, 255));
    EXPECT_EQ(cache.count(), 24U);
}

TEST(SelectionMaskOutlineCache, AMaskThatDoesNotDecodeHasTheEmptyOutline) {
    SelectionMaskOutlineCache cache;
    const auto& plan = cache.outline(model::PngBytes(QByteArray("no picture")));
    EXPECT_EQ(plan.width, 0);
    EXPECT_THAT(plan.segments, IsEmpty());
    EXPECT_EQ(cache.count(), 1U);
}

} // namespace
} // namespace quillabrae::canvas
