// SPDX-License-Identifier: GPL-3.0-or-later
// cell = 255 where alpha > 25, else 0; add = a | b; subtract = a & ~b; a white pixel of alpha v,
// premultiplied, is (v, v, v, v).
#include "raster/MaskKernels.h"

#include "raster/KernelTargets.h"

#include <cstring>

namespace quillabrae::raster {

QUILLABRAE_WIDE_KERNEL
void selectedCells(const std::uint8_t* pixels, std::uint8_t* cells, std::size_t count) {
    constexpr std::uint32_t limit = greatestUnselectedAlpha;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel;
        std::memcpy(&pixel, pixels + 4 * i, 4);
        cells[i] = static_cast<std::uint8_t>(0U - static_cast<std::uint32_t>(pixel >> 24 > limit));
    }
}

QUILLABRAE_WIDE_KERNEL
void addCells(std::uint8_t* cells, const std::uint8_t* other, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = static_cast<std::uint8_t>(cells[i] | other[i]);
}

QUILLABRAE_WIDE_KERNEL
void subtractCells(std::uint8_t* cells, const std::uint8_t* other, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = static_cast<std::uint8_t>(cells[i] & ~other[i]);
}

QUILLABRAE_WIDE_KERNEL
void whitePixels(const std::uint8_t* alpha, std::uint8_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = alpha[i] * 0x01010101U;
        std::memcpy(pixels + 4 * i, &pixel, 4);
    }
}

} // namespace quillabrae::raster
