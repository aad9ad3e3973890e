// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are a picture within the limits, or none, to the loader of all kinds. The codecs that
// run in a process of their own run in this one.
#include "FuzzPicture.h"
#include "persistence/ImageCodecs.h"
#include "persistence/ImageLoader.h"
#include "raster/PngCodec.h"

#include <QCoreApplication>

using namespace quillabrae;

namespace quillabrae::persistence::ImageCodecs {

std::optional<raster::RasterImage> read(Bytes file, Decoding decoding, raster::ImageRefusal&,
                                        const platform::WorkControl&) {
    fuzz::CheckedPicture picture;
    const fuzz::LibraryMayGiveUp mayGiveUp;
    try {
        (decoding == Decoding::heif ? codecs::readHeif : codecs::readJpeg2000)(file, picture);
    } catch (const codecs::CodecError&) {
        return std::nullopt;
    }
    const auto& header = picture.header();
    return raster::RasterImage::fromQImage(
        QImage(picture.pixels().data(), header.width, header.height, QImage::Format_RGBA8888)
            .copy());
}

} // namespace quillabrae::persistence::ImageCodecs

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Qt finds its readers by the application's folders.
    static int argumentCount = 1;
    static char name[] = "fuzz-image";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    const auto picture = persistence::loadImage(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    fuzz::require(!picture || raster::isDecodableSize(picture->width(), picture->height()));
    return 0;
}
