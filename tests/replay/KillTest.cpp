// SPDX-License-Identifier: GPL-3.0-or-later
// Kills the program at random instants between and within random edits, and compares what the next
// start has, field by field, with the store after the last edit that was acknowledged. Of an edit
// that was under way, all of it is there or nothing. QUILLABRAE_KILLS says how many kills the test
// of large projects makes, QUILLABRAE_KILL_SEED with which seed.
#include "replay/KillCommands.h"
#include "replay/RecoverableWork.h"
#include "replay/ReplayProcess.h"

#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>

namespace quillabrae::replay {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr unsigned usualSeed = 20'231'121;

int numberFrom(const char* variable, int otherwise) {
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}

/// An editor that is killed and started again, over and over, in one home.
class KilledEditor {
public:
    KilledEditor(CanvasSizes sizes, unsigned seed) : m_commands(m_home.path(), sizes, seed) {}

    /// What all starts together have brought back, and what was killed.
    struct Tally {
        int kills = 0;
        int edits = 0;
        int killsOfPending = 0;
        qsizetype tabs = 0;
        qsizetype floating = 0;
        qsizetype entries = 0;
        double megapixels = 0;
    };
    const Tally& tally() const { return m_tally; }

    /// A start, with what was there when the last one was killed, and the next kill.
    void startAndKill() {
        ReplayProcess editor(m_home.path());
        ASSERT_NO_FATAL_FAILURE(expectRecovered(editor)) << "after kill " << m_tally.kills;
        runUntilKilled(editor);
        EXPECT_LE(autosaveFiles().size(), 4)
            << qPrintable(autosaveFiles().join(QStringLiteral(", ")));
        ++m_tally.kills;
    }

    /// A last start, and a write after it: killed writes leave nothing.
    void expectNoLitter() {
        ReplayProcess editor(m_home.path());
        ASSERT_NO_FATAL_FAILURE(expectRecovered(editor));
        ASSERT_TRUE(run(editor, m_commands.create(), Clock::now() + patience));
        EXPECT_TRUE(autosaveFiles().contains(QStringLiteral("Recovery.quillabraesession")));
        EXPECT_TRUE(autosaveFiles().filter(QStringLiteral(".writing")).isEmpty());
        EXPECT_LE(autosaveFiles().size(), 3);
    }

private:
    static constexpr auto patience = 120s;
    static inline const QByteArray recoverable = R"({"do": "recoverable"})";

    /// Runs a command to its end, or kills the process in the middle of it at the deadline.
    /// Whether the process still runs.
    bool run(ReplayProcess& editor, const KillCommand& command, Clock::time_point deadline) {
        for (const QByteArray& text : command.lines) {
            const auto answer = editor.run(text, deadline);
            if (!answer) {
                editor.kill();
                return false;
            }
            // On a tiny canvas there is no room for a draft, or no press to let go of.
            const bool mayMiss = text.contains("canvas.type") || text.contains("canvas.release");
            EXPECT_TRUE(mayMiss || answer->value(QStringLiteral("ok")).toBool())
                << text.constData() << ": "
                << qPrintable(answer->value(QStringLiteral("error")).toString());
        }
        return true;
    }

    int megapixelsOpen() const {
        double sum = 0;
        for (const RecoverableTab& tab : m_acknowledged.tabs)
            sum += double(tab.canvas().width()) * tab.canvas().height() / 1e6;
        return static_cast<int>(sum);
    }

    /// Runs commands and kills the process, either the moment a command has been acknowledged or at
    /// an instant of its own.
    void runUntilKilled(ReplayProcess& editor) {
        const bool diesBetween = m_commands.upTo(2) == 0;
        // So few that a fast machine meets as many kills as a slow one.
        const int commands = diesBetween ? m_commands.upTo(12) : 12;
        const auto life = std::chrono::milliseconds(m_commands.upTo(200 + 60 * megapixelsOpen()));
        const auto deadline = Clock::now() + (diesBetween ? patience : life);
        for (int i = 0; i < commands; ++i) {
            m_underWay = m_commands.next(m_acknowledged);
            if (!run(editor, m_underWay, deadline)) break;
            const auto answer = editor.run(recoverable, deadline);
            if (!answer) break;
            acknowledge(answer->value(QStringLiteral("result")).toObject());
            if (m_isPending && m_commands.upTo(2) == 0) break;
        }
        editor.kill();
        m_tally.killsOfPending += m_isPending ? 1 : 0;
        m_commands.forgetPending();
    }

