// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceShapes.h"
#include "raster/Parallel.h"
#include "raster/RasterFixtures.h"
#include "raster/ShapeBook.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using model::CanvasPoint;
using model::CanvasShape;
using model::ColorValue;
using model::PaintStroke;
using model::PaintTool;
using model::ShapeDrawingMode;

constexpr ColorValue red{1, 0, 0, 1};
constexpr ColorValue blue{0, 0, 1, 1};
constexpr Pixel redPixel{255, 0, 0, 255};
constexpr Pixel bluePixel{0, 0, 255, 255};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

PaintStroke strokeOf(PaintTool tool, CanvasPoint first, CanvasPoint last, double lineWidth = 1.0) {
    PaintStroke stroke;
    stroke.tool = tool;
    stroke.color = red;
    stroke.lineWidth = lineWidth;
    stroke.points = {first, last};
    return stroke;
}

PaintStroke shapeOf(CanvasShape shape, ShapeDrawingMode mode, CanvasPoint first, CanvasPoint last,
                    double lineWidth = 1.0) {
    PaintStroke stroke = strokeOf(PaintTool::shapes, first, last, lineWidth);
    stroke.shape = shape;
    stroke.shapeDrawingMode = mode;
    stroke.secondaryColor = blue;
    return stroke;
}

QRect drawOn(RasterImage& image, const PaintStroke& stroke) {
    return LayerRasterService::drawStroke(stroke, image, image.width(), image.height());
}

RasterImage drawn(const PaintStroke& stroke, int width, int height) {
    RasterImage image(width, height);
    drawOn(image, stroke);
    return image;
}

/// The alpha of every pixel, row by row.
std::vector<std::vector<int>> alphas(const RasterImage& image) {
    std::vector<std::vector<int>> rows;
    for (int y = 0; y < image.height(); ++y) {
        auto& row = rows.emplace_back();
        for (int x = 0; x < image.width(); ++x) row.push_back(pixelAt(image, x, y).alpha);
    }
    return rows;
}

using Rows = std::vector<std::vector<int>>;

/// Multiples of 1/64: the borders of an upright rectangle then fall between the twin's samples.
double between(double low, double high, std::mt19937& random) {
    return std::round(std::uniform_real_distribution(low, high)(random) * 64) / 64;
}

PaintStroke randomShape(int round, std::mt19937& random) {
    const auto shapes = model::allCanvasShapes();
    const auto modes = model::allShapeDrawingModes();
    const auto point = [&] {
        return CanvasPoint{between(-8, 34, random), between(-8, 28, random)};
    };
    PaintStroke stroke = shapeOf(shapes[static_cast<std::size_t>(round) % shapes.size()],
                                 modes[static_cast<std::size_t>(round / 8) % modes.size()], point(),
                                 point(), 2 * between(0.1, round % 5 == 0 ? 9 : 2, random));
    return stroke;
}

TEST(DrawShape, CoversEveryPixelByItsExactArea) {
    std::mt19937 random(41);
    for (int round = 0; round < 48; ++round) {
        PaintStroke stroke = randomShape(round, random);
        // One colour at a time: the area is then the alpha.
        if (stroke.shapeDrawingMode == ShapeDrawingMode::fillAndOutline)
            stroke.shapeDrawingMode = ShapeDrawingMode::outline;
        ASSERT_LE(
            greatestDifference(drawn(stroke, 27, 21), bookShapeStroke(stroke, RasterImage(27, 21))),
            1)
            << round;
    }
}

TEST(DrawShape, AgreesWithThePixelByPixelTwinOverAnyPixels) {
    std::mt19937 random(42);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 72; ++round) {
        PaintStroke stroke = randomShape(round, random);
        stroke.color = {unit(random), unit(random), unit(random), unit(random)};
        if (round % 3 != 0)
            stroke.secondaryColor = ColorValue{unit(random), unit(random), unit(random),
                                               round % 2 ? 1.0 : unit(random)};
        else
            stroke.secondaryColor.reset();
        const int width = round % 7 == 0 ? 1 : 1 + round % 27;
        const int height = round % 7 == 0 ? 1 : 1 + round % 19;
        RasterImage image = randomImage(width, height, random);
        const RasterImage before = image;
        const RasterImage expected = bookShapeStroke(stroke, image);
        const QRect dirty = drawOn(image, stroke);
        // Each of two areas rounds its alpha and two products; the twin each result once.
        ASSERT_LE(greatestDifference(image, expected), 3) << round;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_TRUE(dirty.contains(x, y) || pixelAt(image, x, y) == pixelAt(before, x, y))
                    << round;
    }
}

