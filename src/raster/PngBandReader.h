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

/// The rows of a band as they were filtered, each behind the number of its filter, of which none
/// looks above the band. In memory of this thread, valid until it reads the next band.
struct FilteredBand {
    std::span<std::uint8_t> bytes;
    /// Of a row without the number of its filter.
    std::size_t rowSize = 0;
};

/// The same to look at only: the next band relies on what is zero here to be so still.
struct SparseBand {
    SparseBytes rows;
    std::size_t rowSize = 0;
};

/// The rows of the band, in the order of the image.
struct BandRows {
    std::size_t first = 0;
    std::size_t count = 0;
};
BandRows rowsOfBand(const PngHeader& header, const PngBands& bands, std::size_t band);

/// Inflates a band. Nothing when it is not what the index says, when a filter is none, or when that
/// of the first row looks above the band.
std::optional<FilteredBand> readBand(const PngLayout& layout, const PngBands& bands,
                                     std::size_t band);

/// The same, quick for a band that is mostly zeros.
std::optional<SparseBand> readSparseBand(const PngLayout& layout, const PngBands& bands,
                                         std::size_t band);

/// Columns outside of which all pixels of the band are transparent; where it was filtered as ours
/// are, the fewest.
ColumnRange liveColumns(const SparseBand& band);

/// Unfilters all rows in place and writes them premultiplied, one every `stride` bytes.
void expandBand(FilteredBand band, std::uint8_t* pixels, std::size_t stride);

/// Writes some columns, such that all to the left of them are transparent, and leaves the band as
/// it is.
void expandColumns(const SparseBand& band, ColumnRange columns, std::uint8_t* pixels,
                   std::size_t stride);

} // namespace quillabrae::raster
