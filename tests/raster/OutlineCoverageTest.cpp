// SPDX-License-Identifier: GPL-3.0-or-later
// Both outlines against the area of each pixel, measured along many lines through it.
#include "raster/EllipseCoverage.h"
#include "raster/PolygonCoverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

using Points = std::vector<model::CanvasPoint>;
/// Covered stretches of a line at some height, from left to right and apart from each other.
using Stretches = std::vector<std::pair<double, double>>;

Stretches ellipseStretches(double width, double height, double y) {
    const double v = 2.0 * y / height - 1.0;
    if (v * v >= 1.0) return {};
    const double half = width / 2.0 * std::sqrt(1.0 - v * v);
    return {{width / 2.0 - half, width / 2.0 + half}};
}

Stretches polygonStretches(const Points& points, double y) {
    std::vector<std::pair<double, int>> crossings;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const model::CanvasPoint a = points[i];
        const model::CanvasPoint b = points[(i + 1) % points.size()];
        if ((a.y <= y) == (b.y <= y)) continue;
        crossings.emplace_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x), a.y < b.y ? 1 : -1);
    }
    std::ranges::sort(crossings);
    Stretches stretches;
    int winding = 0;
    for (const auto& [x, turn] : crossings) {
        if (winding == 0) stretches.emplace_back(x, x);
        winding += turn;
        stretches.back().second = x;
    }
    return stretches;
}

/// The coverage of the pixels of row `y` times 255, from `lines` lines through their height.
template <typename StretchesAt>
std::vector<double> measuredRow(int y, int width, int lines, StretchesAt stretchesAt) {
    std::vector<double> covered(static_cast<std::size_t>(width));
    for (int line = 0; line < lines; ++line) {
        for (const auto& [left, right] : stretchesAt(y + (line + 0.5) / lines)) {
            for (int x = 0; x < width; ++x) {
                const double part = std::min(right, x + 1.0) - std::max(left, double(x));
                covered[static_cast<std::size_t>(x)] += std::max(part, 0.0) * 255.0 / lines;
            }
        }
    }
    return covered;
}

