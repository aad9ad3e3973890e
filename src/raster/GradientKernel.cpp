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

struct GradientColors {
    std::array<float, 4> from;
    std::array<float, 4> change;
};

/// part[i] = how far along the way pixel i of the run is, 0 to 1.
QUILLABRAE_WIDE_KERNEL
void partsOfTheWay(float start, float step, float* part, int count) {
    for (int i = 0; i < count; ++i)
        part[i] = std::min(std::max(start + static_cast<float>(i) * step, 0.0F), 1.0F);
}

/// Apart from the parts: where those are held to 0 and 1 in the same loop, the compiler makes
/// branches of it.
QUILLABRAE_WIDE_KERNEL
void mixColors(const GradientColors& colors, const float* part, std::uint32_t* pixels, int count) {
    // Half a level more, and down: what lround does, for which there is no vector.
    constexpr float half = 0.5F;
    const GradientColors c = colors;
    for (int i = 0; i < count; ++i) {
        const float t = part[i];
        const float alpha = c.from[3] + t * c.change[3];
        const float scale = alpha * (1.0F / 255.0F);
        const auto red = static_cast<std::int32_t>(half + (c.from[0] + t * c.change[0]) * scale);
        const auto green = static_cast<std::int32_t>(half + (c.from[1] + t * c.change[1]) * scale);
        const auto blue = static_cast<std::int32_t>(half + (c.from[2] + t * c.change[2]) * scale);
        const auto opacity = static_cast<std::int32_t>(half + alpha);
        pixels[i] = static_cast<std::uint32_t>(red) | static_cast<std::uint32_t>(green) << 8 |
                    static_cast<std::uint32_t>(blue) << 16 |
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
    const GradientColors colors{m_from, m_change};
    std::array<float, runLength> parts{};
    std::array<std::uint32_t, runLength> words{};
    for (std::size_t done = 0; done < count; done += runLength) {
        const std::size_t length = std::min(runLength, count - done);
        // Each run starts from exact values, so that steps in single precision cannot drift.
        const double right = x + static_cast<double>(done) + 0.5 - m_start.x;
        const double down = y + 0.5 - m_start.y;
        const double start = std::clamp(right * m_right + down * m_down, -steepest, steepest);
        const int pixelCount = static_cast<int>(length);
        partsOfTheWay(static_cast<float>(start), static_cast<float>(m_right), parts.data(),
                      pixelCount);
        mixColors(colors, parts.data(), words.data(), pixelCount);
        std::memcpy(pixels + 4 * done, words.data(), 4 * length);
    }
}

} // namespace quillabrae::raster
