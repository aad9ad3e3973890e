// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::model {

/// The shapes of the shape tool, in the order of their menu.
enum class CanvasShape {
    rectangle,
    roundedRectangle,
    ellipse,
    diamond,
    trapezoid,
    parallelogram,
    triangle,
    rightTriangle,
};

std::array<CanvasShape, 8> allCanvasShapes();

QString rawText(CanvasShape value);
std::optional<CanvasShape> canvasShapeFromRawText(QStringView rawText);

QString title(CanvasShape value);
QString symbolName(CanvasShape value);

} // namespace quillabrae::model
