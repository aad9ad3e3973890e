// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/GradientSlider.h"

#include "shell/looks/Checker.h"
#include "shell/looks/Style.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

namespace quillabrae::shell {
namespace {

constexpr int sliderHeight = 18;
constexpr int trackHeight = 8;
constexpr double handleRadius = 6.0;
constexpr int handleRoom = 7;

} // namespace

GradientSlider::GradientSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setFixedHeight(sliderHeight);
    // As the wheel, the track is the same in every language.
    setLayoutDirection(Qt::LeftToRight);
    setMinimumWidth(60);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // The canvas keeps the keyboard when the slider is dragged.
    setFocusPolicy(Qt::TabFocus);
}

void GradientSlider::setTrack(const QGradientStops& stops) {
    if (stops == m_track) return;
    m_track = stops;
    update();
}

int GradientSlider::valueAt(double x) const {
    return QStyle::sliderValueFromPosition(minimum(), maximum(), qRound(x) - handleRoom,
                                           width() - 2 * handleRoom);
}

void GradientSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    setSliderDown(true);
    setSliderPosition(valueAt(event->position().x()));
}

void GradientSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) setSliderPosition(valueAt(event->position().x()));
}

void GradientSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) setSliderDown(false);
}

void GradientSlider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect track(handleRoom - trackHeight / 2, (height() - trackHeight) / 2,
                      width() - 2 * handleRoom + trackHeight, trackHeight);
    QPainterPath face;
    face.addRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);
    QLinearGradient colors(handleRoom, 0.0, width() - handleRoom, 0.0);
    colors.setStops(m_track);
    painter.save();
    painter.setClipPath(face);
    paintAlphaChecker(painter, track);
    painter.fillPath(face, colors);
    painter.restore();
    painter.setPen(Style::line(palette()));
    painter.drawPath(face);

    const double at = handleRoom + QStyle::sliderPositionFromValue(minimum(), maximum(), value(),
                                                                   width() - 2 * handleRoom);
    const bool isFocused = hasFocus();
    painter.setBrush(Qt::white);
    painter.setPen(QPen(isFocused ? Style::accent(palette()) : QColor(0x50, 0x55, 0x5b),
                        isFocused ? 2.5 : 1.2));
    painter.drawEllipse(QPointF(at, height() / 2.0), handleRadius - 0.6, handleRadius - 0.6);
}

} // namespace quillabrae::shell
