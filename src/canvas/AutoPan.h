// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>

#include <functional>
#include <optional>

namespace quillabrae::canvas {

class CanvasContext;

/// Scrolls under a selection drag that has come near the edge of the viewport or past it, the
/// faster the further, until the pointer comes back or the drag ends.
class AutoPan {
public:
    /// What is panned for: whether it still goes on, and what to do once the canvas has moved under
    /// the pointer (document coordinates).
    struct Client {
        std::function<bool()> isDragging;
        std::function<void(QPointF)> panned;
    };

    AutoPan(CanvasContext& context, Client client);

    /// The pointer of the drag, in document coordinates.
    void updateSelectionAutoPan(QPointF location);
    void stopSelectionAutoPan();

private:
    QPointF selectionAutoPanDelta(QPointF location) const;
    std::optional<QPointF> currentMouseDocumentPoint() const;
    bool scrollDocument(QPointF delta);
    void scheduleSelectionAutoPan(int generation);
    void runSelectionAutoPan(int generation);

    CanvasContext& m_context;
    Client m_client;
    /// Cancels the ticks of earlier generations.
    int m_selectionAutoPanGeneration = 0;
    std::optional<QPointF> m_lastSelectionAutoPanDocumentPoint;
};

/// How far a tick pans along one axis, in screen points: 4 to 40 within `edgeDistance` of either
/// end of the viewport and beyond, towards that end; else 0.
double selectionAutoPanStep(double position, double low, double high);

} // namespace quillabrae::canvas
