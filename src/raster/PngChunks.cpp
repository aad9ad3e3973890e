// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngChunks.h"

#include "raster/PngBands.h"

#include <isa-l/crc.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace quillabrae::raster {
namespace {

constexpr std::uint32_t maximumChunkLength = 0x7fffffff;
constexpr std::size_t headerLength = 13;

std::uint32_t crcOf(ByteSpan bytes) {
    return crc32_gzip_refl(0, bytes.data(), bytes.size());
}

/// The chunk at the start of `bytes`; nothing when it is not all there.
std::optional<PngChunk> chunkAt(ByteSpan bytes) {
    if (bytes.size() < pngChunkOverhead) return std::nullopt;
    const std::uint32_t length = readBigEndian32(bytes.data());
    if (length > maximumChunkLength || length > bytes.size() - pngChunkOverhead)
        return std::nullopt;
    return PngChunk{.type = readBigEndian32(bytes.data() + 4),
                    .data = bytes.subspan(8, length),
                    .whole = bytes.first(length + pngChunkOverhead)};
}

bool isDefinedDepth(PngColorType colorType, std::uint8_t depth) {
    switch (colorType) {
        case PngColorType::gray:
            return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
        case PngColorType::palette:
            return depth == 1 || depth == 2 || depth == 4 || depth == 8;
        case PngColorType::rgb:
        case PngColorType::grayAlpha:
        case PngColorType::rgba:
            return depth == 8 || depth == 16;
    }
    return false;
}

std::optional<PngHeader> headerFrom(const PngChunk& chunk) {
    if (chunk.type != pngChunkType("IHDR") || chunk.data.size() != headerLength ||
        !chunk.hasValidCrc())
        return std::nullopt;
    const std::uint8_t* data = chunk.data.data();
    const PngHeader header{.width = readBigEndian32(data),
                           .height = readBigEndian32(data + 4),
                           .bitDepth = data[8],
                           .colorType = static_cast<PngColorType>(data[9]),
                           .isInterlaced = data[12] == 1};
    const bool hasDefinedMethods = data[10] == 0 && data[11] == 0 && data[12] <= 1;
    if (!hasDefinedMethods || !isDefinedDepth(header.colorType, header.bitDepth))
        return std::nullopt;
    if (header.width == 0 || header.height == 0) return std::nullopt;
    return header;
}

/// Whether the numbers of a chunk are these, in hundred thousandths, as near as matters.
bool isNear(ByteSpan data, std::span<const std::uint32_t> numbers, std::uint32_t tolerance) {
    if (data.size() != numbers.size() * sizeof(std::uint32_t)) return false;
    const std::uint8_t* at = data.data();
    return std::ranges::all_of(numbers, [&](std::uint32_t number) {
        const std::uint32_t stated = readBigEndian32(at);
        at += sizeof number;
        return stated + tolerance >= number && stated <= number + tolerance;
    });
}

void enterColors(PngLayout& layout, const PngChunk& chunk) {
    // Programs state the gamma and the chromaticities of sRGB for those who do not know sRGB, with
    // the chunk that names it or without.
    constexpr std::array<std::uint32_t, 1> gamma{45455};
    constexpr std::array<std::uint32_t, 8> chromaticities{31270, 32900, 64000, 33000,
                                                          30000, 60000, 15000, 6000};
    constexpr std::uint32_t gammaTolerance = 500;
    constexpr std::uint32_t chromaticityTolerance = 1000;
    if (chunk.type == pngChunkType("sRGB")) layout.isSrgb = true;
    if (chunk.type == pngChunkType("iCCP") ||
        (chunk.type == pngChunkType("gAMA") && !isNear(chunk.data, gamma, gammaTolerance)) ||
        (chunk.type == pngChunkType("cHRM") &&
         !isNear(chunk.data, chromaticities, chromaticityTolerance)))
        layout.statesColors = true;
}

/// Enters one chunk between header and end; false where it must not be there.
bool enterChunk(PngLayout& layout, const PngChunk& chunk, bool followsImageData) {
    const bool hasImageData = !layout.imageData.empty();
    if (chunk.type == pngChunkType("IDAT")) {
        if (hasImageData && !followsImageData) return false;
        layout.imageData.push_back(chunk);
        return true;
    }
    if (!chunk.hasValidCrc()) return false;
    enterColors(layout, chunk);
    if (chunk.type == bandIndexType) layout.bandIndex = chunk.data;
    if (chunk.type == pngChunkType("tRNS")) layout.transparency = chunk.data;
    if (!chunk.isCritical()) return true;
    if (chunk.type != pngChunkType("PLTE") || hasImageData || !layout.palette.empty()) return false;
    layout.palette = chunk.data;
    return !chunk.data.empty() && chunk.data.size() % 3 == 0 &&
           chunk.data.size() <= std::size_t{3} * 256;
}

} // namespace

