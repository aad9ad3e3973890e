// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/Bloom.h"
#include "effects/EffectTest.h"

#include <algorithm>
#include <vector>

namespace quillabrae::effects {
namespace {

/// One component of a picture, in reals.
struct Plane {
    int width;
    int height;
    std::vector<double> values;

    double& at(int x, int y) {
        return values[static_cast<std::size_t>(std::clamp(y, 0, height - 1)) *
                          static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(std::clamp(x, 0, width - 1))];
    }
};

/// Along rows; the plane lies on its side afterwards.
Plane spreadAndTurned(Plane plane, double deviation) {
    const int reach = static_cast<int>(std::ceil(6 * deviation));
    Plane result{plane.height, plane.width, plane.values};
    for (int y = 0; y < plane.height; ++y) {
        for (int x = 0; x < plane.width; ++x) {
            double sum = 0.0;
            double weights = 0.0;
            for (int k = -reach; k <= reach; ++k) {
                const double weight = std::exp(-0.5 * k * k / (deviation * deviation));
                sum += weight * plane.at(x + k, y);
                weights += weight;
            }
            result.at(y, x) = sum / weights;
        }
    }
    return result;
}

/// From the definition, with a whole Gaussian.
RasterImage bloomedSlowly(const Bloom& bloom, const RasterImage& image) {
    RasterImage result(image.width(), image.height());
    for (std::size_t c = 0; c < 4; ++c) {
        Plane bright{image.width(), image.height(), std::vector<double>(image.byteCount() / 4)};
        for (std::size_t i = 0; i < bright.values.size(); ++i) {
            const std::uint8_t* p = image.bytes().data() + 4 * i;
            const double luma = 0.2126 * p[0] + 0.7152 * p[1] + 0.0722 * p[2];
            const double above = std::max(luma - double(bloom.threshold) * p[3], 0.0);
            bright.values[i] = above > 0.0 ? above / luma * p[c] : 0.0;
        }
        const Plane glow =
            spreadAndTurned(spreadAndTurned(std::move(bright), bloom.radius), bloom.radius);
        for (std::size_t i = 0; i < glow.values.size(); ++i) {
            const double under = image.bytes()[4 * i + c] / 255.0;
            const double over = double(bloom.intensity) * glow.values[i] / 255.0;
            result.mutableBytes()[4 * i + c] =
                static_cast<std::uint8_t>(nearest(255.0 * (under + over - under * over)));
        }
    }
    return result;
}

void expectAgreement(const Bloom& bloom, const RasterImage& image) {
    EXPECT_LE(raster::greatestDifference(applied(bloom, image), bloomedSlowly(bloom, image)), 1)
        << image.width() << " by " << image.height();
}

TEST(Bloom, AgreesWithAWholeGaussianOnRandomPixels) {
    std::mt19937 random(51);
    for (const QSize size : {QSize(1, 1), QSize(2, 3), QSize(5, 40), QSize(41, 6), QSize(64, 64),
                             QSize(67, 70), QSize(90, 33)})
        expectAgreement({}, raster::randomImage(size.width(), size.height(), random));
}

TEST(Bloom, AgreesWithAWholeGaussianOnSinglePixelsAndEdges) {
    RasterImage dot(61, 59);
    raster::setPixel(dot, 30, 29, {255, 255, 255, 255});
    expectAgreement({.intensity = 1.0F}, dot);
    RasterImage halves = raster::filledImage(61, 59, {0, 0, 0, 255});
    for (int y = 0; y < 59; ++y)
        for (int x = 30; x < 61; ++x) raster::setPixel(halves, x, y, {255, 250, 240, 255});
    expectAgreement({.intensity = 1.0F, .threshold = 0.0F}, halves);
}

TEST(Bloom, AgreesWithAWholeGaussianOnTheFinestStripes) {
    for (const int period : {2, 3, 4, 5, 8}) {
        RasterImage stripes = raster::filledImage(80, 80, {0, 0, 0, 255});
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 80; ++x)
                if (2 * (x % period) < period)
                    raster::setPixel(stripes, x, y, {255, 255, 255, 255});
        expectAgreement({}, stripes);
    }
}

TEST(Bloom, AgreesWithAWholeGaussianOfOtherRadii) {
    std::mt19937 random(52);
    const RasterImage image = raster::randomImage(50, 50, random);
    for (const float radius : {4.0F, 5.5F, 12.0F, 30.0F})
        expectAgreement({.radius = radius}, image);
}

TEST(Bloom, LeavesDarkPicturesAlone) {
    const RasterImage dark = raster::filledImage(40, 40, {100, 120, 90, 255});
    EXPECT_TRUE(applied(Bloom{}, dark) == dark);
}

TEST(Bloom, GlowsOverTransparencyInTheColourOfTheLight) {
    RasterImage image(60, 60);
    for (int y = 20; y < 40; ++y)
        for (int x = 20; x < 40; ++x) raster::setPixel(image, x, y, {255, 200, 100, 255});
    const RasterImage result = applied(Bloom{}, image);
    int former = 255;
    for (int x = 40; x < 52; ++x) {
        const Pixel pixel = pixelAt(result, x, 30);
        EXPECT_LE(pixel.alpha, former);
        // The light's own colour, not a darker one.
        EXPECT_EQ(pixel.red, pixel.alpha);
        EXPECT_NEAR(pixel.green, pixel.alpha * 200 / 255.0, 1);
        EXPECT_NEAR(pixel.blue, pixel.alpha * 100 / 255.0, 1);
        former = pixel.alpha;
    }
    EXPECT_GT(pixelAt(result, 42, 30).alpha, 10);
    EXPECT_EQ(pixelAt(result, 0, 0), Pixel{});
}

TEST(Bloom, NeverMakesAColourBrighterThanItsAlpha) {
    std::mt19937 random(53);
    const RasterImage image = raster::randomImage(120, 90, random);
    const RasterImage result = applied(Bloom{.intensity = 1.0F, .threshold = 0.0F}, image);
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 120; ++x) {
            const Pixel pixel = pixelAt(result, x, y);
            ASSERT_LE(std::max({pixel.red, pixel.green, pixel.blue}), pixel.alpha);
            ASSERT_GE(pixel.alpha, pixelAt(image, x, y).alpha);
        }
    }
}

TEST(Bloom, IsTheSameOnOneThread) {
    expectSameOnOneThread(Bloom{});
}

} // namespace
} // namespace quillabrae::effects
