// SPDX-License-Identifier: GPL-3.0-or-later
// One sample of a live stroke: a piece of ten pixels' length on a 4096 by 4096 layer, and a whole
// stroke of two hundred points in one go.
#include "raster/LayerRasterService.h"
#include "raster/Parallel.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <optional>
#include <string>

namespace quillabrae::bench {
namespace {

constexpr int side = 4096;
constexpr int soft = 0;
constexpr int hard = 100;

model::PaintStroke strokeOf(model::PaintTool tool, int width, int hardness) {
    model::PaintStroke stroke;
    stroke.tool = tool;
    stroke.color = {0.8, 0.1, 0.2, 1.0};
    stroke.lineWidth = width;
    stroke.hardness = hardness;
    return stroke;
}

void sample(benchmark::State& state, model::PaintTool tool, int width, int hardness, int threads) {
    const raster::ParallelThreadLimit limit(threads);
    raster::RasterImage image(side, side);
    model::PaintStroke stroke = strokeOf(tool, width, hardness);
    double turn = 0.0;
    for (auto _ : state) {
        turn += 0.1;
        const double x = side / 2.0 + 900.0 * std::cos(turn);
        const double y = side / 2.0 + 900.0 * std::sin(turn);
        stroke.points = {{x, y}, {x + 8.0, y + 6.0}};
        benchmark::DoNotOptimize(raster::LayerRasterService::drawStroke(stroke, image, side, side));
    }
}

void wholeStroke(benchmark::State& state, int width, int hardness) {
    raster::RasterImage image(side, side);
    model::PaintStroke stroke = strokeOf(model::PaintTool::pencil, width, hardness);
    for (int i = 0; i < 200; ++i)
        stroke.points.push_back({300.0 + 15.0 * i, side / 2.0 + 1000.0 * std::sin(i * 0.05)});
    for (auto _ : state)
        benchmark::DoNotOptimize(raster::LayerRasterService::drawStroke(stroke, image, side, side));
}

template <typename Fn, typename... Arguments>
void add(const std::string& name, Fn fn, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), fn, arguments...)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

const bool areRegistered = [] {
    for (const int width : {20, 512}) {
        const std::string size = std::to_string(width);
        for (const int threads : {1, 2}) {
            const std::string end = "/" + size + "/" + std::to_string(threads) + "threads";
            add("stroke/sample/hard" + end, sample, model::PaintTool::pencil, width, hard, threads);
            add("stroke/sample/soft" + end, sample, model::PaintTool::pencil, width, soft, threads);
            add("stroke/sample/eraser-soft" + end, sample, model::PaintTool::eraser, width, soft,
                threads);
        }
        add("stroke/200points/hard/" + size, wholeStroke, width, hard);
        add("stroke/200points/soft/" + size, wholeStroke, width, soft);
    }
    return true;
}();

} // namespace
} // namespace quillabrae::bench
