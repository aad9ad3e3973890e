// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <QRect>

namespace quillabrae::raster {

/// Copies the pixels of `rect`, as far as it lies in them, between two images of one size.
void copyPixels(const RasterImage& from, RasterImage& to, const QRect& rect);

} // namespace quillabrae::raster
