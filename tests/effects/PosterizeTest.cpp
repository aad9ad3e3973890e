// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/EffectTest.h"
#include "effects/Posterize.h"

namespace quillabrae::effects {
namespace {

/// In whole numbers: halves of the last rounding go up.
int leveled(int component, int alpha, int levels) {
    const int bin = levels * component / (alpha + 1);
    return (2 * alpha * bin + levels - 1) / (2 * (levels - 1));
}

Pixel leveled(Pixel pixel, int levels) {
    return {leveled(pixel.red, pixel.alpha, levels), leveled(pixel.green, pixel.alpha, levels),
            leveled(pixel.blue, pixel.alpha, levels), pixel.alpha};
}

TEST(Posterize, AgreesWithWholeNumbersForEveryComponentAndAlpha) {
    for (const int levels : {2, 3, 6, 7, 19, 256}) {
        RasterImage image(256, 256);
        for (int alpha = 0; alpha < 256; ++alpha)
            for (int c = 0; c < 256; ++c)
                raster::setPixel(image, c, alpha,
                                 {std::min(c, alpha), alpha - std::min(c, alpha), 0, alpha});
        const RasterImage expected =
            slowly(image, [&](Pixel pixel) { return leveled(pixel, levels); });
        EXPECT_TRUE(applied(Posterize{float(levels)}, image) == expected) << levels << " levels";
    }
}

TEST(Posterize, LeavesSixValuesOfARampBlackAndWhiteAmongThem) {
    RasterImage ramp(256, 1);
    for (int x = 0; x < 256; ++x) raster::setPixel(ramp, x, 0, {x, x, x, 255});
    const RasterImage result = applied(Posterize{}, ramp);
    for (int x = 0; x < 256; ++x) {
        const int value = std::min(x * 6 / 256, 5) * 51;
        EXPECT_EQ(pixelAt(result, x, 0), (Pixel{value, value, value, 255}));
    }
}

TEST(Posterize, GivesATranslucentPixelTheColourOfAnOpaqueOne) {
    const RasterImage opaque = raster::filledImage(1, 1, {200, 100, 30, 255});
    const RasterImage half = raster::filledImage(1, 1, {100, 50, 15, 128});
    EXPECT_EQ(pixelAt(applied(Posterize{}, opaque), 0, 0), (Pixel{204, 102, 0, 255}));
    EXPECT_EQ(pixelAt(applied(Posterize{}, half), 0, 0), (Pixel{102, 51, 0, 128}));
}

TEST(Posterize, KeepsAlpha) {
    expectAlphaKept(Posterize{});
}

TEST(Posterize, IsTheSameOnOneThread) {
    expectSameOnOneThread(Posterize{});
}

} // namespace
} // namespace quillabrae::effects
