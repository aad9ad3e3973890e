// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/BookLayers.h"
#include "raster/LayerRasterServiceGenerativeMasks.h"
#include "raster/LayerRasterServiceMasks.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace LayerRasterService;
using model::CanvasPoint;
using model::PaintLayer;
using model::PixelSelection;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

RasterImage decoded(const std::optional<model::PngBytes>& bytes) {
    return bytes ? decodePng(*bytes) : RasterImage();
}

Pixel white(int alpha) {
    return {alpha, alpha, alpha, alpha};
}

/// White, less what is selected, on a canvas of that size.
RasterImage bookCanvasMask(const PixelSelection& selection, int width, int height) {
    RasterImage mask(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            setPixel(mask, x, y, white(255 - book::coverageAt(selection, width, height, x, y)));
    return mask;
}

/// The part of it within the selection's rectangle; null where that is empty.
RasterImage bookRectMask(const PixelSelection& selection, int width, int height) {
    const QRect rect = book::alignedRect(selection, width, height);
    if (rect.isEmpty()) return {};
    RasterImage mask(rect.width(), rect.height());
    for (int y = 0; y < rect.height(); ++y)
        for (int x = 0; x < rect.width(); ++x)
            setPixel(mask, x, y,
                     white(255 -
                           book::coverageAt(selection, width, height, rect.x() + x, rect.y() + y)));
    return mask;
}

/// Cleared, and the stretched picture's covered pixels over it.
RasterImage bookApplied(const RasterImage& generated, const RasterImage& canvas,
                        const PixelSelection& selection) {
    const int width = canvas.width();
    const int height = canvas.height();
    const QRect rect = book::alignedRect(selection, width, height);
    RasterImage result = book::cleared(canvas, selection);
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const int column = (2 * (x - rect.x()) + 1) * generated.width() / (2 * rect.width());
            const int row = (2 * (y - rect.y()) + 1) * generated.height() / (2 * rect.height());
            // Covered first and then drawn: two roundings.
            const int coverage = book::coverageAt(selection, width, height, x, y);
            const Pixel covered = bookSourceOver({}, pixelAt(generated, column, row), coverage);
            setPixel(result, x, y, bookSourceOver(pixelAt(result, x, y), covered, 255));
        }
    }
    return result;
}

TEST(GenerativeEditMask, AgreesWithTheDefinition) {
    std::mt19937 random(21);
    std::uniform_int_distribution<int> side(1, 40);
    for (int round = 0; round < 300; ++round) {
        const int width = round % 10 == 0 ? 1 : side(random);
        const int height = round % 10 == 0 ? 1 : side(random);
        const PixelSelection selection = book::randomSelection(width, height, random);
        const auto rectMask = generativeEditMaskPNGData(selection, width, height);
        const auto canvasMask = fullCanvasGenerativeEditMaskPNGData(selection, width, height);
        const RasterImage expected = bookRectMask(selection, width, height);
        ASSERT_EQ(rectMask.has_value(), !expected.isNull()) << round;
        ASSERT_EQ(canvasMask.has_value(), !expected.isNull()) << round;
        if (expected.isNull()) continue;
        EXPECT_EQ(decoded(rectMask), expected) << round;
        EXPECT_EQ(decoded(canvasMask), bookCanvasMask(selection, width, height)) << round;
    }
}

TEST(GenerativeEditMask, OfAPlainRectIsWhollyTransparent) {
    EXPECT_EQ(decoded(generativeEditMaskPNGData({2, 3, 5, 4, {}}, 20, 20)), RasterImage(5, 4));
}

TEST(GenerativeEditMask, OfALassoIsWhiteWithTheLassoCutOutSoftEdgesIncluded) {
    const std::vector<CanvasPoint> points{{4, 4}, {16, 6}, {7, 17}};
    const QRectF bounds(4, 4, 12, 13);
    const auto lasso = lassoSelectionMask(points, bounds);
    ASSERT_TRUE(lasso.has_value());
    const RasterImage selected = decoded(lasso);
    const RasterImage mask =
        decoded(fullCanvasGenerativeEditMaskPNGData({4, 4, 12, 13, lasso}, 24, 20));
    ASSERT_EQ(QSize(mask.width(), mask.height()), QSize(24, 20));
    int softPixels = 0;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 24; ++x) {
            const bool isInside = x >= 4 && x < 16 && y >= 4 && y < 17;
            const int selectedAlpha = isInside ? pixelAt(selected, x - 4, y - 4).alpha : 0;
            EXPECT_EQ(pixelAt(mask, x, y), white(255 - selectedAlpha)) << x << ' ' << y;
            if (selectedAlpha > 0 && selectedAlpha < 255) ++softPixels;
        }
    }
    EXPECT_GT(softPixels, 10);
}

TEST(GenerativeEditMask, IsAbsentWhereNothingIsSelectedOnTheCanvas) {
    for (const PixelSelection& selection :
         {PixelSelection{20, 0, 5, 5, {}}, PixelSelection{0, -5, 5, 5, {}},
          PixelSelection{3, 3, 0, 5, {}}, PixelSelection{notANumber, 0, 5, 5, {}},
          PixelSelection{0, 0, 5, notANumber, {}}}) {
        EXPECT_EQ(generativeEditMaskPNGData(selection, 20, 20), std::nullopt);
        EXPECT_EQ(fullCanvasGenerativeEditMaskPNGData(selection, 20, 20), std::nullopt);
    }
}

