// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Codecs.h"

#include <libheif/heif.h>

#include <cstring>
#include <memory>

namespace quillabrae::codecs {
namespace {

template <auto release>
struct Releaser {
    template <typename T>
    void operator()(T* thing) const {
        release(thing);
    }
};

using Context = std::unique_ptr<heif_context, Releaser<heif_context_free>>;
using Encoder = std::unique_ptr<heif_encoder, Releaser<heif_encoder_release>>;
using Handle = std::unique_ptr<heif_image_handle, Releaser<heif_image_handle_release>>;
using Image = std::unique_ptr<heif_image, Releaser<heif_image_release>>;
using Profile = std::unique_ptr<heif_color_profile_nclx, Releaser<heif_nclx_color_profile_free>>;

void check(const heif_error& error) {
    if (error.subcode == heif_suberror_Security_limit_exceeded) throw LimitError();
    if (error.code != heif_error_Ok) throw CodecError(error.message);
}

Context makeContext() {
    Context context(heif_context_alloc());
    if (!context) throw CodecError("no memory");
    return context;
}

Image rgbImage(const OpaquePicture& picture) {
    heif_image* made = nullptr;
    check(heif_image_create(picture.width, picture.height, heif_colorspace_RGB,
                            heif_chroma_interleaved_RGB, &made));
    Image image(made);
    constexpr int bitDepth = 8;
    check(heif_image_add_plane(image.get(), heif_channel_interleaved, picture.width, picture.height,
                               bitDepth));
    int stride = 0;
    std::uint8_t* plane = heif_image_get_plane(image.get(), heif_channel_interleaved, &stride);
    if (plane == nullptr) throw CodecError("no memory");
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t* from = picture.row(y);
        std::uint8_t* to = plane + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < picture.width; ++x, from += 4, to += 3) std::memcpy(to, from, 3);
    }
    return image;
}

heif_error writeTo(heif_context*, const void* data, std::size_t size, void* output) {
    (*static_cast<const ByteOutput*>(output))({static_cast<const std::uint8_t*>(data), size});
    return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

std::vector<std::uint8_t> profileOf(const heif_image_handle* handle) {
    constexpr std::size_t largestProfile = std::size_t{16} << 20U;
    const auto type = heif_image_handle_get_color_profile_type(handle);
    if (type != heif_color_profile_type_prof && type != heif_color_profile_type_rICC) return {};
    std::vector<std::uint8_t> profile(heif_image_handle_get_raw_color_profile_size(handle));
    if (profile.empty() || profile.size() > largestProfile) return {};
    check(heif_image_handle_get_raw_color_profile(handle, profile.data()));
    return profile;
}

Colors colorsOf(const heif_image_handle* handle) {
    heif_color_profile_nclx* read = nullptr;
    if (heif_image_handle_get_nclx_color_profile(handle, &read).code != heif_error_Ok)
        return Colors::srgb;
    const Profile profile(read);
    const bool isP3 = profile->color_primaries == heif_color_primaries_SMPTE_EG_432_1;
    return isP3 ? Colors::displayP3 : Colors::srgb;
}

Alpha alphaOf(const heif_image_handle* handle) {
    if (heif_image_handle_has_alpha_channel(handle) == 0) return Alpha::none;
    return heif_image_handle_is_premultiplied_alpha(handle) != 0 ? Alpha::premultiplied
                                                                 : Alpha::straight;
}

} // namespace

void writeHeic(const OpaquePicture& picture, int quality, const ByteOutput& output) {
    const Context context = makeContext();
    heif_encoder* made = nullptr;
    check(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &made));
    const Encoder encoder(made);
    check(heif_encoder_set_lossy_quality(encoder.get(), quality));
    // The slower ones are no better on a single picture.
    check(heif_encoder_set_parameter_string(encoder.get(), "preset", "ultrafast"));
    const Image image = rgbImage(picture);
    check(heif_context_encode_image(context.get(), image.get(), encoder.get(), nullptr, nullptr));
    heif_writer writer{1, writeTo};
    check(heif_context_write(context.get(), &writer, const_cast<ByteOutput*>(&output)));
}

void readHeif(Bytes file, PictureOutput& output) {
    const Context context = makeContext();
    heif_context_set_maximum_image_size_limit(context.get(), static_cast<int>(maximumSide));
    check(heif_context_read_from_memory_without_copy(context.get(), file.data(), file.size(),
                                                     nullptr));
    heif_image_handle* found = nullptr;
    check(heif_context_get_primary_image_handle(context.get(), &found));
    const Handle handle(found);
    const std::int64_t width = heif_image_handle_get_width(handle.get());
    const std::int64_t height = heif_image_handle_get_height(handle.get());
    checkSize(width, height);
    limitMemory(memoryToRead, width * height);

    heif_image* decoded = nullptr;
    check(heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB,
                            heif_chroma_interleaved_RGBA, nullptr));
    const Image image(decoded);
    PictureHeader header{heif_image_get_width(image.get(), heif_channel_interleaved),
                         heif_image_get_height(image.get(), heif_channel_interleaved),
                         alphaOf(handle.get()), colorsOf(handle.get()), profileOf(handle.get())};
    checkSize(header.width, header.height);
    int stride = 0;
    const std::uint8_t* plane =
        heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
    if (plane == nullptr) throw CodecError("the picture has no pixels");
    const std::span<std::uint8_t> pixels = output.begin(header);
    const std::size_t rowBytes = static_cast<std::size_t>(header.width) * 4;
    for (int y = 0; y < header.height; ++y)
        std::memcpy(pixels.data() + static_cast<std::size_t>(y) * rowBytes,
                    plane + static_cast<std::ptrdiff_t>(y) * stride, rowBytes);
}

} // namespace quillabrae::codecs
