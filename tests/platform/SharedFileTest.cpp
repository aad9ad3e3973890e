// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SharedFile.h"
#include "support/FullDisk.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

/// Each program adds words to what the file holds.
class SharedFile : public testing::Test {
protected:
    QByteArray read() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Another program puts its file into the place of the one that is there.
    void replaceBy(const QByteArray& content) const {
        QSaveFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        ASSERT_TRUE(file.commit());
    }
    /// Another program writes into the file that is there.
    void append(const QByteArray& words) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(words);
    }
    /// The files in the folder.
    QStringList names() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("list"));
    int asked = 0;
};

TEST_F(SharedFile, WhatAnotherProgramPutsInItsPlaceMeanwhileIsKept) {
    replaceBy("old");
    rewriteSharedFile(path, MissingFile::leftOut, [&](const QByteArray& content) {
        if (++asked == 1) replaceBy("old, theirs");
        return content + ", ours";
    });
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(read(), "old, theirs, ours");
    EXPECT_EQ(names(), QStringList(QStringLiteral("list")));
}

TEST_F(SharedFile, WhatAnotherProgramWritesIntoItMeanwhileIsKept) {
    replaceBy("old");
    rewriteSharedFile(path, MissingFile::leftOut, [&](const QByteArray& content) {
        if (++asked <= 3) append(", theirs");
        return content + ", ours";
    });
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(read(), "old, theirs, theirs, theirs, ours");
}

TEST_F(SharedFile, OneThatAnotherProgramMakesMeanwhileIsKept) {
    rewriteSharedFile(path, MissingFile::made, [&](const QByteArray& content) {
        if (++asked == 1) replaceBy("theirs");
        return content + ", ours";
    });
    EXPECT_EQ(read(), "theirs, ours");
}

TEST_F(SharedFile, OneThatAnotherProgramRemovesMeanwhileIsLeftOut) {
    replaceBy("old");
    rewriteSharedFile(path, MissingFile::leftOut, [&](const QByteArray& content) {
        ++asked;
        EXPECT_TRUE(QFile::remove(path));
        return content + ", ours";
    });
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(SharedFile, IsLeftToAProgramThatNeverStopsWriting) {
    replaceBy("old");
    rewriteSharedFile(path, MissingFile::leftOut, [&](const QByteArray& content) {
        ++asked;
        append("!");
        return content + ", ours";
    });
    EXPECT_EQ(read(), "old" + QByteArray(asked, '!'));
    EXPECT_EQ(names(), QStringList(QStringLiteral("list")));
}

TEST_F(SharedFile, AFullDiskLeavesItAsItIs) {
    replaceBy("old");
    {
        const tests::FullDisk disk(8);
        rewriteSharedFile(path, MissingFile::leftOut,
                          [](const QByteArray& content) { return content + ", and much of ours"; });
    }
    EXPECT_EQ(read(), "old");
    EXPECT_EQ(names(), QStringList(QStringLiteral("list")));
}

TEST_F(SharedFile, WhatAKilledProgramHasLeftGoesWithTheNextRewriting) {
    replaceBy("old");
    QFile left(folder.filePath(QStringLiteral(".list.999999999.writing")));
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    QFile ofAnother(folder.filePath(QStringLiteral(".list.1.writing")));
    ASSERT_TRUE(ofAnother.open(QIODevice::WriteOnly));
    rewriteSharedFile(path, MissingFile::leftOut,
                      [](const QByteArray& content) { return content + ", ours"; });
    EXPECT_EQ(read(), "old, ours");
    EXPECT_EQ(names(), (QStringList{QStringLiteral(".list.1.writing"), QStringLiteral("list")}));
}

TEST_F(SharedFile, BehindALinkIsReplacedThereWithItsRights) {
    replaceBy("old");
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(path, link));
    ASSERT_TRUE(
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    rewriteSharedFile(link, MissingFile::leftOut,
                      [](const QByteArray& content) { return content + ", ours"; });
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(read(), "old, ours");
    EXPECT_FALSE(QFileInfo(path).permissions().testFlag(QFile::ReadOther));
    EXPECT_TRUE(QFileInfo(path).permissions().testFlag(QFile::ReadGroup));
}

} // namespace
} // namespace quillabrae::platform
