// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"

#include <QPointF>
#include <QString>

#include <array>
#include <optional>
#include <span>

namespace quillabrae::shell {

/// A colour as hue, saturation and brightness, each 0 to 1. Without saturation the hue is 0,
/// without brightness the saturation too.
struct HueColor {
    double hue = 0.0;
    double saturation = 0.0;
    double brightness = 0.0;
};

HueColor toHueColor(const model::ColorValue& color);
model::ColorValue toColorValue(const HueColor& color, double alpha);

/// One number of a colour, as its slider shows and writes it.
struct ColorComponent {
    const char* heading;
    const char* label;
    const char* title;
    /// The number runs from 0 to this.
    int scale;
    /// The component between 0 and 1.
    double (*read)(const model::ColorValue& color);
    model::ColorValue (*write)(const model::ColorValue& color, double component);

    /// The component as a whole number.
    int value(const model::ColorValue& color) const;
    /// The colour with this number in place; numbers outside the range count as its end.
    model::ColorValue withValue(const model::ColorValue& color, double value) const;
};

/// In the order of the panel; those of one heading follow each other.
std::span<const ColorComponent> colorComponents();

constexpr std::size_t commonColorCount = 18;
/// The colours that are one press away.
const std::array<model::ColorValue, commonColorCount>& commonColors();

/// A disc of hue by angle, clockwise from the right, and saturation by distance from the centre.
struct ColorWheel {
    QPointF center;
    double radius = 1.0;

    /// The colour at a point, at the brightness and alpha of another. Beyond the rim it is that of
    /// the rim.
    model::ColorValue colorAt(QPointF point, const model::ColorValue& current) const;
    QPointF markerPosition(const model::ColorValue& color) const;
};

/// "#RRGGBB", with "AA" behind it where the colour is not opaque.
QString hexText(const model::ColorValue& color);
/// Reads three, six or eight hexadecimal digits, with or without the mark before them. Without
/// digits for alpha that of `current` stays.
std::optional<model::ColorValue> colorFromHex(const QString& text,
                                              const model::ColorValue& current);

} // namespace quillabrae::shell
