// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace quillabrae::canvas {

/// The scrolling viewport that the canvas stands in. Document coordinates are screen points from
/// the top left of the whole scrollable document.
class Scroller {
public:
    virtual ~Scroller() = default;

    /// The part of the document that shows: the scroll origin and the viewport's size.
    virtual QRectF clipBounds() const = 0;
    /// Scrolls at once, without animation. The caller keeps `origin` inside the document.
    virtual void setClipBoundsOrigin(QPointF origin) = 0;
    virtual QSizeF documentSize() const = 0;
    virtual void setDocumentSize(QSizeF size) = 0;
};

/// `origin` limited to where the clip stays inside the document.
QPointF limitedScrollOrigin(QPointF origin, QSizeF documentSize, QSizeF clipSize);

} // namespace quillabrae::canvas
