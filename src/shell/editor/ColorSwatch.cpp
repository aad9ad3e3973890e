// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/editor/ColorSwatch.h"

#include "shell/controls/FocusRing.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/looks/Style.h"

#include <QPainter>
#include <QPainterPath>

namespace quillabrae::shell {
namespace {

void paintChecker(QPainter& painter, const QRect& area) {
    constexpr int cell = 5;
    painter.fillRect(area, Qt::white);
    for (int y = 0; y * cell < area.height(); ++y) {
        for (int x = y % 2; x * cell < area.width(); x += 2) {
            painter.fillRect(QRect(area.left() + x * cell, area.top() + y * cell, cell, cell),
                             QColor(0xcc, 0xcc, 0xcc));
        }
    }
}

} // namespace

ColorSwatch::ColorSwatch(const QString& title, const QString& help, QWidget* parent)
    : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
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
    painter.setPen(isChecked() ? QPen(Style::accent(palette()), 2)
                               : QPen(Style::mutedText(palette())));
    painter.setBrush(Style::raised(palette()));
    painter.drawRoundedRect(frame, 5, 5);

    QPainterPath face;
    face.addRoundedRect(frame.adjusted(2.5, 2.5, -2.5, -2.5), 3, 3);
    painter.save();
    painter.setClipPath(face);
    if (m_color.alpha() < 255) paintChecker(painter, rect());
    painter.fillPath(face, m_color);
    painter.restore();
    if (hasFocus()) paintFocusRing(painter, frame, palette());
}

} // namespace quillabrae::shell
