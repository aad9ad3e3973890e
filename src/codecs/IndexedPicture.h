// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "codecs/Codecs.h"

#include <array>

namespace quillabrae::codecs {

constexpr int paletteSize = 256;

struct PaletteColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

/// A picture as numbers of the colours of a palette, rows without padding.
struct IndexedPicture {
    std::array<PaletteColor, paletteSize> palette{};
    std::vector<std::uint8_t> pixels;
    int width = 0;

    const std::uint8_t* row(int y) const {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// With the picture's own colours where it has no more than a palette holds; otherwise with colours
/// that stand for them, dithered. Throws CodecError.
IndexedPicture indexedPicture(const OpaquePicture& picture, const Progress& progress);

} // namespace quillabrae::codecs
