// SPDX-License-Identifier: GPL-3.0-or-later
// One sample of a live stroke: a piece of six pixels' length on a layer, and a whole stroke of two
// hundred points in one go. Beside them QPainter with a round pen, in its fastest format and in
// ours, and with a soft edge made of passes.
#include "raster/LayerRasterService.h"
#include "raster/Parallel.h"
#include "raster/StrokeEdge.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

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

/// A way round the middle of a layer, six pixels at a time, each piece from the end of the last.
class Way {
public:
    explicit Way(int layerSide) : m_middle(layerSide / 2.0), m_radius(layerSide * 0.22) {}

    std::vector<model::CanvasPoint> next() {
        const model::CanvasPoint from = at(m_turn);
        m_turn += 6.0 / m_radius;
        return {from, at(m_turn)};
    }

private:
    model::CanvasPoint at(double turn) const {
        return {m_middle + m_radius * std::cos(turn), m_middle + m_radius * std::sin(turn)};
    }

    double m_middle;
    double m_radius;
    double m_turn = 0.0;
};

void sample(benchmark::State& state, model::PaintTool tool, int layerSide, int width, int hardness,
            int threads) {
    const raster::ParallelThreadLimit limit(threads);
    raster::RasterImage image(layerSide, layerSide);
    model::PaintStroke stroke = strokeOf(tool, width, hardness);
    Way way(layerSide);
    // The pages that are drawn on are there before the clock runs.
    for (int i = 0; i < layerSide / 4; ++i) {
        stroke.points = way.next();
        raster::LayerRasterService::drawStroke(stroke, image, layerSide, layerSide);
    }
    for (auto _ : state) {
        stroke.points = way.next();
        benchmark::DoNotOptimize(
            raster::LayerRasterService::drawStroke(stroke, image, layerSide, layerSide));
    }
}

/// What the first sample of a stroke costs: its edge is not known from the sample before.
void firstSample(benchmark::State& state, int width, int hardness) {
    raster::RasterImage image(side, side);
    model::PaintStroke stroke = strokeOf(model::PaintTool::pencil, width, hardness);
    Way way(side);
    for (auto _ : state) {
        stroke.lineWidth = stroke.lineWidth > width ? width : width + 0.01;
        stroke.points = way.next();
        benchmark::DoNotOptimize(raster::LayerRasterService::drawStroke(stroke, image, side, side));
    }
}

void qpainterSample(benchmark::State& state, QImage::Format format, int width, int hardness) {
    QImage image(side, side, format);
    image.fill(Qt::transparent);
    const auto passes = raster::brushPasses(
        width, hardness == hard ? std::nullopt : std::optional<double>(hardness), 1.0,
        raster::StrokeForm::line);
    Way way(side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (auto _ : state) {
        const auto points = way.next();
        for (const raster::BrushPass& pass : passes) {
            painter.setPen(QPen(QColor::fromRgbF(0.8F, 0.1F, 0.2F, static_cast<float>(pass.alpha)),
                                2.0 * pass.radius, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawLine(QPointF(points[0].x, points[0].y), QPointF(points[1].x, points[1].y));
        }
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
    using model::PaintTool;
    for (const int width : {20, 512}) {
        const std::string size = std::to_string(width);
        for (const int threads : {1, 2}) {
            const std::string end = "/" + size + "/" + std::to_string(threads) + "threads";
            add("stroke/sample/hard" + end, sample, PaintTool::pencil, side, width, hard, threads);
            add("stroke/sample/soft" + end, sample, PaintTool::pencil, side, width, soft, threads);
            add("stroke/sample/eraser-soft" + end, sample, PaintTool::eraser, side, width, soft,
                threads);
        }
        add("stroke/first-sample/soft/" + size, firstSample, width, soft);
        add("stroke/200points/hard/" + size, wholeStroke, width, hard);
        add("stroke/200points/soft/" + size, wholeStroke, width, soft);
        add("stroke/sample/hard/" + size + "/qpainter-argb32", qpainterSample,
            QImage::Format_ARGB32_Premultiplied, width, hard);
        add("stroke/sample/hard/" + size + "/qpainter-rgba8888", qpainterSample,
            QImage::Format_RGBA8888_Premultiplied, width, hard);
        add("stroke/sample/soft/" + size + "/qpainter-argb32", qpainterSample,
            QImage::Format_ARGB32_Premultiplied, width, soft);
    }
    for (const int layerSide : {512, 8192})
        add("stroke/sample/hard/20/layer-" + std::to_string(layerSide), sample, PaintTool::pencil,
            layerSide, 20, hard, 2);
    return true;
}();

} // namespace
} // namespace quillabrae::bench
