// SPDX-License-Identifier: GPL-3.0-or-later
// u * fu + (l * fl) * (1 - alpha(u) * fu), every product rounded to a byte
#include "raster/Flatten.h"

#include "raster/KernelTargets.h"
#include "raster/Parallel.h"
#include "raster/PixelLanes.h"
#include "raster/RowBands.h"

#include <cstring>

namespace quillabrae::raster {
namespace {

QUILLABRAE_WIDE_KERNEL
void flattenRun(std::uint8_t* to, const std::uint8_t* lower, std::uint8_t lowerFraction,
                const std::uint8_t* upper, std::uint8_t upperFraction, std::size_t pixelCount) {
    const lanes::Words below = lanes::Words{} + lowerFraction;
    const lanes::Words above = lanes::Words{} + upperFraction;
    lanes::combineRun<lanes::Operand::pixels>(
        to, lower, upper,
        pixelCount, [&](lanes::Words l, lanes::Words u) __attribute__((always_inline)) {
            return lanes::sourceOver(lanes::scaled(l, below), lanes::scaled(u, above));
        });
}

} // namespace

RasterImage flattenedImage(const FlattenedPart& lower, const FlattenedPart& upper) {
    RasterImage result = RasterImage::uninitialized(lower.image.width(), lower.image.height());
    if (result.isNull()) return result;
    result.setLogicalSize(lower.image.logicalSize());
    std::uint8_t* const target = result.mutableRow(0);
    const std::size_t stride = result.stride();
    parallelForRowBands(result.height(), rowsPerBand(result.width()), [&](int first, int last) {
        flattenRun(target + static_cast<std::size_t>(first) * stride, lower.image.row(first),
                   lower.fraction, upper.image.row(first), upper.fraction,
                   stride / 4 * static_cast<std::size_t>(last - first));
    });
    return result;
}

} // namespace quillabrae::raster
