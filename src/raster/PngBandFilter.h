// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"
#include "raster/SparseBytes.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quillabrae::raster {

/// Makes the filtered rows of one band after another, with straight colours: the first row by Sub,
/// the others by Up. Where a row repeats the one above, as it does in most of a drawing or a
/// screenshot, its pixels are compared with those above and nothing else is done.
class PngBandFilter {
public:
    /// What is compared, and is live or not, as one.
    static constexpr std::size_t blockSize = 256;

    /// The filtered rows, each behind the number of its filter, of the `rowCount` rows from
    /// `firstRow` on; valid until the next call. The live ranges depend on the pixels alone.
    SparseBytes filter(const RasterImage& image, int firstRow, int rowCount);

private:
    void prepare(std::size_t stride, int rowCount);
    void filterFirstRow(const std::uint8_t* row);
    void filterRowBelow(const std::uint8_t* row, int index);
    void addLive(ByteRange range);

    std::size_t m_stride = 0;
    std::size_t m_blocksOfRow = 0;
    std::vector<std::uint8_t> m_bytes;
    std::vector<ByteRange> m_live;
    /// Whether a block of the rows holds anything but zeros, from this band or one before.
    std::vector<std::uint8_t> m_isUsed;
    /// The straight pixels of the last row that was filtered.
    std::vector<std::uint8_t> m_straight;
    std::array<std::uint8_t, blockSize> m_straightBlock{};
};

} // namespace quillabrae::raster
