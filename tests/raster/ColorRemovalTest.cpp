// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceColorRemoval.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <QPoint>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using LayerRasterService::removeColor;
using model::ColorValue;
using model::PaintLayer;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const ColorValue white{1, 1, 1, 1};
const ColorValue black{0, 0, 0, 1};

/// A straight component of a premultiplied pixel, as a PNG stores it.
int straight(int component, int alpha) {
    if (alpha == 0) return 0;
    return std::min(255, static_cast<int>(std::floor(component * 255.0 / alpha + 0.5)));
}

Pixel premultiplied(int red, int green, int blue, int alpha) {
    return {bookProduct(red, alpha), bookProduct(green, alpha), bookProduct(blue, alpha), alpha};
}

/// What becomes of one pixel; nothing when it is left alone.
std::optional<Pixel> removedByTheBook(Pixel pixel, const ColorValue& target, double tolerance,
                                      double threshold) {
    const double tr = std::clamp(target.red * 255.0, 0.0, 255.0);
    const double tg = std::clamp(target.green * 255.0, 0.0, 255.0);
    const double tb = std::clamp(target.blue * 255.0, 0.0, 255.0);
    const double factor = std::clamp(tolerance, 0.0, 20.0);
    const double pr = straight(pixel.red, pixel.alpha);
    const double pg = straight(pixel.green, pixel.alpha);
    const double pb = straight(pixel.blue, pixel.alpha);
    const double distance =
        std::sqrt((pr - tr) * (pr - tr) + (pg - tg) * (pg - tg) + (pb - tb) * (pb - tb));
    const double a = factor * distance;
    if (a <= std::clamp(threshold, 0.0, 255.0)) return Pixel{};
    if (a >= pixel.alpha) return std::nullopt;
    const double n = a / 255.0;
    if (n <= 0.0) return std::nullopt;
    const auto unmixed = [n](double p, double t) {
        return static_cast<int>(std::clamp(std::trunc((p - t * (1.0 - n)) / n), 0.0, 255.0));
    };
    return premultiplied(unmixed(pr, tr), unmixed(pg, tg), unmixed(pb, tb),
                         static_cast<int>(std::lround(std::min(a, 255.0) / 255.0 * 255.0)));
}

/// Checks every pixel and the result of one removal.
void expectRemoval(const RasterImage& image, const ColorValue& target, double tolerance,
                   double threshold) {
    PaintLayer layer = layerOf(image);
    const PaintLayer before = layer;
    RasterImage expected = image;
    bool isAnyWritten = false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const auto pixel = removedByTheBook(pixelAt(image, x, y), target, tolerance, threshold);
            if (!pixel) continue;
            isAnyWritten = true;
            setPixel(expected, x, y, *pixel);
        }
    }
    ASSERT_EQ(removeColor(layer, image.width(), image.height(), target, tolerance, threshold),
              isAnyWritten);
    ASSERT_EQ(decodePng(*layer.bitmapPNGData), expected);
    if (!isAnyWritten) {
        ASSERT_EQ(layer, before);
    }
}

Pixel removedFrom(Pixel pixel, const ColorValue& target, double tolerance, double threshold) {
    PaintLayer layer = layerOf(filledImage(1, 1, pixel));
    removeColor(layer, 1, 1, target, tolerance, threshold);
    return pixelAt(decodePng(*layer.bitmapPNGData), 0, 0);
}

TEST(RemoveColor, AgreesWithTheDefinition) {
    std::mt19937 random(201);
    std::uniform_int_distribution<int> side(1, 60);
    std::uniform_real_distribution<double> component(-0.1, 1.1);
    std::uniform_real_distribution<double> factor(0.0, 3.0);
    std::uniform_real_distribution<double> limit(-10.0, 120.0);
    for (int round = 0; round < 300; ++round) {
        const RasterImage image = randomImage(side(random), side(random), random);
        ColorValue target{component(random), component(random), component(random), 0.3};
        if (round % 3 == 0) target = round % 2 == 0 ? white : black;
        const double tolerance = round % 4 == 0 ? 1.0 : factor(random);
        const double threshold = round % 5 == 0 ? 0.0 : limit(random);
        expectRemoval(image, target, tolerance, threshold);
        if (HasFatalFailure()) FAIL() << round;
    }
}

