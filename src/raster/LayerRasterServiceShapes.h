// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintStroke.h"
#include "raster/RasterImage.h"

#include <QRect>

/// Strokes that reach from their first point to their last one. Each function returns the pixels
/// that it may have changed, and draws nothing where one of the two points is not finite. The box
/// of a stroke is the rectangle with those two points as opposite corners.
namespace quillabrae::raster::LayerRasterService {

/// The shape in the box, a rectangle unless the stroke says which: its inside in the secondary
/// colour (or the primary one) where the mode includes fill, then its outline, centred on the
/// border, in the primary colour where it includes that. Without a mode only the outline.
QRect drawShape(const model::PaintStroke& stroke, RasterImage& image);

/// The outlines of the box and of the oval in it, in the primary colour.
QRect drawRectangle(const model::PaintStroke& stroke, RasterImage& image);
QRect drawEllipse(const model::PaintStroke& stroke, RasterImage& image);

/// The box, filled with the primary colour.
QRect fillBox(const model::PaintStroke& stroke, RasterImage& image);

/// The whole image, from the primary colour at the first point to the secondary one (or the primary
/// one again) at the last. Nothing when the two points are the same.
QRect drawGradient(const model::PaintStroke& stroke, RasterImage& image);

} // namespace quillabrae::raster::LayerRasterService
