// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/BodyScroller.h"

#include <QEvent>
#include <QLayout>
#include <QResizeEvent>

namespace quillabrae::shell {

int ScrolledBody::heightForWidth(int width) const {
    return layout()->totalMinimumHeightForWidth(width);
}

BodyScroller::BodyScroller(ScrolledBody* body, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(body);
    viewport()->setAutoFillBackground(false);
    body->setAutoFillBackground(false);
}

QSize BodyScroller::sizeHint() const {
    return widget()->sizeHint().expandedTo(widget()->minimumSize());
}

QSize BodyScroller::minimumSizeHint() const {
    return widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
}

bool BodyScroller::hasHeightForWidth() const {
    return widget()->hasHeightForWidth();
}

int BodyScroller::heightForWidth(int width) const {
    return widget()->heightForWidth(width);
}

bool BodyScroller::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

void BodyScroller::resizeEvent(QResizeEvent* event) {
    // The bar at the side may lie over the body's margin, and makes no other one necessary.
    const bool isTooNarrow = minimumSizeHint().width() > width();
    setHorizontalScrollBarPolicy(isTooNarrow ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    QScrollArea::resizeEvent(event);
}

} // namespace quillabrae::shell
