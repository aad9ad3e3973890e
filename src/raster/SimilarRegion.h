// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/BitRows.h"
#include "raster/RasterImage.h"

#include <QPoint>
#include <QRect>

#include <cstdint>
#include <span>

namespace quillabrae::raster {

/// The pixels of a picture that are like the one at a seed (see SimilarPixels) and can be reached
/// from it over others like it, a step at a time to the left, right, up or down. The seed is one of
/// them.
class SimilarRegion {
public:
    /// `image` is not null, has at most `maximumImageSide` pixels a side, and holds `seed`.
    SimilarRegion(const RasterImage& image, QPoint seed, double matchPercentage);

    /// The smallest rect around the region.
    QRect bounds() const { return m_bounds; }

    /// cells.size() pixels of row `y` of the picture from column `x` on: 255 for the region, else
    /// 0.
    void fillRow(int x, int y, std::span<std::uint8_t> cells) const {
        cellsOfBits(m_selected.row(y), x, cells);
    }

private:
    BitRows m_selected;
    QRect m_bounds;
};

} // namespace quillabrae::raster
