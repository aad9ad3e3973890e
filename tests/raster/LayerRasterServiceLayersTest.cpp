// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BookLayers.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceLayers.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace LayerRasterService;
using model::PaintLayer;
using model::PixelSelection;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const std::vector<QSizeF> refusedSizes{{infinity, 4},  {4, notANumber}, {1e12, 1},
                                       {32768, 32768}, {1, -infinity},  {40'000, 2}};

PixelSelection rectangle(double x, double y, double width, double height) {
    return {x, y, width, height, {}};
}

PaintLayer unreadableLayer() {
    PaintLayer layer;
    layer.bitmapPNGData = model::PngBytes(QByteArrayLiteral("not a picture"));
    return layer;
}

RasterImage pixelsOf(const PaintLayer& layer) {
    return layer.bitmapPNGData ? decodePng(*layer.bitmapPNGData) : RasterImage();
}

/// Runs `check(image, selection, round)` on many pictures of odd sizes and selections of them.
template <typename Check>
void forRandomSelections(unsigned seed, Check check) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> side(1, 41);
    for (int round = 0; round < 300; ++round) {
        const bool isTiny = round % 10 == 0;
        const RasterImage image =
            isTiny ? randomImage(1, 1, random) : randomImage(side(random), side(random), random);
        book::Selection selection;
        if (round % 7 != 0)
            selection = book::randomSelection(image.width(), image.height(), random);
        check(image, selection, round);
        if (testing::Test::HasFailure()) return;
    }
}

TEST(InvertColors, AgreesWithTheDefinition) {
    forRandomSelections(
        11, [](const RasterImage& image, const book::Selection& selection, int round) {
            PaintLayer layer = layerOf(image);
            const PaintLayer before = layer;
            bool isAnyCovered = false;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    isAnyCovered |=
                        pixelAt(image, x, y).alpha > 0 &&
                        book::coverageAt(selection, image.width(), image.height(), x, y) > 0;
            EXPECT_EQ(invertColors(layer, image.width(), image.height(), selection), isAnyCovered)
                << round;
            EXPECT_EQ(pixelsOf(layer), book::inverted(image, selection)) << round;
            if (!isAnyCovered) {
                EXPECT_EQ(layer, before);
            }
        });
}

TEST(InvertColors, OfAFullyTransparentLayerIsFalseAndWritesNothing) {
    PaintLayer layer = layerOf(RasterImage(5, 4));
    const PaintLayer before = layer;
    EXPECT_FALSE(invertColors(layer, 5, 4, std::nullopt));
    EXPECT_TRUE(layer.bitmapPNGData->sharesBufferWith(*before.bitmapPNGData));
    PaintLayer withoutPixels;
    EXPECT_FALSE(invertColors(withoutPixels, 5, 4, std::nullopt));
    EXPECT_FALSE(withoutPixels.bitmapPNGData.has_value());
    PaintLayer unreadable = unreadableLayer();
    EXPECT_FALSE(invertColors(unreadable, 5, 4, std::nullopt));
    EXPECT_EQ(unreadable, unreadableLayer());
}

TEST(InvertColors, KeepsAHalfTransparentPixelWithinItsOwnRange) {
    PaintLayer layer = layerOf(filledImage(1, 1, {64, 0, 128, 128}));
    EXPECT_TRUE(invertColors(layer, 1, 1, std::nullopt));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 0, 0), (Pixel{64, 128, 0, 128}));
}

TEST(InvertColors, MovesColorPartOfTheWayThroughASoftMask) {
    PaintLayer layer = layerOf(filledImage(1, 1, {0, 255, 51, 255}));
    PixelSelection selection = rectangle(0, 0, 1, 1);
    selection.maskPNGData = pngData(filledImage(1, 1, {128, 128, 128, 128}));
    EXPECT_TRUE(invertColors(layer, 1, 1, selection));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 0, 0), (Pixel{128, 127, 128, 255}));
}

TEST(InvertColors, TwiceGivesTheSamePixelsBack) {
    std::mt19937 random(12);
    const RasterImage image = randomImage(33, 9, random);
    PaintLayer layer = layerOf(image);
    EXPECT_TRUE(invertColors(layer, 33, 9, std::nullopt));
    EXPECT_NE(pixelsOf(layer), image);
    EXPECT_TRUE(invertColors(layer, 33, 9, std::nullopt));
    EXPECT_EQ(pixelsOf(layer), image);
}

