// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/LayerRasterService.h"
#include "raster/Parallel.h"
#include "raster/RasterFixtures.h"
#include "raster/StrokeBook.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <vector>

namespace quillabrae::raster {
namespace {

using model::CanvasPoint;
using model::PaintStroke;
using model::PaintTool;

// The slow twin: every pixel on its own, every pass composited in floating point.

double distanceToSegment(double x, double y, CanvasPoint a, CanvasPoint b) {
    const double vx = b.x - a.x, vy = b.y - a.y;
    const double squared = vx * vx + vy * vy;
    double t = squared > 0 ? ((x - a.x) * vx + (y - a.y) * vy) / squared : 0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(x - (a.x + t * vx), y - (a.y + t * vy));
}

double distanceToStroke(double x, double y, const std::vector<CanvasPoint>& points) {
    double least = distanceToSegment(x, y, points.front(), points.front());
    for (std::size_t i = 1; i < points.size(); ++i)
        least = std::min(least, distanceToSegment(x, y, points[i - 1], points[i]));
    return least;
}

bool isSoft(const PaintStroke& stroke) {
    if (stroke.tool != PaintTool::pencil && stroke.tool != PaintTool::eraser &&
        stroke.tool != PaintTool::lineCurve)
        return false;
    return stroke.hardness && !(*stroke.hardness >= 99.5);
}

RasterImage bookStroke(const PaintStroke& stroke, RasterImage image) {
    const bool erases = stroke.tool == PaintTool::eraser;
    const double strength = erases ? 1.0 : stroke.color.alpha;
    const std::vector<BookPass> passes =
        isSoft(stroke) ? bookSoftPasses(stroke.lineWidth, *stroke.hardness / 100, strength)
                       : std::vector<BookPass>{{stroke.lineWidth, strength}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double distance = distanceToStroke(x + 0.5, y + 0.5, stroke.points);
            const double alpha = bookAlpha(passes, distance, stroke.points.size() == 1);
            const Pixel under = pixelAt(image, x, y);
            const auto component = [&](int below, double color) {
                const double added = erases ? 0.0 : color * alpha * 255;
                return static_cast<int>(std::lround(added + below * (1 - alpha)));
            };
            setPixel(
                image, x, y,
                {component(under.red, stroke.color.red), component(under.green, stroke.color.green),
                 component(under.blue, stroke.color.blue), component(under.alpha, 1.0)});
        }
    }
    return image;
}

PaintStroke strokeOf(PaintTool tool, double lineWidth, std::optional<double> hardness,
                     std::vector<CanvasPoint> points) {
    PaintStroke stroke;
    stroke.tool = tool;
    stroke.color = {1.0, 0.0, 0.0, 1.0};
    stroke.lineWidth = lineWidth;
    stroke.hardness = hardness;
    stroke.points = std::move(points);
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

TEST(DrawStroke, AgreesWithThePixelByPixelTwin) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> position(-20.0, 90.0);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    constexpr std::array tools{PaintTool::paintbrush, PaintTool::pencil,     PaintTool::eraser,
                               PaintTool::lineCurve,  PaintTool::cloneStamp, PaintTool::recolor};
    for (int round = 0; round < 240; ++round) {
        const int width = round % 8 == 0 ? 1 : 1 + static_cast<int>(unit(random) * 80);
        const int height = round % 12 == 0 ? 1 : 1 + static_cast<int>(unit(random) * 60);
        RasterImage image = randomImage(width, height, random);
        std::vector<CanvasPoint> points;
        for (int i = 0; i <= round % 5; ++i) points.push_back({position(random), position(random)});
        PaintStroke stroke =
            strokeOf(tools[static_cast<std::size_t>(round) % tools.size()],
                     std::pow(2.0, 7.0 * unit(random)) - 0.6, std::nullopt, std::move(points));
        if (round % 3 != 0) stroke.hardness = 100 * unit(random);
        stroke.color = {unit(random), unit(random), unit(random), round % 2 ? 1.0 : unit(random)};
        const RasterImage expected = bookStroke(stroke, image);
        const RasterImage before = image;
        const QRect dirty = drawOn(image, stroke);
        // Colour, alpha and the two products each round once; the twin only at the end.
        ASSERT_LE(greatestDifference(image, expected), 2) << round;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (dirty.contains(x, y)) continue;
                ASSERT_EQ(pixelAt(image, x, y), pixelAt(before, x, y));
            }
        }
    }
}

