// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::model {

/// What the shape tool draws of a shape.
enum class ShapeDrawingMode {
    fill,
    outline,
    fillAndOutline,
};

std::array<ShapeDrawingMode, 3> allShapeDrawingModes();

QString rawText(ShapeDrawingMode value);
std::optional<ShapeDrawingMode> shapeDrawingModeFromRawText(QStringView rawText);

QString title(ShapeDrawingMode value);
QString symbolName(ShapeDrawingMode value);
bool includesFill(ShapeDrawingMode value);
bool includesOutline(ShapeDrawingMode value);

} // namespace quillabrae::model
