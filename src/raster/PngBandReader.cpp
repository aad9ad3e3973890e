// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngBandReader.h"

#include "raster/AlphaKernels.h"
#include "raster/Deflate.h"
#include "raster/PngFilter.h"
#include "raster/SparseInflate.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

constexpr std::size_t bytesPerPixel = 4;
/// Compared with zero at a time.
constexpr std::size_t stretch = 256;

/// Compressed to less, a band is mostly zeros.
constexpr std::size_t sparseRatio = 32;

struct Workspace {
    BandInflater inflater;
    std::vector<std::uint8_t> filtered;
    ByteRange whole;
    /// All zero outside of the live ranges.
    std::vector<std::uint8_t> sparse;
    std::vector<ByteRange> live;
    /// A row and the one above it, unfiltered.
    std::array<std::vector<std::uint8_t>, 2> rows;
};

Workspace& workspaceOfThisThread() {
    thread_local Workspace workspace;
    return workspace;
}

/// A buffer of that size, all zero.
std::span<std::uint8_t> clearedSparse(Workspace& workspace, std::size_t size) {
    if (workspace.sparse.size() != size) {
        workspace.sparse.assign(size, 0);
    } else {
        for (const ByteRange& range : workspace.live)
            std::memset(workspace.sparse.data() + range.begin, 0, range.size());
    }
    workspace.live.clear();
    return workspace.sparse;
}

/// Takes out of `live` what ends before `begin`, and gives bounds to what lies before `end`.
ByteRange liveWithin(std::span<const ByteRange>& live, std::size_t begin, std::size_t end) {
    while (!live.empty() && live.front().end <= begin) live = live.subspan(1);
    ByteRange bounds{end, begin};
    for (const ByteRange& range : live) {
        if (range.begin >= end) break;
        bounds.begin = std::min(bounds.begin, std::max(range.begin, begin));
        bounds.end = std::min(range.end, end);
    }
    return bounds;
}

/// Whether all filters are such, and that of the first row looks at nothing above it.
bool hasGoodFilters(ByteSpan rows, std::size_t rowSize) {
    PngFilter greatest = PngFilter::sub;
    for (std::size_t at = 0; at < rows.size(); at += rowSize + 1) {
        if (rows[at] > static_cast<std::uint8_t>(greatest)) return false;
        greatest = PngFilter::paeth;
    }
    return true;
}

/// The first byte that is not zero, or `count`.
std::size_t leadingZeros(const std::uint8_t* bytes, std::size_t count) {
    std::size_t at = 0;
    while (at + stretch <= count && isAllZero(bytes + at, stretch)) at += stretch;
    while (at < count && bytes[at] == 0) ++at;
    return at;
}

/// One past the last byte that is not zero, or 0.
std::size_t withoutTrailingZeros(const std::uint8_t* bytes, std::size_t count) {
    while (count >= stretch && isAllZero(bytes + count - stretch, stretch)) count -= stretch;
    while (count > 0 && bytes[count - 1] == 0) --count;
    return count;
}

/// Whether the pixel that a row's differences to the left add up to is transparent black.
bool addsUpToNothing(const std::uint8_t* row, std::size_t end) {
    std::array<std::uint8_t, bytesPerPixel> sum{};
    for (std::size_t i = 0; i < end; ++i)
        sum[i % bytesPerPixel] = static_cast<std::uint8_t>(sum[i % bytesPerPixel] + row[i]);
    return sum == std::array<std::uint8_t, bytesPerPixel>{};
}

/// Where a row ends that is not zero up to `end`, filtered by none, Up or Sub. The first two are no
/// longer than their bytes say, Sub goes on with the last pixel.
std::size_t unfilteredEnd(PngFilter filter, const std::uint8_t* row, std::size_t end,
                          std::size_t rowSize) {
    return filter == PngFilter::sub && !addsUpToNothing(row, end) ? rowSize : end;
}

} // namespace

BandRows rowsOfBand(const PngHeader& header, const PngBands& bands, std::size_t band) {
    const auto step = static_cast<std::size_t>(bands.rows);
    const std::size_t first = band * step;
    return {first, std::min(step, header.height - first)};
}

std::optional<FilteredBand> readBand(const PngLayout& layout, const PngBands& bands,
                                     std::size_t band) {
    // The first chunk is the zlib header by itself.
    const PngChunk& chunk = layout.imageData[band + 1];
    if (!chunk.hasValidCrc()) return std::nullopt;
    const std::size_t rowSize = layout.header.rowByteCount();
    Workspace& workspace = workspaceOfThisThread();
    workspace.filtered.resize(rowsOfBand(layout.header, bands, band).count * (rowSize + 1));
    if (!workspace.inflater.inflate(chunk.data, workspace.filtered) ||
        adlerOf(workspace.filtered) != bands.checksums[band] ||
        !hasGoodFilters(workspace.filtered, rowSize))
        return std::nullopt;
    return FilteredBand{workspace.filtered, rowSize};
}

