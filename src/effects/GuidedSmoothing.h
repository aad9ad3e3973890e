// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/FloatRows.h"
#include "raster/RasterImage.h"

#include <cstddef>

namespace quillabrae::effects {

/// A picture's colours smoothed within regions and not across edges: by the guided filter with each
/// channel as its own guide (He, Sun and Tang, Guided Image Filtering, 2013), whose coefficients
/// are made at a quarter of the resolution (He and Sun, Fast Guided Filter, 2015).
///
/// All colours are straight, from 0 to 1. The picture is cut into cells of 4 by 4 pixels, fewer at
/// the right and the bottom. Of a cell, w is the sum of the alphas over 16, and c the mean of a
/// channel by alpha. Over the 3 by 3 cells around each, those beyond the edge being the cells at
/// it, and weighted by w:
///
///   gain = var(c) / (var(c) + epsilon);  offset = (1 - gain) mean(c)
///
/// Gain and offset are averaged over 3 by 3 cells in the same manner, weighted by the sums of w.
/// Between the middles of cells they are interpolated linearly. The smoothed channel of a pixel is
/// gain C + offset.
class GuidedSmoothing {
public:
    /// `epsilon` is the variance below which a region counts as flat. Takes as much memory
    /// as the picture.
    GuidedSmoothing(const raster::RasterImage& image, float epsilon);

    /// False where there was no memory.
    bool isComplete() const { return !m_coefficients.isNull() && !m_sums.isNull(); }

    /// What a row holds for each cell, plane after plane.
    enum Plane : std::size_t {
        redGain,
        greenGain,
        blueGain,
        redOffset,
        greenOffset,
        blueOffset,
        planeCount
    };
    /// From one plane to the next. At least a cell before a plane and six after it, those at the
    /// edge repeat.
    std::size_t stride() const { return m_stride; }
    static constexpr std::size_t margin = 8;

    /// The planes of a row of pixels, interpolated between the cells above and below it. `to` has
    /// room for `planeCount * stride()`; the first cell stands at `margin`.
    void interpolate(int row, float* to) const;

    static constexpr int cell = 4;

private:
    void sumCells(const raster::RasterImage& image, int first, int last);
    void fit(int first, int last, float epsilon);
    void average(int first, int last);
    void sumAround(const FloatRows& cells, int row, std::size_t planes, float* columns,
                   float* to) const;
    void repeatEdges(float* row, std::size_t planes) const;

    std::size_t m_columns;
    int m_rows;
    std::size_t m_stride;
    /// The cells' sums at first, in the end the coefficients.
    FloatRows m_coefficients;
    /// Sums of weighted coefficients.
    FloatRows m_sums;
};

} // namespace quillabrae::effects
