// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngCodec.h"

#include "raster/CodecCounts.h"
#include "raster/PngBands.h"
#include "raster/PngChunks.h"
#include "raster/PngDecoder.h"

#include <algorithm>
#include <utility>

namespace quillabrae::raster {
namespace {

/// Deflate cannot make more of a byte than this, so image data that would have to is torn or a lie.
constexpr std::size_t greatestInflation = 1032;

bool isPlausible(const PngLayout& layout) {
    const std::size_t rawSize = layout.header.rowByteCount() * layout.header.height;
    return rawSize / greatestInflation <= layout.imageDataSize();
}

bool hasValidImageDataCrcs(const PngLayout& layout) {
    return std::ranges::all_of(layout.imageData, &PngChunk::hasValidCrc);
}

/// The layout of a PNG whose size is no more than may be decoded.
std::optional<PngLayout> decodableLayout(const model::PngBytes& bytes) {
    const std::optional<PngHeader> header = readPngHeader(bytes.bytes());
    if (!header || !isDecodableSize(header->width, header->height)) return std::nullopt;
    std::optional<PngLayout> layout = readPngLayout(bytes.bytes());
    return layout && isPlausible(*layout) ? std::move(layout) : std::nullopt;
}

/// Without a look at the bands.
RasterImage decodeOrdinary(const PngLayout& layout) {
    if (!hasValidImageDataCrcs(layout)) return {};
    return layout.header.isInterlaced ? decodeInterlacedPng(layout) : decodePngRows(layout);
}

bool isWorthCropping(const PngHeader& header) {
    return 4 * static_cast<std::size_t>(header.width) * header.height >= leastCroppedBytes;
}

} // namespace

bool isDecodableSize(qint64 width, qint64 height) {
    return width >= 1 && height >= 1 && width <= maximumImageSide && height <= maximumImageSide &&
           width * height <= maximumImagePixels;
}

RasterImage decodePng(const model::PngBytes& bytes) {
    detail::countDecodedFile();
    const std::optional<PngLayout> layout = decodableLayout(bytes);
    if (!layout) return {};
    if (const std::optional<PngBands> bands = readBandIndex(*layout)) {
        RasterImage image = decodePngBands(*layout, *bands);
        if (!image.isNull()) return image;
    }
    return decodeOrdinary(*layout);
}

CroppedImage decodeCroppedPng(const model::PngBytes& bytes) {
    const std::optional<PngHeader> header = readPngHeader(bytes.bytes());
    return header && isWorthCropping(*header) ? decodeCroppedPngOfAnySize(bytes)
                                              : CroppedImage(decodePng(bytes));
}

CroppedImage decodeCroppedPngOfAnySize(const model::PngBytes& bytes) {
    detail::countDecodedFile();
    const std::optional<PngLayout> layout = decodableLayout(bytes);
    if (!layout) return {};
    if (const std::optional<PngBands> bands = readBandIndex(*layout)) {
        CroppedImage image = decodeCroppedPngBands(*layout, *bands);
        if (!image.isNull()) return image;
    }
    return CroppedImage(decodeOrdinary(*layout));
}

std::optional<QSize> pngPixelSize(const model::PngBytes& bytes) {
    const std::optional<PngHeader> header = readPngHeader(bytes.bytes());
    if (!header || header->width > 0x7fffffffU || header->height > 0x7fffffffU) return std::nullopt;
    return QSize(static_cast<int>(header->width), static_cast<int>(header->height));
}

} // namespace quillabrae::raster
