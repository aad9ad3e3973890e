// SPDX-License-Identifier: GPL-3.0-or-later
// Y = 0.2126 r + 0.7152 g + 0.0722 b;  w = max(Y - threshold * a, 0) / Y
// g = intensity * Gaussian(w * c);  c' = c + g - c * g   for red, green, blue and alpha alike
//
// The bright pass of high-dynamic-range rendering (Debevec et al.), which keeps the part above a
// threshold, spread by a Gaussian and laid over by the screen mode (W3C Compositing and Blending),
// whose premultiplied form is the same for all four components. In gamma light, in which that mode
// is defined. Pixels beyond the edge are those at it.
//
// So wide a Gaussian leaves nothing that needs all pixels: the bright part is reduced to every
// fourth, spread there, and enlarged again. Reduction and enlargement are by cubic B-splines (Hou
// and Andrews, 1978), which are near Gaussians themselves, of variance 5 and 16 / 3; the spread
// between them has the rest of the variance.
#include "effects/Bloom.h"

#include "effects/ColorLanes.h"
#include "effects/FloatRows.h"
#include "effects/GaussianWeights.h"
#include "effects/WeightedSums.h"
#include "raster/KernelTargets.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace quillabrae::effects {
namespace {

using lanes::Floats;
using lanes::Words;
using raster::RasterImage;

/// Every so-manieth pixel, from the first on, has a sample.
constexpr int step = 4;
/// The B-spline's reach to either side.
constexpr int reach = 6;
constexpr int taps = 2 * reach + 1;
/// Out of 256: four boxes of four pixels after each other.
constexpr std::array<int, taps> reducing{1, 4, 10, 20, 31, 40, 44, 40, 31, 20, 10, 4, 1};
constexpr double reducingVariance = 5.0;
constexpr double enlargingVariance = 16.0 / 3.0;

/// Samples before the picture's first and after its last pixel: so many that the outermost see
/// nothing but the edge, and stand for all beyond.
constexpr int samplesBefore = 2;
constexpr int samplesAfter = 3;

constexpr std::size_t channels = 4;

int sampleCount(int pixels) {
    return (pixels - 1) / step + 1 + samplesBefore + samplesAfter;
}

QUILLABRAE_WIDE_KERNEL
void passBright(std::uint8_t* to, const std::uint8_t* from, std::size_t pixelCount,
                float threshold) {
    // As large as bytes can hold; the scale is made up for at the end.
    const float scale = 1.0F / (1.0F - threshold);
    raster::lanes::combineRun<raster::lanes::Operand::nothing>(
        to, from, nullptr, pixelCount, [&](Words pixels, Words) __attribute__((always_inline)) {
            const lanes::Colors color = lanes::unpacked(pixels);
            const Floats luma = 0.2126F * color.red + 0.7152F * color.green + 0.0722F * color.blue;
            const Floats above = lanes::greater(luma - threshold * color.alpha, Floats{});
            const Floats share = scale * above / lanes::greater(luma, lanes::all(1e-3F));
            return lanes::bytesOf(share * color.red) | lanes::bytesOf(share * color.green) << 8 |
                   lanes::bytesOf(share * color.blue) << 16 |
                   lanes::bytesOf(share * color.alpha) << 24;
        });
}

QUILLABRAE_WIDE_KERNEL
void reduceRows(float* __restrict to, const std::array<const std::uint8_t*, taps>& rows,
                std::size_t count) {
    const auto [r0, r1, r2, r3, r4, r5, r6, r7, r8, r9, r10, r11, r12] = rows;
    for (std::size_t i = 0; i < count; ++i) {
        const int sum = (r0[i] + r12[i]) + 4 * (r1[i] + r11[i]) + 10 * (r2[i] + r10[i]) +
                        20 * (r3[i] + r9[i]) + 31 * (r4[i] + r8[i]) + 40 * (r5[i] + r7[i]) +
                        44 * r6[i];
        to[i] = static_cast<float>(static_cast<std::uint16_t>(sum));
    }
}

using Pixel = float __attribute__((vector_size(4 * channels)));

[[gnu::always_inline]] inline Pixel pixelAt(const float* from, std::ptrdiff_t index) {
    Pixel pixel;
    std::memcpy(&pixel, from + std::ptrdiff_t{channels} * index, sizeof pixel);
    return pixel;
}

/// `from` is at the pixel of the first sample.
QUILLABRAE_WIDE_KERNEL
void reduceColumns(float* to, const float* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += channels * step) {
        Pixel sum = static_cast<float>(reducing[reach]) * pixelAt(from, 0);
        for (int k = 1; k <= reach; ++k)
            sum += static_cast<float>(reducing[static_cast<std::size_t>(reach - k)]) *
                   (pixelAt(from, -k) + pixelAt(from, k));
        sum *= 1.0F / 65536.0F;
        std::memcpy(to + channels * i, &sum, sizeof sum);
    }
}

