// SPDX-License-Identifier: GPL-3.0-or-later
// Selections of a 4096 by 4096 canvas: the search for a region of over half of it, alone and beside
// OpenCV's floodFill, and masks with their PNG. "share" is the region's part of the canvas. The
// layer is decoded before; every PNG written is compressed afresh.
// For medians: --benchmark_repetitions=5 --benchmark_report_aggregates_only=true.
#include "SyntheticImages.h"
#include "raster/LayerRasterService.h"
#include "raster/LayerRasterServiceMasks.h"
#include "raster/LayerRasterServiceRegions.h"
#include "raster/Parallel.h"
#include "raster/SimilarRegion.h"

#include <QPainter>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#ifdef QUILLABRAE_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace quillabrae::bench {
namespace {

namespace Engine = raster::LayerRasterService;

constexpr int side = 4096;
constexpr QPoint seed(1, 1);
/// By the distance of all components, and, for the peer, by each component.
constexpr double matchPercentage = 5.0;
[[maybe_unused]] constexpr double componentDifference = 12.0;

/// flat: one colour with spots on it. noisy: the same under noise that still matches. torn: every
/// fourth pixel of the background does not match. drawing: translucent strokes on nothing.
enum class Ground { flat, noisy, torn, drawing };
constexpr Ground grounds[] = {Ground::flat, Ground::noisy, Ground::torn, Ground::drawing};

const char* nameOf(Ground ground) {
    switch (ground) {
        case Ground::flat:
            return "flat";
        case Ground::noisy:
            return "noisy";
        case Ground::torn:
            return "torn";
        case Ground::drawing:
            return "drawing";
    }
    return "";
}

raster::RasterImage spots() {
    raster::RasterImage image(side, side);
    QImage target = image.paintTarget();
    target.fill(QColor(200, 180, 160));
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    std::minstd_rand random(5);
    const auto upTo = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int i = 0; i < 160; ++i) {
        painter.setBrush(QColor::fromHsv(upTo(360), 160 + upTo(90), 200));
        painter.drawEllipse(QRect(8 + upTo(side), 8 + upTo(side), 40 + upTo(400), 40 + upTo(400)));
    }
    return image;
}

raster::RasterImage disturbed(raster::RasterImage image, Ground ground) {
    std::minstd_rand random(6);
    // Around the seed nothing changes.
    constexpr int corner = 8;
    for (int y = 0; y < side; ++y) {
        std::uint8_t* row = image.mutableRow(y);
        for (std::size_t x = y < corner ? corner : 0; x < side; ++x) {
            std::uint8_t* const pixel = row + 4 * x;
            if (ground == Ground::torn && random() % 4 == 0) pixel[0] = 20;
            if (ground != Ground::noisy) continue;
            for (int c = 0; c < 3; ++c)
                pixel[c] = static_cast<std::uint8_t>(std::min(pixel[c] + random() % 8U, 255UL));
        }
    }
    return image;
}

const raster::RasterImage& picture(Ground ground) {
    static std::map<Ground, raster::RasterImage> pictures;
    raster::RasterImage& image = pictures[ground];
    if (image.isNull())
        image = ground == Ground::drawing ? syntheticDrawing(side)
                : ground == Ground::flat  ? spots()
                                          : disturbed(spots(), ground);
    return image;
}

model::PaintLayer layerOf(Ground ground) {
    model::PaintLayer layer;
    layer.bitmapPNGData = Engine::pngData(picture(ground));
    return layer;
}

double shareOf(const raster::SimilarRegion& region) {
    std::vector<std::uint8_t> cells(static_cast<std::size_t>(region.bounds().width()));
    double count = 0.0;
    for (int y = region.bounds().top(); y <= region.bounds().bottom(); ++y) {
        region.fillRow(region.bounds().left(), y, cells);
        count += static_cast<double>(std::ranges::count(cells, 255));
    }
    return count / side / side;
}

