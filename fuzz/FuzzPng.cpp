// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a PNG, whose picture is the same with and without its margins and comes back the
// same when it is encoded and decoded again, or no picture. The checksums of chunks are set right
// in a second file, so that changed bytes get beyond them.
#include "FuzzInput.h"
#include "raster/PngChunks.h"
#include "raster/PngCodec.h"
#include "raster/PngDecoder.h"

#include <optional>

using namespace quillabrae;
using namespace quillabrae::raster;

namespace {

QByteArray withRightChecksums(const QByteArray& file) {
    QByteArray right = file;
    auto at = static_cast<qsizetype>(pngSignature.size());
    while (at + static_cast<qsizetype>(pngChunkOverhead) <= file.size()) {
        const auto* const chunk = reinterpret_cast<const std::uint8_t*>(file.constData()) + at;
        const qsizetype length = readBigEndian32(chunk);
        const qsizetype end = at + length + static_cast<qsizetype>(pngChunkOverhead);
        if (end > file.size()) break;
        writePngChunk(reinterpret_cast<std::uint8_t*>(right.data()) + at,
                      readBigEndian32(chunk + 4), {chunk + 8, static_cast<std::size_t>(length)});
        at = end;
    }
    return right;
}

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
    const QByteArray file = fuzz::bytesOf(data, size);
    read(model::PngBytes(file));
    const QByteArray right = withRightChecksums(file);
    if (right != file) read(model::PngBytes(right));
    return 0;
}
