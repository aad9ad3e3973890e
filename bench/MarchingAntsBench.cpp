// SPDX-License-Identifier: GPL-3.0-or-later
// A tick of the marching ants on a mask with 200,000 segments in a 1920 by 1080 viewport, and
// laying them out anew after a scroll.
#include "canvas/CanvasOverlays.h"
#include "canvas/CanvasRenderer.h"
#include "raster/DecodeCache.h"

#include <benchmark/benchmark.h>

#include <random>

namespace quillabrae::bench {
namespace {

constexpr QSizeF viewport(1920, 1080);

/// Blots all over: some 200,000 segments.
const model::PngBytes& blottedMask() {
    static const model::PngBytes mask = [] {
        constexpr int width = 1900;
        constexpr int height = 1060;
        raster::RasterImage image(width, height);
        std::mt19937 random(5);
        for (int blot = 0; blot < 9800; ++blot) {
            const int x = static_cast<int>(random() % (width - 12));
            const int y = static_cast<int>(random() % (height - 12));
            for (int line = 0; line < 10; ++line) {
                const int indent = static_cast<int>(random() % 4);
                for (int i = indent; i < 11 - indent; ++i)
                    image.mutableRow(y + line)[4 * (x + i) + 3] = 255;
            }
        }
        return raster::encodedImage(image);
    }();
    return mask;
}

canvas::CanvasFrame frameAt(double x) {
    canvas::CanvasFrame frame;
    frame.zoomScale = 1.0;
    frame.canvasOrigin = {x, 10.0};
    frame.viewportSize = viewport;
    return frame;
}

canvas::OverlayState blots() {
    canvas::OverlayState state;
    state.selection = model::PixelSelection{0.0, 0.0, 1900.0, 1060.0, blottedMask()};
    return state;
}

void tick(benchmark::State& state) {
    canvas::CanvasOverlays overlays;
    overlays.prepare(frameAt(10.0), blots());
    QImage under(viewport.toSize(), QImage::Format_RGB32);
    under.fill(Qt::gray);
    QImage target = under;
    const QRegion region = overlays.antsRegion();
    int phase = 0;
    for (auto _ : state) {
        QPainter painter(&target);
        overlays.paintAnts(painter, under, region, ++phase % 24, Qt::blue);
        overlays.paintMarks(painter, Qt::blue);
    }
    state.counters["segments"] = static_cast<double>(
        canvas::maskOutline(raster::decodedImage(blottedMask())).segments.size());
}

/// The least that a tick could do: reading the frame and writing the window.
void copyOfTheFrame(benchmark::State& state) {
    QImage under(viewport.toSize(), QImage::Format_RGB32);
    under.fill(Qt::gray);
    QImage target = under;
    for (auto _ : state) {
        QPainter painter(&target);
        painter.drawImage(0, 0, under);
    }
}

void layOut(benchmark::State& state) {
    canvas::CanvasOverlays overlays;
    double x = 10.0;
    // The outline is traced before the clock runs.
    overlays.prepare(frameAt(x), blots());
    for (auto _ : state) {
        x = x > 30.0 ? 10.0 : x + 1.0;
        overlays.prepare(frameAt(x), blots());
    }
}

BENCHMARK(tick)->Name("ants/200000segments/tick")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(copyOfTheFrame)->Name("ants/copyOfTheFrame")->Unit(benchmark::kMillisecond);
BENCHMARK(layOut)->Name("ants/200000segments/layOut")->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillabrae::bench
