// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/looks/Style.h"

#include <QColor>
#include <QHash>
#include <QImage>

#include <algorithm>
#include <cmath>

namespace quillabrae::shell {

inline double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

/// The relative luminance of the web's accessibility guidelines.
inline double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

inline double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

/// What a colour that is not opaque makes of the one under it.
inline QColor over(const QColor& top, const QColor& under) {
    const double alpha = top.alphaF();
    const auto mix = [alpha](double a, double b) { return a * alpha + b * (1.0 - alpha); };
    return QColor::fromRgbF(static_cast<float>(mix(top.redF(), under.redF())),
                            static_cast<float>(mix(top.greenF(), under.greenF())),
                            static_cast<float>(mix(top.blueF(), under.blueF())));
}

/// The guidelines' bounds for texts, and for marks and edges.
inline double leastTextContrast(Contrast contrast) {
    return contrast == Contrast::high ? 7.0 : 4.5;
}
inline double leastMarkContrast(Contrast contrast) {
    return contrast == Contrast::high ? 7.0 : 3.0;
}

/// The colour that most of a picture has; of an empty one none.
inline QColor groundOf(const QImage& picture) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    return most == counts.end() ? QColor() : QColor::fromRgb(most.key());
}

/// How far the ink of a picture stands out from its ground: by the one of its pixels that does so
/// most, since letters have soft edges.
inline double inkContrast(const QImage& picture) {
    const QColor ground = groundOf(picture);
    double best = 1.0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            best = std::max(best, contrast(picture.pixelColor(x, y), ground));
    }
    return best;
}

} // namespace quillabrae::shell
