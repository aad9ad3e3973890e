// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"
#include "raster/SparseBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// How our own PNGs are laid out: 8-bit RGBA, straight, in bands of rows.
///
/// The image data is one zlib stream, as in every PNG. Its header is an IDAT chunk by itself; then
/// comes one IDAT chunk a band, a run of deflate blocks that begins and ends on a byte boundary and
/// looks back at no other band; the last IDAT chunk holds an empty final block and the checksum.
/// The first row of a band is filtered without the row above. So bands can be compressed and
/// decoded by themselves, and copied from one file to another.
///
/// The band index, a private ancillary chunk before the image data, states the rows of a band and
/// the Adler-32 of each band's filtered rows. It is a hint: a file whose bands are not as it says
/// decodes like any other.
namespace quillabrae::raster {

constexpr std::uint32_t bandIndexType = pngChunkType("qbND");

/// Rows of a band in an image of that width; all bands but the last have as many.
int rowsPerBand(int width);

struct PngBands {
    int rows = 0;
    std::vector<std::uint32_t> checksums;
};

std::vector<std::uint8_t> bandIndexData(const PngBands& bands);

/// The bands that the index claims, when the layout fits what it claims: form, counts of bands and
/// of IDAT chunks, header and end of the zlib stream. Says nothing about the bands' contents.
std::optional<PngBands> readBandIndex(const PngLayout& layout);

/// The zlib header and the end of the zlib stream but for its checksum.
constexpr std::array<std::uint8_t, 2> bandedStreamHead = {0x78, 0x01};
constexpr std::array<std::uint8_t, 2> bandedStreamTail = {0x03, 0x00};
constexpr std::size_t bandedStreamTailSize = bandedStreamTail.size() + 4;

/// The Adler-32 of nothing.
constexpr std::uint32_t adlerOfNothing = 1;
std::uint32_t adlerOf(ByteSpan bytes);
/// The same; only the live ranges are read.
std::uint32_t adlerOf(const SparseBytes& bytes);
/// The Adler-32 of `first` followed by `secondSize` bytes whose Adler-32 is `second`.
std::uint32_t combinedAdler(std::uint32_t first, std::uint32_t second, std::size_t secondSize);

/// The checksum of all the filtered rows of an image from those of its bands.
std::uint32_t streamChecksum(const PngHeader& header, const PngBands& bands);

} // namespace quillabrae::raster
