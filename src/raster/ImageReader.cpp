// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ImageReader.h"

#include "raster/PngCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

#include <cstring>

namespace quillabrae::raster {
namespace {

std::optional<RasterImage> read(QImageReader& reader) {
    reader.setAutoTransform(true);
    if (const QSize size = reader.size(); !isDecodableSize(size.width(), size.height()))
        return std::nullopt;
    QImageReader::setAllocationLimit(0);
    QImage picture = reader.read();
    if (picture.isNull()) return std::nullopt;
    if (picture.colorSpace().isValid()) picture.convertToColorSpace(QColorSpace::SRgb);
    picture.convertTo(QImage::Format_RGBA8888_Premultiplied);
    RasterImage image = RasterImage::uninitialized(picture.width(), picture.height());
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.mutableRow(y), picture.constScanLine(y), image.stride());
    return image;
}

} // namespace

std::optional<RasterImage> readImageFile(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return read(reader);
}

std::optional<RasterImage> readImage(const QByteArray& bytes) {
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    QImageReader reader(&buffer);
    return read(reader);
}

} // namespace quillabrae::raster
