// SPDX-License-Identifier: GPL-3.0-or-later
// A region is a set of runs of matching pixels, one row each, joined where they touch from row to
// row. Whether pixels match is found a band of rows at a time, when the walk first gets there.
#include "raster/SimilarRegion.h"

#include "raster/AlphaKernels.h"
#include "raster/Parallel.h"
#include "raster/SimilarPixels.h"

#include <algorithm>
#include <array>
#include <stack>
#include <vector>

namespace quillabrae::raster {
namespace {

PixelColor straightColorAt(const RasterImage& image, QPoint at) {
    std::array<std::uint8_t, 4> straight{};
    unpremultiplyPixels(image.row(at.y()) + 4 * static_cast<std::size_t>(at.x()), straight.data(),
                        1);
    return {straight[0], straight[1], straight[2], straight[3]};
}

/// The matching pixels that the walk has not taken yet.
class OpenPixels {
public:
    OpenPixels(const RasterImage& image, const SimilarPixels& similar)
        : m_image(image),
          m_similar(similar),
          m_bits(image.width(), image.height()),
          m_rowsPerBand(std::max(pixelsPerBand / image.width(), 1)),
          m_isKnown(static_cast<std::size_t>(image.height() / m_rowsPerBand) + 1) {}

    std::span<std::uint64_t> row(int y) {
        const int band = y / m_rowsPerBand;
        if (!m_isKnown[static_cast<std::size_t>(band)]) find(band);
        return m_bits.row(y);
    }

private:
    static constexpr int pixelsPerBand = 1 << 20;
    static constexpr int pixelsPerTask = 1 << 16;

    void find(int band) {
        const int first = band * m_rowsPerBand;
        const int rows = std::min(m_rowsPerBand, m_image.height() - first);
        const int rowsPerTask = std::max(pixelsPerTask / m_image.width(), 1);
        parallelForRowBands(rows, rowsPerTask, [&](int from, int to) {
            for (int y = first + from; y < first + to; ++y)
                m_similar.writeBits(m_image.row(y), static_cast<std::size_t>(m_image.width()),
                                    m_bits.row(y).data());
        });
        m_isKnown[static_cast<std::size_t>(band)] = true;
    }

    const RasterImage& m_image;
    const SimilarPixels& m_similar;
    BitRows m_bits;
    int m_rowsPerBand;
    std::vector<bool> m_isKnown;
};

/// A run that belongs to the region and whose neighbours have still to be looked at. Six bytes, and
/// two runs of a row never touch: all of them take less room than the picture.
struct PendingRun {
    std::uint16_t y;
    std::uint16_t first;
    std::uint16_t end;
};

class Walk {
public:
    Walk(OpenPixels& open, BitRows& selected, int height)
        : m_open(open), m_selected(selected), m_height(height) {}

    /// Takes what is reached from `seed`, an open pixel, and returns its bounds.
    QRect takeFrom(QPoint seed) {
        m_bounds = QRect(seed, seed);
        take(seed.y(), {seed.x(), seed.x() + 1});
        while (!m_pending.empty()) {
            const PendingRun run = m_pending.top();
            m_pending.pop();
            if (run.y > 0) take(run.y - 1, {run.first, run.end});
            if (run.y + 1 < m_height) take(run.y + 1, {run.first, run.end});
        }
        return m_bounds;
    }

private:
    /// Takes the open runs of row `y` that have a pixel in `within`.
    void take(int y, BitRun within) {
        const std::span<std::uint64_t> open = m_open.row(y);
        while (within.first < within.end) {
            const BitRun run = runOfOnes(open, within.first, within.end);
            if (run.isEmpty()) return;
            moveRun(open, m_selected.row(y), run);
            m_pending.push({static_cast<std::uint16_t>(y), static_cast<std::uint16_t>(run.first),
                            static_cast<std::uint16_t>(run.end)});
            m_bounds.setCoords(std::min(m_bounds.left(), run.first), std::min(m_bounds.top(), y),
                               std::max(m_bounds.right(), run.end - 1),
                               std::max(m_bounds.bottom(), y));
            within.first = run.end;
        }
    }

    OpenPixels& m_open;
    BitRows& m_selected;
    int m_height;
    std::stack<PendingRun> m_pending;
    QRect m_bounds;
};

} // namespace

SimilarRegion::SimilarRegion(const RasterImage& image, QPoint seed, double matchPercentage)
    : m_selected(image.width(), image.height()) {
    const SimilarPixels similar(straightColorAt(image, seed), matchPercentage);
    OpenPixels open(image, similar);
    m_bounds = Walk(open, m_selected, image.height()).takeFrom(seed);
}

} // namespace quillabrae::raster
