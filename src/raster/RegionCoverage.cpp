// SPDX-License-Identifier: GPL-3.0-or-later
// The area of a pixel that lies right of a piece of border of height h is h times the mean width
// that the piece leaves of it: nothing of the pixels before, h * (1 - m) of the pixel where the
// piece stands at m on average, and h of all beyond. A convex region is what lies right of its left
// border less what lies right of its right one.
#include "raster/RegionCoverage.h"

#include <algorithm>
#include <cmath>

namespace quillabrae::raster {
namespace {

std::uint8_t alphaOf(float area, float alpha) {
    constexpr float half = 0.5F;
    return static_cast<std::uint8_t>(half + std::clamp(area, 0.0F, 1.0F) * alpha);
}

} // namespace

RegionCoverage::RegionCoverage(const ConvexRegion& outer, const ConvexRegion& inner, double alpha,
                               int left, int right)
    : m_left(left),
      m_width(right - left),
      m_alpha(static_cast<float>(255.0 * alpha)),
      m_steps(static_cast<std::size_t>(m_width) + 2),
      m_row(static_cast<std::size_t>(m_width) + 2) {
    for (const auto& [region, sign] : {std::pair{&outer, 1.0F}, std::pair{&inner, -1.0F}}) {
        if (region->isEmpty()) continue;
        m_borders.push_back({&region->left(), sign});
        m_borders.push_back({&region->right(), -sign});
    }
}

std::span<const CoverageRun> RegionCoverage::row(int y) {
    m_touched.clear();
    m_runCount = 0;
    for (Border& border : m_borders) {
        Touched touched{m_width, 0};
        addBorder(border, y, y + 1.0, touched);
        if (touched.first < touched.end) m_touched.push_back(touched);
    }
    std::ranges::sort(m_touched, {}, &Touched::first);
    int done = 0;
    float area = 0.0F;
    for (const Touched& touched : m_touched) {
        if (touched.end <= done) continue;
        if (touched.first > done) appendFlat(done, touched.first, area);
        area = appendOwn({std::max(touched.first, done), touched.end}, area);
        done = touched.end;
    }
    if (done < m_width) appendFlat(done, m_width, area);
    return std::span(m_runs).first(m_runCount);
}

void RegionCoverage::addBorder(Border& border, double top, double bottom, Touched& touched) {
    const auto& points = *border.points;
    if (border.next == 1 && points.front().y < top) {
        // The first row asked for: pass over what lies above it.
        const auto below = std::ranges::partition_point(
            points, [top](model::CanvasPoint point) { return point.y <= top; });
        border.next = static_cast<std::size_t>(below - points.begin());
    }
    for (; border.next < points.size(); ++border.next) {
        const model::CanvasPoint from = points[border.next - 1];
        const model::CanvasPoint to = points[border.next];
        if (from.y >= bottom) return;
        const double first = std::max(from.y, top);
        const double last = std::min(to.y, bottom);
        if (last > first) {
            const double slope = (to.x - from.x) / (to.y - from.y);
            addLine(from.x + (first - from.y) * slope - m_left,
                    from.x + (last - from.y) * slope - m_left, last - first, border.sign, touched);
        }
        if (to.y > bottom) return;
    }
}

/// Holds the line to the columns that are asked for: what lies before them counts from the first
/// one on, what lies beyond them not at all.
void RegionCoverage::addLine(double x0, double x1, double height, float sign, Touched& touched) {
    if (x0 > x1) std::swap(x0, x1);
    const double limit = m_width;
    if (x0 >= limit) return;
    if (x1 <= 0.0) {
        addInside(0.0, 0.0, height, sign, touched);
        return;
    }
    const double heightPerColumn = x1 > x0 ? height / (x1 - x0) : 0.0;
    if (x0 < 0.0) {
        const double before = -x0 * heightPerColumn;
        addInside(0.0, 0.0, before, sign, touched);
        height -= before;
        x0 = 0.0;
    }
    if (x1 > limit) {
        height -= (x1 - limit) * heightPerColumn;
        x1 = limit;
    }
    addInside(x0, x1, height, sign, touched);
}

void RegionCoverage::addInside(double x0, double x1, double height, float sign, Touched& touched) {
    const auto addColumn = [&](int column, double mean, double part) {
        const auto step = static_cast<float>(part);
        const auto late = static_cast<float>(part * mean);
        m_steps[static_cast<std::size_t>(column)] += sign * (step - late);
        m_steps[static_cast<std::size_t>(column) + 1] += sign * late;
    };
    const int firstColumn = static_cast<int>(x0);
    const int lastColumn = static_cast<int>(x1);
    touched = {std::min(touched.first, firstColumn),
               std::min(std::max(touched.end, lastColumn + 2), m_width + 1)};
    if (firstColumn == lastColumn) {
        addColumn(firstColumn, (x0 + x1) / 2.0 - firstColumn, height);
        return;
    }
    const double heightPerColumn = height / (x1 - x0);
    for (int column = firstColumn; column <= lastColumn; ++column) {
        const double from = std::max(x0 - column, 0.0);
        const double to = std::min(x1 - column, 1.0);
        addColumn(column, (from + to) / 2.0, (to - from) * heightPerColumn);
    }
}

void RegionCoverage::appendFlat(int first, int end, float area) {
    const std::uint8_t alpha = alphaOf(area, m_alpha);
    if (alpha != 0) m_runs[m_runCount++] = {m_left + first, m_left + end, nullptr, alpha};
}

/// Returns the area of the columns that follow.
float RegionCoverage::appendOwn(Touched touched, float area) {
    for (int column = touched.first; column < touched.end; ++column) {
        const auto i = static_cast<std::size_t>(column);
        area += m_steps[i];
        m_steps[i] = 0.0F;
        m_row[i] = alphaOf(area, m_alpha);
    }
    const int end = std::min(touched.end, m_width);
    if (touched.first < end)
        m_runs[m_runCount++] = {m_left + touched.first, m_left + end,
                                m_row.data() + static_cast<std::size_t>(touched.first), 0};
    return area;
}

} // namespace quillabrae::raster
