// SPDX-License-Identifier: GPL-3.0-or-later
// Brightness is the largest component, saturation the spread of the components over it, and hue the
// place between the two largest ones on a circle on which red, yellow, green, cyan, blue and
// magenta lie a sixth apart.
#include "shell/panels/ColorComponents.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillabrae::shell {
namespace {

using model::ColorValue;

constexpr double fullTurn = 2.0 * std::numbers::pi;
constexpr double eightBits = 255.0;
constexpr int degrees = 360;
constexpr int percent = 100;

template <double ColorValue::*Field>
double component(const ColorValue& color) {
    return color.*Field;
}
template <double ColorValue::*Field>
ColorValue withComponent(const ColorValue& color, double value) {
    ColorValue changed = color;
    changed.*Field = value;
    return changed;
}
template <double HueColor::*Field>
double hueComponent(const ColorValue& color) {
    return toHueColor(color).*Field;
}
template <double HueColor::*Field>
ColorValue withHueComponent(const ColorValue& color, double value) {
    HueColor changed = toHueColor(color);
    changed.*Field = value;
    return toColorValue(changed, color.alpha);
}

constexpr ColorComponent plain(const char* heading, const char* label, const char* title,
                               double (*read)(const ColorValue&),
                               ColorValue (*write)(const ColorValue&, double)) {
    return {heading, label, title, static_cast<int>(eightBits), read, write};
}

constexpr std::array components{
    plain(QT_TRANSLATE_NOOP("ColorComponent", "RGB"), QT_TRANSLATE_NOOP("ColorComponent", "R:"),
          QT_TRANSLATE_NOOP("ColorComponent", "Red"), component<&ColorValue::red>,
          withComponent<&ColorValue::red>),
    plain(QT_TRANSLATE_NOOP("ColorComponent", "RGB"), QT_TRANSLATE_NOOP("ColorComponent", "G:"),
          QT_TRANSLATE_NOOP("ColorComponent", "Green"), component<&ColorValue::green>,
          withComponent<&ColorValue::green>),
    plain(QT_TRANSLATE_NOOP("ColorComponent", "RGB"), QT_TRANSLATE_NOOP("ColorComponent", "B:"),
          QT_TRANSLATE_NOOP("ColorComponent", "Blue"), component<&ColorValue::blue>,
          withComponent<&ColorValue::blue>),
    ColorComponent{QT_TRANSLATE_NOOP("ColorComponent", "HSV"),
                   QT_TRANSLATE_NOOP("ColorComponent", "H:"),
                   QT_TRANSLATE_NOOP("ColorComponent", "Hue"), degrees,
                   hueComponent<&HueColor::hue>, withHueComponent<&HueColor::hue>},
    ColorComponent{QT_TRANSLATE_NOOP("ColorComponent", "HSV"),
                   QT_TRANSLATE_NOOP("ColorComponent", "S:"),
                   QT_TRANSLATE_NOOP("ColorComponent", "Saturation"), percent,
                   hueComponent<&HueColor::saturation>, withHueComponent<&HueColor::saturation>},
    ColorComponent{QT_TRANSLATE_NOOP("ColorComponent", "HSV"),
                   QT_TRANSLATE_NOOP("ColorComponent", "V:"),
                   QT_TRANSLATE_NOOP("ColorComponent", "Value"), percent,
                   hueComponent<&HueColor::brightness>, withHueComponent<&HueColor::brightness>},
    plain(QT_TRANSLATE_NOOP("ColorComponent", "Alpha"), QT_TRANSLATE_NOOP("ColorComponent", "A:"),
          QT_TRANSLATE_NOOP("ColorComponent", "Alpha"), component<&ColorValue::alpha>,
          withComponent<&ColorValue::alpha>),
};

QString twoDigits(double value) {
    return QStringLiteral("%1").arg(qRound(value * eightBits), 2, 16, QLatin1Char('0')).toUpper();
}

} // namespace

