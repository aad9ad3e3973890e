// SPDX-License-Identifier: GPL-3.0-or-later
// a = factor * |p - t|; c = (p - t * (1 - a / 255)) / (a / 255)
#include "raster/ColorRemoval.h"

#include "raster/ColorRemovalKernel.h"
#include "raster/Parallel.h"
#include "raster/RowBands.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace quillabrae::raster {
namespace {

/// Written so that NaN is 0.
double held(double value, double limit) {
    return value > 0.0 ? std::min(value, limit) : 0.0;
}

} // namespace

ColorRemoval ColorRemoval::of(const model::ColorValue& targetColor, double tolerancePercentage,
                              double transparentAlphaThresholdPercentage) {
    return {.red = held(targetColor.red * 255.0, 255.0),
            .green = held(targetColor.green * 255.0, 255.0),
            .blue = held(targetColor.blue * 255.0, 255.0),
            .factor = held(tolerancePercentage, 20.0),
            .threshold = held(transparentAlphaThresholdPercentage, 255.0)};
}

RasterImage imageWithColorRemoved(const RasterImage& image, const ColorRemoval& removal) {
    RasterImage result = RasterImage::uninitialized(image.width(), image.height());
    if (result.isNull()) return result;
    result.setLogicalSize(image.logicalSize());
    std::uint8_t* const target = result.mutableRow(0);
    std::atomic<bool> isAnyWritten = false;
    parallelForRowBands(image.height(), rowsPerBand(image.width()), [&](int first, int last) {
        const std::size_t start = image.stride() * static_cast<std::size_t>(first);
        const std::size_t pixelCount =
            static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(last - first);
        if (removeColorFromPixels(image.row(first), target + start, pixelCount, removal))
            isAnyWritten.store(true, std::memory_order_relaxed);
    });
    return isAnyWritten ? result : RasterImage();
}

} // namespace quillabrae::raster
