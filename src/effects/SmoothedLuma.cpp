// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/SmoothedLuma.h"

#include "effects/GaussianWeights.h"
#include "effects/WeightedSums.h"
#include "raster/KernelTargets.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace quillabrae::effects {
namespace {

QUILLABRAE_WIDE_KERNEL
bool isOpaqueRow(const std::uint8_t* pixels, std::size_t count) {
    std::uint32_t all = 0xffffffffU;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, pixels + 4 * i, sizeof pixel);
        all &= pixel;
    }
    return (all >> 24) == 255;
}

QUILLABRAE_WIDE_KERNEL
void divide(float* __restrict values, const float* __restrict divisors, std::size_t count) {
    // Where there is no weight there is no value either.
    for (std::size_t i = 0; i < count; ++i) values[i] /= std::max(divisors[i], 1e-6F);
}

} // namespace

bool isOpaque(const raster::RasterImage& image, int first, int last) {
    const int end = std::min(last, image.height());
    for (int y = std::max(first, 0); y < end; ++y)
        if (!isOpaqueRow(image.row(y), static_cast<std::size_t>(image.width()))) return false;
    return true;
}

SmoothedLuma::SmoothedLuma(const raster::RasterImage& image, std::span<const double> deviations,
                           Weights weights, int firstRow, Source source)
    : m_width(static_cast<std::size_t>(image.width())),
      m_height(image.height()),
      m_reach(static_cast<std::size_t>(reachOf(deviations))),
      m_planes(weights == Weights::one ? 1 : 2),
      m_source(std::move(source)),
      m_padded(m_planes * paddedStride()),
      m_weightSums(m_planes == 1 ? 0 : m_width),
      m_next(std::max(firstRow - static_cast<int>(m_reach), 0)) {
    for (const double deviation : deviations)
        m_passes.push_back({gaussianWeights(deviation),
                            std::vector<float>(keptRows() * m_planes * m_width),
                            std::vector<float>(m_width + roomBeyond)});
}

int SmoothedLuma::reachOf(std::span<const double> deviations) {
    return static_cast<int>(gaussianWeights(std::ranges::max(deviations)).size() / 2);
}

float* SmoothedLuma::keptRow(Pass& pass, int row) const {
    return pass.kept.data() + static_cast<std::size_t>(row) % keptRows() * m_planes * m_width;
}

void SmoothedLuma::take(int row) {
    const std::size_t stride = paddedStride();
    float* const first = m_padded.data() + m_reach;
    m_source(row, first, m_planes == 1 ? nullptr : first + stride);
    for (std::size_t plane = 0; plane < m_planes; ++plane) {
        float* const values = first + plane * stride;
        std::fill_n(values - m_reach, m_reach, values[0]);
        std::fill_n(values + m_width, m_reach, values[m_width - 1]);
        for (Pass& pass : m_passes) {
            const std::size_t reach = pass.weights.size() / 2;
            std::vector<const float*> terms;
            for (std::size_t k = 0; k < pass.weights.size(); ++k)
                terms.push_back(values - reach + k);
            addWeighted(keptRow(pass, row) + plane * m_width, terms, pass.weights, m_width);
        }
    }
}

void SmoothedLuma::sumColumns(Pass& pass, int row, std::size_t plane, float* to) {
    const int reach = static_cast<int>(pass.weights.size() / 2);
    std::vector<const float*> terms;
    for (int y = row - reach; y <= row + reach; ++y)
        terms.push_back(keptRow(pass, std::clamp(y, 0, m_height - 1)) + plane * m_width);
    addWeighted(to, terms, pass.weights, m_width);
}

void SmoothedLuma::moveTo(int row) {
    const int last = std::min(row + static_cast<int>(m_reach), m_height - 1);
    for (; m_next <= last; ++m_next) take(m_next);
    for (Pass& pass : m_passes) {
        sumColumns(pass, row, 0, pass.result.data());
        if (m_planes == 1) continue;
        sumColumns(pass, row, 1, m_weightSums.data());
        divide(pass.result.data(), m_weightSums.data(), m_width);
    }
}

} // namespace quillabrae::effects
