// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SidewaysScroller.h"

#include "shell/controls/ScrollHints.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace quillabrae::shell {

SidewaysScroller::SidewaysScroller(QWidget* content, QWidget* parent) : ControlScroller(parent) {
    setWidget(content);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Expanding);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    new ScrollHints(*this);
}

QSize SidewaysScroller::sizeHint() const {
    return widget()->sizeHint();
}

bool SidewaysScroller::hasMore() const {
    return horizontalScrollBar()->maximum() > 0;
}

void SidewaysScroller::turn(const QWheelEvent& wheel) {
    const QPoint way = wheel.angleDelta();
    // The bar counts from where text begins.
    const int sideways = layoutDirection() == Qt::RightToLeft ? -way.x() : way.x();
    QScrollBar* bar = horizontalScrollBar();
    bar->setValue(bar->value() - (sideways != 0 ? sideways : way.y()) / 2);
}

void SidewaysScroller::wheelEvent(QWheelEvent* event) {
    turn(*event);
    event->accept();
}

} // namespace quillabrae::shell
