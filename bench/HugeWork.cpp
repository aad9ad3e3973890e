// SPDX-License-Identifier: GPL-3.0-or-later
// What huge work costs: a canvas of 32,768 by 2,000 pixels with 300 layers and 2,000 steps of
// history, and 60 tabs. Prints, for each thing that is done, how long it takes, by the clock and of
// all processors together, and how much memory the program holds afterwards; docs/promises.md has
// the last figures. Takes a few minutes, and the disk or /dev/shm (TMPDIR) for the recovery file.
#include "SyntheticImages.h"
#include "UsualLook.h"
#include "raster/DecodeCache.h"
#include "raster/LayerRasterService.h"
#include "replay/Runner.h"
#include "replay/Session.h"
#include "shell/panels/HistoryPanel.h"
#include "shell/panels/LayersPanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace quillabrae::bench {
namespace {

constexpr int canvasWidth = 32'768;
constexpr int canvasHeight = 2'000;
constexpr int layerCount = 300;
constexpr int stepCount = 2'000;
constexpr int tabCount = 60;

double residentMegabytes() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) return 0.0;
    return static_cast<double>(file.readAll().split(' ').value(1).toLongLong() *
                               sysconf(_SC_PAGESIZE)) /
           1e6;
}

/// Does it, and prints a row of the table.
void measure(const char* what, const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    const std::clock_t start = std::clock();
    work();
    const double processor = static_cast<double>(std::clock() - start) * 1e3 / CLOCKS_PER_SEC;
    std::printf("| %-44s | %9.1f ms | %9.1f ms | %6.0f MB |\n", what,
                static_cast<double>(timer.nsecsElapsed()) / 1e6, processor, residentMegabytes());
    std::fflush(stdout);
}

/// A layer with a drawing somewhere.
model::PngBytes drawnLayer(const QImage& drawing, int number) {
    const raster::DecodeCacheReadOnly readOnly;
    raster::RasterImage image(canvasWidth, canvasHeight);
    QImage target = image.paintTarget();
    QPainter painter(&target);
    painter.drawImage((number * 1009) % (canvasWidth - drawing.width()),
                      (number * 313) % (canvasHeight - drawing.height()), drawing);
    painter.end();
    return raster::encodedImage(image);
}

class Bench {
public:
    Bench() : m_session({m_home.path(), {}}) {}

    void run() {
        std::printf("| what is done | takes | processor time | then held |\n|---|---|---|---|\n");
        hugeProject();
        manyTabs();
    }

private:
    void line(const char* text) {
        m_session.runLine(QJsonDocument::fromJson(text).object());
        QCoreApplication::processEvents();
    }
    void measureLine(const char* what, const char* text) {
        measure(what, [&] { line(text); });
    }

    void hugeProject() {
        measureLine("new canvas of 32,768 x 2,000", R"({"do": "store.createUntitledProject",
                    "width": 32768, "height": 2000, "resolutionDPI": 96})");
        line(R"({"do": "set", "selectedTool": "brush", "brushSize": 40})");
        measureLine("first stroke, 2,000 pixels long", stroke);
        measureLine("stroke", stroke);
        measureLine("stroke across the whole canvas",
                    R"({"do": "canvas.stroke", "points": [[10, 10], [32000, 1900]]})");
        measure("300 layers with a drawing each, made", [this] { fillLayers(); });
        measureLine("stroke with 300 layers", stroke);
        measure("frame of the viewport, whole canvas in it",
                [this] { m_session.canvas().picture(); });
        measure("frame again", [this] { m_session.canvas().picture(); });
        measureLine("flip the layer", R"({"do": "store.flipSelectedLayer", "horizontal": true})");
        measureLine("undo", R"({"do": "store.undo", "projectID": "active"})");
        measureLine("redo", R"({"do": "store.redo", "projectID": "active"})");
        measure("2,000 steps of history, recorded", [this] {
            for (int step = 0; step < stepCount; ++step) line(renamed(step).constData());
        });
        measureLine("undo with 2,000 steps", R"({"do": "store.undo", "projectID": "active"})");
        measureLine("stroke with 300 layers and 2,000 steps", stroke);
        panels();
        measureLine("save", R"({"do": "store.saveProject", "at": 0,
                    "to": {"url": "~/huge.quillabrae", "format": "project"}})");
        measureLine("close", R"({"do": "store.closeAllProjects"})");
        measureLine("open", R"({"do": "store.openProject", "at": "~/huge.quillabrae"})");
        line(R"({"do": "store.closeAllProjects"})");
    }

    void fillLayers() {
        const QImage drawing = syntheticDrawing(1024).toQImage();
        m_session.store().editActiveProject([&](model::PaintProject& project) {
            while (static_cast<int>(project.layers.size()) < layerCount) {
                model::PaintLayer layer;
                layer.id = QUuid::createUuid();
                layer.name = QStringLiteral("Layer");
                layer.bitmapPNGData = drawnLayer(drawing, static_cast<int>(project.layers.size()));
                project.layers.push_back(std::move(layer));
            }
            project.selectedLayerID = project.layers.back().id;
        });
        line(R"({"do": "store.recordHistory", "projectID": "active", "title": "Layers",
                "symbolName": "square"})");
    }

    static QByteArray renamed(int step) {
        return R"({"do": "store.applySelectedLayerProperties", "result": {"name": "Layer )" +
               QByteArray::number(step) +
               R"(", "opacity": 1, "isVisible": true, "isLocked": false}})";
    }

    void panels() {
        const auto shown = [](QWidget& panel, QSize size) {
            panel.resize(size);
            panel.show();
            return panel.grab();
        };
        shell::LayersPanel layers(shell::PanelContext{m_session.store(), {}});
        shell::HistoryPanel history(shell::PanelContext{m_session.store(), {}});
        measure("Layers panel, 300 rows, shown", [&] { shown(layers, {236, 440}); });
        measure("History panel, 2,000 rows, shown", [&] { shown(history, {236, 280}); });
        measureLine("stroke, the panels following", stroke);
        measure("both panels painted again", [&] {
            layers.grab();
            history.grab();
        });
    }

    void manyTabs() {
        measure("60 tabs of 1,600 x 1,200", [this] {
            for (int tab = 0; tab < tabCount; ++tab)
                line(R"({"do": "store.createUntitledProject", "width": 1600, "height": 1200,
                        "resolutionDPI": 96})");
        });
        measure("a stroke on each of 60 tabs", [this] {
            const auto& store = m_session.store();
            for (std::size_t tab = 0; tab < tabCount; ++tab) {
                m_session.store().setActiveProjectID(store.openProjects()[tab].id);
                line(R"({"do": "canvas.stroke", "points": [[10, 10], [1500, 1100]]})");
            }
        });
        measureLine("a stroke with 60 tabs",
                    R"({"do": "canvas.stroke", "points": [[1500, 10], [10, 1100]]})");
        measureLine("60 tabs closed", R"({"do": "store.closeAllProjects"})");
    }

    static constexpr const char* stroke =
        R"({"do": "canvas.stroke", "points": [[100, 100], [2100, 900]]})";

    QTemporaryDir m_home;
    replay::Session m_session;
    replay::Runner m_runner{m_session, replay::AfterFailure::goOn};
};

} // namespace
} // namespace quillabrae::bench

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    quillabrae::bench::useUsualLook();
    quillabrae::bench::Bench().run();
    return EXIT_SUCCESS;
}
