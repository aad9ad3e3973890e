// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MemoryPasteboard.h"
#include "platform/QtMimeSource.h"

#include <QMimeData>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

QUrl file(const QString& path) {
    return QUrl::fromLocalFile(path);
}

TEST(MimeSource, NamesTheFilesOfThisMachineInOrder) {
    MemoryPasteboard source;
    source.put({{MimeTypes::uriList,
                 "# from a file manager\r\nfile:///home/a%20b.png\r\n"
                 "https://example.org/c.png\r\nfile://localhost/home/folder/\r\n"}});
    EXPECT_EQ(localFiles(source), QList<QUrl>({file(QStringLiteral("/home/a b.png")),
                                               file(QStringLiteral("/home/folder"))}));
}

TEST(MimeSource, ReadsTheFileManagersFormWithoutItsFirstWord) {
    MemoryPasteboard source;
    for (const char* word : {"copy", "cut"}) {
        source.put({{MimeTypes::copiedFiles, QByteArray(word) + "\nfile:///a.png\nfile:///b.png"}});
        EXPECT_EQ(localFiles(source).size(), 2) << word;
    }
    source.put({{MimeTypes::uriList, "https://example.org/c.png"},
                {MimeTypes::copiedFiles, "copy\nfile:///a.png"}});
    EXPECT_EQ(localFiles(source), QList<QUrl>{file(QStringLiteral("/a.png"))});
}

TEST(MimeSource, HasNoFilesInRubbish) {
    MemoryPasteboard source;
    EXPECT_TRUE(localFiles(source).isEmpty());
    source.put({{MimeTypes::uriList, QByteArray("\0\xff\n::::\nfile:\n", 13)}});
    EXPECT_TRUE(localFiles(source).isEmpty());
}

TEST(MimeSource, LooksAtNoMoreLinesThanAnybodyHasFiles) {
    MemoryPasteboard source;
    const QByteArray some = QByteArray("file:///a.png\n").repeated(99'999);
    source.put({{MimeTypes::uriList, some + "file:///b.png\nfile:///c.png\n"}});
    const QList<QUrl> files = localFiles(source);
    ASSERT_EQ(files.size(), 100'000);
    EXPECT_EQ(files.back(), file(QStringLiteral("/b.png")));
}

TEST(MimeSource, PassesOverALineThatIsLongerThanAnyPath) {
    MemoryPasteboard source;
    source.put({{MimeTypes::uriList,
                 "file:///" + QByteArray(20'000, 'a') + "\nfile:///" + QByteArray(4'000, 'b')}});
    EXPECT_EQ(localFiles(source), QList<QUrl>{file(u'/' + QString(4'000, u'b'))});
}

TEST(MimeSource, LeavesOutFilesOfOtherMachinesAndOnesWithoutAName) {
    MemoryPasteboard source;
    source.put({{MimeTypes::copiedFiles,
                 QByteArray("copy\nfile://server/a.png\nfile:///b.png\nfile://local\0/c", 54)}});
    EXPECT_EQ(localFiles(source), QList<QUrl>{file(QStringLiteral("/b.png"))});
}

TEST(MimeSource, TakesOneSlashForSeveralBeforeAPath) {
    MemoryPasteboard source;
    source.put({{MimeTypes::uriList, "file://localhost//a/b.png\nfile:////c%20%2541.png\n"}});
    EXPECT_EQ(localFiles(source),
              QList<QUrl>({file(QStringLiteral("/a/b.png")), file(QStringLiteral("/c %41.png"))}));
}

TEST(MimeSource, WritesFilesSoThatTheyAreReadBack) {
    const QUrl odd = file(QStringLiteral("/home/\u00e9t\u00e9 100%/#1?.png"));
    MemoryPasteboard source;
    source.put({{MimeTypes::uriList, uriListOf(odd)}});
    EXPECT_EQ(localFiles(source), QList<QUrl>{odd});
    source.put({{MimeTypes::copiedFiles, copiedFilesOf(odd)}});
    EXPECT_EQ(localFiles(source), QList<QUrl>{odd});
}

TEST(MimeSource, FindsTextUnderItsTypeWithOrWithoutACharset) {
    MemoryPasteboard source;
    source.put({{MimeTypes::png, "x"}, {QStringLiteral("text/plain;charset=utf-8"), "words"}});
    EXPECT_EQ(textOf(source), QStringLiteral("words"));
    source.put({{QStringLiteral("text/html"), "<p>"}, {MimeTypes::text, "\xc3\xa9"}});
    EXPECT_EQ(textOf(source), QStringLiteral("\u00e9"));
    source.put({{QStringLiteral("text/plainly"), "no"}});
    EXPECT_TRUE(textOf(source).isEmpty());
}

TEST(QtMimeSource, ShowsADragAsItIs) {
    QMimeData drag;
    drag.setUrls({file(QStringLiteral("/a.png")), QUrl(QStringLiteral("https://example.org/b"))});
    drag.setData(MimeTypes::png, "pixels");
    const QtMimeSource source(drag);
    EXPECT_EQ(source.types(), QStringList({MimeTypes::uriList, MimeTypes::png}));
    EXPECT_EQ(source.data(MimeTypes::png), QByteArray("pixels"));
    EXPECT_EQ(localFiles(source), QList<QUrl>{file(QStringLiteral("/a.png"))});
    EXPECT_TRUE(source.data(MimeTypes::svg).isEmpty());
}

} // namespace
} // namespace quillabrae::platform