const std::array<std::optional<double>, 6> everyHardness{std::nullopt, 0.0, 25.0, 50.0, 75.0, 99.0};

TEST(DrawStroke, IsWithinOneLevelOfTheTwinOnATransparentLayer) {
    for (const double width : {1.0, 3.0, 20.0, 100.0, 512.0}) {
        for (const std::optional<double> hardness : everyHardness) {
            const PaintStroke stroke =
                strokeOf(PaintTool::pencil, width, hardness, {{60.3, 40.9}, {110.6, 70.2}});
            EXPECT_LE(greatestDifference(drawn(stroke, 161, 97),
                                         bookStroke(stroke, RasterImage(161, 97))),
                      1)
                << width << ' ' << hardness.value_or(100);
        }
    }
}

TEST(DrawStroke, IsWithinOneLevelOfTheTwinOverAnOpaquePicture) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (const double width : {1.0, 3.0, 20.0, 100.0, 512.0}) {
        for (const std::optional<double> hardness : everyHardness) {
            RasterImage image = filledImage(93, 71, {40, 200, 120, 255});
            const auto tool = unit(random) < 0.5 ? PaintTool::pencil : PaintTool::eraser;
            const PaintStroke stroke = strokeOf(
                tool, width, hardness, {{20 + 9 * unit(random), 12.9}, {70.6, 50 * unit(random)}});
            const RasterImage expected = bookStroke(stroke, image);
            drawOn(image, stroke);
            EXPECT_LE(greatestDifference(image, expected), 1)
                << width << ' ' << hardness.value_or(100);
        }
    }
}

