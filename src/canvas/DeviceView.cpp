// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DeviceView.h"

#include "canvas/CanvasRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// The device pixels `first` to `end` - 1 whose centres lie from `low` to below `high` on the
/// canvas, as a first and an end of their own.
std::pair<int, int> devicesWithin(const DeviceAxis& axis, int first, int end, double low,
                                  double high) {
    while (first < end && !(axis.canvasAt(first) >= low)) ++first;
    while (first < end && !(axis.canvasAt(end - 1) < high)) --end;
    return {first, end};
}

} // namespace

raster::AxisSamples DeviceAxis::samples(int first, int end, double low, double length,
                                        int sourceCount) const {
    raster::AxisSamples samples;
    if (!(length > 0.0) || sourceCount < 1) return samples;
    const auto [begin, limit] = devicesWithin(*this, first, end, low, low + length);
    samples.first = begin;
    samples.source.reserve(static_cast<std::size_t>(limit - begin));
    for (int device = begin; device < limit; ++device) {
        const double source = std::floor((canvasAt(device) - low) * sourceCount / length);
        samples.source.push_back(
            static_cast<std::int32_t>(std::clamp(source, 0.0, sourceCount - 1.0)));
    }
    return samples;
}

DeviceView DeviceView::of(const CanvasFrame& frame) {
    return {{frame.devicePixelRatio, frame.canvasOrigin.x(), frame.zoomScale},
            {frame.devicePixelRatio, frame.canvasOrigin.y(), frame.zoomScale},
            frame.project->canvasWidth,
            frame.project->canvasHeight};
}

QRect DeviceView::canvasPixels(const QRect& within) const {
    const auto [left, right] =
        devicesWithin(x, within.left(), within.left() + within.width(), 0.0, canvasWidth);
    const auto [top, bottom] =
        devicesWithin(y, within.top(), within.top() + within.height(), 0.0, canvasHeight);
    if (left >= right || top >= bottom) return {};
    return {left, top, right - left, bottom - top};
}

} // namespace quillabrae::canvas
