// SPDX-License-Identifier: GPL-3.0-or-later
#include "canvas/MarchingAnts.h"

#include "raster/KernelTargets.h"
#include "raster/Parallel.h"
#include "raster/PixelLanes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace quillabrae::canvas {
namespace {

namespace lanes = raster::lanes;

constexpr int dashLength = 14;
constexpr double lineWidth = 2.4;
constexpr double casingWidth = 4.4;
constexpr int wordBits = 64;

int firstCentreFrom(double edge) {
    return static_cast<int>(std::ceil(edge - 0.5));
}

/// The lowest `count` bits, 0 to 64.
constexpr std::uint64_t lowBits(int count) {
    return count >= wordBits ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

/// White at opacity 0.9 over `base`: 230 and a tenth of each channel, two channels at a time.
template <typename Pixels>
[[gnu::always_inline]] inline Pixels encased(Pixels base) {
    constexpr QRgb evenChannels = 0x00ff00ff;
    constexpr QRgb white = 0xffe6e6e6;
    const Pixels even = ((base & evenChannels) * 26U >> 8) & evenChannels;
    const Pixels odd = ((base >> 8 & 0xffU) * 26U) & 0xff00U;
    return even + odd + white;
}

/// Bits `x` to `x` + 7 of a row, `x` a multiple of 8.
[[gnu::always_inline]] inline std::uint32_t eightBits(const std::uint64_t* row, int x) {
    return static_cast<std::uint32_t>(row[x / wordBits] >> (x % wordBits)) & 0xffU;
}

/// Each pixel is the accent where its line is on, else in its casing where that is on. The rows
/// begin at pixel 0.
QUILLABRAE_WIDE_KERNEL
void paintRow(const std::uint64_t* line, const std::uint64_t* casing, int first, int end,
              QRgb accent, const QRgb* base, QRgb* target) {
    constexpr int lane = static_cast<int>(lanes::count);
    const auto paintOne = [=](int x) {
        const bool isLine = (line[x / wordBits] >> (x % wordBits) & 1U) != 0;
        const bool isCasing = (casing[x / wordBits] >> (x % wordBits) & 1U) != 0;
        target[x] = isLine ? accent : isCasing ? encased(base[x]) : base[x];
    };
    int x = first;
    for (; x < end && x % lane != 0; ++x) paintOne(x);
    for (; x + lane <= end; x += lane) {
        constexpr lanes::Words bitOfLane{1, 2, 4, 8, 16, 32, 64, 128};
        const auto pixels = lanes::loadPixels(reinterpret_cast<const std::uint8_t*>(base + x));
        const lanes::Words isCasing =
            reinterpret_cast<lanes::Words>((bitOfLane & eightBits(casing, x)) != 0U);
        const lanes::Words isLine =
            reinterpret_cast<lanes::Words>((bitOfLane & eightBits(line, x)) != 0U);
        const lanes::Words cased = (encased(pixels) & isCasing) | (pixels & ~isCasing);
        lanes::storePixels(reinterpret_cast<std::uint8_t*>(target + x),
                           (accent & isLine) | (cased & ~isLine));
    }
    for (; x < end; ++x) paintOne(x);
}

/// The dashes at one phase: for whether a segment is on at a distance from its start.
class Dashes {
public:
    Dashes(int phase, double devicePixelRatio)
        : m_phase(phase % MarchingAnts::phaseCount), m_devicePixelRatio(devicePixelRatio) {
        for (int i = 0; i < wordBits; ++i)
            m_firstBits |= std::uint64_t{isOn(i + 0.5) ? 1U : 0U} << i;
    }

    /// Bit i is for the pixel `first` + i, of at most 64, along a segment from `start`.
    std::uint64_t along(int start, int first, int count) const {
        if (first >= start && first + count - start <= wordBits)
            return m_firstBits >> (first - start) & lowBits(count);
        std::uint64_t bits = 0;
        for (int i = 0; i < count; ++i)
            bits |= std::uint64_t{isOn(std::abs(first + i + 0.5 - start)) ? 1U : 0U} << i;
        return bits;
    }

private:
    bool isOn(double distance) const {
        const int points = static_cast<int>(distance / m_devicePixelRatio);
        return (points + MarchingAnts::phaseCount - m_phase) % MarchingAnts::phaseCount <
               dashLength;
    }

    int m_phase;
    double m_devicePixelRatio;
    /// For the first pixels from a segment's start on.
    std::uint64_t m_firstBits = 0;
};

} // namespace

/// A band's pixels in which the line, and its casing, is on at one phase.
class MarchingAnts::BandBits {
public:
    BandBits(const MarchingAnts& ants, int top, int bottom)
        : m_ants(ants),
          m_top(top),
          m_bottom(bottom),
          // A run of bits may be cut by the word's end, also in the last word.
          m_stride(static_cast<std::size_t>(ants.m_size.width() / wordBits) + 2),
          m_line(m_stride * static_cast<std::size_t>(bottom - top)),
          m_casing(m_line.size()) {}

