// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/EffectTest.h"
#include "effects/Vibrance.h"

namespace quillabrae::effects {
namespace {

double lumaOf(Components c) {
    return 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
}

double skinOf(Components c) {
    const double i = 0.596 * c[0] - 0.274 * c[1] - 0.322 * c[2];
    const double q = 0.211 * c[0] - 0.523 * c[1] + 0.312 * c[2];
    if (i <= 0.0) return 0.0;
    return std::max((i * i / (i * i + q * q) - 0.75) / 0.25, 0.0);
}

Pixel enlivened(Pixel pixel) {
    const Components c = componentsOf(pixel);
    const double luma = lumaOf(c);
    const double most = std::ranges::max(c);
    const double least = std::ranges::min(c);
    if (most == least) return pixel;
    double gain = 1.0 + 0.72 * (1.0 - (most - least) / most) * (1.0 - 0.8 * skinOf(c));
    gain = std::min({gain, (pixel.alpha - luma) / (most - luma), luma / (luma - least)});
    Components result{};
    for (std::size_t i = 0; i < 3; ++i) result[i] = luma + gain * (c[i] - luma);
    return pixelOf(result, pixel.alpha);
}

Pixel resultOf(Pixel pixel) {
    return pixelAt(applied(Vibrance{}, raster::filledImage(1, 1, pixel)), 0, 0);
}

int chromaOf(Pixel pixel) {
    return std::max({pixel.red, pixel.green, pixel.blue}) -
           std::min({pixel.red, pixel.green, pixel.blue});
}

/// By how much the chroma of an opaque colour grows.
double growthOf(Pixel pixel) {
    return double(chromaOf(resultOf(pixel))) / chromaOf(pixel);
}

TEST(Vibrance, AgreesWithTheDefinitionOnRandomPixels) {
    std::mt19937 random(31);
    const RasterImage image = raster::randomImage(97, 101, random);
    EXPECT_LE(raster::greatestDifference(applied(Vibrance{}, image), slowly(image, enlivened)), 1);
}

TEST(Vibrance, LeavesGraysAlone) {
    for (int value = 0; value < 256; ++value) {
        const Pixel gray{value, value, value, 255};
        EXPECT_EQ(resultOf(gray), gray);
    }
}

TEST(Vibrance, LiftsMutedColoursAndHoldsStrongOnesBack) {
    EXPECT_GT(growthOf({110, 130, 150, 255}), 1.4);
    EXPECT_LT(growthOf({20, 80, 220, 255}), 1.1);
    EXPECT_EQ(resultOf({0, 0, 255, 255}), (Pixel{0, 0, 255, 255}));
}

TEST(Vibrance, HoldsTheHuesOfSkinBack) {
    const double skin = growthOf({200, 160, 140, 255});
    const double leaf = growthOf({150, 175, 140, 255});
    EXPECT_LT(skin, 1.2);
    EXPECT_GT(leaf, skin + 0.3);
}

TEST(Vibrance, KeepsLuma) {
    std::mt19937 random(32);
    const RasterImage image = raster::randomImage(64, 64, random);
    const RasterImage result = applied(Vibrance{}, image);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_NEAR(lumaOf(componentsOf(pixelAt(result, x, y))),
                        lumaOf(componentsOf(pixelAt(image, x, y))), 0.51);
}

TEST(Vibrance, KeepsAlpha) {
    expectAlphaKept(Vibrance{});
}

TEST(Vibrance, IsTheSameOnOneThread) {
    expectSameOnOneThread(Vibrance{});
}

} // namespace
} // namespace quillabrae::effects
