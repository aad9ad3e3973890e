// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/MarchingAnts.h"

#include "raster/KernelTargets.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::canvas {
namespace {

constexpr int dashLength = 14;
constexpr double lineWidth = 2.4;
constexpr double casingWidth = 4.4;
/// Work for one thread that is worth waking another for.
constexpr int pixelsPerBand = 1 << 16;
constexpr std::uint32_t allPhases = (1U << MarchingAnts::phaseCount) - 1;

/// The whole phases p at which (distance - p) mod 24 is within a dash, as bits.
std::uint32_t phasesOn(int distance) {
    std::uint32_t bits = 0;
    for (int back = 0; back < dashLength; ++back) {
        const int phase =
            ((distance - back) % MarchingAnts::phaseCount + MarchingAnts::phaseCount) %
            MarchingAnts::phaseCount;
        bits |= 1U << phase;
    }
    return bits & allPhases;
}

/// By the distance from a segment's start, in whole points, modulo the pattern's length.
const std::array<std::uint32_t, MarchingAnts::phaseCount>& phaseTable() {
    static const auto table = [] {
        std::array<std::uint32_t, MarchingAnts::phaseCount> made{};
        for (int i = 0; i < MarchingAnts::phaseCount; ++i)
            made.at(static_cast<std::size_t>(i)) = phasesOn(i);
        return made;
    }();
    return table;
}

/// White at opacity 0.9 over `base`: 230 and a tenth of each channel, two channels at a time.
inline QRgb encased(QRgb base) {
    constexpr QRgb evenChannels = 0x00ff00ff;
    constexpr QRgb white = 0xffe6e6e6;
    const QRgb even = ((base & evenChannels) * 26 >> 8) & evenChannels;
    const QRgb odd = ((base >> 8 & 0xff) * 26) & 0xff00;
    return white + even + odd;
}

/// Each pixel is the accent where its line is on, else in its casing where that is on.
QUILLABRAE_WIDE_KERNEL void paintPixels(const std::uint32_t* line, const std::uint32_t* casing,
                                        std::uint32_t phaseBit, QRgb accent, const QRgb* base,
                                        QRgb* target, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const QRgb cased = (casing[i] & phaseBit) != 0 ? encased(base[i]) : base[i];
        target[i] = (line[i] & phaseBit) != 0 ? accent : cased;
    }
}

int firstCentreFrom(double edge) {
    return static_cast<int>(std::ceil(edge - 0.5));
}

} // namespace

MarchingAnts::MarchingAnts(QSize size, double devicePixelRatio)
    : m_size(size),
      m_devicePixelRatio(devicePixelRatio),
      m_tileColumns((size.width() + tileWidth - 1) / tileWidth),
      m_tileRows((size.height() + tileHeight - 1) / tileHeight),
      m_tiles(static_cast<std::size_t>(m_tileColumns) * static_cast<std::size_t>(m_tileRows)) {}

MarchingAnts::Tile& MarchingAnts::tileAt(int tileX, int tileY) {
    auto& tile = m_tiles[static_cast<std::size_t>(tileY) * static_cast<std::size_t>(m_tileColumns) +
                         static_cast<std::size_t>(tileX)];
    if (!tile) tile = std::make_unique<Tile>();
    return *tile;
}

const MarchingAnts::Tile* MarchingAnts::tileIfAny(int tileX, int tileY) const {
    return m_tiles[static_cast<std::size_t>(tileY) * static_cast<std::size_t>(m_tileColumns) +
                   static_cast<std::size_t>(tileX)]
        .get();
}

/// The pixels `first` to `end` - 1 along one row or column: their phases follow one another.
template <bool isHorizontal>
void MarchingAnts::markLine(int across, int first, int end, double start, Part part) {
    const auto& table = phaseTable();
    for (int a = first; a < end;) {
        const int tileLength = isHorizontal ? tileWidth : tileHeight;
        const int tileEnd = std::min((a / tileLength + 1) * tileLength, end);
        Tile& tile = isHorizontal ? tileAt(a / tileWidth, across / tileHeight)
                                  : tileAt(across / tileWidth, a / tileHeight);
        const int acrossOffset =
            isHorizontal ? across % tileHeight * tileWidth : across % tileWidth;
        for (; a < tileEnd; ++a) {
            const int points = static_cast<int>(std::abs(a + 0.5 - start) / m_devicePixelRatio);
            const std::uint32_t phases = table[static_cast<std::size_t>(points % phaseCount)];
            const int index =
                acrossOffset + (isHorizontal ? a % tileWidth : a % tileHeight * tileWidth);
            tile.casing.at(static_cast<std::size_t>(index)) |= phases;
            if (part == Part::line) tile.line.at(static_cast<std::size_t>(index)) |= phases;
        }
    }
}

