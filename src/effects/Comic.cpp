// SPDX-License-Identifier: GPL-3.0-or-later
// Q = colour under the guided filter of GuidedSmoothing.h, held from 0 to 1
// q = 0.299 Q_r + 0.587 Q_g + 0.114 Q_b
// n = tones - 1;  k = floor(n q + 1/2);  v = (k + held(4 (n q - k), -1/2, 1/2)) / n
// d = Gaussian_coarse(q) - Gaussian_fine(q);  e = d / (Gaussian_coarse(q) + 0.1)
// line = held((e - lineBegins) / (lineIsFull - lineBegins), 0, 1)
// dot(x, y) = 1/2 - cos(pi x / 4) cos(pi y / 4) / 2;  s = coverage (1 - q / shadow)
// dots = held(4 (s - dot(x, y)) + 1/2, 0, 1);  ink = 1 - (1 - line) (1 - dots)
// c' = a (1 - 0.92 ink) held(v + chroma (Q - q), 0, 1)
//
// Abstraction by smoothing within edges, soft quantisation of luminance and lines from a difference
// of Gaussians (Winnemoeller, Olsen and Gooch, Real-Time Video Abstraction, 2006), here relative to
// the surroundings, as the eye sees edges (Weber). Shadows are screened with round dots at 45
// degrees, as print does (Ulichney, Digital Halftoning, 1987). In gamma light, in which equal steps
// look equal. Gaussians count pixels by their alpha, so that the edge of a shape draws no line.
#include "effects/Comic.h"

#include "effects/ColorLanes.h"
#include "effects/GuidedSmoothing.h"
#include "effects/SmoothedLuma.h"
#include "raster/KernelTargets.h"
#include "raster/Parallel.h"

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Integers;
using lanes::Words;
using raster::RasterImage;

constexpr int rowsPerBand = 128;
constexpr float inkDensity = 0.92F;
constexpr float softness = 4.0F;
/// What keeps differences in the dark from looking larger than they are.
constexpr float dimLight = 0.1F;

/// The dots repeat after eight pixels, which is as many as are worked on at once.
std::array<Floats, lanes::count> dotScreen() {
    std::array<Floats, lanes::count> rows{};
    constexpr double quarter = std::numbers::pi / 4.0;
    for (std::size_t y = 0; y < lanes::count; ++y)
        for (std::size_t x = 0; x < lanes::count; ++x)
            rows[y][x] = static_cast<float>(0.5 - 0.5 * std::cos(quarter * static_cast<double>(x)) *
                                                      std::cos(quarter * static_cast<double>(y)));
    return rows;
}

/// Eight pixels' coefficients of a plane, from those of the cells that they are in.
[[gnu::always_inline]] inline Floats spread(const float* cells) {
    static_assert(GuidedSmoothing::cell == 4);
    const Floats from = lanes::loaded(cells - 1);
    const Floats part{0.625F, 0.875F, 0.125F, 0.375F, 0.625F, 0.875F, 0.125F, 0.375F};
    const Floats left = __builtin_shufflevector(from, from, 0, 0, 1, 1, 1, 1, 2, 2);
    const Floats right = __builtin_shufflevector(from, from, 1, 1, 2, 2, 2, 2, 3, 3);
    return left + part * (right - left);
}

[[gnu::always_inline]] inline Floats toUnit(Floats value) {
    return lanes::held(value, Floats{}, lanes::all(1.0F));
}

/// A row's coefficients: `stride` from plane to plane, each at its first cell.
struct Coefficients {
    const float* planes;
    std::size_t stride;
};

/// Straight colours, from 0 to 1.
struct Flat {
    Floats red;
    Floats green;
    Floats blue;

    [[gnu::always_inline]] Floats luma() const {
        return 0.299F * red + 0.587F * green + 0.114F * blue;
    }
};

/// Eight pixels under the guided filter; what is transparent counts as black.
[[gnu::always_inline]] inline Flat flattened(const Coefficients& coefficients, std::size_t pixel,
                                             const lanes::Colors& color) {
    const Floats scale = 1.0F / lanes::greater(color.alpha, lanes::all(1.0F));
    const float* const cells = coefficients.planes + pixel / GuidedSmoothing::cell;
    const auto smoothed = [&](std::size_t gain, std::size_t offset, Floats component)
        __attribute__((always_inline)) {
        return toUnit(spread(cells + coefficients.stride * gain) * component * scale +
                      spread(cells + coefficients.stride * offset));
    };
    using Guided = GuidedSmoothing;
    return {smoothed(Guided::redGain, Guided::redOffset, color.red),
            smoothed(Guided::greenGain, Guided::greenOffset, color.green),
            smoothed(Guided::blueGain, Guided::blueOffset, color.blue)};
}

QUILLABRAE_WIDE_KERNEL
void readLuma(const std::uint8_t* pixels, std::size_t count, const Coefficients& coefficients,
              float* weighted, float* weights) {
    const Coefficients row = coefficients;
    lanes::visitRun(
        pixels, count, [&](std::size_t i, Words eight) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(eight);
            const Floats luma = flattened(row, i, color).luma();
            if (weights == nullptr) return lanes::store(weighted + i, luma);
            const Floats weight = color.alpha * (1.0F / 255.0F);
            lanes::store(weighted + i, luma * weight);
            lanes::store(weights + i, weight);
        });
}

