// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"
#include "raster/RasterImage.h"

#include <cstddef>
#include <cstdint>

/// Making one colour transparent, and taking it out of the colours that it was mixed into.
///
/// For a pixel of straight components p and alpha A, all 0 to 255, and the removed colour t:
///
///   a = factor * sqrt(sum of (p - t)^2)
///   a <= threshold:  the pixel becomes fully transparent;
///   a >= A:          it stays: removal never raises alpha;
///   otherwise:       with n = a / 255, its alpha becomes a, and each component what was blended
///                    with t to give p = t * (1 - n) + c * n: c = (p - t * (1 - n)) / n, truncated
///                    to a whole number and held to 0 to 255.
///
/// The old alpha is not multiplied in. What is stored is rounded to bytes and premultiplied.
namespace quillabrae::raster {

struct ColorRemoval {
    /// 0 to 255 each.
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    /// 0 to 20: how fast alpha grows with the distance from the colour.
    double factor = 0.0;
    /// 0 to 255.
    double threshold = 0.0;

    /// Values outside their ranges are held to the ends; NaN is 0. The colour's alpha plays no
    /// part.
    static ColorRemoval of(const model::ColorValue& targetColor, double tolerancePercentage,
                           double transparentAlphaThresholdPercentage);
};

/// Null when no pixel was within the threshold or was un-mixed, and when the result cannot be
/// allocated.
RasterImage imageWithColorRemoved(const RasterImage& image, const ColorRemoval& removal);

} // namespace quillabrae::raster
