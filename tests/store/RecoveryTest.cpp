// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PastedImage.h"
#include "store/StoreTest.h"
#include "support/FullDisk.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace quillabrae::store {
namespace {

class Recovery : public StoreTest {
protected:
    void setPreference(const char* name, const QVariant& value) {
        preferences.setValue(QStringLiteral("Quillabrae.") + QString::fromLatin1(name), value);
    }
};

TEST_F(Recovery, AStoreStartedAfterACrashHasAllWorkAndHistory) {
    const auto crashed = makeStore();
    const QUuid a = makeProject(*crashed);
    saveTo(*crashed, QStringLiteral("a.quillabrae"));
    const QUuid b = makeProject(*crashed);
    edit(*crashed);
    edit(*crashed);
    crashed->undo(b);

    const auto store = makeStore();
    EXPECT_EQ(store->activeProjectID(), b);
    ASSERT_EQ(store->openProjects().size(), 2u);
    for (const QUuid& id : {a, b})
        EXPECT_EQ(model::ProjectFingerprint::of(*store->project(id)),
                  model::ProjectFingerprint::of(*crashed->project(id)));
    EXPECT_FALSE(store->hasUnsavedChanges(a));
    EXPECT_TRUE(store->hasUnsavedChanges(b));
    EXPECT_EQ(titles(*store, b), titles(*crashed, b));
    EXPECT_EQ(store->history(b).selectedIndex, 1);
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored autosaved work and history"));
    store->redo(b);
    EXPECT_EQ(store->project(b)->layers.front().name, QStringLiteral("Backgroundxx"));
}

TEST_F(Recovery, AHistoryOfOneEntryIsRecoveredAsANewOne) {
    const QUuid id = makeProject(*makeStore());
    const auto store = makeStore();
    EXPECT_EQ(titles(*store, id), QStringList{QStringLiteral("Recovered Project")});
    EXPECT_EQ(store->history(id).entries.front().symbolName,
              QStringLiteral("clock.arrow.circlepath"));
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored autosaved work"));
}

TEST_F(Recovery, WithoutKeptHistoryEachProjectStartsAnew) {
    QUuid id;
    {
        const auto crashed = makeStore();
        id = makeProject(*crashed);
        edit(*crashed);
    }
    setPreference("keepRecoveryHistory", false);
    const auto store = makeStore();
    EXPECT_EQ(titles(*store, id), QStringList{QStringLiteral("Recovered Project")});
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Restored autosaved work"));
    edit(*store);
    setPreference("keepRecoveryHistory", true);
    EXPECT_EQ(titles(*makeStore(), id), QStringList{QStringLiteral("Recovered Project")});
}

TEST_F(Recovery, NothingIsRestoredWhereThatIsNotWanted) {
    makeProject(*makeStore());
    setPreference("restoreRecoveryOnLaunch", false);
    const auto store = makeStore();
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
    const QUuid id = makeProject(*store);
    setPreference("restoreRecoveryOnLaunch", true);
    EXPECT_TRUE(makeStore()->project(id));
}

TEST_F(Recovery, ACleanEndLeavesNoFile) {
    const auto store = makeStore();
    makeProject(*store);
    EXPECT_TRUE(QFile::exists(recoveryFile()));
    store->finishSession();
    EXPECT_FALSE(QFile::exists(recoveryFile()));
    EXPECT_TRUE(preferences.value(QStringLiteral("Quillabrae.settings")).isValid());
    EXPECT_TRUE(makeStore()->openProjects().empty());
}

TEST_F(Recovery, NothingThatComesAfterACleanEndIsKept) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    store->finishSession();
    const QByteArray settings = preferences.bytes(QStringLiteral("Quillabrae.settings"));

    // The desktop may give its window the keyboard once more before the program is gone.
    store->setActiveProjectID(id);
    store->persistAutosavedSession();
    edit(*store);
    EXPECT_FALSE(store->setClosedWorkAside());
    store->editSettings([](model::PaintAppSettings& changed) { changed.brushSize += 1; });
    EXPECT_EQ(QDir(paths.autosaveFolder()).entryList(QDir::Files), QStringList());
    EXPECT_EQ(preferences.bytes(QStringLiteral("Quillabrae.settings")), settings);
}

