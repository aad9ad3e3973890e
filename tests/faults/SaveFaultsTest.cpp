// SPDX-License-Identifier: GPL-3.0-or-later
// Every system call of everything that the editor writes fails in turn, in every way that it can
// fail, or is the last one of the process. After each there is the old or the new thing, whole, and
// nothing else, and the user was told which. QUILLABRAE_FAULTS_ALL=1 tries all of them; otherwise a
// fixed part is tried.
#include "faults/FaultedOperations.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

namespace quillabrae::faults {
namespace {

struct Call {
    QByteArray name;
    QByteArray path;
};

/// What a call comes to.
struct Fault {
    QByteArray what;
    int number = 0;
};

struct Outcome {
    QByteArray output;
    bool isKilled = false;
    Contents contents;
};

constexpr std::array removals{"unlink", "rmdir", "remove", "opendir"};

bool isOneOf(const QByteArray& name, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* other) { return name == other; });
}

/// Interrupted or cut short, a call is to be made again: nothing went wrong.
bool isHarmless(const QByteArray& what) {
    return isOneOf(what, {"EINTR", "short"});
}

bool isKill(const QByteArray& what) {
    return what.startsWith("kill");
}

QList<QByteArray> faultsOf(const QByteArray& call, Writer writer) {
    QList<QByteArray> faults{"kill-after"};
    if (isOneOf(call, {"create", "write", "mkdir"})) faults << "full";
    if (isOneOf(call, {"create", "write", "fsync", "fdatasync", "close", "mkdir", "rename",
                       "exchange", "link"}))
        faults << "ENOSPC";
    faults << (call == "chmod" ? "EPERM" : "EIO");
    if (!isOneOf(call, {"write", "read", "fsync", "fdatasync", "close", "ftruncate", "chmod"}))
        faults << "EACCES";
    if (isOneOf(call, {"write", "read"})) faults << "short";
    const bool isTakenUp = isOneOf(call, {"open", "create", "write", "read", "fsync", "fdatasync"});
    if (call != "opendir" && (writer == Writer::ours || isTakenUp)) faults << "EINTR";
    return faults;
}

const char* reasonOf(const QByteArray& what) {
    struct Row {
        const char* name;
        int number;
    };
    static constexpr std::array rows{Row{"EIO", EIO}, Row{"EACCES", EACCES}, Row{"EPERM", EPERM}};
    const auto* row = std::ranges::find_if(rows, [&](const Row& r) { return what == r.name; });
    return std::strerror(row == rows.end() ? ENOSPC : row->number);
}

