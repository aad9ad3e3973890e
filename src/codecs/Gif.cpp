// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Codecs.h"
#include "codecs/IndexedPicture.h"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace quillabrae::codecs {
namespace {

constexpr int colorBits = 8;

struct MapReleaser {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

int writeTo(GifFileType* file, const GifByteType* data, int size) {
    (*static_cast<const ByteOutput*>(file->UserData))({data, static_cast<std::size_t>(size)});
    return size;
}

void checkGif(int result) {
    if (result != GIF_OK) throw CodecError("the library failed");
}

} // namespace

void writeGif(const OpaquePicture& picture, const ByteOutput& output, const Progress& progress) {
    // Finding colours takes most of the time.
    constexpr double partOfColors = 0.9;
    constexpr int longestSide = 65535;
    if (picture.width > longestSide || picture.height > longestSide)
        throw CodecError("a side is longer than the format allows");
    const IndexedPicture indexed =
        indexedPicture(picture, [&](double fraction) { progress(partOfColors * fraction); });
    const std::unique_ptr<ColorMapObject, MapReleaser> map(GifMakeMapObject(paletteSize, nullptr));

    int error = 0;
    GifFileType* file = EGifOpen(const_cast<ByteOutput*>(&output), writeTo, &error);
    if (file == nullptr || !map) throw CodecError("no memory");
    for (std::size_t i = 0; i < indexed.palette.size(); ++i)
        map->Colors[i] = {indexed.palette[i].red, indexed.palette[i].green,
                          indexed.palette[i].blue};
    // The process ends when one of these fails: nothing needs closing then.
    checkGif(EGifPutScreenDesc(file, picture.width, picture.height, colorBits, 0, map.get()));
    checkGif(EGifPutImageDesc(file, 0, 0, picture.width, picture.height, false, nullptr));
    std::vector<GifByteType> row(static_cast<std::size_t>(picture.width));
    for (int y = 0; y < picture.height; ++y) {
        const auto* from = indexed.row(y);
        std::copy_n(from, row.size(), row.data());
        checkGif(EGifPutLine(file, row.data(), picture.width));
        progress(partOfColors + (1.0 - partOfColors) * (y + 1) / picture.height);
    }
    checkGif(EGifCloseFile(file, &error));
}

} // namespace quillabrae::codecs