TEST(DrawShape, OutlinesARectangleHalfInsideAndHalfOutside) {
    const PaintStroke stroke =
        shapeOf(CanvasShape::rectangle, ShapeDrawingMode::outline, {2, 2}, {6, 5}, 2);
    const Rows rows = alphas(drawn(stroke, 8, 7));
    // Half a pixel to the side, the round join's corner is all but a quarter disc.
    const int corner = rows[1][1];
    EXPECT_NEAR(corner, 255 * 3.14159265 / 4, 1);
    EXPECT_EQ(rows, (Rows{{0, 0, 0, 0, 0, 0, 0, 0},
                          {0, corner, 255, 255, 255, 255, corner, 0},
                          {0, 255, 255, 255, 255, 255, 255, 0},
                          {0, 255, 255, 0, 0, 255, 255, 0},
                          {0, 255, 255, 255, 255, 255, 255, 0},
                          {0, corner, 255, 255, 255, 255, corner, 0},
                          {0, 0, 0, 0, 0, 0, 0, 0}}));
}

TEST(DrawShape, KeepsTheCornersOfTheRectangleToolSharp) {
    EXPECT_EQ(alphas(drawn(strokeOf(PaintTool::rectangle, {6, 5}, {2, 2}, 2), 8, 7)),
              (Rows{{0, 0, 0, 0, 0, 0, 0, 0},
                    {0, 255, 255, 255, 255, 255, 255, 0},
                    {0, 255, 255, 255, 255, 255, 255, 0},
                    {0, 255, 255, 0, 0, 255, 255, 0},
                    {0, 255, 255, 255, 255, 255, 255, 0},
                    {0, 255, 255, 255, 255, 255, 255, 0},
                    {0, 0, 0, 0, 0, 0, 0, 0}}));
}

TEST(DrawShape, DrawsTheEllipseToolAsTheOutlineOfTheShape) {
    EXPECT_EQ(
        drawn(strokeOf(PaintTool::ellipse, {3.5, 2}, {19, 13.25}, 2.5), 24, 16),
        drawn(shapeOf(CanvasShape::ellipse, ShapeDrawingMode::outline, {3.5, 2}, {19, 13.25}, 2.5),
              24, 16));
}

