// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/DecodeCache.h"
#include "raster/MaskKernels.h"
#include "raster/Parallel.h"
#include "raster/PngCodec.h"
#include "raster/RasterImage.h"

#include <QSize>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// The PNG of a mask: white pixels of an alpha that comes from rows of bytes. `rowsFor(first,
/// last)` is called for each band of rows and returns what is then called as `fill(y, alpha)` for
/// each row of the band, to write every byte of it. Bands are filled on several threads. Nothing
/// for a size that no picture has.
template <typename RowsFor>
std::optional<model::PngBytes> alphaMaskPNGData(QSize size, RowsFor&& rowsFor) {
    if (!isDecodableSize(size.width(), size.height())) return std::nullopt;
    RasterImage image = RasterImage::uninitialized(size.width(), size.height());
    if (image.isNull()) return std::nullopt;
    constexpr int rowsAtOnce = 32;
    std::uint8_t* const pixels = image.mutableBytes().data();
    const std::size_t stride = image.stride();
    parallelForRowBands(size.height(), rowsAtOnce, [&](int first, int last) {
        auto fill = rowsFor(first, last);
        std::vector<std::uint8_t> alpha(static_cast<std::size_t>(size.width()));
        for (int y = first; y < last; ++y) {
            fill(y, std::span(alpha));
            whitePixels(alpha.data(), pixels + static_cast<std::size_t>(y) * stride, alpha.size());
        }
    });
    return encodedImage(image);
}

} // namespace quillabrae::raster