namespace {

/// A band that is not sparse as one that is, all of it live.
std::optional<SparseBand> readBandAsSparse(const PngLayout& layout, const PngBands& bands,
                                           std::size_t band) {
    const std::optional<FilteredBand> filtered = readBand(layout, bands, band);
    if (!filtered) return std::nullopt;
    ByteRange& whole = workspaceOfThisThread().whole;
    whole = {0, filtered->bytes.size()};
    return SparseBand{{filtered->bytes, {&whole, 1}}, filtered->rowSize};
}

} // namespace

std::optional<SparseBand> readSparseBand(const PngLayout& layout, const PngBands& bands,
                                         std::size_t band) {
    const PngChunk& chunk = layout.imageData[band + 1];
    const std::size_t rowSize = layout.header.rowByteCount();
    const std::size_t size = rowsOfBand(layout.header, bands, band).count * (rowSize + 1);
    if (chunk.data.size() > size / sparseRatio) return readBandAsSparse(layout, bands, band);
    Workspace& workspace = workspaceOfThisThread();
    const std::span<std::uint8_t> bytes = clearedSparse(workspace, size);
    if (!chunk.hasValidCrc() || !inflateSparse(chunk.data, bytes, workspace.live) ||
        adlerOf(SparseBytes{bytes, workspace.live}) != bands.checksums[band])
        return readBandAsSparse(layout, bands, band);
    if (!hasGoodFilters(bytes, rowSize)) return std::nullopt;
    return SparseBand{{bytes, workspace.live}, rowSize};
}

ColumnRange liveColumns(const SparseBand& band) {
    const ByteSpan rows = band.rows.bytes;
    std::span<const ByteRange> live = band.rows.live;
    std::size_t first = band.rowSize;
    std::size_t end = 0;
    for (std::size_t at = 0; at < rows.size(); at += band.rowSize + 1) {
        const std::uint8_t* const row = rows.data() + at + 1;
        const ByteRange bounds = liveWithin(live, at + 1, at + 1 + band.rowSize);
        if (bounds.begin < bounds.end) {
            const std::size_t begin = bounds.begin - at - 1;
            const std::size_t zeros = leadingZeros(row + begin, bounds.size());
            const std::size_t last = begin + withoutTrailingZeros(row + begin, bounds.size());
            if (zeros != bounds.size()) {
                first = std::min(first, begin + zeros);
                end = std::max(
                    end, unfilteredEnd(static_cast<PngFilter>(rows[at]), row, last, band.rowSize));
            }
        }
        // The others spread what is above them to the right.
        if (first != band.rowSize && static_cast<PngFilter>(rows[at]) > PngFilter::up)
            end = band.rowSize;
    }
    if (first >= end) return {};
    return {first / bytesPerPixel, (end + bytesPerPixel - 1) / bytesPerPixel};
}

void expandBand(FilteredBand band, std::uint8_t* pixels, std::size_t stride) {
    const std::uint8_t* above = nullptr;
    for (std::size_t at = 0; at < band.bytes.size(); at += band.rowSize + 1, pixels += stride) {
        std::uint8_t* const row = band.bytes.data() + at + 1;
        unfilterRow(band.bytes[at], row, above, band.rowSize, bytesPerPixel);
        premultiplyPixels(row, pixels, band.rowSize / bytesPerPixel);
        above = row;
    }
}

void expandColumns(const SparseBand& band, ColumnRange columns, std::uint8_t* pixels,
                   std::size_t stride) {
    const std::size_t size = columns.size() * bytesPerPixel;
    auto& [row, above] = workspaceOfThisThread().rows;
    row.resize(size);
    above.resize(size);
    const std::size_t offset = 1 + columns.first * bytesPerPixel;
    const ByteSpan rows = band.rows.bytes;
    for (std::size_t at = 0; at < rows.size(); at += band.rowSize + 1, pixels += stride) {
        std::memcpy(row.data(), rows.data() + at + offset, size);
        unfilterRow(rows[at], row.data(), above.data(), size, bytesPerPixel);
        premultiplyPixels(row.data(), pixels, columns.size());
        std::swap(row, above);
    }
}

} // namespace quillabrae::raster
