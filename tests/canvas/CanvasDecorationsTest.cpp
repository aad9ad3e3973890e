// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasFrameFixtures.h"
#include "canvas/CanvasRenderer.h"

#include <gtest/gtest.h>

namespace quillabrae::canvas {
namespace {

using model::PaintProject;
using namespace fixtures;

TEST(CanvasRenderer, ShowsTheInnerHalfOfABorderOneCanvasPixelWide) {
    const PaintProject project = projectOf(10, 10, {layerOf(filledImage(10, 10, Qt::white))});
    CanvasFrame frame = frameOf(project, 8.0, 1.0, {100, 100}, {10, 10});
    frame.secondaryLabelColor = Qt::black;
    const QImage image = painted(frame);
    const QRgb line = qRgb(209, 209, 209);
    const QRgb clear = qRgb(255, 255, 255);
    for (const int inside : {10, 13, 86, 89}) {
        EXPECT_EQ(image.pixel(inside, 50), line) << inside;
        EXPECT_EQ(image.pixel(50, inside), line) << inside;
    }
    for (const int inside : {14, 50, 85}) {
        EXPECT_EQ(image.pixel(inside, 50), clear) << inside;
        EXPECT_EQ(image.pixel(50, inside), clear) << inside;
    }
    EXPECT_EQ(image.pixel(10, 10), line);
    EXPECT_EQ(image.pixel(9, 50), QColor(Qt::magenta).rgb());
}

TEST(PixelGrid, ShowsWhenAtMost240PixelsAreVisibleAlongEachAxis) {
    const PaintProject large = projectOf(4096, 4096, {});
    const PaintProject small = projectOf(240, 240, {});
    const PaintProject wide = projectOf(241, 10, {});
    const auto shows = [](const PaintProject& project, double zoom, QSizeF viewport,
                          bool isAskedFor = true) {
        CanvasFrame frame = frameOf(project, zoom, 1.0, viewport, {0, 0});
        frame.showsPixelGrid = isAskedFor;
        return shouldDrawPixelGrid(frame);
    };
    EXPECT_TRUE(shows(large, 8.0, {1920, 1080}));
    EXPECT_FALSE(shows(large, 7.9, {1920, 1080}));
    EXPECT_TRUE(shows(large, 1.0, {240, 240}));
    EXPECT_FALSE(shows(large, 1.0, {241, 240}));
    EXPECT_TRUE(shows(small, 0.1, {1920, 1080}));
    EXPECT_FALSE(shows(wide, 1.0, {1920, 1080}));
    EXPECT_FALSE(shows(large, 8.0, {1920, 1080}, false));
    EXPECT_FALSE(shows(large, 0.0, {100, 100}));
}

TEST(PixelGrid, DrawsOnePointWideLinesBetweenCanvasPixels) {
    const PaintProject project = projectOf(6, 5, {layerOf(filledImage(6, 5, Qt::white))});
    for (const int ratio : {1, 2}) {
        CanvasFrame frame = frameOf(project, 8.0, ratio, {60, 60}, {4, 4});
        frame.showsPixelGrid = true;
        const QImage image = painted(frame);
        // A line of two device pixels stands on either side of the border between the pixels.
        const auto isLine = [&](int device) {
            const int fromEdge = device - 4 * ratio;
            return ratio == 1 ? fromEdge % 8 == 0 : (fromEdge + 1) % 16 < 2;
        };
        for (int y = 4 * ratio; y < 44 * ratio; ++y)
            for (int x = 4 * ratio; x < 52 * ratio; ++x)
                ASSERT_EQ(image.pixel(x, y) == qRgb(199, 199, 199), isLine(x) || isLine(y))
                    << x << ' ' << y;
    }
}

TEST(ViewportRect, HoldsEveryPointThatShowsTheCanvasRect) {
    const PaintProject project = projectOf(100, 100, {});
    EXPECT_EQ(viewportRect(frameOf(project, 2.0, 1.0, {50, 50}, {10, 20}), QRectF(1, 2, 3, 4)),
              QRect(12, 24, 6, 8));
    EXPECT_EQ(viewportRect(frameOf(project, 0.5, 1.0, {50, 50}, {0, 0}), QRectF(1, 1, 2, 2)),
              QRect(0, 0, 2, 2));
    // Device pixel 1 of 1.25 a point begins in point 0.
    EXPECT_EQ(viewportRect(frameOf(project, 1.0, 1.25, {50, 50}, {0, 0}), QRectF(1, 1, 1, 1)),
              QRect(0, 0, 3, 3));
}

} // namespace
} // namespace quillabrae::canvas
