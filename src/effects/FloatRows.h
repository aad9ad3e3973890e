// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "raster/PixelMemory.h"

#include <cstddef>
#include <memory>

namespace quillabrae::effects {

/// Rows of numbers, contents undefined at first. Null where there was no memory for them.
class FloatRows {
public:
    FloatRows(std::size_t rows, std::size_t floatsPerRow)
        : m_stride(floatsPerRow),
          m_floats(reinterpret_cast<float*>(raster::allocatePixels(byteCount(rows))),
                   Free{byteCount(rows)}) {}

    bool isNull() const { return m_floats == nullptr; }
    std::size_t stride() const { return m_stride; }
    float* row(std::size_t index) { return m_floats.get() + index * m_stride; }
    const float* row(std::size_t index) const { return m_floats.get() + index * m_stride; }

private:
    struct Free {
        std::size_t byteCount;
        void operator()(float* floats) const {
            raster::freePixels(reinterpret_cast<std::uint8_t*>(floats), byteCount);
        }
    };

    std::size_t byteCount(std::size_t rows) const { return rows * m_stride * sizeof(float); }

    std::size_t m_stride;
    std::unique_ptr<float, Free> m_floats;
};

} // namespace quillabrae::effects
