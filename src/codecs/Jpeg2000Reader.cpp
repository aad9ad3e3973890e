// SPDX-License-Identifier: GPL-3.0-or-later
// A component value v of p bits becomes v * 255 / (2^p - 1), after 2^(p-1) is added where it is
// signed. A component sampled every d pixels stands for all of them.
#include "codecs/Jpeg2000.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quillabrae::codecs {
namespace {

constexpr std::int64_t mostComponents = 16;

/// A file being read, and how far.
struct ReadFile {
    Bytes bytes;
    std::size_t position = 0;
};

OPJ_SIZE_T readFrom(void* to, OPJ_SIZE_T size, void* user) {
    auto& file = *static_cast<ReadFile*>(user);
    const std::size_t count = std::min<std::size_t>(size, file.bytes.size() - file.position);
    if (count == 0) return static_cast<OPJ_SIZE_T>(-1);
    std::memcpy(to, file.bytes.data() + file.position, count);
    file.position += count;
    return count;
}

OPJ_BOOL seekIn(OPJ_OFF_T position, void* user) {
    auto& file = *static_cast<ReadFile*>(user);
    if (position < 0 || static_cast<std::size_t>(position) > file.bytes.size()) return OPJ_FALSE;
    file.position = static_cast<std::size_t>(position);
    return OPJ_TRUE;
}

OPJ_OFF_T skipIn(OPJ_OFF_T count, void* user) {
    const auto& file = *static_cast<ReadFile*>(user);
    const auto target = static_cast<OPJ_OFF_T>(file.position) + count;
    return seekIn(target, user) != 0 ? count : -1;
}

Jpeg2000Stream streamFrom(ReadFile& file) {
    constexpr OPJ_BOOL isForReading = OPJ_TRUE;
    Jpeg2000Stream stream(opj_stream_create(std::size_t{1} << 20U, isForReading));
    if (!stream) throw CodecError("no memory");
    opj_stream_set_user_data(stream.get(), &file, nullptr);
    opj_stream_set_user_data_length(stream.get(), file.bytes.size());
    opj_stream_set_read_function(stream.get(), readFrom);
    opj_stream_set_seek_function(stream.get(), seekIn);
    opj_stream_set_skip_function(stream.get(), skipIn);
    return stream;
}

OPJ_CODEC_FORMAT formatOf(Bytes file) {
    constexpr std::array<std::uint8_t, 4> codestream{0xff, 0x4f, 0xff, 0x51};
    const bool isBare = file.size() >= codestream.size() &&
                        std::equal(codestream.begin(), codestream.end(), file.begin());
    return isBare ? OPJ_CODEC_J2K : OPJ_CODEC_JP2;
}

Jpeg2000Image decoded(Bytes bytes) {
    ReadFile file{bytes};
    const Jpeg2000Stream stream = streamFrom(file);
    const Jpeg2000Codec codec(opj_create_decompress(formatOf(bytes)));
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    if (!codec || opj_setup_decoder(codec.get(), &parameters) == 0) throw CodecError("no memory");
    opj_codec_set_threads(codec.get(), opj_get_num_cpus());
    opj_image_t* read = nullptr;
    const bool hasHeader = opj_read_header(stream.get(), codec.get(), &read) != 0;
    Jpeg2000Image image(read);
    if (!hasHeader || !image) throw CodecError("the header is broken");
    const auto width = static_cast<std::int64_t>(image->x1) - image->x0;
    const auto height = static_cast<std::int64_t>(image->y1) - image->y0;
    checkSize(width, height);
    if (image->numcomps < 1 || image->numcomps > mostComponents)
        throw CodecError("too many components");
    limitMemory(std::int64_t{1} << 30U,
                width * height * std::max<std::int64_t>(image->numcomps / 2, 1));
    if (opj_decode(codec.get(), stream.get(), image.get()) == 0)
        throw CodecError("the picture is broken");
    return image;
}

/// One component as bytes for every pixel of the picture.
class Samples {
public:
    Samples(const opj_image_t& image, const opj_image_comp_t& component)
        : m_component(component),
          m_firstX(static_cast<std::int64_t>(image.x0)),
          m_firstY(static_cast<std::int64_t>(image.y0)),
          m_top((std::int64_t{1} << component.prec) - 1),
          m_offset(component.sgnd != 0 ? std::int64_t{1} << (component.prec - 1) : 0) {
        if (component.data == nullptr || component.w < 1 || component.h < 1 || component.dx < 1 ||
            component.dy < 1 || component.prec < 1 || component.prec > 31)
            throw CodecError("a component is missing");
    }

