// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/EndpointGesture.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/LiveDrawing.h"
#include "canvas/PointerState.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PaintTool;

namespace {

/// A direction with a smaller component than this runs along the other axis.
constexpr double leastDirection = 1e-6;
constexpr double angleStep = std::numbers::pi / 4.0;

/// The way from `from` to the edge at 0 or at `length`.
double room(double from, double direction, double length) {
    return direction < 0.0 ? from : length - from;
}

CanvasPoint snappedEndPoint(CanvasPoint from, CanvasPoint to, QSizeF canvas) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double distance = std::hypot(dx, dy);
    if (distance == 0.0) return to;
    const double angle = std::round(std::atan2(dy, dx) / angleStep) * angleStep;
    const double x = std::cos(angle);
    const double y = std::sin(angle);
    const double length = std::min(distance, maximumEndpointLength(from, x, y, canvas));
    return {from.x + length * x, from.y + length * y};
}

} // namespace

double maximumEndpointLength(CanvasPoint from, double directionX, double directionY,
                             QSizeF canvas) {
    double limit = std::numeric_limits<double>::max();
    const auto hold = [&](double start, double direction, double length) {
        if (std::abs(direction) <= leastDirection) return;
        limit = std::min(limit, ((direction > 0.0 ? length : 0.0) - start) / direction);
    };
    hold(from.x, directionX, canvas.width());
    hold(from.y, directionY, canvas.height());
    return std::max(limit, 0.0);
}

CanvasPoint squareEndPoint(CanvasPoint from, CanvasPoint to, QSizeF canvas) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double side = std::max(std::abs(dx), std::abs(dy));
    if (side == 0.0) return to;
    const double length =
        std::min({side, room(from.x, dx, canvas.width()), room(from.y, dy, canvas.height())});
    return {from.x + (dx < 0.0 ? -length : length), from.y + (dy < 0.0 ? -length : length)};
}

CanvasPoint endpointDrawingPoint(PaintTool tool, CanvasPoint from, CanvasPoint to,
                                 Modifiers modifiers, QSizeF canvas) {
    if (!modifiers.shift) return to;
    if (model::snapsEndpointAngle(tool)) return snappedEndPoint(from, to, canvas);
    if (model::constrainsEndpointAspectRatio(tool)) return squareEndPoint(from, to, canvas);
    return to;
}

void EndpointGesture::addSample(CanvasPoint point) {
    m_currentDrawingPoint = point;
    if (!m_drawingStartPoint) m_drawingStartPoint = point;
    renderEndpointDrawingPreview();
}

void EndpointGesture::refresh() {
    const PaintTool tool = m_context.host.settings().selectedTool;
    if (!model::constrainsEndpointAspectRatio(tool) && !model::snapsEndpointAngle(tool)) return;
    if (m_currentDrawingPoint && m_drawing.isRunning()) renderEndpointDrawingPreview();
}

void EndpointGesture::renderEndpointDrawingPreview() {
    const model::PaintProject* project = m_context.host.project();
    if (project == nullptr) return;
    const CanvasPoint end = endpointDrawingPoint(
        m_context.host.settings().selectedTool, *m_drawingStartPoint, *m_currentDrawingPoint,
        m_context.pointer.modifiers(), QSizeF(project->canvasWidth, project->canvasHeight));
    m_drawing.restoreBase();
    m_drawing.drawLiveStroke({*m_drawingStartPoint, end});
}

void EndpointGesture::reset() {
    m_drawingStartPoint.reset();
    m_currentDrawingPoint.reset();
}

} // namespace quillabrae::canvas
