// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/HueWheel.h"

#include "shell/controls/HoverTooltip.h"
#include "shell/looks/Style.h"
#include "shell/panels/ColorComponents.h"

#include <QConicalGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {
namespace {

/// Room around the disc for the focus ring and half of the marker.
constexpr double rim = 4.0;
constexpr double markerRadius = 5.0;
constexpr double hueStep = 1.0 / 120.0;
constexpr double saturationStep = 0.02;
constexpr int hueStops = 6;

/// The disc at full brightness. Gradients run against the clock, hues with it.
QPixmap makeDisc(QPointF center, double radius, QSize size, double ratio) {
    QPixmap disc((QSizeF(size) * ratio).toSize());
    disc.setDevicePixelRatio(ratio);
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QConicalGradient hues(center, 0.0);
    for (int stop = 0; stop <= hueStops; ++stop) {
        const float place = static_cast<float>(stop) / hueStops;
        hues.setColorAt(1.0 - place, QColor::fromHsvF(std::fmod(place, 1.0F), 1.0F, 1.0F));
    }
    painter.setBrush(hues);
    painter.drawEllipse(center, radius, radius);
    QRadialGradient whiteness(center, radius);
    whiteness.setColorAt(0.0, Qt::white);
    whiteness.setColorAt(1.0, QColor(255, 255, 255, 0));
    painter.setBrush(whiteness);
    painter.drawEllipse(center, radius, radius);
    return disc;
}

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* wheel = qobject_cast<HueWheel*>(object);
    // Qt's cache of accessible interfaces owns what is returned.
    return wheel == nullptr ? nullptr : new HueWheelAccessible(wheel);
}

} // namespace

HueWheel::HueWheel(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(extent, extent);
    new HoverTooltip(this,
                     {tr("Hue and Saturation"),
                      tr("Sets the primary color's hue by the angle and its saturation "
                         "by the distance from the center.")},
                     HoverTooltipPlacement::above);
}

ColorWheel HueWheel::wheel() const {
    return {QPointF(width() / 2.0, height() / 2.0), width() / 2.0 - rim};
}

void HueWheel::showColor(const model::ColorValue& color) {
    if (color == m_color) return;
    m_color = color;
    update();
}

QString HueWheel::valueText() const {
    const HueColor shown = toHueColor(m_color);
    return tr("Hue %1, saturation %2 %")
        .arg(qRound(shown.hue * 360.0))
        .arg(qRound(shown.saturation * 100.0));
}

void HueWheel::pick(QPointF at) {
    Q_EMIT colorPicked(wheel().colorAt(at, m_color));
}

void HueWheel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) pick(event->position());
}

void HueWheel::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) pick(event->position());
}

void HueWheel::turn(double hue, double saturation) {
    HueColor color = toHueColor(m_color);
    color.hue = std::fmod(color.hue + hue + 1.0, 1.0);
    color.saturation = std::clamp(color.saturation + saturation, 0.0, 1.0);
    Q_EMIT colorPicked(toColorValue(color, m_color.alpha));
}

void HueWheel::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
            return turn(-hueStep, 0.0);
        case Qt::Key_Right:
            return turn(hueStep, 0.0);
        case Qt::Key_Up:
            return turn(0.0, saturationStep);
        case Qt::Key_Down:
            return turn(0.0, -saturationStep);
        default:
            QWidget::keyPressEvent(event);
    }
}

void HueWheel::paintEvent(QPaintEvent*) {
    const ColorWheel disc = wheel();
    if (m_disc.isNull() || m_disc.devicePixelRatio() != devicePixelRatioF())
        m_disc = makeDisc(disc.center, disc.radius, size(), devicePixelRatioF());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(0, 0, m_disc);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Style::line(palette()));
    painter.drawEllipse(disc.center, disc.radius, disc.radius);
    if (hasFocus()) {
        painter.setPen(QPen(Style::accent(palette()), 2.0));
        painter.drawEllipse(disc.center, disc.radius + 2.5, disc.radius + 2.5);
    }
    // Dark within light, to be seen on every hue.
    const QPointF marker = disc.markerPosition(m_color);
    painter.setPen(QPen(Qt::white, 3.0));
    painter.drawEllipse(marker, markerRadius, markerRadius);
    painter.setPen(QPen(Qt::black, 1.2));
    painter.drawEllipse(marker, markerRadius, markerRadius);
}

HueWheelAccessible::HueWheelAccessible(HueWheel* wheel)
    : QAccessibleWidget(wheel, QAccessible::ColorChooser) {}

QString HueWheelAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value) return qobject_cast<HueWheel*>(object())->valueText();
    return QAccessibleWidget::text(kind);
}

void HueWheelAccessible::install() {
    QAccessible::installFactory(makeAccessible);
}

} // namespace quillabrae::shell
