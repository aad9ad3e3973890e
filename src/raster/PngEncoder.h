// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/Deflate.h"
#include "raster/RasterImage.h"

#include <cstdint>
#include <vector>

namespace quillabrae::raster {

/// Makes the IDAT chunk of one band after another; keeps its working memory between them.
class PngBandEncoder {
public:
    struct Band {
        /// Of the filtered rows.
        std::uint32_t checksum = 0;
        /// The whole IDAT chunk.
        std::vector<std::uint8_t> chunk;
    };

    /// The band of `rowCount` rows from `firstRow` on.
    Band encode(const RasterImage& image, int firstRow, int rowCount);

private:
    struct Shape {
        std::size_t rowByteCount = 0;
        int rowCount = 0;
        friend bool operator==(const Shape&, const Shape&) = default;
    };

    const Band& transparentBand(Shape shape);
    void filter(const RasterImage& image, int firstRow, int rowCount);
    Band compress();

    BandDeflater m_deflater;
    std::vector<std::uint8_t> m_filtered;
    std::vector<std::uint8_t> m_straightRows;
    std::vector<std::uint8_t> m_chunk;
    Shape m_transparentShape;
    Band m_transparentBand;
};

} // namespace quillabrae::raster