TEST(RemoveColor, AgreesWithTheDefinitionOnPicturesThatShadeIntoTheColor) {
    RasterImage image(256, 64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 256; ++x)
            setPixel(image, x, y, premultiplied(x, 255 - 2 * y, 128, y < 40 ? 255 : 4 * y));
    for (const double tolerance : {0.5, 1.0, 1.7, 5.0, 20.0})
        for (const double threshold : {0.0, 0.5, 30.0, 254.0})
            for (const ColorValue& target : {white, black, ColorValue{0.5, 1.0, 0.5, 1.0},
                                             ColorValue{128 / 255.0, 40 / 255.0, 1.0, 1.0}})
                expectRemoval(image, target, tolerance, threshold);
}

TEST(RemoveColor, AgreesWithTheDefinitionAtTheVeryBordersOfRounding) {
    std::mt19937 random(204);
    std::uniform_real_distribution<double> component(0.0, 1.0);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 1500; ++round) {
        const ColorValue target{component(random), component(random), component(random), 1.0};
        const Pixel pixel{byte(random), byte(random), byte(random), 255};
        const double distance =
            std::hypot(pixel.red - target.red * 255.0, pixel.green - target.green * 255.0,
                       pixel.blue - target.blue * 255.0);
        // An alpha, and a component of the result, a hair's breadth to either side of a border.
        const double offset = (round % 2 == 0 ? 1 : -1) * std::pow(10.0, -(round / 2 % 14));
        const double half = byte(random) + 0.5 + offset;
        const double whole = byte(random) + offset;
        const double share = (pixel.red - target.red * 255.0) / (whole - target.red * 255.0);
        for (const double tolerance : {half / distance, share * 255.0 / distance}) {
            expectRemoval(filledImage(3, 3, pixel), target, tolerance, 0.0);
            expectRemoval(filledImage(3, 3, pixel), target, tolerance, tolerance * distance);
            expectRemoval(filledImage(3, 3, pixel), target, 1.0, distance + offset);
            if (HasFatalFailure()) FAIL() << round;
        }
    }
}

TEST(RemoveColor, AgreesWithTheDefinitionOnFlatPictures) {
    const ColorValue target{0.2, 0.6, 1.0, 1.0};
    for (const Pixel pixel : {Pixel{51, 153, 255, 255}, Pixel{60, 140, 250, 255}, Pixel{},
                              Pixel{9, 3, 20, 40}, Pixel{255, 0, 0, 255}}) {
        // Runs that are flat to the end, and runs with another pixel first, last or in between.
        RasterImage image = filledImage(300, 7, pixel);
        for (const QPoint other : {QPoint(0, 2), QPoint(130, 4), QPoint(299, 6)})
            setPixel(image, other.x(), other.y(), {70, 120, 200, 230});
        for (const double tolerance : {0.0, 0.7, 1.0, 3.0})
            expectRemoval(image, target, tolerance, 5);
        expectRemoval(filledImage(256, 1, pixel), target, 1.5, 0);
    }
}

TEST(RemoveColor, WithAToleranceOfNothingMakesTheWholeLayerTransparent) {
    std::mt19937 random(202);
    PaintLayer layer = layerOf(randomImage(20, 9, random));
    EXPECT_TRUE(removeColor(layer, 20, 9, white, 0, 0));
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), RasterImage(20, 9));
}

TEST(RemoveColor, TakesWhiteOutOfGrey) {
    EXPECT_EQ(removedFrom({255, 255, 255, 255}, white, 1, 0), Pixel{});
    // 127 * sqrt(3) is 219.97, and what was blended with white to give 128 is 107.78.
    EXPECT_EQ(removedFrom({128, 128, 128, 255}, white, 1, 0), premultiplied(107, 107, 107, 220));
}

