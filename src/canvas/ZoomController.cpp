// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/ZoomController.h"

#include "canvas/CanvasContext.h"
#include "canvas/CanvasHost.h"
#include "canvas/CanvasTimers.h"
#include "canvas/PointerState.h"
#include "canvas/Scroller.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {

using model::CanvasPoint;

namespace {

using model::maximumZoomScale;
using model::minimumZoomScale;

constexpr double zoomBase = 1.85;
constexpr double minimumZoomDelta = 0.0001;
constexpr double minimumMagnification = 0.0005;
constexpr double zoomStep = 1.25;
constexpr double commitDelay = 0.16;

constexpr double shortestMagnifyInterval = 1.0 / 120.0;
constexpr double longestMagnifyInterval = 0.08;
constexpr double maximumVelocity = 3.8;
constexpr double velocitySmoothing = 0.55;

constexpr double momentumDelay = 0.045;
constexpr double momentumFramesPerSecond = 60.0;
constexpr double momentumDecay = 0.84;
constexpr double minimumMomentumVelocity = 0.08;
constexpr int momentumSteps = 22;

/// How far the document's size may be off, in screen points, before it is set anew.
constexpr double documentSizeTolerance = 0.5;

} // namespace

ZoomController::ZoomController(CanvasContext& context)
    : m_context(context),
      m_reportedZoomScale(context.host.settings().zoomScale),
      m_previousZoomScale(m_reportedZoomScale) {}

double ZoomController::currentZoom() const {
    return m_liveZoomScale.value_or(m_context.host.settings().zoomScale);
}

ZoomAnchorPlan ZoomController::zoomAnchorPlan(double oldZoom, const QRectF& visibleRect) const {
    const CanvasGeometry geometry = m_context.geometry();
    const auto offset = m_context.pointer.viewportLocation();
    if (offset && containsPoint(QRectF(QPointF(), visibleRect.size()), *offset)) {
        const QPointF inCanvas =
            visibleRect.topLeft() + *offset - geometry.canvasDocumentOrigin(oldZoom);
        const QRectF canvas(0.0, 0.0, geometry.canvasWidth * oldZoom,
                            geometry.canvasHeight * oldZoom);
        if (containsPoint(canvas, inCanvas)) {
            return {geometry.clamped({inCanvas.x() / oldZoom, inCanvas.y() / oldZoom}), *offset};
        }
    }
    return {{geometry.canvasWidth / 2.0, geometry.canvasHeight / 2.0},
            {visibleRect.width() / 2.0, visibleRect.height() / 2.0}};
}

bool ZoomController::applyZoomDelta(double delta, std::optional<ZoomAnchorPlan> anchor) {
    if (!(std::abs(delta) > minimumZoomDelta) || m_context.scroller == nullptr) return false;
    const double oldZoom = currentZoom();
    const double newZoom =
        std::clamp(oldZoom * std::pow(zoomBase, delta), minimumZoomScale, maximumZoomScale);
    if (newZoom == oldZoom) return false;
    const ZoomAnchorPlan plan =
        anchor ? *anchor : zoomAnchorPlan(oldZoom, m_context.scroller->clipBounds());
    m_liveZoomScale = newZoom;
    scrollTo(scrollOrigin(plan, newZoom), newZoom);
    scheduleLiveZoomCommit();
    return true;
}

bool ZoomController::applyMagnification(double magnification, double timestamp) {
    if (!(std::abs(magnification) > minimumMagnification) || m_context.scroller == nullptr) {
        return false;
    }
    const ZoomAnchorPlan plan = zoomAnchorPlan(currentZoom(), m_context.scroller->clipBounds());
    updateMagnifyVelocity(magnification, timestamp);
    m_zoomMomentumAnchorPlan = plan;
    ++m_zoomMomentumGeneration;
    applyZoomDelta(magnification, plan);
    scheduleZoomMomentum();
    return true;
}

