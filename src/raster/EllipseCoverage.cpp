// SPDX-License-Identifier: GPL-3.0-or-later
// On the unit circle, with s(v) = sqrt(1 - v^2), the strip v0 <= v <= v1 holds to the left of x
// (counted from the circle's middle) the area H(x) = integral of clamp(x, -s(v), s(v)) dv. A pixel
// from x0 to x1 has the coverage radiusX * radiusY * (H(x1) - H(x0)).
#include "raster/EllipseCoverage.h"

#include "raster/BlendKernels.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

double halfChord(double v) {
    return std::sqrt(std::max(1.0 - v * v, 0.0));
}

/// The integral of s from 0 to v.
double chordIntegral(double v) {
    return (v * halfChord(v) + std::asin(v)) / 2.0;
}

/// A row of pixels in the space of the unit circle, clipped to it.
struct Strip {
    double top;
    double bottom;
    double topIntegral;
    double bottomIntegral;

    Strip(double from, double to)
        : top(from),
          bottom(to),
          topIntegral(chordIntegral(from)),
          bottomIntegral(chordIntegral(to)) {}

    double areaLeftOf(double x) const {
        const double reach = std::min(std::abs(x), 1.0);
        const double cut = halfChord(reach);
        const double low = std::clamp(top, -cut, cut);
        const double high = std::clamp(bottom, -cut, cut);
        const double area = reach * (high - low) + (chordIntegral(low) - topIntegral) +
                            (bottomIntegral - chordIntegral(high));
        return x < 0.0 ? -area : area;
    }
};

/// Pixels from `first` up to but not including `end`.
struct Columns {
    int first;
    int end;
};

Columns columnsBetween(double first, double end, int count) {
    const double limit = count;
    return {static_cast<int>(std::clamp(first, 0.0, limit)),
            static_cast<int>(std::clamp(end, 0.0, limit))};
}

} // namespace

EllipseCoverage::EllipseCoverage(double width, double height) {
    if (!(width > 0.0 && height > 0.0) || !std::isfinite(width) || !std::isfinite(height)) return;
    m_radiusX = width / 2.0;
    m_radiusY = height / 2.0;
}

void EllipseCoverage::fillRow(int y, std::span<std::uint8_t> alpha) const {
    std::ranges::fill(alpha, std::uint8_t{0});
    if (!(m_radiusX > 0.0 && m_radiusY > 0.0)) return;
    const double top = y / m_radiusY - 1.0;
    const double bottom = (y + 1.0) / m_radiusY - 1.0;
    if (top >= 1.0 || bottom <= -1.0) return;

    // Pixels outside the widest chord of the row are empty, those inside the narrowest are full.
    const double widest =
        m_radiusX *
        halfChord(top * bottom <= 0.0 ? 0.0 : std::min(std::abs(top), std::abs(bottom)));
    const double narrowest = m_radiusX * halfChord(std::max(std::abs(top), std::abs(bottom)));
    const int count = static_cast<int>(alpha.size());
    const Columns touched =
        columnsBetween(std::floor(m_radiusX - widest), std::ceil(m_radiusX + widest), count);
    const Columns full =
        columnsBetween(std::ceil(m_radiusX - narrowest), std::floor(m_radiusX + narrowest), count);

    const Strip strip(std::max(top, -1.0), std::min(bottom, 1.0));
    const auto fillPartial = [&](int first, int end) {
        if (first >= end) return;
        double left = strip.areaLeftOf(first / m_radiusX - 1.0);
        for (int x = first; x < end; ++x) {
            const double right = strip.areaLeftOf((x + 1.0) / m_radiusX - 1.0);
            const double covered = m_radiusX * m_radiusY * (right - left);
            alpha[static_cast<std::size_t>(x)] = unitByte(covered);
            left = right;
        }
    };
    if (full.first >= full.end) {
        fillPartial(touched.first, touched.end);
        return;
    }
    fillPartial(touched.first, full.first);
    std::ranges::fill(alpha.subspan(static_cast<std::size_t>(full.first),
                                    static_cast<std::size_t>(full.end - full.first)),
                      std::uint8_t{255});
    fillPartial(full.end, touched.end);
}

} // namespace quillabrae::raster
