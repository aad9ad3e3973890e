// SPDX-License-Identifier: GPL-3.0-or-later
// What stands at the target, and beside it, after saves that fail or are killed.
#include "persistence/FaultyFileOperations.h"
#include "persistence/FileError.h"
#include "persistence/ProjectFileService.h"
#include "persistence/SampleProjects.h"
#include "platform/FileIcons.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace quillabrae::persistence {
namespace {

using platform::FileOperationError;
using ::testing::HasSubstr;
using Exchange = FaultyFileOperations::Exchange;

class InterruptedSave : public ::testing::Test {
protected:
    void save(const QString& title, FaultyFileOperations& operations) const {
        model::PaintProject project = samples::twoLayers();
        project.title = title;
        platform::NoFileIcons icons;
        ProjectFileService::save(project, QUrl::fromLocalFile(package), samples::StoppedClock(),
                                 icons, operations);
    }
    void save(const QString& title) const {
        FaultyFileOperations operations;
        save(title, operations);
    }
    std::string saveError(FaultyFileOperations& operations) const {
        try {
            save(QStringLiteral("new"), operations);
        } catch (const FileError& error) {
            return error.description().toStdString();
        }
        return "no error";
    }
    std::string saveError() const {
        FaultyFileOperations operations;
        return saveError(operations);
    }

