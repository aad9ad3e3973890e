// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <utility>

namespace quillabrae::raster {

/// A picture that may lack transparent margins: outside of `image`, which stands at `origin`, it is
/// transparent. `image` is all of it where about half of it or more shows something, where it is
/// small and where others encoded it (`decodeCroppedPng`).
struct CroppedImage {
    RasterImage image;
    QPoint origin;
    QSize wholeSize;

    CroppedImage() = default;
    /// A picture that is all there.
    explicit CroppedImage(RasterImage whole)
        : image(std::move(whole)), wholeSize(image.width(), image.height()) {}
    CroppedImage(RasterImage part, QPoint at, QSize whole)
        : image(std::move(part)), origin(at), wholeSize(whole) {}

    bool isNull() const { return image.isNull(); }
    bool isWhole() const { return wholeSize == QSize(image.width(), image.height()); }
    /// The pixels of the picture that `image` holds.
    QRect part() const { return {origin, QSize(image.width(), image.height())}; }

    /// The picture with its margins. Null when there is no memory for it.
    RasterImage whole() const;
};

} // namespace quillabrae::raster
