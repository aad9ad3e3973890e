// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/PngFixtures.h"

#include "raster/Deflate.h"
#include "raster/PngBands.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace quillabrae::raster::fixtures {
namespace {

void appendBytes(png_structp png, png_bytep data, png_size_t size) {
    static_cast<QByteArray*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

struct Source {
    const QByteArray* file;
    qsizetype position;
};

ByteSpan spanOf(const QByteArray& bytes) {
    return {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

void readBytes(png_structp png, png_bytep data, png_size_t size) {
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (source->file->size() - source->position < static_cast<qsizetype>(size))
        png_error(png, "end of file");
    std::memcpy(data, source->file->constData() + source->position, size);
    source->position += static_cast<qsizetype>(size);
}

void setPaletteAndTransparency(png_structp png, png_infop info, const Form& form,
                               std::minstd_rand& random) {
    const auto byte = [&] { return static_cast<png_byte>(random() >> 7); };
    if (form.colorType == PNG_COLOR_TYPE_PALETTE) {
        const int count = 1 << form.bitDepth;
        std::vector<png_color> palette(static_cast<std::size_t>(count));
        for (png_color& color : palette) color = {byte(), byte(), byte()};
        png_set_PLTE(png, info, palette.data(), count);
        std::vector<png_byte> alphas(static_cast<std::size_t>(count + 1) / 2);
        for (png_byte& alpha : alphas) alpha = byte();
        if (form.hasTransparency)
            png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
    } else if (form.hasTransparency) {
        const auto greatest = static_cast<png_uint_16>((1U << form.bitDepth) - 1U);
        png_color_16 color{};
        color.gray = color.red = color.green = color.blue = static_cast<png_uint_16>(greatest / 3);
        png_set_tRNS(png, info, nullptr, 0, &color);
    }
}

/// Random rows; runs of one value, so that colours named transparent occur, and noise.
std::vector<std::vector<png_byte>> randomRows(std::size_t rowSize, int height, const Form& form,
                                              std::minstd_rand& random) {
    std::vector<std::vector<png_byte>> rows(static_cast<std::size_t>(height));
    for (auto& row : rows) {
        row.resize(rowSize);
        for (std::size_t i = 0; i < rowSize;) {
            const std::size_t end = std::min(i + 1 + random() % 24, rowSize);
            const bool isFlat = random() % 2 == 0;
            const bool isTransparentColor = random() % 2 == 0;
            const auto flat = static_cast<png_byte>(isTransparentColor ? 0x55 : random() >> 5);
            for (; i < end; ++i) row[i] = isFlat ? flat : static_cast<png_byte>(random() >> 5);
        }
        if (form.colorType == PNG_COLOR_TYPE_PALETTE && form.bitDepth == 8)
            for (png_byte& index : row) index = static_cast<png_byte>(index % 200);
    }
    return rows;
}

} // namespace

RasterImage randomImage(int width, int height, unsigned seed) {
    RasterImage image = RasterImage::uninitialized(width, height);
    std::minstd_rand random(seed * 7919 + 1);
    const std::span<std::uint8_t> bytes = image.mutableBytes();
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t end = std::min(i + 4 * (1 + random() % 90), bytes.size());
        const unsigned kind = random() % 4;
        const unsigned flat = static_cast<unsigned>(random());
        for (; i < end; i += 4) {
            const unsigned bits = kind == 0 ? flat : static_cast<unsigned>(random());
            const unsigned alpha = kind == 1 ? 255 : kind == 2 ? 0 : (bits >> 9) & 0xffU;
            for (std::size_t c = 0; c < 3; ++c)
                bytes[i + c] = static_cast<std::uint8_t>(((bits >> (7 * c)) & 0xffU) % (alpha + 1));
            bytes[i + 3] = static_cast<std::uint8_t>(alpha);
        }
    }
    return image;
}

RasterImage calmImage(int width, int height, unsigned seed) {
    RasterImage image = randomImage(width, height, seed);
    std::minstd_rand random(seed);
    for (int y = 1; y < height; ++y) {
        const int kept = static_cast<int>(random() % static_cast<unsigned>(width));
        std::uint8_t* row = image.mutableRow(y);
        const std::vector<std::uint8_t> painted(row, row + image.stride());
        std::memcpy(row, image.row(y - 1), image.stride());
        if (random() % 3 == 0)
            std::ranges::copy(
                std::span(painted).subspan(std::size_t{4} * static_cast<std::size_t>(kept)),
                row + std::size_t{4} * static_cast<std::size_t>(kept));
    }
    return image;
}

std::vector<std::uint8_t> straightPixels(const RasterImage& image) {
    std::vector<std::uint8_t> straight(image.bytes().begin(), image.bytes().end());
    for (std::size_t i = 0; i < straight.size(); i += 4) {
        const unsigned alpha = straight[i + 3];
        for (std::size_t c = i; c < i + 3; ++c) {
            const unsigned value =
                alpha == 0 ? 0 : (2U * straight[c] * 255U + alpha) / (2U * alpha);
            straight[c] = static_cast<std::uint8_t>(std::min(value, 255U));
        }
    }
    return straight;
}

RasterImage premultipliedImage(int width, int height, const std::vector<std::uint8_t>& straight) {
    RasterImage image = RasterImage::uninitialized(width, height);
    const std::span<std::uint8_t> bytes = image.mutableBytes();
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const unsigned alpha = straight[i + 3];
        for (std::size_t c = i; c < i + 3; ++c)
            bytes[c] = static_cast<std::uint8_t>((2U * straight[c] * alpha + 255U) / 510U);
        bytes[i + 3] = straight[i + 3];
    }
    return image;
}

QByteArray libpngFile(const Form& form, int width, int height, unsigned seed) {
    std::minstd_rand random(seed * 104729 + 3);
    QByteArray file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, appendBytes, nullptr);
    png_set_filter(png, 0, PNG_ALL_FILTERS);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                 form.bitDepth, form.colorType,
                 form.isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    setPaletteAndTransparency(png, info, form, random);
    std::array<char, 8> key = {"Comment"};
    std::array<char, 8> value = {"a noise"};
    png_text text{};
    text.compression = PNG_TEXT_COMPRESSION_zTXt;
    text.key = key.data();
    text.text = value.data();
    png_set_text(png, info, &text, 1);
    auto rows = randomRows(png_get_rowbytes(png, info), height, form, random);
    std::vector<png_bytep> pointers;
    for (auto& row : rows) pointers.push_back(row.data());
    png_set_rows(png, info, pointers.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

std::vector<std::uint8_t> libpngPixels(const QByteArray& file) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr,
                                             [](png_structp, png_const_charp) {});
    png_infop info = png_create_info_struct(png);
    std::vector<std::uint8_t> pixels;
    std::vector<png_bytep> rows;
    Source source{&file, 0};
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return {};
    }
    png_set_read_fn(png, &source, readBytes);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    const std::size_t height = png_get_image_height(png, info);
    pixels.resize(stride * height);
    for (std::size_t y = 0; y < height; ++y) rows.push_back(pixels.data() + y * stride);
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}

