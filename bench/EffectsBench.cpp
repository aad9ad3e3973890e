// SPDX-License-Identifier: GPL-3.0-or-later
// The effects on pictures of 4096 by 4096, on two threads, beside what they are held to: OpenCV's
// Gaussian blur of the same deviation with one addition, and a copy of the picture. "photo" is
// opaque, "drawing" translucent.
// The CPU column counts all threads of the process, so it compares what other work on the machine
// disturbs. For medians: --benchmark_repetitions=5 --benchmark_report_aggregates_only=true.
#include "SyntheticImages.h"
#include "effects/PluginEffectService.h"
#include "raster/Parallel.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#ifdef QUILLABRAE_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace quillabrae::bench {
namespace {

using effects::QuillabraePluginEffect;

constexpr int side = 4096;
constexpr int threads = 2;

const raster::RasterImage& photo() {
    static const raster::RasterImage picture = syntheticPhoto(side);
    return picture;
}

const raster::RasterImage& drawing() {
    static const raster::RasterImage picture = syntheticDrawing(side);
    return picture;
}

void effect(benchmark::State& state, QuillabraePluginEffect effect,
            const raster::RasterImage& picture) {
    const raster::ParallelThreadLimit limit(threads);
    for (auto _ : state)
        benchmark::DoNotOptimize(effects::PluginEffectService::apply(effect, picture));
}

void copy(benchmark::State& state) {
    const raster::RasterImage& picture = photo();
    std::vector<std::uint8_t> target(picture.byteCount());
    for (auto _ : state) {
        std::memcpy(target.data(), picture.row(0), picture.byteCount());
        benchmark::ClobberMemory();
    }
}

#ifdef QUILLABRAE_BENCH_OPENCV
void peerBloom(benchmark::State& state) {
    cv::setNumThreads(threads);
    // Only read.
    const cv::Mat picture(side, side, CV_8UC4, const_cast<std::uint8_t*>(photo().row(0)));
    cv::Mat glow;
    cv::Mat sum;
    for (auto _ : state) {
        cv::GaussianBlur(picture, glow, cv::Size(), 7.0);
        cv::add(picture, glow, sum);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(peerBloom)
    ->Name("effects/peer/blur-and-add/opencv")
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
#endif

BENCHMARK(copy)
    ->Name("effects/peer/memcpy")
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

const int registered = [] {
    for (const QuillabraePluginEffect each : effects::allPluginEffects()) {
        const std::string name = "effects/" + rawText(each).toStdString();
        for (const bool isPhoto : {true, false}) {
            benchmark::RegisterBenchmark((name + (isPhoto ? "/photo" : "/drawing")).c_str(),
                                         [each, isPhoto](benchmark::State& state) {
                                             effect(state, each, isPhoto ? photo() : drawing());
                                         })
                ->MeasureProcessCPUTime()
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    return 0;
}();

} // namespace
} // namespace quillabrae::bench
