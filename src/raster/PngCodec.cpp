// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngCodec.h"

#include <QBuffer>
#include <QImageReader>

#include <cstring>

namespace quillabrae::raster {

bool isDecodableSize(qint64 width, qint64 height) {
    return width >= 1 && height >= 1 && width <= maximumImageSide && height <= maximumImageSide &&
           width * height <= maximumImagePixels;
}

model::PngBytes encodePng(const RasterImage& image) {
    if (image.isNull()) return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.toQImage().convertToFormat(QImage::Format_RGBA8888).save(&buffer, "PNG", 90);
    return model::PngBytes(bytes);
}

model::PngBytes encodePng(const RasterImage& image, const model::PngBytes&, RowRange) {
    return encodePng(image);
}

RasterImage decodePng(const model::PngBytes& bytes) {
    const QByteArray data = bytes.toByteArray();
    QImage decoded = QImage::fromData(data, "PNG");
    if (decoded.isNull()) return {};
    decoded = decoded.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    RasterImage image = RasterImage::uninitialized(decoded.width(), decoded.height());
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.mutableRow(y), decoded.constScanLine(y), image.stride());
    return image;
}

std::optional<QSize> pngPixelSize(const model::PngBytes& bytes) {
    QByteArray data = bytes.toByteArray();
    QBuffer buffer(&data);
    const QSize size = QImageReader(&buffer, "PNG").size();
    return size.isValid() ? std::optional(size) : std::nullopt;
}

} // namespace quillabrae::raster
