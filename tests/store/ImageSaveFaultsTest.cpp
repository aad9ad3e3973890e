// SPDX-License-Identifier: GPL-3.0-or-later
#include "store/OpenAndSaveFixture.h"
#include "support/OrdinaryUser.h"

#include <QFile>

#include <sys/resource.h>

#include <csignal>

namespace quillabrae::store {
namespace {

using persistence::SaveFormat;

std::vector<SaveFormat> imageFormats() {
    const auto all = persistence::allSaveFormats();
    return {all.begin() + 1, all.end()};
}

/// Every way in which an image file cannot be written, as the user is told of it.
class EveryImageFormat : public OpenAndSave, public testing::WithParamInterface<SaveFormat> {
protected:
    void SetUp() override {
        makeProject(*store);
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("pictures"))));
    }
    QString path(const char* place = "pictures/a.") const {
        return folder.filePath(QLatin1StringView(place) + persistence::fileExtension(GetParam()));
    }
    void writeOldFile() const {
        QFile old(path());
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("old");
    }
    void expectFailure(const QString& path, const char* reason) {
        EXPECT_FALSE(store->saveProject(0, {QUrl::fromLocalFile(path), GetParam()}));
        EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Save failed: ")))
            << store->statusMessage().toStdString();
        EXPECT_TRUE(store->statusMessage().contains(QLatin1StringView(reason)))
            << store->statusMessage().toStdString();
        EXPECT_FALSE(store->openProjects().front().fileURL);
    }
    void expectOldFileAlone() const {
        QFile old(path());
        ASSERT_TRUE(old.open(QIODevice::ReadOnly));
        EXPECT_EQ(old.readAll(), QByteArray("old"));
        EXPECT_EQ(QDir(folder.filePath(QStringLiteral("pictures")))
                      .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                      .size(),
                  1);
    }

    std::unique_ptr<ProjectStore> store = makeStore();
};

TEST_P(EveryImageFormat, ThatCannotBeWrittenWholeLeavesTheOldFile) {
    writeOldFile();
    // A limit of the system's own, as a disk that is full.
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto formerly = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = before;
    limit.rlim_cur = 16;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_FALSE(store->saveProject(0, {QUrl::fromLocalFile(path()), GetParam()}));
    ::setrlimit(RLIMIT_FSIZE, &before);
    static_cast<void>(std::signal(SIGXFSZ, formerly));
    EXPECT_TRUE(store->statusMessage().startsWith(QStringLiteral("Save failed: ")))
        << store->statusMessage().toStdString();
    expectOldFileAlone();
}

TEST_P(EveryImageFormat, InAFolderThatIsGoneIsNotSaved) {
    expectFailure(path("gone/a."), "No such file or directory");
    EXPECT_FALSE(QDir(folder.filePath(QStringLiteral("gone"))).exists());
}

TEST_P(EveryImageFormat, DoesNotReplaceAFolder) {
    ASSERT_TRUE(QDir().mkpath(path() + QStringLiteral("/kept")));
    expectFailure(path(), "Is a directory");
    EXPECT_TRUE(QDir(path() + QStringLiteral("/kept")).exists());
}

TEST_P(EveryImageFormat, DoesNotReplaceAProtectedFile) {
    writeOldFile();
    // For another user than root, whom nothing is protected against.
    const auto everything = QFile::Permissions(0x7777);
    ASSERT_TRUE(QFile::setPermissions(folder.path(), everything));
    ASSERT_TRUE(QFile::setPermissions(QFileInfo(path()).path(), everything));
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::ReadOther));
    {
        const tests::OrdinaryUser user;
        expectFailure(path(), "Permission denied");
    }
    expectOldFileAlone();
}

INSTANTIATE_TEST_SUITE_P(, EveryImageFormat, testing::ValuesIn(imageFormats()),
                         [](const auto& info) {
                             return persistence::rawText(info.param).toStdString();
                         });

} // namespace
} // namespace quillabrae::store
