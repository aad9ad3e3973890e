// SPDX-License-Identifier: GPL-3.0-or-later
// Saving and reading a project of ten layers, 4096 by 4096 each, and what saving is made of.
#include "SyntheticImages.h"
#include "model/RecordCoding.h"
#include "persistence/ImageWriters.h"
#include "persistence/ProjectFileService.h"
#include "persistence/ProjectImageExportService.h"
#include "persistence/Staging.h"
#include "platform/Clock.h"
#include "platform/FileIcons.h"
#include "raster/DecodeCache.h"
#include "raster/PngCodec.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace quillabrae::bench {
namespace {

using namespace persistence;

constexpr int side = 4096;
constexpr int layerCount = 10;

/// Pictures are painted onto PDF pages, which asks for an application.
void needApplication() {
    static int argumentCount = 1;
    static char name[] = "quillabrae-bench";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(argumentCount, arguments);
}

/// A photo, a screenshot and eight drawings, none of which shares its bytes with another.
const model::PaintProject& project() {
    static const model::PaintProject made = [] {
        const QByteArray photo = raster::encodePng(syntheticPhoto(side)).toByteArray();
        const QByteArray screenshot = raster::encodePng(syntheticScreenshot(side)).toByteArray();
        const QByteArray drawing = raster::encodePng(syntheticDrawing(side)).toByteArray();
        model::PaintProject project;
        project.id = QUuid::createUuid();
        project.title = QStringLiteral("Ten layers");
        project.canvasWidth = side;
        project.canvasHeight = side;
        project.lastModified = QDateTime::currentDateTimeUtc();
        for (int i = 0; i < layerCount; ++i) {
            const QByteArray& bytes = i == 0 ? photo : i == 1 ? screenshot : drawing;
            model::PaintLayer layer;
            layer.id = QUuid::createUuid();
            layer.name = QStringLiteral("Layer %1").arg(i);
            layer.opacity = i == 1 ? 0.5 : 1.0;
            layer.bitmapPNGData = model::PngBytes(QByteArray(bytes.constData(), bytes.size()));
            project.layers.push_back(std::move(layer));
        }
        project.selectedLayerID = project.layers.front().id;
        return project;
    }();
    return made;
}

const raster::RasterImage& picture() {
    static const raster::RasterImage rendered =
        ProjectImageExportService::render(project(), ProjectImageExportService::Background::white);
    return rendered;
}

class Folder {
public:
    Folder() : m_url(QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("p.quillabrae")))) {}
    const QUrl& package() const { return m_url; }
    QString file() const { return m_folder.filePath(QStringLiteral("picture")); }

private:
    QTemporaryDir m_folder;
    QUrl m_url;
};

void savePackage(benchmark::State& state) {
    needApplication();
    const Folder folder;
    const platform::SystemClock clock;
    platform::NoFileIcons icons;
    project();
    for (auto _ : state) {
        state.PauseTiming();
        raster::clearDecodeCache();
        state.ResumeTiming();
        ProjectFileService::save(project(), folder.package(), clock, icons);
    }
    state.counters["MB"] = double(model::encodedByteCount(project())) / 1e6;
}

void readPackage(benchmark::State& state) {
    needApplication();
    const Folder folder;
    platform::NoFileIcons icons;
    ProjectFileService::save(project(), folder.package(), platform::SystemClock(), icons);
    for (auto _ : state)
        benchmark::DoNotOptimize(ProjectFileService::read(folder.package()).layers.data());
}

void writeJson(benchmark::State& state) {
    project();
    for (auto _ : state) benchmark::DoNotOptimize(model::encodedByteCount(project()));
}

void render(benchmark::State& state) {
    project();
    for (auto _ : state) {
        state.PauseTiming();
        raster::clearDecodeCache();
        state.ResumeTiming();
        benchmark::DoNotOptimize(ProjectImageExportService::render(
                                     project(), ProjectImageExportService::Background::white)
                                     .row(0));
    }
}

void makeThumbnail(benchmark::State& state) {
    needApplication();
    picture();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            raster::encodePng(ProjectFileService::fileIconImage(picture())).size());
}

void makePdf(benchmark::State& state) {
    needApplication();
    picture();
    for (auto _ : state)
        benchmark::DoNotOptimize(ProjectFileService::previewPDFData(picture()).size());
}

void exportPicture(benchmark::State& state, ImageWriter write) {
    picture();
    const Folder folder;
    platform::WorkControl control;
    for (auto _ : state) {
        writeFileAtomically(platform::systemFileOperations(), folder.file(),
                            [&](platform::DurableFile& file) { write(picture(), file, control); });
    }
}

const bool areRegistered = [] {
    const auto add = [](const char* name, auto fn, auto... arguments) {
        benchmark::RegisterBenchmark(name, fn, arguments...)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    add("save/package", savePackage);
    add("save/part/json", writeJson);
    add("save/part/render", render);
    add("save/part/thumbnail", makeThumbnail);
    add("save/part/pdf", makePdf);
    add("read/package", readPackage);
    add("export/png", exportPicture, writePng);
    add("export/jpeg", exportPicture, writeJpeg);
    add("export/webp", exportPicture, writeWebP);
    add("export/tiff", exportPicture, writeTiff);
    add("export/bmp", exportPicture, writeBmp);
    add("export/svg", exportPicture, writeSvg);
    return true;
}();

} // namespace
} // namespace quillabrae::bench
