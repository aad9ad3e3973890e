// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceRegions.h"
#include "raster/Parallel.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

namespace Engine = LayerRasterService;
using model::CanvasPoint;
using model::ColorValue;
using model::PaintLayer;
using model::PixelSelection;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr Pixel white{255, 255, 255, 255};

// The definition, pixel by pixel.

/// Straight components, 0 to 1.
std::array<double, 4> bookColor(const RasterImage& image, int x, int y) {
    const Pixel pixel = pixelAt(image, x, y);
    if (pixel.alpha == 0) return {};
    const auto straight = [&](int component) {
        return std::min(std::floor(component * 255.0 / pixel.alpha + 0.5), 255.0) / 255.0;
    };
    return {straight(pixel.red), straight(pixel.green), straight(pixel.blue), pixel.alpha / 255.0};
}

bool bookMatches(const std::array<double, 4>& seed, const std::array<double, 4>& candidate,
                 double percentage) {
    const double colorTolerance =
        percentage < 0 ? 0.0 : std::min(percentage, 100.0) * 1.732 / 100.0;
    const double transparentTolerance = std::max(std::min(percentage / 100.0, 1.0), 0.001);
    if (seed[3] <= 0.001) return candidate[3] <= transparentTolerance;
    if (candidate[3] <= 0.001) return false;
    double sum = 0.0;
    for (std::size_t i = 0; i < seed.size(); ++i)
        sum += (seed[i] - candidate[i]) * (seed[i] - candidate[i]);
    return std::sqrt(sum) <= colorTolerance;
}

int bookSeed(double coordinate, int count) {
    return static_cast<int>(std::clamp(std::floor(coordinate), 0.0, count - 1.0));
}

struct BookRegion {
    /// White where selected, of the picture's size.
    RasterImage selected;
    QRect bounds;
};

BookRegion bookRegion(const RasterImage& image, CanvasPoint point, double percentage) {
    const QPoint seed(bookSeed(point.x, image.width()), bookSeed(point.y, image.height()));
    const auto seedColor = bookColor(image, seed.x(), seed.y());
    BookRegion region{RasterImage(image.width(), image.height()), QRect()};
    std::vector<bool> visited(image.byteCount() / 4);
    std::vector<QPoint> queue{seed};
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const QPoint at = queue[head];
        if (!QRect(0, 0, image.width(), image.height()).contains(at)) continue;
        const auto index =
            static_cast<std::size_t>(at.y()) * static_cast<std::size_t>(image.width()) +
            static_cast<std::size_t>(at.x());
        if (visited[index]) continue;
        visited[index] = true;
        if (!bookMatches(seedColor, bookColor(image, at.x(), at.y()), percentage)) continue;
        setPixel(region.selected, at.x(), at.y(), white);
        region.bounds |= QRect(at, at);
        for (const QPoint step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
            queue.push_back(at + step);
    }
    return region;
}

testing::AssertionResult isRegion(const std::optional<PixelSelection>& actual,
                                  const BookRegion& expected) {
    if (!actual || !actual->maskPNGData) return testing::AssertionFailure() << "no mask";
    const QRect& bounds = expected.bounds;
    if (QRectF(actual->x, actual->y, actual->width, actual->height) != QRectF(bounds))
        return testing::AssertionFailure() << "the rect is " << actual->x << ' ' << actual->y << ' '
                                           << actual->width << ' ' << actual->height;
    RasterImage mask(bounds.width(), bounds.height());
    Engine::drawImage(mask, expected.selected,
                      expected.selected.toQImage().rect().translated(-bounds.topLeft()));
    if (decodePng(*actual->maskPNGData) != mask)
        return testing::AssertionFailure() << "the masks differ";
    return testing::AssertionSuccess();
}

RasterImage bookFill(const RasterImage& image, const BookRegion& region, const ColorValue& color) {
    const auto byte = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    const int alpha = byte(color.alpha);
    const Pixel source{bookProduct(byte(color.red), alpha), bookProduct(byte(color.green), alpha),
                       bookProduct(byte(color.blue), alpha), alpha};
    RasterImage filled = image;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (pixelAt(region.selected, x, y) == white)
                setPixel(filled, x, y, bookSourceOver(pixelAt(image, x, y), source, 255));
    return filled;
}

// Pictures.

