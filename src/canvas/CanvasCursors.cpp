// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasCursors.h"

#include <QPainter>
#include <QPixmap>

#include <variant>

namespace quillabrae::canvas {
namespace {

/// A magnifying glass with a plus or a minus, black with a white casing.
QCursor magnifier(bool zoomsOut) {
    constexpr int side = 24;
    constexpr int center = 10;
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto& [color, width] : {std::pair(Qt::white, 4.0), std::pair(Qt::black, 1.8)}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawEllipse(QPointF(center, center), 6.5, 6.5);
        painter.drawLine(QPointF(15.5, 15.5), QPointF(20.5, 20.5));
        painter.drawLine(QPointF(center - 3.0, center), QPointF(center + 3.0, center));
        if (!zoomsOut) {
            painter.drawLine(QPointF(center, center - 3.0), QPointF(center, center + 3.0));
        }
    }
    painter.end();
    return QCursor(pixmap, center, center);
}

Qt::CursorShape resizeShape(SelectionHandle handle) {
    switch (handle) {
        case SelectionHandle::topLeft:
        case SelectionHandle::bottomRight:
            return Qt::SizeFDiagCursor;
        case SelectionHandle::topRight:
        case SelectionHandle::bottomLeft:
            return Qt::SizeBDiagCursor;
        case SelectionHandle::top:
        case SelectionHandle::bottom:
            return Qt::SizeVerCursor;
        case SelectionHandle::left:
        case SelectionHandle::right:
            return Qt::SizeHorCursor;
    }
    return Qt::ArrowCursor;
}

Qt::CursorShape draftHandleShape(const DraftHandle& handle) {
    if (const auto* side = std::get_if<SelectionHandle>(&handle.action)) return resizeShape(*side);
    const auto* axis = std::get_if<TextDraftResizeAxis>(&handle.action);
    if (axis == nullptr) return Qt::SizeAllCursor;
    switch (*axis) {
        case TextDraftResizeAxis::horizontal:
            return Qt::SizeHorCursor;
        case TextDraftResizeAxis::vertical:
            return Qt::SizeVerCursor;
        case TextDraftResizeAxis::both:
            return Qt::SizeFDiagCursor;
    }
    return Qt::ArrowCursor;
}

} // namespace

std::optional<QCursor> grabCursor(const GrabTarget& target) {
    if (target.draftHandle != nullptr) return draftHandleShape(*target.draftHandle);
    if (target.isText) return Qt::IBeamCursor;
    if (target.selectionHandle) return resizeShape(*target.selectionHandle);
    return std::nullopt;
}

QCursor toolCursor(model::PaintTool tool, PointerIntent intent) {
    using model::PaintTool;
    if (intent == PointerIntent::panning) return Qt::ClosedHandCursor;
    if (intent == PointerIntent::readyToPan) return Qt::OpenHandCursor;
    switch (tool) {
        case PaintTool::pan:
            return Qt::OpenHandCursor;
        case PaintTool::zoom:
            return magnifier(intent == PointerIntent::useToolBackwards);
        case PaintTool::text:
            return Qt::IBeamCursor;
        case PaintTool::moveSelection:
        case PaintTool::moveSelectedPixels:
            return Qt::SizeAllCursor;
        default:
            return Qt::CrossCursor;
    }
}

} // namespace quillabrae::canvas
