// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/RecordCoding.h"
#include "persistence/AppPersistenceService.h"
#include "persistence/FileError.h"
#include "persistence/RecoverySessionCoding.h"
#include "raster/PngCodec.h"
#include "support/FullDisk.h"
#include "support/OrdinaryUser.h"
#include "support/RandomRecords.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <limits>

namespace quillabrae::persistence {
namespace {

namespace Service = AppPersistenceService;
using model::PaintProject;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;
using tests::RandomRecords;

PaintAutosaveSession randomSession(std::uint32_t seed) {
    RandomRecords random(seed);
    PaintAutosaveSession session;
    for (int i = 0; i < 3; ++i) {
        const PaintProject project = random.project();
        session.projects.push_back(project);
        session.savedProjectFingerprints.insert(project.id,
                                                *model::ProjectFingerprint::of(project));
        session.histories.insert(project.id, random.history());
    }
    session.activeProjectID = session.projects.front().id;
    session.savedAt = random.date();
    return session;
}

class AutosavedSession : public testing::Test {
protected:
    QString file() const {
        return m_folder.filePath(QStringLiteral("Autosave/Recovery.quillabraesession"));
    }

    void store(const QByteArray& bytes) const {
        QDir().mkpath(m_folder.path() + QStringLiteral("/Autosave"));
        QFile stored(file());
        ASSERT_TRUE(stored.open(QIODevice::WriteOnly));
        stored.write(bytes);
    }

    QByteArray stored() const { return contentOf(QStringLiteral("Recovery.quillabraesession")); }

    QByteArray contentOf(const QString& name) const {
        QFile stored(m_folder.filePath(QStringLiteral("Autosave/") + name));
        EXPECT_TRUE(stored.open(QIODevice::ReadOnly));
        return stored.readAll();
    }