TEST(RemoveColor, HoldsToleranceAndThresholdToTheirRanges) {
    std::mt19937 random(203);
    const RasterImage image = randomImage(40, 40, random);
    const auto removed = [&image](double tolerance, double threshold) {
        PaintLayer layer = layerOf(image);
        removeColor(layer, 40, 40, {0.4, 0.5, 0.6, 1}, tolerance, threshold);
        return decodePng(*layer.bitmapPNGData);
    };
    EXPECT_EQ(removed(100, 10), removed(20, 10));
    EXPECT_EQ(removed(infinity, 10), removed(20, 10));
    EXPECT_EQ(removed(1, 300), removed(1, 255));
    EXPECT_EQ(removed(1, infinity), removed(1, 255));
    EXPECT_EQ(removed(-3, 10), removed(0, 10));
    EXPECT_EQ(removed(notANumber, 10), removed(0, 10));
    EXPECT_EQ(removed(1, -3), removed(1, 0));
    EXPECT_EQ(removed(1, notANumber), removed(1, 0));
}

TEST(RemoveColor, LeavesAPixelFarFromTheColorAndDoesNotCountIt) {
    PaintLayer layer = layerOf(filledImage(3, 3, {0, 0, 0, 255}));
    const PaintLayer before = layer;
    EXPECT_FALSE(removeColor(layer, 3, 3, white, 1, 0));
    EXPECT_EQ(layer, before);
}

TEST(RemoveColor, NeverRaisesAlpha) {
    // 80 levels from black in one component: an alpha of 80.
    EXPECT_EQ(removedFrom(premultiplied(80, 0, 0, 80), black, 1, 0), premultiplied(80, 0, 0, 80));
    EXPECT_EQ(removedFrom(premultiplied(80, 0, 0, 255), black, 1, 0), premultiplied(255, 0, 0, 80));
}

TEST(RemoveColor, FromATransparentLayerWritesOnlyWithinTheThreshold) {
    PaintLayer layer = layerOf(RasterImage(3, 3));
    const PaintLayer before = layer;
    EXPECT_FALSE(removeColor(layer, 3, 3, white, 1, 100));
    EXPECT_EQ(layer, before);
    EXPECT_TRUE(removeColor(layer, 3, 3, black, 1, 0));
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), RasterImage(3, 3));
    PaintLayer withoutPixels;
    EXPECT_FALSE(removeColor(withoutPixels, 3, 3, white, 1, 0));
    EXPECT_FALSE(withoutPixels.bitmapPNGData.has_value());
    PaintLayer unreadable;
    unreadable.bitmapPNGData = model::PngBytes(QByteArrayLiteral("not a picture"));
    EXPECT_TRUE(removeColor(unreadable, 3, 3, black, 1, 0));
    EXPECT_EQ(decodePng(*unreadable.bitmapPNGData), RasterImage(3, 3));
}

TEST(RemoveColor, TakesNoNoteOfTheColorsAlphaAndHoldsItsComponents) {
    const Pixel pixel{200, 210, 220, 255};
    EXPECT_EQ(removedFrom(pixel, {1, 1, 1, 0}, 1, 0), removedFrom(pixel, white, 1, 0));
    EXPECT_EQ(removedFrom(pixel, {7, 1, infinity, 1}, 1, 0), removedFrom(pixel, white, 1, 0));
    EXPECT_EQ(removedFrom(pixel, {notANumber, -1, 0, 1}, 1, 0), removedFrom(pixel, black, 1, 0));
}

TEST(RemoveColor, RefusesCanvasesThatNoPictureHas) {
    PaintLayer layer = layerOf(filledImage(2, 2, {255, 255, 255, 255}));
    const PaintLayer before = layer;
    EXPECT_FALSE(removeColor(layer, infinity, 2, white, 1, 0));
    EXPECT_FALSE(removeColor(layer, 2, notANumber, white, 1, 0));
    EXPECT_FALSE(removeColor(layer, 32'768, 32'768, white, 1, 0));
    EXPECT_EQ(layer, before);
}

} // namespace
} // namespace quillabrae::raster
