// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/ImageReader.h"

#include "raster/PngChunks.h"
#include "raster/PngCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <string_view>

namespace quillabrae::raster {
namespace {

using namespace std::string_view_literals;

/// A raster format by the bytes at `offset` of its files. Formats are told by content alone, so a
/// wrong file name misleads nobody, and nothing is handed to a reader of vector pictures.
struct Format {
    const char* name;
    qsizetype offset;
    std::string_view mark;
};

constexpr auto formats = std::to_array<Format>({
    {"png", 0, "\x89PNG\r\n\x1a\n"sv},
    {"jpeg", 0, "\xff\xd8\xff"sv},
    {"gif", 0, "GIF87a"sv},
    {"gif", 0, "GIF89a"sv},
    {"webp", 8, "WEBP"sv},
    {"tiff", 0, "II*\0"sv},
    {"tiff", 0, "MM\0*"sv},
    {"tiff", 0, "II+\0"sv},
    {"tiff", 0, "MM\0+"sv},
    {"icns", 0, "icns"sv},
    {"ico", 0, "\0\0\1\0"sv},
    {"cur", 0, "\0\0\2\0"sv},
    {"xpm", 0, "/* XPM"sv},
    {"pbm", 0, "P1"sv},
    {"pgm", 0, "P2"sv},
    {"ppm", 0, "P3"sv},
    {"pbm", 0, "P4"sv},
    {"pgm", 0, "P5"sv},
    {"ppm", 0, "P6"sv},
    {"bmp", 0, "BM"sv},
});

constexpr qint64 markRoom = 16;

/// More than the largest picture needs, uncompressed, at 16 bits a component.
constexpr qint64 greatestPngFile = maximumImagePixels * 8 + (qint64{1} << 24);

/// In megabytes, for the largest picture at 16 bits a component.
constexpr int allocationLimit =
    static_cast<int>(maximumImagePixels * 8 / (qint64{1024} * 1024) + 1);

const char* formatOf(const QByteArray& start) {
    const auto found = std::ranges::find_if(formats, [&](const Format& format) {
        const std::string_view bytes(start.constData(), static_cast<std::size_t>(start.size()));
        const auto offset = static_cast<std::size_t>(format.offset);
        return bytes.size() >= offset && bytes.substr(offset).starts_with(format.mark);
    });
    return found == formats.end() ? nullptr : found->name;
}

/// Brings the colours of a picture that states other ones to sRGB.
void convertToSrgb(QImage& picture) {
    if (!picture.colorSpace().isValid() || picture.colorSpace() == QColorSpace(QColorSpace::SRgb))
        return;
    if (picture.isGrayscale() || picture.colorCount() > 0)
        picture.convertTo(picture.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    picture.convertToColorSpace(QColorSpace::SRgb);
}

/// A size of nothing is a fault of the file, not beyond any limit.
ImageRefusal refusalOf(qint64 width, qint64 height) {
    return width < 1 || height < 1 ? ImageRefusal::unreadable : ImageRefusal::beyondLimits;
}

std::optional<RasterImage> readThroughQt(QIODevice& device, const char* format,
                                         ImageRefusal& refusal) {
    QImageReader::setAllocationLimit(allocationLimit);
    QImageReader reader(&device, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize stated = reader.size();
    if (stated.isValid() && !isDecodableSize(stated.width(), stated.height())) {
        refusal = refusalOf(stated.width(), stated.height());
        return std::nullopt;
    }
    QImage picture = reader.read();
    if (!isDecodableSize(picture.width(), picture.height())) {
        refusal = refusalOf(picture.width(), picture.height());
        return std::nullopt;
    }
    convertToSrgb(picture);
    RasterImage image = RasterImage::fromQImage(std::move(picture));
    return image.isNull() ? std::nullopt : std::optional(std::move(image));
}

/// Our own decoder, for the PNGs whose colours it takes as they are.
std::optional<RasterImage> readPng(QIODevice& device, ImageRefusal& refusal) {
    if (device.size() > greatestPngFile) {
        refusal = ImageRefusal::beyondLimits;
        return std::nullopt;
    }
    const model::PngBytes bytes(device.readAll());
    const std::optional<PngHeader> header = readPngHeader(bytes.bytes());
    if (header && !isDecodableSize(header->width, header->height)) {
        refusal = refusalOf(header->width, header->height);
        return std::nullopt;
    }
    const std::optional<PngLayout> layout = readPngLayout(bytes.bytes());
    if (!layout) return std::nullopt;
    if (layout->hasOtherColors()) {
        QByteArray file = bytes.toByteArray();
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        return readThroughQt(buffer, "png", refusal);
    }
    RasterImage image = decodePng(bytes);
    return image.isNull() ? std::nullopt : std::optional(std::move(image));
}

std::optional<RasterImage> read(QIODevice& device, ImageRefusal* told) {
    ImageRefusal unasked{};
    ImageRefusal& refusal = told != nullptr ? *told : unasked;
    refusal = ImageRefusal::unreadable;
    if (!device.open(QIODevice::ReadOnly)) return std::nullopt;
    const char* format = formatOf(device.peek(markRoom));
    if (format == nullptr) return std::nullopt;
    if (format == "png"sv) return readPng(device, refusal);
    return readThroughQt(device, format, refusal);
}

} // namespace

std::optional<RasterImage> readImageFile(const QString& path, ImageRefusal* refusal) {
    QFile file(path);
    return read(file, refusal);
}

std::optional<RasterImage> readImage(const QByteArray& bytes, ImageRefusal* refusal) {
    QBuffer buffer;
    buffer.setData(bytes);
    return read(buffer, refusal);
}

} // namespace quillabrae::raster
