// SPDX-License-Identifier: GPL-3.0-or-later
// Every large request for memory that a command makes is refused in turn: the project is then as it
// was before or as the command leaves it, and the status line tells which.
#include "raster/DecodeCache.h"
#include "raster/PixelMemory.h"
#include "raster/PngCodec.h"
#include "replay/Runner.h"
#include "replay/Session.h"
#include "support/MemoryRefusal.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <random>

namespace quillabrae::replay {
namespace {

constexpr int width = 600;
constexpr int height = 450;
/// A good part of a layer's pixels, and more than anything that is not pixels.
constexpr std::size_t large = std::size_t{256} * 1024;

/// A command on a project of two layers of noise, with what comes before it.
struct Operation {
    const char* name;
    std::vector<const char*> before;
    const char* line;
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

constexpr const char* selected =
    R"({"do": "project", "pixelSelection": {"x": 20, "y": 10, "width": 560, "height": 420}})";
constexpr const char* floating = R"({"do": "paste"})";
constexpr const char* onClipboard = R"({"do": "store.copySelectedCanvasPixels"})";
constexpr const char* brush = R"({"do": "set", "selectedTool": "brush", "brushSize": 40})";

const std::vector<Operation> operations{
    {"New",
     {},
     R"({"do": "store.createUntitledProject", "width": 600, "height": 450, "resolutionDPI": 96})"},
    {"Flip", {}, R"({"do": "store.flipSelectedLayer", "horizontal": true})"},
    {"FlipSelection", {selected}, R"({"do": "store.flipSelectedLayer", "horizontal": false})"},
    {"Rotate",
     {},
     R"({"do": "store.rotateZoomSelectedLayer", "result": {"angleDegrees": 30, "zoomPercentage": 90}})"},
    {"Invert", {}, R"({"do": "store.invertActiveImage"})"},
    {"ResizeImage",
     {},
     R"({"do": "store.resizeActiveImage", "to": {"width": 700, "height": 500, "resolutionDPI": 96, "anchor": "center"}})"},
    {"ResizeCanvas",
     {},
     R"({"do": "store.resizeActiveCanvas", "to": {"width": 700, "height": 500, "resolutionDPI": 96, "anchor": "center"}})"},
    {"Trim",
     {R"({"do": "layer.load", "index": 0, "path": "~/corner.png"})",
      R"({"do": "layer.load", "index": 1, "path": "~/corner.png"})"},
     R"({"do": "store.trimTransparentWhitespace"})"},
    {"Merge", {}, R"({"do": "store.flattenLayerDown", "layerID": "selected"})"},
    {"Effect", {}, R"({"do": "store.applyPlugin", "plugin": "studio.quillabrae.ink-press"})"},
    {"SimpleEffect", {}, R"({"do": "store.applyPlugin", "plugin": "studio.quillabrae.monoform"})"},
    {"Align",
     {R"({"do": "layer.load", "index": 1, "path": "~/corner.png"})"},
     R"({"do": "store.applyAlignObject", "action": "topLeft", "recordsHistory": true, "isPreview": false})"},
    {"Copy", {selected}, R"({"do": "store.copySelectedCanvasPixels"})"},
    {"Cut", {selected}, R"({"do": "store.cutSelectedCanvasPixels"})"},
    {"Paste", {selected, onClipboard}, R"({"do": "paste"})"},
    {"PasteForeign",
     {R"({"do": "clipboard.put", "types": {"image/png": "~/noise.png"}})"},
     R"({"do": "paste"})"},
    {"PutDown", {selected, onClipboard, floating}, R"({"do": "store.dropSelection"})"},
    {"Import",
     {R"({"do": "answer", "prompt": "importImage", "with": "~/noise.png"})"},
     R"({"do": "store.importLayerFromFile"})"},
    {"Open",
     {R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/a.quillabrae", "format": "project"}})"},
     R"({"do": "store.openProject", "at": "~/a.quillabrae"})"},
    {"OpenImage", {}, R"({"do": "store.openFile", "url": "~/noise.png"})"},
    {"Save",
     {},
     R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/a.quillabrae", "format": "project"}})"},
    {"ExportPng",
     {R"({"do": "answer", "prompt": "flattenedSave", "with": true})"},
     R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/a.png", "format": "png"}})"},
    {"ExportJpeg",
     {R"({"do": "answer", "prompt": "flattenedSave", "with": true})"},
     R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/a.jpg", "format": "jpeg"}})"},
    {"ExportTiff",
     {R"({"do": "answer", "prompt": "flattenedSave", "with": true})"},
     R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/a.tiff", "format": "tiff"}})"},
    {"Undo",
     {R"({"do": "store.invertActiveImage"})"},
     R"({"do": "store.undo", "projectID": "active"})"},
    {"Redo",
     {R"({"do": "store.invertActiveImage"})", R"({"do": "store.undo", "projectID": "active"})"},
     R"({"do": "store.redo", "projectID": "active"})"},
    {"Paint", {brush}, R"({"do": "canvas.stroke", "points": [[10, 10], [300, 200], [590, 440]]})"},
    {"Erase",
     {R"({"do": "set", "selectedTool": "eraser", "brushSize": 40})"},
     R"({"do": "canvas.stroke", "points": [[10, 10], [590, 440]]})"},
    {"Fill",
     {R"({"do": "set", "selectedTool": "fill", "paintBucketMatchPercentage": 0})"},
     R"({"do": "canvas.stroke", "points": [[300, 200]]})"},
    {"Wand",
     {R"({"do": "set", "selectedTool": "magicWand", "magicWandMatchPercentage": 0})"},
     R"({"do": "canvas.stroke", "points": [[300, 200]]})"},
};

raster::RasterImage noise(int across, int down, int margin) {
    std::mt19937 random(7);
    raster::RasterImage image(across, down);
    for (int y = margin; y < down - margin; ++y) {
        std::uint8_t* const row = image.mutableRow(y);
        for (int x = margin; x < across - margin; ++x) {
            for (int channel = 0; channel < 3; ++channel)
                row[4 * x + channel] = static_cast<std::uint8_t>(random());
            row[4 * x + 3] = 255;
        }
    }
    return image;
}

/// What is compared of a project; ids and times differ from run to run.
QJsonObject lookOf(const store::ProjectStore& store) {
    QJsonObject look{{QStringLiteral("tabs"), static_cast<int>(store.openProjects().size())}};
    const model::PaintProject* project = store.activeProject();
    if (!project) return look;
    look.insert(QStringLiteral("width"), project->canvasWidth);
    look.insert(QStringLiteral("height"), project->canvasHeight);
    look.insert(QStringLiteral("file"), project->fileURL.value_or(QUrl()).fileName());
    look.insert(QStringLiteral("isCanvasSelected"), project->isCanvasSelected);
    look.insert(QStringLiteral("floats"), project->floatingSelection.has_value());
    if (const auto& selection = project->pixelSelection)
        look.insert(QStringLiteral("selection"), selection->width * selection->height);
    const model::PaintHistoryState& history = store.history(project->id);
    look.insert(QStringLiteral("at"), history.selectedIndex);
    look.insert(QStringLiteral("entries"), static_cast<int>(history.entries.size()));
    int number = 0;
    for (const model::PaintLayer& layer : project->layers) {
        const QByteArray png =
            layer.bitmapPNGData ? layer.bitmapPNGData->toByteArray() : QByteArray();
        look.insert(QStringLiteral("layer%1").arg(number++),
                    layer.name + QString::number(qHash(png)));
    }
    return look;
}

/// The editor with the project that an operation is tried on.
class Stage {
public:
    explicit Stage(const Operation& operation)
        : m_session(SessionPlaces{m_home.path(), {}}), m_runner(m_session, AfterFailure::goOn) {
        write(QStringLiteral("noise.png"), noise(width, height, 0));
        write(QStringLiteral("corner.png"), noise(width, height, 50));
        run(R"({"do": "store.createUntitledProject", "width": 600, "height": 450, "resolutionDPI": 96})");
        run(R"({"do": "store.addLayer"})");
        run(R"({"do": "layer.load", "index": 0, "path": "~/noise.png"})");
        run(R"({"do": "layer.load", "index": 1, "path": "~/noise.png"})");
        run(R"({"do": "store.recordHistory", "projectID": "active", "title": "a", "symbolName": "b"})");
        for (const char* line : operation.before) run(line);
        raster::clearDecodeCache();
        raster::releaseKeptPixelMemory();
    }

