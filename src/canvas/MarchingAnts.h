// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRegion>
#include <QSize>

#include <cstdint>
#include <vector>

namespace quillabrae::canvas {

/// The dashes that run along the border of a selection, and the white casing under them.
///
/// A dash is 14 points long, the gap after it 10, the line 2.4 points wide and its casing 4.4; the
/// dashes begin anew on each segment. The phase, 0 to 24 points, moves them along. What can be seen
/// of each segment is kept by bands of rows. A band is drawn as two pictures of a bit for each
/// pixel, small enough to stay near the processor, so that a tick of the ants costs little more
/// than the pixels that it repaints, and laying them out anew little more than reading the outline.
class MarchingAnts {
public:
    static constexpr int phaseCount = 24;

    /// `size`: the device pixels that are shown, from (0, 0).
    MarchingAnts(QSize size, double devicePixelRatio);
    /// As if made anew; memory for as many segments stays.
    void restart(QSize size, double devicePixelRatio);

    /// Adds a segment that runs along one of the axes between whole device pixels. One that has no
    /// finite ends shows nothing.
    void addSegment(QPointF start, QPointF end);

    /// Draws the ants that fall inside `region` (device pixels) over the pixels of `base` into
    /// `target`; all of the region is written. Both are RGB32 and as large as what is shown.
    void paint(QImage& target, const QImage& base, const QRegion& region, int phase,
               const QColor& accent) const;

    /// Points (device pixels over their ratio) that may show ants at some phase, in tiles.
    QRegion region() const;

private:
    /// A segment's part that is shown, and where its dashes begin. It goes the other way where it
    /// does not lie behind `start`.
    struct Span {
        int across = 0;
        int first = 0;
        int end = 0;
        int start = 0;
    };
    /// Offsets from a segment to the pixels across it, from `first` to `end` - 1.
    struct Width {
        int first = 0;
        int end = 0;
    };
    /// Segments that are drawn in a band of rows.
    struct Band {
        std::vector<Span> horizontal;
        std::vector<Span> vertical;
    };
    class BandBits;

    static constexpr int bandHeight = 64;
    static constexpr int tileWidth = 64;
    static constexpr int tileHeight = 16;

    void addHorizontal(const Span& span);
    void addVertical(const Span& span);
    void markTiles(int left, int top, int right, int bottom);

    QSize m_size;
    double m_devicePixelRatio = 1.0;
    Width m_line;
    Width m_casing;
    std::vector<Band> m_bands;
    int m_tileColumns = 0;
    int m_tileRows = 0;
    std::vector<std::uint8_t> m_isTileUsed;
};

} // namespace quillabrae::canvas
