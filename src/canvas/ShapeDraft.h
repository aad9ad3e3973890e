// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/SelectionHandle.h"
#include "model/CanvasPoint.h"
#include "model/CanvasShape.h"
#include "model/ColorValue.h"
#include "model/ShapeDrawingMode.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QUuid>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;
class LiveDrawing;

/// A shape that was drawn and can still be changed.
struct CanvasShapeDraft {
    QUuid id;
    /// Canvas pixels, within the canvas and at least 1 by 1.
    QRectF rect;
    QUuid layerID;
    model::CanvasShape shape = model::CanvasShape::rectangle;
    model::ShapeDrawingMode drawingMode = model::ShapeDrawingMode::outline;
    double outlineWidth = 1.0;
    model::ColorValue outlineColor;
    model::ColorValue fillColor;
    /// Drawn with the right button: the outline takes the secondary colour, the fill the primary.
    bool usesSwappedColors = false;

    friend bool operator==(const CanvasShapeDraft&, const CanvasShapeDraft&) = default;
};

/// `rect`, standardised, held to a canvas of that size and to at least one pixel.
QRectF clampedShapeDraftRect(const QRectF& rect, QSizeF canvas);

/// The shape draft, of which there is at most one. It shows in the live image, over its layer as it
/// was, and follows the tool settings until it is written into the layer.
class ShapeDraft {
public:
    ShapeDraft(CanvasContext& context, LiveDrawing& drawing)
        : m_context(context), m_drawing(drawing) {}

    const std::optional<CanvasShapeDraft>& activeShapeDraft() const { return m_activeShapeDraft; }

    /// Makes a draft of the box between two points on the layer of the running gesture. False for a
    /// box that is less than a pixel wide or high, which makes none.
    bool begin(model::CanvasPoint from, model::CanvasPoint to);
    /// To be called when the shape tool's settings have changed.
    void refreshActiveShapeStyle();
    /// To be called when something else has changed the active project, or another one is active:
    /// the draft is drawn over its layer, and held to its canvas, as they are now.
    void projectChanged();
    /// `translation`: canvas pixels since the drag of the handle began.
    void resize(SelectionHandle handle, QPointF translation);
    void resizeEnded() { m_shapeResizeStartRect.reset(); }
    /// Writes the draft into its layer, with one history entry. A layer that is gone, hidden or
    /// locked meanwhile is left alone. The draft goes with the `reset` that has to follow.
    void write();
    void reset();

private:
    void renderActiveShapeDraft();

    CanvasContext& m_context;
    LiveDrawing& m_drawing;
    std::optional<CanvasShapeDraft> m_activeShapeDraft;
    std::optional<QRectF> m_shapeResizeStartRect;
};

} // namespace quillabrae::canvas