    void run(const char* line) {
        m_session.runLine(QJsonDocument::fromJson(line).object());
        QCoreApplication::processEvents();
    }

    QJsonObject look() const { return lookOf(m_session.store()); }
    QString status() const { return m_session.store().statusMessage(); }
    /// Whether the project stands where its history says.
    bool standsInHistory() const {
        const model::PaintProject* project = m_session.store().activeProject();
        const model::PaintHistoryState& history = m_session.store().history(project->id);
        const auto& entry = history.entries.at(static_cast<std::size_t>(history.selectedIndex));
        return project->layers == entry.project.layers;
    }

private:
    void write(const QString& name, const raster::RasterImage& image) const {
        QFile file(m_home.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(raster::encodePng(image).toByteArray());
    }

    QTemporaryDir m_home;
    Session m_session;
    Runner m_runner;
};

class WhereMemoryEnds : public testing::TestWithParam<Operation> {};

TEST_P(WhereMemoryEnds, TheOperationIsRefusedAndTheProjectWhole) {
    if (!tests::MemoryRefusal::isAvailable()) GTEST_SKIP() << "another allocator is in use";
    const Operation& operation = GetParam();
    Stage undisturbed(operation);
    const QJsonObject before = undisturbed.look();
    undisturbed.run(operation.line);
    const QJsonObject after = undisturbed.look();
    const QString statusAfter = undisturbed.status();
    ASSERT_TRUE(after != before || operation.name == std::string_view("Copy"));

    // A codec's library does not tell why it failed.
    const QRegularExpression refused(QStringLiteral("memory|could not be encoded"));
    constexpr std::size_t most = 200;
    std::size_t refusals = 0;
    for (std::size_t number = 1; number < most; ++number) {
        Stage stage(operation);
        bool wasRefused = false;
        {
            const tests::MemoryRefusal refusal(number, large);
            stage.run(operation.line);
            wasRefused = refusal.hasHappened();
        }
        const QJsonObject look = stage.look();
        const std::string what = "request " + std::to_string(number) + ": " +
                                 stage.status().toStdString() + "\n" +
                                 QJsonDocument(look).toJson().toStdString() + "not\n" +
                                 QJsonDocument(before).toJson().toStdString() + "nor\n" +
                                 QJsonDocument(after).toJson().toStdString();
        EXPECT_TRUE(look == before || look == after) << what;
        const bool isDone = look == after && stage.status() == statusAfter;
        EXPECT_TRUE(isDone || stage.status().contains(refused)) << what;
        EXPECT_TRUE(stage.standsInHistory() || look == before) << what;
        if (!wasRefused) break;
        ++refusals;
    }
    EXPECT_LT(refusals, most - 1);
    RecordProperty("refusals", static_cast<int>(refusals));
    std::printf("%s: %d requests refused in turn\n", operation.name, static_cast<int>(refusals));
}

INSTANTIATE_TEST_SUITE_P(Each, WhereMemoryEnds, testing::ValuesIn(operations),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace quillabrae::replay
