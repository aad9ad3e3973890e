// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// The row filters of PNG. A filtered row is the difference, byte by byte modulo 256, between a row
/// and a prediction from the byte `bytesPerPixel` to its left, the one above it, or both.
namespace quillabrae::raster {

enum class PngFilter : std::uint8_t { none = 0, sub = 1, up = 2, average = 3, paeth = 4 };

/// Writes `byteCount` filtered bytes of a row to `filtered`.
void filterSub(const std::uint8_t* row, std::uint8_t* filtered, std::size_t byteCount,
               std::size_t bytesPerPixel);
void filterUp(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* filtered,
              std::size_t byteCount);

/// Turns a filtered row into the row itself, in place. `above` is the unfiltered row above, or all
/// zero for the first. False for a filter number that is none.
bool unfilterRow(std::uint8_t filter, std::uint8_t* row, const std::uint8_t* above,
                 std::size_t byteCount, std::size_t bytesPerPixel);

} // namespace quillabrae::raster
