// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintTool.h"

#include <QCursor>

namespace quillabrae::canvas {

/// What the pointer is about to do.
enum class PointerIntent { useTool, useToolBackwards, readyToPan, panning };

/// The cursor of a tool over the canvas. Backwards is the zoom tool's way out.
QCursor toolCursor(model::PaintTool tool, PointerIntent intent);

} // namespace quillabrae::canvas
