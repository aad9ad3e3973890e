// SPDX-License-Identifier: GPL-3.0-or-later
// Destination centre c + d shows the source at floor(R(-t) d / s + size / 2 + e).
#include "raster/RotateZoom.h"

#include "raster/BlendKernels.h"
#include "raster/KernelTargets.h"
#include "raster/LayerPixels.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace quillabrae::raster {
namespace {

/// A block of the destination shows a block of the source of about the same size, so both stay in
/// the nearest cache whatever the angle.
constexpr int blockRows = 64;
constexpr int blockColumns = 128;

constexpr double borderShare = 0x1p-24;

/// Columns of a row, from the first up to but not including the last.
struct ColumnRange {
    int first = 0;
    int last = 0;
};

/// One source coordinate along a row of the destination.
struct Walk {
    double start;
    double step;

    double at(int column) const { return start + column * step; }

    /// The columns among `within` at which the walk is on a picture of that length. Products and
    /// sums of rounded numbers keep their order, so the ends can be searched for.
    ColumnRange columnsOn(int length, ColumnRange within) const {
        const double entry = step < 0.0 ? length : 0.0;
        const double exit = step < 0.0 ? 0.0 : length;
        return {firstPast(entry, within), firstPast(exit, within)};
    }

private:
    int firstPast(double border, ColumnRange within) const {
        while (within.first < within.last) {
            const int middle = within.first + (within.last - within.first) / 2;
            const double position = at(middle);
            if (step < 0.0 ? position < border : position >= border)
                within.last = middle;
            else
                within.first = middle + 1;
        }
        return within.first;
    }
};

/// A row of the destination: where it is in the source, and the columns that show it.
struct RowWalk {
    Walk u{};
    Walk v{};
    ColumnRange shown{};
};

class Turn {
public:
    Turn(const RotateZoom& turn, const QRect& rect) : m_rect(rect) {
        const double radians = std::fmod(turn.angleDegrees, 360.0) * (std::numbers::pi / 180.0);
        m_cosine = std::cos(radians) / turn.scale;
        m_sine = std::sin(radians) / turn.scale;
    }

    RowWalk row(int y, int columns) const {
        const double halfWidth = m_rect.width() / 2.0;
        const double halfHeight = m_rect.height() / 2.0;
        const double dx = 0.5 - (m_rect.x() + halfWidth);
        const double dy = y + 0.5 - (m_rect.y() + halfHeight);
        RowWalk walk{.u = {dx * m_cosine + dy * m_sine + halfWidth + borderShare, m_cosine},
                     .v = {dy * m_cosine - dx * m_sine + halfHeight + borderShare, -m_sine}};
        walk.shown =
            walk.v.columnsOn(m_rect.height(), walk.u.columnsOn(m_rect.width(), {0, columns}));
        return walk;
    }

private:
    QRect m_rect;
    double m_cosine;
    double m_sine;
};

/// Where the lifted pixels are: rows of an image, `strideInPixels` apart.
struct Picture {
    const std::uint8_t* pixels;
    int strideInPixels;
};

QUILLABRAE_WIDE_KERNEL
void indexPixels(std::int32_t* index, const RowWalk& row, ColumnRange columns, int strideInPixels) {
    const Walk u = row.u;
    const Walk v = row.v;
    const int count = columns.last - columns.first;
    for (int i = 0; i < count; ++i) {
        const double column = columns.first + i;
        index[i] = static_cast<std::int32_t>(v.start + column * v.step) * strideInPixels +
                   static_cast<std::int32_t>(u.start + column * u.step);
    }
}

/// What the picture is set down on: nothing, which is not even read, or the pixels that are there.
enum class Ground { clear, kept };

/// What one row's part of a block needs.
struct Scratch {
    std::array<std::int32_t, blockColumns> index{};
    std::array<std::uint8_t, std::size_t{4} * blockColumns> gathered{};
};

class Setter {
public:
    Setter(const Picture& picture, const Turn& turn, RasterImage& target, Ground ground)
        : m_picture(picture),
          m_turn(turn),
          m_target(target.mutableRow(0)),
          m_stride(target.stride()),
          m_columns(target.width()),
          m_ground(ground) {}

