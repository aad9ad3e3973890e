// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BookLayers.h"
#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace quillabrae::raster {
namespace {

using namespace LayerRasterService;
using model::PaintLayer;
using model::PixelSelection;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Each destination pixel on its own: back through the turn, to the pixel that it falls on.
RasterImage turnedByTheBook(const RasterImage& image, const book::Selection& selection,
                            double angleDegrees, double zoomPercentage) {
    const QRect rect = book::alignedRect(selection, image.width(), image.height());
    const long double radians = angleDegrees * std::numbers::pi_v<long double> / 180.0L;
    const long double scale = std::max(zoomPercentage / 100.0, 0.01);
    const long double share = 0x1p-24L;
    RasterImage result = book::cleared(image, selection);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const long double dx = x + 0.5L - (rect.x() + rect.width() / 2.0L);
            const long double dy = y + 0.5L - (rect.y() + rect.height() / 2.0L);
            const long double u =
                std::floor((dx * std::cos(radians) + dy * std::sin(radians)) / scale +
                           rect.width() / 2.0L + share);
            const long double v =
                std::floor((dy * std::cos(radians) - dx * std::sin(radians)) / scale +
                           rect.height() / 2.0L + share);
            if (u < 0 || u >= rect.width() || v < 0 || v >= rect.height()) continue;
            const int fromX = rect.x() + static_cast<int>(u);
            const int fromY = rect.y() + static_cast<int>(v);
            const int coverage =
                book::coverageAt(selection, image.width(), image.height(), fromX, fromY);
            const Pixel from = pixelAt(image, fromX, fromY);
            const Pixel lifted{bookProduct(from.red, coverage), bookProduct(from.green, coverage),
                               bookProduct(from.blue, coverage), bookProduct(from.alpha, coverage)};
            setPixel(result, x, y, bookSourceOver(pixelAt(result, x, y), lifted, 255));
        }
    }
    return result;
}

RasterImage turned(const RasterImage& image, const book::Selection& selection, double angleDegrees,
                   double zoomPercentage) {
    PaintLayer layer = layerOf(image);
    EXPECT_TRUE(rotateZoomLayerPixels(layer, image.width(), image.height(), selection, angleDegrees,
                                      zoomPercentage));
    return decodePng(*layer.bitmapPNGData);
}

TEST(RotateZoom, AgreesWithTheDefinition) {
    std::mt19937 random(101);
    std::uniform_int_distribution<int> side(1, 45);
    std::uniform_real_distribution<double> anyAngle(-720.0, 720.0);
    std::uniform_real_distribution<double> anyZoom(0.0, 450.0);
    const std::vector<double> angles{0, 30, 45, 60, 90, 180, 270, -90, 360, 3690};
    const std::vector<double> zooms{100, 50, 200, 300, 0, 33, 1600};
    for (std::size_t round = 0; round < 400; ++round) {
        const RasterImage image = randomImage(side(random), side(random), random);
        book::Selection selection;
        if (round % 3 != 0)
            selection = book::randomSelection(image.width(), image.height(), random);
        if (book::alignedRect(selection, image.width(), image.height()).isEmpty()) continue;
        const double angle = round % 2 == 0 ? anyAngle(random) : angles[round / 2 % angles.size()];
        const double zoom = round % 5 == 0 ? anyZoom(random) : zooms[round / 5 % zooms.size()];
        ASSERT_EQ(turned(image, selection, angle, zoom),
                  turnedByTheBook(image, selection, angle, zoom))
            << round << ": " << angle << " degrees, " << zoom << " %";
    }
}

TEST(RotateZoom, TurnsClockwiseOnTheScreen) {
    RasterImage image(3, 3);
    setPixel(image, 1, 0, {9, 9, 9, 255});
    RasterImage expected(3, 3);
    setPixel(expected, 2, 1, {9, 9, 9, 255});
    EXPECT_EQ(turned(image, std::nullopt, 90, 100), expected);
}

