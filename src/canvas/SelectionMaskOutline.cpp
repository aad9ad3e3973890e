// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/SelectionMaskOutline.h"

#include "raster/DecodeCache.h"

#include <QHashFunctions>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace quillabrae::canvas {
namespace {

/// The highest alpha that is out.
constexpr std::uint8_t outAlpha = 25;

/// One byte for each pixel of a line of the mask, 1 where it is in, with a clear one at either end.
using Line = std::vector<std::uint8_t>;

/// Calls `emit(start, end)` for each run of pixels that are in here and out in the line beside.
template <typename Emit>
void forEachRun(const Line& here, const Line& beside, Emit&& emit) {
    const int count = static_cast<int>(here.size());
    int start = -1;
    for (int i = 0; i < count; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const bool isBorder = here[index] > beside[index];
        if (isBorder && start < 0) start = i;
        if (!isBorder && start >= 0) {
            emit(start, i);
            start = -1;
        }
    }
    if (start >= 0) emit(start, count);
}

void readRow(const raster::RasterImage& mask, int y, Line& line) {
    const std::uint8_t* const pixels = mask.row(y);
    for (std::size_t x = 0; x < line.size(); ++x) line[x] = pixels[4 * x + 3] > outAlpha ? 1 : 0;
}

/// The borders between rows: one sweep over pairs of neighbours.
void addRowBorders(const raster::RasterImage& mask,
                   std::vector<SelectionMaskOutlineSegment>& segments) {
    Line above(static_cast<std::size_t>(mask.width()), 0);
    Line here(above);
    for (int y = 0; y <= mask.height(); ++y) {
        if (y < mask.height())
            readRow(mask, y, here);
        else
            std::ranges::fill(here, std::uint8_t{0});
        const auto add = [&](int start, int end) { segments.push_back({start, y, end, y}); };
        forEachRun(here, above, add);
        forEachRun(above, here, add);
        std::swap(above, here);
    }
}

/// The borders between columns. Reads by rows: a run goes on in the row below or ends there.
void addColumnBorders(const raster::RasterImage& mask,
                      std::vector<SelectionMaskOutlineSegment>& segments) {
    const auto columns = static_cast<std::size_t>(mask.width()) + 1;
    // The kind of border at each column: none, the left of a pixel, or the right of one.
    std::vector<std::int8_t> kinds(columns, 0);
    std::vector<int> starts(columns, 0);
    Line line(columns - 1, 0);
    for (int y = 0; y <= mask.height(); ++y) {
        if (y < mask.height())
            readRow(mask, y, line);
        else
            std::ranges::fill(line, std::uint8_t{0});
        for (std::size_t x = 0; x < columns; ++x) {
            const int left = x > 0 ? line[x - 1] : 0;
            const int right = x + 1 < columns ? line[x] : 0;
            const auto kind = static_cast<std::int8_t>(right - left);
            if (kind == kinds[x]) continue;
            const int column = static_cast<int>(x);
            if (kinds[x] != 0) segments.push_back({column, starts[x], column, y});
            kinds[x] = kind;
            starts[x] = y;
        }
    }
}

} // namespace

SelectionMaskOutlinePlan maskOutline(const raster::RasterImage& mask) {
    SelectionMaskOutlinePlan plan{mask.width(), mask.height(), {}};
    if (mask.isNull()) return plan;
    plan.segments.reserve(static_cast<std::size_t>(std::max(mask.width(), mask.height())));
    addRowBorders(mask, plan.segments);
    addColumnBorders(mask, plan.segments);
    return plan;
}

const SelectionMaskOutlinePlan& SelectionMaskOutlineCache::outline(const model::PngBytes& data) {
    const auto bytes = data.bytes();
    const Key key{bytes.size(), qHashBits(bytes.data(), bytes.size())};
    if (const auto known = m_outlines.find(key); known != m_outlines.end()) return known->second;
    const auto added = m_outlines.emplace(key, maskOutline(raster::decodedImage(data))).first;
    m_accessOrder.push_back(key);
    trimCacheIfNeeded();
    return added->second;
}

void SelectionMaskOutlineCache::trimCacheIfNeeded() {
    while (m_accessOrder.size() > maximumOutlineCount) {
        m_outlines.erase(m_accessOrder.front());
        m_accessOrder.pop_front();
    }
}

} // namespace quillabrae::canvas
