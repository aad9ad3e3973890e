// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/Card.h"

#include "shell/looks/Style.h"

#include <QPainter>

namespace quillabrae::shell {

void paintCard(QPainter& painter, const QRect& rect, const QPalette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Style::line(palette));
    painter.setBrush(Style::raised(palette));
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Style::grid, Style::grid);
}

} // namespace quillabrae::shell
