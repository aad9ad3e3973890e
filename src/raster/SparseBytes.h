// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"

#include <cstddef>
#include <span>

namespace quillabrae::raster {

/// A range of bytes, `end` one past its last.
struct ByteRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
    friend bool operator==(const ByteRange&, const ByteRange&) = default;
};

/// Bytes of which it is known where they are zero: everywhere outside the live ranges, which are
/// in order, not empty, and apart from one another.
struct SparseBytes {
    ByteSpan bytes;
    std::span<const ByteRange> live;

    std::size_t liveSize() const {
        std::size_t size = 0;
        for (const ByteRange& range : live) size += range.size();
        return size;
    }
};

} // namespace quillabrae::raster
