// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/AlphaKernels.h"
#include "raster/Deflate.h"
#include "raster/Parallel.h"
#include "raster/PngDecoder.h"
#include "raster/PngFilter.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace quillabrae::raster {
namespace {

constexpr std::size_t bytesPerPixel = 4;

struct BandWorkspace {
    BandInflater inflater;
    std::vector<std::uint8_t> filtered;
};

BandWorkspace& workspaceOfThisThread() {
    thread_local BandWorkspace workspace;
    return workspace;
}

/// Unfilters the rows of a band in place and writes them premultiplied to `pixels`.
bool expandBand(std::span<std::uint8_t> filtered, std::size_t stride, std::uint8_t* pixels) {
    const std::uint8_t* above = nullptr;
    for (std::size_t at = 0; at < filtered.size(); at += stride + 1, pixels += stride) {
        const std::uint8_t filter = filtered[at];
        std::uint8_t* row = filtered.data() + at + 1;
        if (above == nullptr && filter > static_cast<std::uint8_t>(PngFilter::sub)) return false;
        if (!unfilterRow(filter, row, above, stride, bytesPerPixel)) return false;
        premultiplyPixels(row, pixels, stride / bytesPerPixel);
        above = row;
    }
    return true;
}

bool decodeBand(const PngChunk& chunk, std::uint32_t checksum, std::size_t rowCount,
                std::size_t stride, std::uint8_t* pixels) {
    if (!chunk.hasValidCrc()) return false;
    BandWorkspace& workspace = workspaceOfThisThread();
    workspace.filtered.resize(rowCount * (stride + 1));
    return workspace.inflater.inflate(chunk.data, workspace.filtered) &&
           adlerOf(workspace.filtered) == checksum &&
           expandBand(workspace.filtered, stride, pixels);
}

} // namespace

RasterImage decodePngBands(const PngLayout& layout, const PngBands& bands) {
    const PngHeader& header = layout.header;
    RasterImage image =
        RasterImage::uninitialized(static_cast<int>(header.width), static_cast<int>(header.height));
    if (image.isNull()) return {};
    if (!layout.imageData.front().hasValidCrc() || !layout.imageData.back().hasValidCrc())
        return {};
    std::uint8_t* const pixels = image.mutableBytes().data();
    const std::size_t stride = image.stride();
    std::atomic<bool> isWhole = true;
    parallelFor(static_cast<int>(bands.checksums.size()), [&](int index) {
        if (!isWhole) return;
        const auto band = static_cast<std::size_t>(index);
        const std::size_t first = band * static_cast<std::size_t>(bands.rows);
        const std::size_t rows =
            std::min(static_cast<std::size_t>(bands.rows), header.height - first);
        if (!decodeBand(layout.imageData[band + 1], bands.checksums[band], rows, stride,
                        pixels + first * stride))
            isWhole = false;
    });
    return isWhole ? image : RasterImage();
}

} // namespace quillabrae::raster
