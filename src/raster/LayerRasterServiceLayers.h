// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintLayer.h"
#include "model/PixelSelection.h"
#include "raster/LayerPixels.h"
#include "raster/RasterImage.h"

#include <QPointF>
#include <QRectF>

#include <optional>

/// Edits of one layer's pixels, whole or under a selection. A selection's rectangle is clipped to
/// the canvas and snapped outward to whole pixels; its mask weighs what is done to each pixel.
///
/// The operations that return a bool write the layer and return true, or leave it as it is and
/// return false: there was nothing to do, or the canvas is of a size that no picture has.
namespace quillabrae::raster::LayerRasterService {

/// Where aligned content goes along one axis.
enum class AlignHorizontalTarget { keep, left, center, right };
enum class AlignVerticalTarget { keep, top, middle, bottom };

/// Inverts each pixel's colour within its own premultiplied range. False when no pixel of any alpha
/// is covered.
bool invertColors(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                  const std::optional<model::PixelSelection>& selection);

/// The selected pixels, in an image of the rectangle's size. Null when nothing is selected.
RasterImage croppedPixels(const model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection);
/// The same of a canvas-sized image, the whole rectangle whatever the mask.
RasterImage croppedPixels(const RasterImage& image, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection);

/// Makes the selected pixels transparent.
void clearLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                      const model::PixelSelection& selection);
/// The same on a canvas-sized image; null when nothing is selected.
RasterImage clearedPixels(const RasterImage& image, double canvasWidth, double canvasHeight,
                          const model::PixelSelection& selection);

/// Mirrors the selected pixels, or all of them, within their rectangle.
bool flipLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                     const std::optional<model::PixelSelection>& selection, MirrorAxis axis);

/// The bounds of the pixels of alpha above 0 of an image, among those wholly within `targetRect`.
std::optional<QRectF> opaquePixelBounds(const RasterImage& image, const QRectF& targetRect);

/// Lifts the rectangle `block` of the layer's pixels, whole pixels on the canvas, and sets it down
/// with its top-left corner at `place`, over what is there. False for a block without area or a
/// place that is not finite.
bool moveOpaquePixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                      const QRectF& block, const QPointF& place);

/// Moves the bounds of the opaque pixels within `targetRect` to its edges or its middle; a middle
/// between two pixels is rounded, halves away from zero. False when nothing is there or it stands
/// where it should.
bool alignOpaquePixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                       const QRectF& targetRect, AlignHorizontalTarget horizontalTarget,
                       AlignVerticalTarget verticalTarget);

/// Turns the selected pixels, or all of them, about the centre of their rectangle, clockwise on the
/// screen, and scales them; at least to a hundredth. They are sampled without interpolation, not
/// clipped to the rectangle, and lost where they leave the canvas. False for values that are not
/// finite.
bool rotateZoomLayerPixels(model::PaintLayer& layer, double canvasWidth, double canvasHeight,
                           const std::optional<model::PixelSelection>& selection,
                           double angleDegrees, double zoomPercentage);

/// `image` stretched to `targetRect`, nearest-neighbour, on a transparent canvas.
RasterImage transformedImage(const RasterImage& image, double canvasWidth, double canvasHeight,
                             const QRectF& targetRect);
/// The same over `base`, itself stretched to the canvas.
RasterImage compositedTransformedImage(const RasterImage& image, const RasterImage& base,
                                       double canvasWidth, double canvasHeight,
                                       const QRectF& targetRect);

} // namespace quillabrae::raster::LayerRasterService
