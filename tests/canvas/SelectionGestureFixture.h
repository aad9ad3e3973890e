// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/GestureFixture.h"
#include "canvas/SelectionHandle.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <QColor>
#include <QImage>

namespace quillabrae::canvas {

/// Gestures of the tools that select.
class SelectionGestureFixture : public GestureFixture {
protected:
    using History = std::vector<std::pair<std::string, std::string>>;

    void drag(model::CanvasPoint from, model::CanvasPoint to) {
        press(from);
        moveTo(to);
        release(to);
    }
    void useTool(model::PaintTool tool) {
        host.tools.selectedTool = tool;
        view.settingsChanged();
    }
    void hold(Modifiers keys) {
        pointer.keys = keys;
        view.modifiersChanged();
    }
    void select(const QRectF& rect) {
        project().isCanvasSelected = true;
        project().pixelSelection =
            model::PixelSelection{rect.x(), rect.y(), rect.width(), rect.height(), std::nullopt};
    }
    /// The selection's rectangle; null without one.
    QRectF selected() {
        EXPECT_EQ(project().isCanvasSelected, project().pixelSelection.has_value());
        return project().pixelSelection ? rectOf(*project().pixelSelection) : QRectF();
    }

    /// A layer that is clear but for `rect`.
    static model::PngBytes block(const QRect& rect, const QColor& color) {
        auto image = raster::LayerRasterService::transparentImage(200.0, 100.0);
        QImage target = image.paintTarget();
        QPainter(&target).fillRect(rect, color);
        return raster::encodedImage(image);
    }
    QColor pixel(int x, int y) {
        if (!layer().bitmapPNGData) return QColor(0, 0, 0, 0);
        return raster::decodedImage(*layer().bitmapPNGData).toQImage().pixelColor(x, y);
    }
    QColor livePixel(int x, int y) const {
        const CanvasFrame frame = view.frame(1.0);
        return frame.liveImage == nullptr ? QColor() : frame.liveImage->toQImage().pixelColor(x, y);
    }
    /// Red pixels of 30 by 30 that float over the layer at (20, 20).
    void floatPixels() {
        auto image = raster::LayerRasterService::transparentImage(30.0, 30.0);
        image.paintTarget().fill(Qt::red);
        project().floatingSelection =
            model::FloatingPixelSelection{raster::encodedImage(image), 30.0, 30.0, layer().id};
        select({20.0, 20.0, 30.0, 30.0});
    }
};

} // namespace quillabrae::canvas
