// SPDX-License-Identifier: GPL-3.0-or-later
// Canvas pixels against the screen's, at the screen scale that the process was started with.
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/StoreTest.h"

#include <QApplication>
#include <QImage>

#include <cmath>
#include <memory>

namespace quillabrae::canvas {
namespace {

class ScaledCanvas : public store::StoreTest {
protected:
    void SetUp() override {
        projects->createUntitledProject(40, 30, 96);
        auto image = raster::LayerRasterService::transparentImage(40.0, 30.0);
        QImage target = image.paintTarget();
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x)
                target.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::red : Qt::blue);
        projects->editActiveProject([&](model::PaintProject& project) {
            project.layers.front().bitmapPNGData = raster::encodedImage(image);
        });
        widget.resize(501, 401);
        widget.show();
        QApplication::processEvents();
    }

    /// What the viewport shows of the canvas, in device pixels from its top left corner on.
    QImage shown(double zoomScale, bool hasGrid) {
        projects->editSettings([=](model::PaintAppSettings& settings) {
            settings.zoomScale = zoomScale;
            settings.showsPixelGrid = hasGrid;
        });
        widget.view().zoom().centerCanvasInViewport();
        QApplication::processEvents();
        const QImage screen = widget.viewport()->grab().toImage();
        ratio = screen.devicePixelRatio();
        const QPointF corner = widget.canvasOriginInViewport() * ratio;
        EXPECT_NEAR(corner.x(), std::round(corner.x()), 1e-6);
        EXPECT_NEAR(corner.y(), std::round(corner.y()), 1e-6);
        const QRect canvas(corner.toPoint(), (QSizeF(40.0, 30.0) * zoomScale * ratio).toSize());
        return screen.copy(canvas & screen.rect());
    }
    static bool isWhole(double value) { return std::abs(value - std::round(value)) < 1e-9; }
    static bool isLine(QRgb color) { return color != qRgb(255, 0, 0) && color != qRgb(0, 0, 255); }

    double ratio = 1.0;
    std::unique_ptr<store::ProjectStore> projects = makeStore();
    CanvasWidget widget{*projects};
};

TEST_F(ScaledCanvas, EachDevicePixelShowsOneCanvasPixelAndNothingBlurs) {
    for (const double zoom : {1.0, 3.0, 4.0, 7.313}) {
        const QImage image = shown(zoom, false);
        const double side = zoom * ratio;
        // The outermost canvas pixels hold the border.
        const auto inner = [&](int count) { return static_cast<int>(count * side) - 1; };
        for (int y = static_cast<int>(std::ceil(side)); y < inner(29); ++y) {
            for (int x = static_cast<int>(std::ceil(side)); x < inner(39); ++x) {
                const double atColumn = (x + 0.5) / side;
                const double atRow = (y + 0.5) / side;
                // On the very border between two canvas pixels either will do.
                if (isWhole(atColumn) || isWhole(atRow)) continue;
                const int column = static_cast<int>(std::floor(atColumn));
                const int row = static_cast<int>(std::floor(atRow));
                const QRgb expected = (column + row) % 2 == 0 ? qRgb(255, 0, 0) : qRgb(0, 0, 255);
                ASSERT_EQ(image.pixel(x, y), expected) << zoom << ": " << x << ' ' << y;
            }
        }
    }
}

TEST_F(ScaledCanvas, GridLinesAreWholeDevicePixelsAndAllAlike) {
    const double zoom = 8.0;
    const QImage image = shown(zoom, true);
    const double side = zoom * ratio;
    const int width = static_cast<int>(std::lround(std::max(std::round(ratio), 1.0)));
    // Along the middle of the second row of canvas pixels: nothing but them and upright lines.
    const int y = static_cast<int>(1.5 * side);
    int lines = 0;
    for (int x = static_cast<int>(1.5 * side); x < static_cast<int>(38.5 * side);) {
        int length = 0;
        const bool line = isLine(image.pixel(x, y));
        while (x + length < image.width() && isLine(image.pixel(x + length, y)) == line) ++length;
        if (line) {
            EXPECT_EQ(length, width) << x;
            // It stands around the border between two canvas pixels.
            const double border = std::round(x / side) * side;
            EXPECT_LE(std::abs(x + width / 2.0 - border), 0.5 + 1e-9) << x;
            ++lines;
        }
        x += length;
    }
    EXPECT_EQ(lines, 37);
}

} // namespace
} // namespace quillabrae::canvas
