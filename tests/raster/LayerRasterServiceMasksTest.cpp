// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceMasks.h"
#include "raster/PngCodec.h"
#include "raster/RasterFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace quillabrae::raster {
namespace {

using namespace LayerRasterService;
using model::PixelSelection;
using enum model::SelectionCombineOperation;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

PixelSelection rectangle(double x, double y, double width, double height) {
    return {x, y, width, height, std::nullopt};
}

PixelSelection masked(double x, double y, double width, double height, const RasterImage& mask) {
    return {x, y, width, height, pngData(mask)};
}

/// One row a text; '#' is opaque white, '.' transparent.
RasterImage maskOf(const std::vector<std::string>& rows) {
    RasterImage mask(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()));
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x)
            if (rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#')
                setPixel(mask, x, y, {255, 255, 255, 255});
    return mask;
}

RasterImage maskOf(const PixelSelection& selection) {
    return selection.maskPNGData ? decodePng(*selection.maskPNGData) : RasterImage();
}

testing::AssertionResult isSelection(const std::optional<PixelSelection>& actual, double x,
                                     double y, const RasterImage& mask) {
    if (!actual) return testing::AssertionFailure() << "nothing is selected";
    if (actual->x != x || actual->y != y || actual->width != mask.width() ||
        actual->height != mask.height())
        return testing::AssertionFailure() << "the rect is " << actual->x << ' ' << actual->y << ' '
                                           << actual->width << ' ' << actual->height;
    if (maskOf(*actual) != mask) return testing::AssertionFailure() << "the masks differ";
    return testing::AssertionSuccess();
}

// The definition, cell by cell.

struct BookGrid {
    int width;
    int height;
    std::vector<bool> cells;

    BookGrid(int columns, int rows)
        : width(columns),
          height(rows),
          cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}
    std::vector<bool>::reference at(int x, int y) {
        return cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x)];
    }
};

QRectF bookIntegral(const PixelSelection& s) {
    const QRectF rect = QRectF(s.x, s.y, s.width, s.height).normalized();
    const double left = std::floor(rect.left());
    const double top = std::floor(rect.top());
    return {left, top, std::ceil(rect.right()) - left, std::ceil(rect.bottom()) - top};
}

BookGrid bookBitmapMask(const PixelSelection& selection, const QRectF& target, int width,
                        int height) {
    BookGrid grid(width, height);
    const QRectF rect = bookIntegral(selection);
    const int offsetX = static_cast<int>(std::lround(rect.x() - target.x()));
    const int offsetY = static_cast<int>(std::lround(rect.y() - target.y()));
    const int columns = std::max(static_cast<int>(std::lround(rect.width())), 1);
    const int rows = std::max(static_cast<int>(std::lround(rect.height())), 1);
    const RasterImage mask = maskOf(selection);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const bool isSelected =
                mask.isNull() ||
                pixelAt(mask, std::min(column, mask.width() - 1), std::min(row, mask.height() - 1))
                            .alpha /
                        255.0 >
                    0.1;
            const int x = offsetX + column;
            const int y = offsetY + row;
            if (isSelected && x >= 0 && x < width && y >= 0 && y < height) grid.at(x, y) = true;
        }
    }
    return grid;
}

struct BookSelection {
    double x = 0.0;
    double y = 0.0;
    RasterImage mask;
};

std::optional<BookSelection> bookCombined(const PixelSelection& a, const PixelSelection& b,
                                          model::SelectionCombineOperation operation) {
    const QRectF ra = bookIntegral(a);
    const QRectF rb = bookIntegral(b);
    QRectF target = ra;
    if (operation == add) {
        const double left = std::min(ra.left(), rb.left());
        const double top = std::min(ra.top(), rb.top());
        target = QRectF(left, top, std::max(ra.right(), rb.right()) - left,
                        std::max(ra.bottom(), rb.bottom()) - top);
    }
    if (target.width() < 1 || target.height() < 1) return std::nullopt;
    const int width = static_cast<int>(target.width());
    const int height = static_cast<int>(target.height());
    BookGrid first = bookBitmapMask(a, target, width, height);
    BookGrid second = bookBitmapMask(b, target, width, height);
    int left = width;
    int top = height;
    int right = -1;
    int bottom = -1;
    BookGrid combined(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isSelected = operation == add ? first.at(x, y) || second.at(x, y)
                                                     : first.at(x, y) && !second.at(x, y);
            if (!isSelected) continue;
            combined.at(x, y) = true;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x);
            bottom = std::max(bottom, y);
        }
    }
    if (right < 0) return std::nullopt;
    RasterImage mask(right - left + 1, bottom - top + 1);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x)
            if (combined.at(x, y)) setPixel(mask, x - left, y - top, {255, 255, 255, 255});
    return BookSelection{target.x() + left, target.y() + top, mask};
}

