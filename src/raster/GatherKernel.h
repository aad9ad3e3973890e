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

private:
    std::span<const std::int32_t> m_index;
    /// For each eight: the stretch's first pixel, and the places within it. Empty
    /// where a stretch is too short.
    std::vector<std::int32_t> m_first;
    std::vector<std::int32_t> m_place;
    bool m_isWithinEight = false;
};

} // namespace quillabrae::raster
