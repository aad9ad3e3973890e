// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileOperations.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace quillabrae::platform {
namespace {

class SystemFiles : public ::testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }

    void put(const QString& name, const QByteArray& bytes) const {
        const auto file = operations.createFile(path(name));
        file->write(bytes);
        file->finish();
    }

    QByteArray contents(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }

    template <typename Step>
    int errorOf(Step&& step) const {
        try {
            step();
        } catch (const FileOperationError& error) {
            EXPECT_FALSE(error.description().isEmpty());
            return error.errorNumber();
        }
        return 0;
    }

    FileOperations& operations = systemFileOperations();
    QTemporaryDir folder;
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
};

TEST_F(SystemFiles, WritesOfEverySizeArriveInOrder) {
    QByteArray expected;
    const auto file = operations.createFile(path(a));
    for (const qsizetype size : {1, 0, 100, 300'000, 7, 262'144, 262'143, 1, 1'000'000}) {
        const QByteArray piece(size, static_cast<char>('a' + expected.size() % 23));
        file->write(piece);
        expected += piece;
    }
    file->finish();
    EXPECT_EQ(contents(a), expected);
}

TEST_F(SystemFiles, AFileIsNeverCreatedOverAnother) {
    put(a, "old");
    EXPECT_EQ(errorOf([&] { operations.createFile(path(a)); }), EEXIST);
    EXPECT_EQ(contents(a), QByteArray("old"));
}

TEST(FileOperationError, SaysWhatTheSystemSays) {
    const FileOperationError error(QStringLiteral("/a"), ENOSPC);
    EXPECT_EQ(error.description(), QStringLiteral("No space left on device"));
    EXPECT_EQ(error.path(), QStringLiteral("/a"));
}

TEST_F(SystemFiles, AFileAndAFolderChangePlaces) {
    put(a, "text");
    operations.makePath(path(QStringLiteral("b/inner")));
    ASSERT_TRUE(operations.exchange(path(a), path(b)));
    EXPECT_EQ(contents(b), QByteArray("text"));
    EXPECT_TRUE(operations.exists(path(QStringLiteral("a/inner"))));
}

TEST_F(SystemFiles, NothingChangesPlacesWithAMissingOne) {
    put(a, "text");
    EXPECT_EQ(errorOf([&] { operations.exchange(path(a), path(b)); }), ENOENT);
}

TEST_F(SystemFiles, ARenamedFileReplacesAFileButAFolderInTheWayStays) {
    put(a, "new");
    put(b, "old");
    operations.rename(path(a), path(b));
    EXPECT_EQ(contents(b), QByteArray("new"));
    operations.makePath(path(QStringLiteral("folder/inner")));
    EXPECT_EQ(errorOf([&] { operations.rename(path(b), path(QStringLiteral("folder"))); }), EISDIR);
}

TEST_F(SystemFiles, RemovingATreeDoesNotFollowLinksOutOfIt) {
    put(a, "outside");
    operations.makePath(path(QStringLiteral("tree/.hidden/deep")));
    put(QStringLiteral("tree/.hidden/file"), "x");
    QFile::link(folder.path(), path(QStringLiteral("tree/link")));
    QFile::link(path(QStringLiteral("nowhere")), path(QStringLiteral("tree/broken")));
    operations.removeTree(path(QStringLiteral("tree")));
    EXPECT_FALSE(operations.exists(path(QStringLiteral("tree"))));
    EXPECT_EQ(contents(a), QByteArray("outside"));
}

TEST_F(SystemFiles, RemovingNothingIsNoError) {
    EXPECT_EQ(errorOf([&] { operations.removeTree(path(a)); }), 0);
}

TEST_F(SystemFiles, AFolderIsMadeWithThoseAboveIt) {
    const QString deep = path(QStringLiteral("x/y/z"));
    operations.makePath(deep);
    EXPECT_TRUE(operations.exists(deep));
    EXPECT_EQ(errorOf([&] { operations.makePath(deep); }), 0);
}

TEST_F(SystemFiles, AFileInThePathOfAFolderIsReported) {
    put(a, "text");
    EXPECT_EQ(errorOf([&] { operations.makePath(path(a)); }), EEXIST);
    EXPECT_EQ(errorOf([&] { operations.makePath(path(QStringLiteral("a/b"))); }), ENOTDIR);
}

TEST_F(SystemFiles, AMissingFolderCannotBeSynced) {
    EXPECT_EQ(errorOf([&] { operations.syncFolder(path(a)); }), ENOENT);
    EXPECT_EQ(errorOf([&] { operations.syncFolder(folder.path()); }), 0);
}

TEST_F(SystemFiles, ABrokenLinkExistsAndHiddenNamesAreListed) {
    QFile::link(path(QStringLiteral("nowhere")), path(a));
    put(QStringLiteral(".hidden"), "x");
    EXPECT_TRUE(operations.exists(path(a)));
    QStringList names = operations.entries(folder.path());
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral(".hidden"), a}));
}

} // namespace
} // namespace quillabrae::platform
