// SPDX-License-Identifier: GPL-3.0-or-later
// A row is cut into slabs at every corner and at every place where edges meet. Within a slab the
// edges stand in one order from left to right; where the sum of their windings leaves 0 the inside
// begins, where it comes back to 0 the inside ends. To the right of an edge that runs from x0 to x1
// (x0 <= x1) through the whole of a slab lies the area, up to x,
//
//   P(x) = (x - x0)^2 / (2 * (x1 - x0)) for x in [x0, x1], x - (x0 + x1) / 2 beyond
//
// for each unit of the slab's height; a pixel's coverage is the sum of its differences of P.
#include "raster/PolygonCoverage.h"

#include "raster/BlendKernels.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace quillabrae::raster {
namespace {

/// Corners beyond are moved there, so that no difference of two coordinates overflows.
constexpr double farthest = 1e9;

/// Slabs are not cut finer than this part of their height: what lies between differs by far less
/// than a level.
constexpr double thinnestPiece = 1.0 / 4096.0;

model::CanvasPoint withinReach(model::CanvasPoint point) {
    return {std::clamp(point.x, -farthest, farthest), std::clamp(point.y, -farthest, farthest)};
}

} // namespace

PolygonCoverage::PolygonCoverage(std::span<const model::CanvasPoint> corners) {
    m_edges.reserve(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const model::CanvasPoint from = withinReach(corners[i]);
        const model::CanvasPoint to = withinReach(corners[(i + 1) % corners.size()]);
        if (from.y < to.y) m_edges.push_back({from.y, to.y, from.x, to.x, 1});
        if (to.y < from.y) m_edges.push_back({to.y, from.y, to.x, from.x, -1});
    }
}

PolygonCoverage::Rows::Rows(const PolygonCoverage& polygon, int first, int last) {
    std::ranges::copy_if(polygon.m_edges, std::back_inserter(m_edges),
                         [&](const Edge& edge) { return edge.top < last && edge.bottom > first; });
}

void PolygonCoverage::Rows::fillRow(int y, std::span<std::uint8_t> alpha) {
    const double top = y;
    const double bottom = y + 1.0;
    m_rowEdges.clear();
    m_cuts.assign({top, bottom});
    for (const Edge& edge : m_edges) {
        if (edge.top >= bottom || edge.bottom <= top) continue;
        m_rowEdges.push_back(edge);
        if (edge.top > top) m_cuts.push_back(edge.top);
        if (edge.bottom < bottom) m_cuts.push_back(edge.bottom);
    }
    m_width = alpha.size();
    m_steps.resize(m_width + 2);
    m_firstStep = m_steps.size();
    m_lastStep = 0;
    if (!m_rowEdges.empty()) {
        std::ranges::sort(m_cuts);
        for (std::size_t i = 1; i < m_cuts.size(); ++i)
            if (m_cuts[i - 1] < m_cuts[i]) addSlab(m_cuts[i - 1], m_cuts[i]);
    }
    writeAlpha(alpha);
    if (m_firstStep <= m_lastStep)
        std::fill(m_steps.begin() + static_cast<std::ptrdiff_t>(m_firstStep),
                  m_steps.begin() + static_cast<std::ptrdiff_t>(m_lastStep) + 1, 0.0);
}

void PolygonCoverage::Rows::addSlab(double top, double bottom) {
    m_crossings.clear();
    for (const Edge& edge : m_rowEdges)
        if (edge.top <= top && edge.bottom >= bottom)
            m_crossings.push_back({edge.xAt(top), edge.xAt(bottom), edge.winding});
    findMeetings();
    double from = 0.0;
    for (const double meeting : m_meetings) {
        if (meeting - from < thinnestPiece) continue;
        addPiece(bottom - top, from, meeting);
        from = meeting;
    }
    addPiece(bottom - top, from, 1.0);
}

