// SPDX-License-Identifier: GPL-3.0-or-later
// With t the part of the way from the first point to the second at a pixel's centre, held to 0 to
// 1, every straight component is from + t * (to - from); colours are multiplied by alpha after
// that.
#include "raster/GradientKernel.h"

#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

constexpr std::size_t runLength = 256;
/// Steeper than any change that a pixel could show, and far from the ends of single precision.
constexpr double steepest = 1e30;

struct GradientRun {
    float start;
    float step;
    std::array<float, 4> from;
    std::array<float, 4> change;
};

QUILLABRAE_WIDE_KERNEL
void writeRun(const GradientRun& run, std::uint32_t* pixels, std::size_t count) {
    const GradientRun r = run;
    for (std::size_t i = 0; i < count; ++i) {
        const float raw = r.start + static_cast<float>(static_cast<std::int32_t>(i)) * r.step;
        const float t = std::min(std::max(raw, 0.0F), 1.0F);
        const float alpha = r.from[3] + t * r.change[3];
        const float scale = alpha * (1.0F / 255.0F);
        const auto red = static_cast<std::int32_t>((r.from[0] + t * r.change[0]) * scale + 0.5F);
        const auto green = static_cast<std::int32_t>((r.from[1] + t * r.change[1]) * scale + 0.5F);
        const auto blue = static_cast<std::int32_t>((r.from[2] + t * r.change[2]) * scale + 0.5F);
        const auto opacity = static_cast<std::int32_t>(alpha + 0.5F);
        pixels[i] = static_cast<std::uint32_t>(red | green << 8 | blue << 16) |
                    static_cast<std::uint32_t>(opacity) << 24;
    }
}

std::array<float, 4> levels(const model::ColorValue& color) {
    const auto level = [](double component) {
        return component > 0.0 ? static_cast<float>(std::min(component, 1.0) * 255.0) : 0.0F;
    };
    return {level(color.red), level(color.green), level(color.blue), level(color.alpha)};
}

} // namespace

LinearGradient::LinearGradient(model::CanvasPoint from, const model::ColorValue& fromColor,
                               model::CanvasPoint to, const model::ColorValue& toColor)
    : m_start(from), m_from(levels(fromColor)) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::hypot(dx, dy);
    m_right = std::clamp(dx / length / length, -steepest, steepest);
    m_down = std::clamp(dy / length / length, -steepest, steepest);
    const std::array<float, 4> last = levels(toColor);
    for (std::size_t i = 0; i < last.size(); ++i) m_change[i] = last[i] - m_from[i];
}

void LinearGradient::writePixels(std::uint8_t* pixels, int x, int y, std::size_t count) const {
    std::array<std::uint32_t, runLength> words;
    for (std::size_t done = 0; done < count; done += runLength) {
        const std::size_t length = std::min(runLength, count - done);
        // Each run starts from exact values, so that steps in single precision cannot drift.
        const double right = x + static_cast<double>(done) + 0.5 - m_start.x;
        const double down = y + 0.5 - m_start.y;
        const double start = std::clamp(right * m_right + down * m_down, -steepest, steepest);
        writeRun({static_cast<float>(start), static_cast<float>(m_right), m_from, m_change},
                 words.data(), length);
        std::memcpy(pixels + 4 * done, words.data(), 4 * length);
    }
}

} // namespace quillabrae::raster
