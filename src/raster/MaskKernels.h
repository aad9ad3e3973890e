// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// Between the pixels of a selection mask and one byte for each: a cell (255 selected, 0 not) or a
/// coverage. Runs do not overlap.
namespace quillabrae::raster {

/// A pixel of a mask is selected when its alpha is above 0.1 of full, which is 25.5.
constexpr std::uint8_t greatestUnselectedAlpha = 25;

/// cells[i] = 255 where pixel i is selected, else 0.
void selectedCells(const std::uint8_t* pixels, std::uint8_t* cells, std::size_t count);

/// cells[i] = cells[i] or other[i]
void addCells(std::uint8_t* cells, const std::uint8_t* other, std::size_t count);
/// cells[i] = cells[i] and not other[i]
void subtractCells(std::uint8_t* cells, const std::uint8_t* other, std::size_t count);

/// White pixels of that alpha.
void whitePixels(const std::uint8_t* alpha, std::uint8_t* pixels, std::size_t count);

} // namespace quillabrae::raster