TEST(CroppedPixels, AgreesWithTheDefinition) {
    forRandomSelections(
        21, [](const RasterImage& image, const book::Selection& selection, int round) {
            if (!selection) return;
            const int width = image.width(), height = image.height();
            const RasterImage cropped = croppedPixels(layerOf(image), width, height, *selection);
            EXPECT_EQ(cropped, book::cropped(image, *selection)) << round;
            if (!cropped.isNull()) {
                EXPECT_EQ(cropped.logicalSize(), QSizeF(cropped.width(), cropped.height()));
            }
            PixelSelection plain = *selection;
            plain.maskPNGData.reset();
            EXPECT_EQ(croppedPixels(image, width, height, *selection), book::cropped(image, plain))
                << round;
        });
}

TEST(CroppedPixels, OfALayerWithoutPixelsAreTransparent) {
    EXPECT_EQ(croppedPixels(PaintLayer(), 9, 9, rectangle(1, 1, 4, 3)), RasterImage(4, 3));
    EXPECT_EQ(croppedPixels(unreadableLayer(), 9, 9, rectangle(1, 1, 4, 3)), RasterImage(4, 3));
}

TEST(CroppedPixels, AreAbsentWhereNothingIsSelected) {
    const RasterImage image = filledImage(4, 4, {1, 2, 3, 4});
    for (const PixelSelection& selection :
         {rectangle(4, 0, 3, 3), rectangle(0, 0, 0, 3), rectangle(-5, -5, 5, 5),
          rectangle(notANumber, 0, 3, 3), rectangle(0, 0, notANumber, 3)}) {
        EXPECT_TRUE(croppedPixels(layerOf(image), 4, 4, selection).isNull());
        EXPECT_TRUE(croppedPixels(image, 4, 4, selection).isNull());
    }
    EXPECT_TRUE(croppedPixels(RasterImage(), 4, 4, rectangle(0, 0, 2, 2)).isNull());
}

TEST(CroppedPixels, OfAnImageSmallerThanTheCanvasAreTransparentBeyondIt) {
    const RasterImage cropped =
        croppedPixels(filledImage(3, 3, {9, 9, 9, 9}), 6, 6, rectangle(2, 2, 2, 3));
    EXPECT_EQ(pixelAt(cropped, 0, 0), (Pixel{9, 9, 9, 9}));
    for (const QPoint point : {QPoint(1, 0), QPoint(0, 1), QPoint(1, 2)})
        EXPECT_EQ(pixelAt(cropped, point.x(), point.y()), Pixel{});
}

TEST(ClearLayerPixels, AgreesWithTheDefinition) {
    forRandomSelections(31, [](const RasterImage& image, const book::Selection& selection,
                               int round) {
        if (!selection) return;
        PaintLayer layer = layerOf(image);
        const PaintLayer before = layer;
        clearLayerPixels(layer, image.width(), image.height(), *selection);
        EXPECT_EQ(pixelsOf(layer), book::cleared(image, *selection)) << round;
        const bool isNothing =
            book::alignedRect(selection, image.width(), image.height()).isEmpty();
        if (isNothing) {
            EXPECT_EQ(layer, before);
        }
        const RasterImage cleared = clearedPixels(image, image.width(), image.height(), *selection);
        EXPECT_EQ(cleared, isNothing ? RasterImage() : pixelsOf(layer)) << round;
    });
}

TEST(ClearLayerPixels, EncodesTheSameBytesAsAWholeEncodeOfTheResult) {
    std::mt19937 random(32);
    const RasterImage image = randomImage(60, 700, random);
    PaintLayer layer = layerOf(image);
    const PixelSelection selection = rectangle(5, 300, 20, 3);
    clearLayerPixels(layer, 60, 700, selection);
    EXPECT_EQ(*layer.bitmapPNGData, encodePng(book::cleared(image, selection)));
}

TEST(FlipLayerPixels, AgreesWithTheDefinition) {
    for (const MirrorAxis axis : {MirrorAxis::horizontal, MirrorAxis::vertical}) {
        forRandomSelections(
            41, [axis](const RasterImage& image, const book::Selection& selection, int round) {
                PaintLayer layer = layerOf(image);
                const PaintLayer before = layer;
                const bool isNothing =
                    book::alignedRect(selection, image.width(), image.height()).isEmpty();
                EXPECT_EQ(flipLayerPixels(layer, image.width(), image.height(), selection, axis),
                          !isNothing);
                if (isNothing) {
                    EXPECT_EQ(layer, before);
                } else {
                    EXPECT_EQ(pixelsOf(layer), book::flipped(image, selection, axis)) << round;
                }
            });
    }
}