/// Where edges change places within the slab, as parts of its height, in order.
void PolygonCoverage::Rows::findMeetings() {
    m_meetings.clear();
    std::ranges::sort(m_crossings, [](const Crossing& a, const Crossing& b) {
        return a.topX != b.topX ? a.topX < b.topX : a.bottomX < b.bottomX;
    });
    // Sorting by insertion from the order at the top to the order at the bottom exchanges each two
    // that meet once, and no others.
    m_order = m_crossings;
    for (std::size_t i = 1; i < m_order.size(); ++i) {
        for (std::size_t j = i; j > 0 && m_order[j - 1].bottomX > m_order[j].bottomX; --j) {
            const double apartAtTop = m_order[j].topX - m_order[j - 1].topX;
            const double apartAtBottom = m_order[j - 1].bottomX - m_order[j].bottomX;
            m_meetings.push_back(apartAtTop / (apartAtTop + apartAtBottom));
            std::swap(m_order[j - 1], m_order[j]);
        }
    }
    std::ranges::sort(m_meetings);
}

/// The part of a slab between two meetings.
void PolygonCoverage::Rows::addPiece(double height, double from, double to) {
    const double middle = (from + to) / 2.0;
    m_order = m_crossings;
    if (!m_meetings.empty())
        std::ranges::stable_sort(m_order, [middle](const Crossing& a, const Crossing& b) {
            return a.xAt(middle) < b.xAt(middle);
        });
    const double area = height * (to - from);
    int winding = 0;
    for (const Crossing& crossing : m_order) {
        const bool wasInside = winding != 0;
        winding += crossing.winding;
        const bool isInside = winding != 0;
        if (wasInside == isInside) continue;
        addEdge(isInside ? area : -area, crossing.xAt(from), crossing.xAt(to));
    }
}

/// Adds what lies to the right of an edge that spans `x` and `otherX`; `area` is the signed height.
/// Left of the first pixel an edge counts as upright at its left side, right of the last it has
/// nothing to its right.
void PolygonCoverage::Rows::addEdge(double area, double x, double otherX) {
    double left = std::min(x, otherX);
    double right = std::max(x, otherX);
    const auto width = static_cast<double>(m_width);
    if (left >= width) return;
    const double length = right - left;
    const auto add = [this](std::size_t column, double step) {
        m_steps[column] += step;
        m_firstStep = std::min(m_firstStep, column);
        m_lastStep = std::max(m_lastStep, column);
    };
    if (left < 0.0) {
        const double outside = right <= 0.0 ? 1.0 : -left / length;
        add(0, area * outside);
        if (right <= 0.0) return;
        area *= 1.0 - outside;
        left = 0.0;
    }
    if (right > width) {
        area *= (width - left) / (right - left);
        right = width;
    }
    const auto first = static_cast<std::size_t>(left);
    const auto last = static_cast<std::size_t>(right);
    double before = 0.0;
    double covered = 0.0;
    for (std::size_t column = first; column <= last; ++column) {
        const double end = static_cast<double>(column) + 1.0;
        const double upTo = end < right ? (end - left) * (end - left) / (2.0 * (right - left))
                                        : end - (left + right) / 2.0;
        add(column, area * (upTo - before - covered));
        covered = upTo - before;
        before = upTo;
    }
    add(last + 1, area * (1.0 - covered));
}

void PolygonCoverage::Rows::writeAlpha(std::span<std::uint8_t> alpha) const {
    const std::size_t first = std::min(m_firstStep, m_width);
    std::ranges::fill(alpha.first(first), std::uint8_t{0});
    double covered = 0.0;
    std::uint8_t level = 0;
    const std::size_t end = std::min(m_lastStep + 1, m_width);
    std::size_t column = first;
    for (; column < end; ++column) {
        if (m_steps[column] != 0.0) {
            covered += m_steps[column];
            level = unitByte(covered);
        }
        alpha[column] = level;
    }
    std::ranges::fill(alpha.subspan(column), level);
}

} // namespace quillabrae::raster
