// SPDX-License-Identifier: GPL-3.0-or-later
// What an edit costs the panels: following the store and painting, with 30 layers and 200 steps of
// history, at one and two device pixels a point; and how long the windows beside the editor take to
// open. A program of its own, since widgets need another application object than the other
// benchmarks have.
#include "EmptyStore.h"
#include "SyntheticImages.h"
#include "UsualLook.h"
#include "effects/OpenAIKeychainService.h"
#include "effects/PluginLibraryService.h"
#include "platform/DesktopBrowser.h"
#include "platform/MemorySecretStore.h"
#include "platform/NetworkHttpClient.h"
#include "platform/SecureRandom.h"
#include "raster/DecodeCache.h"
#include "services/BrowserAuthentication.h"
#include "services/QuillabraeAccountService.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayerList.h"
#include "shell/panels/LayerListModel.h"
#include "shell/panels/LayersPanel.h"
#include "shell/plugins/PluginLibraryView.h"
#include "shell/settings/PaintSettingsView.h"
#include "store/ProjectStore.h"

#include <QApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

namespace quillabrae::bench {
namespace {

constexpr int side = 2048;
constexpr int layerCount = 30;
constexpr int stepCount = 200;

/// A full project, and the two panels that follow it.
struct Editor : EmptyStore {
    Editor() {
        store.createUntitledProject(side, side, 96);
        const raster::RasterImage picture = syntheticDrawing(side);
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.resize(layerCount);
            for (model::PaintLayer& layer : project.layers) {
                layer.id = QUuid::createUuid();
                layer.name = QStringLiteral("Layer");
                layer.bitmapPNGData = raster::encodedImage(picture);
            }
            project.selectedLayerID = project.layers.back().id;
        });
        for (int step = 0; step < stepCount; ++step) edit();
        layers.resize(236, 440);
        history.resize(236, 280);
        layers.show();
        history.show();
    }

    /// An edit of the selected layer, as a stroke ends.
    void edit() {
        store.editActiveProject([&](model::PaintProject& project) {
            project.layers.back().bitmapPNGData = pictures[++edits % pictures.size()];
            project.lastModified = clock.now();
        });
        store.recordHistory(*store.activeProjectID(), QStringLiteral("Paintbrush"),
                            QStringLiteral("paintbrush"));
    }
    /// Goes on until the thumbnails have been made.
    void settle() {
        QElapsedTimer quiet;
        quiet.start();
        while (quiet.elapsed() < 300) QCoreApplication::processEvents();
    }

    std::array<model::PngBytes, 2> pictures{raster::encodedImage(syntheticDrawing(side)),
                                            raster::encodedImage(syntheticPhoto(side))};
    std::size_t edits = 0;
    shell::LayersPanel layers{shell::PanelContext{store, {}}};
    shell::HistoryPanel history{shell::PanelContext{store, {}}};
};

void paint(QWidget& panel, QImage& target) {
    panel.render(&target);
    benchmark::DoNotOptimize(target.constBits());
}

QImage targetFor(const QWidget& panel, int ratio) {
    QImage target(panel.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    target.setDevicePixelRatio(ratio);
    return target;
}

/// From the edit to the painted panels, the edit itself included.
void panelsAfterAnEdit(benchmark::State& state) {
    Editor editor;
    QImage layers = targetFor(editor.layers, static_cast<int>(state.range(0)));
    QImage history = targetFor(editor.history, static_cast<int>(state.range(0)));
    paint(editor.layers, layers);
    editor.settle();
    const QUuid project = *editor.store.activeProjectID();
    const QUuid step = editor.store.history(project).entries[stepCount - 1].id;
    for (auto _ : state) {
        editor.edit();
        paint(editor.layers, layers);
        paint(editor.history, history);
        // The history stays as long as it was.
        state.PauseTiming();
        editor.store.restoreHistory(project, step);
        editor.settle();
        state.ResumeTiming();
    }
}
BENCHMARK(panelsAfterAnEdit)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(10);

/// How long after an edit the layer's new picture is there.
void thumbnailAfterAnEdit(benchmark::State& state) {
    Editor editor;
    auto* list = editor.layers.findChild<shell::LayerList*>();
    auto* model = qobject_cast<shell::LayerListModel*>(list->model());
    model->setThumbnailRoom({88, 68});
    const QModelIndex top = model->index(0, 0);
    editor.settle();
    bool isNew = false;
    QObject::connect(model, &QAbstractItemModel::dataChanged, model,
                     [&](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                         isNew = isNew || roles == QList<int>{Qt::DecorationRole};
                     });
    for (auto _ : state) {
        isNew = false;
        editor.edit();
        benchmark::DoNotOptimize(top.data(Qt::DecorationRole));
        while (!isNew) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}
BENCHMARK(thumbnailAfterAnEdit)->Unit(benchmark::kMillisecond)->Iterations(20)->UseRealTime();

/// What the windows beside the editor show.
struct Desk : EmptyStore {
    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    effects::PluginLibraryService plugins{folder.path()};
    platform::NetworkHttpClient http;
    platform::DesktopBrowser browser;
    services::BrowserAuthentication authentication{browser};
    /// Of a build that has no service.
    services::QuillabraeAccountService account{
        {http, secrets, preferences, authentication, platform::secureRandomData},
        services::WebService({})};
};

/// From the making of a window to its first picture.
void open(benchmark::State& state, QSize size,
          const std::function<std::unique_ptr<QWidget>()>& make) {
    for (auto _ : state) {
        const std::unique_ptr<QWidget> window = make();
        window->resize(size);
        window->show();
        QImage target = targetFor(*window, static_cast<int>(state.range(0)));
        paint(*window, target);
        state.PauseTiming();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

/// At the pane of the most rows, which has been asked for when the window shows.
void openSettings(benchmark::State& state) {
    Desk desk;
    open(state, QSize(720, 500), [&] {
        auto view = std::make_unique<shell::PaintSettingsView>(
            shell::SettingsContext{desk.store, desk.preferences, desk.keychain, {}, desk.account});
        view->showSection(shell::PaintSettingsSection::intelligence);
        return view;
    });
}
BENCHMARK(openSettings)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(20);

void openPluginLibrary(benchmark::State& state) {
    Desk desk;
    open(state, QSize(980, 680), [&] {
        return std::make_unique<shell::PluginLibraryView>(
            shell::PluginLibraryContext{desk.plugins, desk.store, {}, {}});
    });
}
BENCHMARK(openPluginLibrary)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->Iterations(20);

} // namespace
} // namespace quillabrae::bench

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    quillabrae::bench::useUsualLook();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
