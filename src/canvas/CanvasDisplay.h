// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

namespace quillabrae::canvas {

/// Where the canvas is shown: told what has to be painted again.
class CanvasDisplay {
public:
    virtual ~CanvasDisplay() = default;

    /// Pixels inside this rectangle, in canvas pixels, look different now.
    virtual void repaintCanvasPixels(const QRect& rect) = 0;
    /// What lies over the canvas looks different now: the selection, the cursor, a draft.
    virtual void repaintOverlays() = 0;
    /// Everything in the viewport may look different now.
    virtual void repaintViewport() = 0;
};

} // namespace quillabrae::canvas
