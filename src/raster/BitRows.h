// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// One bit for each pixel of a picture, each row in words of 64 bits, the lowest bit leftmost. Bits
/// behind a row's last pixel are 0.
class BitRows {
public:
    /// All 0.
    BitRows(int width, int height);

    std::span<std::uint64_t> row(int y);
    std::span<const std::uint64_t> row(int y) const;

private:
    std::size_t m_wordsPerRow;
    std::vector<std::uint64_t> m_words;
};

/// Bits from `first` up to but not including `end`.
struct BitRun {
    int first = 0;
    int end = 0;

    bool isEmpty() const { return first >= end; }
};

/// The longest run of ones around the first one from `first` on but before `end`; empty when there
/// is none. It may begin before `first` and go on behind `end`.
BitRun runOfOnes(std::span<const std::uint64_t> row, int first, int end);

/// Takes the bits of `run`, all ones, out of `from` and puts them into `to`.
void moveRun(std::span<std::uint64_t> from, std::span<std::uint64_t> to, BitRun run);

/// One byte for each of cells.size() bits from `first` on: 255 for a one, 0 for a zero.
void cellsOfBits(std::span<const std::uint64_t> row, int first, std::span<std::uint8_t> cells);

} // namespace quillabrae::raster
