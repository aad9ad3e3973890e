// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasPainting.h"

#include "canvas/CanvasRenderer.h"
#include "model/PaintProject.h"
#include "raster/DecodeCache.h"

#include <QPainter>

#include <cmath>

namespace quillabrae::canvas {
namespace {

constexpr double checkerCell = 22.0;

void paintChecker(QPainter& painter, const QRectF& canvas, const QRectF& visible) {
    painter.fillRect(visible, Qt::white);
    const QColor gray = QColor::fromRgbF(0.5F, 0.5F, 0.5F, 0.28F);
    const auto first = (visible.topLeft() - canvas.topLeft()) / checkerCell;
    const auto last = (visible.bottomRight() - canvas.topLeft()) / checkerCell;
    for (int row = static_cast<int>(first.y()); row < last.y(); ++row) {
        for (int column = static_cast<int>(first.x()); column < last.x(); ++column) {
            if ((row + column) % 2 != 0) continue;
            const QRectF cell(canvas.x() + column * checkerCell, canvas.y() + row * checkerCell,
                              checkerCell, checkerCell);
            painter.fillRect(cell.intersected(visible), gray);
        }
    }
}

} // namespace

void paintCanvas(QPainter& painter, const CanvasFrame& frame, const QRect& exposed) {
    const model::PaintProject& project = *frame.project;
    const QRectF canvas(frame.canvasOrigin,
                        QSizeF(project.canvasWidth, project.canvasHeight) * frame.zoomScale);
    const QRectF visible = canvas.intersected(exposed);
    if (visible.isEmpty()) return;
    painter.save();
    painter.setClipRect(visible);
    paintChecker(painter, canvas, visible);
    for (const model::PaintLayer& layer : project.layers) {
        if (!layer.isVisible) continue;
        const bool isLive = layer.id == frame.liveLayerID;
        const raster::RasterImage image =
            isLive ? *frame.liveImage
                   : (layer.bitmapPNGData ? raster::decodedImage(*layer.bitmapPNGData)
                                          : raster::RasterImage());
        if (image.isNull()) continue;
        painter.setOpacity(layer.opacity);
        const QRectF source((visible.x() - canvas.x()) * image.width() / canvas.width(),
                            (visible.y() - canvas.y()) * image.height() / canvas.height(),
                            visible.width() * image.width() / canvas.width(),
                            visible.height() * image.height() / canvas.height());
        painter.drawImage(visible, image.toQImage(), source);
    }
    painter.restore();
}

} // namespace quillabrae::canvas
