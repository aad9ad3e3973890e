// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasOverlays.h"
#include "canvas/CanvasRenderer.h"
#include "raster/DecodeCache.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace quillabrae::canvas {
namespace {

const QColor accent(0, 0, 255);

/// One line of pixels: '|' for the accent, 'o' for the casing, '.' for what is under both.
std::string row(const QImage& image, int y, int first, int count) {
    std::string text;
    for (int x = first; x < first + count; ++x) {
        const QColor color = image.pixelColor(x, y);
        text += color == accent ? '|' : color == QColor(Qt::black) ? '.' : 'o';
    }
    return text;
}

TEST(MarchingAnts, ADashIsFourteenPointsAndAGapTen) {
    MarchingAnts ants({60, 20}, 1.0);
    ants.addSegment({0.0, 10.0}, {60.0, 10.0});
    QImage base(60, 20, QImage::Format_RGB32);
    base.fill(Qt::black);
    QImage target = base;
    ants.paint(target, base, base.rect(), 0, accent);
    EXPECT_EQ(row(target, 7, 0, 30), std::string(30, '.'));
    EXPECT_EQ(row(target, 8, 0, 30), std::string(14, 'o') + std::string(10, '.') + "oooooo");
    EXPECT_EQ(row(target, 9, 0, 30), std::string(14, '|') + std::string(10, '.') + "||||||");
    EXPECT_EQ(row(target, 10, 0, 30), row(target, 9, 0, 30));
    EXPECT_EQ(row(target, 11, 0, 30), row(target, 8, 0, 30));
    EXPECT_EQ(row(target, 12, 0, 30), std::string(30, '.'));
    EXPECT_EQ(target.pixelColor(0, 8), QColor(230, 230, 230));
}

TEST(MarchingAnts, ThePhaseMovesTheDashesAlongTheSegment) {
    MarchingAnts ants({40, 8}, 1.0);
    ants.addSegment({40.0, 4.0}, {0.0, 4.0});
    QImage base(40, 8, QImage::Format_RGB32);
    base.fill(Qt::black);
    QImage target = base;
    ants.paint(target, base, base.rect(), 3, accent);
    // From right to left: the rest of a gap, then a dash.
    EXPECT_EQ(row(target, 4, 23, 17), std::string(14, '|') + "...");
}

TEST(MarchingAnts, OnlyTheRegionAskedForIsPainted) {
    MarchingAnts ants({100, 40}, 1.0);
    ants.addSegment({0.0, 20.0}, {100.0, 20.0});
    QImage base(100, 40, QImage::Format_RGB32);
    base.fill(Qt::black);
    QImage target(100, 40, QImage::Format_RGB32);
    target.fill(Qt::red);
    ants.paint(target, base, QRegion(72, 15, 10, 10) + QRegion(3, 19, 4, 1), 0, accent);
    EXPECT_EQ(row(target, 20, 72, 10), "||||||||||");
    EXPECT_EQ(row(target, 15, 72, 10), "..........");
    EXPECT_EQ(row(target, 19, 3, 4), "||||");
    for (const QPoint beside : {QPoint(71, 20), QPoint(82, 20), QPoint(72, 14), QPoint(72, 25),
                                QPoint(2, 19), QPoint(7, 19), QPoint(3, 20)})
        EXPECT_EQ(target.pixelColor(beside), QColor(Qt::red));
}

TEST(MarchingAnts, SegmentsFarOffCostNothingAndShowNothing) {
    MarchingAnts ants({100, 40}, 1.0);
    ants.addSegment({-1e12, 20.0}, {-1e11, 20.0});
    ants.addSegment({50.0, -1e12}, {50.0, -100.0});
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    ants.addSegment({-infinity, 20.0}, {infinity, 20.0});
    ants.addSegment({notANumber, 20.0}, {50.0, 20.0});
    ants.addSegment({notANumber, notANumber}, {notANumber, notANumber});
    EXPECT_TRUE(ants.region().isEmpty());
    ants.addSegment({-1e12, 20.0}, {1e12, 20.0});
    EXPECT_EQ(ants.region().boundingRect().width(), 128);
}

/// A segment that runs along an axis between whole device pixels.
struct Segment {
    QPoint start;
    QPoint end;
};

/// The pixels that ants are to paint, one segment and one pixel after the other.
QImage antsByTheBook(const QImage& base, const std::vector<Segment>& segments, double ratio,
                     int phase) {
    QImage line(base.size(), QImage::Format_RGB32);
    line.fill(Qt::black);
    QImage casing = line;
    for (const auto& [start, end] : segments) {
        const bool isHorizontal = start.y() == end.y();
        for (int y = 0; y < base.height(); ++y) {
            for (int x = 0; x < base.width(); ++x) {
                const double along = (isHorizontal ? x : y) + 0.5;
                const double from = isHorizontal ? start.x() : start.y();
                const double to = isHorizontal ? end.x() : end.y();
                if (along < std::min(from, to) || along > std::max(from, to)) continue;
                const int points = static_cast<int>(std::abs(along - from) / ratio);
                if ((points - phase + 24) % 24 >= 14) continue;
                const double across =
                    std::abs(isHorizontal ? y + 0.5 - start.y() : x + 0.5 - start.x());
                if (across <= 1.2 * ratio) line.setPixelColor(x, y, Qt::white);
                if (across < 2.2 * ratio) casing.setPixelColor(x, y, Qt::white);
            }
        }
    }
    QImage result = base;
    for (int y = 0; y < base.height(); ++y) {
        for (int x = 0; x < base.width(); ++x) {
            const QRgb under = base.pixel(x, y);
            const auto cased = [](int channel) { return 230 + channel * 26 / 256; };
            if (casing.pixelColor(x, y) == Qt::white)
                result.setPixel(
                    x, y, qRgb(cased(qRed(under)), cased(qGreen(under)), cased(qBlue(under))));
            if (line.pixelColor(x, y) == Qt::white) result.setPixelColor(x, y, accent);
        }
    }
    return result;
}

TEST(MarchingAnts, AgreeWithTheDefinitionAndStayWithinTheirRegion) {
    std::mt19937 random(31);
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (int round = 0; round < 12; ++round) {
            const QSize size(130 + static_cast<int>(random() % 90),
                             60 + static_cast<int>(random() % 90));
            QImage base(size, QImage::Format_RGB32);
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x)
                    base.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
            }
            MarchingAnts ants(size, ratio);
            std::vector<Segment> segments;
            for (int i = 0; i < 1 + round; ++i) {
                const auto place = [&](int length) {
                    return static_cast<int>(random() % static_cast<unsigned>(length + 100)) - 50;
                };
                const QPoint start(place(size.width()), place(size.height()));
                const int reach = i % 3 == 0 ? 6 : 300;
                const int length = static_cast<int>(random() % static_cast<unsigned>(reach)) + 1;
                const int signedLength = i % 4 == 1 ? -length : length;
                const QPoint end =
                    start + (i % 2 == 0 ? QPoint(signedLength, 0) : QPoint(0, signedLength));
                segments.push_back({start, end});
                ants.addSegment(start, end);
            }
            const int phase = static_cast<int>(random() % 24);
            QImage target = base;
            ants.paint(target, base, QRegion(base.rect()), phase, accent);
            ASSERT_EQ(target, antsByTheBook(base, segments, ratio, phase)) << ratio << ' ' << round;
            const QRegion region = ants.region();
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x) {
                    const QPoint point(static_cast<int>(x / ratio), static_cast<int>(y / ratio));
                    ASSERT_TRUE(target.pixel(x, y) == base.pixel(x, y) || region.contains(point));
                }
            }
        }
    }
}

