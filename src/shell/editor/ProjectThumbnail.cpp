// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ProjectThumbnail.h"

#include "model/WholePixelRect.h"
#include "raster/CroppedDrawing.h"
#include "raster/DecodeCache.h"
#include "store/SelectionState.h"

#include <QPainter>

namespace quillabrae::shell {
namespace {

/// Samples taken along each side of one thumbnail pixel.
constexpr int samplesPerSide = 4;

QImage shrunk(const raster::CroppedImage& picture, QSize size) {
    const QSize samples = (size * samplesPerSide).boundedTo(picture.wholeSize);
    raster::RasterImage sampled(samples.width(), samples.height());
    raster::drawCropped(sampled, picture);
    return sampled.toQImage().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QSize fitted(QSizeF canvas, QSize room) {
    return canvas.scaled(room, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
}

QImage layerPicture(const model::PngBytes& bytes, QSize size) {
    const raster::CroppedImage pixels = raster::decodedCrop(bytes);
    return pixels.isNull() ? QImage() : shrunk(pixels, size);
}

void paintFloating(QPainter& painter, const model::PaintProject& project, QSize size) {
    const raster::CroppedImage pixels = raster::decodedCrop(project.floatingSelection->pngData);
    if (pixels.isNull()) return;
    const double scale = size.width() / project.canvasWidth;
    const QRectF target = model::wholePixelRect(store::rectOf(*project.pixelSelection));
    const QRect place = QRectF(target.topLeft() * scale, target.size() * scale).toAlignedRect();
    painter.drawImage(place.topLeft(), shrunk(pixels, place.size()));
}

} // namespace

QImage LayerPictureCache::picture(const model::PngBytes& pixels, QSize size) {
    Entry& entry = m_entries[pixels.buffer().get()];
    // The address may have been another buffer's before.
    if (entry.pixels.lock() != pixels.buffer() || entry.size != size)
        entry = {pixels.buffer(), size, layerPicture(pixels, size)};
    return entry.picture;
}

void LayerPictureCache::forgetDead() {
    std::erase_if(m_entries, [](const auto& entry) { return entry.second.pixels.expired(); });
}

QImage layerThumbnail(const model::PaintLayer& layer, QSizeF canvas, QSize room) {
    if (!layer.bitmapPNGData) return {};
    const QSize size = fitted(canvas, room);
    QImage picture = layerPicture(*layer.bitmapPNGData, size);
    if (!picture.isNull()) return picture;
    picture = QImage(size, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QImage projectThumbnail(const model::PaintProject& project, QSize room, LayerPictureCache& known) {
    const QSizeF canvas(project.canvasWidth, project.canvasHeight);
    const QSize size = fitted(canvas, room);
    QImage thumbnail(size, QImage::Format_RGBA8888_Premultiplied);
    thumbnail.fill(Qt::transparent);
    QPainter painter(&thumbnail);
    for (const model::PaintLayer& layer : project.layers) {
        if (!layer.isVisible) continue;
        painter.setOpacity(layer.opacity);
        const QImage picture =
            layer.bitmapPNGData ? known.picture(*layer.bitmapPNGData, size) : QImage();
        if (!picture.isNull()) painter.drawImage(0, 0, picture);
        const auto& floating = project.floatingSelection;
        if (floating && floating->layerID == layer.id && project.pixelSelection)
            paintFloating(painter, project, size);
    }
    return thumbnail;
}

} // namespace quillabrae::shell
