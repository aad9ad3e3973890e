// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasFixture.h"

namespace quillabrae::canvas {

/// Presses, drags and releases on the canvas of 200 by 100, at zoom 1. Points are canvas pixels.
class GestureFixture : public CanvasFixture {
protected:
    void press(model::CanvasPoint at) {
        m_start = local(at);
        moveTo(at);
    }
    void moveTo(model::CanvasPoint at) {
        view.dragChanged(Surface::interactiveView, DragValue::between(m_start, local(at)));
    }
    void release(model::CanvasPoint at) {
        view.dragEnded(Surface::interactiveView, DragValue::between(m_start, local(at)));
    }

private:
    QPointF m_start;
};

} // namespace quillabrae::canvas
