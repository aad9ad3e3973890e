// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "model/CanvasPoint.h"

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class DrawingGestures;
class ZoomController;

/// Drawing with the right button, which takes the secondary colour.
class RightMouseDrawing {
public:
    RightMouseDrawing(CanvasContext& context, const ZoomController& zoom, DrawingGestures& drawing)
        : m_context(context), m_zoom(zoom), m_drawing(drawing) {}

    /// Whether the event was taken.
    bool handleRightMouseEvent(const RightMouseEvent& event);
    /// Whether a stroke is open.
    bool isRightMouseDrawing() const { return m_isRightMouseDrawing; }
    /// Its stroke has ended without it: nothing is drawn before the next press.
    void forgetButton() { m_isRightMouseDrawing = false; }

private:
    std::optional<model::CanvasPoint> canvasPointFromRightMouseEvent(
        const RightMouseEvent& event) const;

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    DrawingGestures& m_drawing;
    bool m_isRightMouseDrawing = false;
};

} // namespace quillabrae::canvas
