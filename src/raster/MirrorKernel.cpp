// SPDX-License-Identifier: GPL-3.0-or-later
// to[i] = from[n - 1 - i] of n
#include "raster/MirrorKernel.h"

#include "raster/KernelTargets.h"
#include "raster/PixelLanes.h"

namespace quillabrae::raster {

QUILLABRAE_WIDE_KERNEL
void reversePixels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixelCount) {
    constexpr lanes::Words backward{7, 6, 5, 4, 3, 2, 1, 0};
    const std::uint8_t* end = from + 4 * pixelCount;
    std::size_t i = 0;
    for (; i + lanes::count <= pixelCount; i += lanes::count)
        lanes::storePixels(
            to + 4 * i, lanes::picked(lanes::loadPixels(end - 4 * (i + lanes::count)), backward));
    for (; i < pixelCount; ++i) std::memcpy(to + 4 * i, end - 4 * (i + 1), 4);
}

} // namespace quillabrae::raster
