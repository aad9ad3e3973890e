// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectThumbnail.h"

#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <QPainter>

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
        const QImage picture = layerPicture(layer, canvas, size);
        if (picture.isNull()) continue;
        painter.setOpacity(layer.opacity);
        painter.drawImage(0, 0, picture);
    }
    return thumbnail;
}

} // namespace quillabrae::shell
