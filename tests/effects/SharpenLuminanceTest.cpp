// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/EffectTest.h"
#include "effects/SharpenLuminance.h"

#include <algorithm>

namespace quillabrae::effects {
namespace {

double lumaOf(Pixel p) {
    return 0.299 * p.red + 0.587 * p.green + 0.114 * p.blue;
}

/// The straight luma of what is around a pixel, 0 to 1, by a Gaussian in both directions at once.
double lumaAround(const RasterImage& image, int x, int y, double deviation) {
    const int reach = static_cast<int>(std::ceil(6 * deviation));
    double luma = 0.0;
    double alpha = 0.0;
    for (int dy = -reach; dy <= reach; ++dy) {
        for (int dx = -reach; dx <= reach; ++dx) {
            const double weight = std::exp(-0.5 * (dx * dx + dy * dy) / (deviation * deviation));
            const Pixel pixel = pixelAt(image, std::clamp(x + dx, 0, image.width() - 1),
                                        std::clamp(y + dy, 0, image.height() - 1));
            luma += weight * lumaOf(pixel);
            alpha += weight * pixel.alpha;
        }
    }
    return alpha > 0.0 ? luma / alpha : 0.0;
}

RasterImage sharpenedSlowly(const SharpenLuminance& sharpen, const RasterImage& image) {
    RasterImage result(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const Pixel pixel = pixelAt(image, x, y);
            if (pixel.alpha == 0) continue;
            const double difference =
                double(sharpen.sharpness) *
                (lumaOf(pixel) - pixel.alpha * lumaAround(image, x, y, double(sharpen.radius)));
            const double limit = double(sharpen.haloLimit) * pixel.alpha;
            const double step = difference * limit / (limit + std::abs(difference));
            Components color = componentsOf(pixel);
            for (double& c : color) c = std::clamp(c + step, 0.0, double(pixel.alpha));
            raster::setPixel(result, x, y, pixelOf(color, pixel.alpha));
        }
    }
    return result;
}

void expectAgreement(const SharpenLuminance& sharpen, const RasterImage& image) {
    EXPECT_LE(raster::greatestDifference(applied(sharpen, image), sharpenedSlowly(sharpen, image)),
              1)
        << image.width() << " by " << image.height();
}

RasterImage opaque(RasterImage image) {
    for (std::size_t i = 3; i < image.byteCount(); i += 4) image.mutableBytes()[i] = 255;
    return image;
}

/// Two flat halves, the right one brighter.
RasterImage edge(int left, int right) {
    RasterImage image = raster::filledImage(40, 8, {left, left, left, 255});
    for (int y = 0; y < 8; ++y)
        for (int x = 20; x < 40; ++x) raster::setPixel(image, x, y, {right, right, right, 255});
    return image;
}

TEST(SharpenLuminance, AgreesWithTheDefinitionOnRandomPixels) {
    std::mt19937 random(61);
    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(40, 5), QSize(7, 33), QSize(50, 50)}) {
        const RasterImage image = raster::randomImage(size.width(), size.height(), random);
        expectAgreement({}, image);
        expectAgreement({}, opaque(image));
    }
}

TEST(SharpenLuminance, AgreesWithTheDefinitionForOtherSettings) {
    std::mt19937 random(62);
    const RasterImage image = raster::randomImage(31, 29, random);
    expectAgreement({.sharpness = 2.0F, .radius = 0.6F}, image);
    expectAgreement({.radius = 5.0F, .haloLimit = 0.5F}, image);
}

TEST(SharpenLuminance, LeavesFlatColourAlone) {
    const RasterImage flat = raster::filledImage(30, 30, {180, 90, 20, 255});
    EXPECT_TRUE(applied(SharpenLuminance{}, flat) == flat);
}

TEST(SharpenLuminance, LeavesTheEdgesOfAFlatShapeAlone) {
    RasterImage shape(40, 40);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            // An edge that fades out over some pixels.
            const int alpha = std::clamp(40 * (25 - x), 0, 255);
            raster::setPixel(shape, x, y, {alpha * 200 / 255, alpha * 100 / 255, 0, alpha});
        }
    }
    EXPECT_LE(raster::greatestDifference(applied(SharpenLuminance{}, shape), shape), 1);
}

TEST(SharpenLuminance, MakesEdgesSteeperWithinTheHaloLimit) {
    const RasterImage result = applied(SharpenLuminance{}, edge(90, 160));
    const int darkest = pixelAt(result, 19, 4).red;
    const int lightest = pixelAt(result, 20, 4).red;
    EXPECT_LT(darkest, 85);
    EXPECT_GT(lightest, 165);
    const RasterImage hard = applied(SharpenLuminance{}, edge(60, 195));
    const int limit = static_cast<int>(0.12 * 255) + 1;
    EXPECT_GE(pixelAt(hard, 19, 4).red, 60 - limit);
    EXPECT_LE(pixelAt(hard, 20, 4).red, 195 + limit);
}

TEST(SharpenLuminance, KeepsColourDifferences) {
    RasterImage image = edge(100, 140);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 40; ++x) {
            const int luma = pixelAt(image, x, y).red;
            raster::setPixel(image, x, y, {luma + 30, luma, luma - 40, 255});
        }
    }
    const RasterImage result = applied(SharpenLuminance{}, image);
    for (int x = 0; x < 40; ++x) {
        const Pixel pixel = pixelAt(result, x, 4);
        EXPECT_NEAR(pixel.red - pixel.green, 30, 1);
        EXPECT_NEAR(pixel.green - pixel.blue, 40, 1);
    }
}

TEST(SharpenLuminance, KeepsAlpha) {
    expectAlphaKept(SharpenLuminance{});
}

TEST(SharpenLuminance, IsTheSameOnOneThread) {
    expectSameOnOneThread(SharpenLuminance{});
}

} // namespace
} // namespace quillabrae::effects
