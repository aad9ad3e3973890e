// SPDX-License-Identifier: GPL-3.0-or-later
// Y = 0.299 r + 0.587 g + 0.114 b;  s = (max - min) / max of r, g, b
// I = 0.596 r - 0.274 g - 0.322 b;  Q = 0.211 r - 0.523 g + 0.312 b
// skin = max((I * |I| / (I * I + Q * Q) - 0.75) / 0.25, 0)
// k = 1 + amount * (1 - s) * (1 - 0.8 * skin), no more than keeps every c' from 0 to a
// c' = Y + k * (c - Y)
//
// Chroma scaled about luma keeps hue and luma (ITU-R BT.601), and more of it where the saturation
// of the hexcone model is low (Smith, Color Gamut Transform Pairs, 1978). The I axis of NTSC's YIQ
// runs along the hues of skin: colours within 30 degrees of it are skin the more, the closer they
// are. In gamma light. Every ratio is the same for premultiplied components, so they are used as
// they are.
#include "effects/Vibrance.h"

#include "effects/ColorLanes.h"
#include "effects/PixelwiseEffect.h"
#include "raster/KernelTargets.h"

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Words;

constexpr float skinHeldBack = 0.8F;
/// The squared cosine of the angle at which a hue is no longer skin's.
constexpr float skinBorder = 0.75F;
/// Below every difference that bytes make; keeps divisions from zero.
constexpr float tiny = 1e-3F;

[[gnu::always_inline]] inline Floats skinOf(const lanes::Colors& color) {
    const Floats i = 0.596F * color.red - 0.274F * color.green - 0.322F * color.blue;
    const Floats q = 0.211F * color.red - 0.523F * color.green + 0.312F * color.blue;
    const Floats square = i * i;
    const Floats cosine = square / (square + q * q + tiny);
    const Floats skin = lanes::greater((cosine - skinBorder) / (1.0F - skinBorder), Floats{});
    return i > 0.0F ? skin : Floats{};
}

QUILLABRAE_WIDE_KERNEL
void enlivenPixels(std::uint8_t* to, const std::uint8_t* from, std::size_t pixelCount,
                   float amount) {
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, pixelCount, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Floats luma = 0.299F * color.red + 0.587F * color.green + 0.114F * color.blue;
            const Floats most = lanes::greater(lanes::greater(color.red, color.green), color.blue);
            const Floats least = lanes::lesser(lanes::lesser(color.red, color.green), color.blue);
            const Floats saturation = (most - least) / lanes::greater(most, lanes::all(1.0F));
            const Floats wanted =
                1.0F + amount * (1.0F - saturation) * (1.0F - skinHeldBack * skinOf(color));
            const Floats above =
                (color.alpha - luma) / lanes::greater(most - luma, lanes::all(tiny));
            const Floats below = luma / lanes::greater(luma - least, lanes::all(tiny));
            const Floats gain = lanes::lesser(wanted, lanes::lesser(above, below));
            const auto lively = [&](Floats component) __attribute__((always_inline)) {
                return lanes::held(luma + gain * (component - luma), Floats{}, color.alpha);
            };
            return lanes::packed(lively(color.red), lively(color.green), lively(color.blue),
                                 pixels);
        });
}

} // namespace

raster::RasterImage applied(const Vibrance& vibrance, const raster::RasterImage& image) {
    return pixelwise(image, [&](std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
        enlivenPixels(to, from, count, vibrance.amount);
    });
}

} // namespace quillabrae::effects
