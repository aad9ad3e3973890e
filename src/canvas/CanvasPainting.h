// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

class QPainter;

namespace quillabrae::canvas {

struct CanvasFrame;

/// Paints the canvas inside `exposed`, which is already filled with the workspace's colour.
void paintCanvas(QPainter& painter, const CanvasFrame& frame, const QRect& exposed);

} // namespace quillabrae::canvas