TEST_F(Recovery, TheFileIsLeftAloneWhileItSaysAllThereIsToSay) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    const auto content = [this] {
        QFile file(recoveryFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const auto mark = [this] {
        QFile file(recoveryFile());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(" ");
    };
    mark();
    const QByteArray marked = content();
    store->persistAutosavedSession();
    EXPECT_EQ(content(), marked);
    edit(*store);
    EXPECT_NE(content(), marked);

    ASSERT_TRUE(QFile::remove(recoveryFile()));
    store->persistAutosavedSession();
    EXPECT_TRUE(makeStore()->project(id));
}

TEST_F(Recovery, ATornFileIsNoFile) {
    makeProject(*makeStore());
    QFile torn(recoveryFile());
    ASSERT_TRUE(torn.resize(torn.size() / 2));
    const auto store = makeStore();
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
    const QUuid id = makeProject(*store);
    EXPECT_TRUE(makeStore()->project(id));
}

TEST_F(Recovery, AFolderThatCannotBeWrittenStopsNoWork) {
    paths.applicationSupport = folder.filePath(QStringLiteral("blocked"));
    QFile blocked(paths.applicationSupport);
    ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    edit(*store);
    EXPECT_EQ(titles(*store, id).size(), 2);
    EXPECT_FALSE(store->setClosedWorkAside());
}

TEST_F(Recovery, TheStatusLineTellsOnceThatNoneIsKeptAndOnceThatItIsAgain) {
    const auto store = makeStore();
    makeProject(*store);
    const auto statusAfterAnEdit = [&] {
        edit(*store);
        // The command's own word comes after its history.
        store->setStatusMessage(QStringLiteral("Edited"));
        QCoreApplication::sendPostedEvents();
        return store->statusMessage();
    };
    {
        const tests::FullDisk full(1000);
        EXPECT_EQ(statusAfterAnEdit(),
                  QStringLiteral("Recovery is not being kept: “Recovery.quillabraesession” could "
                                 "not be written: File too large."));
        EXPECT_EQ(statusAfterAnEdit(), QStringLiteral("Edited"));
        EXPECT_EQ(titles(*makeStore(), store->openProjects().front().id),
                  QStringList{QStringLiteral("Recovered Project")});
    }
    EXPECT_EQ(statusAfterAnEdit(), QStringLiteral("Recovery is being kept again"));
    EXPECT_EQ(statusAfterAnEdit(), QStringLiteral("Edited"));
    EXPECT_EQ(titles(*makeStore(), store->openProjects().front().id).size(), 5);
}

TEST_F(Recovery, AFaultThatIsOverWhenTheCommandReturnsIsNotWorthAWord) {
    const auto store = makeStore();
    makeProject(*store);
    {
        const tests::FullDisk full(1000);
        edit(*store);
    }
    edit(*store);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Created Untitled"));
}

TEST_F(Recovery, TwoProgramsAtOnceKeepTheirWorkApart) {
    takeLock = platform::takeFileLock;
    auto first = makeStore();
    const QUuid a = makeProject(*first);
    auto second = makeStore();
    EXPECT_TRUE(second->openProjects().empty());
    const QUuid b = makeProject(*second);
    edit(*first);
    edit(*second);
    // A clean end of one takes nothing from the other.
    makeStore()->finishSession();

    first.reset();
    second.reset();
    const auto restarted = makeStore();
    EXPECT_TRUE(restarted->project(a));
    EXPECT_TRUE(restarted->project(b));
    EXPECT_EQ(titles(*restarted, b).size(), 2);
    EXPECT_EQ(restarted->activeProjectID(), a);
    EXPECT_EQ(restarted->statusMessage(), QStringLiteral("Restored autosaved work and history"));
}

TEST_F(Recovery, WhatIsUnreadableIsStillThereAfterTheNextWrite) {
    makeProject(*makeStore());
    QFile future(recoveryFile());
    ASSERT_TRUE(future.open(QIODevice::WriteOnly));
    future.write("{\"projects\": {\"of\": \"tomorrow\"}}");
    future.close();
    const auto store = makeStore();
    EXPECT_EQ(store->statusMessage(), QStringLiteral("Ready"));
    makeProject(*store);
    edit(*store);
    store->finishSession();
    QFile aside(paths.autosaveFolder() + QStringLiteral("/Unreadable.quillabraesession"));
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_TRUE(aside.readAll().contains("tomorrow"));
}

TEST_F(Recovery, ANumberThatNobodyCountsToIsNoNumber) {
    {
        const auto crashed = makeStore();
        for (const char* title : {"Untitled 2147483647", "Untitled 99999999999999999999",
                                  "Untitled -3", "Untitled  8", "Untitled 8 "}) {
            makeProject(*crashed);
            crashed->editActiveProject([&](model::PaintProject& project) {
                project.title = QString::fromLatin1(title);
                project.lastModified = clock.now();
            });
        }
        crashed->persistAutosavedSession();
    }
    EXPECT_EQ(makeStore()->createUntitledProject(1, 1, 96).title, QStringLiteral("Untitled"));
}

TEST_F(Recovery, NumbersOfTitlesGoOnWhereTheyWere) {
    {
        const auto crashed = makeStore();
        makeProject(*crashed);
        for (const char* title : {"Untitled 7", "Untitled x", "Pasted Image 4"}) {
            makeProject(*crashed);
            crashed->editActiveProject([&](model::PaintProject& project) {
                project.title = QString::fromLatin1(title);
                project.lastModified = clock.now();
            });
        }
        crashed->persistAutosavedSession();
    }
    const auto store = makeStore();
    EXPECT_EQ(store->createUntitledProject(1, 1, 96).title, QStringLiteral("Untitled 8"));
    EXPECT_EQ(store->createProject(model::PastedImage{}).title, QStringLiteral("Pasted Image 5"));
}

TEST_F(Recovery, AnActiveIdThatIsNotOpenFallsBackToTheFirstTab) {
    const auto crashed = makeStore();
    const QUuid first = makeProject(*crashed);
    makeProject(*crashed);
    crashed->setActiveProjectID(QUuid::createUuid());
    crashed->persistAutosavedSession();
    EXPECT_EQ(makeStore()->activeProjectID(), first);
}

TEST_F(Recovery, EveryChangeOfTheTabsReachesTheFile) {
    const auto store = makeStore();
    const QUuid a = makeProject(*store);
    const QUuid b = makeProject(*store);
    store->closeProject(b);
    EXPECT_EQ(makeStore()->openProjects().size(), 1u);
    ASSERT_TRUE(store->createProject(writePicture(QStringLiteral("sail.png"))));
    const auto restarted = makeStore();
    ASSERT_EQ(restarted->openProjects().size(), 2u);
    EXPECT_EQ(restarted->openProjects()[1].title, QStringLiteral("sail"));
    EXPECT_FALSE(restarted->hasUnsavedChanges(restarted->openProjects()[1].id));
    store->closeProject(a);
}

TEST_F(Recovery, ClosedWorkComesBackWithTabsHistoryAndFingerprints) {
    const auto store = makeStore();
    EXPECT_FALSE(store->hasClosedWork());
    const QUuid saved = makeProject(*store);
    saveTo(*store, QStringLiteral("a.quillabrae"));
    const QUuid edited = makeProject(*store);
    edit(*store);
    edit(*store);
    store->undo(edited);
    const auto projects = store->openProjects();
    QSignalSpy changes(store.get(), &ProjectStore::closedWorkChanged);
    ASSERT_TRUE(store->setClosedWorkAside());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(store->hasClosedWork());
    store->closeAllProjects();

    ASSERT_TRUE(store->reopenClosedWork());
    EXPECT_EQ(changes.count(), 2);
    EXPECT_FALSE(store->hasClosedWork());
    ASSERT_EQ(store->openProjects().size(), 2u);
    EXPECT_EQ(model::ProjectFingerprint::of(store->openProjects()[1]),
              model::ProjectFingerprint::of(projects[1]));
    EXPECT_EQ(store->activeProjectID(), edited);
    EXPECT_EQ(store->history(edited).selectedIndex, 1);
    EXPECT_EQ(titles(*store, edited).size(), 3);
    EXPECT_FALSE(store->hasUnsavedChanges(saved));
    EXPECT_TRUE(store->hasUnsavedChanges(edited));
    EXPECT_EQ(makeStore()->openProjects().size(), 2u);
}

TEST_F(Recovery, ClosedWorkSurvivesARestartAndACleanEnd) {
    QUuid id;
    {
        const auto store = makeStore();
        id = makeProject(*store);
        edit(*store);
        ASSERT_TRUE(store->setClosedWorkAside());
        store->closeAllProjects();
        store->finishSession();
    }
    const auto store = makeStore();
    EXPECT_TRUE(store->openProjects().empty());
    EXPECT_TRUE(store->hasClosedWork());
    EXPECT_TRUE(store->reopenClosedWork());
    EXPECT_TRUE(store->project(id));
    EXPECT_FALSE(QFile::exists(closedWorkFile()));
}

TEST_F(Recovery, ClosedWorkThatCannotBeReadIsOfferedOnceAndSetAside) {
    const auto store = makeStore();
    makeProject(*store);
    ASSERT_TRUE(store->setClosedWorkAside());
    ASSERT_TRUE(QFile::resize(closedWorkFile(), 200));
    QSignalSpy changes(store.get(), &ProjectStore::closedWorkChanged);
    EXPECT_FALSE(store->reopenClosedWork());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_FALSE(store->hasClosedWork());
    EXPECT_TRUE(
        QFile::exists(paths.autosaveFolder() + QStringLiteral("/Unreadable.quillabraesession")));
}

TEST_F(Recovery, ClosedWorkJoinsWhatIsOpen) {
    const auto store = makeStore();
    const QUuid shared = makeProject(*store);
    const QUuid closed = makeProject(*store);
    ASSERT_TRUE(store->setClosedWorkAside());
    store->closeProject(closed);
    const QUuid later = makeProject(*store);
    store->setActiveProjectID(shared);
    edit(*store);
    const model::PaintProject present = *store->project(shared);

    ASSERT_TRUE(store->reopenClosedWork());
    ASSERT_EQ(store->openProjects().size(), 3u);
    EXPECT_EQ(store->openProjects()[0], present);
    EXPECT_EQ(titles(*store, shared).size(), 2);
    EXPECT_EQ(store->openProjects()[1].id, later);
    EXPECT_EQ(store->openProjects()[2].id, closed);
    EXPECT_EQ(store->activeProjectID(), closed);
    EXPECT_EQ(store->createUntitledProject(1, 1, 96).title, QStringLiteral("Untitled 4"));
}

TEST_F(Recovery, TheNextClosedWorkReplacesTheLast) {
    const auto store = makeStore();
    makeProject(*store);
    ASSERT_TRUE(store->setClosedWorkAside());
    store->closeAllProjects();
    const QUuid second = makeProject(*store);
    ASSERT_TRUE(store->setClosedWorkAside());
    store->closeAllProjects();
    ASSERT_TRUE(store->reopenClosedWork());
    ASSERT_EQ(store->openProjects().size(), 1u);
    EXPECT_EQ(store->openProjects().front().id, second);
    EXPECT_FALSE(store->reopenClosedWork());
}

TEST_F(Recovery, ReopenedWorkStaysOnDiskWhileNoRecoveryFileHoldsIt) {
    const auto store = makeStore();
    const QUuid id = makeProject(*store);
    ASSERT_TRUE(store->setClosedWorkAside());
    store->closeAllProjects();
    // A folder in the recovery file's place, which no file can replace.
    ASSERT_TRUE(QFile::remove(recoveryFile()));
    ASSERT_TRUE(QDir().mkpath(recoveryFile() + QStringLiteral("/in/the/way")));
    ASSERT_TRUE(store->reopenClosedWork());
    EXPECT_TRUE(store->project(id));
    EXPECT_FALSE(store->hasClosedWork());
    EXPECT_TRUE(QFile::exists(closedWorkFile()));
    ASSERT_TRUE(QDir(recoveryFile()).removeRecursively());
    edit(*store);
    EXPECT_TRUE(QFile::exists(recoveryFile()));
    EXPECT_FALSE(QFile::exists(closedWorkFile()));
}

TEST_F(Recovery, NothingIsSetAsideWithoutATab) {
    const auto store = makeStore();
    EXPECT_FALSE(store->setClosedWorkAside());
    EXPECT_FALSE(store->hasClosedWork());
}

} // namespace
} // namespace quillabrae::store
