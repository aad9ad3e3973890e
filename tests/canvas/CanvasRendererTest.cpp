// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>
#include <vector>

namespace quillabrae::canvas {
namespace {

using model::PaintLayer;
using model::PaintProject;
using raster::RasterImage;
using namespace fixtures;

class CanvasRendererScales : public testing::TestWithParam<std::tuple<double, double>> {};

TEST_P(CanvasRendererScales, ShowsThePixelUnderEachDevicePixelsCentre) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(3);
    const PaintProject project = randomProject(150, 97, random);
    for (const QPointF origin : {QPointF(18, 18), QPointF(-7, 11.2), QPointF(-400.4, -200.8)}) {
        const CanvasFrame frame = frameOf(project, zoom, ratio, {141, 93}, origin);
        EXPECT_EQ(painted(frame), bookPainted(frame)) << origin.x();
    }
}

TEST_P(CanvasRendererScales, PaintsInPointsWhatItPaintsInDevicePixels) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(4);
    const PaintProject project = randomProject(300, 290, random);
    CanvasFrame frame = frameOf(project, zoom, ratio, {260, 240}, {10, 12});
    frame.secondaryLabelColor = Qt::black;
    frame.showsPixelGrid = true;
    QImage device = blankTarget(frame);
    device.setDevicePixelRatio(ratio);
    {
        QPainter painter(&device);
        CanvasRenderer().paint(painter, frame, QRect(0, 0, 260, 240));
    }
    device.setDevicePixelRatio(1.0);
    EXPECT_EQ(device, painted(frame));
}

TEST_P(CanvasRendererScales, PaintsAPartAsItPaintsTheWhole) {
    const auto [zoom, ratio] = GetParam();
    std::mt19937 random(5);
    const PaintProject project = randomProject(90, 80, random);
    CanvasFrame frame = frameOf(project, zoom, ratio, {120, 110}, {8, 5});
    frame.secondaryLabelColor = Qt::black;
    frame.showsPixelGrid = true;
    const QImage whole = painted(frame);
    std::uniform_int_distribution<int> coordinate(-20, 200);
    for (int round = 0; round < 10; ++round) {
        const QRect dirty = QRect(QPoint(coordinate(random), coordinate(random)),
                                  QPoint(coordinate(random), coordinate(random)))
                                .normalized();
        QImage part = blankTarget(frame);
        CanvasRenderer().paint(part, frame, dirty);
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QRgb expected =
                    dirty.contains(x, y) ? whole.pixel(x, y) : QColor(Qt::magenta).rgb();
                ASSERT_EQ(part.pixel(x, y), expected) << x << ' ' << y;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryScale, CanvasRendererScales,
                         testing::Combine(testing::Values(0.1, 0.37, 1.0, 1.25, 3.0, 8.0, 64.0),
                                          testing::Values(1.0, 1.25, 1.5, 1.75, 2.0)));

TEST(CanvasRenderer, ComposesEmptyAndOpaqueRegionsAsItDoesAllOthers) {
    std::mt19937 random(14);
    std::uniform_int_distribution<int> tile(0, 4);
    const auto patchwork = [&](int width, int height) {
        RasterImage image = randomImage(width, height, random);
        QImage target = image.paintTarget();
        QPainter painter(&target);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (int y = 0; y < height; y += 64) {
            for (int x = 0; x < width; x += 64) {
                const int kind = tile(random);
                if (kind < 2) painter.fillRect(x, y, 64, 64, Qt::transparent);
                if (kind > 2) painter.fillRect(x, y, 64, 64, QColor(10 * x % 256, y % 256, 77));
            }
        }
        return image;
    };
    PaintProject project = projectOf(333, 270, {});
    for (int i = 0; i < 4; ++i) project.layers.push_back(layerOf(patchwork(333, 270)));
    project.layers.push_back(layerOf(filledImage(333, 270, Qt::darkGreen)));
    project.layers.push_back(layerOf(patchwork(333, 270), 0.5));
    project.layers.push_back(layerOf(patchwork(90, 500)));
    CanvasRenderer renderer;
    for (const bool hasOpaqueLayer : {true, false}) {
        project.layers[4].isVisible = hasOpaqueLayer;
        for (const double zoom : {0.37, 0.6, 1.0, 1.25, 3.0}) {
            const CanvasFrame frame = frameOf(project, zoom, 1.0, {300, 280}, {-20, 6});
            const QImage expected = bookPainted(frame);
            EXPECT_EQ(painted(frame, renderer), expected) << zoom;
            EXPECT_EQ(painted(frame, renderer), expected) << zoom;
        }
    }
}

TEST(CanvasRenderer, ShowsACheckerOf22PointCellsWhateverTheZoom) {
    const PaintProject project = projectOf(1000, 1000, {PaintLayer()});
    for (const double zoom : {0.1, 1.0, 7.0}) {
        const QImage image = painted(frameOf(project, zoom, 1.0, {120, 120}, {10, 10}));
        EXPECT_EQ(image.pixel(10, 10), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(31, 10), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(32, 10), qRgb(255, 255, 255));
        EXPECT_EQ(image.pixel(10, 32), qRgb(255, 255, 255));
        EXPECT_EQ(image.pixel(32, 32), qRgb(219, 219, 219));
        EXPECT_EQ(image.pixel(9, 10), QColor(Qt::magenta).rgb());
        EXPECT_EQ(image.pixel(10, 9), QColor(Qt::magenta).rgb());
    }
}

TEST(CanvasRenderer, LeavesTheSurroundingsAlone) {
    const PaintProject project = projectOf(5, 4, {layerOf(filledImage(5, 4, Qt::blue))});
    const QImage image = painted(frameOf(project, 2.0, 1.0, {30, 30}, {7, 9}));
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 30; ++x) {
            const bool isOnCanvas = QRect(7, 9, 10, 8).contains(x, y);
            EXPECT_EQ(image.pixel(x, y), QColor(isOnCanvas ? Qt::blue : Qt::magenta).rgb());
        }
    }
}