/// Spots of a few colours, opaque, translucent and transparent ones, some of them nearly alike.
RasterImage spottedImage(int width, int height, std::mt19937& random) {
    constexpr std::array<Pixel, 8> palette{{{},
                                            {0, 0, 0, 1},
                                            {200, 30, 40, 255},
                                            {202, 30, 40, 255},
                                            {100, 15, 20, 128},
                                            {101, 15, 20, 128},
                                            {10, 60, 200, 255},
                                            {3, 20, 66, 85}}};
    RasterImage image = filledImage(width, height, palette[random() % palette.size()]);
    std::uniform_int_distribution<int> acrossPlace(-2, width);
    std::uniform_int_distribution<int> downPlace(-2, height);
    const int largest = 1 + static_cast<int>(random() % 12);
    for (int spot = 0; spot < width * height / 12; ++spot) {
        const QRect rect(acrossPlace(random), downPlace(random),
                         1 + static_cast<int>(random()) % 2 + largest / 2, largest);
        const Pixel pixel = palette[random() % palette.size()];
        const QRect inside = rect & QRect(0, 0, width, height);
        for (int y = inside.top(); y <= inside.bottom(); ++y)
            for (int x = inside.left(); x <= inside.right(); ++x) setPixel(image, x, y, pixel);
    }
    return image;
}

/// One row a text; the letters are colours, '.' is transparent.
RasterImage pictureOf(const std::vector<std::string>& rows) {
    RasterImage image(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const char letter = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            if (letter != '.') setPixel(image, x, y, {letter, 0, 0, 255});
        }
    }
    return image;
}

/// '#' for the selected pixels of the whole canvas.
std::vector<std::string> drawn(const PixelSelection& selection, int width, int height) {
    std::vector<std::string> rows(static_cast<std::size_t>(height),
                                  std::string(static_cast<std::size_t>(width), '.'));
    const RasterImage mask = decodePng(*selection.maskPNGData);
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (pixelAt(mask, x, y).alpha != 0)
                rows[static_cast<std::size_t>(selection.y + y)]
                    [static_cast<std::size_t>(selection.x + x)] = '#';
    return rows;
}

std::vector<std::string> wand(const RasterImage& image, CanvasPoint point, double percentage) {
    const auto selection = Engine::magicWandSelection(layerOf(image), image.width(), image.height(),
                                                      point, percentage);
    return drawn(selection.value(), image.width(), image.height());
}

using Rows = std::vector<std::string>;

/// Percentages at which few, some and most pixels match, the ends, and what is outside of them.
constexpr std::array<double, 10> percentages{0.0,  -5.0, 0.5,  1.0,        3.0,
                                             20.0, 33.4, 70.0, notANumber, 99.9};

TEST(MagicWandSelection, AgreesWithTheDefinitionOnPicturesOfAllKinds) {
    std::mt19937 random(51);
    std::uniform_int_distribution<int> side(1, 90);
    std::uniform_real_distribution<double> place(-20.0, 110.0);
    for (int round = 0; round < 400; ++round) {
        const int width = round % 20 == 0 ? 1 : side(random);
        const int height = round % 30 == 0 ? 1 : side(random);
        const RasterImage image = round % 3 == 0 ? randomImage(width, height, random)
                                                 : spottedImage(width, height, random);
        const CanvasPoint point{place(random), place(random)};
        const double percentage = percentages[static_cast<std::size_t>(round) % percentages.size()];
        const BookRegion expected =
            bookRegion(image, point, std::isnan(percentage) ? 0.0 : percentage);
        ASSERT_TRUE(isRegion(
            Engine::magicWandSelection(layerOf(image, 0.3), width, height, point, percentage),
            expected))
            << round;
    }
}

TEST(MagicWandSelection, ComparesEveryTwoTranslucentColorsAsTheBookDoes) {
    std::mt19937 random(52);
    // One row, so that the region says for each pixel in turn whether it matches.
    for (int round = 0; round < 2000; ++round) {
        RasterImage image = randomImage(3, 1, random);
        Pixel near = pixelAt(image, 0, 0);
        if (near.red < near.alpha) ++near.red;
        if (near.blue > 0) --near.blue;
        setPixel(image, 1, 0, near);
        const double percentage =
            static_cast<double>(random() % 1000) / (round % 2 == 0 ? 10 : 100);
        ASSERT_TRUE(isRegion(Engine::magicWandSelection(layerOf(image), 3, 1, {0, 0}, percentage),
                             bookRegion(image, {0, 0}, percentage)))
            << round << ' ' << percentage;
    }
}