bool ZoomController::applyWheelZoom(double notches) {
    ++m_zoomMomentumGeneration;
    m_magnifyVelocity = 0.0;
    m_lastMagnifyTimestamp.reset();
    return applyZoomDelta(notches * std::log(zoomStep) / std::log(zoomBase));
}

void ZoomController::commitLiveZoom() {
    if (!m_liveZoomScale) return;
    // First, so that the change of the persistent zoom scrolls nothing a second time.
    m_previousZoomScale = *m_liveZoomScale;
    m_context.host.setZoomScale(*m_liveZoomScale);
    m_liveZoomScale.reset();
}

void ZoomController::stepZoom(ZoomStep step) {
    const double zoomScale = m_context.host.settings().zoomScale;
    m_context.host.setZoomScale(step == ZoomStep::out
                                    ? std::max(zoomScale / zoomStep, minimumZoomScale)
                                    : std::min(zoomScale * zoomStep, maximumZoomScale));
}

void ZoomController::zoomScaleChanged() {
    const double zoomScale = m_context.host.settings().zoomScale;
    if (zoomScale == m_reportedZoomScale) return;
    m_reportedZoomScale = zoomScale;
    if (m_liveZoomScale) return;
    preserveZoomAnchor(m_previousZoomScale, zoomScale);
    m_previousZoomScale = zoomScale;
}

void ZoomController::zoomToFitRequested(const QUuid& requestID) {
    cancelLiveZoomAnimation();
    m_previousZoomScale = m_context.host.settings().zoomScale;
    m_reportedZoomScale = m_previousZoomScale;
    if (m_context.scroller == nullptr) {
        m_pendingCenterRequestID = requestID;
        return;
    }
    m_pendingCenterRequestID.reset();
    centerCanvasInViewport();
}

void ZoomController::scrollerResolved() {
    if (m_context.scroller == nullptr || !m_pendingCenterRequestID) return;
    m_pendingCenterRequestID.reset();
    centerCanvasInViewport();
}

void ZoomController::centerCanvasInViewport() {
    if (m_context.scroller == nullptr) return;
    const QSizeF clip = m_context.scroller->clipBounds().size();
    const CanvasGeometry geometry = m_context.geometry();
    const ZoomAnchorPlan center{{geometry.canvasWidth / 2.0, geometry.canvasHeight / 2.0},
                                {clip.width() / 2.0, clip.height() / 2.0}};
    const double zoom = currentZoom();
    scrollTo(scrollOrigin(center, zoom), zoom);
}

CanvasPoint ZoomController::canvasPointAtViewportCenter() const {
    const CanvasGeometry geometry = m_context.geometry();
    if (m_context.scroller == nullptr || m_context.viewportSize.isEmpty()) {
        return {geometry.canvasWidth / 2.0, geometry.canvasHeight / 2.0};
    }
    const QPointF center =
        m_context.scroller->clipBounds().topLeft() +
        QPointF(m_context.viewportSize.width() / 2.0, m_context.viewportSize.height() / 2.0);
    return geometry.unclampedCanvasPointFromWorkspace(center, currentZoom());
}

void ZoomController::centerViewportOn(CanvasPoint point) {
    if (m_context.scroller == nullptr) return;
    // What was scheduled for the old size is out of date.
    ++m_zoomScrollGeneration;
    const QSizeF clip = m_context.viewportSize;
    const double zoom = currentZoom();
    applyZoomScrollOrigin(scrollOrigin({point, {clip.width() / 2.0, clip.height() / 2.0}}, zoom),
                          zoom);
    m_context.repaintViewport();
}

void ZoomController::preserveZoomAnchor(double oldZoom, double newZoom) {
    if (!(oldZoom > 0.0) || !(newZoom > 0.0) || oldZoom == newZoom) return;
    if (m_context.scroller == nullptr) return;
    const ZoomAnchorPlan plan = zoomAnchorPlan(oldZoom, m_context.scroller->clipBounds());
    scrollTo(scrollOrigin(plan, newZoom), newZoom);
}

