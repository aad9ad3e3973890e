// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngBands.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>

namespace quillabrae::raster {
namespace {

/// Small enough for a processor's own cache together with what it is compressed to; large enough
/// that a band's block headers and fresh dictionary cost next to nothing.
constexpr int bandByteCount = 1024 * 1024;

constexpr std::uint8_t indexVersion = 1;
constexpr std::size_t indexHeadSize = 5;

constexpr std::uint32_t adlerModulus = 65521;

std::size_t bandCount(const PngHeader& header, int rows) {
    const auto step = static_cast<std::size_t>(rows);
    return (header.height + step - 1) / step;
}

/// Zeros leave the sum of the bytes as it is, and add it to the sum of sums again and again.
std::uint32_t adlerWithZeros(std::uint32_t checksum, std::size_t zeroCount) {
    const std::uint64_t sum = checksum & 0xffffU;
    const std::uint64_t sumOfSums = (checksum >> 16) + sum * (zeroCount % adlerModulus);
    return static_cast<std::uint32_t>(sumOfSums % adlerModulus << 16 | sum);
}

} // namespace

int rowsPerBand(int width) {
    return std::max(bandByteCount / (4 * std::max(width, 1)), 1);
}

std::vector<std::uint8_t> bandIndexData(const PngBands& bands) {
    std::vector<std::uint8_t> data(indexHeadSize + 4 * bands.checksums.size());
    data[0] = indexVersion;
    writeBigEndian32(data.data() + 1, static_cast<std::uint32_t>(bands.rows));
    for (std::size_t i = 0; i < bands.checksums.size(); ++i)
        writeBigEndian32(data.data() + indexHeadSize + 4 * i, bands.checksums[i]);
    return data;
}

std::optional<PngBands> readBandIndex(const PngLayout& layout) {
    const PngHeader& header = layout.header;
    if (header.bitDepth != 8 || header.colorType != PngColorType::rgba || header.isInterlaced)
        return std::nullopt;
    const ByteSpan data = layout.bandIndex;
    if (data.size() < indexHeadSize || data[0] != indexVersion) return std::nullopt;
    const int rows = rowsPerBand(static_cast<int>(header.width));
    if (readBigEndian32(data.data() + 1) != static_cast<std::uint32_t>(rows)) return std::nullopt;
    const std::size_t count = bandCount(header, rows);
    if (data.size() != indexHeadSize + 4 * count || layout.imageData.size() != count + 2)
        return std::nullopt;
    const ByteSpan head = layout.imageData.front().data;
    const ByteSpan tail = layout.imageData.back().data;
    if (!std::ranges::equal(head, bandedStreamHead) || tail.size() != bandedStreamTailSize ||
        !std::ranges::equal(tail.first(bandedStreamTail.size()), bandedStreamTail))
        return std::nullopt;
    PngBands bands{.rows = rows, .checksums = std::vector<std::uint32_t>(count)};
    for (std::size_t i = 0; i < count; ++i)
        bands.checksums[i] = readBigEndian32(data.data() + indexHeadSize + 4 * i);
    const std::uint32_t stated = readBigEndian32(tail.data() + bandedStreamTail.size());
    return stated == streamChecksum(header, bands) ? std::optional(bands) : std::nullopt;
}

std::uint32_t adlerOf(ByteSpan bytes) {
    return isal_adler32(adlerOfNothing, bytes.data(), bytes.size());
}

std::uint32_t adlerOf(const SparseBytes& bytes) {
    std::uint32_t checksum = adlerOfNothing;
    std::size_t at = 0;
    for (const ByteRange& range : bytes.live) {
        checksum = adlerWithZeros(checksum, range.begin - at);
        checksum = isal_adler32(checksum, bytes.bytes.data() + range.begin, range.size());
        at = range.end;
    }
    return adlerWithZeros(checksum, bytes.bytes.size() - at);
}

std::uint32_t combinedAdler(std::uint32_t first, std::uint32_t second, std::size_t secondSize) {
    // With A the sum of the bytes plus 1 and B the sum of all the A on the way:
    // A = A1 + A2 - 1, and each of the second part's A was begun A1 - 1 too low.
    const std::uint32_t firstA = first & 0xffffU;
    const std::uint32_t firstB = first >> 16;
    const std::uint32_t secondA = second & 0xffffU;
    const std::uint32_t secondB = second >> 16;
    const auto size = static_cast<std::uint32_t>(secondSize % adlerModulus);
    const std::uint32_t a = (firstA + secondA + adlerModulus - 1) % adlerModulus;
    const auto lift = static_cast<std::uint32_t>(
        (static_cast<std::uint64_t>(size) * (firstA + adlerModulus - 1)) % adlerModulus);
    const std::uint32_t b = (firstB + secondB + lift) % adlerModulus;
    return (b << 16) | a;
}

std::uint32_t streamChecksum(const PngHeader& header, const PngBands& bands) {
    std::uint32_t checksum = adlerOfNothing;
    std::size_t rowsLeft = header.height;
    for (const std::uint32_t band : bands.checksums) {
        const std::size_t rows = std::min(rowsLeft, static_cast<std::size_t>(bands.rows));
        checksum = combinedAdler(checksum, band, rows * (header.rowByteCount() + 1));
        rowsLeft -= rows;
    }
    return checksum;
}

} // namespace quillabrae::raster