TEST(MagicWandSelection, FollowsWindingPathsOverBandsOfRows) {
    // Rows joined by single gaps, and a patch of noise, over several bands.
    constexpr int width = 2100;
    constexpr int height = 1100;
    std::mt19937 random(53);
    RasterImage image = filledImage(width, height, {9, 9, 9, 255});
    for (int y = 1; y < height; y += 2) {
        const int gap = static_cast<int>(random() % width);
        for (int x = 0; x < width; ++x)
            if (x != gap) setPixel(image, x, y, {200, 9, 9, 255});
    }
    for (int y = 300; y < 700; ++y)
        for (int x = 900; x < 1300; ++x)
            if (random() % 10 < 4) setPixel(image, x, y, {200, 9, 9, 255});
    for (const CanvasPoint point : {CanvasPoint{0, 0}, CanvasPoint{2099, 1099}})
        EXPECT_TRUE(isRegion(Engine::magicWandSelection(layerOf(image), width, height, point, 10),
                             bookRegion(image, point, 10)));
}

TEST(MagicWandSelection, DoesNotDependOnTheNumberOfThreads) {
    std::mt19937 random(54);
    const PaintLayer layer = layerOf(spottedImage(700, 500, random));
    const auto all = Engine::magicWandSelection(layer, 700, 500, {350, 250}, 20);
    const ParallelThreadLimit limit(1);
    EXPECT_EQ(Engine::magicWandSelection(layer, 700, 500, {350, 250}, 20), all);
}

TEST(MagicWandSelection, AtZeroJoinsEqualColorsOnly) {
    const RasterImage image = pictureOf({"aab", "aba", "aaa"});
    EXPECT_EQ(wand(image, {0, 0}, 0), (Rows{"##.", "#.#", "###"}));
    EXPECT_EQ(wand(image, {0, 0}, 1), (Rows{"###", "###", "###"}));
}

TEST(MagicWandSelection, TakesTheLargestDistanceOfColorsFor1732Thousandths) {
    // White against (0, 0, 8) is sqrt(191059) / 255 = 1.71413 away: 98.9682 percent of 1.732, and
    // 98.9653 of the root of 3.
    RasterImage image(2, 1);
    setPixel(image, 0, 0, white);
    setPixel(image, 1, 0, {0, 0, 8, 255});
    EXPECT_EQ(wand(image, {0, 0}, 98.967), (Rows{"#."}));
    EXPECT_EQ(wand(image, {0, 0}, 98.97), (Rows{"##"}));
}

TEST(MagicWandSelection, AtAHundredIsTheWholeCanvasWithoutAMask) {
    for (const double percentage : {100.0, 150.0, infinity})
        EXPECT_EQ(Engine::magicWandSelection(PaintLayer(), 9, 7.5, {3, 3}, percentage),
                  (PixelSelection{0, 0, 9, 7.5, std::nullopt}));
}

TEST(MagicWandSelection, JustBelowAHundredLeavesTransparentPixelsOut) {
    EXPECT_EQ(wand(pictureOf({"aZ.", "zz."}), {0, 0}, 99.9), (Rows{"##.", "##."}));
}

TEST(MagicWandSelection, OfATransparentSeedTakesTransparentPixelsAtZero) {
    RasterImage image = pictureOf({".a.", ".a.", "..."});
    setPixel(image, 2, 2, {0, 0, 0, 1});
    EXPECT_EQ(wand(image, {0, 0}, 0), (Rows{"#..", "#..", "##."}));
    EXPECT_EQ(wand(image, {0, 0}, 0.4), (Rows{"#.#", "#.#", "###"}));
}

TEST(MagicWandSelection, BeginsAtThePixelNearestToAPointOutside) {
    RasterImage image = filledImage(100, 100, {1, 1, 1, 255});
    setPixel(image, 0, 99, {99, 1, 1, 255});
    const auto selection =
        Engine::magicWandSelection(layerOf(image), 100, 100, {-5, 500}, 0).value();
    EXPECT_EQ(QRectF(selection.x, selection.y, selection.width, selection.height),
              QRectF(0, 99, 1, 1));
    setPixel(image, 99, 0, {98, 1, 1, 255});
    const auto far =
        Engine::magicWandSelection(layerOf(image), 100, 100, {infinity, -infinity}, 0).value();
    EXPECT_EQ(QPointF(far.x, far.y), QPointF(99, 0));
    setPixel(image, 0, 0, {97, 1, 1, 255});
    const auto first =
        Engine::magicWandSelection(layerOf(image), 100, 100, {notANumber, notANumber}, 0).value();
    EXPECT_EQ(QRectF(first.x, first.y, first.width, first.height), QRectF(0, 0, 1, 1));
}

