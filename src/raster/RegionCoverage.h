// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/ConvexRegion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillabrae::raster {

/// Pixels first to end - 1 of a row, all with one alpha or each with its own.
struct CoverageRun {
    int first = 0;
    int end = 0;
    /// One byte for each pixel; null where `flatAlpha` is that of all.
    const std::uint8_t* alpha = nullptr;
    std::uint8_t flatAlpha = 0;
};

/// How much of each pixel lies in an outer convex region and not in an inner one, row by row from
/// the top down: the exact area, times an alpha from 0 to 1.
class RegionCoverage {
public:
    /// For the pixels from `left` to `right` - 1. `outer` must hold `inner`, which may be empty;
    /// both must live on.
    RegionCoverage(const ConvexRegion& outer, const ConvexRegion& inner, double alpha, int left,
                   int right);

    /// The runs of a row that hold pixels with an alpha above 0, from left to right, valid until
    /// the next call. Rows must be asked for in order.
    std::span<const CoverageRun> row(int y);

private:
    /// One border, walked from the top down.
    struct Border {
        const std::vector<model::CanvasPoint>* points = nullptr;
        /// What lies to the right of it counts with this sign.
        float sign = 1.0F;
        std::size_t next = 1;
    };
    /// Columns whose areas are not yet summed up.
    struct Touched {
        int first;
        int end;
    };

    void addBorder(Border& border, double top, double bottom, Touched& touched);
    void addLine(double x0, double x1, double height, float sign, Touched& touched);
    void addInside(double x0, double x1, double height, float sign, Touched& touched);
    void appendFlat(int first, int end, float area);
    float appendOwn(Touched touched, float area);

    int m_left;
    int m_width;
    float m_alpha;
    std::vector<Border> m_borders;
    /// What each column's area has more than that of the column before.
    std::vector<float> m_steps;
    std::vector<std::uint8_t> m_row;
    std::vector<Touched> m_touched;
    /// Four borders with a flat run before, between and after them.
    std::array<CoverageRun, 9> m_runs;
    std::size_t m_runCount = 0;
};

} // namespace quillabrae::raster
