// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/DraftHandles.h"

#include "canvas/CanvasGeometry.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace quillabrae::canvas {
namespace {

constexpr QSizeF shapeMark(8.0, 8.0);
constexpr const char* shapeTitle = QT_TRANSLATE_NOOP("DraftHandle", "Resize Shape");
constexpr const char* shapeText = QT_TRANSLATE_NOOP(
    "DraftHandle",
    "Drag this handle to resize the active shape. Hold Shift to preserve its proportions.");
constexpr const char* resizeTextTitle = QT_TRANSLATE_NOOP("DraftHandle", "Resize Text Area");

constexpr DraftHandle shapeHandle(SelectionHandle handle, const char* name, QPointF anchor) {
    return {DraftKind::shape, name, anchor, shapeMark, 1.0, handle, shapeTitle, shapeText};
}

constexpr std::array<DraftHandle, 8> shapeHandles{{
    shapeHandle(SelectionHandle::topLeft, "topLeft", {0.0, 0.0}),
    shapeHandle(SelectionHandle::top, "top", {0.5, 0.0}),
    shapeHandle(SelectionHandle::topRight, "topRight", {1.0, 0.0}),
    shapeHandle(SelectionHandle::right, "right", {1.0, 0.5}),
    shapeHandle(SelectionHandle::bottomRight, "bottomRight", {1.0, 1.0}),
    shapeHandle(SelectionHandle::bottom, "bottom", {0.5, 1.0}),
    shapeHandle(SelectionHandle::bottomLeft, "bottomLeft", {0.0, 1.0}),
    shapeHandle(SelectionHandle::left, "left", {0.0, 0.5}),
}};

constexpr std::array<DraftHandle, 4> textHandles{{
    {DraftKind::text, "move", QPointF(0.0, 0.0), QSizeF(10.0, 10.0), 2.0, DraftMove{},
     QT_TRANSLATE_NOOP("DraftHandle", "Move Text Area"),
     QT_TRANSLATE_NOOP("DraftHandle", "Drags the text area without changing its size.")},
    {DraftKind::text, "both", QPointF(1.0, 1.0), QSizeF(10.0, 10.0), 1.0, TextDraftResizeAxis::both,
     resizeTextTitle,
     QT_TRANSLATE_NOOP("DraftHandle",
                       "Drags the corner to change the text area width and height.")},
    {DraftKind::text, "horizontal", QPointF(1.0, 0.5), QSizeF(7.0, 22.0), 1.0,
     TextDraftResizeAxis::horizontal, resizeTextTitle,
     QT_TRANSLATE_NOOP("DraftHandle", "Drags the right edge to change the text area width.")},
    {DraftKind::text, "vertical", QPointF(0.5, 1.0), QSizeF(22.0, 7.0), 1.0,
     TextDraftResizeAxis::vertical, resizeTextTitle,
     QT_TRANSLATE_NOOP("DraftHandle", "Drags the bottom edge to change the text area height.")},
}};

} // namespace

QPointF DraftHandle::place(const QRectF& box) const {
    return {box.left() + box.width() * anchor.x(), box.top() + box.height() * anchor.y()};
}

QRectF DraftHandle::mark(const QRectF& box) const {
    QRectF rect(QPointF(), markSize);
    rect.moveCenter(place(box));
    return rect;
}

std::span<const DraftHandle> draftHandles(DraftKind draft) {
    if (draft == DraftKind::shape) return shapeHandles;
    return textHandles;
}

const DraftHandle* draftHandleNamed(DraftKind draft, const QString& name) {
    const std::span<const DraftHandle> handles = draftHandles(draft);
    const auto found = std::ranges::find_if(
        handles, [&](const DraftHandle& handle) { return name == QLatin1StringView(handle.name); });
    return found == handles.end() ? nullptr : &*found;
}

const DraftHandle* draftHandleAt(DraftKind draft, QPointF point, const QRectF& box) {
    const QSizeF leastHold(selectionHandleHitSize, selectionHandleHitSize);
    for (const DraftHandle& handle : draftHandles(draft)) {
        QRectF hold(QPointF(), handle.markSize.expandedTo(leastHold));
        hold.moveCenter(handle.place(box));
        if (containsPoint(hold, point)) return &handle;
    }
    return nullptr;
}

} // namespace quillabrae::canvas
