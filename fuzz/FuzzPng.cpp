// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a PNG, whose picture comes back the same when it is encoded and decoded again, or
// no picture.
#include "FuzzInput.h"
#include "raster/PngCodec.h"

using namespace quillabrae;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const model::PngBytes file(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    const raster::RasterImage picture = raster::decodePng(file);
    if (picture.isNull()) return 0;
    fuzz::require(raster::isDecodableSize(picture.width(), picture.height()));
    // Larger ones are only slow.
    constexpr std::size_t enoughBytes = std::size_t{1} << 22U;
    if (picture.byteCount() > enoughBytes) return 0;
    fuzz::require(raster::decodePng(raster::encodePng(picture)) == picture);
    return 0;
}