HueColor toHueColor(const ColorValue& color) {
    const double high = std::max({color.red, color.green, color.blue});
    const double low = std::min({color.red, color.green, color.blue});
    const double spread = high - low;
    if (!(high > 0.0)) return {};
    if (!(spread > 0.0)) return {0.0, 0.0, high};
    double sixths = 0.0;
    if (high == color.red)
        sixths = (color.green - color.blue) / spread + (color.green < color.blue ? 6.0 : 0.0);
    else if (high == color.green)
        sixths = (color.blue - color.red) / spread + 2.0;
    else
        sixths = (color.red - color.green) / spread + 4.0;
    return {sixths / 6.0, spread / high, high};
}

ColorValue toColorValue(const HueColor& color, double alpha) {
    // Each component falls away from its own hue between a sixth and a third of the circle.
    const auto falling = [&color](double offset) {
        const double sixths = std::fmod(offset + color.hue * 6.0, 6.0);
        const double away = std::clamp(std::min(sixths, 4.0 - sixths), 0.0, 1.0);
        return color.brightness * (1.0 - color.saturation * away);
    };
    return {falling(5.0), falling(3.0), falling(1.0), alpha};
}

int ColorComponent::value(const ColorValue& color) const {
    return static_cast<int>(std::lround(read(color) * scale));
}

ColorValue ColorComponent::withValue(const ColorValue& color, double value) const {
    return write(color, std::clamp(value / scale, 0.0, 1.0));
}

std::span<const ColorComponent> colorComponents() {
    return components;
}

const std::array<ColorValue, commonColorCount>& commonColors() {
    static constexpr std::array<ColorValue, commonColorCount> colors{{
        {0.0, 0.0, 0.0},
        {1.0, 1.0, 1.0},
        {0.55, 0.55, 0.55},
        {0.9, 0.05, 0.12},
        {1.0, 0.55, 0.05},
        {1.0, 0.9, 0.08},
        {0.16, 0.68, 0.22},
        {0.02, 0.78, 0.72},
        {0.04, 0.36, 0.86},
        {0.45, 0.16, 0.88},
        {0.96, 0.18, 0.62},
        {0.45, 0.28, 0.12},
        {1.0, 0.72, 0.72},
        {1.0, 0.84, 0.55},
        {0.74, 0.96, 0.52},
        {0.6, 0.92, 1.0},
        {0.72, 0.7, 1.0},
        {1.0, 0.68, 0.92},
    }};
    return colors;
}

ColorValue ColorWheel::colorAt(QPointF point, const ColorValue& current) const {
    const QPointF offset = point - center;
    const double distance = std::hypot(offset.x(), offset.y());
    const double angle = std::atan2(offset.y(), offset.x());
    HueColor color = toHueColor(current);
    color.hue = (angle < 0.0 ? angle + fullTurn : angle) / fullTurn;
    color.saturation = std::min(distance, radius) / radius;
    return toColorValue(color, current.alpha);
}

QPointF ColorWheel::markerPosition(const ColorValue& color) const {
    const HueColor shown = toHueColor(color);
    const double angle = fullTurn * shown.hue;
    const double distance = radius * shown.saturation;
    return center + QPointF(distance * std::cos(angle), distance * std::sin(angle));
}

QString hexText(const ColorValue& color) {
    const QString text =
        QLatin1Char('#') + twoDigits(color.red) + twoDigits(color.green) + twoDigits(color.blue);
    return color.alpha < 1.0 ? text + twoDigits(color.alpha) : text;
}

std::optional<ColorValue> colorFromHex(const QString& text, const ColorValue& current) {
    static const QRegularExpression form(
        QStringLiteral("^\\s*#?([0-9A-Fa-f]{3}|[0-9A-Fa-f]{6}|[0-9A-Fa-f]{8})\\s*$"));
    const auto match = form.match(text);
    if (!match.hasMatch()) return std::nullopt;
    QString digits = match.captured(1);
    if (digits.size() == 3) {
        const QString each = digits;
        digits.clear();
        for (const QChar digit : each) digits += QString(2, digit);
    }
    const auto part = [&digits](qsizetype index) {
        return digits.mid(2 * index, 2).toInt(nullptr, 16) / eightBits;
    };
    return ColorValue{part(0), part(1), part(2), digits.size() == 8 ? part(3) : current.alpha};
}

} // namespace quillabrae::shell
