// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PixelMemory.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

/// What becomes of freed pixel memory, for the tests that look at it.
namespace quillabrae::raster {

/// Whether freed blocks are kept here, as `PixelMemory` does where it can.
inline bool isMemoryKept() {
    constexpr std::size_t size = std::size_t{4} * 1024 * 1024;
    std::uint8_t* const pixels = allocatePixels(size);
    freePixels(pixels, size, 1);
    std::uint8_t* const again = takeBackPixels(1, size);
    if (again) freePixels(again, size);
    releaseKeptPixelMemory();
    return again != nullptr;
}

/// Whether there is any memory at the start of a large block, used or kept.
inline bool isThere(const std::uint8_t* block) {
#ifdef __linux__
    unsigned char isResident = 0;
    return mincore(const_cast<std::uint8_t*>(block), 1, &isResident) == 0;
#else
    return block != nullptr;
#endif
}

} // namespace quillabrae::raster
