// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasShadow.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace quillabrae::canvas {
namespace {

constexpr double reach = canvasShadowReach;
constexpr double strength = 0.18;

/// From the canvas's edge outwards: quickly at first, then fading into nothing.
void setFalloff(QGradient& gradient) {
    for (const double distance : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        const double left = 1.0 - distance;
        gradient.setColorAt(distance, QColor::fromRgbF(0.0F, 0.0F, 0.0F,
                                                       static_cast<float>(strength * left * left)));
    }
}

void paintSide(QPainter& painter, const QRectF& area, QPointF inner, QPointF outer) {
    QLinearGradient gradient(inner, outer);
    setFalloff(gradient);
    painter.fillRect(area, gradient);
}

void paintCorner(QPainter& painter, QPointF corner, QPointF outwards) {
    QRadialGradient gradient(corner, reach);
    setFalloff(gradient);
    painter.fillRect(QRectF(corner, corner + outwards * reach).normalized(), gradient);
}

} // namespace

void paintCanvasShadow(QPainter& painter, const QRectF& canvas, const QRectF& exposed) {
    const QRectF outside = canvas.adjusted(-reach, -reach, reach, reach);
    if (canvas.contains(exposed) || !outside.intersects(exposed)) return;
    const double left = canvas.left();
    const double top = canvas.top();
    const double right = canvas.right();
    const double bottom = canvas.bottom();
    paintSide(painter, {left - reach, top, reach, canvas.height()}, {left, top},
              {left - reach, top});
    paintSide(painter, {right, top, reach, canvas.height()}, {right, top}, {right + reach, top});
    paintSide(painter, {left, top - reach, canvas.width(), reach}, {left, top},
              {left, top - reach});
    paintSide(painter, {left, bottom, canvas.width(), reach}, {left, bottom},
              {left, bottom + reach});
    paintCorner(painter, {left, top}, {-1.0, -1.0});
    paintCorner(painter, {right, top}, {1.0, -1.0});
    paintCorner(painter, {left, bottom}, {-1.0, 1.0});
    paintCorner(painter, {right, bottom}, {1.0, 1.0});
}

} // namespace quillabrae::canvas
