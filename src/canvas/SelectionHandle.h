// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PixelSelection.h"

#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>
#include <optional>

/// The handles of a selection's rectangle: where they stand and what dragging them does.
namespace quillabrae::canvas {

enum class SelectionHandle {
    topLeft,
    top,
    topRight,
    right,
    bottomRight,
    bottom,
    bottomLeft,
    left,
};

/// In the order in which a press tries them.
inline constexpr std::array allSelectionHandles{
    SelectionHandle::topLeft,    SelectionHandle::top,         SelectionHandle::topRight,
    SelectionHandle::right,      SelectionHandle::bottomRight, SelectionHandle::bottom,
    SelectionHandle::bottomLeft, SelectionHandle::left,
};

QString name(SelectionHandle handle);

/// The side of the square, in screen points, that takes a press on a handle.
constexpr double selectionHandleHitSize = 12.0;

/// Where the handle stands on `rect`: on a corner, or in the middle of an edge.
QPointF handlePoint(SelectionHandle handle, const QRectF& rect);

/// What a drag of the selection does: a handle's resize, or a move for none.
struct SelectionDragMode {
    std::optional<SelectionHandle> handle;

    bool isMove() const { return !handle; }

    friend bool operator==(const SelectionDragMode&, const SelectionDragMode&) = default;
};

/// What a press at `point` begins, for a selection whose rectangle is `rect`, both in screen points
/// of one space. None away from the rectangle and its handles.
std::optional<SelectionDragMode> selectionDragMode(QPointF point, const QRectF& rect);

enum class AspectRatio { free, kept };

/// `rect` after its handle was dragged by `translation`, all in canvas pixels. An edge stops one
/// pixel short of the opposite one. With the aspect ratio kept, the opposite corner stays in its
/// place, or the middle of the opposite edge.
QRectF resizedRect(const QRectF& rect, SelectionHandle handle, QPointF translation,
                   AspectRatio aspectRatio);

QRectF rectOf(const model::PixelSelection& selection);

/// `selection` at another place and size, with the mask it has.
model::PixelSelection withRect(const model::PixelSelection& selection, const QRectF& rect);

/// The selection on whole canvas pixels, each edge's distance cut off towards zero, and at least
/// one pixel in size.
model::PixelSelection truncatedSelection(const model::PixelSelection& selection,
                                         const QRectF& rect);

/// The rectangle after a drag by `translation` (canvas pixels), rounded to whole pixels.
QRectF draggedRect(const QRectF& start, SelectionDragMode mode, QPointF translation,
                   AspectRatio aspectRatio);

} // namespace quillabrae::canvas
