// SPDX-License-Identifier: GPL-3.0-or-later
// Kills the program at random instants between and within random edits, and compares what the next
// start has, field by field, with the store after the last edit that was acknowledged. Of an edit
// that was under way, all of it is there or nothing.
#include "replay/ReplayProcess.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <vector>

namespace quillabrae::replay {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int canvasWidth = 128;
constexpr int canvasHeight = 96;
constexpr int editCount = 400;
/// A start brings 25 entries back; an edit may add two.
constexpr int mostEntries = 22;

/// A record of an entry without what a start takes from the tab instead.
QJsonObject withoutIdentity(QJsonObject project) {
    project.remove(QStringLiteral("id"));
    project.remove(QStringLiteral("fileURL"));
    return project;
}

QJsonObject entryRecord(QJsonObject entry) {
    entry.insert(QStringLiteral("project"),
                 withoutIdentity(entry.value(QStringLiteral("project")).toObject()));
    return entry;
}

/// A tab, as a start after a kill is to have it: a history of a single entry is made anew.
struct Tab {
    QJsonObject project;
    bool isUnsaved = false;
    std::vector<QJsonObject> entries;
    int selected = 0;

    friend bool operator==(const Tab&, const Tab&) = default;
};

struct Work {
    std::vector<Tab> tabs;
    QJsonValue active;

    friend bool operator==(const Work&, const Work&) = default;
};

Tab tabFrom(const QJsonObject& record) {
    Tab tab{record.value(QStringLiteral("project")).toObject(),
            record.value(QStringLiteral("isUnsaved")).toBool(),
            {},
            record.value(QStringLiteral("selectedIndex")).toInt()};
    const QJsonArray entries = record.value(QStringLiteral("entries")).toArray();
    if (entries.size() < 2) return tab;
    for (const auto& entry : entries) tab.entries.push_back(entryRecord(entry.toObject()));
    // A start gives the selected entry the project as it stands, which a save or a gesture that
    // records nothing may have changed.
    tab.entries.at(static_cast<std::size_t>(tab.selected))
        .insert(QStringLiteral("project"), withoutIdentity(tab.project));
    return tab;
}

Work workFrom(const QJsonObject& recoverable) {
    Work work{{}, recoverable.value(QStringLiteral("activeProjectID"))};
    const QJsonArray tabs = recoverable.value(QStringLiteral("tabs")).toArray();
    for (const auto& record : tabs) work.tabs.push_back(tabFrom(record.toObject()));
    return work;
}

/// Whether one edit leads from a history to another: to those entries up to the selected one and
/// one or two behind it.
bool isEdited(const Tab& from, const Tab& to) {
    const auto kept = from.entries.empty() ? std::size_t{0} : std::size_t(from.selected) + 1;
    const std::size_t added = to.entries.size() - std::min(to.entries.size(), kept);
    // The first entry of a history that was not kept counts with those that were added.
    const bool isShort = added >= 1 && added <= (from.entries.empty() ? 3U : 2U);
    return isShort && to.selected == static_cast<int>(to.entries.size()) - 1 &&
           std::equal(from.entries.begin(),
                      from.entries.begin() + static_cast<std::ptrdiff_t>(kept), to.entries.begin());
}

/// Whether only the place in the history or in the user's files differs.
bool isMoved(const Tab& from, const Tab& to) {
    return from.entries == to.entries &&
           from.project.value(QStringLiteral("id")) == to.project.value(QStringLiteral("id"));
}

/// Whether one command, and a whole one, leads from one work to another.
bool leadsOn(const Work& from, const Work& to, bool (*tabLeadsOn)(const Tab& from, const Tab& to)) {
    const auto [before, after] = std::ranges::mismatch(from.tabs, to.tabs);
    const auto beforeEnd = from.tabs.end();
    const auto afterEnd = to.tabs.end();
    if (before == beforeEnd) return afterEnd - after <= 1;
    if (after == afterEnd) return beforeEnd - before == 1;
    if (from.tabs.size() == to.tabs.size())
        return std::equal(before + 1, beforeEnd, after + 1) && tabLeadsOn(*before, *after);
    return from.tabs.size() == to.tabs.size() + 1 && std::equal(before + 1, beforeEnd, after);
}

QString shown(const Work& work) {
    QString text;
    for (const Tab& tab : work.tabs) {
        text += QString::fromUtf8(QJsonDocument(tab.project).toJson(QJsonDocument::Compact));
        text += QStringLiteral("\n  unsaved %1, at %2 of:").arg(tab.isUnsaved).arg(tab.selected);
        for (const QJsonObject& entry : tab.entries)
            text += QStringLiteral("\n  ") +
                    QString::fromUtf8(QJsonDocument(entry).toJson(QJsonDocument::Compact));
        text += u'\n';
    }
    return text + QStringLiteral("active ") + work.active.toString();
}

QByteArray line(const QString& text) {
    return text.toUtf8();
}

class KillTest : public testing::Test {
protected:
    KillTest() {
        saveNoise(QStringLiteral("canvas.png"), canvasWidth, canvasHeight);
        saveNoise(QStringLiteral("stamp.png"), canvasWidth / 2, canvasHeight / 2);
    }