template <bool isHorizontal>
void MarchingAnts::addSpan(double across, double start, double end) {
    const int alongLimit = isHorizontal ? m_size.width() : m_size.height();
    const int acrossLimit = isHorizontal ? m_size.height() : m_size.width();
    const double casing = casingWidth / 2.0 * m_devicePixelRatio;
    const double line = lineWidth / 2.0 * m_devicePixelRatio;
    const double far = 1 << 24;
    const auto held = [&](double value) { return std::clamp(value, -far, far); };
    const int firstAcross = std::max(firstCentreFrom(held(across - casing)), 0);
    const int endAcross = std::min(firstCentreFrom(held(across + casing)), acrossLimit);
    // A start far off is brought near by whole patterns, which leaves the dashes where they are.
    const double nearStart =
        held(start) + std::fmod(start - held(start), phaseCount * m_devicePixelRatio);
    const int first = std::max(firstCentreFrom(held(std::min(start, end))), 0);
    const int last = std::min(firstCentreFrom(held(std::max(start, end))), alongLimit);
    for (int b = firstAcross; b < endAcross; ++b) {
        const bool isLine = std::abs(b + 0.5 - across) <= line;
        markLine<isHorizontal>(b, first, last, nearStart, isLine ? Part::line : Part::casing);
    }
}

void MarchingAnts::addSegment(QPointF start, QPointF end) {
    m_isRegionKnown = false;
    if (start.y() == end.y())
        addSpan<true>(start.y(), start.x(), end.x());
    else
        addSpan<false>(start.x(), start.y(), end.y());
}

void MarchingAnts::paint(QImage& target, const QImage& base, const QRect& rect, int phase,
                         const QColor& accent) const {
    const QRect inside = rect & QRect(QPoint(0, 0), m_size);
    if (inside.isEmpty()) return;
    const std::uint32_t phaseBit = 1U << (phase % phaseCount);
    std::uint8_t* const bits = target.bits();
    const auto stride = static_cast<std::size_t>(target.bytesPerLine());
    const int rowsPerBand = std::max(pixelsPerBand / inside.width(), 1);
    raster::parallelForRowBands(inside.height(), rowsPerBand, [&](int first, int end) {
        for (int y = inside.top() + first; y < inside.top() + end; ++y) {
            auto* const row = bits + static_cast<std::size_t>(y - rect.top()) * stride;
            paintRow(y, inside.left(), inside.right() + 1, phaseBit, accent.rgb(),
                     reinterpret_cast<const QRgb*>(base.constScanLine(y)) + inside.left(),
                     reinterpret_cast<QRgb*>(row) + (inside.left() - rect.left()));
        }
    });
}

void MarchingAnts::paintRow(int y, int first, int end, std::uint32_t phaseBit, QRgb accent,
                            const QRgb* base, QRgb* target) const {
    for (int x = first; x < end;) {
        const int tileEnd = std::min((x / tileWidth + 1) * tileWidth, end);
        const auto count = static_cast<std::size_t>(tileEnd - x);
        if (const Tile* const tile = tileIfAny(x / tileWidth, y / tileHeight)) {
            const int index = y % tileHeight * tileWidth + x % tileWidth;
            paintPixels(tile->line.data() + index, tile->casing.data() + index, phaseBit, accent,
                        base, target, count);
        } else {
            std::memcpy(target, base, count * sizeof(QRgb));
        }
        base += count;
        target += count;
        x = tileEnd;
    }
}

const QRegion& MarchingAnts::region() const {
    if (m_isRegionKnown) return m_region;
    std::vector<QRect> rects;
    for (int tileY = 0; tileY < m_tileRows; ++tileY) {
        for (int tileX = 0; tileX < m_tileColumns; ++tileX) {
            if (tileIfAny(tileX, tileY) == nullptr) continue;
            const int first = tileX;
            while (tileX + 1 < m_tileColumns && tileIfAny(tileX + 1, tileY) != nullptr) ++tileX;
            rects.emplace_back(first * tileWidth, tileY * tileHeight,
                               (tileX + 1 - first) * tileWidth, tileHeight);
        }
    }
    m_region.setRects(rects.data(), static_cast<int>(rects.size()));
    m_isRegionKnown = true;
    return m_region;
}

} // namespace quillabrae::canvas
