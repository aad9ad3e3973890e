// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/CanvasInput.h"
#include "model/CanvasPoint.h"
#include "model/PaintProject.h"
#include "model/PixelSelection.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>

namespace quillabrae::canvas {

/// The least empty margin, in screen points, beyond the interactive view on each side.
constexpr double canvasPadding = 520.0;
/// The margin, in screen points, between the interactive view's edge and the canvas, which keeps
/// handles on the canvas's edge within reach.
constexpr double selectionHandleGutter = 18.0;
/// How far beyond the viewport, in screen points, the canvas counts as visible.
constexpr double visibleCanvasMargin = 96.0;

/// The selection in force: the outline, else the floating pixels at (0, 0), else the whole canvas
/// when that is selected.
std::optional<model::PixelSelection> currentSelection(const model::PaintProject& project);

/// Whether `point` lies in `rect`, whose right and bottom edges are outside it.
bool containsPoint(const QRectF& rect, QPointF point);

/// Where everything stands: the canvas inside the interactive view, and that inside the document.
///
/// Three spaces, all with their origin at the top left and y downwards: canvas pixels
/// (`CanvasPoint`); the interactive view's screen points; and document screen points, the
/// interactive view's plus its padding. `zoom` is screen points for each canvas pixel, above 0.
struct CanvasGeometry {
    double canvasWidth = 0.0;
    double canvasHeight = 0.0;
    /// The right and bottom edges of the current selection; the canvas's own when there is none.
    double selectionMaxX = 0.0;
    double selectionMaxY = 0.0;
    QSizeF viewportSize{0.0, 0.0};

    static CanvasGeometry of(const model::PaintProject& project, QSizeF viewportSize);

    /// The interactive view grows to the right and downwards with a selection that overhangs the
    /// canvas there, never to the left or upwards.
    double interactiveViewWidth(double zoom) const;
    double interactiveViewHeight(double zoom) const;
    double horizontalCanvasPadding(double zoom) const;
    double verticalCanvasPadding(double zoom) const;
    QPointF canvasPaddings(double zoom) const;
    /// The interactive view in document coordinates.
    QRectF interactiveViewRect(double zoom) const;
    /// The canvas's top left corner in document coordinates.
    QPointF canvasDocumentOrigin(double zoom) const;
    QSizeF documentViewSize(double zoom) const;

    /// The surface under a point in document coordinates.
    Surface surfaceAt(QPointF documentPoint, double zoom) const;
    /// A point in document coordinates in the surface's own.
    QPointF localPoint(Surface surface, QPointF documentPoint, double zoom) const;
    /// From interactive view coordinates; not rounded.
    model::CanvasPoint unclampedCanvasPoint(QPointF point, double zoom) const;
    /// The same, held to the canvas.
    model::CanvasPoint clampedCanvasPoint(QPointF point, double zoom) const;
    /// From document coordinates; not rounded.
    model::CanvasPoint unclampedCanvasPointFromWorkspace(QPointF point, double zoom) const;
    /// The inverse of `unclampedCanvasPoint`.
    QPointF interactiveViewPoint(model::CanvasPoint point, double zoom) const;
    /// Whether a point in interactive view coordinates is over the canvas.
    bool isCanvasLocation(QPointF point, double zoom) const;
    model::CanvasPoint clamped(model::CanvasPoint point) const;

    /// The visible part of the document with a margin, relative to the canvas's top left corner, in
    /// screen points. Without clip bounds the viewport counts as unscrolled.
    QRectF visibleCanvasScreenRect(const std::optional<QRectF>& clipBounds, QSizeF size,
                                   double zoom) const;
    /// The same in canvas pixels; all zero for a zoom that is not positive.
    QRectF visibleCanvasPixelRect(const std::optional<QRectF>& clipBounds, QSizeF size,
                                  double zoom) const;
};

} // namespace quillabrae::canvas