    const std::uint64_t* line(int y) const { return m_line.data() + rowStart(y); }
    const std::uint64_t* casing(int y) const { return m_casing.data() + rowStart(y); }

    /// Draws what lies at least in part within the columns `left` to `right` - 1.
    void draw(const Band& band, int left, int right, const Dashes& dashes) {
        for (const Span& span : band.horizontal) {
            if (span.end > left && span.first < right) drawHorizontal(span, dashes);
        }
        for (const Span& span : band.vertical) {
            if (span.across + m_ants.m_casing.end > left &&
                span.across + m_ants.m_casing.first < right)
                drawVertical(span, dashes);
        }
    }

private:
    std::size_t rowStart(int y) const { return static_cast<std::size_t>(y - m_top) * m_stride; }

    void add(std::vector<std::uint64_t>& picture, int x, int y, std::uint64_t bits) const {
        std::uint64_t* const word = picture.data() + rowStart(y) + x / wordBits;
        const int shift = x % wordBits;
        word[0] |= bits << shift;
        if (shift != 0) word[1] |= bits >> (wordBits - shift);
    }

    void addRows(std::vector<std::uint64_t>& picture, int across, Width width, int x,
                 std::uint64_t bits) const {
        const int end = std::min(across + width.end, m_bottom);
        for (int y = std::max(across + width.first, m_top); y < end; ++y) add(picture, x, y, bits);
    }

    void drawHorizontal(const Span& span, const Dashes& dashes) {
        for (int x = span.first; x < span.end; x += wordBits) {
            const std::uint64_t bits =
                dashes.along(span.start, x, std::min(wordBits, span.end - x));
            addRows(m_casing, span.across, m_ants.m_casing, x, bits);
            addRows(m_line, span.across, m_ants.m_line, x, bits);
        }
    }

    /// The pixels of a row that a segment across it takes up, at most a word of them.
    struct Cut {
        int x = 0;
        std::uint64_t bits = 0;
    };
    Cut cut(int across, Width width) const {
        const int first = std::max(across + width.first, 0);
        const int end = std::min(across + width.end, m_ants.m_size.width());
        return {first, end > first ? lowBits(end - first) : 0};
    }

    void drawVertical(const Span& span, const Dashes& dashes) {
        const Cut line = cut(span.across, m_ants.m_line);
        const Cut casing = cut(span.across, m_ants.m_casing);
        const int first = std::max(span.first, m_top);
        const int count = std::min(span.end, m_bottom) - first;
        for (std::uint64_t bits = dashes.along(span.start, first, count); bits != 0;
             bits &= bits - 1) {
            const int y = first + std::countr_zero(bits);
            if (casing.bits != 0) add(m_casing, casing.x, y, casing.bits);
            if (line.bits != 0) add(m_line, line.x, y, line.bits);
        }
    }

    const MarchingAnts& m_ants;
    int m_top;
    int m_bottom;
    std::size_t m_stride;
    std::vector<std::uint64_t> m_line;
    std::vector<std::uint64_t> m_casing;
};

MarchingAnts::MarchingAnts(QSize size, double devicePixelRatio) {
    restart(size, devicePixelRatio);
}

void MarchingAnts::restart(QSize size, double devicePixelRatio) {
    m_size = size;
    m_devicePixelRatio = devicePixelRatio;
    const double line = lineWidth / 2.0 * devicePixelRatio;
    const double casing = casingWidth / 2.0 * devicePixelRatio;
    m_line = {firstCentreFrom(-line), static_cast<int>(std::floor(line - 0.5)) + 1};
    m_casing = {firstCentreFrom(-casing), firstCentreFrom(casing)};
    for (Band& band : m_bands) {
        band.horizontal.clear();
        band.vertical.clear();
    }
    m_bands.resize(static_cast<std::size_t>((size.height() + bandHeight - 1) / bandHeight));
    m_tileColumns = (size.width() + tileWidth - 1) / tileWidth;
    m_tileRows = (size.height() + tileHeight - 1) / tileHeight;
    m_isTileUsed.assign(
        static_cast<std::size_t>(m_tileColumns) * static_cast<std::size_t>(m_tileRows), 0);
}

void MarchingAnts::addSegment(QPointF start, QPointF end) {
    const bool isHorizontal = start.y() == end.y();
    const double across = isHorizontal ? start.y() : start.x();
    const double from = isHorizontal ? start.x() : start.y();
    const double to = isHorizontal ? end.x() : end.y();
    const int acrossLimit = isHorizontal ? m_size.height() : m_size.width();
    const int alongLimit = isHorizontal ? m_size.width() : m_size.height();
    if (!(across + m_casing.end > 0 && across + m_casing.first < acrossLimit)) return;
    if (!(std::max(from, to) > 0 && std::min(from, to) < alongLimit)) return;
    if (!std::isfinite(from) || !std::isfinite(to)) return;
    // A start far off is brought near by whole patterns, which leaves the dashes where they are.
    constexpr double far = 1 << 24;
    const double held = std::clamp(from, -far, far);
    const double near =
        held == from ? from : held + std::fmod(from - held, phaseCount * m_devicePixelRatio);
    const auto inside = [=](double along) {
        return static_cast<int>(std::clamp(along, 0.0, static_cast<double>(alongLimit)));
    };
    const Span span{static_cast<int>(across), inside(std::min(from, to)),
                    inside(std::max(from, to)), static_cast<int>(near)};
    if (isHorizontal)
        addHorizontal(span);
    else
        addVertical(span);
}

void MarchingAnts::addHorizontal(const Span& span) {
    const int top = std::max(span.across + m_casing.first, 0);
    const int bottom = std::min(span.across + m_casing.end, m_size.height());
    for (int band = top / bandHeight; band * bandHeight < bottom; ++band)
        m_bands[static_cast<std::size_t>(band)].horizontal.push_back(span);
    markTiles(span.first, top, span.end, bottom);
}

void MarchingAnts::addVertical(const Span& span) {
    for (int band = span.first / bandHeight; band * bandHeight < span.end; ++band)
        m_bands[static_cast<std::size_t>(band)].vertical.push_back(span);
    markTiles(std::max(span.across + m_casing.first, 0), span.first,
              std::min(span.across + m_casing.end, m_size.width()), span.end);
}

/// Tiles lie on device pixels and their region on points: it may fall short of a tile's last pixels
/// by less than a point, which the next tile has then.
void MarchingAnts::markTiles(int left, int top, int right, int bottom) {
    const int margin = static_cast<int>(std::ceil(m_devicePixelRatio)) - 1;
    const int lastColumn = std::min((right - 1 + margin) / tileWidth, m_tileColumns - 1);
    const int lastRow = std::min((bottom - 1 + margin) / tileHeight, m_tileRows - 1);
    for (int row = top / tileHeight; row <= lastRow; ++row) {
        for (int column = left / tileWidth; column <= lastColumn; ++column)
            m_isTileUsed[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_tileColumns) +
                         static_cast<std::size_t>(column)] = 1;
    }
}

