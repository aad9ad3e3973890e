// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/CroppedImage.h"
#include "raster/RasterImage.h"

#include <QSize>

#include <cstddef>
#include <optional>

namespace quillabrae::raster {

/// The largest picture that is ever decoded: pixels a side, and pixels in all.
constexpr int maximumImageSide = 32'768;
constexpr qint64 maximumImagePixels = 300'000'000;

/// Whether a picture of that size may be decoded.
bool isDecodableSize(qint64 width, qint64 height);

/// Rows from `first` up to but not including `last`.
struct RowRange {
    int first = 0;
    int last = 0;

    bool isEmpty() const { return first >= last; }
    friend bool operator==(const RowRange&, const RowRange&) = default;
};

/// Encodes an image as an ordinary 8-bit RGBA PNG of bands that are compressed by themselves.
/// The bytes depend on the pixels alone. Empty bytes for a null image.
model::PngBytes encodePng(const RasterImage& image);

/// The same bytes as `encodePng(image)`, made cheaply: `previous` is the encoding of an image that
/// differs from `image` in no row outside `changedRows`, so bands that hold none of those rows are
/// copied from it. Falls back to a whole encode when `previous` is not of our making or of another
/// size.
model::PngBytes encodePng(const RasterImage& image, const model::PngBytes& previous,
                          RowRange changedRows);

/// The pixels of a PNG of any colour type, depth and interlacing. Null for bytes that are no whole
/// PNG and for one beyond the size limits, which is refused before anything is allocated for it.
RasterImage decodePng(const model::PngBytes& bytes);

/// The same without transparent margins, if the picture is one of ours, takes at least
/// `leastCroppedBytes` of memory and its margins are half of it or more, as a few bands tell.
CroppedImage decodeCroppedPng(const model::PngBytes& bytes);

constexpr std::size_t leastCroppedBytes = std::size_t{16} * 1024 * 1024;

/// The pixel size that the header states, without decoding; nothing for bytes that are no PNG.
std::optional<QSize> pngPixelSize(const model::PngBytes& bytes);

} // namespace quillabrae::raster
