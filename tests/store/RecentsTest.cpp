// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/AppPersistenceService.h"
#include "store/StoreTest.h"

#include <QFile>
#include <QSignalSpy>

#include <fcntl.h>
#include <sys/stat.h>

namespace quillabrae::store {
namespace {

class Recents : public StoreTest {
protected:
    static QStringList names(const ProjectStore& store) {
        QStringList list;
        for (const auto& recent : store.recents()) list << recent.title;
        return list;
    }
    void touch(const QString& name) const {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
};

TEST_F(Recents, TheNewestComesFirstAndEachFileOnce) {
    const auto store = makeStore();
    for (const char* name : {"a.quillabrae", "b.quillabrae", "a.quillabrae"})
        store->rememberRecent(file(QString::fromLatin1(name)));
    EXPECT_EQ(names(*store), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_GT(store->recents()[0].openedAt, store->recents()[1].openedAt);
}

TEST_F(Recents, TheNinthPushesOutTheFirst) {
    const auto store = makeStore();
    for (int i = 1; i <= 9; ++i)
        store->rememberRecent(file(QStringLiteral("%1.quillabrae").arg(i)));
    EXPECT_EQ(store->recents().size(), 8u);
    EXPECT_EQ(names(*store).first(), QStringLiteral("9"));
    EXPECT_EQ(names(*store).last(), QStringLiteral("2"));
}

TEST_F(Recents, AFileAndALinkToItAreOneEntry) {
    const auto store = makeStore();
    touch(QStringLiteral("real.quillabrae"));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("real.quillabrae")),
                            folder.filePath(QStringLiteral("link.quillabrae"))));
    store->rememberRecent(file(QStringLiteral("real.quillabrae")));
    store->rememberRecent(file(QStringLiteral("link.quillabrae")));
    EXPECT_EQ(names(*store), QStringList{QStringLiteral("link")});
    store->removeRecent(store->recents().front());
    EXPECT_TRUE(store->recents().empty());
}

TEST_F(Recents, ARemovedOneLeavesItsFileAndComesBackOnTop) {
    const auto store = makeStore();
    makeProject(*store);
    saveTo(*store, QStringLiteral("a.quillabrae"));
    saveTo(*store, QStringLiteral("b.quillabrae"));
    QSignalSpy changes(store.get(), &ProjectStore::recentsChanged);
    store->removeRecent(store->recents().back());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(names(*store), QStringList{QStringLiteral("b")});
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("a.quillabrae"))));
    ASSERT_TRUE(store->openProject(file(QStringLiteral("a.quillabrae"))));
    EXPECT_EQ(names(*store), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(Recents, TheListSurvivesARestart) {
    makeStore()->rememberRecent(file(QStringLiteral("a.quillabrae")));
    const auto store = makeStore();
    EXPECT_EQ(names(*store), QStringList{QStringLiteral("a")});
    store->removeRecent(store->recents().front());
    EXPECT_TRUE(makeStore()->recents().empty());
}

TEST_F(Recents, AStoredListIsTidiedOnceAtTheStart) {
    using persistence::AppPersistenceService::saveRecents;
    const QString key = QStringLiteral("Quillabrae.recents");
    const QDateTime when = clock.now();
    const QUrl crooked = QUrl::fromLocalFile(folder.filePath(QStringLiteral("x/../a.quillabrae")));
    saveRecents(preferences, key,
                {{QStringLiteral("new"), crooked, when},
                 {QStringLiteral("old"), file(QStringLiteral("a.quillabrae")), when}});
    EXPECT_EQ(names(*makeStore()), QStringList{QStringLiteral("new")});
    const auto stored = persistence::AppPersistenceService::loadRecents(preferences, key);
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored.front().url, file(QStringLiteral("a.quillabrae")));
}

TEST_F(Recents, AnImageFileIsNone) {
    const auto store = makeStore();
    makeProject(*store);
    saveTo(*store, QStringLiteral("a.png"), persistence::SaveFormat::png);
    ASSERT_TRUE(store->openFile(file(QStringLiteral("a.png"))));
    EXPECT_TRUE(store->recents().empty());
}

/// The road to every recent project leads over a link, which takes note of when it is followed.
class RecentsFarAway : public Recents {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("far"))));
        ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("far")), m_link));
        touch(QStringLiteral("far/a.quillabrae"));
        forgetVisits();
        const bool isNoted = QFile::exists(m_link + QStringLiteral("/a.quillabrae")) && isVisited();
        if (!isNoted) GTEST_SKIP() << "the file system does not note when links are followed";
        forgetVisits();
        std::vector<model::RecentProject> recents;
        for (const char* name : {"a.quillabrae", "gone.quillabrae", "deep/er/b.quillabrae"})
            recents.push_back({QStringLiteral("far"),
                               QUrl::fromLocalFile(m_link + u'/' + QString::fromLatin1(name)),
                               clock.now()});
        persistence::AppPersistenceService::saveRecents(
            preferences, QStringLiteral("Quillabrae.recents"), recents);
    }
    void forgetVisits() const {
        constexpr timespec longAgo{1'000'000'000, 0};
        const timespec times[] = {longAgo, {0, UTIME_OMIT}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(m_link).constData(), times,
                              AT_SYMLINK_NOFOLLOW),
                  0);
    }
    bool isVisited() const {
        struct stat facts {};
        return ::lstat(QFile::encodeName(m_link).constData(), &facts) != 0 ||
               facts.st_atim.tv_sec != 1'000'000'000;
    }

private:
    QString m_link = folder.filePath(QStringLiteral("network"));
};

TEST_F(RecentsFarAway, AreNotVisitedAtTheStartNorWhenAnotherIsRemovedOrRemembered) {
    const auto store = makeStore();
    EXPECT_EQ(store->recents().size(), 3U);
    EXPECT_FALSE(isVisited());
    store->removeRecent(store->recents().back());
    touch(QStringLiteral("near.quillabrae"));
    store->rememberRecent(file(QStringLiteral("near.quillabrae")));
    EXPECT_EQ(store->recents().size(), 3U);
    EXPECT_FALSE(isVisited());
    store->rememberRecent(store->recents().back().url);
    EXPECT_TRUE(isVisited());
}

TEST_F(Recents, AnUnreadableListIsAnEmptyOne) {
    preferences.setValue(QStringLiteral("Quillabrae.recents"), QByteArray("[{"));
    EXPECT_TRUE(makeStore()->recents().empty());
}

} // namespace
} // namespace quillabrae::store
