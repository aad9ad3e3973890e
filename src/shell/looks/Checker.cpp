// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/Checker.h"

#include <QPainter>
#include <QPalette>

namespace quillabrae::shell {

void paintLabelChecker(QPainter& painter, const QRect& area, const QPalette& palette) {
    constexpr int cell = 6;
    constexpr double strength = 0.08;
    QColor wash = palette.color(QPalette::WindowText);
    wash.setAlphaF(static_cast<float>(strength));
    for (int row = 0; row * cell < area.height(); ++row) {
        for (int column = row % 2; column * cell < area.width(); column += 2) {
            const QRect square(area.left() + column * cell, area.top() + row * cell, cell, cell);
            painter.fillRect(square & area, wash);
        }
    }
}

} // namespace quillabrae::shell
