// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"
#include "platform/ProgramInstance.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <future>
#include <thread>
#include <vector>

namespace quillabrae::platform {
namespace {

using namespace std::chrono_literals;
using Role = ProgramInstance::Role;

const StartRequest nothing;
const StartRequest oneFile{{QUrl::fromLocalFile(QStringLiteral("/home/me/photo.jpg"))}};

class Meeting : public ::testing::Test {
protected:
    MeetingPlace place(const QString& key = QStringLiteral("key")) const {
        return {folder.path(), key};
    }
    QString socketPath() const { return folder.filePath(QStringLiteral("key.socket")); }

    /// Starts another one on a thread of its own while this thread serves the first.
    Role startAnother(const StartRequest& request, std::chrono::milliseconds patience = 5s) const {
        auto role = std::async(std::launch::async, [this, request, patience] {
            return ProgramInstance(place()).start(request, patience);
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return role.wait_for(0s) == std::future_status::ready; },
                                    20'000));
        return role.get();
    }

    QTemporaryDir folder;
};

TEST_F(Meeting, TheFirstStartRunsAndTheSecondHandsItsFilesOver) {
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(oneFile), Role::first);
    EXPECT_EQ(startAnother(oneFile), Role::second);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked[0][0].value<StartRequest>(), oneFile);
}

TEST_F(Meeting, AStartWithoutFilesAsksForNoMoreThanTheProgram) {
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);
    EXPECT_EQ(startAnother(nothing), Role::second);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked[0][0].value<StartRequest>(), nothing);
}

TEST_F(Meeting, LinksArriveApartFromFiles) {
    const QUrl link(QStringLiteral("quillabrae://auth/callback?code=c&state=s"));
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);
    for (const StartRequest& request :
         {StartRequest{{}, {link}}, StartRequest{oneFile.files, {link}}}) {
        EXPECT_EQ(startAnother(request), Role::second);
        EXPECT_EQ(asked.takeFirst()[0].value<StartRequest>(), request);
    }
}

TEST_F(Meeting, ThousandsOfFilesArriveInOneMessage) {
    StartRequest request;
    for (int i = 0; i < 20'000; ++i)
        request.files.append(
            QUrl::fromLocalFile(QStringLiteral("/home/me/pictures/photo %1.jpg").arg(i)));
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);
    EXPECT_EQ(startAnother(request), Role::second);
    ASSERT_EQ(asked.count(), 1);
    EXPECT_EQ(asked[0][0].value<StartRequest>(), request);
}

TEST_F(Meeting, ProgramsOfDifferentKeysDoNotMeet) {
    ProgramInstance first(place());
    ProgramInstance other(place(QStringLiteral("other")));
    EXPECT_EQ(first.start(nothing), Role::first);
    EXPECT_EQ(other.start(nothing), Role::first);
}

TEST_F(Meeting, AfterTheFirstEndsTheNextRuns) {
    {
        ProgramInstance first(place());
        EXPECT_EQ(first.start(nothing), Role::first);
    }
    EXPECT_EQ(ProgramInstance(place()).start(nothing), Role::first);
}

TEST_F(Meeting, ASocketThatNobodyServesIsReplaced) {
    QFile stale(socketPath());
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.close();
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);
    EXPECT_EQ(startAnother(nothing), Role::second);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(Meeting, AKilledProgramLeavesNothingInTheWay) {
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ProgramInstance first(place());
        const char role = first.start(nothing) == Role::first ? '1' : '2';
        if (::write(ready[1], &role, 1) == 1) ::pause();
        ::_exit(1);
    }
    char role = 0;
    ASSERT_EQ(::read(ready[0], &role, 1), 1);
    EXPECT_EQ(role, '1');
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(QFile::exists(socketPath()));
    EXPECT_EQ(ProgramInstance(place()).start(nothing), Role::first);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(Meeting, AProgramThatDiesBeforeItAnswersIsReplacedByTheNext) {
    auto first = std::make_unique<ProgramInstance>(place());
    EXPECT_EQ(first->start(nothing), Role::first);
    auto role = std::async(std::launch::async, [this] {
        ProgramInstance next(place());
        return next.start(oneFile, 10s);
    });
    // Time for its message to stand unread in the socket.
    std::this_thread::sleep_for(200ms);
    first.reset();
    EXPECT_EQ(role.get(), Role::first);
}

TEST_F(Meeting, AProgramThatHangsLeavesTheNextUnanswered) {
    ProgramInstance first(place());
    EXPECT_EQ(first.start(nothing), Role::first);
    // Nobody serves the first one's socket while this thread is in `start`.
    EXPECT_EQ(ProgramInstance(place()).start(oneFile, 300ms), Role::unanswered);
}

