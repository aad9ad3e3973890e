// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ColorSwatch.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/looks/Checker.h"
#include "shell/looks/Style.h"

#include <QPainter>
#include <QPainterPath>

namespace quillabrae::shell {

ColorSwatch::ColorSwatch(const QString& title, const QString& help, QWidget* parent)
    : QWidget(parent) {
    new HoverTooltip(this, {title, help}, HoverTooltipPlacement::trailing);
}

void ColorSwatch::setColor(const QColor& color) {
    if (color == m_color) return;
    m_color = color;
    update();
}

void ColorSwatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Style::mutedText(palette()));
    painter.setBrush(Style::raised(palette()));
    painter.drawRoundedRect(frame, 5, 5);

    QPainterPath face;
    face.addRoundedRect(frame.adjusted(2.5, 2.5, -2.5, -2.5), 3, 3);
    painter.setClipPath(face);
    if (m_color.alpha() < 255) paintAlphaChecker(painter, rect());
    painter.fillPath(face, m_color);
}

ColorButton::ColorButton(const QColor& color, const QString& title, QWidget* parent)
    : QAbstractButton(parent), m_color(color) {
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(extent, extent);
    new HoverTooltip(this, {title, {}}, HoverTooltipPlacement::above);
    setAccessibleDescription(color.name().toUpper());
}

void ColorButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF face = QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0);
    QPainterPath outline;
    outline.addRoundedRect(face, 3, 3);
    if (m_color.alpha() < 255) {
        painter.save();
        painter.setClipPath(outline);
        paintAlphaChecker(painter, rect());
        painter.restore();
    }
    painter.fillPath(outline, m_color);
    painter.strokePath(outline, framePen());
    if (hasFocus()) paintFocusRing(painter, face, palette());
}

QPen ColorButton::framePen() const {
    if (isChecked()) return {Style::accent(palette()), 2};
    return {underMouse() ? palette().color(QPalette::WindowText) : Style::line(palette()), 1};
}

void ColorButton::enterEvent(QEnterEvent* event) {
    update();
    QAbstractButton::enterEvent(event);
}

void ColorButton::leaveEvent(QEvent* event) {
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace quillabrae::shell