    int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }

    void saveNoise(const QString& name, int width, int height) {
        QImage noise(width, height, QImage::Format_RGB32);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) noise.setPixel(x, y, static_cast<QRgb>(m_random()));
        noise.save(m_home.filePath(name));
    }

    QString somewhere() {
        return QStringLiteral("[%1, %2]").arg(upTo(canvasWidth)).arg(upTo(canvasHeight));
    }

    QByteArray stroke() {
        return line(QStringLiteral(R"({"do": "canvas.stroke", "points": [%1, %2]})")
                        .arg(somewhere(), somewhere()));
    }

    static QByteArray tool(const char* name) {
        return QByteArray(R"({"do": "set", "zoomScale": 1, "brushSize": 9, "selectedTool": ")") +
               name + "\"}";
    }

    static QByteArray command(const QByteArray& name) { return "{\"do\": \"store." + name + "\"}"; }

    static QByteArray commandOnProject(const QByteArray& name) {
        return "{\"do\": \"store." + name + R"(", "projectID": "active"})";
    }

    QList<QByteArray> create() {
        return {line(QStringLiteral(R"({"do": "store.createUntitledProject", "width": %1, )"
                                    R"("height": %2, "resolutionDPI": 96})")
                         .arg(canvasWidth)
                         .arg(canvasHeight))};
    }

    static QList<QByteArray> close() { return {R"({"do": "store.closeProject", "id": "active"})"}; }

    QList<QByteArray> save(int index) {
        return {line(QStringLiteral(R"({"do": "store.saveProject", "at": %1, "to": )"
                                    R"({"url": "~/%2.quillabrae", "format": "project"}})")
                         .arg(index)
                         .arg(upTo(3)))};
    }

    QList<QByteArray> load() {
        return {
            R"({"do": "layer.load", "index": 0, "path": "~/canvas.png"})",
            line(QStringLiteral(R"({"do": "project", "title": "T%1"})").arg(upTo(9999))),
            R"({"do": "store.recordHistory", "projectID": "active", "title": "Load", "symbolName": "pencil"})"};
    }

    static QList<QByteArray> paste() {
        return {R"({"do": "clipboard.put", "types": {"image/png": "~/stamp.png"}})",
                R"({"do": "paste"})"};
    }

    static QByteArray flip(bool horizontal) {
        return QByteArray(R"({"do": "store.flipSelectedLayer", "horizontal": )") +
               (horizontal ? "true}" : "false}");
    }

    QList<QByteArray> edit() {
        switch (upTo(15)) {
            case 0:
            case 1:
                return {tool("brush"), stroke()};
            case 2:
                return {tool("select"), stroke()};
            case 3:
            case 4:
                return {tool("select"), stroke(), tool("moveSelectedPixels"), stroke()};
            case 5:
                return paste();
            case 6:
                return load();
            case 7:
                return {command("addLayer")};
            case 8:
                return {command("duplicateSelectedLayer")};
            case 9:
                return {command("deleteSelectedLayer")};
            case 10:
                return {flip(upTo(1) == 0)};
            case 11:
                return {command("invertActiveImage")};
            case 12:
                return {command("selectAllCanvas")};
            case 13:
                return {command("dropSelection")};
            case 14:
                return {command("cutSelectedCanvasPixels")};
            default:
                return {command("trimTransparentWhitespace")};
        }
    }

    const Tab* activeTab() const {
        const auto found = std::ranges::find_if(m_acknowledged.tabs, [this](const Tab& tab) {
            return tab.project.value(QStringLiteral("id")) == m_acknowledged.active;
        });
        return found == m_acknowledged.tabs.end() ? nullptr : &*found;
    }

    QList<QByteArray> nextCommand() {
        const Tab* active = activeTab();
        if (!active) return create();
        if (active->entries.size() >= mostEntries) return close();
        switch (upTo(19)) {
            case 0:
                return m_acknowledged.tabs.size() < 3 ? create() : close();
            case 1:
                return close();
            case 2:
                return save(static_cast<int>(active - m_acknowledged.tabs.data()));
            case 3:
            case 4:
            case 5:
                return {commandOnProject("undo")};
            case 6:
            case 7:
                return {commandOnProject("redo")};
            default:
                return edit();
        }
    }

    /// Runs a command to its end, or kills the process in the middle of it at the deadline.
    /// Whether the process still runs.
    bool run(ReplayProcess& editor, const QList<QByteArray>& lines, Clock::time_point deadline) {
        for (const QByteArray& text : lines) {
            const auto answer = editor.run(text, deadline);
            if (!answer) {
                editor.kill();
                return false;
            }
            EXPECT_TRUE(answer->value(QStringLiteral("ok")).toBool())
                << text.constData() << ": "
                << qPrintable(answer->value(QStringLiteral("error")).toString());
        }
        return true;
    }

    /// Runs commands and kills the process, either the moment a command has been acknowledged or at
    /// an instant of its own.
    void runUntilKilled(ReplayProcess& editor) {
        const bool diesBetween = upTo(2) == 0;
        // So few that a fast machine meets as many kills as a slow one.
        const int commands = diesBetween ? upTo(12) : 12;
        const auto deadline =
            Clock::now() + (diesBetween ? 60'000ms : std::chrono::milliseconds(upTo(200)));
        for (int i = 0; i < commands; ++i) {
            const QList<QByteArray> lines = nextCommand();
            m_underWay = lines.join("; ");
            if (!run(editor, lines, deadline)) return;
            const auto answer = editor.run(recoverable, deadline);
            if (!answer) break;
            m_acknowledged = workFrom(answer->value(QStringLiteral("result")).toObject());
            m_underWay.clear();
            ++m_edits;
        }
        editor.kill();
    }

    /// Compares what a start has with what has to be there, and goes on from that.
    void expectRecovered(ReplayProcess& editor) {
        const auto answer = editor.run(recoverable, Clock::now() + 30s);
        ASSERT_TRUE(answer);
        const Work found = workFrom(answer->value(QStringLiteral("result")).toObject());
        m_recovered.floating += std::ranges::count_if(found.tabs, [](const Tab& tab) {
            return tab.project.value(QStringLiteral("floatingSelection")).isObject();
        });
        for (const Tab& tab : found.tabs) m_recovered.entries += std::ssize(tab.entries);
        if (found == m_acknowledged) return;
        const bool moves = m_underWay.contains("undo") || m_underWay.contains("redo") ||
                           m_underWay.contains("saveProject");
        ASSERT_TRUE(!m_underWay.isEmpty() &&
                    leadsOn(m_acknowledged, found, moves ? isMoved : isEdited))
            << "under way: " << m_underWay.constData() << "\nfound " << qPrintable(shown(found))
            << "\ninstead of " << qPrintable(shown(m_acknowledged));
        m_acknowledged = found;
    }

    /// The file, the one that it replaced, the lock, and what a killed write may have left.
    QStringList autosaveFiles() const {
        return QDir(m_home.filePath(QStringLiteral(".local/share/Quillabrae/Autosave")))
            .entryList(QDir::Files | QDir::Hidden);
    }

    static inline const QByteArray recoverable = R"({"do": "recoverable"})";

    QTemporaryDir m_home;
    std::mt19937 m_random{20'231'121};
    Work m_acknowledged;
    /// The command that was not acknowledged yet.
    QByteArray m_underWay;
    int m_edits = 0;
    /// What all starts together have brought back.
    struct {
        qsizetype floating = 0;
        qsizetype entries = 0;
    } m_recovered;
};

TEST_F(KillTest, WhatWasAcknowledgedIsThereAtTheNextStart) {
    int kills = 0;
    while (m_edits < editCount) {
        ReplayProcess editor(m_home.path());
        ASSERT_NO_FATAL_FAILURE(expectRecovered(editor)) << "after kill " << kills;
        runUntilKilled(editor);
        EXPECT_LE(autosaveFiles().size(), 4)
            << qPrintable(autosaveFiles().join(QStringLiteral(", ")));
        ++kills;
    }
    RecordProperty("kills", kills);
    EXPECT_GT(kills, 5);
    EXPECT_GT(m_recovered.floating, 5);
    EXPECT_GT(m_recovered.entries, 50);

    ReplayProcess editor(m_home.path());
    ASSERT_NO_FATAL_FAILURE(expectRecovered(editor));
    ASSERT_TRUE(run(editor, create(), Clock::now() + 30s));
    // Killed writes leave nothing.
    EXPECT_TRUE(autosaveFiles().contains(QStringLiteral("Recovery.quillabraesession")));
    EXPECT_TRUE(autosaveFiles().filter(QStringLiteral(".writing")).isEmpty());
    EXPECT_LE(autosaveFiles().size(), 3);
}

} // namespace
} // namespace quillabrae::replay
