// SPDX-License-Identifier: GPL-3.0-or-later
// Long random scripts, with what must hold of all open work looked at after each line. A failure
// prints its seed and the shortest script found that fails alike, for quillabrae-replay.
#include "replay/Runner.h"
#include "replay/ScriptError.h"
#include "replay/SequenceGenerator.h"
#include "replay/SequenceInvariants.h"
#include "replay/Session.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

namespace quillabrae::replay {
namespace {

using Script = std::vector<QByteArray>;

/// Where a home is made. Each command flushes its work to the disk: in memory that takes no time.
QString homeTemplate() {
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
           QStringLiteral("/quillabrae-sequence-XXXXXX");
}

/// An editor in a home of its own that can be killed and started again.
class SequenceRun {
public:
    SequenceRun() { start(); }

    Session& session() { return *m_session; }

    /// Runs a line, understood or not; what it broke.
    QStringList run(const QByteArray& text) {
        const Moment before = Moment::of(*m_session);
        if (text == restartLine) {
            start();
            return brokenByRestart(before, Moment::of(*m_session));
        }
        const QJsonObject line = QJsonDocument::fromJson(text).object();
        try {
            m_session->runLine(line);
            QCoreApplication::processEvents();
        } catch (const ScriptError& error) {
            m_misunderstood << QString::fromUtf8(text) + QStringLiteral(": ") + error.message();
        }
        return brokenRules({before, line, Moment::of(*m_session), *m_session});
    }

    /// Lines that came to nothing, with the reason.
    const QStringList& misunderstood() const { return m_misunderstood; }

private:
    void start() {
        m_runner.reset();
        m_session.reset();
        m_session = std::make_unique<Session>(SessionPlaces{m_home.path(), {}});
        m_runner = std::make_unique<Runner>(*m_session, AfterFailure::goOn);
    }

    QTemporaryDir m_home{homeTemplate()};
    std::unique_ptr<Session> m_session;
    std::unique_ptr<Runner> m_runner;
    QStringList m_misunderstood;
};

QString ruleOf(const QStringList& broken) {
    return broken.isEmpty() ? QString() : broken.first().section(QLatin1Char(':'), 0, 0);
}

/// Runs a script to its first failure and cuts it off there.
QStringList runAll(Script& script) {
    SequenceRun run;
    for (std::size_t i = 0; i < script.size(); ++i) {
        const QStringList broken = run.run(script[i]);
        if (broken.isEmpty()) continue;
        script.resize(i + 1);
        return broken;
    }
    return {};
}

/// Takes lines out, ever fewer at once, as long as the same rule breaks.
Script shortened(Script script, const QString& rule) {
    for (std::size_t size = script.size() / 2; size > 0; size /= 2) {
        for (std::size_t from = 0; from + size < script.size();) {
            Script without = script;
            const auto first = without.begin() + static_cast<std::ptrdiff_t>(from);
            without.erase(first, first + static_cast<std::ptrdiff_t>(size));
            if (ruleOf(runAll(without)) == rule)
                script = without;
            else
                from += size;
        }
    }
    return script;
}

QByteArray textOf(std::span<const QByteArray> script) {
    QByteArray text;
    for (const QByteArray& line : script)
        text += (line == restartLine ? "# The editor is killed and started again." : line) + '\n';
    return text;
}

/// Draws and runs a script of so many lines.
void soak(unsigned seed, int lines) {
    // Enough to see what was going on.
    constexpr std::size_t latest = 12;
    SequenceRun run;
    SequenceGenerator generator(seed);
    Script script;
    for (int i = 0; i < lines; ++i) {
        script.push_back(generator.next(run.session()));
        const QStringList broken = run.run(script.back());
        if (broken.isEmpty()) continue;
        const Script shortest = shortened(script, ruleOf(broken));
        FAIL() << "seed " << seed << ", line " << i << ": "
               << broken.join(QStringLiteral("; ")).toStdString() << "\n"
               << textOf(shortest).toStdString() << "# What ran last, if that is another failure:\n"
               << textOf(std::span(script).last(std::min(script.size(), latest))).toStdString();
    }
    // Lines that come to nothing test nothing.
    EXPECT_LT(run.misunderstood().size(), lines / 10)
        << run.misunderstood().join(QLatin1Char('\n')).toStdString();
}

class Sequence : public testing::TestWithParam<unsigned> {};

TEST_P(Sequence, KeepsWhatMustHold) {
    constexpr int lines = 150;
    soak(GetParam(), lines);
}

INSTANTIATE_TEST_SUITE_P(Random, Sequence, testing::Range(1U, 17U));

/// Hours of it where QUILLABRAE_SOAK_SECONDS asks for them, from the seed QUILLABRAE_SOAK_SEED on.
TEST(SequenceSoak, KeepsWhatMustHold) {
    const int seconds = qEnvironmentVariableIntValue("QUILLABRAE_SOAK_SECONDS");
    const auto first = static_cast<unsigned>(qEnvironmentVariableIntValue("QUILLABRAE_SOAK_SEED"));
    constexpr int lines = 600;
    QElapsedTimer timer;
    timer.start();
    unsigned seed = first;
    for (; timer.elapsed() < qint64{seconds} * 1000 && !HasFatalFailure(); ++seed)
        soak(seed, lines);
    RecordProperty("scripts", static_cast<int>(seed - first));
}

} // namespace
} // namespace quillabrae::replay