TEST(CanvasRenderer, ShowsFloatingPixelsAtTheSelectionInWholePixels) {
    std::mt19937 random(10);
    PaintProject project = projectOf(
        20, 20, {layerOf(randomImage(20, 20, random), 0.7), layerOf(randomImage(20, 20, random))});
    const RasterImage floating = randomImage(3, 2, random);
    project.floatingSelection =
        model::FloatingPixelSelection{*layerOf(floating).bitmapPNGData, 3, 2, project.layers[0].id};
    for (const QRectF& rect :
         {QRectF(2.9, 3.9, 6.9, 4.9), QRectF(-2.9, -1.5, 9, 9), QRectF(9, 9, -4, -6),
          QRectF(5, 5, 0.4, 0.4), QRectF(15, 15, 40, 40), QRectF(1e300, 0, 5, 5)}) {
        project.pixelSelection =
            model::PixelSelection{rect.x(), rect.y(), rect.width(), rect.height(), std::nullopt};
        const CanvasFrame frame = frameOf(project, 2.0, 1.0, {45, 45}, {2, 2});
        EXPECT_EQ(painted(frame), bookPainted(frame)) << rect.x();
    }
}

TEST(CanvasRenderer, ShowsNoFloatingPixelsWithoutASelectionOrOfAHiddenLayer) {
    std::mt19937 random(11);
    PaintProject project =
        projectOf(8, 8, {layerOf(randomImage(8, 8, random)), layerOf(randomImage(8, 8, random))});
    const QImage plain = painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0}));
    project.floatingSelection = model::FloatingPixelSelection{
        *layerOf(filledImage(8, 8, Qt::red)).bitmapPNGData, 8, 8, project.layers[1].id};
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})), plain);
    project.pixelSelection = model::PixelSelection{0, 0, 8, 8, std::nullopt};
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})),
              bookPainted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})));
    project.layers[1].isVisible = false;
    project.floatingSelection->pngData = model::PngBytes(QByteArrayLiteral("torn"));
    const CanvasFrame frame = frameOf(project, 1.0, 1.0, {8, 8}, {0, 0});
    EXPECT_EQ(painted(frame), bookPainted(frame));
}

TEST(CanvasRenderer, DrawsNothingForALayerThatCannotBeDecoded) {
    PaintProject project = projectOf(8, 8, {PaintLayer()});
    const QImage plain = painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0}));
    project.layers[0].bitmapPNGData = model::PngBytes(QByteArrayLiteral("torn"));
    EXPECT_EQ(painted(frameOf(project, 1.0, 1.0, {8, 8}, {0, 0})), plain);
}

TEST(CanvasRenderer, EndsAFractionalCanvasWhereItEnds) {
    std::mt19937 random(12);
    const PaintProject project = projectOf(10.6, 7.3, {layerOf(randomImage(11, 7, random))});
    for (const double zoom : {1.0, 2.5, 8.0}) {
        const CanvasFrame frame = frameOf(project, zoom, 1.25, {100, 70}, {3, 3});
        EXPECT_EQ(painted(frame), bookPainted(frame));
    }
}

TEST(CanvasRenderer, PaintsNothingWithoutAProjectOrAZoom) {
    const PaintProject project = projectOf(8, 8, {PaintLayer()});
    CanvasFrame frame = frameOf(project, 0.0, 1.0, {8, 8}, {0, 0});
    EXPECT_EQ(painted(frame), blankTarget(frame));
    frame.zoomScale = 1.0;
    frame.project = nullptr;
    EXPECT_EQ(painted(frame), blankTarget(frame));
}

} // namespace
} // namespace quillabrae::canvas
