// SPDX-License-Identifier: GPL-3.0-or-later
// gain = var(c) / (var(c) + epsilon); offset = (1 - gain) * mean(c)
#include "effects/GuidedSmoothing.h"

#include "effects/WeightedSums.h"
#include "raster/KernelTargets.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quillabrae::effects {
namespace {

constexpr int boxReach = 1;
constexpr std::size_t boxSize = 2 * boxReach + 1;
constexpr std::array<float, boxSize> box{1.0F, 1.0F, 1.0F};
constexpr int rowsPerBand = 32;
/// Of a row of a cell's pixels.
constexpr std::size_t cellBytes = std::size_t{4} * GuidedSmoothing::cell;
/// Below every weight that there is.
constexpr float tiny = 1e-6F;

constexpr std::size_t channels = 3;

/// Of the cells' sums: w, then w times each channel, and times its square.
enum CellPlane : std::size_t { weight = 0, colors = 1, squares = 4, cellPlanes = 7 };

/// The weighted coefficients, and the weight.
enum SumPlane : std::size_t { gains = 0, offsets = 3, sumWeight = 6, sumPlanes = 7 };

QUILLABRAE_WIDE_KERNEL
void addRow(std::uint16_t* __restrict sums, const std::uint8_t* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) sums[i] = static_cast<std::uint16_t>(sums[i] + row[i]);
}

/// `planes` are those of a row of cells, at the first cell.
QUILLABRAE_WIDE_KERNEL
void addSquares(float* planes, std::size_t stride, std::size_t count) {
    const float* __restrict const w = planes + stride * weight;
    for (std::size_t c = 0; c < channels; ++c) {
        const float* __restrict const color = planes + stride * (colors + c);
        float* __restrict const square = planes + stride * (squares + c);
        for (std::size_t i = 0; i < count; ++i)
            square[i] = color[i] * color[i] / std::max(w[i], tiny);
    }
}

/// From sums over boxes of cells to weighted coefficients.
QUILLABRAE_WIDE_KERNEL
void fitRow(float* __restrict to, const float* __restrict sums, std::size_t stride,
            std::size_t count, float epsilon) {
    const float* const weights = sums + stride * weight;
    for (std::size_t c = 0; c < channels; ++c) {
        const float* const color = sums + stride * (colors + c);
        const float* const square = sums + stride * (squares + c);
        float* const gain = to + stride * (gains + c);
        float* const offset = to + stride * (offsets + c);
        for (std::size_t i = 0; i < count; ++i) {
            const float inverse = 1.0F / std::max(weights[i], tiny);
            const float mean = color[i] * inverse;
            const float variance = std::max(square[i] * inverse - mean * mean, 0.0F);
            const float share = variance / (variance + epsilon);
            gain[i] = weights[i] * share;
            offset[i] = color[i] * (1.0F - share);
        }
    }
    std::copy_n(weights, count, to + stride * sumWeight);
}

QUILLABRAE_WIDE_KERNEL
void normalizeRow(float* __restrict to, const float* __restrict sums, std::size_t stride,
                  std::size_t count) {
    const float* const weights = sums + stride * sumWeight;
    for (std::size_t plane = 0; plane < GuidedSmoothing::planeCount; ++plane)
        for (std::size_t i = 0; i < count; ++i)
            to[stride * plane + i] = sums[stride * plane + i] / std::max(weights[i], tiny);
}

} // namespace

GuidedSmoothing::GuidedSmoothing(const raster::RasterImage& image, float epsilon)
    : m_columns(static_cast<std::size_t>((image.width() - 1) / cell + 1)),
      m_rows((image.height() - 1) / cell + 1),
      m_stride(m_columns + 2 * margin),
      m_coefficients(static_cast<std::size_t>(m_rows),
                     std::max<std::size_t>(planeCount, cellPlanes) * m_stride),
      m_sums(static_cast<std::size_t>(m_rows), sumPlanes * m_stride) {
    if (!isComplete()) return;
    raster::parallelForRowBands(m_rows, rowsPerBand,
                                [&](int first, int last) { sumCells(image, first, last); });
    raster::parallelForRowBands(m_rows, rowsPerBand,
                                [&](int first, int last) { fit(first, last, epsilon); });
    raster::parallelForRowBands(m_rows, rowsPerBand,
                                [&](int first, int last) { average(first, last); });
}