    void readRow(int y, int width, std::uint8_t* to, int step) const {
        const std::int64_t row = place(m_firstY, y, m_component.dy, m_component.h);
        const OPJ_INT32* from = m_component.data + row * static_cast<std::int64_t>(m_component.w);
        for (int x = 0; x < width; ++x, to += step)
            *to = scaled(from[place(m_firstX, x, m_component.dx, m_component.w)]);
    }

private:
    static std::int64_t place(std::int64_t first, int index, OPJ_UINT32 step, OPJ_UINT32 count) {
        const std::int64_t skipped = (first + step - 1) / step;
        return std::clamp<std::int64_t>((first + index) / step - skipped, 0,
                                        static_cast<std::int64_t>(count) - 1);
    }
    std::uint8_t scaled(OPJ_INT32 value) const {
        const std::int64_t positive = std::clamp<std::int64_t>(value + m_offset, 0, m_top);
        return static_cast<std::uint8_t>((positive * 255 + m_top / 2) / m_top);
    }

    const opj_image_comp_t& m_component;
    std::int64_t m_firstX;
    std::int64_t m_firstY;
    std::int64_t m_top;
    std::int64_t m_offset;
};

std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

/// ITU-R BT.601, full range.
void convertFromYcc(std::uint8_t* pixel) {
    const double y = pixel[0];
    const double cb = pixel[1] - 128.0;
    const double cr = pixel[2] - 128.0;
    pixel[0] = byteOf(y + 1.402 * cr);
    pixel[1] = byteOf(y - 0.344136 * cb - 0.714136 * cr);
    pixel[2] = byteOf(y + 1.772 * cb);
}

/// Which component each of red, green, blue and alpha is.
struct Layout {
    std::array<std::uint32_t, 3> colors{};
    std::int64_t alpha = -1;
};

Layout layoutOf(const opj_image_t& image) {
    Layout layout;
    std::vector<std::uint32_t> colors;
    for (std::uint32_t i = 0; i < image.numcomps; ++i) {
        if (image.comps[i].alpha != 0)
            layout.alpha = i;
        else
            colors.push_back(i);
    }
    if (colors.empty()) throw CodecError("the picture has no colours");
    if (colors.size() < 3)
        layout.colors.fill(colors[0]);
    else
        std::copy_n(colors.begin(), 3, layout.colors.begin());
    return layout;
}

} // namespace

void readJpeg2000(Bytes file, PictureOutput& output) {
    const Jpeg2000Image image = decoded(file);
    const auto width = static_cast<int>(image->x1 - image->x0);
    const auto height = static_cast<int>(image->y1 - image->y0);
    checkSize(width, height);
    const Layout layout = layoutOf(*image);
    PictureHeader header{
        width, height, layout.alpha < 0 ? Alpha::none : Alpha::straight, Colors::srgb, {}};
    // Of a profile only the kinds that describe red, green and blue are of use.
    const bool isColorful = layout.colors[0] != layout.colors[1];
    if (image->icc_profile_buf != nullptr && image->icc_profile_len > 0 && isColorful)
        header.profile.assign(image->icc_profile_buf,
                              image->icc_profile_buf + image->icc_profile_len);
    std::vector<Samples> channels;
    for (const std::uint32_t index : layout.colors)
        channels.emplace_back(*image, image->comps[index]);
    if (layout.alpha >= 0) channels.emplace_back(*image, image->comps[layout.alpha]);

    const std::span<std::uint8_t> pixels = output.begin(header);
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    const bool isYcc = image->color_space == OPJ_CLRSPC_SYCC && isColorful;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = pixels.data() + static_cast<std::size_t>(y) * rowBytes;
        if (layout.alpha < 0) std::memset(row, 0xff, rowBytes);
        for (std::size_t i = 0; i < channels.size(); ++i) channels[i].readRow(y, width, row + i, 4);
        if (!isYcc) continue;
        for (int x = 0; x < width; ++x) convertFromYcc(row + std::ptrdiff_t{4} * x);
    }
}

} // namespace quillabrae::codecs
