// SPDX-License-Identifier: GPL-3.0-or-later
// Our PNG codec beside libpng on the same pixels: 4096 by 4096 RGBA, a photo, a screenshot and a
// drawing. "size" is the file in bytes. "cold" gives memory back to the system before each turn.
// For medians: --benchmark_repetitions=5 --benchmark_report_aggregates_only=true.
#include "SyntheticImages.h"
#include "raster/AlphaKernels.h"
#include "raster/Parallel.h"
#include "raster/PixelMemory.h"
#include "raster/PngCodec.h"

#include <benchmark/benchmark.h>
#include <png.h>

#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace quillabrae::bench {
namespace {

constexpr int side = 4096;

enum class Picture { photo, screenshot, drawing };

const raster::RasterImage& picture(Picture which) {
    static std::map<Picture, raster::RasterImage> pictures;
    raster::RasterImage& image = pictures[which];
    if (image.isNull() && which == Picture::photo) image = syntheticPhoto(side);
    if (image.isNull() && which == Picture::screenshot) image = syntheticScreenshot(side);
    if (image.isNull()) image = syntheticDrawing(side);
    return image;
}

void releaseFreeMemory() {
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

void appendBytes(png_structp png, png_bytep data, png_size_t size) {
    static_cast<QByteArray*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
}

/// libpng level 1 with its own choice of filters, from premultiplied pixels like ours.
QByteArray libpngEncode(const raster::RasterImage& image, int colorType = PNG_COLOR_TYPE_RGBA) {
    QByteArray file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) throw std::runtime_error("libpng");
    png_set_write_fn(png, &file, appendBytes, nullptr);
    png_set_compression_level(png, 1);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()),
                 static_cast<png_uint_32>(image.height()), 8, colorType, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (colorType == PNG_COLOR_TYPE_RGB) png_set_filler(png, 0, PNG_FILLER_AFTER);
    std::vector<std::uint8_t> row(image.stride());
    for (int y = 0; y < image.height(); ++y) {
        raster::unpremultiplyPixels(image.row(y), row.data(),
                                    static_cast<std::size_t>(image.width()));
        png_write_row(png, row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

struct Source {
    const QByteArray& file;
    qsizetype position = 0;
};

void readBytes(png_structp png, png_bytep data, png_size_t size) {
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (source->file.size() - source->position < static_cast<qsizetype>(size))
        png_error(png, "end of file");
    std::memcpy(data, source->file.constData() + source->position, size);
    source->position += static_cast<qsizetype>(size);
}

raster::RasterImage libpngDecode(const QByteArray& file) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) throw std::runtime_error("libpng");
    Source source{file};
    png_set_read_fn(png, &source, readBytes);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    auto image =
        raster::RasterImage::uninitialized(static_cast<int>(png_get_image_width(png, info)),
                                           static_cast<int>(png_get_image_height(png, info)));
    for (int y = 0; y < image.height(); ++y) {
        std::uint8_t* row = image.mutableRow(y);
        png_read_row(png, row, nullptr);
        raster::premultiplyPixels(row, row, static_cast<std::size_t>(image.width()));
    }
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return image;
}

void encodeLibpng(benchmark::State& state, Picture which) {
    const raster::RasterImage& image = picture(which);
    qsizetype size = 0;
    for (auto _ : state) size = libpngEncode(image).size();
    state.counters["size"] = static_cast<double>(size);
}

void encodeOurs(benchmark::State& state, Picture which, int threads, bool isCold) {
    const raster::RasterImage& image = picture(which);
    const raster::ParallelThreadLimit limit(threads);
    std::size_t size = 0;
    for (auto _ : state) {
        if (isCold) {
            state.PauseTiming();
            raster::releaseKeptPixelMemory();
            releaseFreeMemory();
            state.ResumeTiming();
        }
        size = raster::encodePng(image).size();
    }
    state.counters["size"] = static_cast<double>(size);
}

/// What no encoder can do without: to look at each pixel once. On a server's core of 2023 that
/// takes 2.3 ms, so that nothing there encodes a drawing more than some 180 times as fast as
/// libpng.
void readPixels(benchmark::State& state, Picture which) {
    const raster::RasterImage& image = picture(which);
    for (auto _ : state)
        for (int y = 0; y < image.height(); ++y)
            benchmark::DoNotOptimize(
                raster::isPremultiplied(image.row(y), static_cast<std::size_t>(image.width())));
}

void reencodeOurs(benchmark::State& state, Picture which, int threads) {
    const raster::RasterImage& image = picture(which);
    const raster::ParallelThreadLimit limit(threads);
    const model::PngBytes previous = raster::encodePng(image);
    const raster::RowRange stroke{side / 3, side / 3 + side / 20};
    for (auto _ : state)
        benchmark::DoNotOptimize(raster::encodePng(image, previous, stroke).size());
}

void decodeLibpng(benchmark::State& state, Picture which) {
    const QByteArray file = raster::encodePng(picture(which)).toByteArray();
    for (auto _ : state) benchmark::DoNotOptimize(libpngDecode(file).row(0));
}

void decodeOurs(benchmark::State& state, Picture which, int threads, bool isCold) {
    const model::PngBytes file = raster::encodePng(picture(which));
    const raster::ParallelThreadLimit limit(threads);
    for (auto _ : state) {
        if (isCold) {
            state.PauseTiming();
            raster::releaseKeptPixelMemory();
            state.ResumeTiming();
        }
        benchmark::DoNotOptimize(raster::decodePng(file).row(0));
    }
}

void decodeForeignLibpng(benchmark::State& state, Picture which, int colorType) {
    const QByteArray file = libpngEncode(picture(which), colorType);
    for (auto _ : state) benchmark::DoNotOptimize(libpngDecode(file).row(0));
}

void decodeForeignOurs(benchmark::State& state, Picture which, int colorType, int threads) {
    const model::PngBytes file(libpngEncode(picture(which), colorType));
    const raster::ParallelThreadLimit limit(threads);
    for (auto _ : state) benchmark::DoNotOptimize(raster::decodePng(file).row(0));
}

template <typename Fn, typename... Arguments>
void add(const std::string& name, Fn fn, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), fn, arguments...)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

