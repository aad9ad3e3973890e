// SPDX-License-Identifier: GPL-3.0-or-later
// Destination i of m shows source floor((i + 0.5) * n / m) of n.
#include "raster/Stretch.h"

#include "raster/BlendKernels.h"
#include "raster/GatherKernel.h"
#include "raster/Parallel.h"
#include "raster/RowBands.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

/// The rows of a stretch: what each destination row shows, for the functions
/// that write it.
class SampledRows {
public:
    SampledRows(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                const AxisSamples& rows)
        : m_source(source),
          m_columns(columns),
          m_rows(rows),
          m_isShift(columns.isShift()),
          m_gather(m_isShift ? std::span<const std::int32_t>() : columns.source, source.width()),
          m_target(destination.mutableBytes().data() + 4 * static_cast<std::size_t>(columns.first)),
          m_stride(destination.stride()) {}

    std::size_t pixelCount() const { return m_columns.source.size(); }
    bool isShift() const { return m_isShift; }
    bool repeatsLast(int i) const { return sourceRow(i) == sourceRow(i - 1); }

    std::uint8_t* target(int i) const {
        return m_target +
               (static_cast<std::size_t>(m_rows.first) + static_cast<std::size_t>(i)) * m_stride;
    }
    /// The row's pixels as they lie in the source; those of a shift are what it
    /// shows.
    const std::uint8_t* shifted(int i) const {
        return m_source.row(sourceRow(i)) + 4 * static_cast<std::size_t>(m_columns.source.front());
    }
    void gather(int i, std::uint8_t* to) const { m_gather(m_source.row(sourceRow(i)), to); }

    /// Calls `fn(first, last)` for bands of rows.
    template <typename Fn>
    void forBands(Fn fn) const {
        const auto count = static_cast<int>(m_rows.source.size());
        parallelForRowBands(count, rowsPerBand(static_cast<int>(pixelCount())), fn);
    }

private:
    int sourceRow(int i) const { return m_rows.source[static_cast<std::size_t>(i)]; }

    const RasterImage& m_source;
    const AxisSamples& m_columns;
    const AxisSamples& m_rows;
    bool m_isShift;
    RowGather m_gather;
    std::uint8_t* m_target;
    std::size_t m_stride;
};

bool isNothingSampled(const RasterImage& destination, const RasterImage& source,
                      const AxisSamples& columns, const AxisSamples& rows) {
    return destination.isNull() || source.isNull() || columns.isEmpty() || rows.isEmpty();
}

} // namespace

bool AxisSamples::isShift() const {
    return source.empty() ||
           source.back() - source.front() == static_cast<std::int32_t>(source.size()) - 1;
}

AxisSamples stretchSamples(int sourceCount, int targetStart, int targetCount,
                           int destinationCount) {
    AxisSamples samples;
    if (sourceCount < 1 || targetCount < 1) return samples;
    const std::int64_t start = targetStart;
    const std::int64_t first = std::max<std::int64_t>(start, 0);
    const std::int64_t end = std::min<std::int64_t>(start + targetCount, destinationCount);
    if (first >= end) return samples;
    samples.first = static_cast<int>(first);
    samples.source.reserve(static_cast<std::size_t>(end - first));
    for (std::int64_t position = first; position < end; ++position)
        samples.source.push_back(static_cast<std::int32_t>(
            (2 * (position - start) + 1) * sourceCount / (2 * std::int64_t{targetCount})));
    return samples;
}

AxisSamples stretchSamples(int sourceCount, double targetStart, double targetLength,
                           int destinationCount) {
    AxisSamples samples;
    if (sourceCount < 1 || !(targetLength > 0.0) || !std::isfinite(targetStart + targetLength))
        return samples;
    const double limit = destinationCount;
    const double first = std::clamp(std::ceil(targetStart - 0.5), 0.0, limit);
    const double end = std::clamp(std::ceil(targetStart + targetLength - 0.5), 0.0, limit);
    if (first >= end) return samples;
    samples.first = static_cast<int>(first);
    samples.source.reserve(static_cast<std::size_t>(end - first));
    const double last = sourceCount - 1;
    for (double position = first; position < end; ++position) {
        const double source =
            std::floor((position + 0.5 - targetStart) * sourceCount / targetLength);
        samples.source.push_back(static_cast<std::int32_t>(std::clamp(source, 0.0, last)));
    }
    return samples;
}

void drawSamples(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                 const AxisSamples& rows, std::uint8_t fraction) {
    if (fraction == 0 || isNothingSampled(destination, source, columns, rows)) return;
    const SampledRows sampled(destination, source, columns, rows);
    const std::size_t count = sampled.pixelCount();
    sampled.forBands([&](int first, int last) {
        std::vector<std::uint8_t> gathered(sampled.isShift() ? 0 : 4 * count);
        for (int i = first; i < last; ++i) {
            if (sampled.isShift()) {
                sourceOverPixels(sampled.target(i), sampled.shifted(i), count, fraction);
                continue;
            }
            if (i == first || !sampled.repeatsLast(i)) sampled.gather(i, gathered.data());
            sourceOverPixels(sampled.target(i), gathered.data(), count, fraction);
        }
    });
}

void copySamples(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                 const AxisSamples& rows) {
    if (isNothingSampled(destination, source, columns, rows)) return;
    const SampledRows sampled(destination, source, columns, rows);
    sampled.forBands([&](int first, int last) {
        for (int i = first; i < last; ++i) {
            if (sampled.isShift())
                std::memcpy(sampled.target(i), sampled.shifted(i), 4 * sampled.pixelCount());
            else if (i != first && sampled.repeatsLast(i))
                std::memcpy(sampled.target(i), sampled.target(i - 1), 4 * sampled.pixelCount());
            else
                sampled.gather(i, sampled.target(i));
        }
    });
}

} // namespace quillabrae::raster
