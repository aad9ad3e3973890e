// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PaintTool.h"

#include <QPointF>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class ZoomController;

/// Where on the canvas the tool is: reported to the host, and kept for what is drawn there.
class ToolCursor {
public:
    ToolCursor(CanvasContext& context, const ZoomController& zoom)
        : m_context(context), m_zoom(zoom) {}

    /// The pointer, no button down, in document coordinates.
    void hover(QPointF documentPoint);
    void hoverEnded();
    /// The pointer over the workspace, whatever the tool.
    void hoverOverWorkspace(QPointF documentPoint);
    /// The pointer of a drag, in the interactive view's coordinates and in the document's.
    void updateToolCursor(QPointF location);
    void updateToolCursorFromWorkspace(QPointF location);
    void setHoveredCanvasPoint(std::optional<model::CanvasPoint> point);

    std::optional<model::CanvasPoint> hoveredCanvasPoint() const { return m_hoveredCanvasPoint; }
    /// Where the tool works for a pointer in the interactive view: the eraser beyond the canvas as
    /// well, every other tool held to it.
    model::CanvasPoint toolPoint(QPointF location) const;

private:
    model::PaintTool tool() const;

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    std::optional<model::CanvasPoint> m_hoveredCanvasPoint;
};

} // namespace quillabrae::canvas
