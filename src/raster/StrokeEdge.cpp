// SPDX-License-Identifier: GPL-3.0-or-later
// A pass of radius r covers a pixel at distance d by the part of the pixel-long piece of the normal
// about it, d - 1/2 to d + 1/2, that lies within -r to r. Passes add up by source-over: what shows
// through all of them is the product of what shows through each.
#include "raster/StrokeEdge.h"

#include "raster/StrokeLimits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillabrae::raster {
namespace {

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

float coverage(float radius, float distance) {
    const float covered = std::min(distance + 0.5F, radius) - std::max(distance - 0.5F, -radius);
    return std::max(covered, 0.0F);
}

/// What shows through the first passes, one entry more than there are passes, where they cover a
/// pixel whole.
std::vector<float> shownThrough(const std::vector<BrushPass>& passes) {
    std::vector<float> shown{1.0F};
    double through = 1.0;
    for (const BrushPass& pass : passes) {
        through *= 1.0 - pass.alpha;
        shown.push_back(static_cast<float>(through));
    }
    return shown;
}

/// Entries for each pixel of distance: fine enough that a step to the next is half a level, from
/// the most that the alpha can fall within a pixel.
int tableResolution(const std::vector<BrushPass>& passes, const std::vector<float>& shown) {
    constexpr double entriesForFullFall = 512.0;
    constexpr int coarsest = 32;
    constexpr int finest = 1024;
    double steepest = 0.0;
    for (std::size_t first = 0, end = 0; first < passes.size(); ++first) {
        while (end < passes.size() && passes[first].radius - passes[end].radius < 1.0) ++end;
        steepest = std::max(steepest, double{shown[first]} - double{shown[end]});
    }
    // Where the narrowest passes end, distances on either side of the centre line count.
    const bool isThin = !passes.empty() && passes.back().radius < 1.0;
    const double wanted = steepest * entriesForFullFall * (isThin ? 2.0 : 1.0);
    int resolution = coarsest;
    while (resolution < wanted && resolution < finest) resolution *= 2;
    return resolution;
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
    const double width = drawableWidth(lineWidth);
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

std::shared_ptr<const StrokeEdge> strokeEdge(double lineWidth, std::optional<double> hardness,
                                             double alpha, StrokeForm form) {
    struct Key {
        double width = 0.0;
        std::optional<double> core;
        double alpha = 0.0;
        StrokeForm form = StrokeForm::line;
        bool operator==(const Key&) const = default;
    };
    struct Remembered {
        Key key;
        std::shared_ptr<const StrokeEdge> edge;
    };
    thread_local Remembered last;
    const Key key{drawableWidth(lineWidth), softCore(hardness), alpha, form};
    if (!last.edge || last.key != key)
        last = {key,
                std::make_shared<const StrokeEdge>(brushPasses(lineWidth, hardness, alpha, form))};
    return last.edge;
}

StrokeEdge::StrokeEdge(const std::vector<BrushPass>& passes) {
    if (passes.empty()) return;
    const std::vector<float> shown = shownThrough(passes);
    m_entriesPerPixel = tableResolution(passes, shown);
    m_tableStart = std::max(passes.back().radius - 0.5, 0.0);
    const double length = passes.front().radius + 0.5 - m_tableStart;
    const auto count = static_cast<std::size_t>(std::ceil(length * m_entriesPerPixel)) + 1;

    const std::vector<float> through = throughByDistance(passes, shown, count);
    m_alpha.resize(count);
    std::ranges::transform(through, m_alpha.begin(), [](float shownHere) {
        // Half a level more, and down: what lround does, for which there is no vector.
        constexpr float half = 0.5F;
        return static_cast<std::uint8_t>(half + (1.0F - shownHere) * 255.0F);
    });
    m_alpha.back() = 0;

    const auto firstBelow = [this](unsigned alpha) {
        const auto found = std::ranges::partition_point(
            m_alpha, [alpha](std::uint8_t entry) { return entry >= alpha; });
        return static_cast<double>(found - m_alpha.begin());
    };
    if (maximum() == 0) return;
    m_reach = m_tableStart + firstBelow(1) / m_entriesPerPixel;
    // Distances are rounded to the table's steps.
    m_flatRadius = m_tableStart + (firstBelow(maximum()) - 1.5) / m_entriesPerPixel;
}

std::vector<float> StrokeEdge::throughByDistance(const std::vector<BrushPass>& passes,
                                                 const std::vector<float>& shown,
                                                 std::size_t count) const {
    const auto entryAt = [&](double distance) {
        const double entry = std::ceil((distance - m_tableStart) * m_entriesPerPixel);
        return static_cast<std::size_t>(std::clamp(entry, 0.0, static_cast<double>(count)));
    };
    // First the passes that cover the pixel whole: one fewer wherever one begins to end.
    std::vector<float> through(count, 1.0F);
    std::size_t from = 0;
    for (std::size_t whole = passes.size(); whole > 0; --whole) {
        const std::size_t end = std::max(entryAt(passes[whole - 1].radius - 0.5), from);
        std::fill(through.begin() + static_cast<std::ptrdiff_t>(from),
                  through.begin() + static_cast<std::ptrdiff_t>(end), shown[whole]);
        from = end;
    }
    // Then each pass over the pixel's length in which it ends.
    for (const BrushPass& pass : passes) {
        const std::size_t end = entryAt(pass.radius + 0.5);
        const auto radius = static_cast<float>(pass.radius);
        const auto alpha = static_cast<float>(pass.alpha);
        const auto start = static_cast<float>(m_tableStart);
        const float step = 1.0F / static_cast<float>(m_entriesPerPixel);
        for (std::size_t k = entryAt(pass.radius - 0.5); k < end; ++k)
            through[k] *= 1.0F - alpha * coverage(radius, start + static_cast<float>(k) * step);
    }
    return through;
}

} // namespace quillabrae::raster