/// Alphas on both sides of the limit, among others.
RasterImage randomMask(int width, int height, std::mt19937& random) {
    constexpr int alphas[] = {0, 1, 24, 25, 26, 27, 128, 255};
    std::uniform_int_distribution<std::size_t> choice(0, std::size(alphas) - 1);
    RasterImage mask(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int alpha = alphas[choice(random)];
            setPixel(mask, x, y, {alpha, alpha, alpha, alpha});
        }
    }
    return mask;
}

/// Whole and fractional rects, some empty or turned inside out; half with a mask, whose size is
/// often not the rect's.
PixelSelection randomSelection(std::mt19937& random) {
    std::uniform_int_distribution<int> number(-40, 80);
    std::uniform_int_distribution<int> side(1, 19);
    const double unit = side(random) % 3 == 0 ? 4.0 : 8.0;
    const auto length = [&] { return std::max(number(random), -20) / unit; };
    PixelSelection selection = rectangle(number(random) / unit, number(random) / unit, 0, 0);
    selection.width = length();
    selection.height = length();
    switch (side(random) % 5) {
        case 0:
        case 1:
            break;
        case 2:
            selection.maskPNGData = model::PngBytes(QByteArrayLiteral("torn"));
            break;
        case 3:
            selection.maskPNGData = pngData(randomMask(side(random), side(random), random));
            break;
        default: {
            const QRectF rect = bookIntegral(selection);
            selection.maskPNGData =
                pngData(randomMask(std::max(static_cast<int>(rect.width()), 1),
                                   std::max(static_cast<int>(rect.height()), 1), random));
        }
    }
    return selection;
}

TEST(CombinedSelection, AgreesWithTheDefinitionCellByCell) {
    std::mt19937 random(31);
    int empty = 0;
    constexpr int rounds = 2000;
    for (int round = 0; round < rounds; ++round) {
        const PixelSelection a = randomSelection(random);
        const PixelSelection b = round % 50 == 0 ? a : randomSelection(random);
        for (const auto operation : {add, subtract}) {
            const auto expected = bookCombined(a, b, operation);
            const auto actual = combinedSelection(a, b, operation);
            ASSERT_EQ(actual.has_value(), expected.has_value()) << round;
            if (!expected) {
                ++empty;
                continue;
            }
            ASSERT_TRUE(isSelection(actual, expected->x, expected->y, expected->mask)) << round;
        }
    }
    EXPECT_GT(empty, rounds / 50);
    EXPECT_LT(empty, rounds);
}

TEST(CombinedSelection, SubtractingACoveringSelectionLeavesNothing) {
    EXPECT_EQ(combinedSelection(rectangle(3, 3, 5, 5), rectangle(2, 2, 9, 9), subtract),
              std::nullopt);
    EXPECT_EQ(combinedSelection(masked(3, 3, 2, 2, maskOf({"#.", ".#"})), rectangle(3, 3, 2, 2),
                                subtract),
              std::nullopt);
}

TEST(CombinedSelection, SubtractingADisjointSelectionKeepsTheSamePixelsUnderAMask) {
    EXPECT_TRUE(
        isSelection(combinedSelection(rectangle(3, 4, 3, 2), rectangle(30, 4, 3, 2), subtract), 3,
                    4, maskOf({"###", "###"})));
}

TEST(CombinedSelection, AddingRectsLeavesTheGapBetweenThemUnselected) {
    EXPECT_TRUE(isSelection(combinedSelection(rectangle(0, 0, 2, 2), rectangle(4, 1, 1, 2), add), 0,
                            0, maskOf({"##...", "##..#", "....#"})));
}

