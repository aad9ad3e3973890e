// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/welcome/ActionRow.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QEvent>
#include <QPainter>

namespace quillabrae::shell {
namespace {

constexpr int padding = 12;
constexpr int textStart = padding + Style::mediumIcon + 12;
constexpr int lineGap = 2;

} // namespace

ActionRow::ActionRow(Face face, QWidget* parent)
    : QAbstractButton(parent), m_face(std::move(face)) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setText(m_face.heading);
    const QString name = m_face.link.isEmpty() ? m_face.heading : m_face.link;
    new HoverTooltip(this, {name, m_face.help}, HoverTooltipPlacement::below);
    setFixedHeight(sizeHint().height());
}

QSize ActionRow::sizeHint() const {
    const int lines = lineCount();
    return {0, 2 * padding + lines * fontMetrics().height() + (lines - 1) * lineGap};
}

void ActionRow::paintEvent(QPaintEvent*) {
    if (m_icon.isNull()) m_icon = Symbols::icon(m_face.symbolName);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Style::line(palette()));
    painter.setBrush(isDown()       ? Style::pressed(palette())
                     : underMouse() ? Style::hover(palette())
                                    : palette().color(QPalette::Window));
    painter.drawRoundedRect(face, Style::grid, Style::grid);
    m_icon.paint(&painter, padding, padding, Style::mediumIcon, Style::mediumIcon);

    const int lineHeight = fontMetrics().height();
    QRect line(textStart, padding, width() - textStart - padding, lineHeight);
    const auto write = [&](const QString& text, const QColor& color, QFont::Weight weight) {
        QFont lineFont = font();
        lineFont.setWeight(weight);
        painter.setFont(lineFont);
        painter.setPen(color);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
        line.translate(0, lineHeight + lineGap);
    };
    write(m_face.heading, palette().color(QPalette::WindowText), QFont::DemiBold);
    write(m_face.text, Style::mutedText(palette()), QFont::Normal);
    if (!m_face.link.isEmpty()) {
        write(m_face.link, palette().color(QPalette::Link), QFont::Normal);
    }
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

void ActionRow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_icon = {};
    QAbstractButton::changeEvent(event);
}

void ActionRow::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void ActionRow::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