TEST(MarchingAntsPhase, GoesRoundInFiveQuartersOfASecond) {
    EXPECT_EQ(marchingAntsPhase(0.0), 0);
    EXPECT_EQ(marchingAntsPhase(0.625), 12);
    EXPECT_EQ(marchingAntsPhase(1.2499), 23);
    EXPECT_EQ(marchingAntsPhase(1.25), 0);
}

class Overlays : public testing::Test {
protected:
    Overlays() {
        project.canvasWidth = 100.0;
        project.canvasHeight = 100.0;
        frame.project = &project;
        frame.zoomScale = 2.0;
        frame.canvasOrigin = {10.0, 10.0};
        frame.viewportSize = {300.0, 300.0};
    }

    QImage painted() {
        overlays.prepare(frame, state);
        QImage base(300, 300, QImage::Format_RGB32);
        base.fill(Qt::black);
        QImage target = base;
        QPainter painter(&target);
        if (overlays.hasAnts()) overlays.paintAnts(painter, base, QRegion(base.rect()), 0, accent);
        overlays.paintMarks(painter, accent);
        return target;
    }

    model::PaintProject project;
    CanvasFrame frame;
    OverlayState state;
    CanvasOverlays overlays;
};

TEST_F(Overlays, NothingIsShownWithoutASelectionOrAnEraser) {
    QImage black(300, 300, QImage::Format_RGB32);
    black.fill(Qt::black);
    EXPECT_EQ(painted(), black);
    EXPECT_TRUE(overlays.region().isEmpty());
}

TEST_F(Overlays, ARectangleHasAntsOnItsEdgesAndHandlesOverThem) {
    state.selection = model::PixelSelection{20.0, 20.0, 60.0, 40.0, std::nullopt};
    const QImage image = painted();
    // From (50, 50) to (170, 130) on screen; the first dash lies behind the handle.
    EXPECT_EQ(image.pixelColor(60, 49), accent);
    EXPECT_EQ(image.pixelColor(68, 49), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(50, 50), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(110, 50), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(169, 129), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(110, 90), QColor(Qt::black));
    EXPECT_TRUE(overlays.region().contains(QPoint(46, 46)));
    EXPECT_FALSE(overlays.region().contains(QPoint(110, 90)));
}

TEST_F(Overlays, AMaskOnALargerSelectionIsOutlinedAtItsScale) {
    raster::RasterImage mask(10, 10);
    for (int y = 2; y < 8; ++y) {
        for (int x = 2; x < 8; ++x) mask.mutableRow(y)[4 * x + 3] = 255;
    }
    state.selection = model::PixelSelection{0.0, 0.0, 100.0, 100.0, raster::encodedImage(mask)};
    const QImage image = painted();
    // Its square of 6 by 6 is shown 20 times as large, from (50, 50).
    EXPECT_EQ(image.pixelColor(52, 49), accent);
    EXPECT_EQ(image.pixelColor(49, 52), accent);
    EXPECT_EQ(image.pixelColor(168, 49), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(171, 60), QColor(230, 230, 230));
}

TEST_F(Overlays, TheEraserHasACircleOfItsWidth) {
    state.eraserCenter = model::CanvasPoint{50.0, 50.0};
    state.eraserDiameter = 40.0;
    const QImage image = painted();
    // Around (110, 110), 80 wide.
    EXPECT_NE(image.pixelColor(70, 110), QColor(Qt::black));
    EXPECT_NE(image.pixelColor(110, 70), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(110, 110), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(60, 110), QColor(Qt::black));
    EXPECT_TRUE(overlays.region().contains(QPoint(70, 110)));
}

} // namespace
} // namespace quillabrae::canvas
