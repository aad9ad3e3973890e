// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/GrabTarget.h"
#include "model/PaintTool.h"

#include <QCursor>

#include <optional>

namespace quillabrae::canvas {

/// What the pointer is about to do.
enum class PointerIntent { useTool, useToolBackwards, readyToPan, panning };

/// The cursor of a tool over the canvas. Backwards is the zoom tool's way out.
QCursor toolCursor(model::PaintTool tool, PointerIntent intent);

/// The cursor of what the pointer is over besides the canvas; none when it is over nothing.
std::optional<QCursor> grabCursor(const GrabTarget& target);

} // namespace quillabrae::canvas