TEST(GenerativeEditMask, IsAbsentForACanvasOfARefusedSize) {
    for (const QSizeF canvas :
         {QSizeF(32'768, 32'768), QSizeF(infinity, 9), QSizeF(9, notANumber), QSizeF(1e12, 1)}) {
        const PixelSelection selection{0, 0, 5, 5, {}};
        EXPECT_EQ(generativeEditMaskPNGData(selection, canvas.width(), canvas.height()),
                  std::nullopt);
        EXPECT_EQ(fullCanvasGenerativeEditMaskPNGData(selection, canvas.width(), canvas.height()),
                  std::nullopt);
        PaintLayer layer = layerOf(filledImage(2, 2, {9, 9, 9, 9}));
        const PaintLayer before = layer;
        EXPECT_FALSE(applyGeneratedImage(filledImage(2, 2, {1, 2, 3, 4}), layer, canvas.width(),
                                         canvas.height(), selection));
        EXPECT_EQ(layer, before);
    }
}

TEST(GenerativeEditMask, EndsWithAFractionalCanvas) {
    const RasterImage mask =
        decoded(fullCanvasGenerativeEditMaskPNGData({6.2, 1, 90, 2.5, {}}, 10.4, 5.6));
    ASSERT_EQ(QSize(mask.width(), mask.height()), QSize(10, 6));
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 10; ++x)
            EXPECT_EQ(pixelAt(mask, x, y), white(x >= 6 && y >= 1 && y < 4 ? 0 : 255));
    const RasterImage part = decoded(generativeEditMaskPNGData({6.2, 1, 90, 2.5, {}}, 10.4, 5.6));
    EXPECT_EQ(part, RasterImage(4, 3));
}

TEST(ApplyGeneratedImage, AgreesWithTheDefinition) {
    std::mt19937 random(22);
    std::uniform_int_distribution<int> side(1, 40);
    for (int round = 0; round < 300; ++round) {
        const int width = round % 10 == 0 ? 1 : side(random);
        const int height = round % 10 == 0 ? 1 : side(random);
        const PixelSelection selection = book::randomSelection(width, height, random);
        const RasterImage canvas = randomImage(width, height, random);
        const RasterImage generated = randomImage(side(random), side(random), random);
        PaintLayer layer = layerOf(canvas, 0.4);
        const PaintLayer before = layer;
        const bool isSelected = !book::alignedRect(selection, width, height).isEmpty();
        ASSERT_EQ(applyGeneratedImage(generated, layer, width, height, selection), isSelected)
            << round;
        EXPECT_EQ(layer.opacity, 0.4);
        if (!isSelected) {
            EXPECT_EQ(layer, before) << round;
            continue;
        }
        EXPECT_EQ(decoded(layer.bitmapPNGData), bookApplied(generated, canvas, selection)) << round;
    }
}

TEST(ApplyGeneratedImage, StretchesAPictureOfAnotherSizeToTheRect) {
    RasterImage generated(2, 1);
    setPixel(generated, 0, 0, {255, 0, 0, 255});
    setPixel(generated, 1, 0, {0, 0, 255, 255});
    PaintLayer layer = layerOf(filledImage(8, 4, {0, 9, 0, 9}));
    ASSERT_TRUE(applyGeneratedImage(generated, layer, 8, 4, {2, 1, 4, 2, {}}));
    const RasterImage applied = decoded(layer.bitmapPNGData);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x) {
            const bool isInside = x >= 2 && x < 6 && y >= 1 && y < 3;
            const Pixel expected = !isInside ? Pixel{0, 9, 0, 9}
                                   : x < 4   ? Pixel{255, 0, 0, 255}
                                             : Pixel{0, 0, 255, 255};
            EXPECT_EQ(pixelAt(applied, x, y), expected) << x << ' ' << y;
        }
    }
}

TEST(ApplyGeneratedImage, FillsALayerWithoutPixelsOrWithUnreadableOnes) {
    const RasterImage generated = filledImage(3, 3, {1, 2, 3, 255});
    PaintLayer empty;
    PaintLayer unreadable;
    unreadable.bitmapPNGData = model::PngBytes(QByteArrayLiteral("no picture"));
    for (PaintLayer* layer : {&empty, &unreadable}) {
        ASSERT_TRUE(applyGeneratedImage(generated, *layer, 6, 5, {0, 0, 6, 5, {}}));
        EXPECT_EQ(decoded(layer->bitmapPNGData), filledImage(6, 5, {1, 2, 3, 255}));
    }
}

TEST(ApplyGeneratedImage, OfANullPictureIsFalseAndWritesNothing) {
    PaintLayer layer = layerOf(filledImage(4, 4, {9, 9, 9, 9}));
    const PaintLayer before = layer;
    EXPECT_FALSE(applyGeneratedImage({}, layer, 4, 4, {0, 0, 4, 4, {}}));
    EXPECT_EQ(layer, before);
}

} // namespace
} // namespace quillabrae::raster