    void acknowledge(const QJsonObject& result) {
        const RecoverableWork work = RecoverableWork::from(result);
        m_isPending = m_underWay.isPending;
        const bool isRecorded =
            m_underWay.change == Change::save || !work.hasSamePast(m_acknowledged);
        if (isRecorded) m_acknowledged = work;
        // What has only begun, or came to nothing, may have put floating pixels down or dropped
        // what could be redone. Nothing is lost where they float again, and it can be.
        m_unrecorded = work;
        m_underWay.lines.clear();
        ++m_tally.edits;
    }

    bool isExplained(const RecoverableWork& found) const {
        if (found == m_acknowledged || found == m_unrecorded) return true;
        return !m_underWay.lines.isEmpty() && (leadsOn(m_acknowledged, found, m_underWay.change) ||
                                               leadsOn(m_unrecorded, found, m_underWay.change));
    }

    /// Compares what a start has with what has to be there, and goes on from that.
    void expectRecovered(ReplayProcess& editor) {
        const auto answer = editor.run(recoverable, Clock::now() + patience);
        ASSERT_TRUE(answer);
        const RecoverableWork found =
            RecoverableWork::from(answer->value(QStringLiteral("result")).toObject());
        count(found);
        ASSERT_TRUE(isExplained(found))
            << "under way: " << m_underWay.lines.join("; ").constData()
            << (m_isPending ? " (pending)" : "")
            << "\nfound and not acknowledged (+), acknowledged and not found (-):\n"
            << qPrintable(found.differenceFrom(m_acknowledged));
        m_acknowledged = found;
        m_unrecorded = found;
        m_isPending = false;
    }

    void count(const RecoverableWork& found) {
        m_tally.tabs += std::ssize(found.tabs);
        for (const RecoverableTab& tab : found.tabs) {
            m_tally.entries += std::ssize(tab.entries);
            if (tab.project.value(QStringLiteral("floatingSelection")).isObject())
                ++m_tally.floating;
            m_tally.megapixels = std::max(
                m_tally.megapixels, double(tab.canvas().width()) * tab.canvas().height() / 1e6);
        }
    }

    /// The file, the one that it replaced, the lock, and what a killed write may have left.
    QStringList autosaveFiles() const {
        return QDir(m_home.filePath(QStringLiteral(".local/share/Quillabrae/Autosave")))
            .entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_home;
    KillCommands m_commands;
    /// What was recorded when the last command returned.
    RecoverableWork m_acknowledged;
    /// The same, with what was changed since without having been recorded.
    RecoverableWork m_unrecorded;
    /// The command that has not returned yet.
    KillCommand m_underWay;
    bool m_isPending = false;
    Tally m_tally;
};

TEST(Kill, WhatWasAcknowledgedIsThereAtTheNextStart) {
    constexpr int editCount = 400;
    KilledEditor editor(CanvasSizes::small, usualSeed);
    while (editor.tally().edits < editCount) ASSERT_NO_FATAL_FAILURE(editor.startAndKill());
    EXPECT_GT(editor.tally().kills, 5);
    EXPECT_GT(editor.tally().killsOfPending, 0);
    EXPECT_GT(editor.tally().floating, 5);
    EXPECT_GT(editor.tally().entries, 50);
    editor.expectNoLitter();
}

TEST(Kill, LargeProjectsComeBackToo) {
    const int kills = numberFrom("QUILLABRAE_KILLS", 12);
    const int seed = numberFrom("QUILLABRAE_KILL_SEED", static_cast<int>(usualSeed));
    KilledEditor editor(CanvasSizes::any, static_cast<unsigned>(seed));
    while (editor.tally().kills < kills) ASSERT_NO_FATAL_FAILURE(editor.startAndKill());
    const KilledEditor::Tally& tally = editor.tally();
    EXPECT_GT(tally.entries, kills);
    std::cout << "seed " << seed << ": " << tally.kills << " kills, " << tally.killsOfPending
              << " with something pending, " << tally.edits << " edits; back came " << tally.tabs
              << " tabs, " << tally.entries << " entries, " << tally.floating
              << " floating; largest " << tally.megapixels << " megapixels\n";
    editor.expectNoLitter();
}

} // namespace
} // namespace quillabrae::replay
