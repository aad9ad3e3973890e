// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QRegion>

namespace quillabrae::canvas {

class CanvasView;

/// Draws what the drafts of the active project show over the canvas: the text with its caret and
/// selection, the boxes and their handles. `canvasOrigin` is the canvas's top left corner in the
/// painter's coordinates.
void paintDrafts(QPainter& painter, const CanvasView& view, QPointF canvasOrigin,
                 const QColor& accent);

/// Where that shows, in the same coordinates.
QRegion draftRegion(const CanvasView& view, QPointF canvasOrigin);

/// The caret of the text draft, in the same coordinates; null without one.
QRectF draftCaretRect(const CanvasView& view, QPointF canvasOrigin);

} // namespace quillabrae::canvas
