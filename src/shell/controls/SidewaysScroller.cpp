// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SidewaysScroller.h"

#include "shell/controls/ScrollHints.h"

#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>

namespace quillabrae::shell {

SidewaysScroller::SidewaysScroller(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    new ScrollHints(*this);
}

QSize SidewaysScroller::sizeHint() const {
    return widget()->sizeHint();
}

void SidewaysScroller::turn(const QWheelEvent& wheel) {
    const QPoint way = wheel.angleDelta();
    // The bar counts from where text begins.
    const int sideways = layoutDirection() == Qt::RightToLeft ? -way.x() : way.x();
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(bar->value() - (sideways != 0 ? sideways : way.y()) / 2);
}

void SidewaysScroller::bringIntoSight(const QWidget& part, int edge) {
    const QRect row = widget()->rect();
    const QRect place(part.mapTo(widget(), QPoint()), part.size());
    // As the bar counts: from where text begins.
    const QRect counted = QStyle::visualRect(layoutDirection(), row, place)
                              .adjusted(-edge, 0, edge, 0)
                              .intersected(row);
    QScrollBar* bar = horizontalScrollBar();
    const int last = counted.right() + 1 - viewport()->width();
    bar->setValue(std::min(std::max(bar->value(), last), counted.left()));
}

bool SidewaysScroller::focusNextPrevChild(bool next) {
    if (!QScrollArea::focusNextPrevChild(next)) return false;
    const QWidget* reached = focusWidget();
    if (reached != nullptr && widget()->isAncestorOf(reached)) bringIntoSight(*reached);
    return true;
}

bool SidewaysScroller::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

void SidewaysScroller::wheelEvent(QWheelEvent* event) {
    turn(*event);
    event->accept();
}

} // namespace quillabrae::shell