void MarchingAnts::paint(QImage& target, const QImage& base, const QRegion& region, int phase,
                         const QColor& accent) const {
    std::vector<std::vector<QRect>> rectsOfBand(m_bands.size());
    for (const QRect& rect : region) {
        const QRect inside = rect & QRect(QPoint(0, 0), m_size);
        for (int band = inside.top() / bandHeight; band * bandHeight <= inside.bottom(); ++band)
            rectsOfBand[static_cast<std::size_t>(band)].push_back(inside);
    }
    const Dashes dashes(phase, m_devicePixelRatio);
    std::uint8_t* const bits = target.bits();
    const auto stride = static_cast<std::size_t>(target.bytesPerLine());
    raster::parallelFor(static_cast<int>(m_bands.size()), [&](int index) {
        const std::vector<QRect>& rects = rectsOfBand[static_cast<std::size_t>(index)];
        if (rects.empty()) return;
        const int top = index * bandHeight;
        const int bottom = std::min(top + bandHeight, m_size.height());
        int left = m_size.width();
        int right = 0;
        for (const QRect& rect : rects) {
            left = std::min(left, rect.left());
            right = std::max(right, rect.right() + 1);
        }
        BandBits drawn(*this, top, bottom);
        drawn.draw(m_bands[static_cast<std::size_t>(index)], left, right, dashes);
        for (const QRect& rect : rects) {
            for (int y = std::max(rect.top(), top); y < std::min(rect.bottom() + 1, bottom); ++y)
                paintRow(drawn.line(y), drawn.casing(y), rect.left(), rect.right() + 1,
                         accent.rgb(), reinterpret_cast<const QRgb*>(base.constScanLine(y)),
                         reinterpret_cast<QRgb*>(bits + static_cast<std::size_t>(y) * stride));
        }
    });
}

QRegion MarchingAnts::region() const {
    const auto edge = [this](int tile, int tileSize, int tileCount) {
        const double points = tile * tileSize / m_devicePixelRatio;
        return static_cast<int>(tile < tileCount ? std::floor(points) : std::ceil(points));
    };
    std::vector<QRect> rects;
    for (int row = 0; row < m_tileRows; ++row) {
        const auto* const used = m_isTileUsed.data() + static_cast<std::size_t>(row) *
                                                           static_cast<std::size_t>(m_tileColumns);
        const int top = edge(row, tileHeight, m_tileRows);
        const int bottom = edge(row + 1, tileHeight, m_tileRows);
        for (int column = 0; column < m_tileColumns; ++column) {
            if (used[column] == 0) continue;
            const int first = column;
            while (column + 1 < m_tileColumns && used[column + 1] != 0) ++column;
            rects.emplace_back(QPoint(edge(first, tileWidth, m_tileColumns), top),
                               QPoint(edge(column + 1, tileWidth, m_tileColumns) - 1, bottom - 1));
        }
    }
    QRegion region;
    region.setRects(rects.data(), static_cast<int>(rects.size()));
    return region;
}

} // namespace quillabrae::canvas
