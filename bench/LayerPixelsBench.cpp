// SPDX-License-Identifier: GPL-3.0-or-later
// Edits of a layer's pixels on 4096 by 4096, decoded in and decoded out, beside the memcpy of as
// many bytes as are read and written, and beside libraries that do the like.
#include "SyntheticImages.h"
#include "raster/BlendKernels.h"
#include "raster/ColorRemoval.h"
#include "raster/Flatten.h"
#include "raster/LayerPixels.h"
#include "raster/LayerRasterService.h"
#include "raster/RotateZoom.h"
#include "raster/Stretch.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#ifdef QUILLABRAE_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#ifdef QUILLABRAE_BENCH_PIXMAN
#include <pixman.h>
#endif

namespace quillabrae::bench {
namespace {

using raster::MirrorAxis;
using raster::RasterImage;
using raster::SelectionCoverage;

constexpr int side = 4096;
constexpr int largeSide = 6000;
constexpr int smallSide = 2048;
constexpr double lowerOpacity = 0.8;
constexpr double upperOpacity = 0.6;
constexpr double angle = 30.0;

const QRect whole(0, 0, side, side);
/// All but a border, so that nothing whole is taken for it.
const QRect inner = whole.adjusted(1, 1, -1, -1);

const RasterImage& photo() {
    static const RasterImage image = syntheticPhoto(side);
    return image;
}

const RasterImage& drawing() {
    static const RasterImage image = syntheticDrawing(side);
    return image;
}

SelectionCoverage covering(const QRect& rect) {
    return SelectionCoverage::ofPixels(rect);
}

/// The bytes of one image of that many, half of them read and half written.
void copyBytes(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0)) * 1024 * 1024 / 2;
    const std::vector<std::uint8_t> from(count, 1);
    std::vector<std::uint8_t> to(count, 2);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), count);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

/// An edit that gives a new image. The pictures that it reads, and memory that it writes to, are
/// there before the clock runs.
template <typename Edit>
auto edit(Edit fn) {
    return [fn](benchmark::State& state) {
        benchmark::DoNotOptimize(fn());
        for (auto _ : state) benchmark::DoNotOptimize(fn());
    };
}

RasterImage copied() {
    RasterImage copy = raster::LayerRasterService::copyImage(photo(), side, side);
    copy.mutableRow(0);
    return copy;
}

RasterImage flattened() {
    return raster::flattenedImage({photo(), raster::unitByte(lowerOpacity)},
                                  {drawing(), raster::unitByte(upperOpacity)});
}

void stretch(benchmark::State& state) {
    const auto to = static_cast<int>(state.range(0));
    RasterImage result = RasterImage::uninitialized(to, to);
    std::memset(result.mutableBytes().data(), 1, result.byteCount());
    for (auto _ : state)
        raster::copySamples(result, photo(), raster::stretchSamples(side, 0, to, to),
                            raster::stretchSamples(side, 0, to, to));
}

void resize(benchmark::State& state) {
    const auto to = static_cast<double>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(raster::LayerRasterService::resizedCopy(photo(), to, to));
}

