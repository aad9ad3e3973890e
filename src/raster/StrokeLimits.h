// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quillabrae::raster {

/// Far outside every canvas, near enough for exact arithmetic.
constexpr double farAway = 1e7;

/// A line that covers the largest canvas wherever on it its points are.
constexpr double maximumLineWidth = 131'072.0;

/// The point, held to where arithmetic is exact; nothing for one that is not finite.
inline std::optional<model::CanvasPoint> drawablePoint(model::CanvasPoint point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return std::nullopt;
    return model::CanvasPoint{std::clamp(point.x, -farAway, farAway),
                              std::clamp(point.y, -farAway, farAway)};
}

/// The width, held to what a canvas can show; 0 for one that is no width.
inline double drawableWidth(double lineWidth) {
    return lineWidth > 0.0 ? std::min(lineWidth, maximumLineWidth) : 0.0;
}

} // namespace quillabrae::raster
