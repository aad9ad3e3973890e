// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/CanvasStage.h"

#include "canvas/CanvasOverlays.h"
#include "canvas/CanvasRenderer.h"

#include <QPainter>

#include <utility>

namespace quillabrae::replay {

using canvas::DragValue;
using canvas::Surface;

void ScriptScroller::setDocumentSize(QSizeF size) {
    m_documentSize = size;
    m_origin = canvas::limitedScrollOrigin(m_origin, m_documentSize, clipSize);
}

CanvasStage::CanvasStage(store::ProjectStore& store, VirtualTime& time)
    : m_host(store), m_timers(time), m_view(m_host, m_timers, m_pointer) {
    canvas::feedCanvas(m_view, store, m_connections);
    m_view.setScroller(&m_scroller);
    m_view.setViewportSize(m_scroller.clipSize);
}

void CanvasStage::setViewportSize(QSizeF size) {
    m_scroller.clipSize = size;
    m_view.setViewportSize(size);
}

QPointF CanvasStage::moveTo(QPointF at, Space space) {
    const double zoom = m_view.currentZoom();
    const canvas::CanvasGeometry geometry = m_view.geometry();
    if (space == Space::canvas) at = geometry.interactiveViewPoint({at.x(), at.y()}, zoom);
    if (space != Space::workspace) at += geometry.canvasPaddings(zoom);
    m_pointer.location = at - m_scroller.clipBounds().topLeft();
    return at;
}

DragValue CanvasStage::dragValue(QPointF at, Space space) {
    return DragValue::between(m_drag->startLocation,
                              m_view.localPoint(m_drag->surface, moveTo(at, space)));
}

void CanvasStage::press(QPointF at, Space space) {
    const Surface surface =
        space == Space::workspace ? Surface::workspace : Surface::interactiveView;
    m_drag = Drag{surface, m_view.localPoint(surface, moveTo(at, space))};
    m_view.dragChanged(surface, dragValue(at, space));
}

void CanvasStage::drag(QPointF at, Space space) {
    m_view.dragChanged(m_drag->surface, dragValue(at, space));
}

void CanvasStage::release(QPointF at, Space space) {
    const DragValue value = dragValue(at, space);
    m_view.dragEnded(std::exchange(m_drag, std::nullopt)->surface, value);
}

raster::RasterImage CanvasStage::picture() const {
    const QColor accent(Qt::blue);
    const QSize size = m_scroller.clipSize.toSize();
    const canvas::CanvasFrame frame = m_view.frame(1.0);
    if (size.isEmpty() || frame.project == nullptr) return {};
    const QRect all(QPoint(), size);
    raster::RasterImage image(size.width(), size.height());
    QImage target = image.paintTarget();
    QPainter painter(&target);
    canvas::CanvasRenderer().paint(painter, frame, all);
    canvas::CanvasOverlays overlays;
    overlays.prepare(frame, m_view.overlays());
    if (overlays.hasAnts()) {
        painter.end();
        const QImage under = target.convertToFormat(QImage::Format_RGB32);
        painter.begin(&target);
        overlays.paintAnts(painter, under, overlays.antsRegion() & all, 0, accent);
    }
    overlays.paintMarks(painter, accent);
    painter.end();
    return image;
}

} // namespace quillabrae::replay