TEST(RotateZoom, ByAFullTurnOrNoneChangesNothing) {
    std::mt19937 random(102);
    const RasterImage image = randomImage(37, 22, random);
    for (const double angle : {0.0, 360.0, -720.0, 36'000.0})
        EXPECT_EQ(turned(image, std::nullopt, angle, 100), image);
    EXPECT_EQ(turned(turned(image, std::nullopt, 180, 100), std::nullopt, 180, 100), image);
}

TEST(RotateZoom, OfASquareByRightAnglesMovesEveryPixelWhole) {
    std::mt19937 random(103);
    for (const int side : {1, 2, 7, 64}) {
        const RasterImage image = randomImage(side, side, random);
        RasterImage expected(side, side);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                setPixel(expected, side - 1 - y, x, pixelAt(image, x, y));
        EXPECT_EQ(turned(image, std::nullopt, 90, 100), expected) << side;
        EXPECT_EQ(turned(expected, std::nullopt, -90, 100), image) << side;
    }
}

TEST(RotateZoom, TakesAZoomOfNothingAsOnePercent) {
    RasterImage image = filledImage(300, 300, {5, 6, 7, 255});
    const RasterImage zoomed = turned(image, std::nullopt, 0, 0);
    EXPECT_EQ(zoomed, turned(image, std::nullopt, 0, 1));
    EXPECT_EQ(zoomed, turned(image, std::nullopt, 0, -50));
    EXPECT_EQ(opaquePixelBounds(zoomed, QRectF(0, 0, 300, 300)), QRectF(148, 148, 3, 3));
}

TEST(RotateZoom, ReachesBeyondItsRectangleAndLosesWhatLeavesTheCanvas) {
    const RasterImage image = filledImage(9, 9, {5, 6, 7, 255});
    const PixelSelection selection{3, 3, 3, 3, {}};
    EXPECT_EQ(turned(image, selection, 0, 300), image);
    EXPECT_EQ(turned(image, selection, 0, 50), turnedByTheBook(image, selection, 0, 50));
}

TEST(RotateZoom, HasNoDriftOnTheWidestCanvas) {
    // Hard blocks of an odd picture: a column that is off by one shows at once.
    constexpr int width = 16'383;
    RasterImage image(width, 2);
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < 2; ++y) setPixel(image, x, y, {x % 251, x / 251, y, 255});
    for (const double zoom : {100.0, 150.0, 70.0}) {
        const RasterImage zoomed = turned(image, std::nullopt, 180, zoom);
        for (int x = 0; x < width; ++x) {
            // (width / 2 - (x + 1/2)) * 100 / zoom + width / 2, in halves of a pixel times zoom.
            const auto part = static_cast<std::int64_t>(zoom);
            const std::int64_t numerator =
                (width - 2 * std::int64_t{x} - 1) * 100 + std::int64_t{width} * part;
            if (numerator < 0 || numerator >= 2 * part * width) continue;
            const auto from = static_cast<int>(numerator / (2 * part));
            ASSERT_EQ(pixelAt(zoomed, x, 0).red, from % 251) << x;
            ASSERT_EQ(pixelAt(zoomed, x, 0).green, from / 251) << x;
        }
    }
}

TEST(RotateZoom, OfALayerWithoutPixelsStoresATransparentCanvas) {
    PaintLayer layer;
    EXPECT_TRUE(rotateZoomLayerPixels(layer, 6, 5, std::nullopt, 45, 100));
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), RasterImage(6, 5));
}

TEST(RotateZoom, IsFalseForWhatIsNoTurnNoSelectionOrNoCanvas) {
    PaintLayer layer = layerOf(filledImage(4, 4, {1, 2, 3, 4}));
    const PaintLayer before = layer;
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 4, 4, std::nullopt, notANumber, 100));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 4, 4, std::nullopt, infinity, 100));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 4, 4, std::nullopt, 10, notANumber));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 4, 4, std::nullopt, 10, infinity));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 4, 4, PixelSelection{4, 0, 3, 3, {}}, 10, 100));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, infinity, 4, std::nullopt, 10, 100));
    EXPECT_FALSE(rotateZoomLayerPixels(layer, 32'768, 32'768, std::nullopt, 10, 100));
    EXPECT_EQ(layer, before);
}

TEST(RotateZoom, TakesEveryFiniteAngleAndZoom) {
    const RasterImage image = filledImage(40, 30, {1, 2, 3, 4});
    for (const double angle : {1e300, -1e18, 1e-300}) {
        for (const double zoom : {1e300, 1e9, 1e-300, -1e300}) {
            PaintLayer layer = layerOf(image);
            EXPECT_TRUE(rotateZoomLayerPixels(layer, 40, 30, std::nullopt, angle, zoom));
        }
    }
    EXPECT_EQ(turned(image, std::nullopt, 12, 1e300), image);
}

} // namespace
} // namespace quillabrae::raster