    // The names in the autosave folder, hidden ones included.
    QStringList names() const {
        return QDir(m_folder.path() + QStringLiteral("/Autosave"))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    // The error of a save that has to fail.
    static QString errorOfSaving(const PaintAutosaveSession& session, const QString& file) {
        try {
            Service::saveAutosavedSession(session, file);
        } catch (const FileError& error) {
            return error.description();
        }
        ADD_FAILURE() << "it was saved";
        return {};
    }

    QTemporaryDir m_folder;
};

TEST_F(AutosavedSession, ComesBackAsItWasSaved) {
    for (std::uint32_t seed = 40; seed < 60; ++seed) {
        const PaintAutosaveSession session = randomSession(seed);
        Service::saveAutosavedSession(session, file());
        EXPECT_EQ(Service::loadAutosavedSession(file()), session);
    }
}

TEST_F(AutosavedSession, IsWrittenWithSortedKeysAndIdentifiersAsKeys) {
    PaintAutosaveSession session;
    PaintProject project;
    project.id = QUuid(QStringLiteral("7c9e6679-7425-40de-944b-e07fc1f90ae7"));
    project.lastModified = QDateTime::fromSecsSinceEpoch(60, Qt::UTC);
    session.projects = {project};
    session.activeProjectID = project.id;
    session.savedAt = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    session.histories.insert(project.id, {});
    session.savedProjectFingerprints.insert(project.id, *model::ProjectFingerprint::of(project));
    Service::saveAutosavedSession(session, file());

    project.lastModified = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    const QByteArray fingerprint = model::encodedJson(project).toBase64();
    project.lastModified = QDateTime::fromSecsSinceEpoch(60, Qt::UTC);
    const QByteArray projectText = model::encodedJson(project).replace("\n", "\n    ");
    EXPECT_EQ(stored(), QByteArray(R"({
  "activeProjectID": "7C9E6679-7425-40DE-944B-E07FC1F90AE7",
  "histories": {
    "7C9E6679-7425-40DE-944B-E07FC1F90AE7": {
      "entries": [],
      "selectedIndex": -1
    }
  },
  "projects": [
    )") + projectText + R"(
  ],
  "savedAt": "1970-01-01T00:00:00Z",
  "savedProjectFingerprints": {
    "7C9E6679-7425-40DE-944B-E07FC1F90AE7": ")" +
                            fingerprint + R"("
  }
})");
}

TEST_F(AutosavedSession, KeepsWhereItsProjectsAreSaved) {
    PaintAutosaveSession session = randomSession(61);
    session.projects[0].fileURL = QUrl::fromLocalFile(QStringLiteral("/a b/ü.quillabrae"));
    Service::saveAutosavedSession(session, file());
    EXPECT_EQ(Service::loadAutosavedSession(file())->projects[0].fileURL,
              session.projects[0].fileURL);
}

TEST_F(AutosavedSession, OnlyItsProjectsAreRequired) {
    const QDateTime before = QDateTime::currentDateTimeUtc();
    store(R"({"projects": []})");
    const auto session = Service::loadAutosavedSession(file());
    ASSERT_TRUE(session);
    EXPECT_TRUE(session->projects.empty());
    EXPECT_EQ(session->activeProjectID, std::nullopt);
    EXPECT_TRUE(session->histories.isEmpty());
    EXPECT_TRUE(session->savedProjectFingerprints.isEmpty());
    EXPECT_GE(session->savedAt, before);
    EXPECT_LE(session->savedAt, QDateTime::currentDateTimeUtc());
    store(R"({"histories": {}})");
    EXPECT_EQ(Service::loadAutosavedSession(file()), std::nullopt);
}

TEST_F(AutosavedSession, AFingerprintThatIsNoProjectIsDropped) {
    PaintAutosaveSession session = randomSession(62);
    Service::saveAutosavedSession(session, file());
    const QUuid broken = session.projects[1].id;
    const QByteArray text =
        model::encodedJson(session.savedProjectFingerprints.constFind(broken)->project())
            .toBase64();
    store(stored().replace(text, QByteArray("{\"no\": \"project\"}").toBase64()));
    session.savedProjectFingerprints.remove(broken);
    EXPECT_EQ(Service::loadAutosavedSession(file()), session);
}

TEST_F(AutosavedSession, PicturesAreSharedAcrossProjectsHistoriesAndFingerprints) {
    PaintAutosaveSession session = randomSession(63);
    const model::PngBytes picture(QByteArray(300'000, 'p'));
    PaintProject& project = session.projects[0];
    project.layers[0].bitmapPNGData = picture;
    session.savedProjectFingerprints.insert(project.id, *model::ProjectFingerprint::of(project));
    session.histories[project.id].entries.assign(3, {QUuid::createUuid(), {}, {}, project});
    session.histories[project.id].selectedIndex = 1;
    Service::saveAutosavedSession(session, file());

    const auto read = Service::loadAutosavedSession(file());
    const model::PngBytes& first = *read->projects[0].layers[0].bitmapPNGData;
    EXPECT_EQ(first, picture);
    const auto sharesFirst = [&](const PaintProject& other) {
        return other.layers[0].bitmapPNGData->sharesBufferWith(first);
    };
    EXPECT_TRUE(sharesFirst(read->savedProjectFingerprints.constFind(project.id)->project()));
    for (const model::PaintHistoryEntry& entry : read->histories.value(project.id).entries)
        EXPECT_TRUE(sharesFirst(entry.project));
}

TEST_F(AutosavedSession, WhatIsNoSessionIsAsNoFile) {
    EXPECT_EQ(Service::loadAutosavedSession(file()), std::nullopt);
    for (const char* bytes :
         {"", "{", "[]", "{}", "null", R"({"projects": 1})", R"({"projects": [{}]})",
          R"({"projects": []}x)", R"({"projects": [], "savedAt": "today"})",
          R"({"projects": [], "histories": []})", R"({"projects": [], "histories": {"x": {}}})",
          R"({"projects": [], "savedProjectFingerprints": {"x": ""}})"}) {
        store(bytes);
        EXPECT_EQ(Service::loadAutosavedSession(file()), std::nullopt) << bytes;
    }
    EXPECT_EQ(Service::loadAutosavedSession(m_folder.path()), std::nullopt);
}

TEST_F(AutosavedSession, ATornFileIsAsNoFile) {
    Service::saveAutosavedSession(randomSession(64), file());
    const QByteArray whole = stored();
    for (qsizetype length = 0; length < whole.size(); length += 1 + length / 50) {
        store(whole.first(length));
        EXPECT_EQ(Service::loadAutosavedSession(file()), std::nullopt) << length;
    }
}

TEST_F(AutosavedSession, ATornFileGivesWayToTheOneThatItReplaced) {
    Service::saveAutosavedSession(randomSession(76), file());
    Service::saveAutosavedSession(randomSession(77), file());
    EXPECT_EQ(Service::recoverAutosavedSession(file()), randomSession(77));
    const QByteArray torn = stored().chopped(1);
    store(torn);
    EXPECT_EQ(Service::recoverAutosavedSession(file()), randomSession(76));
    // It has taken the torn one's place, so that writing again cannot cost it.
    EXPECT_EQ(Service::loadAutosavedSession(file()), randomSession(76));
    EXPECT_THAT(names(), UnorderedElementsAre(QStringLiteral("Recovery.quillabraesession"),
                                              QStringLiteral("Unreadable.quillabraesession")));
    EXPECT_EQ(contentOf(QStringLiteral("Unreadable.quillabraesession")), torn);
}

// What a cut of power leaves of a file that was being written over another of the same length: all
// of it is JSON and base64, but of a picture there is only a part.
TEST_F(AutosavedSession, OnePictureOfWhichWasTornBeforeTheSystemStartedGivesWayToo) {
    const auto sessionOf = [](const QString& title) {
        PaintAutosaveSession session;
        PaintProject project;
        project.id = QUuid(QStringLiteral("7c9e6679-7425-40de-944b-e07fc1f90ae7"));
        project.title = title;
        project.lastModified = QDateTime::fromSecsSinceEpoch(60, Qt::UTC);
        model::PaintLayer layer;
        layer.bitmapPNGData = raster::encodePng(raster::RasterImage(64, 64));
        project.layers = {layer};
        session.projects = {project};
        session.savedAt = project.lastModified;
        return session;
    };
    const PaintAutosaveSession before = sessionOf(QStringLiteral("before"));
    const PaintAutosaveSession after = sessionOf(QStringLiteral("after"));
    Service::saveAutosavedSession(before, file());
    Service::saveAutosavedSession(after, file());
    QByteArray torn = stored();
    const QByteArray picture = after.projects[0].layers[0].bitmapPNGData->toByteArray().toBase64();
    const qsizetype place = torn.indexOf(picture) + picture.size() / 2;
    torn[place] = torn[place] == 'A' ? 'B' : 'A';

    store(torn);
    EXPECT_EQ(Service::recoverAutosavedSession(file())->projects[0].title, QStringLiteral("after"));
    const auto makeOld = [this] {
        QFile old(file());
        ASSERT_TRUE(old.open(QIODevice::ReadWrite));
        ASSERT_TRUE(old.setFileTime(QDateTime::fromSecsSinceEpoch(60, Qt::UTC),
                                    QFileDevice::FileModificationTime));
    };
    makeOld();
    EXPECT_EQ(Service::recoverAutosavedSession(file()), before);
    EXPECT_EQ(contentOf(QStringLiteral("Unreadable.quillabraesession")), torn);

    // Without a whole one beside it, it is what there is.
    store(torn);
    makeOld();
    EXPECT_EQ(Service::recoverAutosavedSession(file())->projects[0].title, QStringLiteral("after"));
    EXPECT_TRUE(QFile::exists(file()));
}

TEST_F(AutosavedSession, WhatCannotBeReadIsSetAsideOnceAndNeverOverwritten) {
    const std::vector<QByteArray> unreadable{"", "no session",
                                             R"({"projects": [{"layers": 2}], "version": 99})",
                                             QByteArray(3'000'000, '[')};
    QStringList aside;
    for (const QByteArray& bytes : unreadable) {
        aside << (aside.isEmpty()
                      ? QStringLiteral("Unreadable.quillabraesession")
                      : QStringLiteral("Unreadable %1.quillabraesession").arg(aside.size() + 1));
        store(bytes);
        EXPECT_EQ(Service::recoverAutosavedSession(file()), std::nullopt);
        EXPECT_EQ(Service::recoverAutosavedSession(file()), std::nullopt);
        EXPECT_THAT(names(), UnorderedElementsAreArray(aside));
    }
    Service::saveAutosavedSession(randomSession(78), file());
    Service::saveAutosavedSession(randomSession(79), file());
    for (qsizetype i = 0; i < aside.size(); ++i)
        EXPECT_EQ(contentOf(aside[i]), unreadable[static_cast<std::size_t>(i)]);
    Service::clearAutosavedSession(file());
    EXPECT_THAT(names(), UnorderedElementsAreArray(aside));
}

TEST(UnreadableSession, ThatIsWithheldFromThisUserIsSetAsideToo) {
    const tests::OrdinaryUser user;
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Recovery.quillabraesession"));
    Service::saveAutosavedSession(randomSession(80), file);
    ASSERT_TRUE(QFile::setPermissions(file, {}));
    EXPECT_EQ(Service::recoverAutosavedSession(file), std::nullopt);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("Unreadable.quillabraesession"))));
}

TEST_F(AutosavedSession, IsReadableByItsOwnerAlone) {
    Service::saveAutosavedSession(randomSession(65), file());
    EXPECT_EQ(QFile::permissions(file()) &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
}

TEST_F(AutosavedSession, ThatCannotBeEncodedLeavesTheFormerOne) {
    const PaintAutosaveSession before = randomSession(66);
    Service::saveAutosavedSession(before, file());
    PaintAutosaveSession session = before;
    session.projects[2].canvasWidth = std::numeric_limits<double>::infinity();
    EXPECT_EQ(errorOfSaving(session, file()),
              QStringLiteral("A number is not finite at projects[2].canvasWidth."));
    EXPECT_EQ(Service::loadAutosavedSession(file()), before);
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("Recovery.quillabraesession")));
}

TEST_F(AutosavedSession, ThatFindsAFolderInItsPlaceFailsAndLeavesNothing) {
    QDir().mkpath(file() + QStringLiteral("/held"));
    EXPECT_TRUE(errorOfSaving(randomSession(67), file()).contains(u"could not be written"));
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("Recovery.quillabraesession")));
}

