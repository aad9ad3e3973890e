// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/TooltipBubble.h"

#include "shell/looks/Style.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace quillabrae::shell {
namespace {

constexpr int widestText = 260;
constexpr int gap = 6;
constexpr int fadeInTime = 120;
constexpr int fadeOutTime = 80;

QLabel* wrappedLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setFixedWidth(std::min(widestText, label->fontMetrics().horizontalAdvance(text) + 4));
    return label;
}

QPoint besides(const QRect& anchor, const QSize& size, HoverTooltipPlacement placement) {
    const int centered = anchor.center().x() - size.width() / 2;
    const int above = anchor.top() - gap - size.height();
    switch (placement) {
        case HoverTooltipPlacement::below:
            return {centered, anchor.bottom() + gap};
        case HoverTooltipPlacement::above:
            return {centered, above};
        case HoverTooltipPlacement::aboveLeading:
            return {anchor.left(), above};
        case HoverTooltipPlacement::aboveTrailing:
            return {anchor.right() + 1 - size.width(), above};
        case HoverTooltipPlacement::trailing:
            return {anchor.right() + gap, anchor.center().y() - size.height() / 2};
    }
    return {};
}

/// The same where a line of text goes in that direction.
QPoint besides(const QRect& anchor, const QSize& size, HoverTooltipPlacement placement,
               Qt::LayoutDirection direction) {
    const QRect leftToRight(besides(anchor, size, placement), size);
    // Turned about the control, what is centred stays where it is.
    return QStyle::visualRect(direction, anchor, leftToRight).topLeft();
}

} // namespace

TooltipBubble::TooltipBubble(const HoverTooltipText& text, QWidget* window)
    : QWidget(window), m_opacity(new QGraphicsOpacityEffect(this)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGraphicsEffect(m_opacity);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 7, 10, 8);
    layout->setSpacing(2);
    QLabel* title = wrappedLabel(text.title, this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    title->setFixedWidth(
        std::min(widestText, title->fontMetrics().horizontalAdvance(text.title) + 4));
    layout->addWidget(title);
    if (!text.description.isEmpty()) {
        QLabel* description = wrappedLabel(text.description, this);
        QPalette muted = description->palette();
        muted.setColor(QPalette::WindowText, Style::mutedText(muted));
        description->setPalette(muted);
        layout->addWidget(description);
    }
    adjustSize();
}

void TooltipBubble::place(const QRect& anchor, HoverTooltipPlacement placement) {
    constexpr int margin = 4;
    const QPoint wanted = besides(anchor, size(), placement, layoutDirection());
    const QSize room = parentWidget()->size() - size();
    move(std::clamp(wanted.x(), margin, std::max(margin, room.width() - margin)),
         std::clamp(wanted.y(), margin, std::max(margin, room.height() - margin)));
}

void TooltipBubble::fadeIn() {
    m_opacity->setOpacity(0.0);
    show();
    raise();
    auto* fade = new QPropertyAnimation(m_opacity, "opacity", this);
    fade->setDuration(fadeInTime);
    fade->setEndValue(1.0);
    fade->setEasingCurve(QEasingCurve::OutQuad);
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

void TooltipBubble::fadeOut() {
    auto* fade = new QPropertyAnimation(m_opacity, "opacity", this);
    fade->setDuration(fadeOutTime);
    fade->setEndValue(0.0);
    fade->setEasingCurve(QEasingCurve::OutQuad);
    connect(fade, &QAbstractAnimation::finished, this, &QObject::deleteLater);
    fade->start();
}

void TooltipBubble::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Style::line(palette()));
    painter.setBrush(palette().color(QPalette::ToolTipBase));
    const QRectF card = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(card, Style::cornerRadius, Style::cornerRadius);
}

} // namespace quillabrae::shell