/// What a row is drawn with.
struct Ink {
    const float* fine;
    const float* coarse;
    Floats screen;
};

[[gnu::always_inline]] inline Floats inkOf(const Ink& ink, std::size_t pixel, Floats luma,
                                           const Comic& comic) {
    const Floats coarse = lanes::loaded(ink.coarse + pixel);
    const Floats edge = (coarse - lanes::loaded(ink.fine + pixel)) / (coarse + dimLight);
    const Floats line =
        toUnit((edge - comic.lineBegins) * (1.0F / (comic.lineIsFull - comic.lineBegins)));
    const Floats shade = comic.coverage * (1.0F - luma * (1.0F / comic.shadow));
    const Floats dots = toUnit(softness * (shade - ink.screen) + 0.5F);
    return 1.0F - (1.0F - line) * (1.0F - dots);
}

[[gnu::always_inline]] inline Floats toneOf(Floats luma, float steps) {
    const Floats scaled = luma * steps;
    const Floats nearest = lanes::truncated(scaled + 0.5F);
    const Floats soft =
        lanes::held(softness * (scaled - nearest), lanes::all(-0.5F), lanes::all(0.5F));
    return (nearest + soft) * (1.0F / steps);
}

QUILLABRAE_WIDE_KERNEL
void drawRow(std::uint8_t* to, const std::uint8_t* from, std::size_t count,
             const Coefficients& coefficients, const Ink& ink, const Comic& comic) {
    const Coefficients row = coefficients;
    const Ink pens = ink;
    const Comic parameters = comic;
    std::size_t i = 0;
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, count, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Flat flat = flattened(row, i, color);
            const Floats luma = flat.luma();
            const Floats tone = toneOf(luma, parameters.tones - 1.0F);
            const Floats paper =
                color.alpha * (1.0F - inkDensity * inkOf(pens, i, luma, parameters));
            const auto drawn = [&](Floats component) __attribute__((always_inline)) {
                return paper * toUnit(tone + parameters.chroma * (component - luma));
            };
            const Words result =
                lanes::packed(drawn(flat.red), drawn(flat.green), drawn(flat.blue), pixels);
            i += lanes::count;
            return result;
        });
}

/// Draws rows of the picture.
class Drawing {
public:
    Drawing(const Comic& comic, const RasterImage& image, const GuidedSmoothing& smoothing)
        : m_comic(comic), m_image(image), m_smoothing(smoothing) {}

    void drawBand(std::uint8_t* pixels, int first, int last) const {
        const auto width = static_cast<std::size_t>(m_image.width());
        const std::array deviations{static_cast<double>(m_comic.fineDeviation),
                                    static_cast<double>(m_comic.coarseDeviation)};
        const int reach = SmoothedLuma::reachOf(deviations);
        std::vector<float> lumaPlanes(GuidedSmoothing::planeCount * m_smoothing.stride());
        std::vector<float> planes(GuidedSmoothing::planeCount * m_smoothing.stride());
        const auto weights = isOpaque(m_image, first - reach, last + reach)
                                 ? SmoothedLuma::Weights::one
                                 : SmoothedLuma::Weights::varying;
        SmoothedLuma smoothed(
            m_image, deviations, weights, first, [&](int row, float* weighted, float* alphas) {
                m_smoothing.interpolate(row, lumaPlanes.data());
                readLuma(m_image.row(row), width, at(lumaPlanes), weighted, alphas);
            });
        const auto screen = dotScreen();
        for (int y = first; y < last; ++y) {
            smoothed.moveTo(y);
            m_smoothing.interpolate(y, planes.data());
            drawRow(pixels + static_cast<std::size_t>(y) * m_image.stride(), m_image.row(y), width,
                    at(planes),
                    {smoothed.row(0), smoothed.row(1),
                     screen[static_cast<std::size_t>(y) % screen.size()]},
                    m_comic);
        }
    }

private:
    Coefficients at(const std::vector<float>& planes) const {
        return {planes.data() + GuidedSmoothing::margin, m_smoothing.stride()};
    }

    const Comic& m_comic;
    const RasterImage& m_image;
    const GuidedSmoothing& m_smoothing;
};

} // namespace

RasterImage applied(const Comic& comic, const RasterImage& image) {
    if (image.isNull()) return {};
    auto result = RasterImage::uninitialized(image.width(), image.height());
    const GuidedSmoothing smoothing(image, comic.flatness);
    if (result.isNull() || !smoothing.isComplete()) return {};
    result.setLogicalSize(image.logicalSize());
    std::uint8_t* const pixels = result.mutableRow(0);
    const Drawing drawing(comic, image, smoothing);
    raster::parallelForRowBands(image.height(), rowsPerBand, [&](int first, int last) {
        drawing.drawBand(pixels, first, last);
    });
    return result;
}

} // namespace quillabrae::effects
