// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"
#include "raster/Deflate.h"
#include "raster/PngDecoder.h"
#include "raster/PngExpand.h"
#include "raster/PngFilter.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace quillabrae::raster {
namespace {

/// Inflated at a time: enough for the inflater to run well, little enough to stay in the cache.
constexpr std::size_t batchByteCount = 256 * 1024;

/// Rows of filtered bytes, unfiltered in place, with the row above kept from batch to batch.
class RowBatches {
public:
    explicit RowBatches(const PngLayout& layout)
        : m_inflater(layout.imageData),
          m_rowSize(layout.header.rowByteCount()),
          m_bytesPerPixel(layout.header.bytesPerPixel()),
          m_above(m_rowSize, 0) {}

    std::size_t rowsAtOnce() const { return std::max<std::size_t>(batchByteCount / m_rowSize, 1); }

    /// Inflates and unfilters the next `rowCount` rows.
    bool next(std::size_t rowCount) {
        m_rows.resize(rowCount * (m_rowSize + 1));
        if (!m_inflater.read(m_rows)) return false;
        const std::uint8_t* above = m_above.data();
        for (std::size_t at = 0; at < m_rows.size(); at += m_rowSize + 1) {
            std::uint8_t* row = m_rows.data() + at + 1;
            if (!unfilterRow(m_rows[at], row, above, m_rowSize, m_bytesPerPixel)) return false;
            above = row;
        }
        std::memcpy(m_above.data(), above, m_rowSize);
        return true;
    }

    const std::uint8_t* row(std::size_t index) const {
        return m_rows.data() + index * (m_rowSize + 1) + 1;
    }

    bool isAtEnd() { return m_inflater.isAtEnd(); }

private:
    ChunkedInflater m_inflater;
    std::size_t m_rowSize;
    std::size_t m_bytesPerPixel;
    std::vector<std::uint8_t> m_rows;
    std::vector<std::uint8_t> m_above;
};

} // namespace

RasterImage decodePngRows(const PngLayout& layout) {
    const std::optional<PngRowExpander> expander = PngRowExpander::forLayout(layout);
    if (!expander) return {};
    RasterImage image = RasterImage::uninitialized(static_cast<int>(layout.header.width),
                                                   static_cast<int>(layout.header.height));
    if (image.isNull()) return {};
    const std::size_t width = layout.header.width;
    const std::size_t height = layout.header.height;
    std::uint8_t* pixels = image.mutableBytes().data();
    RowBatches batches(layout);
    for (std::size_t y = 0; y < height;) {
        const std::size_t rowCount = std::min(batches.rowsAtOnce(), height - y);
        if (!batches.next(rowCount)) return {};
        for (std::size_t i = 0; i < rowCount; ++i, pixels += image.stride()) {
            expander->expand(batches.row(i), pixels, width);
            if (!isAlphaTrivial(pixels, width)) premultiplyPixels(pixels, pixels, width);
        }
        y += rowCount;
    }
    return batches.isAtEnd() ? image : RasterImage();
}

} // namespace quillabrae::raster
