// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "canvas/Scroller.h"

class QAbstractScrollArea;
class QScrollBar;

namespace quillabrae::canvas {

/// The scroller over a scroll area's two bars. The bars count whole screen points; the origin
/// itself is exact.
class CanvasWidgetScroller final : public Scroller {
public:
    /// The area outlives its scroller.
    explicit CanvasWidgetScroller(QAbstractScrollArea& area) : m_area(area) {}

    QRectF clipBounds() const override;
    void setClipBoundsOrigin(QPointF origin) override;
    QSizeF documentSize() const override { return m_documentSize; }
    void setDocumentSize(QSizeF size) override;

    /// To be called when the viewport has another size.
    void updateRanges();
    /// To be called when the bars have moved by whatever means: takes their values over.
    void barsMoved();

private:
    QAbstractScrollArea& m_area;
    QPointF m_origin;
    QSizeF m_documentSize{0.0, 0.0};
    bool m_isSettingBars = false;
};

} // namespace quillabrae::canvas
