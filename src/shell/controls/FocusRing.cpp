// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FocusRing.h"

#include "shell/looks/Style.h"

#include <QPainter>

namespace quillabrae::shell {

void paintFocusRing(QPainter& painter, const QRectF& face, const QPalette& palette) {
    constexpr qreal width = 2.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Style::accent(palette), width));
    const QRectF ring = face.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(ring, Style::cornerRadius - 1, Style::cornerRadius - 1);
}

} // namespace quillabrae::shell
