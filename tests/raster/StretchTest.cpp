// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/RasterFixtures.h"
#include "raster/Stretch.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace quillabrae::raster
