// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasGeometry.h"

#include <algorithm>

namespace quillabrae::canvas {

using model::CanvasPoint;
using model::PixelSelection;

std::optional<PixelSelection> currentSelection(const model::PaintProject& project) {
    if (project.pixelSelection) return project.pixelSelection;
    if (const auto& floating = project.floatingSelection) {
        return PixelSelection{0.0, 0.0, floating->width, floating->height, std::nullopt};
    }
    if (!project.isCanvasSelected) return std::nullopt;
    return PixelSelection{0.0, 0.0, project.canvasWidth, project.canvasHeight, std::nullopt};
}

bool containsPoint(const QRectF& rect, QPointF point) {
    return point.x() >= rect.left() && point.x() < rect.left() + rect.width() &&
           point.y() >= rect.top() && point.y() < rect.top() + rect.height();
}

CanvasGeometry CanvasGeometry::of(const model::PaintProject& project, QSizeF viewportSize) {
    CanvasGeometry geometry;
    geometry.canvasWidth = project.canvasWidth;
    geometry.canvasHeight = project.canvasHeight;
    geometry.selectionMaxX = project.canvasWidth;
    geometry.selectionMaxY = project.canvasHeight;
    geometry.viewportSize = viewportSize;
    if (const auto selection = currentSelection(project)) {
        geometry.selectionMaxX = std::max(selection->x, selection->x + selection->width);
        geometry.selectionMaxY = std::max(selection->y, selection->y + selection->height);
    }
    return geometry;
}

double CanvasGeometry::interactiveViewWidth(double zoom) const {
    return zoom * std::max(canvasWidth, selectionMaxX) + 2.0 * selectionHandleGutter;
}

double CanvasGeometry::interactiveViewHeight(double zoom) const {
    return zoom * std::max(canvasHeight, selectionMaxY) + 2.0 * selectionHandleGutter;
}

double CanvasGeometry::horizontalCanvasPadding(double zoom) const {
    return std::max(canvasPadding, (viewportSize.width() - interactiveViewWidth(zoom)) / 2.0);
}

double CanvasGeometry::verticalCanvasPadding(double zoom) const {
    return std::max(canvasPadding, (viewportSize.height() - interactiveViewHeight(zoom)) / 2.0);
}

QPointF CanvasGeometry::canvasPaddings(double zoom) const {
    return {horizontalCanvasPadding(zoom), verticalCanvasPadding(zoom)};
}

QRectF CanvasGeometry::interactiveViewRect(double zoom) const {
    return {canvasPaddings(zoom), QSizeF(interactiveViewWidth(zoom), interactiveViewHeight(zoom))};
}

QPointF CanvasGeometry::canvasDocumentOrigin(double zoom) const {
    return canvasPaddings(zoom) + QPointF(selectionHandleGutter, selectionHandleGutter);
}

QSizeF CanvasGeometry::documentViewSize(double zoom) const {
    return {interactiveViewWidth(zoom) + 2.0 * horizontalCanvasPadding(zoom),
            interactiveViewHeight(zoom) + 2.0 * verticalCanvasPadding(zoom)};
}

Surface CanvasGeometry::surfaceAt(QPointF documentPoint, double zoom) const {
    return containsPoint(interactiveViewRect(zoom), documentPoint) ? Surface::interactiveView
                                                                   : Surface::workspace;
}

QPointF CanvasGeometry::localPoint(Surface surface, QPointF documentPoint, double zoom) const {
    return surface == Surface::workspace ? documentPoint : documentPoint - canvasPaddings(zoom);
}

CanvasPoint CanvasGeometry::unclampedCanvasPoint(QPointF point, double zoom) const {
    return {(point.x() - selectionHandleGutter) / zoom, (point.y() - selectionHandleGutter) / zoom};
}

CanvasPoint CanvasGeometry::clampedCanvasPoint(QPointF point, double zoom) const {
    return clamped(unclampedCanvasPoint(point, zoom));
}

CanvasPoint CanvasGeometry::unclampedCanvasPointFromWorkspace(QPointF point, double zoom) const {
    return unclampedCanvasPoint(point - canvasPaddings(zoom), zoom);
}

QPointF CanvasGeometry::interactiveViewPoint(CanvasPoint point, double zoom) const {
    return {point.x * zoom + selectionHandleGutter, point.y * zoom + selectionHandleGutter};
}

bool CanvasGeometry::isCanvasLocation(QPointF point, double zoom) const {
    const QPointF gutter(selectionHandleGutter, selectionHandleGutter);
    return containsPoint(QRectF(0.0, 0.0, canvasWidth * zoom, canvasHeight * zoom), point - gutter);
}

CanvasPoint CanvasGeometry::clamped(CanvasPoint point) const {
    return {std::clamp(point.x, 0.0, canvasWidth), std::clamp(point.y, 0.0, canvasHeight)};
}

QRectF CanvasGeometry::visibleCanvasScreenRect(const std::optional<QRectF>& clipBounds, QSizeF size,
                                               double zoom) const {
    const QRectF visible = clipBounds.value_or(QRectF(QPointF(), size));
    return visible.translated(-canvasDocumentOrigin(zoom))
        .adjusted(-visibleCanvasMargin, -visibleCanvasMargin, visibleCanvasMargin,
                  visibleCanvasMargin);
}

QRectF CanvasGeometry::visibleCanvasPixelRect(const std::optional<QRectF>& clipBounds, QSizeF size,
                                              double zoom) const {
    if (!(zoom > 0.0)) return {};
    const QRectF screen = visibleCanvasScreenRect(clipBounds, size, zoom);
    return {screen.x() / zoom, screen.y() / zoom, screen.width() / zoom, screen.height() / zoom};
}

} // namespace quillabrae::canvas
