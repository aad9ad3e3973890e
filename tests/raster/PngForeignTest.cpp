// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngCodec.h"
#include "raster/PngFilter.h"
#include "raster/PngFixtures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>

namespace quillabrae::raster {
namespace {

using namespace fixtures;

std::vector<Form> everyForm() {
    const std::vector<std::pair<int, std::vector<int>>> depths = {
        {0, {1, 2, 4, 8, 16}}, {2, {8, 16}}, {3, {1, 2, 4, 8}}, {4, {8, 16}}, {6, {8, 16}}};
    std::vector<Form> forms;
    for (const auto& [colorType, bitDepths] : depths)
        for (const int depth : bitDepths)
            for (const bool isInterlaced : {false, true})
                for (const bool hasTransparency : {false, true})
                    if (!hasTransparency || colorType < 4)
                        forms.push_back({colorType, depth, isInterlaced, hasTransparency});
    return forms;
}

class PngForm : public testing::TestWithParam<Form> {};

TEST_P(PngForm, DecodesToThePixelsThatLibpngGives) {
    unsigned seed = 0;
    for (const auto& [width, height] : {std::pair(1, 1), {2, 3}, {5, 1}, {33, 40}, {500, 301}}) {
        const QByteArray file = libpngFile(GetParam(), width, height, ++seed);
        const RasterImage expected = premultipliedImage(width, height, libpngPixels(file));
        const RasterImage decoded = decodePng(pngBytes(file));
        ASSERT_FALSE(decoded.isNull()) << width << " by " << height;
        EXPECT_TRUE(decoded == expected) << width << " by " << height;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryForm, PngForm, testing::ValuesIn(everyForm()),
                         [](const testing::TestParamInfo<Form>& info) {
                             const Form& form = info.param;
                             return "Type" + std::to_string(form.colorType) + "Depth" +
                                    std::to_string(form.bitDepth) +
                                    (form.isInterlaced ? "Interlaced" : "") +
                                    (form.hasTransparency ? "Transparent" : "");
                         });

/// A filtered row undone by the definition of the filters.
void unfilterSlowly(int filter, std::vector<std::uint8_t>& row,
                    const std::vector<std::uint8_t>& above, std::size_t step) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int left = i >= step ? row[i - step] : 0;
        const int up = above[i];
        const int corner = i >= step ? above[i - step] : 0;
        const int estimate = left + up - corner;
        const int toLeft = std::abs(estimate - left);
        const int toUp = std::abs(estimate - up);
        const int toCorner = std::abs(estimate - corner);
        int nearest = corner;
        if (toUp <= toCorner) nearest = up;
        if (toLeft <= toUp && toLeft <= toCorner) nearest = left;
        const std::vector<int> predictions = {0, left, up, (left + up) / 2, nearest};
        row[i] = static_cast<std::uint8_t>(row[i] + predictions[static_cast<std::size_t>(filter)]);
    }
}

TEST(PngFilter, UnfilteringAgreesWithTheDefinition) {
    std::minstd_rand random(5);
    for (const std::size_t step : {1U, 2U, 3U, 4U, 6U, 8U})
        for (const std::size_t pixels : {1U, 2U, 7U, 64U, 333U})
            for (int filter = 0; filter < 5; ++filter) {
                std::vector<std::uint8_t> row(step * pixels);
                std::vector<std::uint8_t> above(step * pixels);
                for (std::uint8_t& byte : row) byte = static_cast<std::uint8_t>(random() >> 4);
                for (std::uint8_t& byte : above) byte = static_cast<std::uint8_t>(random() >> 4);
                std::vector<std::uint8_t> expected = row;
                unfilterSlowly(filter, expected, above, step);
                ASSERT_TRUE(unfilterRow(static_cast<std::uint8_t>(filter), row.data(), above.data(),
                                        row.size(), step));
                EXPECT_EQ(row, expected) << "filter " << filter << ", " << step << " bytes";
            }
    std::uint8_t byte = 0;
    EXPECT_FALSE(unfilterRow(5, &byte, &byte, 1, 1));
}

TEST(PngFilter, FilteringIsUndone) {
    std::vector<std::uint8_t> above(400);
    std::vector<std::uint8_t> row(400);
    std::iota(above.begin(), above.end(), std::uint8_t{3});
    std::iota(row.begin(), row.end(), std::uint8_t{90});
    row[17] = 0;
    std::vector<std::uint8_t> filtered(400);
    filterUp(row.data(), above.data(), filtered.data(), 400);
    unfilterSlowly(2, filtered, above, 4);
    EXPECT_EQ(filtered, row);
    filterSub(row.data(), filtered.data(), 400, 4);
    unfilterSlowly(1, filtered, above, 4);
    EXPECT_EQ(filtered, row);
}

} // namespace
} // namespace quillabrae::raster