TEST(DrawStroke, IsAsExactFarFromTheOriginAsNearIt) {
    for (const std::optional<double> hardness : everyHardness) {
        const RasterImage far =
            drawn(strokeOf(PaintTool::pencil, 31, hardness, {{32'700.25, 9.5}, {32'740.5, 30.75}}),
                  32'768, 40);
        const RasterImage near = drawn(
            strokeOf(PaintTool::pencil, 31, hardness, {{32.25, 9.5}, {72.5, 30.75}}), 100, 40);
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 100; ++x)
                ASSERT_EQ(pixelAt(far, 32'668 + x, y), pixelAt(near, x, y));
    }
}

TEST(DrawStroke, DoesNotDependOnTheStrokeBefore) {
    const auto pencil = [](double width, std::optional<double> hardness, double alpha,
                           std::vector<CanvasPoint> points) {
        PaintStroke stroke = strokeOf(PaintTool::pencil, width, hardness, std::move(points));
        stroke.color.alpha = alpha;
        return stroke;
    };
    const std::vector<CanvasPoint> dot{{20, 20}};
    const std::vector<CanvasPoint> line{{12, 18}, {28, 21}};
    const std::array strokes{pencil(14, 30.0, 1.0, dot),  pencil(14, 30.0, 1.0, line),
                             pencil(14, 30.0, 0.4, line), pencil(14, 80.0, 0.4, line),
                             pencil(15, 80.0, 0.4, line), pencil(15, std::nullopt, 0.4, line),
                             pencil(0.5, 0.0, 0.4, line), pencil(0.5, 0.0, 0.4, dot)};
    for (const PaintStroke& before : strokes) {
        for (const PaintStroke& stroke : strokes) {
            drawn(before, 40, 40);
            EXPECT_LE(
                greatestDifference(drawn(stroke, 40, 40), bookStroke(stroke, RasterImage(40, 40))),
                1);
        }
    }
}

TEST(DrawStroke, CoversAnAxisAlignedLineByTheExactAreaOfEachPixel) {
    RasterImage image(12, 7);
    const QRect dirty =
        drawOn(image, strokeOf(PaintTool::paintbrush, 2.5, std::nullopt, {{-5, 3.5}, {20, 3.5}}));
    for (int x = 0; x < 12; ++x) {
        EXPECT_EQ(pixelAt(image, x, 1).alpha, 0);
        EXPECT_EQ(pixelAt(image, x, 2).alpha, 191);
        EXPECT_EQ(pixelAt(image, x, 3), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixelAt(image, x, 4).alpha, 191);
        EXPECT_EQ(pixelAt(image, x, 5).alpha, 0);
    }
    EXPECT_EQ(dirty.left(), 0);
    EXPECT_EQ(dirty.right(), 11);
    EXPECT_TRUE(dirty.contains(0, 2) && dirty.contains(0, 4));
    EXPECT_FALSE(dirty.contains(0, 0) || dirty.contains(0, 6));
}

TEST(DrawStroke, DrawsADotOfDiameterOneAtTheLeast) {
    for (const PaintTool tool : {PaintTool::paintbrush, PaintTool::pencil}) {
        RasterImage image(5, 5);
        drawOn(image, strokeOf(tool, 0.4, std::nullopt, {{2.5, 2.5}}));
        EXPECT_EQ(pixelAt(image, 2, 2), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixelAt(image, 1, 2).alpha, 0);
        EXPECT_EQ(pixelAt(image, 2, 1).alpha, 0);
    }
}

TEST(DrawStroke, DrawsAThinLineAsFaintAsItIsThin) {
    RasterImage image(6, 3);
    drawOn(image, strokeOf(PaintTool::pencil, 0.4, std::nullopt, {{-3, 1.5}, {9, 1.5}}));
    EXPECT_EQ(pixelAt(image, 3, 1).alpha, 102);
    EXPECT_EQ(pixelAt(image, 3, 0).alpha, 0);
}

TEST(DrawStroke, DrawsAPencilOfNearlyFullHardnessHardAndOneJustBelowSoft) {
    const auto pencil = [](std::optional<double> hardness) {
        return drawn(strokeOf(PaintTool::pencil, 100, hardness, {{60, 60}, {61, 60}}), 120, 120);
    };
    EXPECT_EQ(pencil(99.5), pencil(std::nullopt));
    EXPECT_NE(pencil(99.0), pencil(std::nullopt));
    EXPECT_NE(pencil(0.0), pencil(50.0));
}

TEST(DrawStroke, DoesNotAskABrushForItsHardness) {
    RasterImage soft(40, 40);
    RasterImage hard(40, 40);
    drawOn(soft, strokeOf(PaintTool::paintbrush, 20, 0.0, {{20, 20}}));
    drawOn(hard, strokeOf(PaintTool::paintbrush, 20, std::nullopt, {{20, 20}}));
    EXPECT_EQ(soft, hard);
}

TEST(DrawStroke, ErasesWhateverTheColor) {
    for (const model::ColorValue color :
         {model::ColorValue{1, 1, 1, 1}, model::ColorValue{0, 0.5, 1, 0.0}}) {
        RasterImage image = filledImage(9, 9, {40, 80, 120, 200});
        PaintStroke stroke = strokeOf(PaintTool::eraser, 4, std::nullopt, {{4.5, 4.5}});
        stroke.color = color;
        drawOn(image, stroke);
        EXPECT_EQ(pixelAt(image, 4, 4), Pixel{});
        EXPECT_EQ(pixelAt(image, 0, 0), (Pixel{40, 80, 120, 200}));
    }
}

TEST(DrawStroke, ErasesWithTheSoftnessThatAPencilPaintsWith) {
    const std::vector<CanvasPoint> points{{20.2, 17.0}, {44.0, 30.5}};
    RasterImage painted(64, 48);
    RasterImage erased = filledImage(64, 48, {255, 255, 255, 255});
    drawOn(painted, strokeOf(PaintTool::pencil, 18, 30.0, points));
    drawOn(erased, strokeOf(PaintTool::eraser, 18, 30.0, points));
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(pixelAt(erased, x, y).alpha, 255 - pixelAt(painted, x, y).alpha);
}

TEST(DrawStroke, PaintsAPolylineOnceWhereItsSegmentsOverlap) {
    PaintStroke stroke = strokeOf(PaintTool::pencil, 10, 0.0, {{5, 20}, {20, 20}, {35, 20}});
    stroke.color.alpha = 0.5;
    RasterImage polyline(40, 40);
    drawOn(polyline, stroke);
    stroke.points = {{5, 20}, {35, 20}};
    RasterImage line(40, 40);
    drawOn(line, stroke);
    EXPECT_LE(greatestDifference(polyline, line), 1);
}

TEST(DrawStroke, LooksTheSameOnOneThreadAndOnAll) {
    std::mt19937 random(13);
    for (const std::optional<double> hardness : {std::optional<double>(), std::optional(20.0)}) {
        RasterImage many = randomImage(900, 700, random);
        RasterImage one = many;
        const PaintStroke stroke =
            strokeOf(PaintTool::pencil, 240, hardness, {{100, 100}, {640, 500}, {800, 20}});
        drawOn(many, stroke);
        const ParallelThreadLimit limit(1);
        drawOn(one, stroke);
        EXPECT_EQ(many, one);
    }
}

TEST(DrawStroke, ReturnsNothingWhenNothingIsOnTheImage) {
    const RasterImage image = filledImage(10, 10, {1, 2, 3, 4});
    PaintStroke invisible = strokeOf(PaintTool::pencil, 4, std::nullopt, {{5, 5}});
    invisible.color.alpha = 0.0;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double huge = 1e300;
    for (const PaintStroke& stroke :
         {invisible, strokeOf(PaintTool::pencil, 4, std::nullopt, {}),
          strokeOf(PaintTool::pencil, 4, std::nullopt, {{-30, 5}, {-4, 8}}),
          strokeOf(PaintTool::pencil, 4, 10.0, {{nan, 5}}),
          strokeOf(PaintTool::pencil, 0.0, std::nullopt, {{2, 2}, {8, 8}}),
          strokeOf(PaintTool::pencil, nan, std::nullopt, {{2, 2}, {8, 8}}),
          strokeOf(PaintTool::pencil, 4, std::nullopt, {{huge, huge}, {huge, -huge}})}) {
        RasterImage drawn = image;
        EXPECT_TRUE(drawOn(drawn, stroke).isEmpty());
        EXPECT_EQ(drawn, image);
    }
    RasterImage null;
    EXPECT_TRUE(drawOn(null, strokeOf(PaintTool::pencil, 4, std::nullopt, {{5, 5}})).isEmpty());
}

TEST(DrawStroke, SurvivesWidthsAndPointsWithoutMeasure) {
    constexpr double huge = 1e300;
    RasterImage image(10, 10);
    drawOn(image, strokeOf(PaintTool::pencil, huge, std::nullopt, {{5, 5}}));
    EXPECT_EQ(image, filledImage(10, 10, {255, 0, 0, 255}));
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(
        drawn(strokeOf(PaintTool::pencil, infinity, std::nullopt, {{32'768, 32'768}}), 10, 10),
        filledImage(10, 10, {255, 0, 0, 255}));
    RasterImage crossed(10, 10);
    drawOn(crossed, strokeOf(PaintTool::pencil, 2, std::nullopt, {{-huge, 5}, {huge, 5}}));
    EXPECT_EQ(pixelAt(crossed, 5, 5).alpha, 255);
    EXPECT_EQ(pixelAt(crossed, 5, 0).alpha, 0);
}

TEST(DrawStroke, LeavesTheImageToToolsThatDoNotPaint) {
    for (const PaintTool tool :
         {PaintTool::rectangleSelect, PaintTool::lassoSelect, PaintTool::ellipseSelect,
          PaintTool::magicWand, PaintTool::moveSelectedPixels, PaintTool::moveSelection,
          PaintTool::zoom, PaintTool::pan, PaintTool::colorPicker, PaintTool::text}) {
        RasterImage image(10, 10);
        EXPECT_TRUE(drawOn(image, strokeOf(tool, 5, std::nullopt, {{2, 2}, {8, 8}})).isEmpty());
        EXPECT_EQ(image, RasterImage(10, 10));
    }
}

TEST(DrawStroke, DoesNotChangeImagesThatShareItsPixels) {
    RasterImage image(10, 10);
    const RasterImage shared = image;
    drawOn(image, strokeOf(PaintTool::pencil, 5, std::nullopt, {{5, 5}}));
    EXPECT_EQ(shared, RasterImage(10, 10));
}

} // namespace
} // namespace quillabrae::raster
