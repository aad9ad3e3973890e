// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/Deflate.h"
#include "raster/PngBandFilter.h"
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
    PngBandFilter m_filter;
    BandDeflater m_deflater;
    std::vector<std::uint8_t> m_chunk;
};

} // namespace quillabrae::raster
