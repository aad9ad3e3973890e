// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/GestureFixture.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <QColor>
#include <QImage>

#include <vector>

namespace quillabrae::canvas {

inline constexpr model::ColorValue red{1.0, 0.0, 0.0, 1.0};
inline constexpr model::ColorValue blue{0.0, 0.0, 1.0, 1.0};
inline constexpr QColor clear(0, 0, 0, 0);

/// A canvas of 200 by 100 pixels and the gestures that draw on it, red with the left button and
/// blue with the right one. Points are canvas pixels.
class Stroke : public GestureFixture {
protected:
    Stroke() {
        host.tools.selectedTool = model::PaintTool::paintbrush;
        host.tools.primaryColor = red;
        host.tools.secondaryColor = blue;
        host.tools.brushSize = 6.0;
    }

    static model::PngBytes solid(double width, double height, const QColor& color) {
        auto image = raster::LayerRasterService::transparentImage(width, height);
        image.paintTarget().fill(color);
        return raster::encodedImage(image);
    }
    void fillLayer(const QColor& color) { layer().bitmapPNGData = solid(200.0, 100.0, color); }

    void draw(std::vector<model::CanvasPoint> points) {
        press(points.front());
        for (const model::CanvasPoint point : points) moveTo(point);
        release(points.back());
    }
    bool right(RightMousePhase phase, model::CanvasPoint at) {
        return view.handleRightMouseEvent({phase, inDocument(at)});
    }

    static QColor pixel(const raster::RasterImage& image, int x, int y) {
        return image.toQImage().pixelColor(x, y);
    }
    QColor pixel(int x, int y) {
        if (!layer().bitmapPNGData) return clear;
        return pixel(raster::decodedImage(*layer().bitmapPNGData), x, y);
    }
    QColor livePixel(int x, int y) const { return pixel(view.drawing().liveDrawingImage(), x, y); }
};

} // namespace quillabrae::canvas
