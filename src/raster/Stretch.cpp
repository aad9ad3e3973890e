// SPDX-License-Identifier: GPL-3.0-or-later
// Destination i of m shows source floor((i + 0.5) * n / m) of n.
#include "raster/Stretch.h"

#include "raster/BlendKernels.h"
#include "raster/Parallel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillabrae::raster {
namespace {

/// Work for one thread that is worth waking another for.
constexpr std::size_t pixelsPerBand = 1U << 16;

/// Calls `fn(destination, source, count)` for each row of the stretch; `source` is the row's pixels
/// in the destination's order.
template <typename Fn>
void forSampledRows(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                    const AxisSamples& rows, Fn fn) {
    if (destination.isNull() || source.isNull() || columns.isEmpty() || rows.isEmpty()) return;
    const std::size_t count = columns.source.size();
    const bool isShift = columns.isShift();
    std::uint8_t* const target = destination.mutableBytes().data();
    const auto rowsPerBand = static_cast<int>(std::max<std::size_t>(pixelsPerBand / count, 1));
    parallelForRowBands(
        static_cast<int>(rows.source.size()), rowsPerBand, [&](int first, int last) {
            std::vector<std::uint8_t> gathered(isShift ? 0 : 4 * count);
            for (int i = first; i < last; ++i) {
                const auto y = static_cast<std::size_t>(rows.first) + static_cast<std::size_t>(i);
                const std::uint8_t* sourceRow =
                    source.row(rows.source[static_cast<std::size_t>(i)]);
                if (!isShift)
                    gatherPixels(gathered.data(), sourceRow, columns.source.data(), count);
                fn(target + y * destination.stride() + 4 * static_cast<std::size_t>(columns.first),
                   isShift ? sourceRow + 4 * static_cast<std::size_t>(columns.source.front())
                           : gathered.data(),
                   count);
            }
        });
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
    if (fraction == 0) return;
    forSampledRows(destination, source, columns, rows,
                   [fraction](std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
                       sourceOverPixels(to, from, count, fraction);
                   });
}

void copySamples(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                 const AxisSamples& rows) {
    forSampledRows(destination, source, columns, rows,
                   [](std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
                       std::memcpy(to, from, 4 * count);
                   });
}

} // namespace quillabrae::raster
