// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PixelSelection.h"
#include "raster/RasterImage.h"

#include <QPointF>
#include <QRectF>

#include <cstdint>
#include <optional>
#include <span>

namespace quillabrae::raster {

/// The selection's rect, outward to whole numbers; nothing for one that is not finite.
std::optional<QRectF> integralRect(const model::PixelSelection& selection);

/// A selection as cells of one pixel on a grid that begins at `origin` (whole numbers).
///
/// The pixels of a mask lie on the whole pixels of the rect one for one; a mask that is smaller
/// repeats its last row and column. Without a readable mask all of the rect is selected.
class SelectionGrid {
public:
    /// `rect` is the selection's `integralRect`.
    SelectionGrid(const model::PixelSelection& selection, const QRectF& rect, QPointF origin);

    /// Row `y` of the grid: 255 where selected, else 0.
    void fillRow(int y, std::span<std::uint8_t> cells) const;

private:
    RasterImage m_mask;
    /// In cells of the grid.
    double m_left;
    double m_top;
    double m_columns;
    double m_rows;
};

} // namespace quillabrae::raster
