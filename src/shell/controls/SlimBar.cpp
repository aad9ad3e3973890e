// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/SlimBar.h"

#include "shell/looks/Style.h"

#include <QEasingCurve>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

constexpr int steps = 1000;
constexpr int barHeight = 6;
constexpr double pieceLength = 0.25;
constexpr qint64 swingMilliseconds = 2000;

} // namespace

SlimBar::SlimBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setFixedHeight(barHeight);
    m_clock.start();
}

void SlimBar::showFraction(double fraction) {
    setRange(0, fraction < 0.0 ? 0 : steps);
    setValue(static_cast<int>(std::min(fraction, 1.0) * steps));
    update();
}

void SlimBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fill(painter, 0.0, 1.0, Style::line(palette()));
    const bool hasSteps = maximum() > 0;
    const double length = hasSteps ? double(value()) / maximum() : pieceLength;
    fill(painter, hasSteps ? 0.0 : swing() * (1.0 - length), length, Style::accent(palette()));
}

double SlimBar::swing() const {
    const double phase = double(m_clock.elapsed() % swingMilliseconds) / swingMilliseconds;
    return QEasingCurve(QEasingCurve::InOutSine)
        .valueForProgress(1.0 - std::abs(1.0 - 2.0 * phase));
}

void SlimBar::fill(QPainter& painter, double start, double length, const QColor& color) const {
    const double radius = height() / 2.0;
    painter.setBrush(color);
    const double near = layoutDirection() == Qt::RightToLeft ? 1.0 - start - length : start;
    painter.drawRoundedRect(QRectF(near * width(), 0.0, length * width(), height()), radius,
                            radius);
}

} // namespace quillabrae::shell
