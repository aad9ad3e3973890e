// SPDX-License-Identifier: GPL-3.0-or-later
// A pass of radius r covers a pixel at distance d by the part of the pixel-long piece of the normal
// about it, d - 1/2 to d + 1/2, that lies within -r to r. Passes add up by source-over: what shows
// through all of them is the product of what shows through each.
#include "raster/StrokeEdge.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillabrae::raster {
namespace {

/// Far wider than any brush; keeps the table within bounds.
constexpr double maximumLineWidth = 65'536.0;
constexpr double fullHardness = 100.0;
constexpr double hardCore = 0.995;
constexpr double maximumCore = 0.98;
constexpr int minimumPasses = 14;
constexpr int maximumPasses = 56;
constexpr double minimumPassWidth = 0.75;
constexpr double minimumDotRadius = 0.5;
/// Steps of coverage below this are not worth a pass.
constexpr double leastStep = 0.001;

double passRadius(double width, StrokeForm form) {
    const double radius = width * 0.5;
    return form == StrokeForm::dot ? std::max(radius, minimumDotRadius) : radius;
}

double smoothstep(double u) {
    return u * u * (3.0 - 2.0 * u);
}

/// The coverage wanted at the relative width `t` of a pass.
double targetCoverage(double t, double core) {
    if (t <= core) return 1.0;
    const double falloff = std::max(1.0 - core, leastStep);
    return smoothstep(std::clamp((1.0 - t) / falloff, 0.0, 1.0));
}

double coverage(double radius, double distance) {
    const double covered = std::min(distance + 0.5, radius) - std::max(distance - 0.5, -radius);
    return std::clamp(covered, 0.0, 1.0);
}

double widestRadius(const std::vector<BrushPass>& passes) {
    return passes.empty() ? 0.0 : passes.front().radius;
}

/// Fine enough for one level of alpha: the passes of a thin brush all end within the same pixel.
int tableResolution(double radius) {
    constexpr double thin = 32.0;
    return radius < thin ? 1024 : 256;
}

} // namespace

std::optional<double> softCore(std::optional<double> hardness) {
    if (!hardness) return std::nullopt;
    if (!(*hardness >= 0.0)) return 0.0;
    if (*hardness >= fullHardness) return std::nullopt;
    const double core = *hardness / fullHardness;
    if (core >= hardCore) return std::nullopt;
    return core;
}

std::vector<BrushPass> brushPasses(double lineWidth, std::optional<double> hardness, double alpha,
                                   StrokeForm form) {
    const double width = lineWidth > 0.0 ? std::min(lineWidth, maximumLineWidth) : 0.0;
    const std::optional<double> soft = softCore(hardness);
    if (!soft) return {{passRadius(width, form), alpha}};

    const double core = std::min(*soft, maximumCore);
    const int count =
        std::clamp(static_cast<int>(std::ceil(2.0 * width)), minimumPasses, maximumPasses);
    std::vector<BrushPass> passes;
    passes.reserve(static_cast<std::size_t>(count));
    double previous = 0.0;
    for (int i = 0; i < count; ++i) {
        const double t = 1.0 - (i + 0.5) / count;
        const double target = targetCoverage(t, core);
        if (!(previous + leastStep < target)) continue;
        const double step = (target - previous) / std::max(1.0 - previous, leastStep);
        const double radius = passRadius(std::max(width * t, minimumPassWidth), form);
        passes.push_back({radius, alpha * step});
        previous = target;
    }
    return passes;
}

StrokeEdge::StrokeEdge(const std::vector<BrushPass>& passes)
    : m_entriesPerPixel(tableResolution(widestRadius(passes))) {
    const double end = std::ceil((widestRadius(passes) + 0.5) * m_entriesPerPixel) + 1.0;
    m_alpha.resize(static_cast<std::size_t>(end));
    fillTable(passes);
    m_alpha.back() = 0;

    const auto firstBelow = [this](unsigned alpha) {
        const auto found = std::ranges::partition_point(
            m_alpha, [alpha](std::uint8_t entry) { return entry >= alpha; });
        return static_cast<double>(found - m_alpha.begin());
    };
    m_reach = firstBelow(1) / m_entriesPerPixel;
    // Distances are rounded to the table's steps.
    m_flatRadius = (firstBelow(std::max<unsigned>(maximum(), 1)) - 1.5) / m_entriesPerPixel;
}

void StrokeEdge::fillTable(const std::vector<BrushPass>& passes) {
    // What shows through the first passes where they cover the pixel whole.
    std::vector<double> shown{1.0};
    for (const BrushPass& pass : passes) shown.push_back(shown.back() * (1.0 - pass.alpha));

    // Going outward, `whole` passes cover the pixel whole and those up to `touching` in part.
    std::size_t whole = passes.size();
    std::size_t touching = passes.size();
    std::size_t next = 0;
    for (std::size_t k = 0; k < m_alpha.size(); k = next) {
        const double distance = static_cast<double>(k) / m_entriesPerPixel;
        while (whole > 0 && passes[whole - 1].radius < distance + 0.5) --whole;
        while (touching > whole && passes[touching - 1].radius <= distance - 0.5) --touching;
        double through = shown[whole];
        for (std::size_t i = whole; i < touching; ++i)
            through *= 1.0 - passes[i].alpha * coverage(passes[i].radius, distance);
        next = k + 1;
        if (whole == touching) {
            // Nothing changes before the innermost whole pass begins to end.
            const double change =
                whole > 0 ? std::ceil((passes[whole - 1].radius - 0.5) * m_entriesPerPixel)
                          : static_cast<double>(m_alpha.size());
            next = std::clamp(static_cast<std::size_t>(change), next, m_alpha.size());
        }
        std::fill(m_alpha.begin() + static_cast<std::ptrdiff_t>(k),
                  m_alpha.begin() + static_cast<std::ptrdiff_t>(next),
                  static_cast<std::uint8_t>(std::lround((1.0 - through) * 255.0)));
    }
}

} // namespace quillabrae::raster