TEST(DrawShape, FillsInTheSecondaryColorWithoutAnOutline) {
    const RasterImage image =
        drawn(shapeOf(CanvasShape::rectangle, ShapeDrawingMode::fill, {1, 1}, {4, 3}, 6), 6, 5);
    EXPECT_EQ(alphas(image), (Rows{{0, 0, 0, 0, 0, 0},
                                   {0, 255, 255, 255, 0, 0},
                                   {0, 255, 255, 255, 0, 0},
                                   {0, 0, 0, 0, 0, 0},
                                   {0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(pixelAt(image, 2, 1), bluePixel);
}

TEST(DrawShape, FillsInThePrimaryColorWithoutASecondaryOne) {
    PaintStroke stroke = shapeOf(CanvasShape::rectangle, ShapeDrawingMode::fill, {1, 1}, {4, 3});
    stroke.secondaryColor.reset();
    EXPECT_EQ(pixelAt(drawn(stroke, 6, 5), 2, 1), redPixel);
}

TEST(DrawShape, LaysTheOutlineOverTheFilledInside) {
    const RasterImage image =
        drawn(shapeOf(CanvasShape::rectangle, ShapeDrawingMode::fillAndOutline, {2, 2}, {8, 8}, 2),
              10, 10);
    EXPECT_EQ(pixelAt(image, 2, 5), redPixel);
    EXPECT_EQ(pixelAt(image, 1, 5), redPixel);
    EXPECT_EQ(pixelAt(image, 3, 5), bluePixel);
}

TEST(DrawShape, OutlinesARectangleWhenTheStrokeSaysNothingElse) {
    PaintStroke plain = strokeOf(PaintTool::shapes, {2, 2}, {6, 5}, 2);
    plain.secondaryColor = blue;
    EXPECT_EQ(
        drawn(plain, 9, 9),
        drawn(shapeOf(CanvasShape::rectangle, ShapeDrawingMode::outline, {2, 2}, {6, 5}, 2), 9, 9));
}

TEST(DrawShape, TakesTheBoxOfTheFirstAndTheLastPoint) {
    PaintStroke stroke = shapeOf(CanvasShape::triangle, ShapeDrawingMode::fill, {9, 8}, {1, 2});
    const RasterImage image = drawn(stroke, 12, 12);
    stroke.points = {{1, 8}, {40, 40}, {nan, 3}, {9, 2}};
    EXPECT_EQ(drawn(stroke, 12, 12), image);
}

TEST(DrawShape, StandsWithTheTopOfThePictureUp) {
    const auto filled = [](CanvasShape shape) {
        return drawn(shapeOf(shape, ShapeDrawingMode::fill, {0, 0}, {10, 10}), 10, 10);
    };
    const auto isBlue = [](const RasterImage& image, int x, int y) {
        return pixelAt(image, x, y) == bluePixel;
    };
    EXPECT_TRUE(isBlue(filled(CanvasShape::triangle), 1, 9));
    EXPECT_FALSE(isBlue(filled(CanvasShape::triangle), 1, 0));
    EXPECT_TRUE(isBlue(filled(CanvasShape::rightTriangle), 0, 8));
    EXPECT_FALSE(isBlue(filled(CanvasShape::rightTriangle), 8, 0));
    EXPECT_TRUE(isBlue(filled(CanvasShape::trapezoid), 8, 8));
    EXPECT_FALSE(isBlue(filled(CanvasShape::trapezoid), 9, 0));
    EXPECT_TRUE(isBlue(filled(CanvasShape::parallelogram), 8, 0));
    EXPECT_FALSE(isBlue(filled(CanvasShape::parallelogram), 9, 9));
}

TEST(DrawShape, DrawsABoxWithoutHeightAsALine) {
    for (const CanvasShape shape : {CanvasShape::rectangle, CanvasShape::ellipse,
                                    CanvasShape::roundedRectangle, CanvasShape::diamond}) {
        const RasterImage line =
            drawn(shapeOf(shape, ShapeDrawingMode::fillAndOutline, {4, 5}, {12, 5}, 4), 16, 10);
        const RasterImage pencil = drawn(strokeOf(PaintTool::pencil, {4, 5}, {12, 5}, 4), 16, 10);
        for (int x = 4; x < 12; ++x)
            for (int y = 0; y < 10; ++y)
                ASSERT_EQ(pixelAt(line, x, y), pixelAt(pencil, x, y))
                    << rawText(shape).toStdString();
        EXPECT_EQ(pixelAt(line, 13, 5).alpha, pixelAt(line, 13, 4).alpha);
        EXPECT_GT(pixelAt(line, 13, 5).alpha, 100);
        EXPECT_EQ(pixelAt(line, 14, 5).alpha, 0);
    }
}

TEST(DrawShape, FillsAllOfAShapeThatIsThinnerThanItsLine) {
    for (const CanvasShape shape : model::allCanvasShapes()) {
        const RasterImage image =
            drawn(shapeOf(shape, ShapeDrawingMode::outline, {8, 8}, {24, 12}, 9), 32, 20);
        EXPECT_EQ(pixelAt(image, 16, 10), redPixel) << rawText(shape).toStdString();
    }
}

TEST(DrawShape, IsAsExactFarFromTheOriginAsNearIt) {
    for (const CanvasShape shape : model::allCanvasShapes()) {
        const RasterImage far = drawn(shapeOf(shape, ShapeDrawingMode::fillAndOutline,
                                              {32'703.25, 2.5}, {32'755.5, 20.75}, 3),
                                      32'768, 24);
        const RasterImage near =
            drawn(shapeOf(shape, ShapeDrawingMode::fillAndOutline, {35.25, 2.5}, {87.5, 20.75}, 3),
                  100, 24);
        for (int y = 0; y < 24; ++y)
            for (int x = 0; x < 100; ++x)
                ASSERT_EQ(pixelAt(far, 32'668 + x, y), pixelAt(near, x, y))
                    << rawText(shape).toStdString();
    }
}

TEST(DrawShape, LooksTheSameOnOneThreadAndOnAll) {
    for (const CanvasShape shape : model::allCanvasShapes()) {
        const PaintStroke stroke =
            shapeOf(shape, ShapeDrawingMode::fillAndOutline, {-30.5, 10.25}, {700.3, 611.7}, 37.5);
        const RasterImage many = drawn(stroke, 640, 600);
        const ParallelThreadLimit limit(1);
        EXPECT_EQ(drawn(stroke, 640, 600), many);
    }
}

TEST(DrawShape, DrawsNothingForPointsAndWidthsWithoutMeasure) {
    const RasterImage empty(10, 10);
    for (const PaintTool tool : {PaintTool::shapes, PaintTool::rectangle, PaintTool::ellipse,
                                 PaintTool::paintBucket, PaintTool::gradient}) {
        for (const CanvasPoint point : {CanvasPoint{nan, 3}, CanvasPoint{3, infinity}}) {
            EXPECT_EQ(drawn(strokeOf(tool, point, {5, 5}), 10, 10), empty);
            EXPECT_EQ(drawn(strokeOf(tool, {5, 5}, point), 10, 10), empty);
        }
        RasterImage null;
        EXPECT_TRUE(drawOn(null, strokeOf(tool, {1, 1}, {5, 5})).isEmpty());
    }
    for (const PaintTool tool : {PaintTool::shapes, PaintTool::rectangle, PaintTool::ellipse})
        for (const double width : {0.0, -4.0, nan, -infinity})
            EXPECT_EQ(drawn(strokeOf(tool, {1, 1}, {5, 5}, width), 10, 10), empty);
}

TEST(DrawShape, SurvivesBoxesAndWidthsBeyondEveryCanvas) {
    for (const CanvasShape shape : model::allCanvasShapes()) {
        EXPECT_EQ(
            drawn(shapeOf(shape, ShapeDrawingMode::outline, {4, 4}, {6, 6}, infinity), 10, 10),
            filledImage(10, 10, redPixel));
        // The slanted side of a right triangle runs through the origin.
        EXPECT_EQ(
            pixelAt(drawn(shapeOf(shape, ShapeDrawingMode::fill, {-1e300, -1e300}, {1e300, 1e300}),
                          10, 10),
                    0, 9),
            bluePixel)
            << rawText(shape).toStdString();
    }
}

TEST(PaintBucketStroke, FillsTheBoxOfItsEndPointsWhateverIsThere) {
    std::mt19937 random(43);
    RasterImage image = randomImage(9, 8, random);
    const RasterImage before = image;
    const QRect dirty = drawOn(image, strokeOf(PaintTool::paintBucket, {7, 2}, {3, 6}));
    EXPECT_EQ(dirty, QRect(3, 2, 4, 4));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 9; ++x)
            EXPECT_EQ(pixelAt(image, x, y),
                      dirty.contains(x, y) ? redPixel : pixelAt(before, x, y));
}

TEST(PaintBucketStroke, PaintsATranslucentColorOverWhatIsThereAndPixelsInPart) {
    PaintStroke stroke = strokeOf(PaintTool::paintBucket, {1, 1}, {3.5, 2});
    stroke.color.alpha = 0.5;
    EXPECT_EQ(alphas(drawn(stroke, 5, 3)),
              (Rows{{0, 0, 0, 0, 0}, {0, 128, 128, 64, 0}, {0, 0, 0, 0, 0}}));
    stroke.points = {{2, 2}};
    EXPECT_EQ(drawn(stroke, 5, 3), RasterImage(5, 3));
}

/// Straight components mixed at the pixel's centre, then multiplied by their alpha.
RasterImage bookGradient(const PaintStroke& stroke, RasterImage image) {
    const CanvasPoint a = stroke.points.front(), b = stroke.points.back();
    const ColorValue end = stroke.secondaryColor.value_or(stroke.color);
    const double squared = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            double t = (x + 0.5 - a.x) * (b.x - a.x) + (y + 0.5 - a.y) * (b.y - a.y);
            t = std::clamp(t / squared, 0.0, 1.0);
            const auto mix = [t](double from, double to) { return from + t * (to - from); };
            const double alpha = mix(stroke.color.alpha, end.alpha);
            const Pixel under = pixelAt(image, x, y);
            const auto over = [&](double component, int below) {
                return static_cast<int>(std::lround(255 * component * alpha + below * (1 - alpha)));
            };
            setPixel(image, x, y,
                     {over(mix(stroke.color.red, end.red), under.red),
                      over(mix(stroke.color.green, end.green), under.green),
                      over(mix(stroke.color.blue, end.blue), under.blue), over(1, under.alpha)});
        }
    }
    return image;
}

TEST(GradientStroke, AgreesWithThePixelByPixelTwin) {
    std::mt19937 random(44);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::uniform_real_distribution<double> position(-60.0, 160.0);
    for (int round = 0; round < 60; ++round) {
        const int width = round % 6 == 0 ? 1 : 1 + static_cast<int>(unit(random) * 300);
        const int height = round % 4 == 0 ? 1 : 1 + static_cast<int>(unit(random) * 40);
        PaintStroke stroke = strokeOf(PaintTool::gradient, {position(random), position(random)},
                                      {position(random), position(random)});
        const bool isOpaque = round % 2 == 0;
        const auto color = [&] {
            return ColorValue{unit(random), unit(random), unit(random),
                              isOpaque ? 1.0 : unit(random)};
        };
        stroke.color = color();
        if (round % 5 != 0) stroke.secondaryColor = color();
        RasterImage image = randomImage(width, height, random);
        const RasterImage expected = bookGradient(stroke, image);
        EXPECT_EQ(drawOn(image, stroke), QRect(0, 0, width, height));
        // The source, its alpha and what shows through round on their own.
        ASSERT_LE(greatestDifference(image, expected), isOpaque ? 1 : 2) << round;
    }
}

TEST(GradientStroke, KeepsTheEndColorsBeyondBothEnds) {
    PaintStroke stroke = strokeOf(PaintTool::gradient, {4, 0}, {6, 0});
    stroke.secondaryColor = blue;
    const RasterImage image = drawn(stroke, 10, 2);
    for (int x = 0; x < 4; ++x) EXPECT_EQ(pixelAt(image, x, 1), redPixel);
    EXPECT_EQ(pixelAt(image, 4, 1), (Pixel{191, 0, 64, 255}));
    EXPECT_EQ(pixelAt(image, 5, 1), (Pixel{64, 0, 191, 255}));
    for (int x = 6; x < 10; ++x) EXPECT_EQ(pixelAt(image, x, 1), bluePixel);
}

TEST(GradientStroke, DrawsNothingBetweenOnePointAndItself) {
    PaintStroke stroke = strokeOf(PaintTool::gradient, {4, 3}, {4, 3});
    EXPECT_EQ(drawn(stroke, 8, 8), RasterImage(8, 8));
    stroke.points = {{4, 3}};
    EXPECT_EQ(drawn(stroke, 8, 8), RasterImage(8, 8));
    stroke.points = {{4, 3}, {7, 7}, {4, 3}};
    EXPECT_EQ(drawn(stroke, 8, 8), RasterImage(8, 8));
}

TEST(GradientStroke, PaintsTheWholeImageInThePrimaryColorWithoutASecondaryOne) {
    EXPECT_EQ(drawn(strokeOf(PaintTool::gradient, {4, 3}, {5, 3}), 8, 8),
              filledImage(8, 8, redPixel));
}

TEST(GradientStroke, TurnsAtOnceBetweenPointsThatAllButTouch) {
    for (const double apart : {1e-3, 1e-160}) {
        PaintStroke stroke = strokeOf(PaintTool::gradient, {0, 0}, {apart, 0});
        stroke.secondaryColor = blue;
        EXPECT_EQ(drawn(stroke, 6, 4), filledImage(6, 4, bluePixel));
    }
}

} // namespace
} // namespace quillabrae::raster
