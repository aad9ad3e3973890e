// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/PanelRules.h"
#include "store/StoreTest.h"

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

using persistence::SaveFormat;

QString saved(const char* typed, SaveFormat format) {
    return PanelRules::destination(QString::fromLatin1(typed), format).toLocalFile();
}

TEST(PanelRules, LetsTheFormatDecideTheExtension) {
    EXPECT_EQ(saved("/home/cat.png", SaveFormat::jpeg), QStringLiteral("/home/cat.jpg"));
    EXPECT_EQ(saved("/home/cat", SaveFormat::project), QStringLiteral("/home/cat.quillabrae"));
    EXPECT_EQ(saved("/home/cat.quillabrae", SaveFormat::project),
              QStringLiteral("/home/cat.quillabrae"));
    EXPECT_EQ(saved("/home/cat.tar.gz", SaveFormat::png), QStringLiteral("/home/cat.tar.png"));
}

TEST(PanelRules, TakesNothingForAnExtensionThatIsNone) {
    EXPECT_EQ(saved("/home/.hidden", SaveFormat::png), QStringLiteral("/home/.hidden.png"));
    EXPECT_EQ(saved("/home/my.folder/cat", SaveFormat::png),
              QStringLiteral("/home/my.folder/cat.png"));
    EXPECT_EQ(saved("/home/Mr. Cat", SaveFormat::png), QStringLiteral("/home/Mr. Cat.png"));
    EXPECT_EQ(saved("/home/cat.", SaveFormat::png), QStringLiteral("/home/cat..png"));
}

TEST(PanelRules, KnowsPackagesByTheirExtensionInAnyCase) {
    EXPECT_TRUE(PanelRules::isPackageName(QStringLiteral("/home/Cat.QuillaBrae")));
    EXPECT_FALSE(PanelRules::isPackageName(QStringLiteral("/home/quillabrae")));
    EXPECT_FALSE(PanelRules::isPackageName(QStringLiteral("/home/cat.png")));
}

TEST(PanelRules, TakesWhatIsInsideAPackageForThePackage) {
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("cat.quillabrae/kept.quillabrae"));
    const auto outside = [&](const char* path) {
        return PanelRules::outsideOfPackages(folder.filePath(QString::fromLatin1(path)));
    };
    const QString package = folder.filePath(QStringLiteral("cat.quillabrae"));
    EXPECT_EQ(outside("cat.quillabrae/dog"), package);
    EXPECT_EQ(outside("cat.quillabrae/kept.quillabrae/dog.png"), package);
    EXPECT_EQ(outside("cat.quillabrae"), package);
    EXPECT_EQ(outside("dog.quillabrae/new"), folder.filePath(QStringLiteral("dog.quillabrae/new")));
    EXPECT_EQ(outside("dog.png"), folder.filePath(QStringLiteral("dog.png")));
}

TEST(PanelRules, SuggestsNamesWithoutFolders) {
    EXPECT_EQ(PanelRules::fileNameFrom(QStringLiteral("a/b")), QStringLiteral("a-b"));
}

TEST(PanelRules, OffersEveryImageFormatForOpening) {
    const QStringList patterns = PanelRules::projectAndImagePatterns();
    EXPECT_EQ(patterns.first(), QStringLiteral("*.quillabrae"));
    for (const auto* extension : {"png", "jpg", "jpeg", "webp", "svg", "tif", "gif", "heic"}) {
        EXPECT_TRUE(patterns.contains(QStringLiteral("*.") + QString::fromLatin1(extension)))
            << extension;
    }
    EXPECT_FALSE(PanelRules::imagePatterns().contains(QStringLiteral("*.quillabrae")));
}

TEST(PanelRules, ReadsTheAnswerBeforeClosing) {
    using enum store::SaveBeforeCloseChoice;
    EXPECT_EQ(PanelRules::saveBeforeCloseChoice(0), save);
    EXPECT_EQ(PanelRules::saveBeforeCloseChoice(1), discard);
    EXPECT_EQ(PanelRules::saveBeforeCloseChoice(2), cancel);
    EXPECT_EQ(PanelRules::saveBeforeCloseChoice(-1), cancel);
}

} // namespace
} // namespace quillabrae::shell
