// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/KillCommands.h"

#include <QImage>

#include <array>
#include <cmath>
#include <span>

namespace quillabrae::replay {
namespace {

constexpr QSize smallCanvas(128, 96);
/// A start brings 25 entries back; an edit may add two, and the draft before it one.
constexpr std::size_t mostEntries = 21;
constexpr std::size_t mostTabs = 4;

QByteArray tool(const char* name) {
    return QByteArray(R"({"do": "set", "zoomScale": 1, "brushSize": 9, "selectedTool": ")") + name +
           "\"}";
}

KillCommand onProject(const char* name) {
    return {{QByteArray(R"({"do": "store.)") + name + R"(", "projectID": "active"})"},
            Change::move};
}

KillCommand close() {
    return {{R"({"do": "store.closeProject", "id": "active"})"}};
}

} // namespace

KillCommands::KillCommands(const QDir& home, CanvasSizes sizes, unsigned seed)
    : m_random(seed), m_sizes(sizes) {
    saveNoise(home.filePath(QStringLiteral("canvas.png")), smallCanvas);
    saveNoise(home.filePath(QStringLiteral("stamp.png")), smallCanvas / 2);
}

void KillCommands::saveNoise(const QString& path, QSize size) {
    QImage noise(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) noise.setPixel(x, y, static_cast<QRgb>(m_random()));
    noise.save(path);
}

QString KillCommands::point(double from, double to) {
    std::uniform_real_distribution<double> part(from, to);
    return QStringLiteral("[%1, %2]")
        .arg(std::floor(part(m_random) * m_canvas.width()))
        .arg(std::floor(part(m_random) * m_canvas.height()));
}

QByteArray KillCommands::strokeLine(const QString& from, const QString& to) const {
    return QStringLiteral(R"({"do": "canvas.stroke", "points": [%1, %2]})").arg(from, to).toUtf8();
}

KillCommand KillCommands::create() {
    QSize size = smallCanvas;
    if (m_sizes == CanvasSizes::any) {
        // One in sixteen has 30 to 50 million pixels; half of the others less than 400 by 400.
        constexpr double greatestSide = 7071;
        const bool isHuge = upTo(15) == 0;
        std::uniform_real_distribution<double> part(isHuge ? 0.78 : 0.0, 1);
        const auto side = [&] {
            constexpr double leastSide = 24;
            const double drawn = part(m_random);
            return leastSide + (greatestSide - leastSide) * (isHuge ? drawn : std::pow(drawn, 4.3));
        };
        size = QSizeF(side(), side()).toSize();
    }
    return {{QStringLiteral(R"({"do": "store.createUntitledProject", "width": %1, )"
                            R"("height": %2, "resolutionDPI": 96})")
                 .arg(size.width())
                 .arg(size.height())
                 .toUtf8()}};
}

KillCommand KillCommands::save(int index) {
    return {{QStringLiteral(R"({"do": "store.saveProject", "at": %1, "to": )"
                            R"({"url": "~/%2.quillabrae", "format": "project"}})")
                 .arg(index)
                 .arg(upTo(3))
                 .toUtf8()},
            Change::save};
}

KillCommand KillCommands::stroke() {
    return {{tool("brush"), strokeLine(somewhere(), somewhere())}};
}

KillCommand KillCommands::selection() {
    return {{tool("select"), strokeLine(somewhere(), somewhere())}};
}

KillCommand KillCommands::floatingPixels() {
    return {{tool("select"), strokeLine(somewhere(), somewhere()), tool("moveSelectedPixels"),
             strokeLine(somewhere(), somewhere())}};
}

KillCommand KillCommands::paste() {
    return {{R"({"do": "clipboard.put", "types": {"image/png": "~/stamp.png"}})",
             R"({"do": "paste"})"}};
}

KillCommand KillCommands::load() {
    return {
        {R"({"do": "layer.load", "index": 0, "path": "~/canvas.png"})",
         QStringLiteral(R"({"do": "project", "title": "T%1"})").arg(upTo(9999)).toUtf8(),
         R"({"do": "store.recordHistory", "projectID": "active", "title": "Load", "symbolName": "pencil"})"}};
}

KillCommand KillCommands::flip() {
    return {{QByteArray(R"({"do": "store.flipSelectedLayer", "horizontal": )") +
             (upTo(1) == 0 ? "true}" : "false}")}};
}

KillCommand KillCommands::plainCommand() {
    static constexpr std::array names{"addLayer",
                                      "duplicateSelectedLayer",
                                      "deleteSelectedLayer",
                                      "invertActiveImage",
                                      "selectAllCanvas",
                                      "dropSelection",
                                      "cutSelectedCanvasPixels",
                                      "trimTransparentWhitespace"};
    const auto index = static_cast<std::size_t>(upTo(static_cast<int>(names.size()) - 1));
    return {{QByteArray(R"({"do": "store.)") + names.at(index) + "\"}"}};
}

KillCommand KillCommands::shapeDraft() {
    return {{tool("shapes"), R"({"do": "wait", "seconds": 0.2})",
             strokeLine(point(0.05, 0.3), point(0.6, 0.9))},
            Change::editAfterDraft,
            true};
}

KillCommand KillCommands::textDraft() {
    return {{tool("text"), R"({"do": "wait", "seconds": 0.2})",
             strokeLine(point(0.05, 0.2), point(0.6, 0.9)),
             R"({"do": "canvas.type", "text": "draft"})"},
            Change::editAfterDraft,
            true};
}

KillCommand KillCommands::halfAStroke() {
    return {{tool("brush"),
             QStringLiteral(R"({"do": "canvas.press", "at": %1})").arg(somewhere()).toUtf8(),
             QStringLiteral(R"({"do": "canvas.drag", "at": %1})").arg(somewhere()).toUtf8()},
            Change::editAfterDraft,
            true};
}

KillCommand KillCommands::endOfPending() {
    switch (upTo(3)) {
        case 0:
            return {{tool("pencil")}, Change::editAfterDraft};
        case 1:
            // The draft stays, over what is inverted.
            return {{R"({"do": "store.invertActiveImage"})"}, Change::editAfterDraft, true};
        default:
            return {
                {QStringLiteral(R"({"do": "canvas.release", "at": %1})").arg(somewhere()).toUtf8(),
                 R"({"do": "canvas.key", "key": "escape", "modifiers": []})"},
                Change::editAfterDraft};
    }
}

std::span<const KillCommands::Row> KillCommands::edits() {
    static constexpr std::array rows{
        Row{2, &KillCommands::stroke},         Row{1, &KillCommands::selection},
        Row{6, &KillCommands::floatingPixels}, Row{4, &KillCommands::paste},
        Row{1, &KillCommands::load},           Row{1, &KillCommands::flip},
        Row{8, &KillCommands::plainCommand},   Row{2, &KillCommands::shapeDraft},
        Row{2, &KillCommands::textDraft},      Row{2, &KillCommands::halfAStroke},
    };
    return rows;
}

KillCommand KillCommands::edit() {
    int sum = 0;
    for (const Row& row : edits()) sum += row.weight;
    int drawn = upTo(sum - 1);
    for (const Row& row : edits()) {
        if (drawn < row.weight) return (this->*row.make)();
        drawn -= row.weight;
    }
    return stroke();
}

KillCommand KillCommands::whileOpen(const RecoverableWork& work) {
    const RecoverableTab& active = *work.activeTab();
    if (active.entries.size() >= mostEntries) return close();
    switch (upTo(19)) {
        case 0:
            return work.tabs.size() < mostTabs ? create() : close();
        case 1:
            return close();
        case 2:
            return save(static_cast<int>(&active - work.tabs.data()));
        case 3:
        case 4:
        case 5:
            return onProject("undo");
        case 6:
        case 7:
            return onProject("redo");
        default:
            return edit();
    }
}

KillCommand KillCommands::next(const RecoverableWork& work) {
    const RecoverableTab* active = work.activeTab();
    if (!active) {
        m_isPending = false;
        return create();
    }
    m_canvas = active->canvas();
    KillCommand command = m_isPending ? endOfPending() : whileOpen(work);
    m_isPending = command.isPending;
    return command;
}

} // namespace quillabrae::replay