/// The B-spline's weights of the four samples around a pixel, `pixel` pixels after the second.
std::array<float, 4> enlargingWeights(int pixel) {
    const double t = static_cast<double>(pixel) / step;
    const double u = 1.0 - t;
    return {static_cast<float>(u * u * u / 6.0),
            static_cast<float>((3.0 * t * t * t - 6.0 * t * t + 4.0) / 6.0),
            static_cast<float>((3.0 * u * u * u - 6.0 * u * u + 4.0) / 6.0),
            static_cast<float>(t * t * t / 6.0)};
}

/// Those weights times a scale, one for each component of two neighbouring pixels.
struct Enlarging {
    std::array<std::array<Floats, 4>, 2> weights{};

    explicit Enlarging(float scale) {
        for (std::size_t pixel = 0; pixel < step; ++pixel) {
            const auto samples = enlargingWeights(static_cast<int>(pixel));
            for (std::size_t k = 0; k < samples.size(); ++k)
                for (std::size_t c = 0; c < channels; ++c)
                    weights[pixel / 2][k][channels * (pixel % 2) + c] = scale * samples[k];
        }
    }
};

using EightBytes = std::uint8_t __attribute__((vector_size(8)));

/// Two pixels, screened with their glow, which runs from 0 to 1.
[[gnu::always_inline]] inline void screenTwo(std::uint8_t* to, const std::uint8_t* from,
                                             Floats glow) {
    EightBytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    const Floats under = __builtin_convertvector(bytes, Floats);
    const Floats screened = under + glow * (255.0F - under) + 0.5F;
    bytes = __builtin_convertvector(__builtin_convertvector(screened, lanes::Integers), EightBytes);
    std::memcpy(to, &bytes, sizeof bytes);
}

/// Four pixels for each sample; `samples` is at the one before the first pixel's.
QUILLABRAE_WIDE_KERNEL
void screenGroups(std::uint8_t* to, const std::uint8_t* from, const float* samples,
                  std::size_t groups, const Enlarging& enlarging) {
    const auto weights = enlarging.weights;
    for (std::size_t i = 0; i < groups; ++i) {
        Floats first{};
        Floats second{};
        for (std::size_t k = 0; k < 4; ++k) {
            const Pixel pixel = pixelAt(samples + channels * i, static_cast<std::ptrdiff_t>(k));
            const Floats twice = __builtin_shufflevector(pixel, pixel, 0, 1, 2, 3, 4, 5, 6, 7);
            first += weights[0][k] * twice;
            second += weights[1][k] * twice;
        }
        screenTwo(to + 16 * i, from + 16 * i, first);
        screenTwo(to + 16 * i + 8, from + 16 * i + 8, second);
    }
}

void screenRow(std::uint8_t* to, const std::uint8_t* from, const float* samples, int width,
               const Enlarging& enlarging) {
    const auto groups = static_cast<std::size_t>(width / step);
    const auto rest = channels * static_cast<std::size_t>(width % step);
    screenGroups(to, from, samples, groups, enlarging);
    if (rest == 0) return;
    std::array<std::uint8_t, channels * step> padded{};
    std::copy_n(from + 16 * groups, rest, padded.begin());
    screenGroups(padded.data(), padded.data(), samples + channels * groups, 1, enlarging);
    std::copy_n(padded.begin(), rest, to + 16 * groups);
}

/// Repeats the first of `count` pixels before them and the last one after them.
void repeatEdges(float* pixels, std::size_t count, std::size_t before, std::size_t after) {
    for (std::size_t i = 1; i <= before; ++i) std::copy_n(pixels, channels, pixels - channels * i);
    const float* const last = pixels + channels * (count - 1);
    for (std::size_t i = 0; i < after; ++i)
        std::copy_n(last, channels, pixels + channels * (count + i));
}

/// The bright part of rows that are asked for in their order; a few of the last ones are kept.
class BrightRows {
public:
    /// The first row asked for will be the one around `firstMiddle`.
    BrightRows(const RasterImage& image, float threshold, int firstMiddle)
        : m_image(image),
          m_threshold(threshold),
          m_rows(kept * image.stride()),
          m_next(std::clamp(firstMiddle - reach, 0, image.height() - 1)) {}

    /// The rows around `middle` that the B-spline reaches, for one middle after the other.
    std::array<const std::uint8_t*, taps> around(int middle) {
        std::array<const std::uint8_t*, taps> rows{};
        for (int k = 0; k < taps; ++k) {
            const int y = std::clamp(middle + k - reach, 0, m_image.height() - 1);
            for (; m_next <= y; ++m_next)
                passBright(slot(m_next), m_image.row(m_next),
                           static_cast<std::size_t>(m_image.width()), m_threshold);
            rows[static_cast<std::size_t>(k)] = slot(y);
        }
        return rows;
    }

private:
    static constexpr std::size_t kept = 16;
    static_assert(kept > taps);

    std::uint8_t* slot(int y) {
        return m_rows.data() + static_cast<std::size_t>(y) % kept * m_image.stride();
    }

