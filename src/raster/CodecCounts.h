// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace quillabrae::raster {

/// How often the PNG codec has worked since the program began, on all threads. For tests that hold
/// an edit to the work that it needs.
struct CodecCounts {
    /// Files that were read, whether they turned out readable or not.
    std::size_t decodedFiles = 0;
    std::size_t encodedFiles = 0;
    /// Bands of those that were compressed, not copied from the file before.
    std::size_t compressedBands = 0;
};

CodecCounts codecCounts();

namespace detail {
void countDecodedFile();
void countEncodedFile();
void countCompressedBand();
} // namespace detail

} // namespace quillabrae::raster
