// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/GatherKernel.h"
#include "raster/RasterFixtures.h"
#include "raster/Stretch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

/// Destination i of m shows this one of n.
std::int64_t sourceOf(std::int64_t i, std::int64_t n, std::int64_t m) {
    return (2 * i + 1) * n / (2 * m);
}

TEST(Stretch, SamplesExactlyAtEverySizeAndOffset) {
    std::mt19937 random(301);
    std::uniform_int_distribution<int> count(1, 16'384);
    for (int round = 0; round < 120; ++round) {
        const int from = count(random);
        const int to = round % 4 == 0 ? from : count(random);
        const int start = round % 3 == 0 ? 0 : count(random) - 8192;
        const int limit = count(random);
        const AxisSamples samples = stretchSamples(from, start, to, limit);
        const AxisSamples same = stretchSamples(from, double(start), double(to), limit);
        ASSERT_EQ(same.source, samples.source) << round;
        for (std::size_t i = 0; i < samples.source.size(); ++i)
            ASSERT_EQ(samples.source[i],
                      sourceOf(samples.first + static_cast<int>(i) - start, from, to))
                << round;
        if (samples.isEmpty()) continue;
        ASSERT_EQ(same.first, samples.first);
    }
}

TEST(Stretch, CopiesWideRowsPixelForPixel) {
    std::mt19937 random(302);
    std::uniform_int_distribution<int> width(1, 16'000);
    // Enlarged, kept, reduced to a little, to half and to much less than half.
    const std::vector<double> scales{7.3, 1.46, 1.0, 0.93, 0.5, 0.49, 0.11};
    for (const double scale : scales) {
        for (int round = 0; round < 6; ++round) {
            const int from = round == 0 ? 16'000 : width(random);
            const int to = std::max(static_cast<int>(from * scale), 1);
            RasterImage source(from, 3);
            for (std::uint8_t& byte : source.mutableBytes())
                byte = static_cast<std::uint8_t>(random());
            RasterImage copy(to, 5);
            copySamples(copy, source, stretchSamples(from, 0, to, to), stretchSamples(3, 0, 5, 5));
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < to; ++x)
                    ASSERT_EQ(pixelAt(copy, x, y),
                              pixelAt(source, static_cast<int>(sourceOf(x, from, to)),
                                      static_cast<int>(sourceOf(y, 3, 5))))
                        << from << " to " << to << " at " << x << ' ' << y;
        }
    }
}

TEST(RowGather, GathersAPartAndTouchesOnlyItsEights) {
    std::mt19937 random(303);
    constexpr std::uint32_t untouched = 0x01020304;
    for (const double step : {0.13, 0.9, 1.06, 2.1, 2.4, 5.5, 40.0}) {
        for (int round = 0; round < 40; ++round) {
            const std::size_t count = 1 + random() % 300;
            const int sourceCount = static_cast<int>(static_cast<double>(count) * step) + 1;
            std::vector<std::uint32_t> source(static_cast<std::size_t>(sourceCount));
            for (std::uint32_t& pixel : source) pixel = static_cast<std::uint32_t>(random());
            std::vector<std::int32_t> index;
            for (std::size_t i = 0; i < count; ++i)
                index.push_back(static_cast<std::int32_t>((static_cast<double>(i) + 0.5) * step));
            const std::size_t first = random() % count;
            const std::size_t end = first + 1 + random() % (count - first);
            std::vector<std::uint32_t> result(count, untouched);
            const auto* const row = reinterpret_cast<const std::uint8_t*>(source.data());
            RowGather(index, sourceCount)
                .gatherPart(row, reinterpret_cast<std::uint8_t*>(result.data()), first, end, row);
            for (std::size_t i = 0; i < count; ++i) {
                const auto expected = source[static_cast<std::size_t>(index[i])];
                const bool isBeside = i / 8 < first / 8 || i / 8 > (end - 1) / 8;
                if (i >= first && i < end) {
                    ASSERT_EQ(result[i], expected) << step << ' ' << i;
                } else if (isBeside) {
                    ASSERT_EQ(result[i], untouched) << step << ' ' << i;
                }
            }
        }
    }
}

} // namespace
} // namespace quillabrae::raster
