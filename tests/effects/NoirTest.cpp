// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/EffectTest.h"
#include "effects/Noir.h"

namespace quillabrae::effects {
namespace {

Pixel monochrome(Pixel pixel) {
    if (pixel.alpha == 0) return {};
    const double tone = (0.42 * pixel.red + 0.46 * pixel.green + 0.12 * pixel.blue) / pixel.alpha;
    const double curved = tone * tone * (3.0 - 2.0 * tone);
    const double value = pixel.alpha * (tone + 0.85 * (curved - tone));
    return pixelOf({value, value, value}, pixel.alpha);
}

int grayOf(Pixel pixel) {
    return pixelAt(applied(Noir{}, raster::filledImage(1, 1, pixel)), 0, 0).green;
}

TEST(Noir, AgreesWithTheDefinitionOnRandomPixels) {
    std::mt19937 random(21);
    const RasterImage image = raster::randomImage(97, 101, random);
    EXPECT_LE(raster::greatestDifference(applied(Noir{}, image), slowly(image, monochrome)), 1);
}

TEST(Noir, KeepsBlackAndWhiteAndDeepensTheContrastBetween) {
    EXPECT_EQ(grayOf({0, 0, 0, 255}), 0);
    EXPECT_EQ(grayOf({255, 255, 255, 255}), 255);
    EXPECT_LT(grayOf({64, 64, 64, 255}), 50);
    EXPECT_GT(grayOf({192, 192, 192, 255}), 205);
    EXPECT_NEAR(grayOf({128, 128, 128, 255}), 128, 1);
}

TEST(Noir, TellsAFaceFromASkyOfTheSameBrightness) {
    const int skin = grayOf({205, 150, 125, 255});
    const int sky = grayOf({110, 165, 225, 255});
    EXPECT_GT(skin, sky + 10);
}

TEST(Noir, GivesTranslucentPixelsTheToneOfOpaqueOnes) {
    const int opaque = grayOf({200, 100, 40, 255});
    EXPECT_NEAR(grayOf({100, 50, 20, 128}), opaque * 128 / 255.0, 1);
}

TEST(Noir, KeepsAlpha) {
    expectAlphaKept(Noir{});
}

TEST(Noir, IsTheSameOnOneThread) {
    expectSameOnOneThread(Noir{});
}

} // namespace
} // namespace quillabrae::effects
