// SPDX-License-Identifier: GPL-3.0-or-later
// Kills the program at random instants and looks at what the next start has. All that was
// acknowledged must be there; of the command that was under way, all of it or nothing.
#include "replay/ReplayProcess.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <random>
#include <vector>

namespace quillabrae::replay {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A tab as this test sees it: the title it had at each history entry, and where it stands.
/// Titles that the editor gave are empty here.
struct Tab {
    QStringList titles;
    int position = 0;

    friend bool operator==(const Tab&, const Tab&) = default;
};

struct Work {
    std::vector<Tab> tabs;
    int active = -1;

    friend bool operator==(const Work&, const Work&) = default;
};

/// What can be seen of it after a start: of each tab its title, where it stands and how many
/// entries it has.
QString shown(const Work& work) {
    QStringList parts;
    for (const Tab& tab : work.tabs)
        parts << QStringLiteral("\"%1\" at %2 of %3")
                     .arg(tab.titles[tab.position])
                     .arg(tab.position)
                     .arg(tab.titles.size());
    return QStringLiteral("%1; active %2").arg(parts.join(QStringLiteral(", "))).arg(work.active);
}

QString shown(const QJsonObject& state) {
    QStringList parts;
    qsizetype active = -1;
    for (const auto& value : state.value(QStringLiteral("projects")).toArray()) {
        const QJsonObject project = value.toObject();
        const QJsonObject history = project.value(QStringLiteral("history")).toObject();
        if (project.value(QStringLiteral("id")) == state.value(QStringLiteral("activeProjectID")))
            active = parts.size();
        const QString title = project.value(QStringLiteral("title")).toString();
        parts << QStringLiteral("\"%1\" at %2 of %3")
                     .arg(title.startsWith(QStringLiteral("Untitled")) ? QString() : title)
                     .arg(history.value(QStringLiteral("selectedIndex")).toInt())
                     .arg(history.value(QStringLiteral("titles")).toArray().size());
    }
    return QStringLiteral("%1; active %2").arg(parts.join(QStringLiteral(", "))).arg(active);
}

/// The lines of one command, of which the last one acknowledges it, and the work after it.
struct Command {
    QList<QByteArray> lines;
    Work after;
};

class KillTest : public testing::Test {
protected:
    KillTest() {
        QImage noise(256, 192, QImage::Format_RGB32);
        for (int y = 0; y < noise.height(); ++y)
            for (int x = 0; x < noise.width(); ++x)
                noise.setPixel(x, y, static_cast<QRgb>(m_random()));
        noise.save(m_home.filePath(QStringLiteral("noise.png")));
    }

    int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }

    Command create(const Work& work) {
        Command command{
            {R"({"do": "store.createUntitledProject", "width": 256, "height": 192, "resolutionDPI": 96})"},
            work};
        command.after.tabs.push_back({{QString()}, 0});
        command.after.active = static_cast<int>(work.tabs.size());
        return command;
    }

    Command edit(const Work& work) {
        const QString title = QStringLiteral("T%1").arg(++m_count);
        Command command{
            {R"({"do": "layer.load", "index": 0, "path": "~/noise.png"})",
             QStringLiteral(R"({"do": "project", "title": "%1"})").arg(title).toUtf8(),
             R"({"do": "store.recordHistory", "projectID": "active", "title": "Edit", "symbolName": "pencil"})"},
            work};
        Tab& tab = command.after.tabs[static_cast<std::size_t>(work.active)];
        tab.titles.resize(tab.position + 1);
        tab.titles << title;
        ++tab.position;
        return command;
    }

    Command move(const Work& work, int by, const QByteArray& operation) {
        Command command{{"{\"do\": \"store." + operation + "\", \"projectID\": \"active\"}"}, work};
        Tab& tab = command.after.tabs[static_cast<std::size_t>(work.active)];
        if (tab.position + by >= 0 && tab.position + by < tab.titles.size()) tab.position += by;
        return command;
    }

    Command close(const Work& work) {
        Command command{{R"({"do": "store.closeProject", "id": "active"})"}, work};
        auto& after = command.after;
        after.tabs.erase(after.tabs.begin() + work.active);
        after.active = std::min(work.active, static_cast<int>(after.tabs.size()) - 1);
        return command;
    }

    /// Whether one more entry stays below the number that a start brings back.
    static bool hasRoom(const Work& work) {
        return work.tabs[static_cast<std::size_t>(work.active)].titles.size() < 20;
    }

    Command nextCommand(const Work& work) {
        if (work.tabs.empty()) return create(work);
        switch (upTo(9)) {
            case 0:
                return work.tabs.size() < 3 ? create(work) : close(work);
            case 1:
                return close(work);
            case 2:
            case 3:
                return move(work, -1, "undo");
            case 4:
                return move(work, 1, "redo");
            default:
                return hasRoom(work) ? edit(work) : close(work);
        }
    }

    /// Runs commands until the deadline comes in the middle of one, and kills the process.
    void runUntilKilled(ReplayProcess& editor, Clock::time_point deadline) {
        for (;;) {
            const Command command = nextCommand(m_acknowledged);
            m_underWay = command.after;
            for (const QByteArray& line : command.lines) {
                const auto answer = editor.run(line, deadline);
                if (!answer) {
                    editor.kill();
                    return;
                }
                EXPECT_TRUE(answer->value(QStringLiteral("ok")).toBool())
                    << line.constData() << ": "
                    << qPrintable(answer->value(QStringLiteral("error")).toString());
            }
            m_acknowledged = command.after;
            m_underWay = command.after;
        }
    }

    /// Compares what a start has with what may be there, and goes on from that.
    void expectRecovered(ReplayProcess& editor) {
        const auto answer = editor.run(R"({"do": "state"})", Clock::now() + 30s);
        ASSERT_TRUE(answer);
        const QString found = shown(answer->value(QStringLiteral("result")).toObject());
        if (found == shown(m_underWay))
            m_acknowledged = m_underWay;
        else
            ASSERT_EQ(found.toStdString(), shown(m_acknowledged).toStdString())
                << "or else " << qPrintable(shown(m_underWay));
    }

    QTemporaryDir m_home;
    std::mt19937 m_random{20'231'121};
    int m_count = 0;
    Work m_acknowledged;
    Work m_underWay;
};

TEST_F(KillTest, WhatWasAcknowledgedIsThereAtTheNextStart) {
    const auto end = Clock::now() + 15s;
    int kills = 0;
    while (Clock::now() < end) {
        ReplayProcess editor(m_home.path());
        ASSERT_NO_FATAL_FAILURE(expectRecovered(editor)) << "after kill " << kills;
        runUntilKilled(editor, Clock::now() + std::chrono::milliseconds(upTo(300)));
        ++kills;
    }
    RecordProperty("kills", kills);
    EXPECT_GT(kills, 5);

    ReplayProcess editor(m_home.path());
    ASSERT_NO_FATAL_FAILURE(expectRecovered(editor));
    ASSERT_TRUE(editor.run(R"({"do": "store.persistAutosavedSession"})", Clock::now() + 30s));
    // Killed writes leave nothing: there is the file, and the one that it replaced.
    const QDir autosave(m_home.filePath(QStringLiteral(".local/share/Quillabrae/Autosave")));
    const QStringList names = autosave.entryList(QDir::Files | QDir::Hidden);
    EXPECT_TRUE(names.contains(QStringLiteral("Recovery.quillabraesession")));
    EXPECT_LE(names.size(), 2) << qPrintable(names.join(QStringLiteral(", ")));
}

} // namespace
} // namespace quillabrae::replay
