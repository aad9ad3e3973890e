// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"

#include <optional>

namespace quillabrae::canvas {

class LiveDrawing;

/// Steps shorter than this, in canvas pixels, are dropped.
constexpr double shortestStrokeStep = 0.25;

/// A continuous stroke: a dot at the press, and a segment from sample to sample.
class StrokeGesture {
public:
    explicit StrokeGesture(LiveDrawing& drawing) : m_drawing(drawing) {}

    void addSample(model::CanvasPoint point);
    void reset() { m_lastRasterPoint.reset(); }

private:
    LiveDrawing& m_drawing;
    /// The end of the last segment drawn.
    std::optional<model::CanvasPoint> m_lastRasterPoint;
};

} // namespace quillabrae::canvas
