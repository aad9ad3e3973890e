// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/AutoPan.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasTimers.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"

#include <algorithm>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// Screen points from the viewport's edge.
constexpr double selectionAutoPanEdgeDistance = 56.0;
constexpr double selectionAutoPanFrameInterval = 1.0 / 60.0;
constexpr double slowestPan = 4.0;
constexpr double panGain = 20.0;
constexpr double furthestDepth = 1.8;

double panSpeed(double distanceInside) {
    const double depth = distanceInside / selectionAutoPanEdgeDistance;
    return std::min(depth, furthestDepth) * panGain + slowestPan;
}

} // namespace

double selectionAutoPanStep(double position, double low, double high) {
    const double lowEdge = low + selectionAutoPanEdgeDistance;
    const double highEdge = high - selectionAutoPanEdgeDistance;
    if (position < lowEdge) return -panSpeed(lowEdge - position);
    if (position > highEdge) return panSpeed(position - highEdge);
    return 0.0;
}

AutoPan::AutoPan(CanvasContext& context, Client client)
    : m_context(context), m_client(std::move(client)) {}

void AutoPan::updateSelectionAutoPan(QPointF location) {
    m_lastSelectionAutoPanDocumentPoint = location;
    if (!m_client.isDragging()) return stopSelectionAutoPan();
    if (selectionAutoPanDelta(location).isNull()) return;
    scheduleSelectionAutoPan(++m_selectionAutoPanGeneration);
}

void AutoPan::stopSelectionAutoPan() {
    ++m_selectionAutoPanGeneration;
    m_lastSelectionAutoPanDocumentPoint.reset();
}

QPointF AutoPan::selectionAutoPanDelta(QPointF location) const {
    if (m_context.scroller == nullptr) return {};
    const QRectF clip = m_context.scroller->clipBounds();
    return {selectionAutoPanStep(location.x(), clip.left(), clip.right()),
            selectionAutoPanStep(location.y(), clip.top(), clip.bottom())};
}

std::optional<QPointF> AutoPan::currentMouseDocumentPoint() const {
    const auto location = m_context.pointer.viewportLocation();
    if (!location) return std::nullopt;
    return *location + m_context.scroller->clipBounds().topLeft();
}

bool AutoPan::scrollDocument(QPointF delta) {
    Scroller& scroller = *m_context.scroller;
    const QRectF clip = scroller.clipBounds();
    const QPointF origin =
        limitedScrollOrigin(clip.topLeft() + delta, scroller.documentSize(), clip.size());
    if (origin == clip.topLeft()) return false;
    scroller.setClipBoundsOrigin(origin);
    m_context.repaintViewport();
    return true;
}

void AutoPan::scheduleSelectionAutoPan(int generation) {
    m_context.timers.after(selectionAutoPanFrameInterval, [this, generation] {
        if (generation == m_selectionAutoPanGeneration) runSelectionAutoPan(generation);
    });
}

void AutoPan::runSelectionAutoPan(int generation) {
    if (!m_client.isDragging() || m_context.scroller == nullptr) return;
    const auto mouse = currentMouseDocumentPoint();
    const auto location = mouse ? mouse : m_lastSelectionAutoPanDocumentPoint;
    if (!location) return;
    m_lastSelectionAutoPanDocumentPoint = location;
    const QPointF delta = selectionAutoPanDelta(*location);
    if (delta.isNull()) return;
    if (scrollDocument(delta)) {
        const QPointF moved = currentMouseDocumentPoint().value_or(*location + delta);
        m_lastSelectionAutoPanDocumentPoint = moved;
        m_client.panned(moved);
    }
    scheduleSelectionAutoPan(generation);
}

} // namespace quillabrae::canvas