TEST(CombinedSelection, SubtractingACircleFromTheMiddleKeepsTheBounds) {
    const PixelSelection circle{4, 4, 8, 8, ellipseSelectionMask(8, 8)};
    const auto left = combinedSelection(rectangle(0, 0, 16, 16), circle, subtract);
    ASSERT_TRUE(left.has_value());
    EXPECT_EQ(QRectF(left->x, left->y, left->width, left->height), QRectF(0, 0, 16, 16));
    const RasterImage mask = maskOf(*left);
    EXPECT_EQ(pixelAt(mask, 8, 8), Pixel{});
    EXPECT_EQ(pixelAt(mask, 4, 4), (Pixel{255, 255, 255, 255}));
}

TEST(CombinedSelection, SubtractingTheLeftHalfMovesAndNarrowsTheSelection) {
    EXPECT_TRUE(
        isSelection(combinedSelection(rectangle(2, 3, 6, 1), rectangle(2, 3, 3, 1), subtract), 5, 3,
                    maskOf({"###"})));
}

TEST(CombinedSelection, SelectsPixelsAboveATenthOfFullAlphaOnly) {
    RasterImage mask(3, 1);
    setPixel(mask, 0, 0, {25, 25, 25, 25});
    setPixel(mask, 1, 0, {26, 26, 26, 26});
    setPixel(mask, 2, 0, {25, 25, 25, 25});
    EXPECT_TRUE(
        isSelection(combinedSelection(masked(0, 0, 3, 1, mask), rectangle(9, 9, 1, 1), subtract), 1,
                    0, maskOf({"#"})));
}

TEST(CombinedSelection, TakesFractionalRectsOutwardToWholePixels) {
    EXPECT_TRUE(isSelection(
        combinedSelection(rectangle(0.5, 1.9, 1.0, 0.2), rectangle(50, 50, 1, 1), subtract), 0, 1,
        maskOf({"##", "##"})));
}

TEST(CombinedSelection, RepeatsTheLastRowAndColumnOfASmallMask) {
    EXPECT_TRUE(isSelection(combinedSelection(masked(0, 0, 4, 3, maskOf({"#.", ".#"})),
                                              rectangle(50, 50, 1, 1), subtract),
                            0, 0, maskOf({"#...", ".###", ".###"})));
}

TEST(CombinedSelection, IsNothingForRectsThatAreNotFiniteOrReachTooFar) {
    const PixelSelection good = rectangle(0, 0, 4, 4);
    for (const double bad : {infinity, -infinity, notANumber}) {
        for (const auto& none : {rectangle(bad, 0, 4, 4), rectangle(0, bad, 4, 4),
                                 rectangle(0, 0, bad, 4), rectangle(0, 0, 4, bad)}) {
            EXPECT_EQ(combinedSelection(good, none, add), std::nullopt);
            EXPECT_EQ(combinedSelection(none, good, subtract), std::nullopt);
        }
    }
    EXPECT_EQ(combinedSelection(good, rectangle(1e300, 0, 4, 4), add), std::nullopt);
    EXPECT_EQ(combinedSelection(good, rectangle(-1e9, 0, 1e9, 4), add), std::nullopt);
    EXPECT_TRUE(isSelection(combinedSelection(good, rectangle(1e300, -1e300, 4, 4), subtract), 0, 0,
                            maskOf({"####", "####", "####", "####"})));
    EXPECT_EQ(combinedSelection(good, rectangle(-1e300, -1e300, 2e300, 2e300), subtract),
              std::nullopt);
}

TEST(CombinedSelection, OfMorePixelsThanAPictureHasIsItsRectAlone) {
    const auto combined =
        combinedSelection(rectangle(0, 0, 32768, 1), rectangle(0, 32767, 1, 1), add);
    EXPECT_EQ(combined, rectangle(0, 0, 32768, 32768));
}

TEST(EllipseSelectionMask, HasTheRoundedSizeAndAtLeastOnePixel) {
    const auto sizeOf = [](double width, double height) {
        const auto bytes = ellipseSelectionMask(width, height);
        return bytes ? *pngPixelSize(*bytes) : QSize();
    };
    EXPECT_EQ(sizeOf(10.4, 9.5), QSize(10, 10));
    EXPECT_EQ(sizeOf(0.2, 3), QSize(1, 3));
    EXPECT_EQ(sizeOf(-5, 0), QSize(1, 1));
    for (const double bad : {infinity, -infinity, notANumber, 1e12})
        EXPECT_EQ(ellipseSelectionMask(bad, 5), std::nullopt);
    EXPECT_EQ(ellipseSelectionMask(32'768, 32'768), std::nullopt);
}

