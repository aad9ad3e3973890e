// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/SelectionGrid.h"

#include "raster/DecodeCache.h"
#include "raster/MaskKernels.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {

std::optional<QRectF> integralRect(const model::PixelSelection& selection) {
    const double farX = selection.x + selection.width;
    const double farY = selection.y + selection.height;
    if (!std::isfinite(selection.x) || !std::isfinite(farX) || !std::isfinite(selection.y) ||
        !std::isfinite(farY))
        return std::nullopt;
    return QRectF(
        QPointF(std::floor(std::min(selection.x, farX)), std::floor(std::min(selection.y, farY))),
        QPointF(std::ceil(std::max(selection.x, farX)), std::ceil(std::max(selection.y, farY))));
}

SelectionGrid::SelectionGrid(const model::PixelSelection& selection, const QRectF& rect,
                             QPointF origin)
    : m_left(rect.x() - origin.x()),
      m_top(rect.y() - origin.y()),
      m_columns(std::max(rect.width(), 1.0)),
      m_rows(std::max(rect.height(), 1.0)) {
    if (selection.maskPNGData) m_mask = decodedImage(*selection.maskPNGData);
}

void SelectionGrid::fillRow(int y, std::span<std::uint8_t> cells) const {
    std::ranges::fill(cells, std::uint8_t{0});
    const double row = y - m_top;
    if (!(row >= 0.0 && row < m_rows)) return;
    const auto count = static_cast<double>(cells.size());
    const auto first = static_cast<std::size_t>(std::clamp(m_left, 0.0, count));
    const auto end = static_cast<std::size_t>(std::clamp(m_left + m_columns, 0.0, count));
    if (first >= end) return;
    const std::span<std::uint8_t> inside = cells.subspan(first, end - first);
    if (m_mask.isNull()) {
        std::ranges::fill(inside, std::uint8_t{255});
        return;
    }
    const std::uint8_t* pixels = m_mask.row(static_cast<int>(std::min(row, m_mask.height() - 1.0)));
    const auto width = static_cast<std::size_t>(m_mask.width());
    const auto column = static_cast<std::size_t>(
        std::min(static_cast<double>(first) - m_left, static_cast<double>(width - 1)));
    const std::size_t own = std::min(inside.size(), width - column);
    selectedCells(pixels + 4 * column, inside.data(), own);
    if (own == inside.size()) return;
    const bool isLastSelected = pixels[4 * width - 1] > greatestUnselectedAlpha;
    std::ranges::fill(inside.subspan(own), static_cast<std::uint8_t>(isLastSelected ? 255 : 0));
}

} // namespace quillabrae::raster
