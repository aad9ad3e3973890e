// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "model/CanvasPoint.h"
#include "model/PaintTool.h"

#include <QSizeF>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class LiveDrawing;

/// A drawing from the press to where the pointer is, drawn again from the layer's own pixels with
/// every sample. Shift snaps its angle or makes it square, by the tool.
class EndpointGesture {
public:
    EndpointGesture(CanvasContext& context, LiveDrawing& drawing)
        : m_context(context), m_drawing(drawing) {}

    void addSample(model::CanvasPoint point);
    /// Draws again, with the modifiers as they are now, if a drawing runs that they bear on.
    void refresh();
    void reset();

    const std::optional<model::CanvasPoint>& drawingStartPoint() const {
        return m_drawingStartPoint;
    }
    const std::optional<model::CanvasPoint>& currentDrawingPoint() const {
        return m_currentDrawingPoint;
    }

private:
    void renderEndpointDrawingPreview();

    CanvasContext& m_context;
    LiveDrawing& m_drawing;
    std::optional<model::CanvasPoint> m_drawingStartPoint;
    std::optional<model::CanvasPoint> m_currentDrawingPoint;
};

/// Where a drawing from `from` to `to` ends. Without Shift at `to`; with it, for a tool that snaps
/// its angle, at the nearest multiple of 45 degrees, and for one that keeps its aspect ratio, in
/// the corner of a square; both no further than the edges of a canvas of size `canvas`.
model::CanvasPoint endpointDrawingPoint(model::PaintTool tool, model::CanvasPoint from,
                                        model::CanvasPoint to, Modifiers modifiers, QSizeF canvas);

/// The corner of the square that a drag from `from` to `to` spans, cut to fit on the canvas.
model::CanvasPoint squareEndPoint(model::CanvasPoint from, model::CanvasPoint to, QSizeF canvas);

/// How far it is from `from` to the canvas's edge in that direction (a unit vector): at least 0.
double maximumEndpointLength(model::CanvasPoint from, double directionX, double directionY,
                             QSizeF canvas);

} // namespace quillabrae::canvas