TEST_F(AutosavedSession, ThatCannotHaveAFolderFails) {
    QFile inTheWay(m_folder.path() + QStringLiteral("/Autosave"));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    EXPECT_FALSE(errorOfSaving(randomSession(68), file()).isEmpty());
}

TEST_F(AutosavedSession, ThatDoesNotFitOntoTheDiskLeavesTheFormerOne) {
    const PaintAutosaveSession before = randomSession(69);
    Service::saveAutosavedSession(before, file());
    PaintAutosaveSession session = before;
    session.projects[0].layers[0].bitmapPNGData = model::PngBytes(QByteArray(1'000'000, 'x'));
    QString error;
    {
        const tests::FullDisk full(500'000);
        error = errorOfSaving(session, file());
    }
    EXPECT_EQ(error.toStdString(),
              "“Recovery.quillabraesession” could not be written: File too large.");
    EXPECT_EQ(Service::loadAutosavedSession(file()), before);
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("Recovery.quillabraesession")));
}

TEST_F(AutosavedSession, KilledWritesNeitherHarmTheFileNorFillTheFolder) {
    const PaintAutosaveSession before = randomSession(70);
    Service::saveAutosavedSession(before, file());
    PaintAutosaveSession next = before;
    next.projects[0].layers[0].bitmapPNGData = model::PngBytes(QByteArray(20'000'000, 'x'));
    int leftBehind = 0;
    for (int round = 0; round < 12; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) Service::saveAutosavedSession(round % 2 == 0 ? next : before, file());
        }
        usleep(static_cast<useconds_t>(3000 + round * 4000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const auto read = Service::loadAutosavedSession(file());
        EXPECT_TRUE(read == before || read == next) << round;
        EXPECT_LE(names().size(), 2) << round;
        leftBehind += static_cast<int>(names().filter(QStringLiteral(".writing")).size());
    }
    EXPECT_GT(leftBehind, 0);
    Service::saveAutosavedSession(before, file());
    EXPECT_TRUE(names().filter(QStringLiteral(".writing")).isEmpty());
}

