// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// How the editor and `quillabrae-codec` understand each other. The program is started with a verb
/// and its numbers as arguments; its input is a file open as descriptor 3, its output one open as
/// descriptor 4. It ends with status 0, or the output is worth nothing. To a file open as
/// descriptor 5 it writes a byte for each hundredth of the work that is done, where it can tell.
///
/// | verb | input | output |
/// |---|---|---|
/// | `write-heic`, `write-webp`, `write-jpeg2000` WIDTH HEIGHT QUALITY | pixels | file |
/// | `write-gif` WIDTH HEIGHT | pixels | file |
/// | `read-heif`, `read-jpeg2000` | file | `PictureRecord`, pixels, ICC profile |
/// | `svg-size` | file | two doubles |
/// | `draw-svg` WIDTH HEIGHT | file | as for reading |
///
/// A picture beyond the limits that was to be read has no output at all.
namespace quillabrae::codecs {

constexpr int inputDescriptor = 3;
constexpr int outputDescriptor = 4;
constexpr int progressDescriptor = 5;

struct PictureRecord {
    std::int32_t width;
    std::int32_t height;
    /// An `Alpha` and a `Colors`.
    std::uint32_t alpha;
    std::uint32_t colors;
    std::uint64_t profileSize;
};

} // namespace quillabrae::codecs
