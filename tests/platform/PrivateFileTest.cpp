// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileOperations.h"
#include "platform/PrivateFile.h"
#include "support/FullDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillabrae::platform {
namespace {

class PrivateFile : public testing::Test {
protected:
    static mode_t mode(const QString& path) {
        struct stat information {};
        EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &information), 0);
        return information.st_mode & 07777;
    }
    static QByteArray contents(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("data/Quillabrae/Updates"));
    QString name = QStringLiteral("update.deb");
};

TEST_F(PrivateFile, IsForThisUserAlone) {
    const mode_t before = ::umask(0);
    const QString path = writePrivateFile(folder, name, "bytes");
    ::umask(before);
    EXPECT_EQ(path, folder + QStringLiteral("/update.deb"));
    EXPECT_EQ(contents(path), "bytes");
    EXPECT_EQ(mode(folder), 0700U);
    EXPECT_EQ(mode(path), 0600U);
}

TEST_F(PrivateFile, NothingOfWhatWasThereStays) {
    ASSERT_TRUE(QDir().mkpath(folder));
    ::chmod(QFile::encodeName(folder).constData(), 0777);
    write(folder + QStringLiteral("/update.deb"), "old, and much longer");
    write(folder + QStringLiteral("/other"), "old");
    const QString path = writePrivateFile(folder, name, "new");
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{name});
    EXPECT_EQ(contents(path), "new");
    EXPECT_EQ(mode(folder), 0700U);
}

TEST_F(PrivateFile, LinksAreNotFollowed) {
    const QString elsewhere = home.filePath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    write(elsewhere + QStringLiteral("/update.deb"), "mine");
    ASSERT_TRUE(QDir().mkpath(QFileInfo(folder).path()));
    ASSERT_TRUE(QFile::link(elsewhere, folder));
    writePrivateFile(folder, name, "new");
    EXPECT_FALSE(QFileInfo(folder).isSymLink());
    EXPECT_EQ(contents(elsewhere + QStringLiteral("/update.deb")), "mine");
}

TEST_F(PrivateFile, AFolderThatCannotBeMadeIsAnError) {
    ASSERT_TRUE(QDir().mkpath(home.filePath(QStringLiteral("data"))));
    write(home.filePath(QStringLiteral("data/Quillabrae")), "a file in the way");
    EXPECT_THROW(writePrivateFile(folder, name, "bytes"), FileOperationError);
}

TEST_F(PrivateFile, AFullDiskIsAnErrorWithItsReason) {
    const tests::FullDisk disk(1000);
    try {
        writePrivateFile(folder, name, QByteArray(5000, 'x'));
        FAIL() << "it was written";
    } catch (const FileOperationError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("File too large"));
    }
}

} // namespace
} // namespace quillabrae::platform
