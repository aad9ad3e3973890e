// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/MarchingAnts.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::canvas {
namespace {

constexpr int dashLength = 14;
constexpr double lineWidth = 2.4;
constexpr double casingWidth = 4.4;
constexpr std::uint32_t allPhases = (1U << MarchingAnts::phaseCount) - 1;
/// White at opacity 0.9.
constexpr int casingShare = 230;

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

QRgb encased(QRgb base) {
    const auto mixed = [](int value) {
        return (value * (255 - casingShare) + 255 * casingShare + 127) / 255;
    };
    return qRgb(mixed(qRed(base)), mixed(qGreen(base)), mixed(qBlue(base)));
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

void MarchingAnts::mark(int x, int y, std::uint32_t phases, bool isLine) {
    Tile& tile = tileAt(x / tileWidth, y / tileHeight);
    const auto index = static_cast<std::size_t>(y % tileHeight) * tileWidth +
                       static_cast<std::size_t>(x % tileWidth);
    tile.casing[index] |= phases;
    if (isLine) tile.line[index] |= phases;
}

template <bool isHorizontal>
void MarchingAnts::addSpan(double across, double start, double end) {
    const auto& table = phaseTable();
    const int alongLimit = isHorizontal ? m_size.width() : m_size.height();
    const int acrossLimit = isHorizontal ? m_size.height() : m_size.width();
    const double casing = casingWidth / 2.0 * m_devicePixelRatio;
    const double line = lineWidth / 2.0 * m_devicePixelRatio;
    const double far = 1 << 24;
    const auto held = [&](double value) { return std::clamp(value, -far, far); };
    const int firstAcross = std::max(firstCentreFrom(held(across - casing)), 0);
    const int endAcross = std::min(firstCentreFrom(held(across + casing)), acrossLimit);
    const int firstAlong = std::max(firstCentreFrom(held(std::min(start, end))), 0);
    const int endAlong = std::min(firstCentreFrom(held(std::max(start, end))), alongLimit);
    for (int b = firstAcross; b < endAcross; ++b) {
        const bool isLine = std::abs(b + 0.5 - across) <= line;
        for (int a = firstAlong; a < endAlong; ++a) {
            const double points = std::abs(a + 0.5 - start) / m_devicePixelRatio;
            const auto index = static_cast<std::size_t>(std::fmod(points, double(phaseCount)));
            isHorizontal ? mark(a, b, table.at(index), isLine)
                         : mark(b, a, table.at(index), isLine);
        }
    }
}

void MarchingAnts::addSegment(QPointF start, QPointF end) {
    m_isRegionKnown = false;
    if (start.y() == end.y())
        addSpan<true>(start.y(), start.x(), end.x());
    else
        addSpan<false>(start.x(), start.y(), end.y());
}

void MarchingAnts::paintTileRow(const Tile& tile, int y, int first, int end, const QRgb* base,
                                QRgb* target, std::uint32_t phaseBit, QRgb accent) const {
    const std::size_t row = static_cast<std::size_t>(y % tileHeight) * tileWidth;
    const std::uint32_t* const line = tile.line.data() + row;
    const std::uint32_t* const casing = tile.casing.data() + row;
    for (int x = first; x < end; ++x) {
        const auto i = static_cast<std::size_t>(x);
        const QRgb cased = (casing[i] & phaseBit) != 0 ? encased(base[i]) : base[i];
        target[i] = (line[i] & phaseBit) != 0 ? accent : cased;
    }
}

void MarchingAnts::paint(QImage& target, const QImage& base, const QRect& rect, int phase,
                         const QColor& accent) const {
    const QRect inside = rect & QRect(QPoint(0, 0), m_size);
    const std::uint32_t phaseBit = 1U << (phase % phaseCount);
    const QRgb accentPixel = accent.rgb();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const auto* const from = reinterpret_cast<const QRgb*>(base.constScanLine(y));
        auto* const to = reinterpret_cast<QRgb*>(target.scanLine(y - rect.top()));
        for (int x = inside.left(); x <= inside.right();) {
            const int tileX = x / tileWidth;
            const int end = std::min((tileX + 1) * tileWidth, inside.right() + 1);
            const QRgb* const source = from + x;
            QRgb* const destination = to + (x - rect.left());
            const Tile* const tile = tileIfAny(tileX, y / tileHeight);
            if (tile == nullptr) {
                std::memcpy(destination, source, static_cast<std::size_t>(end - x) * sizeof(QRgb));
            } else {
                const int offset = x - tileX * tileWidth;
                paintTileRow(*tile, y, offset, offset + end - x, source - offset,
                             destination - offset, phaseBit, accentPixel);
            }
            x = end;
        }
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
