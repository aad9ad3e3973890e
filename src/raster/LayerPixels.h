// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"
#include "raster/SelectionCoverage.h"

#include <QPointF>
#include <QRect>

#include <optional>

/// Edits of a canvas-sized image's pixels under a selection, each one pass from the image to a new
/// one. The coverage lies on the image. Null when the result cannot be allocated.
namespace quillabrae::raster {

enum class MirrorAxis { horizontal, vertical };

/// Null also when nothing but transparent pixels is covered.
RasterImage invertedImage(const RasterImage& image, const SelectionCoverage& coverage);

/// The rectangle's pixels, each kept as far as it is covered. What of the rectangle lies beyond the
/// image is transparent.
RasterImage croppedImage(const RasterImage& image, const SelectionCoverage& coverage);

/// Each pixel removed as far as it is covered.
RasterImage clearedImage(const RasterImage& image, const SelectionCoverage& coverage);

/// The covered pixels lifted off and set down mirrored within their rectangle. The horizontal axis
/// changes left and right.
RasterImage mirroredImage(const RasterImage& image, const SelectionCoverage& coverage,
                          MirrorAxis axis);

/// The bounds of the pixels of alpha above 0 among those that lie wholly within `target`; nothing
/// without such pixels.
std::optional<QRect> opaqueBounds(const RasterImage& image, const QRectF& target);

/// The block set down with its top-left corner at `place`, which is finite: at a place between
/// pixel borders it covers the pixels whose centres it reaches.
QRect blockAt(const QRect& block, const QPointF& place);

/// The block's pixels lifted off and set down where `blockAt` puts them, source-over. What leaves
/// the image is lost.
RasterImage imageWithBlockMoved(const RasterImage& image, const QRect& block, const QPointF& place);

} // namespace quillabrae::raster
