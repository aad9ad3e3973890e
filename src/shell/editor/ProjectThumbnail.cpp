// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectThumbnail.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

/// Samples taken along each side of one thumbnail pixel.
constexpr int samplesPerSide = 4;

QImage shrunk(const QImage& image, QSize size) {
    const QSize sampled = (size * samplesPerSide).boundedTo(image.size());
    return image.scaled(sampled, Qt::IgnoreAspectRatio, Qt::FastTransformation)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QSize fitted(QSizeF canvas, QSize room) {
    return canvas.scaled(room, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
}

QImage layerPicture(const model::PaintLayer& layer, QSizeF canvas, QSize size) {
    if (!layer.bitmapPNGData.has_value()) return {};
    const raster::RasterImage pixels =
        raster::LayerRasterService::renderLayer(layer, canvas.width(), canvas.height());
    return pixels.isNull() ? QImage() : shrunk(pixels.toQImage(), size);
}

/// Where floating pixels stand: whole canvas pixels, as they are put down.
QRectF floatingTarget(const model::PixelSelection& selection) {
    const QRectF rect =
        QRectF(selection.x, selection.y, selection.width, selection.height).normalized();
    return {std::trunc(rect.x()), std::trunc(rect.y()), std::max(1.0, std::trunc(rect.width())),
            std::max(1.0, std::trunc(rect.height()))};
}

void paintFloating(QPainter& painter, const model::PaintProject& project, QSize size) {
    const raster::RasterImage pixels = raster::decodedImage(project.floatingSelection->pngData);
    if (pixels.isNull()) return;
    const double scale = size.width() / project.canvasWidth;
    const QRectF target = floatingTarget(*project.pixelSelection);
    const QRect place = QRectF(target.topLeft() * scale, target.size() * scale).toAlignedRect();
    painter.drawImage(place.topLeft(), shrunk(pixels.toQImage(), place.size()));
}

} // namespace

QImage layerThumbnail(const model::PaintLayer& layer, QSizeF canvas, QSize room) {
    return layerPicture(layer, canvas, fitted(canvas, room));
}

QImage projectThumbnail(const model::PaintProject& project, QSize room) {
    const QSizeF canvas(project.canvasWidth, project.canvasHeight);
    const QSize size = fitted(canvas, room);
    QImage thumbnail(size, QImage::Format_RGBA8888_Premultiplied);
    thumbnail.fill(Qt::transparent);
    QPainter painter(&thumbnail);
    for (const model::PaintLayer& layer : project.layers) {
        if (!layer.isVisible) continue;
        painter.setOpacity(layer.opacity);
        const QImage picture = layerPicture(layer, canvas, size);
        if (!picture.isNull()) painter.drawImage(0, 0, picture);
        const auto& floating = project.floatingSelection;
        if (floating && floating->layerID == layer.id && project.pixelSelection)
            paintFloating(painter, project, size);
    }
    return thumbnail;
}

} // namespace quillabrae::shell