    static QString titleIn(const QString& path) {
        try {
            return ProjectFileService::read(QUrl::fromLocalFile(path)).title;
        } catch (const FileError&) {
            return QStringLiteral("(none)");
        }
    }
    QString savedTitle() const { return titleIn(package); }
    QStringList names() const {
        return QDir(QFileInfo(package).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void expectOnlyThePackage() const {
        EXPECT_EQ(names(), QStringList{QStringLiteral("p.quillabrae")});
    }

    QTemporaryDir folder;
    QString package = folder.filePath(QStringLiteral("p.quillabrae"));
    const QString oldTitle = QStringLiteral("old");
    const QString newTitle = QStringLiteral("new");
};

class InterruptedSaveByExchange : public InterruptedSave,
                                  public ::testing::WithParamInterface<Exchange> {
protected:
    /// Whether the program that saves was killed, at its step `step`.
    bool killSaveAt(int step) const {
        const QString mode =
            GetParam() == Exchange::works ? QStringLiteral("exchange") : QStringLiteral("steps");
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(SAVE_AND_DIE), {package, QString::number(step), mode});
        EXPECT_TRUE(program.waitForFinished(60'000));
        if (program.exitStatus() == QProcess::CrashExit) {
            EXPECT_EQ(program.exitCode(), SIGKILL);
            return true;
        }
        EXPECT_EQ(program.exitCode(), 0);
        return false;
    }

    /// The titles of the whole packages beside the target.
    QStringList titlesBeside() const {
        QStringList titles;
        for (const QString& name : names()) {
            if (name.startsWith(u'.')) titles.append(titleIn(folder.filePath(name)));
        }
        titles.removeAll(QStringLiteral("(none)"));
        titles.sort();
        return titles;
    }
};

TEST_P(InterruptedSaveByExchange, KilledAtAnyStepTheOldOrTheNewPackageIsWhole) {
    constexpr int fewestSteps = 10;
    for (int step = 0;; ++step) {
        save(oldTitle);
        if (!killSaveAt(step)) {
            EXPECT_GE(step, fewestSteps);
            break;
        }
        if (GetParam() == Exchange::isUnsupported && savedTitle() == QStringLiteral("(none)")) {
            EXPECT_EQ(titlesBeside(), QStringList({newTitle, oldTitle})) << "step " << step;
        } else {
            EXPECT_THAT(savedTitle(), ::testing::AnyOf(oldTitle, newTitle)) << "step " << step;
        }
        save(newTitle);
        EXPECT_EQ(savedTitle(), newTitle);
        expectOnlyThePackage();
    }
}

TEST_P(InterruptedSaveByExchange, KilledAtAnyStepOfAFirstSaveThereIsNoneOrAWholePackage) {
    for (int step = 0; killSaveAt(step); ++step) {
        if (QFileInfo::exists(package)) {
            EXPECT_EQ(savedTitle(), newTitle) << "step " << step;
        }
        save(oldTitle);
        expectOnlyThePackage();
        QDir(package).removeRecursively();
    }
}

TEST_P(InterruptedSaveByExchange, AFailureAtAnyStepIsToldAndChangesNothing) {
    save(oldTitle);
    for (int failing = 0;; ++failing) {
        FaultyFileOperations operations(GetParam());
        operations.beforeStep = [&](int step, const char* name) {
            if (step == failing && name != std::string_view("removeTree"))
                throw FileOperationError(package, ENOSPC);
        };
        const std::string error = saveError(operations);
        if (failing >= operations.stepCount()) break;
        if (error == "no error") {
            EXPECT_EQ(savedTitle(), newTitle);
            save(oldTitle);
            continue;
        }
        EXPECT_THAT(error, HasSubstr("p.quillabrae"));
        EXPECT_THAT(error, HasSubstr("No space left on device"));
        EXPECT_EQ(savedTitle(), oldTitle) << "step " << failing;
        expectOnlyThePackage();
    }
}

INSTANTIATE_TEST_SUITE_P(WhereNames, InterruptedSaveByExchange,
                         ::testing::Values(Exchange::works, Exchange::isUnsupported),
                         [](const auto& exchange) {
                             return exchange.param == Exchange::works ? "CanBeSwapped"
                                                                      : "CannotBeSwapped";
                         });

/// A file system of 200 kB where the user may mount one, else one on which each write fails.
class FullDisk {
public:
    explicit FullDisk(const QString& folder)
        : m_folder(QFile::encodeName(folder)),
          m_isMounted(::mount("tmpfs", m_folder.constData(), "tmpfs", 0, "size=200k") == 0) {}
    ~FullDisk() {
        if (m_isMounted) ::umount2(m_folder.constData(), MNT_DETACH);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

    void fill(FaultyFileOperations& operations, const QString& folder) const {
        if (!m_isMounted) {
            operations.beforeStep = [folder](int, const char* name) {
                if (name == std::string_view("write")) throw FileOperationError(folder, ENOSPC);
            };
            return;
        }
        QFile file(folder + QStringLiteral("/ballast"));
        if (file.open(QIODevice::WriteOnly)) file.write(QByteArray(1'000'000, 'x'));
    }

private:
    QByteArray m_folder;
    bool m_isMounted;
};

TEST_F(InterruptedSave, AFullDiskIsToldAndLeavesTheOldPackage) {
    const QString disk = folder.filePath(QStringLiteral("disk"));
    ASSERT_TRUE(QDir().mkpath(disk));
    const FullDisk full(disk);
    package = disk + QStringLiteral("/p.quillabrae");
    save(oldTitle);
    FaultyFileOperations operations;
    full.fill(operations, disk);
    EXPECT_THAT(saveError(operations), HasSubstr("No space left on device"));
    EXPECT_EQ(savedTitle(), oldTitle);
    QFile::remove(disk + QStringLiteral("/ballast"));
    expectOnlyThePackage();
}

TEST_F(InterruptedSave, AReadOnlyFolderIsToldAndKeepsItsPackage) {
    save(oldTitle);
    const QByteArray path = QFile::encodeName(folder.path());
    ASSERT_EQ(::chmod(path.constData(), 0555), 0);
    {
        const tests::OrdinaryUser user;
        EXPECT_THAT(saveError(), HasSubstr("Permission denied"));
    }
    ASSERT_EQ(::chmod(path.constData(), 0755), 0);
    EXPECT_EQ(savedTitle(), oldTitle);
    expectOnlyThePackage();
}

TEST_F(InterruptedSave, AMissingFolderIsMadeWithThePackage) {
    package = folder.filePath(QStringLiteral("a/b/p.quillabrae"));
    save(newTitle);
    EXPECT_EQ(savedTitle(), newTitle);
}

TEST_F(InterruptedSave, AFileInPlaceOfTheFolderIsTold) {
    QFile file(folder.filePath(QStringLiteral("a")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    package = folder.filePath(QStringLiteral("a/p.quillabrae"));
    EXPECT_THAT(saveError(), HasSubstr("Not a directory"));
}

TEST_F(InterruptedSave, APackageThatVanishesMidwayIsMadeAnew) {
    save(oldTitle);
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("exchange")) QDir(package).removeRecursively();
    };
    save(newTitle, operations);
    EXPECT_EQ(savedTitle(), newTitle);
    expectOnlyThePackage();
}

TEST_F(InterruptedSave, AFolderThatVanishesMidwayIsTold) {
    package = folder.filePath(QStringLiteral("a/p.quillabrae"));
    save(oldTitle);
    FaultyFileOperations operations;
    operations.beforeStep = [&](int, const char* name) {
        if (name == std::string_view("exchange"))
            QDir(folder.filePath(QStringLiteral("a"))).removeRecursively();
    };
    EXPECT_THAT(saveError(operations), HasSubstr("No such file or directory"));
    EXPECT_FALSE(QFileInfo::exists(folder.filePath(QStringLiteral("a"))));
}

} // namespace
} // namespace quillabrae::persistence
