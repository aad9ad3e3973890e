// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "persistence/FileError.h"
#include "persistence/RecoveryFolder.h"
#include "support/RandomRecords.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>

namespace quillabrae::persistence {
namespace {

using model::PaintProject;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

PaintAutosaveSession sessionOf(const std::vector<PaintProject>& projects) {
    PaintAutosaveSession session;
    session.projects = projects;
    session.activeProjectID = projects.front().id;
    session.savedAt = QDateTime::fromSecsSinceEpoch(1'700'000'000, Qt::UTC);
    return session;
}

/// Each RecoveryFolder is a program; it is dead when the object is gone.
class Programs : public testing::Test {
protected:
    RecoveryFolder start() const { return {folder(), platform::takeFileLock}; }
    RecoveryFolder startWithoutLocks() const {
        return {folder(), [](const QString&) { return platform::FileLock(); }};
    }
    QString folder() const { return m_folder.filePath(QStringLiteral("Autosave")); }
    QString path(const QString& name) const { return folder() + QLatin1Char('/') + name; }
    /// The recovery files that there are.
    QStringList files() const { return QDir(folder()).entryList(QDir::Files, QDir::Name); }

    PaintProject project() { return m_random.project(); }

    /// Two programs at once have a project each, and die.
    void leaveByTwo(const PaintProject& one, const PaintProject& other) const {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        a.save(sessionOf({one}));
        b.save(sessionOf({other}));
    }
    static std::vector<PaintProject> restoredBy(RecoveryFolder& program) {
        const auto session = program.restore();
        return session ? session->projects : std::vector<PaintProject>();
    }

    const QString first = QStringLiteral("Recovery.quillabraesession");
    const QString second = QStringLiteral("Recovery 2.quillabraesession");
    const QString third = QStringLiteral("Recovery 3.quillabraesession");
    const QString firstClosed = QStringLiteral("Closed.quillabraesession");
    const QString secondClosed = QStringLiteral("Closed 2.quillabraesession");

private:
    QTemporaryDir m_folder;
    tests::RandomRecords m_random{501};
};

TEST_F(Programs, EachHasAFileOfItsOwn) {
    RecoveryFolder a = start();
    RecoveryFolder b = start();
    RecoveryFolder c = start();
    EXPECT_EQ(a.file(), path(first));
    EXPECT_EQ(b.file(), path(second));
    EXPECT_EQ(c.file(), path(third));
    EXPECT_EQ(a.file(), path(first));
}

TEST_F(Programs, NeitherTouchesTheOthersFile) {
    const PaintProject one = project();
    const PaintProject other = project();
    RecoveryFolder a = start();
    a.save(sessionOf({one}));
    RecoveryFolder b = start();
    EXPECT_EQ(b.restore(), std::nullopt);
    b.save(sessionOf({other}));
    b.save(sessionOf({other}));
    EXPECT_THAT(files(), UnorderedElementsAre(first, second));
    EXPECT_EQ(AppPersistenceService::loadAutosavedSession(path(first)), sessionOf({one}));
    b.clear();
    EXPECT_THAT(files(), ElementsAre(first));
    a.clear();
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Programs, TheNextOneRestoresAllThatDeadOnesLeft) {
    const PaintProject one = project();
    const PaintProject other = project();
    leaveByTwo(one, other);
    RecoveryFolder next = start();
    const auto session = next.restore();
    ASSERT_TRUE(session);
    EXPECT_THAT(session->projects, ElementsAre(one, other));
    EXPECT_EQ(session->activeProjectID, one.id);
    // The other one's file stays until this program's own holds what was in it.
    EXPECT_THAT(files(), UnorderedElementsAre(first, second));
    next.save(*session);
    EXPECT_THAT(files(), ElementsAre(first));
    EXPECT_EQ(AppPersistenceService::loadAutosavedSession(path(first)), *session);
}

TEST_F(Programs, WhatIsRestoredFromOthersSurvivesAnotherDeath) {
    const PaintProject other = project();
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        EXPECT_EQ(a.file(), path(first));
        b.save(sessionOf({other}));
    }
    for (int round = 0; round < 3; ++round) {
        RecoveryFolder next = start();
        EXPECT_THAT(restoredBy(next), ElementsAre(other));
    }
    RecoveryFolder last = start();
    EXPECT_THAT(restoredBy(last), ElementsAre(other));
    last.clear();
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(Programs, TwoDoNotRestoreTheSameWork) {
    const PaintProject one = project();
    const PaintProject other = project();
    leaveByTwo(one, other);
    RecoveryFolder c = start();
    RecoveryFolder d = start();
    EXPECT_THAT(restoredBy(c), ElementsAre(one, other));
    EXPECT_THAT(restoredBy(d), IsEmpty());
}

TEST_F(Programs, ASecondOneLeavesTheFileOfTheFirstThatRuns) {
    const PaintProject one = project();
    RecoveryFolder a = start();
    a.save(sessionOf({one}));
    {
        RecoveryFolder b = start();
        b.save(sessionOf({project()}));
        a.clear();
        a.save(sessionOf({one}));
    }
    RecoveryFolder c = start();
    EXPECT_EQ(restoredBy(c).size(), 1U);
    EXPECT_EQ(AppPersistenceService::loadAutosavedSession(path(first)), sessionOf({one}));
}

TEST_F(Programs, AKilledOneIsNoObstacle) {
    const PaintAutosaveSession session = sessionOf({project()});
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        RecoveryFolder program = start();
        program.save(session);
        if (write(ready[1], "x", 1) == 1) pause();
        _exit(0);
    }
    char answer = 0;
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(start().file(), path(second));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    RecoveryFolder next = start();
    EXPECT_EQ(next.file(), path(first));
    EXPECT_EQ(next.restore(), session);
    close(ready[0]);
    close(ready[1]);
}

TEST_F(Programs, WithoutLocksThereIsOneFile) {
    const PaintProject one = project();
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        a.save(sessionOf({one}));
        b.save(sessionOf({project()}));
    }
    RecoveryFolder next = startWithoutLocks();
    EXPECT_EQ(next.file(), path(first));
    EXPECT_THAT(restoredBy(next), ElementsAre(one));
    next.clear();
    EXPECT_THAT(files(), ElementsAre(second));
}

TEST_F(Programs, AFolderThatComesLateIsLockedWhenItIsThere) {
    QFile inTheWay(folder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    RecoveryFolder a = start();
    EXPECT_EQ(a.restore(), std::nullopt);
    EXPECT_THROW(a.save(sessionOf({project()})), FileError);
    inTheWay.remove();
    a.save(sessionOf({project()}));
    EXPECT_EQ(start().file(), path(second));
}

TEST_F(Programs, AnUnreadableFileOfADeadOneIsSetAside) {
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        a.save(sessionOf({project()}));
        b.save(sessionOf({project()}));
        ASSERT_TRUE(QFile::resize(path(second), 100));
    }
    RecoveryFolder next = start();
    EXPECT_EQ(restoredBy(next).size(), 1U);
    EXPECT_THAT(files(),
                UnorderedElementsAre(first, QStringLiteral("Unreadable.quillabraesession")));
}

TEST_F(Programs, EachSetsItsOwnWorkAside) {
    const PaintProject one = project();
    const PaintProject other = project();
    RecoveryFolder a = start();
    EXPECT_FALSE(a.hasClosed());
    EXPECT_EQ(a.takeClosed(), std::nullopt);
    a.setAside(sessionOf({one}));
    RecoveryFolder b = start();
    EXPECT_FALSE(b.hasClosed());
    EXPECT_EQ(b.takeClosed(), std::nullopt);
    b.setAside(sessionOf({project()}));
    b.setAside(sessionOf({other}));
    EXPECT_THAT(files(), UnorderedElementsAre(firstClosed, secondClosed));

    EXPECT_TRUE(b.hasClosed());
    EXPECT_EQ(b.takeClosed(), sessionOf({other}));
    EXPECT_FALSE(b.hasClosed());
    b.save(sessionOf({other}));
    EXPECT_THAT(files(), UnorderedElementsAre(firstClosed, second));
    EXPECT_TRUE(a.hasClosed());
    EXPECT_EQ(a.takeClosed(), sessionOf({one}));
}

TEST_F(Programs, WhatDeadOnesSetAsideIsOfferedToTheNext) {
    const PaintProject one = project();
    const PaintProject other = project();
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        a.setAside(sessionOf({one}));
        b.setAside(sessionOf({other}));
        b.clear();
    }
    EXPECT_TRUE(start().hasClosed());
    for (int round = 0; round < 2; ++round) {
        // It is another's while its own recovery file does not hold it.
        RecoveryFolder next = start();
        EXPECT_TRUE(next.hasClosed());
        const auto session = next.takeClosed();
        ASSERT_TRUE(session);
        EXPECT_THAT(session->projects, ElementsAre(one, other));
        EXPECT_FALSE(next.hasClosed());
        EXPECT_FALSE(start().hasClosed());
    }
    RecoveryFolder last = start();
    last.save(*last.takeClosed());
    EXPECT_THAT(files(), ElementsAre(first));
}

