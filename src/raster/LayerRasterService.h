// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "model/PaintImage.h"
#include "model/PaintLayer.h"
#include "model/PaintStroke.h"
#include "raster/RasterImage.h"

#include <QPainter>
#include <QRectF>

#include <optional>

/// The engine: pure functions over layers and images. Sizes are canvas pixels; rects and points are
/// in document coordinates (origin top left, y down). Nothing here throws: undecodable bytes behave
/// as an absent bitmap, and what cannot be done gives an absent result.
namespace quillabrae::raster::LayerRasterService {

/// A fully transparent image of the rounded size (each side at least 1) whose logical size is the
/// requested one. Null for a size that is not finite or beyond the limits of a picture.
RasterImage transparentImage(double width, double height);

/// Runs `body` with a painter on `image`: anti-aliased paths, nearest-neighbour image draws,
/// source-over. Does not run it for a null image.
template <typename Body>
void draw(RasterImage& image, Body&& body) {
    if (image.isNull()) return;
    QImage target = image.paintTarget();
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    body(painter);
}

/// `rect` standardised, clipped to the canvas and snapped outward to whole pixels; all zero when
/// nothing of it is on the canvas.
QRectF pixelAlignedRect(const QRectF& rect, double canvasWidth, double canvasHeight);

/// The layer's stored pixels on a canvas-sized image, at full strength whatever its opacity.
/// A stored bitmap of another size is stretched to the canvas, nearest-neighbour.
RasterImage renderLayer(const model::PaintLayer& layer, double canvasWidth, double canvasHeight);

/// Merges `upper` into `lower` with both opacities baked in; `lower` ends at opacity 1.
void flatten(const model::PaintLayer& upper, model::PaintLayer& lower, double canvasWidth,
             double canvasHeight);

/// Draws an image into a layer, stretched to its rectangle.
void bakeImage(const model::PaintImage& image, model::PaintLayer& layer, double canvasWidth,
               double canvasHeight);

/// `image` stretched to a new image of that size, nearest-neighbour, transparency included.
RasterImage copyImage(const RasterImage& image, double width, double height);
RasterImage resizedCopy(const RasterImage& image, double width, double height);

/// Source-over of `source`, stretched to `target` (whole pixels, may overhang) nearest-neighbour
/// and multiplied by `fraction` (0 to 1), onto `destination`.
void drawImage(RasterImage& destination, const RasterImage& source, const QRect& target,
               double fraction = 1.0);

/// A PNG of one colour.
std::optional<model::PngBytes> solidColorPNGData(double width, double height,
                                                 const model::ColorValue& color);

/// The image's PNG bytes; nothing for a null image.
std::optional<model::PngBytes> pngData(const RasterImage& image);

/// Draws one stroke on a canvas-sized image and returns the pixels it may have changed, clipped to
/// the image.
QRect drawStroke(const model::PaintStroke& stroke, RasterImage& image, double canvasWidth,
                 double canvasHeight);

} // namespace quillabrae::raster::LayerRasterService
