// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngEncoder.h"

#include "raster/CodecCounts.h"
#include "raster/Parallel.h"
#include "raster/PngBands.h"
#include "raster/PngCodec.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace quillabrae::raster {
namespace {

constexpr std::size_t headerLength = 13;

/// A band of the file being made: freshly compressed, or a chunk of the previous file.
struct BandPiece {
    std::uint32_t checksum = 0;
    ByteSpan chunk;
    std::vector<std::uint8_t> storage;
};

/// A file of ours whose bands may be copied.
struct PreviousFile {
    PngLayout layout;
    PngBands bands;
};

PngHeader headerOf(const RasterImage& image) {
    return {.width = static_cast<std::uint32_t>(image.width()),
            .height = static_cast<std::uint32_t>(image.height())};
}

std::size_t frameSize(const PngBands& bands) {
    return pngSignature.size() + pngChunkOverhead + headerLength + pngChunkOverhead +
           bandIndexData(bands).size() + pngChunkOverhead + bandedStreamHead.size() +
           pngChunkOverhead + bandedStreamTailSize + pngChunkOverhead;
}

/// Everything before the first band.
std::uint8_t* writeFileHead(std::uint8_t* out, const PngHeader& header, const PngBands& bands) {
    out = std::copy(pngSignature.begin(), pngSignature.end(), out);
    std::array<std::uint8_t, headerLength> data{};
    writeBigEndian32(data.data(), header.width);
    writeBigEndian32(data.data() + 4, header.height);
    data[8] = header.bitDepth;
    data[9] = static_cast<std::uint8_t>(header.colorType);
    out = writePngChunk(out, pngChunkType("IHDR"), data);
    out = writePngChunk(out, bandIndexType, bandIndexData(bands));
    return writePngChunk(out, pngChunkType("IDAT"), bandedStreamHead);
}

/// Everything behind the last band.
void writeFileTail(std::uint8_t* out, std::uint32_t checksum) {
    std::array<std::uint8_t, bandedStreamTailSize> data{};
    std::ranges::copy(bandedStreamTail, data.begin());
    writeBigEndian32(data.data() + bandedStreamTail.size(), checksum);
    out = writePngChunk(out, pngChunkType("IDAT"), data);
    writePngChunk(out, pngChunkType("IEND"), {});
}

model::PngBytes assemble(const PngHeader& header, int rows, std::span<const BandPiece> pieces) {
    PngBands bands{.rows = rows, .checksums = {}};
    std::vector<std::size_t> offsets;
    std::size_t bandsSize = 0;
    for (const BandPiece& piece : pieces) {
        bands.checksums.push_back(piece.checksum);
        offsets.push_back(bandsSize);
        bandsSize += piece.chunk.size();
    }
    QByteArray file(static_cast<qsizetype>(frameSize(bands) + bandsSize), Qt::Uninitialized);
    auto* begin = reinterpret_cast<std::uint8_t*>(file.data());
    std::uint8_t* const firstBand = writeFileHead(begin, header, bands);
    parallelFor(static_cast<int>(pieces.size()), [&](int index) {
        const auto i = static_cast<std::size_t>(index);
        std::memcpy(firstBand + offsets[i], pieces[i].chunk.data(), pieces[i].chunk.size());
    });
    writeFileTail(firstBand + bandsSize, streamChecksum(header, bands));
    return model::PngBytes(std::move(file));
}

/// The previous file when it has that header and is laid out, to the last chunk, as we do.
std::optional<PreviousFile> previousFile(const PngHeader& header, const model::PngBytes& bytes) {
    std::optional<PngLayout> layout = readPngLayout(bytes.bytes());
    if (!layout || layout->header != header) return std::nullopt;
    std::optional<PngBands> bands = readBandIndex(*layout);
    if (!bands) return std::nullopt;
    std::size_t bandsSize = 0;
    for (std::size_t i = 0; i < bands->checksums.size(); ++i)
        bandsSize += layout->imageData[i + 1].whole.size();
    const std::uint8_t* indexPlace = bytes.bytes().data() + pngSignature.size() + pngChunkOverhead +
                                     headerLength + pngChunkOverhead - 4;
    if (bytes.size() != frameSize(*bands) + bandsSize || layout->bandIndex.data() != indexPlace)
        return std::nullopt;
    return PreviousFile{std::move(*layout), std::move(*bands)};
}

PngBandEncoder& encoderOfThisThread() {
    thread_local PngBandEncoder encoder;
    return encoder;
}

model::PngBytes encodeBands(const RasterImage& image, const PreviousFile* previous,
                            RowRange changedRows) {
    detail::countEncodedFile();
    const PngHeader header = headerOf(image);
    const int rows = rowsPerBand(image.width());
    const int count = (image.height() + rows - 1) / rows;
    std::vector<BandPiece> pieces(static_cast<std::size_t>(count));
    parallelFor(count, [&](int index) {
        const int first = index * rows;
        const int rowCount = std::min(rows, image.height() - first);
        const auto i = static_cast<std::size_t>(index);
        BandPiece& piece = pieces[i];
        if (previous && (changedRows.last <= first || changedRows.first >= first + rowCount)) {
            piece.checksum = previous->bands.checksums[i];
            piece.chunk = previous->layout.imageData[i + 1].whole;
            return;
        }
        detail::countCompressedBand();
        PngBandEncoder::Band band = encoderOfThisThread().encode(image, first, rowCount);
        piece.checksum = band.checksum;
        piece.storage = std::move(band.chunk);
        piece.chunk = piece.storage;
    });
    return assemble(header, rows, pieces);
}

} // namespace

PngBandEncoder::Band PngBandEncoder::encode(const RasterImage& image, int firstRow, int rowCount) {
    const SparseBytes rows = m_filter.filter(image, firstRow, rowCount);
    m_chunk.resize(deflatedSizeBound(rows.bytes.size()) + pngChunkOverhead);
    const std::span<std::uint8_t> room = std::span(m_chunk).subspan(8, m_chunk.size() - 12);
    const std::size_t size = m_deflater.deflate(rows, room);
    const std::uint8_t* end = writePngChunk(m_chunk.data(), pngChunkType("IDAT"), room.first(size));
    return {.checksum = adlerOf(rows),
            .chunk = std::vector<std::uint8_t>(std::as_const(m_chunk).data(), end)};
}

model::PngBytes encodePng(const RasterImage& image) {
    if (image.isNull()) return {};
    return encodeBands(image, nullptr, {0, image.height()});
}

model::PngBytes encodePng(const RasterImage& image, const model::PngBytes& previous,
                          RowRange changedRows) {
    if (image.isNull()) return {};
    const std::optional<PreviousFile> file = previousFile(headerOf(image), previous);
    if (!file) return encodePng(image);
    if (changedRows.isEmpty()) return previous;
    return encodeBands(image, &*file, changedRows);
}

} // namespace quillabrae::raster
