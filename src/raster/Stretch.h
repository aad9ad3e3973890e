// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/RasterImage.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillabrae::raster {

/// A nearest-neighbour stretch along one axis: what consecutive destination positions show. The
/// destination positions are `first` to `end() - 1`; position `first + i` shows source `source[i]`.
struct AxisSamples {
    int first = 0;
    std::vector<std::int32_t> source;

    int end() const { return first + static_cast<int>(source.size()); }
    bool isEmpty() const { return source.empty(); }
    /// Whether the sources are consecutive too: nothing is stretched.
    bool isShift() const;
};

/// Destination `targetStart` + i of `targetCount` shows source floor((i + 0.5) * sourceCount /
/// targetCount), exactly. Only destinations from 0 to `destinationCount` - 1 are kept.
AxisSamples stretchSamples(int sourceCount, int targetStart, int targetCount, int destinationCount);

/// The same for a target between pixel borders: it holds the destinations whose centres lie in it,
/// the one at p showing source floor((p + 0.5 - targetStart) * sourceCount / targetLength).
AxisSamples stretchSamples(int sourceCount, double targetStart, double targetLength,
                           int destinationCount);

/// Source-over of the sampled pixels, multiplied by `fraction` over 255.
void drawSamples(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                 const AxisSamples& rows, std::uint8_t fraction);

/// Replaces the destination pixels by the sampled ones.
void copySamples(RasterImage& destination, const RasterImage& source, const AxisSamples& columns,
                 const AxisSamples& rows);

} // namespace quillabrae::raster
