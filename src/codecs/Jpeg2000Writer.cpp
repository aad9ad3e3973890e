// SPDX-License-Identifier: GPL-3.0-or-later
#include "codecs/Jpeg2000.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace quillabrae::codecs {
namespace {

/// The format knows no quality from 0 to 100, but a peak signal-to-noise ratio in decibels: from 25
/// for 0 to 50 for 100.
float decibels(int quality) {
    return 25.0F + static_cast<float>(quality) * 0.25F;
}

/// As many halvings of the size as the shorter side allows, and no more than six in all.
int resolutionCount(const OpaquePicture& picture) {
    constexpr int most = 6;
    const auto shorter = static_cast<unsigned>(std::min(picture.width, picture.height));
    return std::min(static_cast<int>(std::bit_width(shorter)), most);
}

opj_cparameters_t parametersOf(const OpaquePicture& picture, int quality) {
    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.tcp_mct = 1;
    parameters.tcp_numlayers = 1;
    // In a few pixels the ratio is anybody's guess and there is nothing to save.
    constexpr std::int64_t fewPixels = 256;
    const bool isTiny = std::int64_t{picture.width} * picture.height < fewPixels;
    parameters.irreversible = isTiny ? 0 : 1;
    parameters.cp_fixed_quality = isTiny ? 0 : 1;
    parameters.cp_disto_alloc = isTiny ? 1 : 0;
    parameters.tcp_distoratio[0] = decibels(quality);
    parameters.numresolution = resolutionCount(picture);
    return parameters;
}

Jpeg2000Image imageOf(const OpaquePicture& picture) {
    std::array<opj_image_cmptparm_t, 3> components{};
    for (auto& component : components) {
        component.dx = component.dy = 1;
        component.w = static_cast<OPJ_UINT32>(picture.width);
        component.h = static_cast<OPJ_UINT32>(picture.height);
        component.prec = 8;
    }
    Jpeg2000Image image(opj_image_create(3, components.data(), OPJ_CLRSPC_SRGB));
    if (!image) throw CodecError("no memory");
    image->x1 = static_cast<OPJ_UINT32>(picture.width);
    image->y1 = static_cast<OPJ_UINT32>(picture.height);
    const std::size_t count = picture.pixels.size() / 4;
    for (std::size_t component = 0; component < components.size(); ++component) {
        const std::uint8_t* from = picture.pixels.data() + component;
        OPJ_INT32* to = image->comps[component].data;
        for (std::size_t i = 0; i < count; ++i) to[i] = from[i * 4];
    }
    return image;
}

/// The file in memory: the library goes back to fill in lengths.
class WrittenFile {
public:
    std::size_t write(const void* data, std::size_t size) {
        if (m_position + size > m_bytes.size()) m_bytes.resize(m_position + size);
        std::memcpy(m_bytes.data() + m_position, data, size);
        m_position += size;
        return size;
    }
    void seek(std::size_t position) {
        if (position > m_bytes.size()) m_bytes.resize(position);
        m_position = position;
    }
    std::size_t position() const { return m_position; }
    Bytes bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
    std::size_t m_position = 0;
};

Jpeg2000Stream streamTo(WrittenFile& file) {
    constexpr OPJ_BOOL isForReading = OPJ_FALSE;
    Jpeg2000Stream stream(opj_stream_create(std::size_t{1} << 20U, isForReading));
    if (!stream) throw CodecError("no memory");
    opj_stream_set_user_data(stream.get(), &file, nullptr);
    opj_stream_set_write_function(stream.get(), [](void* data, OPJ_SIZE_T size, void* user) {
        return static_cast<WrittenFile*>(user)->write(data, size);
    });
    opj_stream_set_skip_function(stream.get(), [](OPJ_OFF_T size, void* user) {
        auto& written = *static_cast<WrittenFile*>(user);
        written.seek(written.position() + static_cast<std::size_t>(size));
        return size;
    });
    opj_stream_set_seek_function(stream.get(), [](OPJ_OFF_T position, void* user) -> OPJ_BOOL {
        static_cast<WrittenFile*>(user)->seek(static_cast<std::size_t>(position));
        return OPJ_TRUE;
    });
    return stream;
}

} // namespace

void writeJpeg2000(const OpaquePicture& picture, int quality, const ByteOutput& output) {
    const Jpeg2000Codec codec(opj_create_compress(OPJ_CODEC_JP2));
    const Jpeg2000Image image = imageOf(picture);
    opj_cparameters_t parameters = parametersOf(picture, quality);
    WrittenFile file;
    const Jpeg2000Stream stream = streamTo(file);
    if (!codec || opj_setup_encoder(codec.get(), &parameters, image.get()) == 0)
        throw CodecError("the encoder refuses the picture");
    opj_codec_set_threads(codec.get(), opj_get_num_cpus());
    if (opj_start_compress(codec.get(), image.get(), stream.get()) == 0 ||
        opj_encode(codec.get(), stream.get()) == 0 ||
        opj_end_compress(codec.get(), stream.get()) == 0)
        throw CodecError("encoding failed");
    output(file.bytes());
}

} // namespace quillabrae::codecs
