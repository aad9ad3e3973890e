// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace quillabrae::effects {

/// Whether every pixel of these rows is opaque; `last` is one past the last of them, and rows
/// beyond the picture do not count.
bool isOpaque(const raster::RasterImage& image, int first, int last);

/// The luma of a picture's rows under Gaussians, one row after the other. Pixels count by their
/// alpha, so that what is transparent does not darken what is not:
///
///   result = Gaussian(weight * luma) / Gaussian(weight)
///
/// Beyond the edge are the pixels at it.
class SmoothedLuma {
public:
    /// Writes a row of the picture: `weighted`, each pixel's luma times its weight, and `weights`,
    /// null where all weights are 1. Each has room for the row in groups of eight.
    using Source = std::function<void(int row, float* weighted, float* weights)>;

    enum class Weights { one, varying };

    /// For calls of `moveTo` from `firstRow` on. A smoothing for each of the deviations.
    SmoothedLuma(const raster::RasterImage& image, std::span<const double> deviations,
                 Weights weights, int firstRow, Source source);

    /// How many rows around its own a row depends on, to either side.
    static int reachOf(std::span<const double> deviations);

    /// Makes the smoothings of one row; rows are asked for in their order, none left out.
    void moveTo(int row);
    /// The luma of the row under the Gaussian of one of the deviations, readable in groups of
    /// eight; 0 where nothing counts.
    const float* row(std::size_t deviation) const { return m_passes[deviation].result.data(); }

private:
    /// One Gaussian.
    struct Pass {
        std::vector<float> weights;
        /// The latest rows under it, along the row only.
        std::vector<float> kept;
        std::vector<float> result;
    };

    std::size_t keptRows() const { return 2 * m_reach + 1; }
    float* keptRow(Pass& pass, int row) const;
    void take(int row);
    void sumColumns(Pass& pass, int row, std::size_t plane, float* to);

    std::size_t paddedStride() const { return m_width + 2 * m_reach + roomBeyond; }

    /// Enough to fill up a group of eight.
    static constexpr std::size_t roomBeyond = 8;

    std::size_t m_width;
    int m_height;
    std::size_t m_reach;
    std::size_t m_planes;
    Source m_source;
    std::vector<Pass> m_passes;
    /// The row that came last with its edges repeated, plane after plane.
    std::vector<float> m_padded;
    std::vector<float> m_weightSums;
    int m_next;
};

} // namespace quillabrae::effects
