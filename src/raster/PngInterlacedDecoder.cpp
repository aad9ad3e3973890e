// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"
#include "raster/PngDecoder.h"

#include <spng.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace quillabrae::raster {
namespace {

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};

/// The colour named transparent, cut to the samples' depth as the format has it; the library
/// compares all 16 bits.
std::vector<std::uint8_t> cutTransparency(const PngLayout& layout) {
    std::vector<std::uint8_t> data(layout.transparency.begin(), layout.transparency.end());
    const PngHeader& header = layout.header;
    if (header.colorType == PngColorType::palette || header.bitDepth == 16) return data;
    const auto mask = static_cast<std::uint8_t>((1U << header.bitDepth) - 1U);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = i % 2 == 0 ? std::uint8_t{0} : static_cast<std::uint8_t>(data[i] & mask);
    return data;
}

/// The file again with nothing in it but what the pixels need, so that the library spends nothing
/// on texts and profiles.
std::vector<std::uint8_t> bareFile(const PngLayout& layout) {
    const PngHeader& header = layout.header;
    std::array<std::uint8_t, 13> headerData{};
    writeBigEndian32(headerData.data(), header.width);
    writeBigEndian32(headerData.data() + 4, header.height);
    headerData[8] = header.bitDepth;
    headerData[9] = static_cast<std::uint8_t>(header.colorType);
    headerData[12] = header.isInterlaced ? 1 : 0;
    std::size_t size = pngSignature.size() + headerData.size() + layout.palette.size() +
                       layout.transparency.size() + 4 * pngChunkOverhead;
    for (const PngChunk& chunk : layout.imageData) size += chunk.whole.size();
    std::vector<std::uint8_t> file(size);
    std::uint8_t* out = std::ranges::copy(pngSignature, file.data()).out;
    out = writePngChunk(out, pngChunkType("IHDR"), headerData);
    if (!layout.palette.empty()) out = writePngChunk(out, pngChunkType("PLTE"), layout.palette);
    if (!layout.transparency.empty())
        out = writePngChunk(out, pngChunkType("tRNS"), cutTransparency(layout));
    for (const PngChunk& chunk : layout.imageData) out = std::ranges::copy(chunk.whole, out).out;
    out = writePngChunk(out, pngChunkType("IEND"), {});
    file.resize(static_cast<std::size_t>(out - file.data()));
    return file;
}

} // namespace

RasterImage decodeInterlacedPng(const PngLayout& layout) {
    const std::vector<std::uint8_t> file = bareFile(layout);
    const std::unique_ptr<spng_ctx, ContextDeleter> context(spng_ctx_new(0));
    if (!context || spng_set_png_buffer(context.get(), file.data(), file.size()) != 0) return {};
    RasterImage image = RasterImage::uninitialized(static_cast<int>(layout.header.width),
                                                   static_cast<int>(layout.header.height));
    if (image.isNull()) return {};
    const std::span<std::uint8_t> pixels = image.mutableBytes();
    if (spng_decode_image(context.get(), pixels.data(), pixels.size(), SPNG_FMT_RGBA8,
                          SPNG_DECODE_TRNS) != 0)
        return {};
    for (int y = 0; y < image.height(); ++y) {
        std::uint8_t* row = pixels.data() + static_cast<std::size_t>(y) * image.stride();
        premultiplyPixels(row, row, static_cast<std::size_t>(image.width()));
    }
    return image;
}

} // namespace quillabrae::raster
