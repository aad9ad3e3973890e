// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace LayerRasterService;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(TransparentImage, RoundsItsPixelsAndKeepsTheRequestedLogicalSize) {
    const RasterImage image = transparentImage(0.4, 10.0);
    EXPECT_EQ(image.width(), 1);
    EXPECT_EQ(image.height(), 10);
    EXPECT_EQ(image.logicalSize(), QSizeF(0.4, 10.0));
    EXPECT_EQ(transparentImage(2.5, 3.5).width(), 3);
    EXPECT_EQ(transparentImage(2.5, 3.5).height(), 4);
    EXPECT_EQ(transparentImage(-7.0, 2.4).width(), 1);
    EXPECT_EQ(transparentImage(-7.0, 2.4).height(), 2);
}

TEST(TransparentImage, HoldsNothingButZeros) {
    const RasterImage image = transparentImage(7, 5);
    for (const std::uint8_t byte : image.bytes()) EXPECT_EQ(byte, 0);
}

TEST(TransparentImage, IsNullForSizesThatNoPictureHas) {
    EXPECT_TRUE(transparentImage(infinity, 5).isNull());
    EXPECT_TRUE(transparentImage(5, notANumber).isNull());
    EXPECT_TRUE(transparentImage(1e12, 1).isNull());
    EXPECT_TRUE(transparentImage(32'768, 32'768).isNull());
}

TEST(Draw, DoesNotRunItsBodyForANullImage) {
    RasterImage null;
    bool didRun = false;
    draw(null, [&](QPainter&) { didRun = true; });
    EXPECT_FALSE(didRun);
}

TEST(Draw, NestsAndChangesOnlyItsOwnImage) {
    RasterImage outer = transparentImage(4, 4);
    const RasterImage before = outer;
    draw(outer, [&](QPainter& painter) {
        RasterImage inner = transparentImage(2, 2);
        draw(inner, [](QPainter& other) { other.fillRect(0, 0, 2, 2, Qt::red); });
        painter.drawImage(QPoint(1, 1), inner.toQImage());
    });
    EXPECT_EQ(pixelAt(outer, 1, 1), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(outer, 0, 0), Pixel{});
    EXPECT_EQ(pixelAt(before, 1, 1), Pixel{});
}

TEST(PixelAlignedRect, ClipsTheEdgesFirstAndThenSnapsOutward) {
    EXPECT_EQ(pixelAlignedRect({-3.2, 5.5, 10, 10}, 100, 100), QRectF(0, 5, 7, 11));
    EXPECT_EQ(pixelAlignedRect({1, 2, 3, 4}, 100, 100), QRectF(1, 2, 3, 4));
    EXPECT_EQ(pixelAlignedRect({99.5, 99.5, 10, 10}, 100, 100), QRectF(99, 99, 1, 1));
    EXPECT_EQ(pixelAlignedRect({0.25, 0.25, 0.5, 0.5}, 100, 100), QRectF(0, 0, 1, 1));
}

TEST(PixelAlignedRect, StandardisesNegativeSizes) {
    EXPECT_EQ(pixelAlignedRect({10, 20, -4.5, -6.5}, 100, 100), QRectF(5, 13, 5, 7));
}

TEST(PixelAlignedRect, IsAllZeroForWhatIsNotOnTheCanvas) {
    for (const QRectF& rect :
         {QRectF(200, 200, 10, 10), QRectF(-20, 5, 20, 5), QRectF(100, 0, 5, 5),
          QRectF(5, 5, 0, 10), QRectF(notANumber, 0, 5, 5), QRectF(0, 0, 5, notANumber)})
        EXPECT_EQ(pixelAlignedRect(rect, 100, 100), QRectF(0, 0, 0, 0));
}

TEST(PixelAlignedRect, EndsAtTheEdgeOfAFractionalCanvas) {
    EXPECT_EQ(pixelAlignedRect({5.5, 5.5, 90, 90}, 10.4, 20.6), QRectF(5, 5, 5.4, 15.6));
}

TEST(SolidColor, FillsEveryPixelWithThePremultipliedColor) {
    const auto bytes = solidColorPNGData(3, 2, {1.0, 0.5, 0.0, 0.5});
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(decodePng(*bytes), filledImage(3, 2, {128, 64, 0, 128}));
}