const bool areRegistered = [] {
    const std::vector<std::pair<std::string, Picture>> pictures = {
        {"photo", Picture::photo},
        {"screenshot", Picture::screenshot},
        {"drawing", Picture::drawing}};
    for (const auto& [name, which] : pictures) {
        add("png/encode/" + name + "/libpng1", encodeLibpng, which);
        add("png/encode/" + name + "/ours/1thread", encodeOurs, which, 1, false);
        add("png/encode/" + name + "/ours/1thread/cold", encodeOurs, which, 1, true);
        add("png/encode/" + name + "/ours/2threads", encodeOurs, which, 2, false);
        if (which == Picture::drawing)
            add("png/encode/" + name + "/readingOnly", readPixels, which);
        add("png/reencode5%/" + name + "/ours/1thread", reencodeOurs, which, 1);
        add("png/reencode5%/" + name + "/ours/2threads", reencodeOurs, which, 2);
        add("png/decode/" + name + "/libpng", decodeLibpng, which);
        add("png/decode/" + name + "/ours/1thread", decodeOurs, which, 1, false);
        add("png/decode/" + name + "/ours/2threads", decodeOurs, which, 2, false);
        add("png/decode/" + name + "/ours/2threads/cold", decodeOurs, which, 2, true);
        for (const auto& [form, colorType] :
             {std::pair("rgba", PNG_COLOR_TYPE_RGBA), std::pair("rgb", PNG_COLOR_TYPE_RGB)}) {
            const std::string prefix = "png/decode-foreign-" + std::string(form) + "/" + name;
            add(prefix + "/libpng", decodeForeignLibpng, which, colorType);
            add(prefix + "/ours/1thread", decodeForeignOurs, which, colorType, 1);
            add(prefix + "/ours/2threads", decodeForeignOurs, which, colorType, 2);
        }
    }
    return true;
}();

} // namespace
} // namespace quillabrae::bench