QByteArray bigEndian32(std::uint32_t value) {
    QByteArray bytes(4, '\0');
    for (int i = 3; i >= 0; --i, value >>= 8) bytes[i] = static_cast<char>(value & 0xffU);
    return bytes;
}

QByteArray chunk(const char* type, const QByteArray& data) {
    const QByteArray body = QByteArray(type, 4) + data;
    std::uint32_t crc = 0xffffffffU;
    for (const char byte : body) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
    }
    return bigEndian32(static_cast<std::uint32_t>(data.size())) + body + bigEndian32(~crc);
}

QByteArray header(std::uint32_t width, std::uint32_t height, int depth, int colorType,
                  int interlacing) {
    QByteArray data = bigEndian32(width) + bigEndian32(height);
    data.append(static_cast<char>(depth)).append(static_cast<char>(colorType));
    data.append('\0').append('\0').append(static_cast<char>(interlacing));
    return chunk("IHDR", data);
}

QByteArray bandedFile(int width, int height, const std::vector<QByteArray>& bands,
                      const std::vector<QByteArray>& parts) {
    PngBands stated{.rows = rowsPerBand(width), .checksums = {}};
    for (const QByteArray& band : bands) stated.checksums.push_back(adlerOf(spanOf(band)));
    const std::vector<std::uint8_t> index = bandIndexData(stated);
    const PngHeader form{.width = static_cast<std::uint32_t>(width),
                         .height = static_cast<std::uint32_t>(height)};
    QByteArray file = signature + header(form.width, form.height);
    file += chunk("qbND", QByteArray(reinterpret_cast<const char*>(index.data()),
                                     static_cast<qsizetype>(index.size())));
    file += chunk("IDAT", QByteArray("\x78\x01", 2));
    for (const QByteArray& part : parts) file += chunk("IDAT", part);
    file += chunk("IDAT", QByteArray("\x03\0", 2) + bigEndian32(streamChecksum(form, stated)));
    return file + chunk("IEND", {});
}

QByteArray bandedFile(int width, int height, const QByteArray& filteredRows) {
    const qsizetype bandSize = rowsPerBand(width) * (qsizetype{4} * width + 1);
    std::vector<QByteArray> bands;
    std::vector<QByteArray> parts;
    for (qsizetype at = 0; at < filteredRows.size(); at += bandSize) {
        const QByteArray& band = bands.emplace_back(
            filteredRows.sliced(at, std::min(bandSize, filteredRows.size() - at)));
        const ByteSpan bytes = spanOf(band);
        const ByteRange all{0, bytes.size()};
        std::vector<std::uint8_t> out(deflatedSizeBound(bytes.size()));
        const std::size_t size = BandDeflater().deflate({.bytes = bytes, .live = {&all, 1}}, out);
        parts.emplace_back(reinterpret_cast<const char*>(out.data()), static_cast<qsizetype>(size));
    }
    return bandedFile(width, height, bands, parts);
}

} // namespace quillabrae::raster::fixtures