void search(benchmark::State& state, Ground ground, int threads) {
    const raster::ParallelThreadLimit limit(threads);
    const raster::RasterImage& image = picture(ground);
    for (auto _ : state)
        benchmark::DoNotOptimize(raster::SimilarRegion(image, seed, matchPercentage).bounds());
    state.counters["share"] = shareOf(raster::SimilarRegion(image, seed, matchPercentage));
}

#ifdef QUILLABRAE_BENCH_OPENCV
/// Three components: floodFill takes no fourth. It marks the region in a mask, as we do.
void searchByPeer(benchmark::State& state, Ground ground) {
    const raster::RasterImage& image = picture(ground);
    cv::Mat rgb;
    cv::cvtColor(cv::Mat(side, side, CV_8UC4, const_cast<std::uint8_t*>(image.bytes().data())), rgb,
                 cv::COLOR_RGBA2RGB);
    cv::Mat mask(side + 2, side + 2, CV_8UC1);
    const cv::Scalar difference = cv::Scalar::all(componentDifference);
    int count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        mask.setTo(0);
        state.ResumeTiming();
        count = cv::floodFill(rgb, mask, cv::Point(seed.x(), seed.y()), cv::Scalar(), nullptr,
                              difference, difference,
                              4 | cv::FLOODFILL_FIXED_RANGE | cv::FLOODFILL_MASK_ONLY | 255 << 8);
    }
    state.counters["share"] = static_cast<double>(count) / side / side;
}
#endif

void wholeWand(benchmark::State& state, Ground ground) {
    const model::PaintLayer layer = layerOf(ground);
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine::magicWandSelection(
            layer, side, side, {static_cast<double>(seed.x()), static_cast<double>(seed.y())},
            matchPercentage));
}

void wholeBucket(benchmark::State& state, Ground ground) {
    const model::PaintLayer layer = layerOf(ground);
    for (auto _ : state) {
        model::PaintLayer filled = layer;
        Engine::fillSimilarPixels(filled, side, side,
                                  {static_cast<double>(seed.x()), static_cast<double>(seed.y())},
                                  {0.1, 0.5, 0.2, 0.8}, matchPercentage);
        benchmark::DoNotOptimize(filled);
    }
}

void ellipseMask(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Engine::ellipseSelectionMask(side, side));
}

void lassoMask(benchmark::State& state, int points) {
    std::vector<model::CanvasPoint> line;
    for (int i = 0; i < points; ++i) {
        const double turn = 3.0 * 2.0 * M_PI * i / points;
        const double reach = side / 2.0 * (0.7 + 0.3 * std::cos(turn * 7.1));
        line.push_back({side / 2.0 + reach * std::cos(turn), side / 2.0 + reach * std::sin(turn)});
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine::lassoSelectionMask(line, QRectF(0.0, 0.0, side, side)));
}

void combination(benchmark::State& state) {
    const model::PixelSelection first{0.0, 0.0, side, side,
                                      Engine::ellipseSelectionMask(side, side)};
    const model::PixelSelection second{700.0, 900.0, 2000.0, 2000.0,
                                       Engine::ellipseSelectionMask(2000.0, 2000.0)};
    for (auto _ : state)
        benchmark::DoNotOptimize(
            Engine::combinedSelection(first, second, model::SelectionCombineOperation::subtract));
}

template <typename Fn, typename... Arguments>
void add(const std::string& name, Fn fn, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), fn, arguments...)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

const bool areRegistered = [] {
    for (const Ground ground : grounds) {
        const std::string name = nameOf(ground);
        for (const int threads : {1, 2})
            add("region/search/" + name + "/" + std::to_string(threads) + "threads", search, ground,
                threads);
#ifdef QUILLABRAE_BENCH_OPENCV
        add("region/search/" + name + "/opencv", searchByPeer, ground);
#endif
        add("region/wand/" + name, wholeWand, ground);
        add("region/bucket/" + name, wholeBucket, ground);
    }
    add("mask/ellipse", ellipseMask);
    add("mask/lasso/500points", lassoMask, 500);
    add("mask/lasso/20000points", lassoMask, 20'000);
    add("mask/subtract", combination);
    return true;
}();

} // namespace
} // namespace quillabrae::bench
