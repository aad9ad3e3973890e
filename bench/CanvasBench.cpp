// SPDX-License-Identifier: GPL-3.0-or-later
// The canvas as the hand feels it: from an event to the painted viewport, on ten visible layers of
// 4096 by 4096 in a viewport of 1920 by 1080 points. Beside the mean, each benchmark gives the
// median and the 99th percentile of its steps. With QT_SCALE_FACTOR=2 in the environment all is
// shown at twice the device pixels; the counter "scale" says so.
#include "NoPanels.h"
#include "SyntheticImages.h"
#include "canvas/CanvasView.h"
#include "canvas/CanvasWidget.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "raster/DecodeCache.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <vector>

namespace {

using namespace quillabrae;

constexpr int canvasSide = 4096;
constexpr int layerCount = 10;

void startApplication() {
    static int argc = 1;
    static char name[] = "quillabrae-bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the statics that it would still need are gone when this one's turn comes.
    [[maybe_unused]] static const QApplication* const application =
        std::make_unique<QApplication>(argc, argv).release();
}

/// Counts what reaches the screen, so that no figure stands for a paint that did not happen.
class PaintCounter final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints;
        return false;
    }

    int paints = 0;
};

/// The times of single steps: a hand feels the slowest ones, not the mean.
class StepTimes {
public:
    template <typename Step>
    void time(Step step) {
        const auto start = Clock::now();
        step();
        m_microseconds.push_back(
            std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }

    void report(benchmark::State& state, double scale) {
        std::ranges::sort(m_microseconds);
        state.counters["median_us"] = percentile(50);
        state.counters["p99_us"] = percentile(99);
        state.counters["scale"] = scale;
    }

private:
    using Clock = std::chrono::steady_clock;

    double percentile(std::size_t percent) const {
        if (m_microseconds.empty()) return 0.0;
        return m_microseconds[(m_microseconds.size() - 1) * percent / 100];
    }

    std::vector<double> m_microseconds;
};

/// A store with the project, and the widget that shows it.
class Stage {
public:
    Stage() {
        widget.viewport()->installEventFilter(&counter);
        projects.createUntitledProject(canvasSide, canvasSide, 96.0);
        const model::PngBytes drawing = raster::encodedImage(bench::syntheticDrawing(canvasSide));
        projects.editActiveProject([&](model::PaintProject& project) {
            while (static_cast<int>(project.layers.size()) < layerCount) {
                model::PaintLayer layer;
                layer.id = QUuid::createUuid();
                layer.bitmapPNGData = drawing;
                layer.opacity = project.layers.size() % 3 == 0 ? 0.7 : 1.0;
                project.layers.push_back(layer);
            }
            project.selectedLayerID = project.layers[layerCount / 2].id;
        });
        widget.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        widget.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        widget.resize(1920, 1080);
        widget.show();
        settle();
    }

    void setUp(model::PaintTool tool, double width, double hardness, double zoomScale) {
        projects.editSettings([&](model::PaintAppSettings& settings) {
            settings.selectedTool = tool;
            settings.brushSize = width;
            settings.pencilHardness = hardness;
            settings.primaryColor = {0.8, 0.1, 0.1, 0.6};
            settings.zoomScale = zoomScale;
        });
        widget.view().zoom().centerCanvasInViewport();
        settle();
    }

    static void settle() { QApplication::processEvents(); }

    void send(QEvent::Type type, QPointF at, Qt::MouseButton button) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, at, button, held, Qt::NoModifier);
        QApplication::sendEvent(widget.viewport(), &event);
        settle();
    }
    void press(QPointF at) { send(QEvent::MouseButtonPress, at, Qt::LeftButton); }
    void move(QPointF at) { send(QEvent::MouseMove, at, Qt::NoButton); }
    void release(QPointF at) { send(QEvent::MouseButtonRelease, at, Qt::LeftButton); }

    /// Runs and times the steps. Fails a run in which not every one was painted.
    template <typename Step>
    void timeSteps(benchmark::State& state, Step step) {
        StepTimes times;
        const int paintsBefore = counter.paints;
        for (auto _ : state) times.time(step);
        times.report(state, widget.viewport()->devicePixelRatioF());
        if (counter.paints - paintsBefore < static_cast<int>(state.iterations()))
            state.SkipWithError("a step was not painted");
    }

    PaintCounter counter;
    QTemporaryDir home;
    bench::NoPanels panels;
    platform::MemoryPreferences preferences;
    platform::SystemClock clock;
    platform::NoFileIcons icons;
    platform::MemoryPasteboard pasteboard;
    store::ProjectStore projects{
        {panels, preferences, clock, icons, pasteboard, platform::AppPaths::under(home.path())},
        store::Persistence::off};
    canvas::CanvasWidget widget{projects};
};

