// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/StrokeGesture.h"

#include "canvas/LiveDrawing.h"

#include <cmath>

namespace quillabrae::canvas {

void StrokeGesture::addSample(model::CanvasPoint point) {
    if (!m_lastRasterPoint) {
        m_drawing.drawLiveStroke({point});
        m_lastRasterPoint = point;
        return;
    }
    const double step = std::hypot(point.x - m_lastRasterPoint->x, point.y - m_lastRasterPoint->y);
    if (step < shortestStrokeStep) return;
    m_drawing.drawLiveStroke({*m_lastRasterPoint, point});
    m_lastRasterPoint = point;
}

} // namespace quillabrae::canvas
