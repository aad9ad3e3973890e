// SPDX-License-Identifier: GPL-3.0-or-later
// k = floor(n * c / (a + 1)); c' = a * k / (n - 1), rounded
//
// The uniform quantiser of the textbooks (Gonzalez and Woods, Digital Image Processing, on sampling
// and quantisation): the straight value c / a falls into one of n bins of equal width, and the bins
// come out evenly spread from nothing to full strength. In gamma light, where equal steps look
// equal. With a + 1 in place of a the fullest value falls into the last bin by itself.
#include "effects/Posterize.h"

#include "effects/ColorLanes.h"
#include "effects/PixelwiseEffect.h"
#include "raster/KernelTargets.h"

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Words;

/// What numbers are raised by before their fraction is dropped. They are fractions over at most
/// 256, so this far below a whole number there is none but for rounding.
constexpr float doubt = 1e-4F;

QUILLABRAE_WIDE_KERNEL
void posterizePixels(std::uint8_t* to, const std::uint8_t* from, std::size_t pixelCount,
                     float levels) {
    const float spread = 1.0F / (levels - 1.0F);
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, pixelCount, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Floats bins = levels / (color.alpha + 1.0F);
            const Floats step = color.alpha * spread;
            const auto leveled = [&](Floats component) __attribute__((always_inline)) {
                return lanes::truncated(component * bins + doubt) * step + doubt;
            };
            return lanes::packed(leveled(color.red), leveled(color.green), leveled(color.blue),
                                 pixels);
        });
}

} // namespace

raster::RasterImage applied(const Posterize& posterize, const raster::RasterImage& image) {
    return pixelwise(image, [&](std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
        posterizePixels(to, from, count, posterize.levels);
    });
}

} // namespace quillabrae::effects
