// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/AutoPan.h"
#include "canvas/CanvasInput.h"
#include "canvas/MagicWandGesture.h"
#include "canvas/OutlineTransformGesture.h"
#include "canvas/PixelTransformGesture.h"
#include "canvas/RegionSelectionGesture.h"
#include "model/PaintTool.h"

#include <QPointF>
#include <QSizeF>

#include <functional>

namespace quillabrae::canvas {

class CanvasContext;
class ZoomController;

/// What the tools of the selection do with a drag: which of them makes, moves or resizes it.
class SelectionGestures {
public:
    /// `pointerMoved` hears of the canvas moving under the pointer (document coordinates).
    SelectionGestures(CanvasContext& context, const ZoomController& zoom,
                      std::function<void(QPointF)> pointerMoved);

    /// A drag on the interactive view, and its end after `dragDistance` screen points.
    void updateSelectionGesture(const DragValue& value);
    void finishSelectionGesture(double dragDistance);
    /// A drag that began outside the canvas (document coordinates).
    void selectionWorkspaceChanged(const DragValue& value);
    void selectionWorkspaceEnded(const DragValue& value);

    /// `delta`: canvas pixels.
    void nudgeSelection(QSizeF delta);
    /// To be called when the shift key goes down or up.
    void modifiersChanged();
    /// To be called when the option key goes down.
    void optionPressed() { m_region.optionPressed(); }
    /// To be called when the wand's match percentage has changed.
    void wandMatchChanged() { m_wand.refreshMagicWandSelectionForMatchChange(); }
    /// Ends the drag that runs, if any, as its release here would.
    void finishAsItStands();
    /// To be called when another tool has been chosen. A drag whose release would come to a tool
    /// that knows nothing of it ends as it stands.
    void toolChanged(model::PaintTool tool);
    /// To be called when something else has changed the active project: a drag of what is no more
    /// is given up.
    void projectChanged();
    /// Gives up the drag that runs.
    void cancel();
    /// Gives up whatever runs, and forgets what was last picked.
    void reset();

    const PixelTransformGesture& pixels() const { return m_pixels; }

private:
    void createRegion(model::CanvasPoint start, model::CanvasPoint now);
    void selectFullCanvasForMove();
    void finishRegion();

    CanvasContext& m_context;
    const ZoomController& m_zoom;
    RegionSelectionGesture m_region;
    MagicWandGesture m_wand;
    OutlineTransformGesture m_outline;
    PixelTransformGesture m_pixels;
    AutoPan m_autoPan;
};

} // namespace quillabrae::canvas