void GuidedSmoothing::repeatEdges(float* row, std::size_t planes) const {
    for (std::size_t plane = 0; plane < planes; ++plane) {
        float* const first = row + plane * m_stride + margin;
        std::fill_n(first - margin, margin, first[0]);
        std::fill_n(first + m_columns, margin, first[m_columns - 1]);
    }
}

void GuidedSmoothing::sumCells(const raster::RasterImage& image, int first, int last) {
    const auto width = static_cast<std::size_t>(image.width());
    // Of columns of pixels; those that fill up the last cell are 0.
    std::vector<std::uint16_t> sums(cellBytes * m_columns);
    for (int row = first; row < last; ++row) {
        std::ranges::fill(sums, std::uint16_t{0});
        const int end = std::min(cell * row + cell, image.height());
        for (int y = cell * row; y < end; ++y) addRow(sums.data(), image.row(y), 4 * width);
        float* const planes = m_coefficients.row(static_cast<std::size_t>(row)) + margin;
        constexpr std::array<std::size_t, 4> placeOf{colors, colors + 1, colors + 2, weight};
        for (std::size_t i = 0; i < m_columns; ++i) {
            const std::uint16_t* const pixels = sums.data() + cellBytes * i;
            for (std::size_t c = 0; c < 4; ++c) {
                const int sum = pixels[c] + pixels[4 + c] + pixels[8 + c] + pixels[12 + c];
                planes[m_stride * placeOf[c] + i] = static_cast<float>(sum) / (16.0F * 255.0F);
            }
        }
        addSquares(planes, m_stride, m_columns);
        repeatEdges(planes - margin, cellPlanes);
    }
}

void GuidedSmoothing::sumAround(const FloatRows& cells, int row, std::size_t planes, float* columns,
                                float* to) const {
    std::array<const float*, boxSize> terms{};
    for (int k = 0; k < static_cast<int>(boxSize); ++k)
        terms[static_cast<std::size_t>(k)] =
            cells.row(static_cast<std::size_t>(std::clamp(row + k - boxReach, 0, m_rows - 1)));
    addWeighted(columns, terms, box, planes * m_stride);
    // All planes at once: what runs over from one to the next falls into the margins.
    for (std::size_t k = 0; k < boxSize; ++k) terms[k] = columns + k;
    addWeighted(to + boxReach, terms, box, planes * m_stride - (boxSize - 1));
}

void GuidedSmoothing::fit(int first, int last, float epsilon) {
    std::vector<float> columns(cellPlanes * m_stride);
    std::vector<float> around(cellPlanes * m_stride);
    for (int row = first; row < last; ++row) {
        sumAround(m_coefficients, row, cellPlanes, columns.data(), around.data());
        float* const to = m_sums.row(static_cast<std::size_t>(row));
        fitRow(to + margin, around.data() + margin, m_stride, m_columns, epsilon);
        repeatEdges(to, sumPlanes);
    }
}

void GuidedSmoothing::average(int first, int last) {
    std::vector<float> columns(sumPlanes * m_stride);
    std::vector<float> around(sumPlanes * m_stride);
    for (int row = first; row < last; ++row) {
        sumAround(m_sums, row, sumPlanes, columns.data(), around.data());
        float* const to = m_coefficients.row(static_cast<std::size_t>(row));
        normalizeRow(to + margin, around.data() + margin, m_stride, m_columns);
        repeatEdges(to, planeCount);
    }
}

void GuidedSmoothing::interpolate(int row, float* to) const {
    const int doubled = 2 * row - (cell - 1);
    const int above = doubled < 0 ? -1 : doubled / (2 * cell);
    const float below = static_cast<float>(doubled - 2 * cell * above) / (2.0F * cell);
    const auto cellRow = [&](int index) {
        return m_coefficients.row(static_cast<std::size_t>(std::clamp(index, 0, m_rows - 1)));
    };
    addWeighted(to, std::array{cellRow(above), cellRow(above + 1)}, std::array{1.0F - below, below},
                planeCount * m_stride);
}

} // namespace quillabrae::effects