std::uint32_t readBigEndian32(const std::uint8_t* bytes) {
    return (static_cast<std::uint32_t>(bytes[0]) << 24) |
           (static_cast<std::uint32_t>(bytes[1]) << 16) |
           (static_cast<std::uint32_t>(bytes[2]) << 8) | bytes[3];
}

void writeBigEndian32(std::uint8_t* bytes, std::uint32_t value) {
    for (int i = 3; i >= 0; --i, value >>= 8) bytes[i] = static_cast<std::uint8_t>(value & 0xffU);
}

bool PngChunk::hasValidCrc() const {
    return readBigEndian32(data.data() + data.size()) == crcOf(whole.subspan(4, data.size() + 4));
}

std::uint8_t* writePngChunk(std::uint8_t* out, std::uint32_t type, ByteSpan data) {
    writeBigEndian32(out, static_cast<std::uint32_t>(data.size()));
    writeBigEndian32(out + 4, type);
    if (!data.empty() && data.data() != out + 8) std::memcpy(out + 8, data.data(), data.size());
    writeBigEndian32(out + 8 + data.size(), crcOf({out + 4, data.size() + 4}));
    return out + data.size() + pngChunkOverhead;
}

unsigned PngHeader::bitsPerPixel() const {
    switch (colorType) {
        case PngColorType::gray:
        case PngColorType::palette:
            return bitDepth;
        case PngColorType::grayAlpha:
            return 2U * bitDepth;
        case PngColorType::rgb:
            return 3U * bitDepth;
        case PngColorType::rgba:
            return 4U * bitDepth;
    }
    return bitDepth;
}

std::size_t PngLayout::imageDataSize() const {
    std::size_t size = 0;
    for (const PngChunk& chunk : imageData) size += chunk.data.size();
    return size;
}

std::optional<PngHeader> readPngHeader(ByteSpan bytes) {
    if (bytes.size() < pngSignature.size() ||
        !std::equal(pngSignature.begin(), pngSignature.end(), bytes.begin()))
        return std::nullopt;
    const std::optional<PngChunk> first = chunkAt(bytes.subspan(pngSignature.size()));
    return first ? headerFrom(*first) : std::nullopt;
}

std::optional<PngLayout> readPngLayout(ByteSpan bytes) {
    const std::optional<PngHeader> header = readPngHeader(bytes);
    if (!header) return std::nullopt;
    PngLayout layout;
    layout.header = *header;
    std::size_t position = pngSignature.size() + headerLength + pngChunkOverhead;
    std::uint32_t previousType = 0;
    while (const std::optional<PngChunk> chunk = chunkAt(bytes.subspan(position))) {
        if (chunk->type == pngChunkType("IEND")) {
            if (!chunk->hasValidCrc() || layout.imageData.empty()) return std::nullopt;
            return layout;
        }
        const bool followsImageData = previousType == pngChunkType("IDAT");
        if (!enterChunk(layout, *chunk, followsImageData)) return std::nullopt;
        previousType = chunk->type;
        position += chunk->whole.size();
    }
    return std::nullopt;
}

} // namespace quillabrae::raster
