// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MappedFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace quillabrae::platform {
namespace {

class Mapping : public testing::Test {
protected:
    QString write(const QByteArray& content) const {
        QFile file(folder.filePath(QStringLiteral("file")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    QTemporaryDir folder;
};

TEST_F(Mapping, ShowsTheContentWithZerosBehindItWhateverTheLength) {
    for (const qsizetype size : {1, 63, 4031, 4032, 4033, 4095, 4096, 4097, 8192, 1'000'000}) {
        QByteArray content(size, 'x');
        content.front() = 'a';
        content.back() = 'z';
        const auto file = MappedFile::open(write(content));
        ASSERT_TRUE(file) << size;
        EXPECT_EQ(file->text(), content.toStdString()) << size;
        const char* const end = file->text().data() + size;
        EXPECT_TRUE(std::all_of(end, end + MappedFile::padding, [](char c) { return c == 0; }))
            << size;
    }
}

TEST_F(Mapping, GoesWhereItIsMovedTo) {
    std::optional<MappedFile> second;
    {
        auto first = MappedFile::open(write("content"));
        ASSERT_TRUE(first);
        second.emplace(*std::move(first));
    }
    EXPECT_EQ(second->text(), "content");
    second = *MappedFile::open(write("another"));
    EXPECT_EQ(second->text(), "another");
}

TEST_F(Mapping, OutlivesTheFilesName) {
    const QString path = write("content");
    const auto file = MappedFile::open(path);
    ASSERT_TRUE(file);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(file->text(), "content");
}

TEST_F(Mapping, WhatIsNoFileOrIsEmptyGivesNothing) {
    EXPECT_FALSE(MappedFile::open(folder.filePath(QStringLiteral("none"))));
    EXPECT_FALSE(MappedFile::open(folder.path()));
    EXPECT_FALSE(MappedFile::open(write({})));
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    EXPECT_FALSE(MappedFile::open(pipe));
}

} // namespace
} // namespace quillabrae::platform
