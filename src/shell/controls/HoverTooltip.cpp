// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/HoverTooltip.h"

#include "shell/controls/TooltipBubble.h"

#include <QEvent>
#include <QMouseEvent>
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

void HoverTooltip::setParts(std::function<std::optional<HoverTooltipPart>(QPoint)> partAt) {
    m_partAt = std::move(partAt);
    m_control->setMouseTracking(true);
}

void HoverTooltip::await() {
    hide();
    m_timer.start(static_cast<int>(std::chrono::milliseconds(restingTime).count()), this);
}

void HoverTooltip::followPointer(QPoint at) {
    const auto part = m_partAt(at);
    if (part.has_value() == m_part.has_value() && (!part || part->area == m_part->area)) return;
    m_part = part;
    if (m_part)
        await();
    else
        hide();
}

bool HoverTooltip::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter:
            if (!m_partAt) await();
            break;
        case QEvent::MouseMove:
            if (m_partAt) followPointer(static_cast<QMouseEvent*>(event)->position().toPoint());
            break;
        case QEvent::Leave:
            m_part.reset();
            hide();
            break;
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
    auto* bubble = new TooltipBubble(m_part ? m_part->text : m_text, window);
    m_bubble = bubble;
    const QRect area = m_part ? m_part->area : m_control->rect();
    const QRect anchor(m_control->mapTo(window, area.topLeft()), area.size());
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
