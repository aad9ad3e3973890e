// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileLock.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace quillabrae::platform {
namespace {

using State = FileLock::State;

class Locking : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("here.lock"));
};

TEST_F(Locking, OneAtATimeHoldsIt) {
    {
        const FileLock first(path);
        EXPECT_TRUE(first.isHeld());
        EXPECT_EQ(FileLock(path).state(), State::refused);
        EXPECT_TRUE(FileLock(folder.filePath(QStringLiteral("there.lock"))).isHeld());
    }
    EXPECT_TRUE(FileLock(path).isHeld());
}

TEST_F(Locking, ItGoesWhereItsHolderGoes) {
    FileLock first(path);
    FileLock second(std::move(first));
    EXPECT_TRUE(second.isHeld());
    EXPECT_EQ(FileLock(path).state(), State::refused);
    second = FileLock(folder.filePath(QStringLiteral("there.lock")));
    EXPECT_TRUE(FileLock(path).isHeld());
}

TEST_F(Locking, AKilledProgramHoldsNothing) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const FileLock held(path);
        const char answer = held.isHeld() ? 'y' : 'n';
        if (write(ready[1], &answer, 1) == 1) pause();
        _exit(0);
    }
    char answer = 0;
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    EXPECT_EQ(FileLock(path).state(), State::refused);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_TRUE(FileLock(path).isHeld());
    close(ready[0]);
    close(ready[1]);
}

TEST_F(Locking, WithoutAFileThereIsNoTelling) {
    EXPECT_EQ(FileLock().state(), State::unavailable);
    EXPECT_EQ(FileLock(folder.filePath(QStringLiteral("no/folder.lock"))).state(),
              State::unavailable);
    EXPECT_EQ(FileLock(folder.path()).state(), State::unavailable);
}

TEST_F(Locking, ALinkIsNotFollowed) {
    const QString target = folder.filePath(QStringLiteral("elsewhere"));
    ASSERT_EQ(symlink(qPrintable(target), qPrintable(path)), 0);
    EXPECT_EQ(FileLock(path).state(), State::unavailable);
    EXPECT_FALSE(QFile::exists(target));
}

} // namespace
} // namespace quillabrae::platform