TEST(EllipseSelectionMask, OfNoAreaIsTransparent) {
    for (const double none : {0.0, -4.0})
        EXPECT_EQ(decodePng(*ellipseSelectionMask(none, 3)), RasterImage(1, 3));
}

TEST(EllipseSelectionMask, IsWhiteWithASoftEdge) {
    const RasterImage mask = decodePng(*ellipseSelectionMask(9, 7));
    EXPECT_EQ(pixelAt(mask, 4, 3), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixelAt(mask, 0, 0), Pixel{});
    const Pixel edge = pixelAt(mask, 1, 1);
    EXPECT_GT(edge.alpha, 0);
    EXPECT_LT(edge.alpha, 255);
    EXPECT_EQ(edge, (Pixel{edge.alpha, edge.alpha, edge.alpha, edge.alpha}));
}

TEST(LassoSelectionMask, NeedsThreePoints) {
    const std::vector<model::CanvasPoint> line{{0, 0}, {5, 5}};
    EXPECT_EQ(lassoSelectionMask({}, {0, 0, 5, 5}), std::nullopt);
    EXPECT_EQ(lassoSelectionMask(line, {0, 0, 5, 5}), std::nullopt);
}

TEST(LassoSelectionMask, ClosesThePathAndPlacesItInItsBounds) {
    const std::vector<model::CanvasPoint> corners{{11, 20}, {14, 20}, {14, 22}, {11, 22}};
    EXPECT_EQ(decodePng(*lassoSelectionMask(corners, {10, 20, 5, 3})),
              maskOf({".###.", ".###.", "....."}));
}

TEST(LassoSelectionMask, FillsWhateverThePathWindsAround) {
    // Twice around, then a figure of eight: neither leaves a hole or a seam.
    const std::vector<model::CanvasPoint> twice{{0, 0}, {6, 0}, {6, 6}, {0, 6}, {0, 0},
                                                {4, 0}, {4, 4}, {0, 4}, {0, 0}};
    EXPECT_EQ(pixelAt(decodePng(*lassoSelectionMask(twice, {0, 0, 6, 6})), 2, 2).alpha, 255);
    const std::vector<model::CanvasPoint> bothWays{{0, 0}, {4, 0}, {4, 8}, {8, 8},
                                                   {8, 0}, {4, 0}, {4, 8}, {0, 8}};
    EXPECT_EQ(decodePng(*lassoSelectionMask(bothWays, {0, 0, 8, 8})),
              filledImage(8, 8, {255, 255, 255, 255}));
}

TEST(LassoSelectionMask, IsNothingForPointsOrBoundsThatAreNotFinite) {
    const std::vector<model::CanvasPoint> triangle{{0, 0}, {8, 0}, {0, 8}};
    for (const double bad : {infinity, -infinity, notANumber}) {
        EXPECT_EQ(lassoSelectionMask(triangle, {0, 0, bad, 8}), std::nullopt);
        EXPECT_EQ(lassoSelectionMask(triangle, {0, bad, 8, 8}), std::nullopt);
        const std::vector<model::CanvasPoint> torn{{0, 0}, {bad, 0}, {0, 8}};
        EXPECT_EQ(lassoSelectionMask(torn, {0, 0, 8, 8}), std::nullopt);
    }
    EXPECT_EQ(lassoSelectionMask(triangle, {0, 0, 32'768, 32'768}), std::nullopt);
    const std::vector<model::CanvasPoint> vast{{-1e308, -1e308}, {1e308, -1e308}, {0, 1e308}};
    EXPECT_EQ(decodePng(*lassoSelectionMask(vast, {-4, -4, 3, 3})),
              filledImage(3, 3, {255, 255, 255, 255}));
}

TEST(LassoSelectionMask, HasOnePixelForBoundsWithoutArea) {
    const std::vector<model::CanvasPoint> flat{{0, 0}, {0, 5}, {0, 2}};
    EXPECT_EQ(decodePng(*lassoSelectionMask(flat, {0, 0, 0, 5})), RasterImage(1, 5));
}

} // namespace
} // namespace quillabrae::raster