TEST(SolidColor, HoldsComponentsOutsideTheirRangeToItsEnds) {
    const auto bytes = solidColorPNGData(1, 1, {7.0, -1.0, notANumber, 2.0});
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(pixelAt(decodePng(*bytes), 0, 0), (Pixel{255, 0, 0, 255}));
}

TEST(SolidColor, IsAbsentForASizeThatNoPictureHas) {
    EXPECT_EQ(solidColorPNGData(infinity, 1, {}), std::nullopt);
}

TEST(PngData, IsAbsentForANullImage) {
    EXPECT_EQ(pngData(RasterImage()), std::nullopt);
}

TEST(RenderLayer, IgnoresTheOpacity) {
    std::mt19937 random(1);
    const RasterImage image = randomImage(9, 7, random);
    EXPECT_EQ(renderLayer(layerOf(image, 0.25), 9, 7), image);
    EXPECT_EQ(renderLayer(layerOf(image, 1.0), 9, 7), image);
}

TEST(RenderLayer, IsTransparentWithoutPixelsOrWithUnreadableOnes) {
    model::PaintLayer layer;
    EXPECT_EQ(renderLayer(layer, 5, 4), RasterImage(5, 4));
    layer.bitmapPNGData = model::PngBytes(QByteArrayLiteral("not a picture"));
    EXPECT_EQ(renderLayer(layer, 5, 4), RasterImage(5, 4));
}

TEST(RenderLayer, StretchesAStoredBitmapOfAnotherSizeToTheCanvas) {
    RasterImage small(2, 1);
    setPixel(small, 0, 0, {255, 0, 0, 255});
    setPixel(small, 1, 0, {0, 0, 9, 9});
    const RasterImage rendered = renderLayer(layerOf(small), 4, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(pixelAt(rendered, x, y), pixelAt(small, x / 2, 0)) << x << ' ' << y;
}

TEST(RenderLayer, KeepsTheCanvassLogicalSize) {
    const RasterImage image(3, 3);
    EXPECT_EQ(renderLayer(layerOf(image), 3.2, 2.9).logicalSize(), QSizeF(3.2, 2.9));
}

TEST(RenderLayer, LeavesTheCachedDecodingUntouchedWhenItsResultIsDrawnOn) {
    const model::PaintLayer layer = layerOf(filledImage(4, 4, {1, 2, 3, 4}));
    RasterImage first = renderLayer(layer, 4, 4);
    setPixel(first, 2, 2, {9, 9, 9, 9});
    EXPECT_EQ(pixelAt(renderLayer(layer, 4, 4), 2, 2), (Pixel{1, 2, 3, 4}));
}

TEST(Flatten, BakesBothOpacitiesIntoTheLowerLayer) {
    model::PaintLayer lower = layerOf(filledImage(3, 3, {255, 0, 0, 255}), 0.5);
    const model::PaintLayer upper = layerOf(filledImage(3, 3, {0, 0, 255, 255}), 0.5);
    const QUuid id = lower.id;
    flatten(upper, lower, 3, 3);
    EXPECT_EQ(lower.opacity, 1.0);
    EXPECT_EQ(lower.id, id);
    const Pixel expected =
        bookSourceOver(bookSourceOver({}, {255, 0, 0, 255}, 128), {0, 0, 255, 255}, 128);
    EXPECT_EQ(expected, (Pixel{64, 0, 128, 192}));
    EXPECT_EQ(decodePng(*lower.bitmapPNGData), filledImage(3, 3, expected));
}

TEST(Flatten, AgreesWithTheDefinition) {
    std::mt19937 random(6);
    std::uniform_int_distribution<int> side(1, 40);
    for (int round = 0; round < 60; ++round) {
        const int width = side(random), height = side(random);
        const RasterImage below = randomImage(width, height, random);
        const RasterImage above = randomImage(width, height, random);
        const int belowFraction = round % 4 == 0 ? 255 : static_cast<int>(random() % 256);
        const int aboveFraction = round % 5 == 0 ? 0 : static_cast<int>(random() % 256);
        RasterImage expected(width, height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                setPixel(expected, x, y,
                         bookSourceOver(bookSourceOver({}, pixelAt(below, x, y), belowFraction),
                                        pixelAt(above, x, y), aboveFraction));
        model::PaintLayer lower = layerOf(below, belowFraction / 255.0);
        flatten(layerOf(above, aboveFraction / 255.0), lower, width, height);
        ASSERT_EQ(decodePng(*lower.bitmapPNGData), expected) << round;
    }
}

TEST(Flatten, OfTwoLayersWithoutPixelsStoresATransparentCanvas) {
    model::PaintLayer lower;
    flatten({}, lower, 2, 2);
    ASSERT_TRUE(lower.bitmapPNGData.has_value());
    EXPECT_EQ(decodePng(*lower.bitmapPNGData), RasterImage(2, 2));
}

model::PaintImage paintImage(const RasterImage& image, double x, double y, double width,
                             double height) {
    return {QUuid::createUuid(), encodePng(image), x, y, width, height};
}

TEST(BakeImage, StretchesTheImageToItsRectangleInDocumentCoordinates) {
    model::PaintLayer layer = layerOf(filledImage(6, 5, {0, 9, 0, 9}));
    RasterImage picture(2, 1);
    setPixel(picture, 0, 0, {255, 0, 0, 255});
    setPixel(picture, 1, 0, {0, 0, 128, 128});
    bakeImage(paintImage(picture, 1, 1, 4, 2), layer, 6, 5);
    const RasterImage baked = decodePng(*layer.bitmapPNGData);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 6; ++x) {
            Pixel expected{0, 9, 0, 9};
            if (x >= 1 && x < 5 && y >= 1 && y < 3)
                expected = bookSourceOver(expected, pixelAt(picture, (x - 1) / 2, 0), 255);
            EXPECT_EQ(pixelAt(baked, x, y), expected) << x << ' ' << y;
        }
    }
}

