// SPDX-License-Identifier: GPL-3.0-or-later
// Y = 0.299 r + 0.587 g + 0.114 b
// D = sharpness * (Y - a * Gaussian(Y) / Gaussian(a));  h = haloLimit * a
// c' = c + D * h / (h + |D|), held from 0 to a   for red, green and blue alike
//
// Unsharp masking (Gonzalez and Woods, Digital Image Processing) of luma alone (ITU-R BT.601): the
// same step for all three channels leaves colour differences as they are. The step grows the
// slower, the nearer it is to the limit, so that fine texture gains in full and hard edges get no
// halo. In gamma light, in which equal steps look equal. The surroundings are those that are
// opaque, by their alpha, so that the edge of a shape is no edge of brightness.
#include "effects/SharpenLuminance.h"

#include "effects/ColorLanes.h"
#include "effects/SmoothedLuma.h"
#include "raster/KernelTargets.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <array>

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Words;
using raster::RasterImage;

constexpr int rowsPerBand = 128;

[[gnu::always_inline]] inline Floats lumaOf(const lanes::Colors& color) {
    return 0.299F * color.red + 0.587F * color.green + 0.114F * color.blue;
}

/// The luma of a row, times alpha, and its alpha, both over 255.
QUILLABRAE_WIDE_KERNEL
void readLuma(const std::uint8_t* pixels, std::size_t count, float* weighted, float* weights) {
    lanes::visitRun(
        pixels, count, [&](std::size_t i, Words eight) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(eight);
            lanes::store(weighted + i, lumaOf(color) * (1.0F / 255.0F));
            if (weights != nullptr) lanes::store(weights + i, color.alpha * (1.0F / 255.0F));
        });
}

/// `around` is the surroundings' straight luma.
QUILLABRAE_WIDE_KERNEL
void sharpenRow(std::uint8_t* to, const std::uint8_t* from, std::size_t count, const float* around,
                const SharpenLuminance& sharpen) {
    const SharpenLuminance parameters = sharpen;
    std::size_t i = 0;
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, count, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Floats difference =
                parameters.sharpness * (lumaOf(color) - color.alpha * lanes::loaded(around + i));
            i += lanes::count;
            const Floats limit =
                parameters.haloLimit * lanes::greater(color.alpha, lanes::all(1.0F));
            const Floats step = difference * limit / (limit + lanes::magnitude(difference));
            const auto moved = [&](Floats component) __attribute__((always_inline)) {
                return lanes::held(component + step, Floats{}, color.alpha);
            };
            return lanes::packed(moved(color.red), moved(color.green), moved(color.blue), pixels);
        });
}

void sharpenBand(std::uint8_t* pixels, const RasterImage& image, int first, int last,
                 const SharpenLuminance& sharpen) {
    const std::array deviations{static_cast<double>(sharpen.radius)};
    const int reach = SmoothedLuma::reachOf(deviations);
    const auto width = static_cast<std::size_t>(image.width());
    SmoothedLuma around(image, deviations,
                        isOpaque(image, first - reach, last + reach)
                            ? SmoothedLuma::Weights::one
                            : SmoothedLuma::Weights::varying,
                        first, [&](int row, float* weighted, float* weights) {
                            readLuma(image.row(row), width, weighted, weights);
                        });
    for (int y = first; y < last; ++y) {
        around.moveTo(y);
        sharpenRow(pixels + static_cast<std::size_t>(y) * image.stride(), image.row(y), width,
                   around.row(0), sharpen);
    }
}

} // namespace

RasterImage applied(const SharpenLuminance& sharpen, const RasterImage& image) {
    if (image.isNull()) return {};
    auto result = RasterImage::uninitialized(image.width(), image.height());
    if (result.isNull()) return {};
    result.setLogicalSize(image.logicalSize());
    std::uint8_t* const pixels = result.mutableRow(0);
    raster::parallelForRowBands(image.height(), rowsPerBand, [&](int first, int last) {
        sharpenBand(pixels, image, first, last, sharpen);
    });
    return result;
}

} // namespace quillabrae::effects
