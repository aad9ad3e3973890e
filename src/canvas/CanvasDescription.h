// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"
#include "model/PaintProject.h"

#include <QString>

#include <optional>

namespace quillabrae::canvas {

class CanvasView;

/// What a person who does not see the canvas has to know of it, in one line of words: where the
/// tool is and on which colour, the tool and whether the keyboard has it pressed, the zoom, the
/// layer and the selection. Empty without a project.
QString canvasDescription(const CanvasView& view);

/// The colour that the project shows at `point`, floating pixels included and layer opacities
/// applied; nothing where it is transparent and off the canvas. Of a gesture that runs it knows
/// nothing.
std::optional<model::ColorValue> shownColor(const model::PaintProject& project,
                                            model::CanvasPoint point);

} // namespace quillabrae::canvas