TEST(BakeImage, KeepsThePixelsWhoseCentresLieInAFractionalRectangle) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> position(-6.0, 12.0);
    std::uniform_real_distribution<double> extent(0.2, 15.0);
    for (int round = 0; round < 50; ++round) {
        const RasterImage picture = randomImage(1 + round % 5, 1 + round % 3, random);
        const double left = position(random), top = position(random);
        const double width = extent(random), height = extent(random);
        RasterImage expected(11, 7);
        for (int y = 0; y < 7; ++y) {
            for (int x = 0; x < 11; ++x) {
                const double across = (x + 0.5 - left) / width, down = (y + 0.5 - top) / height;
                if (across < 0 || across >= 1 || down < 0 || down >= 1) continue;
                setPixel(expected, x, y,
                         pixelAt(picture, static_cast<int>(across * picture.width()),
                                 static_cast<int>(down * picture.height())));
            }
        }
        model::PaintLayer layer;
        bakeImage(paintImage(picture, left, top, width, height), layer, 11, 7);
        EXPECT_EQ(decodePng(*layer.bitmapPNGData), expected) << round;
    }
}

TEST(BakeImage, DrawsNothingForUnreadableBytesOrARectangleWithoutArea) {
    const RasterImage image = filledImage(3, 3, {1, 2, 3, 4});
    const RasterImage red = filledImage(1, 1, {255, 0, 0, 255});
    std::vector<model::PaintImage> images{paintImage(red, 0, 0, 0, 3), paintImage(red, 0, 0, 3, -2),
                                          paintImage(red, notANumber, 0, 3, 3),
                                          paintImage(red, 0, 0, infinity, 3),
                                          paintImage(red, 1e300, 0, 1e300, 3)};
    images.push_back({QUuid(), model::PngBytes(QByteArrayLiteral("torn")), 0, 0, 3, 3});
    for (const model::PaintImage& none : images) {
        model::PaintLayer layer = layerOf(image);
        bakeImage(none, layer, 3, 3);
        EXPECT_EQ(decodePng(*layer.bitmapPNGData), image);
    }
}

