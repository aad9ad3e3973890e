// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngBands.h"
#include "raster/PngChunks.h"
#include "support/ZlibInflate.h"

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <optional>

/// Sets the checksums of a PNG right, so that changed bytes get beyond them.
namespace quillabrae::fuzz {

/// Those of all chunks.
inline void repairChunks(QByteArray& file) {
    auto at = static_cast<qsizetype>(raster::pngSignature.size());
    while (at + static_cast<qsizetype>(raster::pngChunkOverhead) <= file.size()) {
        auto* const chunk = reinterpret_cast<std::uint8_t*>(file.data()) + at;
        const qsizetype length = raster::readBigEndian32(chunk);
        const qsizetype end = at + length + static_cast<qsizetype>(raster::pngChunkOverhead);
        if (end > file.size()) break;
        raster::writePngChunk(chunk, raster::readBigEndian32(chunk + 4),
                              {chunk + 8, static_cast<std::size_t>(length)});
        at = end;
    }
}

/// What the index of a file in bands would have to say; nothing for a file that is not.
inline std::optional<raster::PngBands> bandsOf(const raster::PngLayout& layout) {
    const raster::PngHeader& header = layout.header;
    if (layout.imageData.size() < 3) return std::nullopt;
    raster::PngBands bands{.rows = raster::rowsPerBand(static_cast<int>(header.width)),
                           .checksums = {}};
    auto rowsLeft = qint64{header.height};
    for (std::size_t chunk = 1; chunk + 1 < layout.imageData.size(); ++chunk) {
        const qint64 rows = std::min<qint64>(bands.rows, rowsLeft);
        if (rows <= 0) return std::nullopt;
        const auto filtered =
            tests::zlibInflated(layout.imageData[chunk].data,
                                static_cast<std::size_t>(rows) * (header.rowByteCount() + 1));
        bands.checksums.push_back(filtered ? raster::adlerOf(*filtered) : raster::adlerOfNothing);
        rowsLeft -= rows;
    }
    return bands;
}

/// Those of the bands, of the index and of the whole image, and of the chunks then. For files whose
/// chunks' are right, and whose bands there is memory for.
inline void repairBands(QByteArray& file) {
    auto* const bytes = reinterpret_cast<std::uint8_t*>(file.data());
    const auto layout = raster::readPngLayout({bytes, static_cast<std::size_t>(file.size())});
    if (!layout) return;
    const auto bands = bandsOf(*layout);
    if (!bands) return;
    const raster::ByteSpan tail = layout->imageData.back().data;
    const auto index = raster::bandIndexData(*bands);
    if (tail.size() != raster::bandedStreamTailSize || index.size() != layout->bandIndex.size())
        return;
    std::ranges::copy(index, bytes + (layout->bandIndex.data() - bytes));
    raster::writeBigEndian32(bytes + (tail.data() - bytes) + raster::bandedStreamTail.size(),
                             raster::streamChecksum(layout->header, *bands));
    repairChunks(file);
}

} // namespace quillabrae::fuzz