TEST_F(Programs, WhatIsSetAsideAnewOutlivesWhatItCameFrom) {
    RecoveryFolder a = start();
    a.setAside(sessionOf({project()}));
    const auto session = a.takeClosed();
    ASSERT_TRUE(session);
    // Closed again before a recovery file could be written.
    a.setAside(*session);
    EXPECT_TRUE(a.hasClosed());
    a.save(sessionOf({project()}));
    EXPECT_EQ(a.takeClosed(), session);
}

TEST_F(Programs, TakingClosedWorkKeepsAHoldOnWhatIsRestored) {
    const PaintProject one = project();
    const PaintProject other = project();
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        EXPECT_EQ(a.file(), path(first));
        b.save(sessionOf({one}));
        b.setAside(sessionOf({other}));
    }
    RecoveryFolder next = start();
    EXPECT_THAT(restoredBy(next), ElementsAre(one));
    EXPECT_TRUE(next.hasClosed());
    EXPECT_EQ(next.takeClosed(), sessionOf({other}));
    next.save(sessionOf({one, other}));
    EXPECT_THAT(files(), ElementsAre(first));
}

TEST_F(Programs, WithoutLocksOnlyTheFirstOnesClosedWorkIsOffered) {
    {
        RecoveryFolder a = start();
        RecoveryFolder b = start();
        EXPECT_EQ(a.file(), path(first));
        EXPECT_EQ(b.file(), path(second));
        b.setAside(sessionOf({project()}));
    }
    RecoveryFolder next = startWithoutLocks();
    EXPECT_FALSE(next.hasClosed());
    next.setAside(sessionOf({project()}));
    EXPECT_TRUE(next.hasClosed());
    EXPECT_TRUE(startWithoutLocks().hasClosed());
    EXPECT_TRUE(next.takeClosed());
    EXPECT_THAT(files(), UnorderedElementsAre(firstClosed, secondClosed));
}

