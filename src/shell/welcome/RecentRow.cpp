// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/RecentRow.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/TextSize.h"
#include "shell/controls/VisualPart.h"
#include "shell/looks/Style.h"

#include <QPainter>

namespace quillabrae::shell {
namespace {

constexpr int rowHeight = 41;
constexpr int padding = 8;
constexpr int removeExtent = 24;

} // namespace

RecentRow::RecentRow(const WelcomeContent::Recent& recent, QWidget* parent)
    : QAbstractButton(parent), m_title(recent.project.title), m_folder(recent.folder) {
    auto* remove = new IconButton({.symbolName = QStringLiteral("xmark"),
                                   .title = tr("Remove from recents"),
                                   .help = {},
                                   .extent = removeExtent,
                                   .iconExtent = Style::smallIcon,
                                   .tooltipPlacement = HoverTooltipPlacement::aboveTrailing},
                                  this);
    m_remove = remove;
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    TextSize::follow(*this, [this] { setFixedHeight(TextSize::rowHeight(*this, rowHeight, 2)); });
    setText(m_title);
    setAccessibleName(m_title);
    setAccessibleDescription(m_folder);
    connect(remove, &QAbstractButton::clicked, this, &RecentRow::removeRequested);
}

QSize RecentRow::sizeHint() const {
    return {0, height()};
}

int RecentRow::removeLeft() const {
    return width() - padding - removeExtent;
}

void RecentRow::resizeEvent(QResizeEvent*) {
    m_remove->setGeometry(visualPart(
        *this, {removeLeft(), (height() - removeExtent) / 2, removeExtent, removeExtent}));
}

void RecentRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (isDown() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? Style::pressed(palette()) : Style::hover(palette()));
        painter.drawRoundedRect(face, Style::cornerRadius, Style::cornerRadius);
    }
    const int lineHeight = fontMetrics().height();
    QRect line = visualPart(
        *this, {padding, (height() - 2 * lineHeight) / 2, removeLeft() - 2 * padding, lineHeight});
    const auto write = [&](const QString& text, const QColor& color, Qt::TextElideMode elide) {
        painter.setPen(color);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text, elide, line.width()));
        line.translate(0, lineHeight);
    };
    write(m_title, palette().color(QPalette::WindowText), Qt::ElideRight);
    write(m_folder, Style::mutedText(palette()), Qt::ElideMiddle);
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

void RecentRow::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void RecentRow::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
