// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/IconButton.h"

#include "shell/controls/FocusRing.h"
#include "shell/looks/Style.h"
#include "shell/looks/Symbols.h"

#include <QEvent>
#include <QPainter>

namespace quillabrae::shell {

IconButton::IconButton(const Face& face, QWidget* parent)
    : QAbstractButton(parent),
      m_symbolName(face.symbolName),
      m_help(face.help),
      m_tooltip(new HoverTooltip(this, {face.title, face.help}, face.tooltipPlacement)),
      m_extent(face.extent),
      m_iconExtent(face.iconExtent) {
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(m_extent, m_extent);
}

QSize IconButton::sizeHint() const {
    return {m_extent, m_extent};
}

void IconButton::setSymbolName(const QString& symbolName) {
    if (symbolName == m_symbolName) return;
    m_symbolName = symbolName;
    m_icon = {};
    update();
}

void IconButton::setTitle(const QString& title) {
    m_tooltip->setText({title, m_help});
}

QColor IconButton::faceColor() const {
    if (isDown()) return Style::pressed(palette());
    if (isChecked()) return Style::accentWash(palette());
    return isEnabled() && underMouse() ? Style::hover(palette()) : QColor(Qt::transparent);
}

void IconButton::paintEvent(QPaintEvent*) {
    if (m_icon.isNull()) m_icon = Symbols::icon(m_symbolName);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setBrush(faceColor());
    painter.setPen(isChecked() ? QPen(Style::accent(palette())) : QPen(Qt::NoPen));
    painter.drawRoundedRect(face, 5, 5);
    QRect iconRect(0, 0, m_iconExtent, m_iconExtent);
    iconRect.moveCenter(rect().center());
    painter.setOpacity(isEnabled() ? 1.0 : Style::disabledStrength);
    m_icon.paint(&painter, iconRect);
    painter.setOpacity(1.0);
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

void IconButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) m_icon = {};
    QAbstractButton::changeEvent(event);
}

void IconButton::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void IconButton::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