TEST_F(Programs, OnlyFilesOfTheirNamesAreTheirs) {
    RecoveryFolder a = start();
    a.save(sessionOf({project()}));
    for (const char* name : {"Recovery 0", "Recovery 1", "Recovery 1000", "Recovery  2", "Closed 1",
                             "Closed 02", "Unreadable", "Recovery 2 copy"})
        ASSERT_TRUE(QFile::copy(path(first),
                                path(QLatin1String(name) + QStringLiteral(".quillabraesession"))));
    const qsizetype count = files().size();
    RecoveryFolder b = start();
    EXPECT_FALSE(b.hasClosed());
    EXPECT_EQ(b.restore(), std::nullopt);
    b.clear();
    EXPECT_EQ(files().size(), count);
}

TEST(JoinedSessions, KeepTheHistoriesAndFingerprintsOfBoth) {
    tests::RandomRecords random(502);
    const auto sessionOfOne = [&random] {
        PaintAutosaveSession session = sessionOf({random.project()});
        const PaintProject& project = session.projects.front();
        session.histories.insert(project.id, random.history());
        session.savedProjectFingerprints.insert(project.id,
                                                *model::ProjectFingerprint::of(project));
        return session;
    };
    const PaintAutosaveSession a = sessionOfOne();
    const PaintAutosaveSession b = sessionOfOne();
    const PaintAutosaveSession both = joined(a, b);
    EXPECT_THAT(both.projects, ElementsAre(a.projects[0], b.projects[0]));
    EXPECT_EQ(both.activeProjectID, a.activeProjectID);
    for (const auto* session : {&a, &b}) {
        const QUuid id = session->projects[0].id;
        EXPECT_EQ(both.histories.value(id), session->histories.value(id));
        EXPECT_EQ(*both.savedProjectFingerprints.constFind(id),
                  *session->savedProjectFingerprints.constFind(id));
    }
    EXPECT_EQ(joined(a, a), a);
}

TEST(JoinedSessions, AProjectThatWentTwoWaysIsThereTwice) {
    tests::RandomRecords random(503);
    PaintProject project = random.project();
    PaintAutosaveSession a = sessionOf({project});
    a.savedProjectFingerprints.insert(project.id, *model::ProjectFingerprint::of(project));
    PaintAutosaveSession b = a;
    PaintProject& other = b.projects.front();
    other.title += QLatin1Char('!');
    model::PaintHistoryState history;
    history.entries = {{QUuid::createUuid(), QStringLiteral("Open Project"), {}, project},
                       {QUuid::createUuid(), QStringLiteral("Edit"), {}, other}};
    history.selectedIndex = 1;
    b.histories.insert(project.id, history);

    const PaintAutosaveSession both = joined(a, b);
    ASSERT_EQ(both.projects.size(), 2U);
    EXPECT_EQ(both.projects[0], project);
    const QUuid id = both.projects[1].id;
    EXPECT_NE(id, project.id);
    other.id = id;
    EXPECT_EQ(both.projects[1], other);
    EXPECT_FALSE(both.histories.contains(project.id));
    ASSERT_EQ(both.histories.value(id).entries.size(), 2U);
    EXPECT_EQ(both.histories.value(id).entries[0].project.id, id);
    EXPECT_EQ(both.histories.value(id).entries[1].project, other);
    EXPECT_EQ(both.savedProjectFingerprints.constFind(id)->project().id, id);
    EXPECT_EQ(both.savedProjectFingerprints.size(), 2);
}

} // namespace
} // namespace quillabrae::persistence
