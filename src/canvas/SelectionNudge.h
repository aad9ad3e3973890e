// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>

namespace quillabrae::canvas {

class CanvasContext;

/// Moves the selection in force by `delta` canvas pixels, as the arrow keys do; with the tool that
/// moves pixels, the selected layer's pixels as well. Does nothing without a selection.
void nudgeSelection(CanvasContext& context, QSizeF delta);

} // namespace quillabrae::canvas
