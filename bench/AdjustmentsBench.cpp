// SPDX-License-Identifier: GPL-3.0-or-later
// From a change in a dialog to its effect on a layer of 12 megapixels, as the canvas reads it.
#include "EmptyStore.h"
#include "SyntheticImages.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "store/ProjectStore.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

namespace quillabrae::bench {
namespace {

namespace Raster = raster::LayerRasterService;
using Settings = store::ColorRemovalSettings;

/// 12 megapixels.
constexpr int side = 3464;

void needApplication() {
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argumentCount = 1;
    static char name[] = "bench";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(argumentCount, arguments);
}

/// A store with one layer.
struct Editor : TryingStore {
    explicit Editor(const raster::RasterImage& picture) {
        store.createUntitledProject(side, side, 96);
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.front().bitmapPNGData = raster::encodedImage(picture);
        });
    }
    /// The layer as it is painted.
    raster::RasterImage shown() const {
        return Raster::renderLayer(store.activeProject()->layers.front(), side, side);
    }
};

/// Runs the event loop until observers hear of a change.
void waitForChange(store::ProjectStore& store) {
    bool hasChanged = false;
    const auto connection = QObject::connect(&store, &store::ProjectStore::projectChanged, &store,
                                             [&hasChanged] { hasChanged = true; });
    while (!hasChanged) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QObject::disconnect(connection);
}

Settings nextSettings(int& count) {
    return {1.0, double(++count % 100), store::ColorRemovalPreset::orange};
}

/// What is waited for on the clock: the first change that shows, or all of it.
enum class Look { first, whole };

void removeColor(benchmark::State& state, Look look) {
    needApplication();
    Editor editor(syntheticPhoto(side));
    editor.store.beginColorRemovalPreview();
    int count = 0;
    for (auto _ : state) {
        const Settings settings = nextSettings(count);
        const auto waitForAll = [&] {
            while (editor.store.colorRemovalPreviewSettings() != settings)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        };
        editor.store.previewColorRemoval(settings);
        if (look == Look::first)
            waitForChange(editor.store);
        else
            waitForAll();
        benchmark::DoNotOptimize(editor.shown());
        state.PauseTiming();
        waitForAll();
        state.ResumeTiming();
    }
}

/// An object of a megapixel on nothing.
raster::RasterImage object() {
    raster::RasterImage image(side, side);
    Raster::drawImage(image, syntheticPhoto(1024), QRect(700, 900, 1024, 1024));
    return image;
}

void align(benchmark::State& state) {
    needApplication();
    Editor editor(object());
    editor.store.beginAlignObjectPreview();
    int count = 0;
    for (auto _ : state) {
        editor.store.previewAlignObject(++count % 2 == 0 ? store::AlignObjectAction::center
                                                         : store::AlignObjectAction::bottomRight);
        benchmark::DoNotOptimize(editor.shown());
    }
}

BENCHMARK_CAPTURE(removeColor, first, Look::first)
    ->Name("adjust/remove-color/first")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(removeColor, whole, Look::whole)
    ->Name("adjust/remove-color/whole")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(align)->Name("adjust/align")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillabrae::bench
