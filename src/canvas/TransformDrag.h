// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "canvas/SelectionHandle.h"
#include "model/PixelSelection.h"

#include <QRectF>

#include <optional>

namespace quillabrae::canvas {

/// A drag that moves or resizes the selection, from its first sample on.
struct TransformDrag {
    SelectionDragMode mode;
    /// The selection when the drag began.
    model::PixelSelection start;
    /// The latest sample.
    DragValue value;

    /// The selection's rectangle now, on whole canvas pixels. Shift keeps its aspect ratio.
    QRectF rect(double zoom, Modifiers modifiers) const {
        return draggedRect(rectOf(start), mode, value.translation / zoom,
                           modifiers.shift ? AspectRatio::kept : AspectRatio::free);
    }
};

/// What a press at `location` (interactive view) begins on a selection shown at `zoom`.
std::optional<SelectionDragMode> selectionDragMode(QPointF location,
                                                   const model::PixelSelection& selection,
                                                   double zoom);

} // namespace quillabrae::canvas
