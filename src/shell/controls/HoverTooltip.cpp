// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/HoverTooltip.h"

#include "shell/controls/TooltipBubble.h"

#include <QEvent>
#include <QTimerEvent>

#include <chrono>

namespace quillabrae::shell {
namespace {

constexpr std::chrono::seconds restingTime{2};

TooltipBubble* bubbleOf(const QPointer<QWidget>& widget) {
    return qobject_cast<TooltipBubble*>(widget.data());
}

} // namespace

HoverTooltip::HoverTooltip(QWidget* control, HoverTooltipText text, HoverTooltipPlacement placement)
    : QObject(control), m_control(control), m_placement(placement) {
    setText(std::move(text));
    control->installEventFilter(this);
}

HoverTooltip::~HoverTooltip() {
    delete m_bubble;
}

void HoverTooltip::setText(HoverTooltipText text) {
    m_text = std::move(text);
    m_control->setAccessibleName(m_text.title);
    m_control->setAccessibleDescription(m_text.description);
}

bool HoverTooltip::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter:
            hide();
            m_timer.start(static_cast<int>(std::chrono::milliseconds(restingTime).count()), this);
            break;
        case QEvent::Leave:
        case QEvent::Hide:
        case QEvent::MouseButtonPress:
        case QEvent::KeyPress:
        case QEvent::Wheel:
        case QEvent::WindowDeactivate:
            hide();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void HoverTooltip::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer.timerId()) return;
    m_timer.stop();
    show();
}

void HoverTooltip::show() {
    if (!m_control->isVisible()) return;
    QWidget* window = m_control->window();
    auto* bubble = new TooltipBubble(m_text, window);
    m_bubble = bubble;
    const QRect anchor(m_control->mapTo(window, QPoint()), m_control->size());
    bubble->place(anchor, m_placement);
    bubble->fadeIn();
}

void HoverTooltip::hide() {
    m_timer.stop();
    if (TooltipBubble* bubble = bubbleOf(m_bubble)) {
        m_bubble.clear();
        bubble->fadeOut();
    }
}

} // namespace quillabrae::shell
