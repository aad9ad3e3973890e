// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/PixelSelection.h"
#include "model/SelectionCombineOperation.h"

#include <QRectF>

#include <optional>
#include <vector>

namespace quillabrae::canvas {

class CanvasContext;

/// Dragging a rectangle, an ellipse or a lasso: a new selection, or with Option or Command a change
/// of the one that stands. Shift makes rectangles and ellipses square.
class RegionSelectionGesture {
public:
    explicit RegionSelectionGesture(CanvasContext& context) : m_context(context) {}

    bool isRunning() const { return m_selectionCreationStartPoint.has_value(); }
    void beginSelectionCreation(model::CanvasPoint point);
    void updateSelectionCreation(model::CanvasPoint point);
    /// To be called when Option goes down: a plain drag subtracts from then on, from what it began
    /// on. A window manager may keep drags that begin with that key for itself.
    void optionPressed();
    /// Runs the latest sample again, with the modifiers as they are now.
    void refresh();
    /// `dragDistance`: in screen points, from press to release.
    void finishSelectionCreation(double dragDistance);
    /// Forgets the drag and leaves the selection as it is.
    void cancel();
    /// Forgets a drag whose selection is no longer what it has made, or over which pixels float
    /// now.
    void giveUpIfStale();

private:
    QRectF selectionRect(model::CanvasPoint from, model::CanvasPoint to) const;
    QRectF lassoSelectionRect() const;
    model::PixelSelection selectionOf(const QRectF& rect) const;
    std::optional<model::PixelSelection> selectionAfterCombining(
        const model::PixelSelection& selection) const;
    void restoreBase();
    void show(const std::optional<model::PixelSelection>& selection);

    CanvasContext& m_context;
    /// Set means that a drag runs.
    std::optional<model::CanvasPoint> m_selectionCreationStartPoint;
    std::optional<model::CanvasPoint> m_currentSelectionCreationPoint;
    /// The lasso.
    std::vector<model::CanvasPoint> m_selectionCreationPath;
    /// What the drag adds to or takes from.
    std::optional<model::PixelSelection> m_selectionCombineBase;
    /// What was selected when the drag began.
    std::optional<model::PixelSelection> m_selectionAtStart;
    std::optional<model::SelectionCombineOperation> m_selectionCombineOperation;
    bool m_didCreateSelection = false;
    /// What the drag has made so far.
    std::optional<model::PixelSelection> m_shownSelection;
};

} // namespace quillabrae::canvas
