// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/CanvasPoint.h"
#include "model/ColorValue.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillabrae::raster {

/// A colour that changes from one point to another and stays as it is before and beyond.
class LinearGradient {
public:
    /// The points must lie apart.
    LinearGradient(model::CanvasPoint from, const model::ColorValue& fromColor,
                   model::CanvasPoint to, const model::ColorValue& toColor);

    bool isOpaque() const { return m_from[3] == 255.0F && m_change[3] == 0.0F; }

    /// The premultiplied colours of pixels (x, y) to (x + count - 1, y).
    void writePixels(std::uint8_t* pixels, int x, int y, std::size_t count) const;

private:
    model::CanvasPoint m_start;
    /// The part of the way that a pixel to the right and one down add.
    double m_right = 0.0;
    double m_down = 0.0;
    /// Red, green, blue and alpha, 0 to 255, at the start and from there to the end.
    std::array<float, 4> m_from{};
    std::array<float, 4> m_change{};
};

} // namespace quillabrae::raster