TEST(MagicWandSelection, DoesNotCrossCorners) {
    EXPECT_EQ(wand(pictureOf({"ab", "ba"}), {0, 0}, 0), (Rows{"#.", ".."}));
    EXPECT_EQ(wand(pictureOf({"ab", "ba"}), {1, 1}, 0), (Rows{"..", ".#"}));
}

TEST(MagicWandSelection, SearchesAStoredBitmapOfAnotherSizeAsItIsShown) {
    const auto selection =
        Engine::magicWandSelection(layerOf(pictureOf({"ab"})), 6, 3, {1, 1}, 0).value();
    EXPECT_EQ(drawn(selection, 6, 3), (Rows{"###...", "###...", "###..."}));
}

TEST(MagicWandSelection, OfUnreadableBytesFindsATransparentCanvas) {
    PaintLayer layer;
    layer.bitmapPNGData = model::PngBytes(QByteArrayLiteral("torn"));
    const auto selection = Engine::magicWandSelection(layer, 3, 2, {1, 1}, 0).value();
    EXPECT_EQ(drawn(selection, 3, 2), (Rows{"###", "###"}));
}

TEST(MagicWandSelection, IsNothingForACanvasThatNoPictureHas) {
    for (const double bad : {infinity, notANumber, 1e9})
        for (const double percentage : {5.0, 100.0})
            EXPECT_EQ(Engine::magicWandSelection(PaintLayer(), bad, 5, {0, 0}, percentage),
                      std::nullopt);
    EXPECT_EQ(Engine::magicWandSelection(PaintLayer(), 32'768, 32'768, {0, 0}, 100), std::nullopt);
    // Less than nothing is one pixel.
    EXPECT_EQ(Engine::magicWandSelection(PaintLayer(), -3, 0, {0, 0}, 5)->width, 1.0);
}

TEST(FillSimilarPixels, AgreesWithTheDefinitionOnPicturesOfAllKinds) {
    std::mt19937 random(55);
    std::uniform_int_distribution<int> side(1, 60);
    std::uniform_real_distribution<double> place(-10.0, 70.0);
    std::uniform_real_distribution<double> part(0.0, 1.0);
    for (int round = 0; round < 200; ++round) {
        const int width = round % 20 == 0 ? 1 : side(random);
        const int height = round % 30 == 0 ? 1 : side(random);
        const RasterImage image = round % 3 == 0 ? randomImage(width, height, random)
                                                 : spottedImage(width, height, random);
        const CanvasPoint point{place(random), place(random)};
        const double percentage = static_cast<double>(random() % 60);
        const ColorValue color{part(random), part(random), part(random),
                               round % 2 == 0 ? 1.0 : part(random)};
        PaintLayer layer = layerOf(image, 0.5);
        ASSERT_TRUE(Engine::fillSimilarPixels(layer, width, height, point, color, percentage));
        EXPECT_EQ(layer.opacity, 0.5);
        ASSERT_EQ(decodePng(layer.bitmapPNGData.value()),
                  bookFill(image, bookRegion(image, point, percentage), color))
            << round;
    }
}

TEST(FillSimilarPixels, LaysATranslucentColorOverTheOldPixels) {
    PaintLayer layer = layerOf(filledImage(2, 1, {0, 0, 255, 255}));
    ASSERT_TRUE(Engine::fillSimilarPixels(layer, 2, 1, {0, 0}, {1, 0, 0, 0.5}, 0));
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), filledImage(2, 1, {128, 0, 127, 255}));
}

TEST(FillSimilarPixels, AtAHundredCoversTheWholeCanvas) {
    std::mt19937 random(56);
    PaintLayer layer = layerOf(randomImage(17, 9, random));
    ASSERT_TRUE(Engine::fillSimilarPixels(layer, 17, 9, {3, 3}, {0, 1, 0, 1}, 100));
    EXPECT_EQ(decodePng(*layer.bitmapPNGData), filledImage(17, 9, {0, 255, 0, 255}));
}