TEST(FlipLayerPixels, LeavesEmptyLayersEmptyAndReturnsTrue) {
    for (PaintLayer layer : {PaintLayer(), unreadableLayer(), layerOf(RasterImage(7, 5))}) {
        EXPECT_TRUE(flipLayerPixels(layer, 7, 5, std::nullopt, MirrorAxis::horizontal));
        EXPECT_EQ(pixelsOf(layer), RasterImage(7, 5));
    }
}

TEST(FlipLayerPixels, MirrorsWithinTheSelectionAlone) {
    RasterImage image(4, 2);
    for (int x = 0; x < 4; ++x) setPixel(image, x, 0, {x + 1, 0, 0, 255});
    PaintLayer layer = layerOf(image);
    EXPECT_TRUE(flipLayerPixels(layer, 4, 2, rectangle(1, 0, 3, 1), MirrorAxis::horizontal));
    const std::vector<int> expected{1, 4, 3, 2};
    for (int x = 0; x < 4; ++x)
        EXPECT_EQ(pixelAt(pixelsOf(layer), x, 0).red, expected[static_cast<std::size_t>(x)]);
}

TEST(OpaquePixelBounds, HoldEveryVisiblePixelAndNoMore) {
    std::mt19937 random(51);
    for (int round = 0; round < 200; ++round) {
        std::uniform_int_distribution<int> side(1, 150);
        RasterImage image(side(random), side(random));
        QRect expected;
        const QRect target(3, 2, side(random), side(random));
        for (int count = round % 4; count > 0; --count) {
            const int x = static_cast<int>(random() % static_cast<unsigned>(image.width()));
            const int y = static_cast<int>(random() % static_cast<unsigned>(image.height()));
            setPixel(image, x, y, {0, 0, 0, 1});
            if (target.contains(x, y)) expected |= QRect(x, y, 1, 1);
        }
        const auto bounds = opaquePixelBounds(image, target);
        EXPECT_EQ(bounds.has_value(), !expected.isEmpty()) << round;
        if (bounds) {
            EXPECT_EQ(*bounds, QRectF(expected)) << round;
        }
    }
}

TEST(OpaquePixelBounds, AreAbsentForTargetsWithoutPixels) {
    const RasterImage image = filledImage(4, 4, {9, 9, 9, 9});
    for (const QRectF& target : {QRectF(), QRectF(4, 0, 2, 2), QRectF(-3, 0, 3, 4),
                                 QRectF(notANumber, 0, 3, 3), QRectF(0, 0, infinity, 3)})
        EXPECT_EQ(opaquePixelBounds(image, target), std::nullopt);
    EXPECT_EQ(opaquePixelBounds(RasterImage(), QRectF(0, 0, 9, 9)), std::nullopt);
    EXPECT_EQ(opaquePixelBounds(image, QRectF(-5, -5, 50, 7)), QRectF(0, 0, 4, 2));
}

TEST(AlignOpaquePixels, AgreesWithTheDefinition) {
    std::mt19937 random(61);
    std::uniform_int_distribution<int> side(1, 30);
    for (int round = 0; round < 320; ++round) {
        const RasterImage image = randomImage(side(random), side(random), random);
        RasterImage sparse(image.width() + 5, image.height() + 4);
        drawImage(sparse, image,
                  QRect(round % 5, round % 4, 1 + image.width() / 2, 1 + image.height() / 2));
        const PixelSelection selection =
            book::randomSelection(sparse.width(), sparse.height(), random);
        const QRectF target(selection.x, selection.y, selection.width, selection.height);
        const auto horizontal = static_cast<AlignHorizontalTarget>(round % 4);
        const auto vertical = static_cast<AlignVerticalTarget>(round / 4 % 4);
        PaintLayer layer = layerOf(sparse);
        const PaintLayer before = layer;
        const auto expected = book::aligned(sparse, target, horizontal, vertical);
        EXPECT_EQ(
            alignOpaquePixels(layer, sparse.width(), sparse.height(), target, horizontal, vertical),
            expected.has_value())
            << round;
        if (expected) {
            ASSERT_EQ(pixelsOf(layer), *expected) << round;
        } else {
            ASSERT_EQ(layer, before) << round;
        }
    }
}

TEST(AlignOpaquePixels, OfContentThatStandsAtTheEdgeIsFalse) {
    RasterImage image(10, 10);
    setPixel(image, 0, 4, {1, 1, 1, 1});
    PaintLayer layer = layerOf(image);
    const PaintLayer before = layer;
    EXPECT_FALSE(alignOpaquePixels(layer, 10, 10, QRectF(0, 0, 10, 10), AlignHorizontalTarget::left,
                                   AlignVerticalTarget::keep));
    EXPECT_EQ(layer, before);
}

