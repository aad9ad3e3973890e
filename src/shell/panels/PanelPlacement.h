// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace quillabrae::shell {

enum class PanelCorner { topLeft, topRight, bottomLeft, bottomRight };

/// Where a floating panel stands, so that it keeps its place when the window or the panel changes
/// its size: how far, in points, the panel's corner is from the same corner of the room.
struct PanelPlace {
    PanelCorner corner = PanelCorner::topLeft;
    QPoint distance;

    friend bool operator==(const PanelPlace&, const PanelPlace&) = default;
};

/// The corner on the other side.
PanelCorner mirrored(PanelCorner corner);

/// How near panels come to the edges of their room, in points.
constexpr int panelMargin = 12;

/// The panel inside the room, moved there where its place is outside. A panel that is larger than
/// the room shows its top left.
QRect panelRect(const PanelPlace& place, QSize panel, QSize room);

/// `rect` moved into the room.
QRect insideRoom(QRect rect, QSize room);

/// The place of a panel that stands at `rect`, by the corner of the room that it is nearest to.
PanelPlace panelPlace(const QRect& rect, QSize room);

} // namespace quillabrae::shell
