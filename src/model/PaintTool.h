// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quillabrae::model {

/// The tools, in the order of their table.
enum class PaintTool {
    rectangleSelect,
    lassoSelect,
    ellipseSelect,
    magicWand,
    moveSelectedPixels,
    moveSelection,
    zoom,
    pan,
    paintBucket,
    gradient,
    paintbrush,
    eraser,
    pencil,
    colorPicker,
    cloneStamp,
    recolor,
    text,
    lineCurve,
    shapes,
    rectangle, ///< Kept for old records; has no button.
    ellipse,   ///< Kept for old records; has no button.
};

constexpr std::size_t paintToolCount = 21;
std::array<PaintTool, paintToolCount> allPaintTools();

/// The stored form, which differs from the case's name in five rows.
QString rawText(PaintTool tool);
std::optional<PaintTool> paintToolFromRawText(QStringView rawText);

QString title(PaintTool tool);
QString symbolName(PaintTool tool);
QString helpDescription(PaintTool tool);

/// Follows the pointer through all points.
bool drawsContinuousStroke(PaintTool tool);
/// Draws from the press point to the current point.
bool drawsFromEndpoints(PaintTool tool);
bool constrainsEndpointAspectRatio(PaintTool tool);
bool snapsEndpointAngle(PaintTool tool);
bool usesHardnessControl(PaintTool tool);
/// Makes, moves or resizes the selection.
bool usesSelectionGesture(PaintTool tool);
/// Makes a selection by dragging a region.
bool createsSelectionRegion(PaintTool tool);

} // namespace quillabrae::model
