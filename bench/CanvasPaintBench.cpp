// SPDX-License-Identifier: GPL-3.0-or-later
// Painting the canvas of a 4096 by 4096 project in a 1920 by 1080 viewport: all of it, and what one
// sample of a stroke touches.
#include "SyntheticImages.h"
#include "canvas/CanvasRenderer.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <string>

namespace quillabrae::bench {
namespace {

constexpr int side = 4096;
constexpr QSizeF viewport(1920, 1080);

/// A photo below drawings.
const model::PaintProject& projectOf(int layerCount) {
    static std::map<int, model::PaintProject> projects;
    model::PaintProject& project = projects[layerCount];
    if (!project.layers.empty()) return project;
    raster::setDecodeCacheBudget(std::size_t{2} << 30);
    project.canvasWidth = side;
    project.canvasHeight = side;
    for (int i = 0; i < layerCount; ++i) {
        raster::RasterImage image = i == 0 ? syntheticPhoto(side) : syntheticDrawing(side);
        // Pixels of their own for each layer, as layers have.
        image.mutableRow(0)[3] = static_cast<std::uint8_t>(255 - i);
        model::PaintLayer layer;
        layer.id = QUuid::createUuid();
        layer.opacity = i % 3 == 1 ? 0.8 : 1.0;
        layer.bitmapPNGData = raster::LayerRasterService::pngData(image);
        project.layers.push_back(layer);
    }
    return project;
}

canvas::CanvasFrame frameOf(const model::PaintProject& project, double zoom, double ratio) {
    canvas::CanvasFrame frame;
    frame.project = &project;
    frame.zoomScale = zoom;
    frame.devicePixelRatio = ratio;
    frame.viewportSize = viewport;
    frame.canvasOrigin = zoom > 1.0 ? QPointF(-700, -900) : QPointF(0, 0);
    frame.showsPixelGrid = true;
    return frame;
}

QImage targetOf(const canvas::CanvasFrame& frame) {
    QImage target((frame.viewportSize * frame.devicePixelRatio).toSize(), QImage::Format_RGB32);
    target.setDevicePixelRatio(frame.devicePixelRatio);
    target.fill(Qt::gray);
    return target;
}

void wholeViewport(benchmark::State& state, int layerCount, double zoom, double ratio) {
    const canvas::CanvasFrame frame = frameOf(projectOf(layerCount), zoom, ratio);
    QImage target = targetOf(frame);
    canvas::CanvasRenderer renderer;
    const auto paint = [&] {
        QPainter painter(&target);
        renderer.paint(painter, frame, QRect(QPoint(0, 0), viewport.toSize()));
    };
    // Which tiles are empty or opaque is known from the first paint on.
    paint();
    for (auto _ : state) paint();
}

void strokeSample(benchmark::State& state, int layerCount, double width, bool drawsToo) {
    const model::PaintProject& project = projectOf(layerCount);
    canvas::CanvasFrame frame = frameOf(project, 1.0, 1.0);
    const std::size_t liveIndex = project.layers.size() / 2;
    raster::RasterImage live =
        raster::LayerRasterService::renderLayer(project.layers[liveIndex], side, side);
    frame.liveLayerID = project.layers[liveIndex].id;
    frame.liveImage = &live;
    QImage target = targetOf(frame);
    canvas::CanvasRenderer renderer;
    model::PaintStroke stroke;
    stroke.tool = model::PaintTool::pencil;
    stroke.lineWidth = width;
    stroke.hardness = 20;
    double turn = 0.0;
    const auto sample = [&] {
        turn += 0.05;
        const double x = 960 + 300 * std::cos(turn);
        const double y = 540 + 300 * std::sin(turn);
        stroke.points = {{x, y}, {x + 8, y + 6}};
        QRect dirty(static_cast<int>(x - width / 2), static_cast<int>(y - width / 2),
                    static_cast<int>(width) + 8, static_cast<int>(width) + 6);
        if (drawsToo) dirty = raster::LayerRasterService::drawStroke(stroke, live, side, side);
        QPainter painter(&target);
        renderer.paint(painter, frame, canvas::viewportRect(frame, dirty));
    };
    // Once around: the live image is no longer shared, and the stroke's surroundings are made.
    for (int i = 0; i < 130; ++i) sample();
    for (auto _ : state) sample();
}

template <typename Fn, typename... Arguments>
void add(const std::string& name, Fn fn, Arguments... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), fn, arguments...)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

const bool areRegistered = [] {
    for (const int layers : {1, 10}) {
        const std::string start = "canvas/viewport/" + std::to_string(layers) + "layers";
        for (const auto& [name, zoom] :
             {std::pair("0.26", 0.26), std::pair("0.47", 0.47), std::pair("1", 1.0),
              std::pair("3", 3.0), std::pair("8", 8.0)}) {
            add(start + "/1x/zoom" + name, wholeViewport, layers, zoom, 1.0);
            add(start + "/2x/zoom" + name, wholeViewport, layers, zoom, 2.0);
        }
    }
    for (const int width : {20, 512}) {
        const std::string end = "/" + std::to_string(width);
        add("canvas/sample/1layers/paint" + end, strokeSample, 1, width, false);
        add("canvas/sample/10layers/paint" + end, strokeSample, 10, width, false);
        add("canvas/sample/10layers/draw+paint" + end, strokeSample, 10, width, true);
    }
    return true;
}();

} // namespace
} // namespace quillabrae::bench
