// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngBands.h"
#include "raster/PngChunks.h"
#include "raster/SparseBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// Reading one band of a PNG in bands.
namespace quillabrae::raster {

/// Pixels `first` to `end` - 1 of a row.
struct ColumnRange {
    std::size_t first = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - first; }
    bool isEmpty() const { return first >= end; }
};

/// The rows of a band as they were filtered, each behind the number of its filter. In memory of
/// this thread, valid until it reads the next band.
struct FilteredBand {
    std::span<std::uint8_t> bytes;
    /// Of a row without the number of its filter.
    std::size_t rowSize = 0;
    /// Outside of these all bytes are zero.
    std::span<const ByteRange> live;
};

/// The rows of the band, in the order of the image.
struct BandRows {
    std::size_t first = 0;
    std::size_t count = 0;
};
BandRows rowsOfBand(const PngHeader& header, const PngBands& bands, std::size_t band);

/// Inflates a band, all of it live. Nothing when it is not what the index says.
std::optional<FilteredBand> readBand(const PngLayout& layout, const PngBands& bands,
                                     std::size_t band);

/// The same, quick for a band that is mostly zeros, with the live ranges of that.
std::optional<FilteredBand> readSparseBand(const PngLayout& layout, const PngBands& bands,
                                           std::size_t band);

/// Columns outside of which all pixels of the band are transparent; where it was filtered as ours
/// are, the fewest.
ColumnRange liveColumns(const FilteredBand& band);

/// Unfilters all rows in place and writes them premultiplied, one every `stride` bytes. False for a
/// filter that is none, or that looks above the band.
bool expandBand(const FilteredBand& band, std::uint8_t* pixels, std::size_t stride);

/// Writes some columns, such that all to the left of them are transparent, and leaves the band as
/// it is.
bool expandColumns(const FilteredBand& band, ColumnRange columns, std::uint8_t* pixels,
                   std::size_t stride);

} // namespace quillabrae::raster