QPointF ZoomController::scrollOrigin(const ZoomAnchorPlan& plan, double zoom) const {
    return QPointF(plan.canvasPoint.x * zoom, plan.canvasPoint.y * zoom) +
           m_context.geometry().canvasDocumentOrigin(zoom) - plan.viewportOffset;
}

void ZoomController::applyZoomScrollOrigin(QPointF origin, double zoom) {
    Scroller& scroller = *m_context.scroller;
    const QSizeF size = m_context.documentViewSize(zoom);
    const QSizeF excess = size - scroller.documentSize();
    if (std::abs(excess.width()) > documentSizeTolerance ||
        std::abs(excess.height()) > documentSizeTolerance) {
        scroller.setDocumentSize(size);
    }
    scroller.setClipBoundsOrigin(limitedScrollOrigin(origin, size, scroller.clipBounds().size()));
}

void ZoomController::scrollTo(QPointF origin, double zoom) {
    const int generation = ++m_zoomScrollGeneration;
    applyZoomScrollOrigin(origin, zoom);
    m_context.repaintViewport();
    // Once more after the layout that the changed zoom sets off.
    m_context.timers.after(0.0, [this, generation, origin, zoom] {
        if (generation != m_zoomScrollGeneration || m_context.scroller == nullptr) return;
        const QRectF before = m_context.scroller->clipBounds();
        applyZoomScrollOrigin(origin, zoom);
        if (m_context.scroller->clipBounds() != before) m_context.repaintViewport();
    });
}

void ZoomController::scheduleLiveZoomCommit() {
    const int generation = ++m_liveZoomCommitGeneration;
    m_context.timers.after(commitDelay, [this, generation] {
        if (generation == m_liveZoomCommitGeneration) commitLiveZoom();
    });
}

void ZoomController::updateMagnifyVelocity(double delta, double timestamp) {
    if (!m_lastMagnifyTimestamp) {
        m_magnifyVelocity = 0.0;
    } else {
        const double interval = std::clamp(timestamp - *m_lastMagnifyTimestamp,
                                           shortestMagnifyInterval, longestMagnifyInterval);
        const double raw = std::clamp(delta / interval, -maximumVelocity, maximumVelocity);
        m_magnifyVelocity = raw * velocitySmoothing + m_magnifyVelocity * (1.0 - velocitySmoothing);
    }
    m_lastMagnifyTimestamp = timestamp;
}

void ZoomController::scheduleZoomMomentum() {
    const int generation = m_zoomMomentumGeneration;
    m_context.timers.after(momentumDelay, [this, generation] {
        if (generation != m_zoomMomentumGeneration) return;
        runZoomMomentum(generation, m_magnifyVelocity, momentumSteps);
    });
}

void ZoomController::runZoomMomentum(int generation, double velocity, int remainingSteps) {
    bool changed = false;
    if (generation == m_zoomMomentumGeneration && remainingSteps >= 1 &&
        std::abs(velocity) > minimumMomentumVelocity && m_zoomMomentumAnchorPlan) {
        changed = applyZoomDelta(velocity / momentumFramesPerSecond, m_zoomMomentumAnchorPlan);
        velocity *= momentumDecay;
        m_magnifyVelocity = velocity;
    }
    if (changed) {
        m_context.timers.after(1.0 / momentumFramesPerSecond, [=, this] {
            runZoomMomentum(generation, velocity, remainingSteps - 1);
        });
        return;
    }
    m_magnifyVelocity = 0.0;
    m_lastMagnifyTimestamp.reset();
    scheduleLiveZoomCommit();
}

void ZoomController::cancelLiveZoomAnimation() {
    ++m_zoomMomentumGeneration;
    ++m_liveZoomCommitGeneration;
    ++m_zoomScrollGeneration;
    m_magnifyVelocity = 0.0;
    m_lastMagnifyTimestamp.reset();
    m_liveZoomScale.reset();
    m_zoomMomentumAnchorPlan.reset();
}

} // namespace quillabrae::canvas
