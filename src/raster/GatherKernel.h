// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// Picking RGBA8 pixels out of a row, the same ones of many rows: to[i] =
/// from[index[i]].
///
/// Where eight consecutive indices lie within a stretch of sixteen pixels, as
/// in every enlargement and in reductions down to half the size, whole
/// stretches are loaded and put in order at once.
class RowGather {
public:
    /// Indices into rows of `sourceCount` pixels, in ascending order. They
    /// outlive this.
    RowGather(std::span<const std::int32_t> index, int sourceCount);

    /// `to` does not overlap the row.
    void operator()(const std::uint8_t* from, std::uint8_t* to) const;

    /// Writes at least to[first] to to[end - 1], and at most the eights that they lie in. The same
    /// pixels of the row `next` are fetched ahead, for rows that lie too far apart for the
    /// processor to foresee the next one.
    void gatherPart(const std::uint8_t* from, std::uint8_t* to, std::size_t first, std::size_t end,
                    const std::uint8_t* next) const;

private:
    std::span<const std::int32_t> m_index;
    /// For each eight: the stretch's first pixel, and the places within it. Empty
    /// where a stretch is too short.
    std::vector<std::int32_t> m_first;
    std::vector<std::int32_t> m_place;
    bool m_isWithinEight = false;
    /// How many consecutive indices share a cache line at the least.
    std::size_t m_pixelsPerLine = 1;
};

} // namespace quillabrae::raster
