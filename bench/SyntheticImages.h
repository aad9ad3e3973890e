// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

namespace quillabrae::bench {

/// Smooth shading, texture and sensor noise; opaque.
raster::RasterImage syntheticPhoto(int side);
/// Flat panels, rules and small blocks like text; opaque.
raster::RasterImage syntheticScreenshot(int side);
/// A few translucent strokes and soft dabs on nothing: about a twentieth of the pixels.
raster::RasterImage syntheticDrawing(int side);

} // namespace quillabrae::bench
