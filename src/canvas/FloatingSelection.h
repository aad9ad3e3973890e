// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillabrae::canvas {

class CanvasContext;

/// Puts the active project's floating pixels down on their layer, locked or not, and ends the
/// selection. Nothing happens when there are none, their layer is gone, or they do not decode.
/// Records no history: the entry of the gesture that follows covers it.
void commitFloatingSelectionIfNeeded(CanvasContext& context);

} // namespace quillabrae::canvas
