// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/CroppedImage.h"

#include <cstring>

namespace quillabrae::raster {

RasterImage CroppedImage::whole() const {
    if (isNull() || isWhole()) return image;
    RasterImage whole(wholeSize.width(), wholeSize.height());
    if (whole.isNull()) return whole;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(whole.mutableRow(origin.y() + y) + 4 * static_cast<std::size_t>(origin.x()),
                    image.row(y), image.stride());
    return whole;
}

} // namespace quillabrae::raster
