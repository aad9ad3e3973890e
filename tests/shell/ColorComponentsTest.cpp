// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/ColorComponents.h"

#include <QColor>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace quillabrae::shell {
namespace {

using model::ColorValue;

constexpr double tolerance = 1e-9;

void expectNear(const ColorValue& a, const ColorValue& b, double within = tolerance) {
    EXPECT_NEAR(a.red, b.red, within);
    EXPECT_NEAR(a.green, b.green, within);
    EXPECT_NEAR(a.blue, b.blue, within);
    EXPECT_NEAR(a.alpha, b.alpha, within);
}

const ColorComponent& component(const char* label) {
    for (const ColorComponent& row : colorComponents()) {
        if (QLatin1StringView(row.label) == QLatin1StringView(label)) return row;
    }
    throw std::invalid_argument(label);
}

TEST(ColorComponents, StandInOrderUnderTheirHeadings) {
    QString all;
    for (const ColorComponent& row : colorComponents()) {
        all += QStringLiteral("%1 %2 %3, ")
                   .arg(QLatin1StringView(row.heading), QLatin1StringView(row.label))
                   .arg(row.scale);
    }
    EXPECT_EQ(all.toStdString(),
              "RGB R: 255, RGB G: 255, RGB B: 255, HSV H: 360, HSV S: 100, HSV V: 100, "
              "Alpha A: 255, ");
}

TEST(ColorComponents, ReadAndWriteWholeNumbers) {
    ColorValue color{0.1, 0.2, 0.3, 0.4};
    for (const ColorComponent& row : colorComponents()) {
        for (int value = 1; value < row.scale; value += 7) {
            EXPECT_EQ(row.value(row.withValue(color, value)), value) << row.label << value;
        }
    }
    EXPECT_EQ(component("R:").withValue(color, 300.0).red, 1.0);
    EXPECT_EQ(component("A:").withValue(color, -5.0).alpha, 0.0);
    color.green = 0.5;
    EXPECT_EQ(component("G:").value(color), 128);
}

TEST(ColorComponents, ConvertHuesAsTheToolkitDoesAndBack) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> part(0.0, 1.0);
    for (int round = 0; round < 3000; ++round) {
        const ColorValue color{part(random), part(random), part(random), part(random)};
        const HueColor hue = toHueColor(color);
        expectNear(toColorValue(hue, color.alpha), color);
        const QColor peer =
            QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                             static_cast<float>(color.blue));
        const double turn = std::abs(hue.hue - static_cast<double>(peer.hsvHueF()));
        EXPECT_NEAR(std::min(turn, 1.0 - turn), 0.0, 0.01);
        EXPECT_NEAR(hue.saturation, static_cast<double>(peer.hsvSaturationF()), 0.001);
        EXPECT_NEAR(hue.brightness, static_cast<double>(peer.valueF()), 0.001);
    }
}

TEST(ColorComponents, KeepAlphaThroughAChangeOfHue) {
    const ColorValue clear{0.9, 0.2, 0.1, 0.0};
    EXPECT_EQ(component("H:").withValue(clear, 200).alpha, 0.0);
    EXPECT_EQ((ColorWheel{{50, 50}, 40.0}.colorAt({80, 50}, clear).alpha), 0.0);
}

TEST(ColorComponents, ReadZeroForBlackAndMakeAGrayOfItByItsValue) {
    const ColorValue black{0.0, 0.0, 0.0, 1.0};
    EXPECT_EQ(component("H:").value(black), 0);
    EXPECT_EQ(component("S:").value(black), 0);
    expectNear(component("V:").withValue(black, 50), {0.5, 0.5, 0.5, 1.0});
}

TEST(ColorComponents, LoseTheHueWithTheSaturation) {
    const ColorValue blue{0.2, 0.3, 0.9, 1.0};
    EXPECT_NE(component("H:").value(blue), 0);
    EXPECT_EQ(component("H:").value(component("S:").withValue(blue, 0)), 0);
}

TEST(ColorWheel, PicksHueByTheAngleClockwiseFromTheRight) {
    const ColorWheel wheel{{100, 100}, 80.0};
    const ColorValue red{1.0, 0.0, 0.0, 0.5};
    expectNear(wheel.colorAt({180, 100}, red), {1.0, 0.0, 0.0, 0.5});
    expectNear(wheel.colorAt({100, 180}, red), {0.5, 1.0, 0.0, 0.5});
    expectNear(wheel.colorAt({20, 100}, red), {0.0, 1.0, 1.0, 0.5});
    expectNear(wheel.colorAt({100, 20}, red), {0.5, 0.0, 1.0, 0.5});
    expectNear(wheel.colorAt({100, 100}, red), {1.0, 1.0, 1.0, 0.5});
    expectNear(wheel.colorAt({140, 100}, red), {1.0, 0.5, 0.5, 0.5});
}

TEST(ColorWheel, KeepsTheRimsSaturationBeyondTheRim) {
    const ColorWheel wheel{{100, 100}, 80.0};
    const ColorValue red{1.0, 0.0, 0.0, 1.0};
    for (const double distance : {80.0, 81.0, 200.0, 5000.0}) {
        EXPECT_NEAR(toHueColor(wheel.colorAt({100, 100 + distance}, red)).saturation, 1.0,
                    tolerance);
    }
}

TEST(ColorWheel, PutsItsMarkerWhereTheColorWasPicked) {
    const ColorWheel wheel{{100, 100}, 80.0};
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(50.0, 150.0);
    for (int round = 0; round < 500; ++round) {
        const QPointF at(place(random), place(random));
        const QPointF marker =
            wheel.markerPosition(wheel.colorAt(at, ColorValue{0.7, 0.1, 0.1, 1.0}));
        EXPECT_NEAR(marker.x(), at.x(), 1e-6);
        EXPECT_NEAR(marker.y(), at.y(), 1e-6);
    }
}

TEST(ColorHex, WritesAndReadsDigits) {
    const ColorValue color{1.0, 128.0 / 255.0, 0.0, 1.0};
    EXPECT_EQ(hexText(color), QStringLiteral("#FF8000"));
    EXPECT_EQ(hexText({1.0, 0.0, 0.0, 0.0}), QStringLiteral("#FF000000"));
    const ColorValue half{0.0, 0.0, 0.0, 0.5};
    expectNear(*colorFromHex(QStringLiteral("ff8000"), half), {1.0, 128.0 / 255.0, 0.0, 0.5});
    expectNear(*colorFromHex(QStringLiteral(" #f0a "), half), {1.0, 0.0, 170.0 / 255.0, 0.5});
    expectNear(*colorFromHex(QStringLiteral("#01020304"), half),
               {1 / 255.0, 2 / 255.0, 3 / 255.0, 4 / 255.0});
    for (const char* wrong : {"", "#", "12345", "#ggg", "red", "1234567"})
        EXPECT_FALSE(colorFromHex(QString::fromLatin1(wrong), half)) << wrong;
}

TEST(CommonColors, AreEighteenOpaqueOnes) {
    ASSERT_EQ(commonColors().size(), 18U);
    for (const ColorValue& color : commonColors()) EXPECT_EQ(color.alpha, 1.0);
    EXPECT_EQ(commonColors().front(), (ColorValue{0.0, 0.0, 0.0, 1.0}));
    EXPECT_EQ(commonColors().back(), (ColorValue{1.0, 0.68, 0.92, 1.0}));
}

} // namespace
} // namespace quillabrae::shell
