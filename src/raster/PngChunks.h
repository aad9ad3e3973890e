// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// The container of a PNG: signature and chunks, each a length, a type, data and a CRC.
namespace quillabrae::raster {

using ByteSpan = std::span<const std::uint8_t>;

constexpr std::array<std::uint8_t, 8> pngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

/// A chunk's type as the number that its four letters make, first letter highest.
constexpr std::uint32_t pngChunkType(const char (&letters)[5]) {
    std::uint32_t type = 0;
    for (int i = 0; i < 4; ++i) type = (type << 8) | static_cast<std::uint8_t>(letters[i]);
    return type;
}

/// Length, type and CRC around a chunk's data.
constexpr std::size_t pngChunkOverhead = 12;

std::uint32_t readBigEndian32(const std::uint8_t* bytes);
void writeBigEndian32(std::uint8_t* bytes, std::uint32_t value);

struct PngChunk {
    std::uint32_t type = 0;
    ByteSpan data;
    /// The chunk with its length and CRC.
    ByteSpan whole;

    bool isCritical() const { return (type & 0x20000000U) == 0; }
    bool hasValidCrc() const;
};

/// Writes a whole chunk and returns the place behind it.
std::uint8_t* writePngChunk(std::uint8_t* out, std::uint32_t type, ByteSpan data);

enum class PngColorType : std::uint8_t {
    gray = 0,
    rgb = 2,
    palette = 3,
    grayAlpha = 4,
    rgba = 6,
};

struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bitDepth = 8;
    PngColorType colorType = PngColorType::rgba;
    bool isInterlaced = false;

    unsigned bitsPerPixel() const;
    /// The distance that filters look to the left: whole bytes, at least 1.
    std::size_t bytesPerPixel() const { return bitsPerPixel() < 8 ? 1 : bitsPerPixel() / 8; }
    /// The bytes of an unfiltered row.
    std::size_t rowByteCount() const {
        return (static_cast<std::size_t>(width) * bitsPerPixel() + 7) / 8;
    }
    friend bool operator==(const PngHeader&, const PngHeader&) = default;
};

/// The chunks of one PNG that its pixels need; the spans point into its bytes.
struct PngLayout {
    PngHeader header;
    std::vector<PngChunk> imageData;
    ByteSpan palette;
    ByteSpan transparency;
    ByteSpan bandIndex;
    /// Whether the file says that its colours are sRGB, and whether it states a profile, a gamma or
    /// chromaticities.
    bool isSrgb = false;
    bool statesColors = false;

    bool hasOtherColors() const { return statesColors && !isSrgb; }

    std::size_t imageDataSize() const;
};

/// Only the header. Nothing for bytes that do not begin as a PNG of a defined form.
std::optional<PngHeader> readPngHeader(ByteSpan bytes);

/// Walks the chunks up to IEND. Nothing for a file that is torn, out of order or damaged. The CRCs
/// of the image data are left to the caller, who may check them on several threads.
std::optional<PngLayout> readPngLayout(ByteSpan bytes);

} // namespace quillabrae::raster
