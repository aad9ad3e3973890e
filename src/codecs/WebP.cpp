// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Codecs.h"

#include <webp/encode.h>

namespace quillabrae::codecs {
namespace {

/// A picture of the library, released at the end.
class WebPImage {
public:
    WebPImage() {
        if (WebPPictureInit(&m_picture) == 0) throw CodecError("another version of the library");
    }
    ~WebPImage() { WebPPictureFree(&m_picture); }
    WebPImage(const WebPImage&) = delete;
    WebPImage& operator=(const WebPImage&) = delete;

    WebPPicture* operator->() { return &m_picture; }
    WebPPicture* get() { return &m_picture; }

private:
    WebPPicture m_picture{};
};

int writeTo(const std::uint8_t* data, std::size_t size, const WebPPicture* picture) {
    (*static_cast<const ByteOutput*>(picture->custom_ptr))({data, size});
    return 1;
}

int tellProgress(int percent, const WebPPicture* picture) {
    constexpr double whole = 100.0;
    (*static_cast<const Progress*>(picture->user_data))(percent / whole);
    return 1;
}

} // namespace

void writeWebP(const OpaquePicture& picture, int quality, const ByteOutput& output,
               const Progress& progress) {
    if (picture.width > WEBP_MAX_DIMENSION || picture.height > WEBP_MAX_DIMENSION)
        throw CodecError("a side is longer than the format allows");
    WebPConfig config;
    if (WebPConfigPreset(&config, WEBP_PRESET_DEFAULT, static_cast<float>(quality)) == 0)
        throw CodecError("another version of the library");
    config.thread_level = 1;
    WebPImage image;
    image->width = picture.width;
    image->height = picture.height;
    if (WebPPictureImportRGBX(image.get(), picture.pixels.data(), picture.width * 4) == 0)
        throw CodecError("no memory");
    image->writer = writeTo;
    image->custom_ptr = const_cast<ByteOutput*>(&output);
    image->progress_hook = tellProgress;
    image->user_data = const_cast<Progress*>(&progress);
    if (WebPEncode(&config, image.get()) == 0)
        throw CodecError("encoding failed: " + std::to_string(image->error_code));
}

} // namespace quillabrae::codecs
