// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;

/// Dragging the document under the viewport. Does nothing without a scroller.
class PanGesture {
public:
    explicit PanGesture(CanvasContext& context) : m_context(context) {}

    /// `translation`: the pointer's way since the press, in screen points.
    void panCanvas(QPointF translation);
    void finish() { m_panStartOrigin.reset(); }
    bool isRunning() const { return m_panStartOrigin.has_value(); }

private:
    CanvasContext& m_context;
    /// The scroll origin at the start of the drag.
    std::optional<QPointF> m_panStartOrigin;
};

} // namespace quillabrae::canvas