QImage premultiplied(const RasterImage& image) {
    return image.toQImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void painterFlatten(benchmark::State& state) {
    const QImage lower = premultiplied(photo());
    const QImage upper = premultiplied(drawing());
    QImage target(side, side, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        target.fill(Qt::transparent);
        QPainter painter(&target);
        painter.setOpacity(lowerOpacity);
        painter.drawImage(0, 0, lower);
        painter.setOpacity(upperOpacity);
        painter.drawImage(0, 0, upper);
        painter.end();
        benchmark::ClobberMemory();
    }
}

void painterRotate(benchmark::State& state) {
    const QImage source = premultiplied(photo());
    QImage target(side, side, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        target.fill(Qt::transparent);
        QPainter painter(&target);
        painter.translate(side / 2.0, side / 2.0);
        painter.rotate(angle);
        painter.drawImage(QPointF(-side / 2.0, -side / 2.0), source);
        painter.end();
        benchmark::ClobberMemory();
    }
}

void painterFlip(benchmark::State& state, Qt::Orientation orientation) {
    const QImage source = premultiplied(photo());
    for (auto _ : state)
        benchmark::DoNotOptimize(
            source.mirrored(orientation == Qt::Horizontal, orientation == Qt::Vertical));
}

#ifdef QUILLABRAE_BENCH_OPENCV
cv::Mat matrix(const RasterImage& image) {
    return cv::Mat(image.height(), image.width(), CV_8UC4, const_cast<std::uint8_t*>(image.row(0)),
                   image.stride());
}

cv::Rect rectOf(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

/// `fn(source, target)` with a target that is there already.
template <typename Fn>
auto openCv(int targetSide, Fn fn) {
    return [targetSide, fn](benchmark::State& state) {
        const cv::Mat source = matrix(photo());
        cv::Mat target(targetSide, targetSide, CV_8UC4, cv::Scalar::all(1));
        for (auto _ : state) {
            fn(source, target);
            benchmark::ClobberMemory();
        }
    };
}

void openCvResize(const cv::Mat& source, cv::Mat& target) {
    cv::resize(source, target, target.size(), 0, 0, cv::INTER_NEAREST);
}

void openCvRotate(const cv::Mat& source, cv::Mat& target) {
    const cv::Mat turn =
        cv::getRotationMatrix2D(cv::Point2f(side / 2.0F, side / 2.0F), -angle, 1.0);
    cv::warpAffine(source, target, turn, target.size(), cv::INTER_NEAREST);
}
#endif

#ifdef QUILLABRAE_BENCH_PIXMAN
pixman_image_t* pixmanImage(const RasterImage& image) {
    return pixman_image_create_bits(
        PIXMAN_a8r8g8b8, image.width(), image.height(),
        reinterpret_cast<std::uint32_t*>(const_cast<std::uint8_t*>(image.row(0))),
        static_cast<int>(image.stride()));
}

void pixmanResize(benchmark::State& state) {
    const auto to = static_cast<int>(state.range(0));
    RasterImage result = RasterImage::uninitialized(to, to);
    std::memset(result.mutableBytes().data(), 1, result.byteCount());
    pixman_image_t* const source = pixmanImage(photo());
    pixman_image_t* const target = pixmanImage(result);
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(double{side} / to),
                                pixman_double_to_fixed(double{side} / to));
    pixman_image_set_transform(source, &scale);
    pixman_image_set_filter(source, PIXMAN_FILTER_NEAREST, nullptr, 0);
    for (auto _ : state)
        pixman_image_composite32(PIXMAN_OP_SRC, source, nullptr, target, 0, 0, 0, 0, 0, 0, to, to);
    pixman_image_unref(source);
    pixman_image_unref(target);
}
#endif

template <typename Fn>
benchmark::internal::Benchmark* add(const char* name, Fn fn) {
    return benchmark::RegisterBenchmark(name, fn)->Unit(benchmark::kMillisecond)->UseRealTime();
}

void addOurs() {
    add("layer/invert", edit([] { return raster::invertedImage(photo(), covering(whole)); }));
    add("layer/crop", edit([] { return raster::croppedImage(photo(), covering(inner)); }));
    add("layer/clear", edit([] { return raster::clearedImage(photo(), covering(inner)); }));
    add("layer/copy", edit(copied));
    add("layer/flip/horizontal", edit([] {
            return raster::mirroredImage(photo(), covering(whole), MirrorAxis::horizontal);
        }));
    add("layer/flip/vertical",
        edit([] { return raster::mirroredImage(photo(), covering(whole), MirrorAxis::vertical); }));
    add("layer/flatten", edit(flattened));
    add("layer/resize/into", stretch)->Arg(largeSide)->Arg(smallSide);
    add("layer/resize/fresh", resize)->Arg(largeSide)->Arg(smallSide);
    add("layer/rotate", edit([] {
            return raster::rotateZoomedImage(photo(), covering(whole), {.angleDegrees = angle});
        }));
    const auto removal = raster::ColorRemoval::of({0.45, 0.4, 0.3, 1.0}, 1.5, 10.0);
    add("layer/remove-color/photo",
        edit([removal] { return raster::imageWithColorRemoved(photo(), removal); }));
    const auto white = raster::ColorRemoval::of({1.0, 1.0, 1.0, 1.0}, 1.0, 0.0);
    add("layer/remove-color/drawing",
        edit([white] { return raster::imageWithColorRemoved(drawing(), white); }));
    add("layer/opaque-bounds", edit([] { return raster::opaqueBounds(drawing(), whole); }));
}

void addPeers() {
    // MiB read and written: clear, most edits, flatten.
    add("layer/memcpy", copyBytes)->Arg(64)->Arg(128)->Arg(192);
    add("layer/flip/horizontal/qimage", [](auto& s) { painterFlip(s, Qt::Horizontal); });
    add("layer/flip/vertical/qimage", [](auto& s) { painterFlip(s, Qt::Vertical); });
    add("layer/flatten/qpainter", painterFlatten);
    add("layer/rotate/qpainter", painterRotate);
#ifdef QUILLABRAE_BENCH_OPENCV
    const cv::Rect part = rectOf(inner);
    add("layer/invert/opencv", openCv(side, [](const auto& s, auto& t) { cv::bitwise_not(s, t); }));
    add("layer/crop/opencv",
        openCv(inner.width(), [part](const auto& s, auto& t) { s(part).copyTo(t); }));
    add("layer/clear/opencv",
        openCv(side, [part](const auto&, auto& t) { t(part).setTo(cv::Scalar::all(0)); }));
    add("layer/copy/opencv", openCv(side, [](const auto& s, auto& t) { s.copyTo(t); }));
    add("layer/flip/horizontal/opencv",
        openCv(side, [](const auto& s, auto& t) { cv::flip(s, t, 1); }));
    add("layer/flip/vertical/opencv",
        openCv(side, [](const auto& s, auto& t) { cv::flip(s, t, 0); }));
    add("layer/resize/opencv/6000", openCv(largeSide, openCvResize));
    add("layer/resize/opencv/2048", openCv(smallSide, openCvResize));
    add("layer/rotate/opencv", openCv(side, openCvRotate));
#endif
#ifdef QUILLABRAE_BENCH_PIXMAN
    add("layer/resize/pixman", pixmanResize)->Arg(largeSide)->Arg(smallSide);
#endif
}

const bool areRegistered = [] {
    addOurs();
    addPeers();
    return true;
}();

} // namespace
} // namespace quillabrae::bench
