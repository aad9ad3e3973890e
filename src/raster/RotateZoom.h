// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"
#include "raster/SelectionCoverage.h"

#include <QRect>

/// A picture turned and scaled about the centre of its rectangle, sampled without interpolation.
///
/// With c the rectangle's centre, t the angle, clockwise on the screen, and s the scale, the pixel
/// whose centre is c + (dx, dy) shows the picture's pixel at column floor(u) and row floor(v), both
/// counted from the rectangle's top-left corner, or nothing where there is none:
///
///   u = (dx * cos t + dy * sin t) / s + width / 2 + e
///   v = (dy * cos t - dx * sin t) / s + height / 2 + e
///
/// with e = 2^-24, so that a point on the border of two pixels falls to the same one of them all
/// along the border, whatever the arithmetic's last bits say.
namespace quillabrae::raster {

struct RotateZoom {
    /// Finite.
    double angleDegrees = 0.0;
    /// Finite and above 0.
    double scale = 1.0;

    /// What a rectangle of pixels may reach, itself included.
    QRect reach(const QRect& rect) const;
};

/// The covered pixels lifted off and set down turned and scaled, source-over, without being clipped
/// to their rectangle. Null when the result cannot be allocated.
RasterImage rotateZoomedImage(const RasterImage& image, const SelectionCoverage& coverage,
                              const RotateZoom& turn);

} // namespace quillabrae::raster
