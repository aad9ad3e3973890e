// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileSink.h"
#include "persistence/Staging.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace quillabrae::persistence {
namespace {

using platform::DurableFile;
using platform::FileOperationError;

class Saving : public ::testing::Test {
protected:
    void save(const QByteArray& bytes, FaultyFileOperations& operations) const {
        writeFileAtomically(operations, target, [&](DurableFile& file) { file.write(bytes); });
    }
    void save(const QByteArray& bytes) const {
        FaultyFileOperations operations;
        save(bytes, operations);
    }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    static void put(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QStringList names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    QString target = folder.filePath(QStringLiteral("picture.png"));
    QStringList onlyTheTarget{QStringLiteral("picture.png")};
    QString leftover =
        folder.filePath(QStringLiteral(".picture.png.B7C0F3A4-1C3B-4B52-9D5A-0E5B7E2D9F10.tmp"));
};

TEST_F(Saving, ANewFileAppearsUnderItsNameAlone) {
    save("new");
    EXPECT_EQ(contents(target), QByteArray("new"));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, AnOldFileIsReplacedAndLeavesNothing) {
    save("old");
    save("new");
    EXPECT_EQ(contents(target), QByteArray("new"));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, AFileIsReplacedWhereNamesCannotBeSwapped) {
    save("old");
    FaultyFileOperations operations(FaultyFileOperations::Exchange::isUnsupported);
    save("new", operations);
    EXPECT_EQ(contents(target), QByteArray("new"));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, AFailureAtAnyStepLeavesTheOldFileAlone) {
    for (const auto exchange :
         {FaultyFileOperations::Exchange::works, FaultyFileOperations::Exchange::isUnsupported}) {
        save("old");
        for (int failing = 0;; ++failing) {
            FaultyFileOperations operations(exchange);
            bool hasFailed = false;
            operations.beforeStep = [&](int step, const char* name) {
                if (step != failing || name == std::string_view("removeTree")) return;
                hasFailed = true;
                throw FileOperationError(target, EIO);
            };
            try {
                save("new", operations);
                if (failing >= operations.stepCount()) break;
                ASSERT_FALSE(hasFailed);
            } catch (const FileOperationError& error) {
                EXPECT_EQ(error.errorNumber(), EIO);
                EXPECT_EQ(contents(target), QByteArray("old")) << "step " << failing;
                EXPECT_EQ(names(), onlyTheTarget) << "step " << failing;
            }
            save("old");
        }
    }
}

TEST_F(Saving, AFailureAtAnyStepOfAFirstSaveLeavesNothing) {
    for (int failing = 0;; ++failing) {
        FaultyFileOperations operations;
        operations.beforeStep = [&](int step, const char* name) {
            if (step == failing && name != std::string_view("removeTree"))
                throw FileOperationError(target, EIO);
        };
        try {
            save("new", operations);
            if (failing >= operations.stepCount()) break;
            ASSERT_TRUE(QFile::remove(target));
        } catch (const FileOperationError&) {
            EXPECT_TRUE(names().isEmpty()) << "step " << failing;
        }
    }
}

TEST_F(Saving, WhatAKilledSaveLeftGoesWithTheNextSave) {
    put(leftover, "half");
    save("new");
    EXPECT_EQ(names(), onlyTheTarget);
    ASSERT_TRUE(QDir().mkpath(leftover + QStringLiteral("/QuickLook")));
    save("newer");
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, WithNoTargetTheLeftoverStaysUntilTheSaveIsDone) {
    put(leftover, "the only copy");
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("finish")) throw FileOperationError(target, ENOSPC);
    };
    EXPECT_THROW(save("new", operations), FileOperationError);
    EXPECT_EQ(contents(leftover), QByteArray("the only copy"));
}

TEST_F(Saving, HiddenFilesThatOnlyLookLikeALeftoverStay) {
    const QStringList others{
        QStringLiteral(".picture.png.tmp"), QStringLiteral(".picture.png.backup.tmp"),
        QStringLiteral(".other.png.B7C0F3A4-1C3B-4B52-9D5A-0E5B7E2D9F10.tmp"),
        QStringLiteral(".picture.png.B7C0F3A4-1C3B-4B52-9D5A-0E5B7E2D9F10.tmp.png")};
    for (const QString& name : others) put(folder.filePath(name), "mine");
    save("old");
    save("new");
    for (const QString& name : others)
        EXPECT_EQ(contents(folder.filePath(name)), QByteArray("mine")) << qPrintable(name);
}

