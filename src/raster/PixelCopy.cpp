// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PixelCopy.h"

#include <cstring>

namespace quillabrae::raster {

void copyPixels(const RasterImage& from, RasterImage& to, const QRect& rect) {
    const QRect inside = rect & QRect(0, 0, to.width(), to.height());
    if (inside.isEmpty()) return;
    const std::size_t offset = 4 * static_cast<std::size_t>(inside.left());
    const std::size_t length = 4 * static_cast<std::size_t>(inside.width());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        std::memcpy(to.mutableRow(y) + offset, from.row(y) + offset, length);
}

} // namespace quillabrae::raster
