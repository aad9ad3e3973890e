// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"

#include <QPointF>
#include <QRectF>
#include <QUuid>

#include <optional>

namespace quillabrae::canvas {

class CanvasContext;

/// The canvas pixel that a zoom keeps in its place, and that place.
struct ZoomAnchorPlan {
    model::CanvasPoint canvasPoint;
    /// Screen points from the viewport's top left.
    QPointF viewportOffset;

    friend bool operator==(const ZoomAnchorPlan&, const ZoomAnchorPlan&) = default;
};

enum class ZoomStep { in, out };

/// Zoom: around an anchor, live ahead of the persistent value while a pinch runs, with momentum
/// after it. The persistent value is written once the live zoom has rested, since every write of it
/// refreshes the whole workspace. Without a scroller everything but a fit request does nothing.
class ZoomController {
public:
    explicit ZoomController(CanvasContext& context);

    /// Screen points for each canvas pixel as shown now.
    double currentZoom() const;
    std::optional<double> liveZoomScale() const { return m_liveZoomScale; }
    double magnifyVelocity() const { return m_magnifyVelocity; }

    /// What a zoom away from `oldZoom` holds on to: the canvas pixel under the pointer when the
    /// pointer is over the canvas, else the canvas's centre at the viewport's.
    ZoomAnchorPlan zoomAnchorPlan(double oldZoom, const QRectF& visibleRect) const;

    /// Zooms live by a factor of 1.85 for each unit of `delta`; whether the zoom changed.
    bool applyZoomDelta(double delta, std::optional<ZoomAnchorPlan> anchor = std::nullopt);
    /// One step of a pinch; whether it was taken. `timestamp` is in seconds.
    bool applyMagnification(double magnification, double timestamp);
    /// A turn of the wheel, in notches; one notch is a factor of 1.25. It has no momentum.
    bool applyWheelZoom(double notches);
    void commitLiveZoom();
    /// The zoom tool: one step of the persistent zoom.
    void stepZoom(ZoomStep step);

    /// To be called after every change of the persistent zoom.
    void zoomScaleChanged();
    /// To be called when the store asks for a fit, after it has changed the zoom.
    void zoomToFitRequested(const QUuid& requestID);
    /// To be called when the canvas has got its scroller.
    void scrollerResolved();
    /// Brings the canvas's centre to the viewport's.
    void centerCanvasInViewport();

    /// What stands in the middle of the viewport; the canvas's centre while nothing shows.
    model::CanvasPoint canvasPointAtViewportCenter() const;
    /// Scrolls that point to the middle of the viewport, whose size has changed.
    void centerViewportOn(model::CanvasPoint point);

private:
    void preserveZoomAnchor(double oldZoom, double newZoom);
    QPointF scrollOrigin(const ZoomAnchorPlan& plan, double zoom) const;
    void applyZoomScrollOrigin(QPointF origin, double zoom);
    void scrollTo(QPointF origin, double zoom);
    void scheduleLiveZoomCommit();
    void updateMagnifyVelocity(double delta, double timestamp);
    void scheduleZoomMomentum();
    void runZoomMomentum(int generation, double velocity, int remainingSteps);
    void cancelLiveZoomAnimation();

    CanvasContext& m_context;
    /// The persistent zoom as it was when last reported to `zoomScaleChanged`.
    double m_reportedZoomScale;
    double m_previousZoomScale;
    int m_zoomScrollGeneration = 0;
    std::optional<double> m_liveZoomScale;
    int m_liveZoomCommitGeneration = 0;
    std::optional<double> m_lastMagnifyTimestamp;
    /// In zoom deltas a second, smoothed.
    double m_magnifyVelocity = 0.0;
    int m_zoomMomentumGeneration = 0;
    std::optional<ZoomAnchorPlan> m_zoomMomentumAnchorPlan;
    std::optional<QUuid> m_pendingCenterRequestID;
};

} // namespace quillabrae::canvas
