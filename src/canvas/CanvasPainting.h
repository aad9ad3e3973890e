// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPointF>
#include <QRect>

class QPainter;

namespace quillabrae::model {
struct PaintProject;
}

namespace quillabrae::canvas {

class LiveDrawing;

/// One view of a canvas: what stands where, in screen points.
struct CanvasScene {
    const model::PaintProject& project;
    const LiveDrawing& drawing;
    /// Screen points for each canvas pixel.
    double zoom = 1.0;
    /// The canvas's top left corner.
    QPointF origin;
    bool showsPixelGrid = false;
    QColor outline;
};

/// Paints the canvas inside `exposed`, which is already filled with the workspace's colour.
void paintCanvas(QPainter& painter, const CanvasScene& scene, const QRect& exposed);

} // namespace quillabrae::canvas
