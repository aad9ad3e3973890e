// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PngBytes.h"
#include "raster/RasterImage.h"

#include <cstddef>
#include <deque>
#include <map>
#include <tuple>
#include <vector>

/// The outlines of selection masks, for the marching ants.
namespace quillabrae::canvas {

/// A straight piece of the border between pixels that are in and pixels that are out, in mask
/// pixels.
struct SelectionMaskOutlineSegment {
    int startX = 0;
    int startY = 0;
    int endX = 0;
    int endY = 0;

    friend bool operator==(const SelectionMaskOutlineSegment&,
                           const SelectionMaskOutlineSegment&) = default;
};

/// The outline of a mask of that size; 0 by 0 where there is none. The segments run right or down
/// and are not joined.
struct SelectionMaskOutlinePlan {
    int width = 0;
    int height = 0;
    std::vector<SelectionMaskOutlineSegment> segments;
};

/// The border of the pixels with an alpha above a tenth.
SelectionMaskOutlinePlan maskOutline(const raster::RasterImage& mask);

/// Keeps the outlines of the latest masks, so that a selection that moves is traced once. The one
/// that came first goes first, however often it is asked for.
class SelectionMaskOutlineCache {
public:
    static constexpr std::size_t maximumOutlineCount = 24;

    /// Valid until the next call. A mask that does not decode has the empty outline.
    const SelectionMaskOutlinePlan& outline(const model::PngBytes& data);
    std::size_t count() const { return m_outlines.size(); }

private:
    struct Key {
        std::size_t byteCount = 0;
        std::size_t dataHash = 0;

        friend bool operator<(const Key& a, const Key& b) {
            return std::tie(a.byteCount, a.dataHash) < std::tie(b.byteCount, b.dataHash);
        }
    };

    void trimCacheIfNeeded();

    std::map<Key, SelectionMaskOutlinePlan> m_outlines;
    std::deque<Key> m_accessOrder;
};

} // namespace quillabrae::canvas
