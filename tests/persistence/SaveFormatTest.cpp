// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/SaveFormat.h"

#include <gtest/gtest.h>

namespace quillabrae::persistence {
namespace {

std::optional<SaveFormat> formatOf(const QString& path) {
    return saveFormatOf(QUrl::fromLocalFile(path));
}

TEST(SaveFormat, TheListBeginsWithTheProjectAndHoldsEveryFormatOnce) {
    const auto all = allSaveFormats();
    EXPECT_EQ(all.front(), SaveFormat::project);
    EXPECT_EQ(all.back(), SaveFormat::jpeg2000);
    for (const SaveFormat format : all)
        EXPECT_EQ(std::count(all.begin(), all.end(), format), 1) << qPrintable(title(format));
}

TEST(SaveFormat, ItsRawTextGivesItBack) {
    for (const SaveFormat format : allSaveFormats())
        EXPECT_EQ(saveFormatFromRawText(rawText(format)), format);
    EXPECT_EQ(saveFormatFromRawText(u"jpg"), std::nullopt);
}

TEST(SaveFormat, TheExtensionItWritesIsOneItRecognises) {
    for (const SaveFormat format : allSaveFormats())
        EXPECT_TRUE(recognisedExtensions(format).contains(fileExtension(format)));
}

TEST(SaveFormat, AnExtensionInAnyLetterCaseTellsTheFormat) {
    EXPECT_EQ(formatOf(QStringLiteral("/a/b.c.JPE")), SaveFormat::jpeg);
    EXPECT_EQ(formatOf(QStringLiteral("/a/b.tif")), SaveFormat::tiff);
    EXPECT_EQ(formatOf(QStringLiteral("/a/b.Quillabrae")), SaveFormat::project);
    EXPECT_EQ(formatOf(QStringLiteral("/a/b.quillabrae/")), SaveFormat::project);
    for (const char* extension : {"jp2", "j2k", "jpf", "jpx", "jpm", "mj2"})
        EXPECT_EQ(formatOf(QStringLiteral("/a/b.") + QString::fromLatin1(extension)),
                  SaveFormat::jpeg2000);
}

TEST(SaveFormat, AnUnknownOrMissingExtensionIsNoFormat) {
    for (const char* path : {"/a/b.xcf", "/a/b", "/a.png/b", "/a/b.", "/"})
        EXPECT_EQ(formatOf(QString::fromLatin1(path)), std::nullopt) << path;
}

TEST(SaveFormat, TheTitleNamesTheExtensions) {
    EXPECT_EQ(title(SaveFormat::project), QStringLiteral("Project (.quillabrae)"));
    EXPECT_EQ(title(SaveFormat::jpeg), QStringLiteral("JPEG Image (.jpg/.jpeg)"));
    EXPECT_EQ(title(SaveFormat::bmp), QStringLiteral("Bitmap Image (.bmp)"));
    EXPECT_EQ(title(SaveFormat::jpeg2000), QStringLiteral("JPEG 2000 Image (.jp2)"));
}

} // namespace
} // namespace quillabrae::persistence
