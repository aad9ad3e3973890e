// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>

class QPainter;

namespace quillabrae::canvas {

/// How far the shadow reaches beyond the canvas, in screen points.
constexpr double canvasShadowReach = 14.0;

/// A soft shadow around `canvas` (screen points), painted where it falls inside `exposed`.
void paintCanvasShadow(QPainter& painter, const QRectF& canvas, const QRectF& exposed);

} // namespace quillabrae::canvas
