// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngExpand.h"

#include "raster/KernelTargets.h"

#include <cstring>

namespace quillabrae::raster {
namespace {

std::uint16_t readBigEndian16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>((bytes[0] << 8) | bytes[1]);
}

QUILLABRAE_WIDE_KERNEL
void expandOpaqueRgb(const std::uint8_t* row, std::uint8_t* rgba, std::size_t pixelCount) {
    std::size_t i = 0;
    // Reads a byte beyond the pixel, so the last one goes by itself.
    for (; i + 1 < pixelCount; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, row + 3 * i, 4);
        pixel |= 0xff000000U;
        std::memcpy(rgba + 4 * i, &pixel, 4);
    }
    for (; i < pixelCount; ++i) {
        std::memcpy(rgba + 4 * i, row + 3 * i, 3);
        rgba[4 * i + 3] = 0xff;
    }
}

} // namespace

std::optional<PngRowExpander> PngRowExpander::forLayout(const PngLayout& layout) {
    PngRowExpander expander(layout.header);
    const PngColorType colorType = layout.header.colorType;
    if (colorType == PngColorType::palette) {
        if (!expander.enterPalette(layout.palette, layout.transparency)) return std::nullopt;
        return expander;
    }
    if ((colorType == PngColorType::gray || colorType == PngColorType::rgb) &&
        !expander.enterTransparentColor(layout.transparency))
        return std::nullopt;
    if (colorType != PngColorType::gray || layout.header.bitDepth > 8) return expander;
    const unsigned greatest = (1U << layout.header.bitDepth) - 1U;
    for (unsigned sample = 0; sample <= greatest; ++sample) {
        const auto level = static_cast<std::uint8_t>(sample * 255U / greatest);
        const bool isTransparent =
            expander.m_transparentColor && (*expander.m_transparentColor)[0] == sample;
        expander.m_table[sample] = {level, level, level,
                                    static_cast<std::uint8_t>(isTransparent ? 0 : 0xff)};
    }
    return expander;
}

bool PngRowExpander::enterPalette(ByteSpan palette, ByteSpan transparency) {
    const std::size_t count = palette.size() / 3;
    if (count == 0 || transparency.size() > count) return false;
    for (std::size_t i = 0; i < m_table.size(); ++i) {
        if (i < count) std::memcpy(m_table[i].data(), palette.data() + 3 * i, 3);
        m_table[i][3] = i < transparency.size() ? transparency[i] : std::uint8_t{0xff};
    }
    return true;
}

bool PngRowExpander::enterTransparentColor(ByteSpan transparency) {
    if (transparency.empty()) return true;
    const std::size_t components = m_header.colorType == PngColorType::rgb ? 3 : 1;
    if (transparency.size() != 2 * components) return false;
    const unsigned mask = (1U << m_header.bitDepth) - 1U;
    std::array<std::uint16_t, 3> color{};
    for (std::size_t i = 0; i < components; ++i)
        color[i] = static_cast<std::uint16_t>(readBigEndian16(transparency.data() + 2 * i) & mask);
    m_transparentColor = color;
    return true;
}

void PngRowExpander::expand(const std::uint8_t* row, std::uint8_t* rgba,
                            std::size_t pixelCount) const {
    switch (m_header.colorType) {
        case PngColorType::gray:
            if (m_header.bitDepth == 16) return expandGray16(row, rgba, pixelCount);
            return expandIndexed(row, rgba, pixelCount);
        case PngColorType::palette:
            return expandIndexed(row, rgba, pixelCount);
        case PngColorType::grayAlpha:
            return expandGrayAlpha(row, rgba, pixelCount);
        case PngColorType::rgb:
            return expandRgb(row, rgba, pixelCount);
        case PngColorType::rgba:
            return expandRgba(row, rgba, pixelCount);
    }
}

void PngRowExpander::expandIndexed(const std::uint8_t* row, std::uint8_t* rgba,
                                   std::size_t pixelCount) const {
    if (m_header.bitDepth == 8) {
        for (std::size_t i = 0; i < pixelCount; ++i)
            std::memcpy(rgba + 4 * i, m_table[row[i]].data(), 4);
        return;
    }
    const unsigned depth = m_header.bitDepth;
    const unsigned mask = (1U << depth) - 1U;
    const unsigned samplesPerByte = 8 / depth;
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const unsigned place = static_cast<unsigned>(i % samplesPerByte);
        const unsigned shift = 8 - depth * (place + 1);
        const unsigned sample = (static_cast<unsigned>(row[i / samplesPerByte]) >> shift) & mask;
        std::memcpy(rgba + 4 * i, m_table[sample].data(), 4);
    }
}

void PngRowExpander::expandGray16(const std::uint8_t* row, std::uint8_t* rgba,
                                  std::size_t pixelCount) const {
    for (std::size_t i = 0; i < pixelCount; ++i, row += 2, rgba += 4) {
        const bool isTransparent =
            m_transparentColor && (*m_transparentColor)[0] == readBigEndian16(row);
        rgba[0] = rgba[1] = rgba[2] = row[0];
        rgba[3] = isTransparent ? 0 : 0xff;
    }
}

void PngRowExpander::expandGrayAlpha(const std::uint8_t* row, std::uint8_t* rgba,
                                     std::size_t pixelCount) const {
    const std::size_t sampleSize = m_header.bitDepth / 8;
    for (std::size_t i = 0; i < pixelCount; ++i, row += 2 * sampleSize, rgba += 4) {
        rgba[0] = rgba[1] = rgba[2] = row[0];
        rgba[3] = row[sampleSize];
    }
}

void PngRowExpander::expandRgb(const std::uint8_t* row, std::uint8_t* rgba,
                               std::size_t pixelCount) const {
    if (m_header.bitDepth == 8 && !m_transparentColor)
        return expandOpaqueRgb(row, rgba, pixelCount);
    const std::size_t size = m_header.bitDepth / 8;
    for (std::size_t i = 0; i < pixelCount; ++i, row += 3 * size, rgba += 4) {
        bool isTransparent = m_transparentColor.has_value();
        for (std::size_t c = 0; c < 3; ++c) {
            const std::uint8_t* sample = row + c * size;
            const std::uint16_t value = size == 2 ? readBigEndian16(sample) : *sample;
            isTransparent = isTransparent && value == (*m_transparentColor)[c];
            rgba[c] = sample[0];
        }
        rgba[3] = isTransparent ? 0 : 0xff;
    }
}

void PngRowExpander::expandRgba(const std::uint8_t* row, std::uint8_t* rgba,
                                std::size_t pixelCount) const {
    if (m_header.bitDepth == 8) {
        std::memcpy(rgba, row, 4 * pixelCount);
        return;
    }
    for (std::size_t i = 0; i < 4 * pixelCount; ++i) rgba[i] = row[2 * i];
}

} // namespace quillabrae::raster
