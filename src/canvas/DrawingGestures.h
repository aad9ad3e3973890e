// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/BucketGesture.h"
#include "canvas/EndpointGesture.h"
#include "canvas/LiveDrawing.h"
#include "canvas/ShapeDraft.h"
#include "canvas/StrokeGesture.h"
#include "model/CanvasPoint.h"
#include "model/PaintTool.h"

namespace quillabrae::canvas {

class CanvasContext;

/// What draws on the selected layer: strokes, lines and gradients, and fills. A gesture paints on
/// the live image and becomes the layer's pixels, with one history entry, when it is finished.
class DrawingGestures {
public:
    explicit DrawingGestures(CanvasContext& context);

    /// Whether the tool draws with a drag of the left or of the right button.
    static bool serves(model::PaintTool tool);

    /// The colours of the gesture that begins, unless it has some already.
    void beginWith(DrawingButton button);
    /// One sample, the first of a gesture or a further one. On a hidden or locked layer nothing is
    /// drawn.
    void rasterizeDrawing(model::CanvasPoint point);
    /// A shape ends as a draft, everything else as pixels.
    void finishRasterDrawing();
    /// Makes the shape draft, if there is one, pixels of its layer.
    void commitActiveShape();
    /// Gives up the gesture that runs, with what it drew since it was last finished, and the draft.
    void resetRasterDrawing();

    /// To be called when the shift key goes down or up.
    void modifiersChanged() { m_endpoints.refresh(); }
    /// To be called when the paint bucket's match percentage has changed.
    void bucketMatchChanged() { m_bucket.refreshPaintBucketFillForMatchChange(); }
    /// Ends the gesture that runs, if any, as its release with `tool` would. A draft stays.
    void finishAsItStands(model::PaintTool tool);
    /// To be called when `tool` has been chosen after `former`. A gesture goes on where the new
    /// tool draws in the same manner, and ends as it stands where it does not. Whether one ended.
    bool toolChanged(model::PaintTool tool, model::PaintTool former);
    /// To be called when something else has changed the active project, or another one is active. A
    /// gesture on pixels that are no more is given up; a draft is drawn on those that are there.
    void projectChanged();

    const LiveDrawing& live() const { return m_live; }
    ShapeDraft& shape() { return m_shape; }
    const ShapeDraft& shape() const { return m_shape; }

private:
    bool isDrawing() const { return m_live.isRunning() && !m_shape.activeShapeDraft(); }
    void finishRasterDrawing(model::PaintTool tool);
    void finishShapeDrawing();
    void giveUpStaleGesture();

    CanvasContext& m_context;
    LiveDrawing m_live;
    StrokeGesture m_stroke;
    EndpointGesture m_endpoints;
    BucketGesture m_bucket;
    ShapeDraft m_shape;
};

} // namespace quillabrae::canvas