    /// Rows from `first` up to but not including `last`, at most a block of them.
    void setRows(int first, int last) const {
        std::array<RowWalk, blockRows> walks;
        Scratch scratch;
        for (int y = first; y < last; ++y)
            walks[static_cast<std::size_t>(y - first)] = m_turn.row(y, m_columns);
        for (int x = 0; x < m_columns; x += blockColumns) {
            const ColumnRange block{x, std::min(x + blockColumns, m_columns)};
            for (int y = first; y < last; ++y)
                setRow(m_target + static_cast<std::size_t>(y) * m_stride,
                       walks[static_cast<std::size_t>(y - first)], block, scratch);
        }
    }

private:
    static void clear(std::uint8_t* row, int first, int last) {
        if (first < last)
            std::memset(row + 4 * static_cast<std::size_t>(first), 0,
                        4 * static_cast<std::size_t>(last - first));
    }

    void setRow(std::uint8_t* row, const RowWalk& walk, ColumnRange block, Scratch& scratch) const {
        const ColumnRange shown{std::clamp(walk.shown.first, block.first, block.last),
                                std::clamp(walk.shown.last, block.first, block.last)};
        if (m_ground == Ground::clear) {
            clear(row, block.first, std::min(shown.first, block.last));
            clear(row, std::max(shown.last, shown.first), block.last);
        }
        if (shown.first >= shown.last) return;
        const auto count = static_cast<std::size_t>(shown.last - shown.first);
        std::uint8_t* const pixels = row + 4 * static_cast<std::size_t>(shown.first);
        indexPixels(scratch.index.data(), walk, shown, m_picture.strideInPixels);
        if (m_ground == Ground::clear)
            return gatherPixels(pixels, m_picture.pixels, scratch.index.data(), count);
        gatherPixels(scratch.gathered.data(), m_picture.pixels, scratch.index.data(), count);
        sourceOverPixels(pixels, scratch.gathered.data(), count, 255);
    }

    Picture m_picture;
    Turn m_turn;
    std::uint8_t* m_target;
    std::size_t m_stride;
    int m_columns;
    Ground m_ground;
};

} // namespace

QRect RotateZoom::reach(const QRect& rect) const {
    const double radius = std::hypot(rect.width(), rect.height()) / 2.0 * scale + 2.0;
    // Beyond every image.
    const int margin = static_cast<int>(std::min(radius, 1e6));
    const QPoint centre = rect.center();
    return rect | QRect(centre.x() - margin, centre.y() - margin, 2 * margin + 1, 2 * margin + 1);
}

RasterImage rotateZoomedImage(const RasterImage& image, const SelectionCoverage& coverage,
                              const RotateZoom& turn) {
    const QRect rect = coverage.rect();
    const bool isWhole = rect == QRect(0, 0, image.width(), image.height());
    const Ground ground = isWhole && !coverage.isMasked() ? Ground::clear : Ground::kept;
    const RasterImage lifted = coverage.isMasked() ? croppedImage(image, coverage) : image;
    RasterImage result = ground == Ground::kept
                             ? clearedImage(image, coverage)
                             : RasterImage::uninitialized(image.width(), image.height());
    if (lifted.isNull() || result.isNull()) return {};
    result.setLogicalSize(image.logicalSize());
    const QPoint corner = coverage.isMasked() ? QPoint(0, 0) : rect.topLeft();
    const Picture picture{lifted.row(corner.y()) + 4 * static_cast<std::size_t>(corner.x()),
                          lifted.width()};
    const Setter setter(picture, Turn(turn, rect), result, ground);
    parallelForRowBands(result.height(), blockRows,
                        [&](int first, int last) { setter.setRows(first, last); });
    return result;
}

} // namespace quillabrae::raster
