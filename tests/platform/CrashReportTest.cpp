// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CrashReporter.h"
#include "platform/LastCrashReport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <thread>

namespace quillabrae::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

constexpr std::array signals{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGSYS};

/// Crashes programs of its own, with their reports in a folder that is not there yet.
class CrashReport : public ::testing::Test {
protected:
    QString folder() const { return home.filePath(QStringLiteral("state/Quillabrae/Crashes")); }

    /// The signal that ends a process which does this with reports switched on.
    int crash(const std::function<void()>& accident) const {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit noDump{0, 0};
            ::setrlimit(RLIMIT_CORE, &noDump);
            // As in a program that nobody else watches over.
            for (const int number : signals) ::signal(number, SIG_DFL);
            reportCrashesTo(folder(), "1.2.3");
            accident();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    std::string report() const {
        return CrashFolder(folder()).text().value_or(QString()).toStdString();
    }

    QString put(const QString& name, const QByteArray& content) const {
        QDir().mkpath(folder());
        QFile file(folder() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    static QByteArray saying(const QByteArray& words) { return crashReportTitle + words; }

    QTemporaryDir home;
};

void touchForbiddenMemory() {
    void* page = ::mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    *static_cast<volatile char*>(page) = 1;
}

// NOLINTNEXTLINE(misc-no-recursion): which is the accident
int overflow(int depth) {
    std::array<volatile char, 4096> room{};
    room[0] = static_cast<char>(depth);
    if (depth < 0) return 0;
    return overflow(depth + 1) + room[0];
}

TEST_F(CrashReport, IsLeftByEveryFatalSignalWhichStillEndsTheProgram) {
    for (const int number : signals) {
        EXPECT_EQ(crash([number] { ::raise(number); }), number);
        EXPECT_THAT(report(),
                    HasSubstr(std::string("signal: SIG") + ::sigabbrev_np(number) + '\n'));
        CrashFolder(folder()).forget();
    }
}

TEST_F(CrashReport, TellsVersionBuildSignalThreadAndStack) {
    EXPECT_EQ(crash(touchForbiddenMemory), SIGSEGV);
    EXPECT_THAT(report(), StartsWith("Quillabrae crash report 1\nversion: 1.2.3\nsignal: SIGSEGV\n"
                                     "thread: main\nbuild: "));
    EXPECT_THAT(report(), HasSubstr(" quillabrae +0x"));
    EXPECT_THAT(report(), HasSubstr(" libc.so.6 +0x"));
}

TEST_F(CrashReport, NamesNoPaths) {
    EXPECT_EQ(crash(touchForbiddenMemory), SIGSEGV);
    EXPECT_THAT(report(), Not(HasSubstr("/")));
}

TEST_F(CrashReport, IsForItsOwnerAlone) {
    const mode_t before = ::umask(0);
    EXPECT_EQ(crash(touchForbiddenMemory), SIGSEGV);
    ::umask(before);
    const QFileInfoList files = QDir(folder()).entryInfoList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files[0].permissions() & ~QFile::Permissions(0xf000),
              QFile::ReadUser | QFile::WriteUser);
    EXPECT_EQ(QFileInfo(folder()).permissions() & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
}

TEST_F(CrashReport, IsLeftByAStackThatOverflows) {
    EXPECT_EQ(crash([] { ::_exit(overflow(0)); }), SIGSEGV);
    EXPECT_THAT(report(), HasSubstr("signal: SIGSEGV\n"));
    EXPECT_LE(report().size(), static_cast<std::size_t>(maximumCrashReport));
}

TEST_F(CrashReport, IsLeftByAThread) {
    EXPECT_EQ(crash([] { std::thread(touchForbiddenMemory).join(); }), SIGSEGV);
    EXPECT_THAT(report(), HasSubstr("thread: another\n"));
}

TEST_F(CrashReport, IsOneWhenManyThreadsCrashAtOnce) {
    EXPECT_EQ(crash([] {
                  std::vector<std::thread> threads;
                  for (int i = 0; i < 8; ++i) threads.emplace_back(touchForbiddenMemory);
                  for (std::thread& thread : threads) thread.join();
              }),
              SIGSEGV);
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files).size(), 1);
}

TEST_F(CrashReport, IsNotMadeWhereSomebodyElseWatches) {
    const int signal = crash([this] {
        ::signal(SIGSEGV, [](int) { ::_exit(3); });
        ::signal(SIGABRT, SIG_DFL);
        reportCrashesTo(folder(), "1.2.3");
        ::raise(SIGABRT);
    });
    EXPECT_EQ(signal, SIGABRT);
    EXPECT_EQ(report(), "");
}

TEST_F(CrashReport, WithoutAPlaceForItTheProgramEndsAllTheSame) {
    QFile inTheWay(home.filePath(QStringLiteral("state")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    EXPECT_EQ(crash(touchForbiddenMemory), SIGSEGV);
    EXPECT_EQ(report(), "");
}

TEST_F(CrashReport, TheLatestIsTheOneThatIsOffered) {
    put(QStringLiteral("crash-20260102-030405-7.txt"), saying("second\n"));
    put(QStringLiteral("crash-20260101-030405-9.txt"), saying("first\n"));
    EXPECT_EQ(report(), saying("second\n").toStdString());
    CrashFolder(folder()).forget();
    EXPECT_FALSE(CrashFolder(folder()).text());
}

TEST_F(CrashReport, WhatIsNoReportIsPassedOver) {
    const QString secret = put(QStringLiteral("secret"), saying("of another file\n"));
    QFile::link(secret, folder() + QStringLiteral("/crash-9.txt"));
    put(QStringLiteral("crash-8.txt"), "something else\n");
    put(QStringLiteral("crash-7.txt"), saying(QByteArray(maximumCrashReport, 'a')));
    put(QStringLiteral("crash-6.txt"), saying("\x1b[2J"));
    put(QStringLiteral("crash-5.txt"), "");
    EXPECT_FALSE(CrashFolder(folder()).text());
    put(QStringLiteral("crash-1.txt"), saying("true\n"));
    EXPECT_EQ(report(), saying("true\n").toStdString());
    CrashFolder(folder()).forget();
    EXPECT_TRUE(QFile::exists(secret));
}

TEST_F(CrashReport, FewAreKept) {
    for (int i = 0; i < 9; ++i)
        put(QStringLiteral("crash-%1.txt").arg(i), saying(QByteArray::number(i)));
    CrashFolder(folder()).thinOut();
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files).size(), CrashFolder::mostReports);
    EXPECT_EQ(report(), saying("8").toStdString());
}

} // namespace
} // namespace quillabrae::platform