Stage& stage() {
    startApplication();
    static Stage theStage;
    return theStage;
}

/// A walk around the middle of the viewport, in steps of `length` points.
QPointF walk(int step, double length) {
    constexpr double radius = 300.0;
    const double angle = step * length / radius;
    return {960.0 + radius * std::cos(angle), 540.0 + radius * std::sin(angle)};
}

/// Arguments: stroke width in canvas pixels, hardness, zoom in percent.
void strokeSample(benchmark::State& state) {
    Stage& canvas = stage();
    canvas.setUp(model::PaintTool::pencil, static_cast<double>(state.range(0)),
                 static_cast<double>(state.range(1)), static_cast<double>(state.range(2)) / 100.0);
    constexpr double stepLength = 8.0;
    int step = 0;
    canvas.press(walk(step, stepLength));
    canvas.timeSteps(state, [&] { canvas.move(walk(++step, stepLength)); });
    canvas.widget.view().cancelDrawing();
    canvas.release(walk(step, stepLength));
}
BENCHMARK(strokeSample)
    ->Name("canvas/stroke_sample")
    ->ArgNames({"width", "hardness", "zoom"})
    ->ArgsProduct({{20, 512}, {100, 0}, {22, 100, 400}})
    ->Unit(benchmark::kMicrosecond);

/// From the press to its dot on screen.
void strokePress(benchmark::State& state) {
    Stage& canvas = stage();
    canvas.setUp(model::PaintTool::pencil, 20.0, 100.0, 1.0);
    for (auto _ : state) {
        canvas.press({900.0, 500.0});
        state.PauseTiming();
        canvas.widget.view().cancelDrawing();
        canvas.release({900.0, 500.0});
        state.ResumeTiming();
    }
}
BENCHMARK(strokePress)->Name("canvas/stroke_press")->Unit(benchmark::kMillisecond);

/// From the release to the stored layer, its history entry and the repainted viewport.
void strokeRelease(benchmark::State& state) {
    Stage& canvas = stage();
    canvas.setUp(model::PaintTool::pencil, 20.0, 100.0, 1.0);
    int step = 0;
    for (auto _ : state) {
        state.PauseTiming();
        canvas.press({800.0, 500.0});
        canvas.move({1100.0, 500.0 + step++ % 50});
        state.ResumeTiming();
        canvas.release({1100.0, 500.0});
    }
}
BENCHMARK(strokeRelease)->Name("canvas/stroke_release")->Unit(benchmark::kMillisecond);

/// Argument: zoom in percent.
void scrollRepaint(benchmark::State& state) {
    Stage& canvas = stage();
    canvas.setUp(model::PaintTool::pencil, 20.0, 100.0,
                 static_cast<double>(state.range(0)) / 100.0);
    int step = 0;
    canvas.timeSteps(state, [&] {
        canvas.widget.view().scrollBy({0.0, step++ % 2 == 0 ? 40.0 : -40.0});
        Stage::settle();
    });
}
BENCHMARK(scrollRepaint)
    ->Name("canvas/scroll_repaint")
    ->ArgName("zoom")
    ->Arg(22)
    ->Arg(47)
    ->Arg(100)
    ->Arg(400)
    ->Unit(benchmark::kMillisecond);

/// Argument: the zoom in percent that the wheel goes in from and back to.
void zoomRepaint(benchmark::State& state) {
    Stage& canvas = stage();
    canvas.setUp(model::PaintTool::pencil, 20.0, 100.0,
                 static_cast<double>(state.range(0)) / 100.0);
    int step = 0;
    canvas.timeSteps(state, [&] {
        canvas.widget.view().applyWheelZoom(step++ % 2 == 0 ? 0.5 : -0.5);
        Stage::settle();
    });
}
BENCHMARK(zoomRepaint)
    ->Name("canvas/zoom_repaint")
    ->ArgName("zoom")
    ->Arg(22)
    ->Arg(50)
    ->Arg(100)
    ->Arg(400)
    ->Unit(benchmark::kMillisecond);

} // namespace
