// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/DecodeCache.h"

#include "raster/PngCodec.h"

namespace quillabrae::raster {

RasterImage decodedImage(const model::PngBytes& bytes) {
    return decodePng(bytes);
}
model::PngBytes encodedImage(const RasterImage& image) {
    return encodePng(image);
}
void clearDecodeCache() {}
void setDecodeCacheBudget(std::size_t) {}

} // namespace quillabrae::raster