TEST_F(Saving, ATargetThatVanishesMidwayIsMadeAnew) {
    save("old");
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("exchange")) QFile::remove(target);
    };
    save("new", operations);
    EXPECT_EQ(contents(target), QByteArray("new"));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, AFolderThatVanishesMidwayIsReported) {
    const QString inner = folder.filePath(QStringLiteral("inner"));
    ASSERT_TRUE(QDir().mkpath(inner));
    target = inner + QStringLiteral("/picture.png");
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("rename")) QDir(inner).removeRecursively();
    };
    EXPECT_THROW(save("new", operations), FileOperationError);
    EXPECT_TRUE(names().isEmpty());
}

TEST_F(Saving, ALinkGoesOnPointingToWhatWasSaved) {
    save("old");
    const QString file = std::exchange(target, folder.filePath(QStringLiteral("link.png")));
    ASSERT_TRUE(QFile::link(file, target));
    save("new");
    EXPECT_TRUE(QFileInfo(target).isSymLink());
    EXPECT_EQ(contents(file), QByteArray("new"));
}

TEST_F(Saving, AFileNeverReplacesAFolder) {
    ASSERT_TRUE(QDir().mkpath(target + QStringLiteral("/kept")));
    EXPECT_THROW(save("new"), FileOperationError);
    EXPECT_TRUE(QFileInfo::exists(target + QStringLiteral("/kept")));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, TheAccessRightsOfTheOldFileStay) {
    constexpr mode_t onlyMine = 0600;
    save("old");
    ASSERT_EQ(::chmod(QFile::encodeName(target).constData(), onlyMine), 0);
    save("new");
    struct stat information {};
    ASSERT_EQ(::stat(QFile::encodeName(target).constData(), &information), 0);
    EXPECT_EQ(information.st_mode & 0777, onlyMine);
}

TEST_F(Saving, AFolderThatReplacesAFileKeepsTheRightsOfAFolder) {
    save("old");
    FaultyFileOperations operations;
    Staging staging(operations, target);
    operations.makePath(staging.path() + QStringLiteral("/inner"));
    staging.commit();
    EXPECT_TRUE(QFileInfo(target).isExecutable());
    EXPECT_TRUE(QFileInfo::exists(target + QStringLiteral("/inner")));
}

TEST_F(Saving, AProtectedFileStaysAsItIs) {
    save("old");
    ASSERT_EQ(::chmod(QFile::encodeName(target).constData(), 0444), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    {
        const tests::OrdinaryUser user;
        EXPECT_THROW(save("new"), FileOperationError);
    }
    EXPECT_EQ(contents(target), QByteArray("old"));
    EXPECT_EQ(names(), onlyTheTarget);
}

TEST_F(Saving, TheLongestNamesAreSavedAndLeaveNothing) {
    for (const QString& stem :
         {QString(251, u'n'), QString(83, u'\u7B46'), QStringLiteral("\U0001F58C").repeated(62)}) {
        target = folder.filePath(stem + QStringLiteral(".png"));
        save("old");
        save("new");
        EXPECT_EQ(contents(target), QByteArray("new"));
        EXPECT_EQ(names(), QStringList{QFileInfo(target).fileName()});
        ASSERT_TRUE(QFile::remove(target));
    }
}

/// Remembers the largest piece that it was given.
class MeasuringFile final : public DurableFile {
public:
    void write(std::span<const char> bytes) override { largest = std::max(largest, bytes.size()); }
    void finish() override {}

    std::size_t largest = 0;
};

TEST(FileSink, APictureIsNeverAsTextInMemoryWhole) {
    constexpr std::size_t pictureSize = 8 << 20;
    constexpr std::size_t smallPiece = 1 << 20;
    MeasuringFile file;
    FileSink sink(file);
    sink.writeBase64(std::vector<std::uint8_t>(pictureSize, 0x5a));
    EXPECT_GT(file.largest, 0U);
    EXPECT_LT(file.largest, smallPiece);
}

TEST_F(Saving, TheStagingNameIsHiddenAndCarriesAnIdentifier) {
    FaultyFileOperations operations;
    const Staging staging(operations, target);
    const QRegularExpression pattern(
        QStringLiteral("^\\.picture\\.png\\.[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.tmp$"));
    EXPECT_TRUE(pattern.match(QFileInfo(staging.path()).fileName()).hasMatch());
    EXPECT_EQ(QFileInfo(staging.path()).path(), folder.path());
}

} // namespace
} // namespace quillabrae::persistence