class SaveFaults : public testing::TestWithParam<Operation> {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_root.isValid());
        QDir().mkpath(path("home/docs"));
        for (const QByteArray& script : operation().before) start(script);
        std::filesystem::rename(file("home"), file("before"));
    }

    static const Operation& operation() { return GetParam(); }

    /// Does it once with what was before.
    Outcome run(const Fault& fault) {
        std::filesystem::remove_all(file("home"));
        std::filesystem::copy(file("before"), file("home"),
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::copy_symlinks);
        return again(fault);
    }

    /// Does it with what there is.
    Outcome again(const Fault& fault = {}) {
        QFile::remove(path("log"));
        const QByteArray script = "{\"do\": \"faults.begin\"}\n" + operation().lines +
                                  "{\"do\": \"faults.end\"}\n"
                                  "{\"do\": \"state\", \"of\": \"statusMessage\"}\n";
        Outcome outcome =
            start(script, fault.number > 0 ? fault.what + '@' + QByteArray::number(fault.number)
                                           : QByteArray());
        outcome.contents = present();
        return outcome;
    }

    Contents present() const { return contentsOf(path("home/") + operation().folder); }

    /// The calls of the last run.
    std::vector<Call> calls() const {
        QFile log(path("log"));
        if (!log.open(QIODevice::ReadOnly)) return {};
        std::vector<Call> found;
        for (const QByteArray& line : log.readAll().split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words.size() >= 4) found.push_back({words[1], words[3]});
        }
        return found;
    }

    static Contents withoutTemporaries(Contents contents) {
        std::erase_if(contents, [](const auto& entry) {
            return operation().temporary.match(QString::fromStdString(entry.first)).hasMatch();
        });
        return contents;
    }

    void expectKilledWell(const Outcome& outcome) {
        EXPECT_TRUE(outcome.isKilled) << outcome.output.constData();
        EXPECT_THAT(withoutTemporaries(outcome.contents), testing::AnyOf(m_old, m_new));
    }

    void expectToldRight(const Fault& fault, const Outcome& outcome) {
        const bool isTold =
            !operation().failure.isEmpty() && outcome.output.contains(operation().failure);
        const Contents kept = withoutTemporaries(outcome.contents);
        if (isHarmless(fault.what)) {
            EXPECT_FALSE(isTold) << outcome.output.constData();
            EXPECT_EQ(kept, m_new);
        } else if (operation().failure.isEmpty()) {
            EXPECT_THAT(kept, testing::AnyOf(m_old, m_new));
        } else if (isTold) {
            EXPECT_EQ(kept, m_old) << outcome.output.constData();
            EXPECT_TRUE(!operation().isReasonTold || outcome.output.contains(reasonOf(fault.what)))
                << outcome.output.constData();
        } else {
            EXPECT_EQ(kept, m_new) << outcome.output.constData();
        }
    }

    void expectNoLitter(const Call& call, const Fault& fault, const Outcome& outcome) {
        if (withoutTemporaries(outcome.contents) == outcome.contents) return;
        const bool mayStay =
            isKill(fault.what) ||
            std::ranges::any_of(removals, [&](const char* name) { return call.name == name; });
        EXPECT_TRUE(mayStay) << "left: " << testing::PrintToString(outcome.contents);
        if (operation().litter == Litter::goesInTime) return;
        const Outcome next = again();
        EXPECT_EQ(next.contents, withoutTemporaries(next.contents));
        if (operation().isRepeatable) {
            EXPECT_EQ(next.contents, m_new);
        }
    }

    void expectRightAfter(const Call& call, const Fault& fault) {
        SCOPED_TRACE(testing::Message()
                     << fault.what.constData() << " at call " << fault.number << ", "
                     << call.name.constData() << ' ' << call.path.constData());
        const Outcome outcome = run(fault);
        if (isKill(fault.what))
            expectKilledWell(outcome);
        else
            expectToldRight(fault, outcome);
        expectNoLitter(call, fault, outcome);
    }

    /// What is there before, and after it went well.
    void learn() {
        const Outcome well = run({});
        m_calls = calls();
        ASSERT_FALSE(m_calls.empty());
        m_new = well.contents;
        m_old = contentsOf(path("before/") + operation().folder);
        ASSERT_NE(m_old, m_new);
        ASSERT_EQ(withoutTemporaries(m_new), m_new);
        ASSERT_EQ(run({}).contents, m_new) << "the same twice";
    }

    std::vector<Call> m_calls;
    Contents m_old;
    Contents m_new;

private:
    QString path(const char* name) const { return m_root.filePath(QLatin1StringView(name)); }
    QString path(const QString& name) const { return m_root.filePath(name); }
    std::filesystem::path file(const char* name) const { return path(name).toStdString(); }

    Outcome start(const QByteArray& script, const QByteArray& plan = {}) const {
        QProcess editor;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FAULTY_CALLS));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_root.path());
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_BELOW"),
                           path("home/") + operation().folder);
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_LOG"), path("log"));
        environment.insert(QStringLiteral("QUILLABRAE_FAULTS_PLAN"), QString::fromLatin1(plan));
        editor.setProcessEnvironment(environment);
        editor.start(QStringLiteral(QUILLABRAE_REPLAY),
                     {QStringLiteral("--home"), path("home"), QStringLiteral("-")});
        editor.write(script);
        editor.closeWriteChannel();
        EXPECT_TRUE(editor.waitForFinished(60'000));
        return {editor.readAllStandardOutput(), editor.exitStatus() == QProcess::CrashExit, {}};
    }

    QTemporaryDir m_root{QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                             ? QStringLiteral("/dev/shm/quillabrae-faults-XXXXXX")
                             : QDir::tempPath() + QStringLiteral("/quillabrae-faults-XXXXXX")};
};

TEST_P(SaveFaults, LeaveTheOldOrTheNewWhole) {
    ASSERT_NO_FATAL_FAILURE(learn());
    std::vector<std::pair<Call, Fault>> cases;
    for (std::size_t i = 0; i < m_calls.size(); ++i)
        for (const QByteArray& what : faultsOf(m_calls[i].name, operation().writer))
            cases.emplace_back(m_calls[i], Fault{what, static_cast<int>(i) + 1});
    // A prime: the cases of a call are not always the same ones.
    const std::size_t stride = qEnvironmentVariableIsSet("QUILLABRAE_FAULTS_ALL") ? 1 : 11;
    int runs = 0;
    for (std::size_t i = operation().name.size() % stride; i < cases.size(); i += stride, ++runs)
        expectRightAfter(cases[i].first, cases[i].second);
    std::cout << operation().name << ": " << m_calls.size() << " calls, " << cases.size()
              << " faults, " << runs << " tried\n";
}

INSTANTIATE_TEST_SUITE_P(Of, SaveFaults, testing::ValuesIn(operations()),
                         [](const auto& each) { return each.param.name; });

} // namespace
} // namespace quillabrae::faults
