// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/StrokeBook.h"
#include "raster/StrokeEdge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace quillabrae::raster {
namespace {

TEST(StrokeEdge, EqualsTheStackOfPassesCompositedOneByOne) {
    for (const double width : {0.3, 1.0, 3.0, 20.0, 100.0, 512.0}) {
        for (const double hardness : {0.0, 25.0, 50.0, 75.0, 99.0}) {
            for (const double alpha : {1.0, 0.35}) {
                for (const StrokeForm form : {StrokeForm::line, StrokeForm::dot}) {
                    const StrokeEdge edge(brushPasses(width, hardness, alpha, form));
                    const auto passes = bookSoftPasses(width, hardness / 100, alpha);
                    for (std::size_t k = 0; k < edge.alpha().size(); ++k) {
                        const double book =
                            255 * bookAlpha(passes,
                                            edge.tableStart() +
                                                static_cast<double>(k) / edge.entriesPerPixel(),
                                            form == StrokeForm::dot);
                        ASSERT_NEAR(edge.alpha()[k], book, 1.0)
                            << width << ' ' << hardness << ' ' << alpha << ' ' << k;
                    }
                }
            }
        }
    }
}

TEST(StrokeEdge, NeverGrowsWithTheDistanceAndEndsAtNothing) {
    for (const double width : {0.0, 0.4, 1.0, 5.0, 77.7, 512.0}) {
        for (const std::optional<double> hardness :
             {std::optional<double>(), std::optional(0.0), std::optional(60.0)}) {
            const StrokeEdge edge(brushPasses(width, hardness, 0.8, StrokeForm::line));
            EXPECT_TRUE(std::ranges::is_sorted(edge.alpha(), std::greater()));
            EXPECT_EQ(edge.alpha().back(), 0);
            EXPECT_LE(edge.reach(), std::max(width, 0.75) / 2 + 0.51);
            EXPECT_LT(edge.flatRadius(), std::max(edge.reach(), 0.01));
        }
    }
}

TEST(StrokeEdge, KnowsHowFarItIsFlat) {
    const StrokeEdge hard(brushPasses(20.0, std::nullopt, 1.0, StrokeForm::line));
    EXPECT_NEAR(hard.flatRadius(), 9.5, 0.01);
    EXPECT_NEAR(hard.reach(), 10.5, 0.01);
    const StrokeEdge half(brushPasses(100.0, 50.0, 1.0, StrokeForm::line));
    EXPECT_GT(half.flatRadius(), 22.0);
    EXPECT_LT(half.flatRadius(), 27.0);
}

TEST(SoftCore, IsAbsentForAHardEdge) {
    EXPECT_EQ(softCore(std::nullopt), std::nullopt);
    EXPECT_EQ(softCore(100.0), std::nullopt);
    EXPECT_EQ(softCore(99.5), std::nullopt);
    EXPECT_EQ(softCore(1e300), std::nullopt);
}

TEST(SoftCore, IsTheHardnessOrNothingForWhatIsNoPercentage) {
    EXPECT_EQ(softCore(99.0), 0.99);
    EXPECT_EQ(softCore(0.0), 0.0);
    EXPECT_EQ(softCore(-5.0), 0.0);
    EXPECT_EQ(softCore(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

TEST(BrushPasses, RunFromTheWidestToTheNarrowestAndReachFullStrength) {
    for (const double width : {3.0, 20.0, 100.0}) {
        const auto passes = brushPasses(width, 0.0, 1.0, StrokeForm::line);
        const double count = std::clamp(std::ceil(2 * width), 14.0, 56.0);
        EXPECT_LE(passes.size(), static_cast<std::size_t>(count));
        EXPECT_GE(passes.size(), static_cast<std::size_t>(count) - 2);
        EXPECT_TRUE(std::ranges::is_sorted(passes, std::greater(), &BrushPass::radius));
        double through = 1.0;
        for (const BrushPass& pass : passes) through *= 1.0 - pass.alpha;
        EXPECT_LT(through, 0.004);
    }
    EXPECT_EQ(brushPasses(20.0, 99.5, 1.0, StrokeForm::line).size(), 1U);
}

} // namespace
} // namespace quillabrae::raster