TEST_F(AutosavedSession, TheTwoFilesOfAFolderDoNotDisturbEachOther) {
    const QString closed = m_folder.path() + QStringLiteral("/Autosave/Closed.quillabraesession");
    Service::saveAutosavedSession(randomSession(71), file());
    Service::saveAutosavedSession(randomSession(72), closed);
    QFile other(m_folder.path() + QStringLiteral("/Autosave/.Recovery.notes"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    Service::saveAutosavedSession(randomSession(73), file());
    EXPECT_EQ(Service::loadAutosavedSession(closed), randomSession(72));
    EXPECT_EQ(Service::loadAutosavedSession(file()), randomSession(73));
    EXPECT_THAT(names(), UnorderedElementsAre(QStringLiteral("Recovery.quillabraesession"),
                                              QStringLiteral("Closed.quillabraesession"),
                                              QStringLiteral(".Recovery.notes"),
                                              QStringLiteral(".Recovery.quillabraesession.spare")));
}

TEST_F(AutosavedSession, ClearingRemovesTheFileAndIsSilentWithoutOne) {
    Service::saveAutosavedSession(randomSession(74), file());
    Service::saveAutosavedSession(randomSession(75), file());
    Service::clearAutosavedSession(file());
    EXPECT_TRUE(names().isEmpty());
    Service::clearAutosavedSession(file());
    Service::clearAutosavedSession(m_folder.path() + QStringLiteral("/nowhere/at/all"));
}

} // namespace
} // namespace quillabrae::persistence