TEST(AlignOpaquePixels, RoundsAMiddleBetweenTwoPixelsAwayFromZero) {
    RasterImage image(10, 10);
    setPixel(image, 0, 0, {1, 2, 3, 255});
    PaintLayer layer = layerOf(image);
    EXPECT_TRUE(alignOpaquePixels(layer, 10, 10, QRectF(0, 0, 10, 10),
                                  AlignHorizontalTarget::center, AlignVerticalTarget::middle));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 5, 5), (Pixel{1, 2, 3, 255}));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 0, 0), Pixel{});
}

TEST(AlignOpaquePixels, OfALayerWithoutPixelsIsFalse) {
    for (PaintLayer layer : {PaintLayer(), unreadableLayer(), layerOf(RasterImage(6, 6))}) {
        const PaintLayer before = layer;
        EXPECT_FALSE(alignOpaquePixels(layer, 6, 6, QRectF(0, 0, 6, 6),
                                       AlignHorizontalTarget::right, AlignVerticalTarget::bottom));
        EXPECT_EQ(layer, before);
    }
}

TEST(MoveOpaquePixels, LosesWhatLeavesTheCanvasAndCoversWhatItReaches) {
    RasterImage image = filledImage(5, 4, {0, 100, 0, 200});
    setPixel(image, 1, 1, {60, 0, 0, 60});
    for (const QPointF place :
         {QPointF(-1, 3), QPointF(4, -1), QPointF(900, 2), QPointF(2.5, 0.6)}) {
        PaintLayer layer = layerOf(image);
        ASSERT_TRUE(moveOpaquePixels(layer, 5, 4, QRectF(1, 1, 2, 2), place));
        RasterImage expected = image;
        for (const QPoint point : {QPoint(1, 1), QPoint(2, 1), QPoint(1, 2), QPoint(2, 2)})
            setPixel(expected, point.x(), point.y(), {});
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 5; ++x) {
                const double column = x + 0.5 - place.x(), row = y + 0.5 - place.y();
                if (column < 0 || column >= 2 || row < 0 || row >= 2) continue;
                setPixel(expected, x, y,
                         bookSourceOver(pixelAt(expected, x, y),
                                        pixelAt(image, 1 + static_cast<int>(column),
                                                1 + static_cast<int>(row)),
                                        255));
            }
        }
        EXPECT_EQ(pixelsOf(layer), expected) << place.x() << ' ' << place.y();
    }
}

TEST(MoveOpaquePixels, IsFalseForNoBlockAndForPlacesThatAreNone) {
    PaintLayer layer = layerOf(filledImage(5, 4, {1, 1, 1, 1}));
    const PaintLayer before = layer;
    EXPECT_FALSE(moveOpaquePixels(layer, 5, 4, QRectF(7, 7, 2, 2), QPointF(0, 0)));
    EXPECT_FALSE(moveOpaquePixels(layer, 5, 4, QRectF(1, 1, 2, 2), QPointF(notANumber, 0)));
    EXPECT_FALSE(moveOpaquePixels(layer, 5, 4, QRectF(1, 1, 2, 2), QPointF(0, infinity)));
    EXPECT_EQ(layer, before);
}

TEST(TransformedImage, AgreesWithTheDefinition) {
    std::mt19937 random(71);
    std::uniform_int_distribution<int> side(1, 30);
    std::uniform_real_distribution<double> position(-20.0, 30.0);
    std::uniform_real_distribution<double> extent(0.3, 50.0);
    for (int round = 0; round < 200; ++round) {
        const RasterImage image = randomImage(side(random), side(random), random);
        const RasterImage base = randomImage(side(random), side(random), random);
        QRectF target(position(random), position(random), extent(random), extent(random));
        if (round % 2 == 0) target = target.toRect().adjusted(0, 0, 1, 1);
        const int width = base.width(), height = base.height();
        ASSERT_EQ(compositedTransformedImage(image, base, width, height, target),
                  book::composited(image, base, target))
            << round;
        ASSERT_EQ(transformedImage(image, width, height, target),
                  book::composited(image, RasterImage(width, height), target))
            << round;
    }
}

TEST(TransformedImage, DrawsNothingForTargetsWithoutArea) {
    const RasterImage image = filledImage(2, 2, {9, 9, 9, 9});
    for (const QRectF& target : {QRectF(1, 1, 0, 3), QRectF(3, 3, -2, 2), QRectF(50, 0, 3, 3),
                                 QRectF(notANumber, 0, 3, 3), QRectF(0, 0, infinity, 3)})
        EXPECT_EQ(transformedImage(image, 5, 5, target), RasterImage(5, 5));
    EXPECT_EQ(transformedImage(RasterImage(), 5, 5, QRectF(0, 0, 5, 5)), RasterImage(5, 5));
    EXPECT_EQ(compositedTransformedImage(RasterImage(), image, 2, 2, QRectF(0, 0, 2, 2)), image);
    EXPECT_EQ(compositedTransformedImage(image, RasterImage(), 2, 2, QRectF(0, 0, 2, 2)), image);
}

