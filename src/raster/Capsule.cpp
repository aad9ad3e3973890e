// SPDX-License-Identifier: GPL-3.0-or-later
// With a point's offset from the line's start split into the part along the line and the part
// across it, its distance is hypot(across, along - clamp(along, 0, length)).
#include "raster/Capsule.h"

#include "raster/KernelTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace quillabrae::raster {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Interval {
    double low = infinity;
    double high = -infinity;

    bool isEmpty() const { return !(low <= high); }
};

Interval hull(Interval a, Interval b) {
    return {std::min(a.low, b.low), std::max(a.high, b.high)};
}

Interval intersection(Interval a, Interval b) {
    return {std::max(a.low, b.low), std::min(a.high, b.high)};
}

/// The x at height `y` inside a disc.
Interval discRow(model::CanvasPoint center, double radius, double y) {
    const double squared = radius * radius - (y - center.y) * (y - center.y);
    if (!(radius >= 0.0) || !(squared >= 0.0)) return {};
    const double half = std::sqrt(squared);
    return {center.x - half, center.x + half};
}

/// The x for which `low` <= slope * x + offset <= `high`.
Interval between(double slope, double offset, double low, double high) {
    if (slope == 0.0) {
        if (low <= offset && offset <= high) return {-infinity, infinity};
        return {};
    }
    const double a = (low - offset) / slope;
    const double b = (high - offset) / slope;
    return {std::min(a, b), std::max(a, b)};
}

/// A run of pixels and where its first centre stands against the line.
struct DistanceRun {
    float along;
    float alongStep;
    float across;
    float acrossStep;
    float length;
    float entriesPerPixel;
    float firstEntry;
    float lastEntry;
};

constexpr int runLength = 256;

/// entry[i] = the edge table's entry for pixel i of the run.
QUILLABRAE_WIDE_KERNEL
void tableEntries(const DistanceRun& run, std::int32_t* entry, int count) {
    const DistanceRun r = run;
    for (int i = 0; i < count; ++i) {
        const auto step = static_cast<float>(i);
        const float along = r.along + step * r.alongStep;
        const float across = r.across + step * r.acrossStep;
        const float beyond = along - std::min(std::max(along, 0.0F), r.length);
        const float distance = std::sqrt(across * across + beyond * beyond);
        const float scaled = distance * r.entriesPerPixel - r.firstEntry;
        entry[i] = static_cast<std::int32_t>(std::min(std::max(scaled, 0.0F), r.lastEntry));
    }
}

/// alpha[i] = table[entry[i]], eight to a store.
void copyEntries(const std::uint8_t* table, const std::int32_t* entry, std::uint8_t* alpha,
                 int count) {
    constexpr int bytesPerWord = 8;
    int i = 0;
    for (; i + bytesPerWord <= count; i += bytesPerWord) {
        std::array<std::uint8_t, bytesPerWord> word{};
        for (std::size_t k = 0; k < word.size(); ++k)
            word[k] = table[entry[static_cast<std::size_t>(i) + k]];
        std::memcpy(alpha + i, word.data(), word.size());
    }
    for (; i < count; ++i) alpha[i] = table[entry[i]];
}

} // namespace

Capsule::Capsule(model::CanvasPoint from, model::CanvasPoint to)
    : m_from(from),
      m_to(to),
      m_direction{1.0, 0.0},
      m_length(std::hypot(to.x - from.x, to.y - from.y)) {
    if (m_length > 0.0) m_direction = {(to.x - from.x) / m_length, (to.y - from.y) / m_length};
}

double Capsule::top() const {
    return std::min(m_from.y, m_to.y);
}
double Capsule::bottom() const {
    return std::max(m_from.y, m_to.y);
}
double Capsule::left() const {
    return std::min(m_from.x, m_to.x);
}
double Capsule::right() const {
    return std::max(m_from.x, m_to.x);
}

PixelSpan Capsule::spanWithin(double radius, int y, int width) const {
    if (!(radius >= 0.0)) return {};
    const double center = y + 0.5;
    Interval inside = hull(discRow(m_from, radius, center), discRow(m_to, radius, center));
    if (m_length > 0.0) {
        const double down = center - m_from.y;
        const auto [ux, uy] = m_direction;
        const Interval along = between(ux, down * uy - m_from.x * ux, 0.0, m_length);
        const Interval across = between(-uy, down * ux + m_from.x * uy, -radius, radius);
        const Interval body = intersection(along, across);
        if (!body.isEmpty()) inside = hull(inside, body);
    }
    if (inside.isEmpty()) return {};
    const double limit = width;
    return {static_cast<int>(std::clamp(std::ceil(inside.low - 0.5), 0.0, limit)),
            static_cast<int>(std::clamp(std::floor(inside.high - 0.5) + 1.0, 0.0, limit))};
}

/// Calls `use(done, entries, count)` for runs of pixels with their entries of the edge's table.
template <typename Use>
void Capsule::forEachRun(const StrokeEdge& edge, int y, PixelSpan span, Use use) const {
    const auto [ux, uy] = m_direction;
    const double down = y + 0.5 - m_from.y;
    std::array<std::int32_t, runLength> entry{};
    for (int first = span.first; first < span.end; first += runLength) {
        const int count = std::min(runLength, span.end - first);
        const double over = first + 0.5 - m_from.x;
        // Each run starts from exact values, so that steps in single precision cannot drift.
        const DistanceRun run{
            .along = static_cast<float>(over * ux + down * uy),
            .alongStep = static_cast<float>(ux),
            .across = static_cast<float>(down * ux - over * uy),
            .acrossStep = static_cast<float>(-uy),
            .length = static_cast<float>(m_length),
            .entriesPerPixel = static_cast<float>(edge.entriesPerPixel()),
            .firstEntry = static_cast<float>(edge.tableStart() * edge.entriesPerPixel() - 0.5),
            .lastEntry = static_cast<float>(edge.alpha().size() - 1)};
        tableEntries(run, entry.data(), count);
        use(first - span.first, entry.data(), count);
    }
}

void Capsule::writeAlpha(const StrokeEdge& edge, int y, PixelSpan span, std::uint8_t* alpha) const {
    const std::uint8_t* const table = edge.alpha().data();
    forEachRun(edge, y, span, [&](int done, const std::int32_t* entry, int count) {
        copyEntries(table, entry, alpha + done, count);
    });
}

void Capsule::raiseAlpha(const StrokeEdge& edge, int y, PixelSpan span, std::uint8_t* alpha) const {
    const std::uint8_t* const table = edge.alpha().data();
    forEachRun(edge, y, span, [&](int done, const std::int32_t* entry, int count) {
        for (int i = 0; i < count; ++i)
            alpha[done + i] = std::max(alpha[done + i], table[entry[i]]);
    });
}

} // namespace quillabrae::raster
