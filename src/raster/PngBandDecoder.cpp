// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Parallel.h"
#include "raster/PngBandReader.h"
#include "raster/PngDecoder.h"

#include <atomic>

namespace quillabrae::raster {

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
        const std::optional<FilteredBand> filtered = readBand(layout, bands, band);
        if (!filtered) {
            isWhole = false;
            return;
        }
        expandBand(*filtered, pixels + rowsOfBand(header, bands, band).first * stride, stride);
    });
    return isWhole ? image : RasterImage();
}

} // namespace quillabrae::raster
