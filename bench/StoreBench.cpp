// SPDX-License-Identifier: GPL-3.0-or-later
// What the store answers on every repaint and does after every edit, on projects of 4096 by 4096.
#include "NoPanels.h"
#include "SyntheticImages.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "platform/MemoryPasteboard.h"
#include "platform/MemoryPreferences.h"
#include "raster/PngCodec.h"
#include "store/ProjectStore.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace quillabrae::bench {
namespace {

using store::ProjectStore;

constexpr int side = 4096;

/// A store with one project, in a folder of its own.
struct Editor {
    explicit Editor(store::Persistence kept = store::Persistence::on) : persistence(kept) {}

    store::Persistence persistence;
    QTemporaryDir folder;
    NoPanels panels;
    platform::MemoryPreferences preferences;
    platform::SystemClock clock;
    platform::NoFileIcons icons;
    platform::MemoryPasteboard pasteboard;
    ProjectStore store{
        {panels, preferences, clock, icons, pasteboard, platform::AppPaths::under(folder.path())},
        persistence};
    QUuid id = store.createUntitledProject(side, side, 96).id;

    /// Layers that share no bytes: the first one a photo, the others drawings.
    void addLayers(int count) {
        const QByteArray photo = raster::encodePng(syntheticPhoto(side)).toByteArray();
        const QByteArray drawing = raster::encodePng(syntheticDrawing(side)).toByteArray();
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.resize(static_cast<std::size_t>(count));
            for (model::PaintLayer& layer : project.layers) {
                const QByteArray& bytes = &layer == &project.layers.front() ? photo : drawing;
                layer.id = QUuid::createUuid();
                layer.bitmapPNGData = model::PngBytes(QByteArray(bytes.constData(), bytes.size()));
            }
        });
    }

    void touch(double opacity) {
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.back().opacity = opacity;
            project.lastModified = clock.now();
        });
    }
};

void needApplication() {
    if (QCoreApplication::instance()) return;
    static int argumentCount = 1;
    static char name[] = "quillabrae-bench";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(argumentCount, arguments);
}

enum class Change { none, oneLayer, lastByteOfOneLayer };

model::PngBytes changed(const model::PngBytes& bytes, Change change) {
    QByteArray copy = bytes.toByteArray();
    // A stroke gives bytes of another length; what follows is the slowest case there is.
    if (change == Change::oneLayer)
        copy.chop(1);
    else
        copy.back() = static_cast<char>(copy.back() ^ 1);
    return model::PngBytes(copy);
}

void hasUnsavedChanges(benchmark::State& state, Change change) {
    needApplication();
    Editor editor;
    editor.addLayers(10);
    const QUrl package =
        QUrl::fromLocalFile(editor.folder.filePath(QStringLiteral("a.quillabrae")));
    if (!editor.store.saveProject(0, {package, persistence::SaveFormat::project}))
        return state.SkipWithError("the project could not be saved");
    if (change != Change::none) {
        editor.store.editActiveProject([&](model::PaintProject& project) {
            auto& pixels = project.layers.back().bitmapPNGData;
            pixels = changed(*pixels, change);
        });
    }
    bool isUnsaved = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(isUnsaved = editor.store.hasUnsavedChanges(editor.id));
    if (isUnsaved != (change != Change::none)) state.SkipWithError("a wrong answer");
}
BENCHMARK_CAPTURE(hasUnsavedChanges, unchanged, Change::none)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(hasUnsavedChanges, one_layer_changed, Change::oneLayer)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(hasUnsavedChanges, last_byte_changed, Change::lastByteOfOneLayer)
    ->Unit(benchmark::kMicrosecond);

/// An edit with its history entry and recovery file, without and with the
/// entries before it in the file.
void recordHistory(benchmark::State& state) {
    needApplication();
    Editor editor;
    editor.preferences.setValue(QStringLiteral("Quillabrae.keepRecoveryHistory"),
                                state.range(0) != 0);
    editor.addLayers(1);
    int edits = 0;
    for (auto _ : state) {
        editor.touch(++edits % 2 == 0 ? 1.0 : 0.5);
        editor.store.recordHistory(editor.id, QStringLiteral("Edit"), QStringLiteral("pencil"));
    }
    const QString file =
        editor.folder.filePath(QStringLiteral(".local/share/Quillabrae/Autosave/"
                                              "Recovery.quillabraesession"));
    state.counters["file_MB"] = double(QFileInfo(file).size()) / 1e6;
}
BENCHMARK(recordHistory)->ArgName("keeps_history")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

constexpr int manyLayers = 20;

/// Back and forth over a command that rewrote every layer. The recovery file is another matter.
void undoAndRedo(benchmark::State& state) {
    needApplication();
    Editor editor(store::Persistence::off);
    editor.addLayers(manyLayers);
    editor.store.recordHistory(editor.id, QStringLiteral("Layers"), QStringLiteral("plus.square"));
    editor.store.resizeActiveImage({side / 2.0, side / 2.0, 96, model::CanvasAnchor::center});
    for (auto _ : state) {
        editor.store.undo(editor.id);
        editor.store.redo(editor.id);
    }
    if (editor.store.activeProject()->canvasWidth != side / 2.0)
        state.SkipWithError("the command was not brought back");
}
BENCHMARK(undoAndRedo)->Unit(benchmark::kMicrosecond);

/// The longest command there is: every layer is decoded, drawn anew and encoded.
void resizeCanvas(benchmark::State& state) {
    needApplication();
    Editor editor(store::Persistence::off);
    editor.addLayers(manyLayers);
    for (auto _ : state)
        editor.store.resizeActiveCanvas({side, side, 96, model::CanvasAnchor::center});
}
BENCHMARK(resizeCanvas)->Iterations(2)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillabrae::bench
