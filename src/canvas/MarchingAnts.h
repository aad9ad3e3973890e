// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillabrae::canvas {

/// The dashes that run along the border of a selection, and the white casing under them, as sets of
/// device pixels.
///
/// A dash is 14 points long, the gap after it 10, the line 2.4 points wide and its casing 4.4; the
/// dashes begin anew on each segment. The phase, 0 to 24 points, moves them along. Every device
/// pixel near a segment keeps a bit for each whole phase at which it is on, so a tick of the ants
/// costs their pixels, however many segments they run along.
class MarchingAnts {
public:
    static constexpr int phaseCount = 24;

    /// `size`: the device pixels that are shown, from (0, 0).
    MarchingAnts(QSize size, double devicePixelRatio);

    /// Adds a segment that runs along one of the axes, in device pixels.
    void addSegment(QPointF start, QPointF end);

    /// Draws the ants that fall inside `rect` (device pixels) over the pixels of `base`, RGB32,
    /// into `target`, whose pixel (0, 0) is the rectangle's top left.
    void paint(QImage& target, const QImage& base, const QRect& rect, int phase,
               const QColor& accent) const;

    /// Device pixels that may show ants at some phase: whole tiles.
    const QRegion& region() const;

private:
    static constexpr int tileWidth = 64;
    static constexpr int tileHeight = 16;

    /// For each pixel the phases at which its line, and its casing, is on.
    struct Tile {
        std::array<std::uint32_t, static_cast<std::size_t>(tileWidth) * tileHeight> line{};
        std::array<std::uint32_t, static_cast<std::size_t>(tileWidth) * tileHeight> casing{};
    };

    Tile& tileAt(int tileX, int tileY);
    const Tile* tileIfAny(int tileX, int tileY) const;
    enum class Part { line, casing };
    template <bool isHorizontal>
    void markLine(int across, int first, int end, double start, Part part);
    template <bool isHorizontal>
    void addSpan(double across, double start, double end);
    void paintRow(int y, int first, int end, std::uint32_t phaseBit, QRgb accent, const QRgb* base,
                  QRgb* target) const;

    QSize m_size;
    double m_devicePixelRatio;
    int m_tileColumns;
    int m_tileRows;
    std::vector<std::unique_ptr<Tile>> m_tiles;
    mutable QRegion m_region;
    mutable bool m_isRegionKnown = false;
};

} // namespace quillabrae::canvas
