// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/CanvasWidgetScroller.h"

#include <QAbstractScrollArea>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace quillabrae::canvas {
namespace {

constexpr int lineStep = 20;

void setRange(QScrollBar& bar, double documentLength, int viewportLength) {
    // A document of just the viewport's size, give or take rounding, does not scroll.
    constexpr double tolerance = 0.01;
    const double room = documentLength - viewportLength - tolerance;
    bar.setRange(0, std::max(static_cast<int>(std::ceil(room)), 0));
    bar.setPageStep(viewportLength);
    bar.setSingleStep(lineStep);
}

double followed(const QScrollBar& bar, double position) {
    return bar.value() == std::lround(position) ? position : bar.value();
}

} // namespace

QRectF CanvasWidgetScroller::clipBounds() const {
    return {m_origin, QSizeF(m_area.viewport()->size())};
}

void CanvasWidgetScroller::setClipBoundsOrigin(QPointF origin) {
    m_origin = origin;
    const QScopedValueRollback setting(m_isSettingBars, true);
    m_area.horizontalScrollBar()->setValue(static_cast<int>(std::lround(origin.x())));
    m_area.verticalScrollBar()->setValue(static_cast<int>(std::lround(origin.y())));
}

void CanvasWidgetScroller::setDocumentSize(QSizeF size) {
    m_documentSize = size;
    updateRanges();
}

void CanvasWidgetScroller::updateRanges() {
    const QSize viewport = m_area.viewport()->size();
    setRange(*m_area.horizontalScrollBar(), m_documentSize.width(), viewport.width());
    setRange(*m_area.verticalScrollBar(), m_documentSize.height(), viewport.height());
}

void CanvasWidgetScroller::barsMoved() {
    if (m_isSettingBars) return;
    m_origin = {followed(*m_area.horizontalScrollBar(), m_origin.x()),
                followed(*m_area.verticalScrollBar(), m_origin.y())};
}

} // namespace quillabrae::canvas