    const RasterImage& m_image;
    float m_threshold;
    std::vector<std::uint8_t> m_rows;
    int m_next;
};

class Glow {
public:
    Glow(const Bloom& bloom, const RasterImage& image)
        : m_bloom(bloom),
          m_image(image),
          m_columns(static_cast<std::size_t>(sampleCount(image.width()))),
          m_rows(sampleCount(image.height())),
          m_weights(gaussianWeights(std::sqrt((static_cast<double>(bloom.radius) * bloom.radius -
                                               reducingVariance - enlargingVariance) /
                                              (step * step)))),
          m_samples(static_cast<std::size_t>(m_rows), channels * m_columns) {}

    RasterImage screened() {
        auto result = RasterImage::uninitialized(m_image.width(), m_image.height());
        if (result.isNull() || m_samples.isNull()) return {};
        result.setLogicalSize(m_image.logicalSize());
        raster::parallelForRowBands(m_rows, rowsPerBand,
                                    [&](int first, int last) { reduce(first, last); });
        std::uint8_t* const pixels = result.mutableRow(0);
        const int groups = (m_image.height() - 1) / step + 1;
        raster::parallelForRowBands(groups, rowsPerBand,
                                    [&](int first, int last) { screen(pixels, first, last); });
        return result;
    }

private:
    /// Of samples: each band makes a few rows of its neighbours' once more.
    static constexpr int rowsPerBand = 64;

    /// Fills rows of samples, spread along the row.
    void reduce(int first, int last) {
        const auto width = static_cast<std::size_t>(m_image.width());
        constexpr std::size_t before = step * samplesBefore + reach;
        constexpr std::size_t after = step * (samplesAfter + 1) + reach;
        const std::size_t spread = m_weights.size() / 2;
        BrightRows bright(m_image, m_bloom.threshold, step * (first - samplesBefore));
        std::vector<float> wide(channels * (before + width + after));
        std::vector<float> narrow(channels * (m_columns + 2 * spread));
        float* const pixels = wide.data() + channels * before;
        float* const samples = narrow.data() + channels * spread;
        for (int row = first; row < last; ++row) {
            reduceRows(pixels, bright.around(step * (row - samplesBefore)), channels * width);
            repeatEdges(pixels, width, before, after);
            reduceColumns(samples, pixels - channels * step * samplesBefore, m_columns);
            repeatEdges(samples, m_columns, spread, spread);
            std::vector<const float*> terms;
            for (std::size_t k = 0; k < m_weights.size(); ++k)
                terms.push_back(narrow.data() + channels * k);
            addWeighted(m_samples.row(static_cast<std::size_t>(row)), terms, m_weights,
                        channels * m_columns);
        }
    }

    /// A row of samples, spread down the column too.
    void spreadRow(float* to, int row) const {
        const int spread = static_cast<int>(m_weights.size() / 2);
        std::vector<const float*> terms;
        for (int y = row - spread; y <= row + spread; ++y)
            terms.push_back(m_samples.row(static_cast<std::size_t>(std::clamp(y, 0, m_rows - 1))));
        addWeighted(to, terms, m_weights, m_samples.stride());
    }

    /// Groups of four rows of the result, each below a row of samples.
    void screen(std::uint8_t* pixels, int first, int last) const {
        const std::size_t stride = m_samples.stride();
        // The rows of samples before a group's own, its own and the two after it.
        std::vector<float> around(4 * stride);
        std::vector<float> between(stride);
        const float scale = m_bloom.intensity * (1.0F - m_bloom.threshold) / 255.0F;
        const Enlarging across(scale);
        std::array<const float*, 4> terms{};
        for (std::size_t k = 0; k < terms.size(); ++k) terms[k] = around.data() + k * stride;
        const int before = samplesBefore - 1;
        for (int k = 0; k < 3; ++k)
            spreadRow(around.data() + static_cast<std::size_t>(k) * stride + stride,
                      first + before + k);
        for (int group = first; group < last; ++group) {
            std::copy(around.begin() + static_cast<std::ptrdiff_t>(stride), around.end(),
                      around.begin());
            spreadRow(around.data() + 3 * stride, group + before + 3);
            for (int row = 0; row < step && step * group + row < m_image.height(); ++row) {
                const int y = step * group + row;
                addWeighted(between.data(), terms, enlargingWeights(row), stride);
                screenRow(pixels + static_cast<std::size_t>(y) * m_image.stride(), m_image.row(y),
                          between.data() + channels * (samplesBefore - 1), m_image.width(), across);
            }
        }
    }

    const Bloom& m_bloom;
    const RasterImage& m_image;
    std::size_t m_columns;
    int m_rows;
    std::vector<float> m_weights;
    FloatRows m_samples;
};

} // namespace

RasterImage applied(const Bloom& bloom, const RasterImage& image) {
    if (image.isNull()) return {};
    return Glow(bloom, image).screened();
}

} // namespace quillabrae::effects