TEST(ResizedCopy, ShowsHardBlocksAndNeverBlends) {
    RasterImage image(2, 2);
    setPixel(image, 0, 0, {255, 0, 0, 255});
    setPixel(image, 1, 0, {0, 255, 0, 255});
    setPixel(image, 0, 1, {0, 0, 255, 255});
    setPixel(image, 1, 1, {0, 0, 0, 0});
    const RasterImage resized = resizedCopy(image, 4, 4);
    ASSERT_EQ(resized.width(), 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_EQ(pixelAt(resized, x, y), pixelAt(image, x / 2, y / 2));
}

TEST(CopyImage, AgreesWithTheDefinitionAtEverySize) {
    std::mt19937 random(3);
    const std::vector<int> sides{1, 2, 3, 7, 8, 9, 31, 64, 100};
    for (const int from : sides) {
        for (const int to : sides) {
            const RasterImage image = randomImage(from, to, random);
            const RasterImage copy = copyImage(image, to, from);
            ASSERT_EQ(copy.width(), to);
            ASSERT_EQ(copy.height(), from);
            for (int y = 0; y < from; ++y)
                for (int x = 0; x < to; ++x)
                    ASSERT_EQ(pixelAt(copy, x, y), pixelAt(image, (2 * x + 1) * from / (2 * to),
                                                           (2 * y + 1) * to / (2 * from)));
        }
    }
}

TEST(CopyImage, OfANullImageIsTransparent) {
    EXPECT_EQ(copyImage(RasterImage(), 3, 2), RasterImage(3, 2));
}

TEST(DrawImage, AgreesWithTheDefinitionOnOverhangingTargets) {
    std::mt19937 random(4);
    std::uniform_int_distribution<int> side(1, 40);
    std::uniform_int_distribution<int> offset(-30, 30);
    for (int round = 0; round < 200; ++round) {
        const RasterImage source = randomImage(side(random), side(random), random);
        RasterImage drawn = randomImage(side(random), side(random), random);
        RasterImage expected = drawn;
        const QRect target(offset(random), offset(random), side(random) * 2, side(random) * 2);
        const double fraction = round % 4 == 0 ? 1.0 : (round % 97) / 96.0;
        const int fractionByte = static_cast<int>(std::lround(fraction * 255));
        for (int y = 0; y < expected.height(); ++y) {
            for (int x = 0; x < expected.width(); ++x) {
                if (!target.contains(x, y)) continue;
                const int column =
                    (2 * (x - target.x()) + 1) * source.width() / (2 * target.width());
                const int row =
                    (2 * (y - target.y()) + 1) * source.height() / (2 * target.height());
                setPixel(expected, x, y,
                         bookSourceOver(pixelAt(expected, x, y), pixelAt(source, column, row),
                                        fractionByte));
            }
        }
        drawImage(drawn, source, target, fraction);
        ASSERT_EQ(drawn, expected) << round;
    }
}

TEST(DrawImage, DrawsAnImageOntoItselfAsItWas) {
    std::mt19937 random(5);
    const RasterImage image = randomImage(8, 8, random);
    RasterImage onItself = image;
    RasterImage onACopy = copyImage(image, 8, 8);
    drawImage(onItself, image, QRect(1, 1, 8, 8));
    drawImage(onACopy, image, QRect(1, 1, 8, 8));
    EXPECT_EQ(onItself, onACopy);
    EXPECT_EQ(pixelAt(image, 0, 0), pixelAt(onItself, 0, 0));
}

TEST(DrawImage, DrawsNothingForEmptyTargetsNullImagesAndNoStrength) {
    const RasterImage image = filledImage(3, 3, {10, 20, 30, 40});
    for (const double fraction : {0.0, -1.0, notANumber}) {
        RasterImage drawn = image;
        drawImage(drawn, image, QRect(0, 0, 3, 3), fraction);
        EXPECT_EQ(drawn, image);
    }
    RasterImage drawn = image;
    drawImage(drawn, RasterImage(), QRect(0, 0, 3, 3));
    drawImage(drawn, image, QRect());
    drawImage(drawn, image, QRect(5, 5, 2, 2));
    EXPECT_EQ(drawn, image);
    RasterImage null;
    drawImage(null, image, QRect(0, 0, 3, 3));
    EXPECT_TRUE(null.isNull());
}

} // namespace
} // namespace quillabrae::raster
