// SPDX-License-Identifier: GPL-3.0-or-later
// y = (wr * r + wg * g + wb * b) / a
// v = y + contrast * (y * y * (3 - 2 * y) - y);  r' = g' = b' = a * v
//
// The channel mixer of the darkroom's coloured filters: an orange filter passes most of red and
// green and little of blue, which keeps skin light and darkens skies. The S-curve is Hermite's
// cubic (smoothstep, Ebert et al., Texturing and Modeling), which deepens shadows, lifts lights and
// leaves black, middle grey and white where they are. In gamma light, where contrast is seen.
#include "effects/Noir.h"

#include "effects/ColorLanes.h"
#include "effects/PixelwiseEffect.h"
#include "raster/KernelTargets.h"

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Words;

QUILLABRAE_WIDE_KERNEL
void monochromePixels(std::uint8_t* to, const std::uint8_t* from, std::size_t pixelCount,
                      const Noir& noir) {
    const Noir parameters = noir;
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, pixelCount, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Floats mixed = parameters.red * color.red + parameters.green * color.green +
                                 parameters.blue * color.blue;
            // Nothing stays nothing, whatever it is divided by.
            const Floats tone = mixed / lanes::greater(color.alpha, lanes::all(1.0F));
            const Floats curved = tone * tone * (3.0F - 2.0F * tone);
            const Floats value = color.alpha * (tone + parameters.contrast * (curved - tone));
            const Words gray = lanes::bytesOf(lanes::held(value, Floats{}, color.alpha));
            return gray | gray << 8 | gray << 16 | (pixels & 0xff000000U);
        });
}

} // namespace

raster::RasterImage applied(const Noir& noir, const raster::RasterImage& image) {
    return pixelwise(image, [&](std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
        monochromePixels(to, from, count, noir);
    });
}

} // namespace quillabrae::effects