TEST_F(Meeting, PeersThatTalkNonsenseDoNotDisturb) {
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);

    const QByteArray whole = HandOver::message(oneFile);
    QByteArray huge = HandOver::message(nothing);
    huge.replace(huge.size() - 4, 4, QByteArray("\x7f\xff\xff\xff", 4));
    for (const QByteArray& nonsense :
         {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray(1'000'000, '\0'), huge, whole.first(5),
          whole.first(whole.size() - 1), QByteArray()}) {
        QLocalSocket peer;
        peer.connectToServer(socketPath());
        ASSERT_TRUE(peer.waitForConnected(1000));
        peer.write(nonsense);
        peer.flush();
        QTest::qWait(20);
        peer.abort();
    }
    QTest::qWait(50);
    EXPECT_EQ(asked.count(), 0);
    EXPECT_EQ(startAnother(oneFile), Role::second);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(Meeting, ASilentPeerDoesNotHoldUpTheNext) {
    ProgramInstance first(place());
    QSignalSpy asked(&first, &ProgramInstance::asked);
    EXPECT_EQ(first.start(nothing), Role::first);
    QLocalSocket silent;
    silent.connectToServer(socketPath());
    ASSERT_TRUE(silent.waitForConnected(1000));
    EXPECT_EQ(startAnother(oneFile), Role::second);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(Meeting, WhoHearsOfFilesMayRunALoopOfItsOwn) {
    ProgramInstance first(place());
    int heard = 0;
    QObject::connect(&first, &ProgramInstance::asked, &first, [&] {
        ++heard;
        QTest::qWait(100);
    });
    EXPECT_EQ(first.start(nothing), Role::first);
    EXPECT_EQ(startAnother(oneFile), Role::second);
    EXPECT_EQ(startAnother(oneFile), Role::second);
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard == 2; }));
}

TEST_F(Meeting, OfManyStartsAtOnceOneRuns) {
    constexpr int startCount = 8;
    std::atomic<int> runningCount = 0;
    std::atomic<int> doneCount = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < startCount; ++i) {
        threads.emplace_back([&] {
            ProgramInstance instance(place());
            if (instance.start(oneFile, 1s) == Role::first) ++runningCount;
            ++doneCount;
            while (doneCount < startCount) std::this_thread::sleep_for(5ms);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(runningCount, 1);
}

TEST_F(Meeting, WithoutAFolderEveryStartRuns) {
    EXPECT_EQ(ProgramInstance({QString(), QStringLiteral("key")}).start(nothing), Role::first);
    EXPECT_EQ(ProgramInstance({folder.filePath(QStringLiteral("missing")), QStringLiteral("key")})
                  .start(nothing),
              Role::first);
}

TEST(MeetingPlace, AnotherHomeIsAnotherPlace) {
    const MeetingPlace mine = MeetingPlace::standard(QStringLiteral("/home/me/data"));
    EXPECT_EQ(mine.key, MeetingPlace::standard(QStringLiteral("/home/me/data")).key);
    EXPECT_NE(mine.key, MeetingPlace::standard(QStringLiteral("/home/you/data")).key);
    EXPECT_FALSE(mine.folder.isEmpty());
}

/// What somebody else may have put where the folder for meeting is to be.
struct Trap {
    const char* name;
    void (*set)(const QString& folder);
};

class MeetingPlaceTrap : public testing::TestWithParam<Trap> {};

TEST_P(MeetingPlaceTrap, IsNotStoodIn) {
    const QTemporaryDir temporary;
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray before = qgetenv("TMPDIR");
    qunsetenv("XDG_RUNTIME_DIR");
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    EXPECT_FALSE(MeetingPlace::standard(QStringLiteral("/data")).folder.isEmpty());
    const QString folder = temporary.filePath(QStringLiteral("quillabrae-%1").arg(::geteuid()));
    ASSERT_TRUE(QDir(folder).removeRecursively());
    GetParam().set(folder);
    EXPECT_TRUE(MeetingPlace::standard(QStringLiteral("/data")).folder.isEmpty());
    qputenv("TMPDIR", before);
    qputenv("XDG_RUNTIME_DIR", runtime);
    if (before.isNull()) qunsetenv("TMPDIR");
    if (runtime.isNull()) qunsetenv("XDG_RUNTIME_DIR");
}

void makeOpenFolder(const QString& folder) {
    QDir().mkpath(folder);
    ::chmod(QFile::encodeName(folder).constData(), 0777);
}
void makeLink(const QString& folder) {
    const QString elsewhere = folder + QStringLiteral(".elsewhere");
    ::mkdir(QFile::encodeName(elsewhere).constData(), 0700);
    QFile::link(elsewhere, folder);
}
void makeFile(const QString& folder) {
    QFile file(folder);
    file.open(QIODevice::WriteOnly);
}
/// Only root can give a folder away; to others it is one that is open.
void makeAnothers(const QString& folder) {
    makeOpenFolder(folder);
    constexpr uid_t nobody = 65534;
    if (::chown(QFile::encodeName(folder).constData(), nobody, nobody) == 0)
        ::chmod(QFile::encodeName(folder).constData(), 0700);
}

INSTANTIATE_TEST_SUITE_P(Of, MeetingPlaceTrap,
                         testing::Values(Trap{"AnOpenFolder", makeOpenFolder},
                                         Trap{"ALink", makeLink}, Trap{"AFile", makeFile},
                                         Trap{"AnothersFolder", makeAnothers}),
                         [](const auto& trap) { return trap.param.name; });

} // namespace
} // namespace quillabrae::platform
