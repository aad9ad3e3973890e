// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/BodyScroller.h"

#include "shell/controls/FocusRing.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>

namespace quillabrae::shell {

int ScrolledBody::heightForWidth(int width) const {
    return layout()->totalMinimumHeightForWidth(width);
}

BodyScroller::BodyScroller(ScrolledBody* body, QWidget* parent) : ControlScroller(parent) {
    setWidget(body);
    viewport()->setAutoFillBackground(false);
    body->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &BodyScroller::fitFocusPolicy);
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
    const bool isHandled = ControlScroller::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        fitBars();
        fitFocusPolicy();
    }
    return isHandled;
}

/// The bar at the side may lie over the body's margin, and makes no other one necessary.
void BodyScroller::fitBars() {
    const bool isTooNarrow = minimumSizeHint().width() > width();
    setHorizontalScrollBarPolicy(isTooNarrow ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

void BodyScroller::fitFocusPolicy() {
    const auto takesKeyboard = [this](const QWidget* part) {
        return (part->focusPolicy() & Qt::TabFocus) != 0 && part->isVisibleTo(widget()) &&
               part->isEnabledTo(widget());
    };
    const bool isOfTexts = std::ranges::none_of(widget()->findChildren<QWidget*>(), takesKeyboard);
    setFocusPolicy(hasMore() && isOfTexts ? Qt::TabFocus : Qt::NoFocus);
}

void BodyScroller::resizeEvent(QResizeEvent* event) {
    fitBars();
    ControlScroller::resizeEvent(event);
}

void BodyScroller::paintEvent(QPaintEvent* event) {
    ControlScroller::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, QRectF(viewport()->rect()).adjusted(1.0, 1.0, -1.0, -1.0), palette());
}

void BodyScroller::focusInEvent(QFocusEvent* event) {
    ControlScroller::focusInEvent(event);
    viewport()->update();
}

void BodyScroller::focusOutEvent(QFocusEvent* event) {
    ControlScroller::focusOutEvent(event);
    viewport()->update();
}

} // namespace quillabrae::shell