TEST(LayerPixels, StretchALayerOfAnotherSizeToTheCanvasFirst) {
    std::mt19937 random(81);
    const RasterImage small = randomImage(3, 5, random);
    const RasterImage shown = copyImage(small, 8, 7);
    PaintLayer layer = layerOf(small);
    EXPECT_TRUE(flipLayerPixels(layer, 8, 7, std::nullopt, MirrorAxis::vertical));
    EXPECT_EQ(pixelsOf(layer), book::flipped(shown, std::nullopt, MirrorAxis::vertical));
}

TEST(LayerPixels, OnAFractionalCanvasReachTheLastPixelOfItsSurface) {
    const RasterImage image = filledImage(11, 10, {9, 9, 9, 255});
    PaintLayer layer = layerOf(image);
    clearLayerPixels(layer, 10.6, 10.4, rectangle(8, 0, 50, 50));
    EXPECT_EQ(pixelsOf(layer), book::cleared(image, rectangle(8, 0, 3, 10)));
    EXPECT_EQ(croppedPixels(image, 10.6, 10.4, rectangle(5, 5, 50, 50)).logicalSize(),
              QSizeF(10.6 - 5, 10.4 - 5));
    // No pixel's centre lies in what is left of the canvas past its last whole pixel.
    EXPECT_TRUE(croppedPixels(image, 10.6, 10.4, rectangle(0, 10.1, 5, 5)).isNull());
}

TEST(LayerPixels, RefuseCanvasesThatNoPictureHas) {
    const RasterImage image = filledImage(2, 2, {9, 9, 9, 255});
    const PixelSelection selection = rectangle(0, 0, 2, 2);
    const PaintLayer before = layerOf(image);
    for (const QSizeF& size : refusedSizes) {
        PaintLayer layer = before;
        const double width = size.width(), height = size.height();
        EXPECT_FALSE(invertColors(layer, width, height, std::nullopt));
        EXPECT_FALSE(flipLayerPixels(layer, width, height, selection, MirrorAxis::vertical));
        EXPECT_FALSE(alignOpaquePixels(layer, width, height, QRectF(0, 0, 9, 9),
                                       AlignHorizontalTarget::right, AlignVerticalTarget::keep));
        EXPECT_FALSE(moveOpaquePixels(layer, width, height, QRectF(0, 0, 2, 2), QPointF(5, 5)));
        clearLayerPixels(layer, width, height, selection);
        EXPECT_EQ(layer, before);
        EXPECT_TRUE(croppedPixels(layer, width, height, selection).isNull());
        EXPECT_TRUE(croppedPixels(image, width, height, selection).isNull());
        EXPECT_TRUE(clearedPixels(image, width, height, selection).isNull());
        EXPECT_TRUE(transformedImage(image, width, height, QRectF(0, 0, 2, 2)).isNull());
    }
}

TEST(LayerPixels, TakeACanvasOfNoSizeAsOneWithNothingOnIt) {
    PaintLayer layer = layerOf(filledImage(2, 2, {9, 9, 9, 255}));
    const PaintLayer before = layer;
    for (const QSizeF& size : {QSizeF(0, 0), QSizeF(-5, 3), QSizeF(3, 0)}) {
        EXPECT_FALSE(invertColors(layer, size.width(), size.height(), std::nullopt));
        EXPECT_FALSE(flipLayerPixels(layer, size.width(), size.height(), std::nullopt,
                                     MirrorAxis::horizontal));
        EXPECT_EQ(layer, before);
    }
}

TEST(LayerPixels, WorkOnTheWidestCanvas) {
    RasterImage image(32'768, 2);
    setPixel(image, 32'767, 1, {1, 2, 3, 4});
    PaintLayer layer = layerOf(image);
    EXPECT_TRUE(flipLayerPixels(layer, 32'768, 2, std::nullopt, MirrorAxis::horizontal));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 0, 1), (Pixel{1, 2, 3, 4}));
    EXPECT_TRUE(alignOpaquePixels(layer, 32'768, 2, QRectF(0, 0, 32'768, 2),
                                  AlignHorizontalTarget::right, AlignVerticalTarget::top));
    EXPECT_EQ(pixelAt(pixelsOf(layer), 32'767, 0), (Pixel{1, 2, 3, 4}));
}

} // namespace
} // namespace quillabrae::raster
