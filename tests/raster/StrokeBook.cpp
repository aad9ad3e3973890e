// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/StrokeBook.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

double bookCoverage(double radius, double distance) {
    return std::clamp(std::min(distance + 0.5, radius) - std::max(distance - 0.5, -radius), 0.0,
                      1.0);
}

} // namespace

std::vector<BookPass> bookSoftPasses(double lineWidth, double h, double alpha) {
    std::vector<BookPass> passes;
    int count = static_cast<int>(std::ceil(2 * lineWidth));
    if (count < 14) count = 14;
    if (count > 56) count = 56;
    const double core = std::min(std::max(h, 0.0), 0.98);
    const double falloff = std::max(1 - core, 0.001);
    double previous = 0;
    for (int i = 0; i < count; ++i) {
        const double t = 1 - (i + 0.5) / count;
        double target = 1;
        if (t > core) {
            const double u = std::min(std::max((1 - t) / falloff, 0.0), 1.0);
            target = u * u * (3 - 2 * u);
        }
        if (previous + 0.001 >= target) continue;
        const double step = (target - previous) / std::max(1 - previous, 0.001);
        passes.push_back({std::max(lineWidth * t, 0.75), alpha * step});
        previous = target;
    }
    return passes;
}

double bookAlpha(const std::vector<BookPass>& passes, double distance, bool isDot) {
    double left = 0;
    for (const BookPass& pass : passes) {
        double radius = pass.width * 0.5;
        if (isDot) radius = std::max(radius, 0.5);
        const double source = pass.alpha * bookCoverage(radius, distance);
        left = source + left * (1 - source);
    }
    return left;
}

} // namespace quillabrae::raster