template <typename FillRow, typename StretchesAt>
testing::AssertionResult isWithinOneLevel(int width, int height, FillRow fillRow,
                                          StretchesAt stretchesAt) {
    constexpr int lines = 500;
    std::vector<std::uint8_t> alpha(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        fillRow(y, std::span(alpha));
        const std::vector<double> measured = measuredRow(y, width, lines, stretchesAt);
        for (std::size_t x = 0; x < alpha.size(); ++x)
            if (std::abs(alpha[x] - measured[x]) > 1.0)
                return testing::AssertionFailure()
                       << "at " << x << ' ' << y << ": " << int{alpha[x]} << " for " << measured[x];
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult isExact(const Points& points, int width, int height) {
    const PolygonCoverage polygon(points);
    PolygonCoverage::Rows rows(polygon, 0, height);
    return isWithinOneLevel(
        width, height, [&](int y, std::span<std::uint8_t> alpha) { rows.fillRow(y, alpha); },
        [&](double y) { return polygonStretches(points, y); });
}

TEST(EllipseCoverage, IsTheAreaOfEachPixelWithinOneLevel) {
    for (const double width : {0.3, 1.0, 1.7, 2.0, 3.0, 6.5, 10.4, 24.0, 61.0}) {
        for (const double height : {0.6, 1.0, 2.5, 5.0, 10.6, 33.0}) {
            const EllipseCoverage ellipse(width, height);
            EXPECT_TRUE(isWithinOneLevel(
                static_cast<int>(std::ceil(width)) + 1, static_cast<int>(std::ceil(height)) + 1,
                [&](int y, std::span<std::uint8_t> alpha) { ellipse.fillRow(y, alpha); },
                [&](double y) { return ellipseStretches(width, height, y); }))
                << width << " by " << height;
        }
    }
}

TEST(EllipseCoverage, StaysExactAtTheLargestSizes) {
    constexpr int side = 32'768;
    const EllipseCoverage ellipse(side, side);
    std::vector<std::uint8_t> alpha(side);
    for (const int y : {0, 1, 2, 300, 9000, 16383, 16384, 32766, 32767}) {
        ellipse.fillRow(y, alpha);
        std::vector<std::uint8_t> mirrored(alpha.rbegin(), alpha.rend());
        EXPECT_EQ(alpha, mirrored) << y;
        double area = 0.0;
        for (const std::uint8_t each : alpha) area += each / 255.0;
        double expected = 0.0;
        constexpr int lines = 20'000;
        for (int line = 0; line < lines; ++line)
            for (const auto& [left, right] : ellipseStretches(side, side, y + (line + 0.5) / lines))
                expected += (right - left) / lines;
        EXPECT_NEAR(area, expected, 1.0 + expected * 1e-4) << y;
    }
}

TEST(PolygonCoverage, IsTheAreaOfEachPixelWithinOneLevel) {
    std::mt19937 random(33);
    std::uniform_real_distribution<double> coordinate(-6.0, 26.0);
    for (int round = 0; round < 150; ++round) {
        Points points(static_cast<std::size_t>(3 + round % 9));
        for (auto& point : points) point = {coordinate(random), coordinate(random)};
        ASSERT_TRUE(isExact(points, 20, 15)) << round;
    }
}

TEST(PolygonCoverage, StaysExactWhereManyEdgesCrossInOnePixel) {
    std::mt19937 random(34);
    std::uniform_real_distribution<double> coordinate(0.0, 3.0);
    for (int round = 0; round < 60; ++round) {
        Points points(40);
        for (auto& point : points) point = {coordinate(random), coordinate(random)};
        ASSERT_TRUE(isExact(points, 3, 3)) << round;
    }
}

TEST(PolygonCoverage, HoldsCornersOnPixelBordersAndRepeatedOnes) {
    std::mt19937 random(35);
    std::uniform_int_distribution<int> coordinate(-2, 12);
    for (int round = 0; round < 150; ++round) {
        Points points(static_cast<std::size_t>(3 + round % 7));
        for (auto& point : points)
            point = {coordinate(random) / 2.0, static_cast<double>(coordinate(random))};
        points.push_back(points.back());
        ASSERT_TRUE(isExact(points, 7, 9)) << round;
    }
}

TEST(PolygonCoverage, LeavesNoSeamWhereOppositeWindingsMeet) {
    // Two triangles side by side, wound in opposite directions, with a common slanted side.
    const Points points{{0, 0}, {6.3, 0}, {2.7, 8}, {9, 8}, {6.3, 0}, {2.7, 8}, {0, 8}};
    const PolygonCoverage polygon(points);
    PolygonCoverage::Rows rows(polygon, 0, 8);
    std::array<std::uint8_t, 6> alpha{};
    for (int y = 1; y < 7; ++y) {
        rows.fillRow(y, alpha);
        EXPECT_EQ(alpha[3], 255) << y;
        EXPECT_EQ(alpha[4], 255) << y;
    }
}

TEST(PolygonCoverage, IsTheSameWhateverRowsAreAskedFor) {
    const Points points{{1.2, 0.4}, {30.1, 9.7}, {4.4, 22.0}, {18.0, 1.0}, {3.0, 29.5}};
    const PolygonCoverage polygon(points);
    PolygonCoverage::Rows all(polygon, 0, 31);
    std::array<std::uint8_t, 32> whole{};
    std::array<std::uint8_t, 32> single{};
    for (int y = 0; y < 31; ++y) {
        all.fillRow(y, whole);
        PolygonCoverage::Rows(polygon, y, y + 1).fillRow(y, single);
        EXPECT_EQ(whole, single) << y;
    }
}

} // namespace
} // namespace quillabrae::raster
