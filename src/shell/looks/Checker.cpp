// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/looks/Checker.h"

#include <QPainter>
#include <QPalette>

namespace quillabrae::shell {
namespace {

/// Fills the cells whose row and column are both even or both odd.
void fillEvenCells(QPainter& painter, const QRect& area, int cell, const QColor& color) {
    for (int row = 0; row * cell < area.height(); ++row) {
        for (int column = row % 2; column * cell < area.width(); column += 2) {
            const QRect square(area.left() + column * cell, area.top() + row * cell, cell, cell);
            painter.fillRect(square & area, color);
        }
    }
}

} // namespace

void paintLabelChecker(QPainter& painter, const QRect& area, const QPalette& palette) {
    constexpr int cell = 6;
    constexpr float strength = 0.08F;
    QColor wash = palette.color(QPalette::WindowText);
    wash.setAlphaF(strength);
    fillEvenCells(painter, area, cell, wash);
}

void paintAlphaChecker(QPainter& painter, const QRect& area) {
    constexpr int cell = 4;
    painter.fillRect(area, Qt::white);
    fillEvenCells(painter, area, cell, QColor(0xcc, 0xcc, 0xcc));
}

} // namespace quillabrae::shell
