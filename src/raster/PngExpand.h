// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PngChunks.h"

#include <array>
#include <cstdint>
#include <optional>

namespace quillabrae::raster {

/// Turns unfiltered rows of any colour type and depth into straight RGBA8.
///
/// Grey goes to all three components, depths below 8 are stretched to 0...255, of 16 bits the upper
/// 8 are kept; a colour named by tRNS is transparent, compared at full depth. A palette index
/// without an entry is opaque black.
class PngRowExpander {
public:
    /// Nothing for a palette image without a palette or with transparency that cannot be.
    static std::optional<PngRowExpander> forLayout(const PngLayout& layout);

    /// Writes `pixelCount` pixels to `rgba`.
    void expand(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;

private:
    explicit PngRowExpander(const PngHeader& header) : m_header(header) {}

    bool enterPalette(ByteSpan palette, ByteSpan transparency);
    bool enterTransparentColor(ByteSpan transparency);
    void expandIndexed(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;
    void expandGray16(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;
    void expandGrayAlpha(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;
    void expandRgb(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;
    void expandRgba(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) const;

    PngHeader m_header;
    /// What a sample of at most 8 bits stands for: palette entries or greys, as pixels in memory.
    std::array<std::array<std::uint8_t, 4>, 256> m_table{};
    std::optional<std::array<std::uint16_t, 3>> m_transparentColor;
};

} // namespace quillabrae::raster
