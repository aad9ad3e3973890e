// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionHandle.h"

#include "canvas/CanvasGeometry.h"
#include "model/WholePixelRect.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

/// What a handle is made of: -1 for the left or top edge, 1 for the right or bottom one, 0 where
/// the handle stands in the middle and moves neither.
struct HandleRow {
    const char* name;
    int horizontal;
    int vertical;
};

constexpr std::array<HandleRow, 8> rows{{
    {"topLeft", -1, -1},
    {"top", 0, -1},
    {"topRight", 1, -1},
    {"right", 1, 0},
    {"bottomRight", 1, 1},
    {"bottom", 0, 1},
    {"bottomLeft", -1, 1},
    {"left", -1, 0},
}};

const HandleRow& rowOf(SelectionHandle handle) {
    return rows.at(static_cast<std::size_t>(handle));
}

double along(double low, double length, int side) {
    return low + length * (side + 1) / 2.0;
}

/// The rectangle of that size which has, of `rect`, the point opposite the handle.
QRectF anchoredOpposite(const QRectF& rect, const HandleRow& row, double width, double height) {
    const double x = along(rect.left(), rect.width(), -row.horizontal);
    const double y = along(rect.top(), rect.height(), -row.vertical);
    return {x - width * (1 - row.horizontal) / 2.0, y - height * (1 - row.vertical) / 2.0, width,
            height};
}

QRectF withRatioKept(const QRectF& rect, const HandleRow& row, const QRectF& resized) {
    const double ratio = rect.width() / rect.height();
    const double widthChange = std::abs(resized.width() - rect.width());
    const double heightChange = std::abs(resized.height() - rect.height());
    const bool isCorner = row.horizontal != 0 && row.vertical != 0;
    const bool widthLeads = isCorner ? heightChange <= widthChange : row.vertical == 0;
    const double width = widthLeads ? resized.width() : std::max(ratio * resized.height(), 1.0);
    const double height = widthLeads ? std::max(resized.width() / ratio, 1.0) : resized.height();
    return anchoredOpposite(rect, row, width, height);
}

} // namespace

QString name(SelectionHandle handle) {
    return QString::fromLatin1(rowOf(handle).name);
}

QPointF handlePoint(SelectionHandle handle, const QRectF& rect) {
    const HandleRow& row = rowOf(handle);
    return {along(rect.left(), rect.width(), row.horizontal),
            along(rect.top(), rect.height(), row.vertical)};
}

std::optional<SelectionDragMode> selectionDragMode(QPointF point, const QRectF& rect) {
    constexpr double half = selectionHandleHitSize / 2.0;
    for (const SelectionHandle handle : allSelectionHandles) {
        const QPointF anchor = handlePoint(handle, rect);
        const QRectF hitSquare(anchor - QPointF(half, half),
                               QSizeF(selectionHandleHitSize, selectionHandleHitSize));
        if (containsPoint(hitSquare, point)) return SelectionDragMode{handle};
    }
    if (containsPoint(rect, point)) return SelectionDragMode{};
    return std::nullopt;
}

QRectF resizedRect(const QRectF& rect, SelectionHandle handle, QPointF translation,
                   AspectRatio aspectRatio) {
    const HandleRow& row = rowOf(handle);
    double left = rect.left();
    double top = rect.top();
    double right = rect.right();
    double bottom = rect.bottom();
    if (row.horizontal < 0) left = std::min(left + translation.x(), right - 1.0);
    if (row.horizontal > 0) right = std::max(right + translation.x(), left + 1.0);
    if (row.vertical < 0) top = std::min(top + translation.y(), bottom - 1.0);
    if (row.vertical > 0) bottom = std::max(bottom + translation.y(), top + 1.0);
    const QRectF resized(left, top, right - left, bottom - top);
    if (aspectRatio == AspectRatio::free || !(rect.width() > 0.0) || !(rect.height() > 0.0))
        return resized;
    return withRatioKept(rect, row, resized);
}

QRectF rectOf(const model::PixelSelection& selection) {
    return {selection.x, selection.y, selection.width, selection.height};
}

model::PixelSelection withRect(const model::PixelSelection& selection, const QRectF& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height(), selection.maskPNGData};
}

model::PixelSelection truncatedSelection(const model::PixelSelection& selection,
                                         const QRectF& rect) {
    return withRect(selection, model::wholePixelRect(rect));
}

QRectF draggedRect(const QRectF& start, SelectionDragMode mode, QPointF translation,
                   AspectRatio aspectRatio) {
    const QRectF dragged =
        (mode.isMove() ? start.translated(translation)
                       : resizedRect(start, *mode.handle, translation, aspectRatio))
            .normalized();
    return {std::round(dragged.x()), std::round(dragged.y()),
            std::max(std::round(dragged.width()), 1.0),
            std::max(std::round(dragged.height()), 1.0)};
}

} // namespace quillabrae::canvas
