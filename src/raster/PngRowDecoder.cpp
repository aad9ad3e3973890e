// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"
#include "raster/Deflate.h"
#include "raster/Parallel.h"
#include "raster/PngDecoder.h"
#include "raster/PngExpand.h"
#include "raster/PngFilter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

/// Inflated at a time: enough for the inflater to run well, little enough to stay in the cache.
constexpr std::size_t batchByteCount = std::size_t{256} * 1024;

/// Rows as they come out of the inflater: each a filter number and filtered bytes.
struct Batch {
    std::vector<std::uint8_t> bytes;
    std::size_t rowCount = 0;
};

/// Unfilters rows and writes them out as premultiplied pixels, batch after batch.
class RowWriter {
public:
    RowWriter(const PngHeader& header, const PngRowExpander& expander, RasterImage& image)
        : m_expander(expander),
          m_pixels(image.mutableBytes().data()),
          m_width(header.width),
          m_bytesPerPixel(header.bytesPerPixel()),
          m_above(header.rowByteCount(), 0) {}

    /// False for a filter that is none.
    bool write(Batch& batch) {
        const std::size_t rowSize = m_above.size();
        const std::uint8_t* above = m_above.data();
        for (std::size_t i = 0; i < batch.rowCount; ++i, m_pixels += 4 * m_width) {
            std::uint8_t* row = batch.bytes.data() + i * (rowSize + 1) + 1;
            if (!unfilterRow(row[-1], row, above, rowSize, m_bytesPerPixel)) return false;
            m_expander.expand(row, m_pixels, m_width);
            premultiplyPixels(m_pixels, m_pixels, m_width);
            above = row;
        }
        if (batch.rowCount != 0) std::memcpy(m_above.data(), above, rowSize);
        return true;
    }

private:
    const PngRowExpander& m_expander;
    std::uint8_t* m_pixels;
    std::size_t m_width;
    std::size_t m_bytesPerPixel;
    /// The last row of the batch before.
    std::vector<std::uint8_t> m_above;
};

/// Cuts the image into batches of rows and inflates them in turn.
class BatchReader {
public:
    explicit BatchReader(const PngLayout& layout)
        : m_inflater(layout.imageData),
          m_filteredRow(layout.header.rowByteCount() + 1),
          m_rowsLeft(layout.header.height) {}

    /// An empty batch when there are no more rows.
    bool read(Batch& batch) {
        const std::size_t rowsAtOnce = std::max<std::size_t>(batchByteCount / m_filteredRow, 1);
        batch.rowCount = std::min(rowsAtOnce, m_rowsLeft);
        batch.bytes.resize(batch.rowCount * m_filteredRow);
        m_rowsLeft -= batch.rowCount;
        return m_inflater.read(batch.bytes);
    }

    bool isAtEnd() { return m_inflater.isAtEnd(); }

private:
    ChunkedInflater m_inflater;
    std::size_t m_filteredRow;
    std::size_t m_rowsLeft;
};

} // namespace

RasterImage decodePngRows(const PngLayout& layout) {
    const std::optional<PngRowExpander> expander = PngRowExpander::forLayout(layout);
    if (!expander) return {};
    RasterImage image = RasterImage::uninitialized(static_cast<int>(layout.header.width),
                                                   static_cast<int>(layout.header.height));
    if (image.isNull()) return {};
    RowWriter writer(layout.header, *expander, image);
    BatchReader reader(layout);
    Batch current;
    Batch next;
    if (!reader.read(current)) return {};
    while (current.rowCount != 0) {
        // One thread writes a batch while another inflates the next.
        std::array<bool, 2> isGood{};
        parallelFor(2, [&](int task) {
            if (task == 0)
                isGood[0] = writer.write(current);
            else
                isGood[1] = reader.read(next);
        });
        if (!isGood[0] || !isGood[1]) return {};
        std::swap(current, next);
    }
    return reader.isAtEnd() ? image : RasterImage();
}

} // namespace quillabrae::raster
