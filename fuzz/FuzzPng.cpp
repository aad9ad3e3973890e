// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a PNG, whose picture is the same with and without its margins and comes back the
// same when it is encoded and decoded again, or no picture. The checksums of chunks are set right
// in a second file, and those of bands in a third, so that changed bytes get beyond them.
#include "FuzzInput.h"
#include "PngRepair.h"
#include "raster/PngCodec.h"
#include "raster/PngDecoder.h"

#include <optional>

using namespace quillabrae;
using namespace quillabrae::raster;

namespace {

/// Larger ones are only slow.
bool isSmall(const model::PngBytes& file) {
    constexpr qint64 enoughPixels = qint64{1} << 20U;
    const std::optional<QSize> size = pngPixelSize(file);
    return size && isDecodableSize(size->width(), size->height()) &&
           qint64{size->width()} * size->height() <= enoughPixels;
}

void read(const model::PngBytes& file) {
    const RasterImage picture = decodePng(file);
    fuzz::require(picture.isNull() || isDecodableSize(picture.width(), picture.height()));
    if (!isSmall(file)) return;
    fuzz::require(decodeCroppedPngOfAnySize(file).whole() == picture);
    if (!picture.isNull()) fuzz::require(decodePng(encodePng(picture)) == picture);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QByteArray file = fuzz::bytesOf(data, size);
    QByteArray latest = file;
    const auto readIfChanged = [&] {
        if (file != latest) read(model::PngBytes(file));
        latest = file;
    };
    read(model::PngBytes(file));
    fuzz::repairChunks(file);
    readIfChanged();
    if (isSmall(model::PngBytes(file))) fuzz::repairBands(file);
    readIfChanged();
    return 0;
}
