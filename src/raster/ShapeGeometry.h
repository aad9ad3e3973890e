// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasShape.h"
#include "raster/ConvexRegion.h"

#include <QRectF>

namespace quillabrae::raster {

/// What a line along the border of a region covers: `outer` without `inner`. Half of the line lies
/// outside the region.
struct BorderLine {
    ConvexRegion outer;
    ConvexRegion inner;
};

/// The inside of a shape that fills `box`, whose sides are not negative.
ConvexRegion shapeInterior(model::CanvasShape shape, const QRectF& box);

/// The outline of such a shape with round joins. Empty for a width that is not above 0.
BorderLine shapeOutline(model::CanvasShape shape, const QRectF& box, double lineWidth);

/// The outline of a rectangle with its corners left sharp.
BorderLine sharpRectangleOutline(const QRectF& box, double lineWidth);

} // namespace quillabrae::raster
