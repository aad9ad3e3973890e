// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PaintAppSettings.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillabrae::model {
namespace {

struct Range {
    double PaintAppSettings::*member;
    double lower;
    double upper;
};

constexpr Range ranges[] = {
    {&PaintAppSettings::brushSize, 1.0, 512.0},
    {&PaintAppSettings::shapeOutlineWidth, 1.0, 32.0},
    {&PaintAppSettings::pencilHardness, 0.0, 100.0},
    {&PaintAppSettings::magicWandMatchPercentage, 0.0, 100.0},
    {&PaintAppSettings::paintBucketMatchPercentage, 0.0, 100.0},
    {&PaintAppSettings::textFontSize, 1.0, 512.0},
    {&PaintAppSettings::zoomScale, 0.1, 64.0},
};

double clamped(double PaintAppSettings::*member, double value) {
    PaintAppSettings settings;
    settings.*member = value;
    return settings.clamped().*member;
}

TEST(PaintAppSettings, EachValueIsBroughtIntoItsRange) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [member, lower, upper] : ranges) {
        EXPECT_EQ(clamped(member, lower - 0.001), lower);
        EXPECT_EQ(clamped(member, upper + 1000.0), upper);
        EXPECT_EQ(clamped(member, lower), lower);
        EXPECT_EQ(clamped(member, upper), upper);
        EXPECT_EQ(clamped(member, -infinity), lower);
        EXPECT_EQ(clamped(member, infinity), upper);
    }
}

TEST(PaintAppSettings, NotANumberBecomesTheDefault) {
    for (const Range& range : ranges)
        EXPECT_EQ(clamped(range.member, std::numeric_limits<double>::quiet_NaN()),
                  PaintAppSettings().*range.member);
}

TEST(PaintAppSettings, AnOutlineWidthIsAWholeNumber) {
    EXPECT_EQ(clamped(&PaintAppSettings::shapeOutlineWidth, 2.4), 2.0);
    EXPECT_EQ(clamped(&PaintAppSettings::shapeOutlineWidth, 2.5), 3.0);
    EXPECT_EQ(clamped(&PaintAppSettings::shapeOutlineWidth, 0.4), 1.0);
}

TEST(PaintAppSettings, WhatHasNoRangeStaysAsItIs) {
    PaintAppSettings settings;
    settings.selectedTool = PaintTool::zoom;
    settings.primaryColor = {7.0, -1.0, 0.5, 2.0};
    settings.textFontFamily = QStringLiteral("No Such Family");
    EXPECT_EQ(settings.clamped(), settings);
}

} // namespace
} // namespace quillabrae::model
