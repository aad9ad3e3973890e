// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

namespace quillabrae::raster {

/// How much of each pixel lies inside the ellipse that touches the sides of the rect (0, 0, width,
/// height): the exact area, as a byte.
class EllipseCoverage {
public:
    /// A size without area, or one that is not finite, gives an ellipse of no pixels.
    EllipseCoverage(double width, double height);

    /// The coverage of the pixels 0 to alpha.size() - 1 of row `y`.
    void fillRow(int y, std::span<std::uint8_t> alpha) const;

private:
    double m_radiusX = 0.0;
    double m_radiusY = 0.0;
};

} // namespace quillabrae::raster
