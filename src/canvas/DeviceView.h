// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/Stretch.h"

#include <QRect>

namespace quillabrae::canvas {

struct CanvasFrame;

/// One axis of the viewport's device pixels, against screen points from the canvas's edge and
/// against canvas pixels. A device pixel stands where its centre is.
struct DeviceAxis {
    double devicePixelRatio = 1.0;
    /// The canvas's edge, in points of the viewport.
    double origin = 0.0;
    double zoom = 1.0;

    double pointsAt(int device) const { return (device + 0.5) / devicePixelRatio - origin; }
    double canvasAt(int device) const { return pointsAt(device) / zoom; }
    /// Not rounded.
    double deviceAt(double canvas) const { return (canvas * zoom + origin) * devicePixelRatio; }

    /// What the device pixels `first` to `end` - 1 show of `sourceCount` pixels that stand on the
    /// canvas from `low` on, stretched to `length` canvas pixels.
    raster::AxisSamples samples(int first, int end, double low, double length,
                                int sourceCount) const;
};

/// The viewport's device pixels against the canvas.
struct DeviceView {
    DeviceAxis x;
    DeviceAxis y;
    double canvasWidth = 0.0;
    double canvasHeight = 0.0;

    static DeviceView of(const CanvasFrame& frame);

    /// The device pixels of `within` that stand on the canvas.
    QRect canvasPixels(const QRect& within) const;
};

} // namespace quillabrae::canvas