TEST(FillSimilarPixels, FillsALayerWithoutPixelsOrWithUnreadableOnes) {
    PaintLayer empty;
    PaintLayer torn;
    torn.bitmapPNGData = model::PngBytes(QByteArrayLiteral("torn"));
    PaintLayer small = layerOf(filledImage(1, 1, {}));
    // A file of ours whose pixels are damaged: its head still says the right size.
    PaintLayer damaged = layerOf(filledImage(5, 4, {7, 8, 9, 255}));
    QByteArray bytes = damaged.bitmapPNGData->toByteArray();
    for (qsizetype i = bytes.size() / 2; i < bytes.size() / 2 + 12; ++i)
        bytes[i] = static_cast<char>(~bytes[i]);
    damaged.bitmapPNGData = model::PngBytes(bytes);
    ASSERT_TRUE(decodePng(*damaged.bitmapPNGData).isNull());
    for (PaintLayer layer : {empty, torn, small, damaged}) {
        ASSERT_TRUE(Engine::fillSimilarPixels(layer, 5, 4, {2, 2}, {1, 1, 1, 1}, 10));
        EXPECT_EQ(decodePng(*layer.bitmapPNGData), filledImage(5, 4, white));
    }
}

TEST(FillSimilarPixels, WritesTheSameFileAsAFreshEncoding) {
    std::mt19937 random(57);
    RasterImage image = spottedImage(900, 700, random);
    for (int y = 300; y < 400; ++y)
        for (int x = 0; x < 900; ++x) setPixel(image, x, y, {1, 200, 3, 255});
    PaintLayer layer = layerOf(image);
    ASSERT_TRUE(Engine::fillSimilarPixels(layer, 900, 700, {450, 350}, {0, 0, 1, 1}, 0));
    EXPECT_EQ(*layer.bitmapPNGData, encodePng(decodePng(*layer.bitmapPNGData)));
}

TEST(FillSimilarPixels, LeavesTheLayerAloneOnACanvasWithoutAreaOrBeyondAPicture) {
    const PaintLayer layer = layerOf(filledImage(2, 2, {1, 2, 3, 4}));
    for (const double bad : {0.0, -4.0, infinity, notANumber, 1e9}) {
        for (const double percentage : {5.0, 100.0}) {
            PaintLayer filled = layer;
            EXPECT_FALSE(
                Engine::fillSimilarPixels(filled, bad, 2, {0, 0}, {1, 1, 1, 1}, percentage));
            EXPECT_FALSE(
                Engine::fillSimilarPixels(filled, 2, bad, {0, 0}, {1, 1, 1, 1}, percentage));
            EXPECT_EQ(filled, layer);
        }
    }
    PaintLayer filled = layer;
    EXPECT_FALSE(Engine::fillSimilarPixels(filled, 32'768, 32'768, {0, 0}, {1, 1, 1, 1}, 100));
}

TEST(PickedColor, IsTheStraightColorOfThePixelUnderThePoint) {
    RasterImage image(3, 2);
    setPixel(image, 1, 0, {128, 64, 0, 128});
    setPixel(image, 2, 1, {10, 20, 30, 255});
    const PaintLayer layer = layerOf(image, 0.2);
    EXPECT_EQ(Engine::color(layer, 3, 2, {1.99, 0.99}),
              (ColorValue{1.0, 128 / 255.0, 0.0, 128 / 255.0}));
    EXPECT_EQ(Engine::color(layer, 3, 2, {70, 70}),
              (ColorValue{10 / 255.0, 20 / 255.0, 30 / 255.0, 1.0}));
}

TEST(PickedColor, IsNothingWhereTheLayerIsTransparent) {
    EXPECT_EQ(Engine::color(layerOf(pictureOf({"a."})), 2, 1, {1, 0}), std::nullopt);
    EXPECT_EQ(Engine::color(PaintLayer(), 2, 1, {1, 0}), std::nullopt);
    EXPECT_EQ(Engine::color(layerOf(pictureOf({"a"})), infinity, 1, {0, 0}), std::nullopt);
    EXPECT_EQ(Engine::color(layerOf(pictureOf({"a"})), 32'768, 32'768, {0, 0}), std::nullopt);
}

TEST(PickedColor, AgreesWithTheDefinitionEverywhere) {
    std::mt19937 random(58);
    std::uniform_real_distribution<double> place(-4.0, 24.0);
    const RasterImage image = randomImage(20, 15, random);
    const PaintLayer layer = layerOf(image);
    for (int round = 0; round < 500; ++round) {
        const CanvasPoint point{place(random), place(random)};
        const auto expected = bookColor(image, bookSeed(point.x, 20), bookSeed(point.y, 15));
        const auto picked = Engine::color(layer, 20, 15, point);
        ASSERT_EQ(picked.has_value(), expected[3] > 0.001);
        if (picked) {
            ASSERT_EQ(*picked, (ColorValue{expected[0], expected[1], expected[2], expected[3]}));
        }
    }
}

} // namespace
} // namespace quillabrae::raster
