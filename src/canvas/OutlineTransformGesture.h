// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/TransformDrag.h"
#include "model/PixelSelection.h"

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class ZoomController;

/// Moving or resizing the outline of the selection, on any layer, without its pixels. The mask is
/// stretched with the rectangle.
class OutlineTransformGesture {
public:
    OutlineTransformGesture(CanvasContext& context, const ZoomController& zoom)
        : m_context(context), m_zoom(zoom) {}

    bool isRunning() const { return m_drag.has_value(); }
    void transformSelectionOutline(const DragValue& value);
    /// Runs the latest sample again, with the modifiers as they are now.
    void refresh();
    /// Records what the drag did, if it began on the outline.
    void finish();
    void reset() { m_drag.reset(); }
    /// Gives up a drag whose selection is no longer what it has made.
    void giveUpIfStale();

private:
    CanvasContext& m_context;
    const ZoomController& m_zoom;
    std::optional<TransformDrag> m_drag;
    /// The selection in force, as the drag last left it.
    std::optional<model::PixelSelection> m_shownSelection;
};

} // namespace quillabrae::canvas
