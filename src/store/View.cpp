// SPDX-License-Identifier: GPL-3.0-or-later
// How the active canvas is looked at.
#include "store/ProjectStore.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::store {
namespace {

constexpr double zoomStep = 1.25;
/// Screen points that a fit leaves free on both sides together.
constexpr double roomAroundCanvas = 180.0;

} // namespace

void ProjectStore::setCanvasViewportSize(QSizeF size) {
    if (m_canvasViewportSize != size) {
        m_canvasViewportSize = size;
        Q_EMIT canvasViewportSizeChanged();
    }
    if (m_pendingZoomToFitProjectID && m_pendingZoomToFitProjectID == m_activeProjectID)
        performZoomToFitCanvas(StatusUpdate::silent);
}

void ProjectStore::setCanvasCursorPosition(std::optional<QPointF> point) {
    std::optional<model::CanvasPoint> position;
    if (point) position = model::CanvasPoint{std::floor(point->x()), std::floor(point->y())};
    if (m_canvasCursorPosition == position) return;
    m_canvasCursorPosition = position;
    Q_EMIT canvasCursorPositionChanged();
}

void ProjectStore::togglePixelGrid() {
    editSettings([](model::PaintAppSettings& settings) {
        settings.showsPixelGrid = !settings.showsPixelGrid;
    });
    setStatusMessage(m_settings.showsPixelGrid ? tr("Pixel grid on") : tr("Pixel grid off"));
}

void ProjectStore::zoomIn() {
    editSettings([](model::PaintAppSettings& settings) {
        settings.zoomScale = std::min(settings.zoomScale * zoomStep, model::maximumZoomScale);
    });
}

void ProjectStore::zoomOut() {
    editSettings([](model::PaintAppSettings& settings) {
        settings.zoomScale = std::max(settings.zoomScale / zoomStep, model::minimumZoomScale);
    });
}

bool ProjectStore::performZoomToFitCanvas(StatusUpdate statusUpdate) {
    const model::PaintProject* active = activeProject();
    if (!active || m_canvasViewportSize.isEmpty()) return false;
    const double availableWidth = std::max(m_canvasViewportSize.width() - roomAroundCanvas, 1.0);
    const double availableHeight = std::max(m_canvasViewportSize.height() - roomAroundCanvas, 1.0);
    const double scale = std::clamp(std::min(availableWidth / std::max(active->canvasWidth, 1.0),
                                             availableHeight / std::max(active->canvasHeight, 1.0)),
                                    model::minimumZoomScale, model::maximumZoomScale);
    // Nothing is pending any more when observers of the scale hear of it.
    if (m_pendingZoomToFitProjectID == active->id) m_pendingZoomToFitProjectID.reset();
    editSettings([scale](model::PaintAppSettings& settings) { settings.zoomScale = scale; });
    m_zoomToFitRequestID = QUuid::createUuid();
    Q_EMIT zoomToFitRequested();
    if (statusUpdate == StatusUpdate::shown) setStatusMessage(tr("Zoomed to fit canvas"));
    return true;
}

void ProjectStore::zoomToFitCanvasWhenReady(QUuid projectID) {
    m_pendingZoomToFitProjectID = projectID;
    if (m_activeProjectID == projectID) performZoomToFitCanvas(StatusUpdate::silent);
}

} // namespace quillabrae::store
