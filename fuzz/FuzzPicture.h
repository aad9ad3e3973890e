// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "codecs/Codecs.h"

#include <cstdlib>

namespace quillabrae::fuzz {

/// Holds what a reader says to be within the limits, and takes its pixels.
class CheckedPicture final : public codecs::PictureOutput {
public:
    std::span<std::uint8_t> begin(const codecs::PictureHeader& header) override {
        // Larger ones are only slow.
        constexpr std::int64_t enoughPixels = std::int64_t{1} << 24U;
        codecs::checkSize(header.width, header.height);
        const std::int64_t pixels = std::int64_t{header.width} * header.height;
        if (pixels > enoughPixels) throw codecs::CodecError("too slow");
        if (!m_pixels.empty()) std::abort();
        m_header = header;
        m_pixels.resize(static_cast<std::size_t>(pixels) * 4);
        return m_pixels;
    }

    const codecs::PictureHeader& header() const { return m_header; }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

private:
    codecs::PictureHeader m_header;
    std::vector<std::uint8_t> m_pixels;
};

} // namespace quillabrae::fuzz
