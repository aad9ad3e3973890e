// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/PanelPlacement.h"

#include <algorithm>

namespace quillabrae::shell {
namespace {

/// The distance between a panel and the room on one axis, from the near side.
int nearSide(int start, int extent, int room) {
    const int end = room - start - extent;
    return std::min(start, end);
}

bool isRight(PanelCorner corner) {
    return corner == PanelCorner::topRight || corner == PanelCorner::bottomRight;
}

bool isBottom(PanelCorner corner) {
    return corner == PanelCorner::bottomLeft || corner == PanelCorner::bottomRight;
}

PanelCorner cornerAt(bool right, bool bottom) {
    if (right) return bottom ? PanelCorner::bottomRight : PanelCorner::topRight;
    return bottom ? PanelCorner::bottomLeft : PanelCorner::topLeft;
}

/// Into the margins, where the room has space for them.
int insideAxis(int start, int extent, int room) {
    const int last = room - panelMargin - extent;
    if (last >= panelMargin) return std::clamp(start, panelMargin, last);
    return std::clamp(start, 0, std::max(0, room - extent));
}

} // namespace

PanelCorner mirrored(PanelCorner corner) {
    return cornerAt(!isRight(corner), isBottom(corner));
}

QRect insideRoom(QRect rect, QSize room) {
    rect.moveTopLeft({insideAxis(rect.x(), rect.width(), room.width()),
                      insideAxis(rect.y(), rect.height(), room.height())});
    return rect;
}

QRect panelRect(const PanelPlace& place, QSize panel, QSize room) {
    QPoint at = place.distance;
    if (isRight(place.corner)) at.setX(room.width() - panel.width() - at.x());
    if (isBottom(place.corner)) at.setY(room.height() - panel.height() - at.y());
    return insideRoom({at, panel}, room);
}

PanelPlace panelPlace(const QRect& rect, QSize room) {
    const bool right = 2 * rect.x() + rect.width() > room.width();
    const bool bottom = 2 * rect.y() + rect.height() > room.height();
    return {cornerAt(right, bottom),
            {nearSide(rect.x(), rect.width(), room.width()),
             nearSide(rect.y(), rect.height(), room.height())}};
}

} // namespace quillabrae::shell
