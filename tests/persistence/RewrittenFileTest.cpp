// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/BlockSink.h"
#include "persistence/FileError.h"
#include "persistence/RewrittenFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace quillabrae::persistence {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

class RewrittenFile : public testing::Test {
protected:
    QString path(const char* name) const {
        return m_folder.path() + QLatin1Char('/') + QString::fromLatin1(name);
    }
    QString target() const { return path("file"); }
    QString spare() const { return path(".file.spare"); }

    static void rewrite(const QString& target, const QByteArray& content) {
        rewriteFile(target, [&](model::ByteSink& sink) {
            sink.write({content.constData(), static_cast<std::size_t>(content.size())});
        });
    }

    QStringList names() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
};

TEST_F(RewrittenFile, TheFirstContentStandsAlone) {
    rewrite(target(), "first");
    EXPECT_EQ(contentOf(target()), "first");
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("file")));
}

TEST_F(RewrittenFile, TheReplacedFileIsKeptToBeWrittenOver) {
    rewrite(target(), "the first and the longest");
    rewrite(target(), "second");
    EXPECT_EQ(contentOf(target()), "second");
    EXPECT_EQ(contentOf(spare()), "the first and the longest");
    rewrite(target(), "third");
    EXPECT_EQ(contentOf(target()), "third");
    EXPECT_EQ(contentOf(spare()), "second");
    EXPECT_EQ(names().size(), 2);
}

TEST_F(RewrittenFile, ContentsOfAnyLengthReplaceEachOtherWhole) {
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        QByteArray content(static_cast<qsizetype>(random() % 1'200'000), Qt::Uninitialized);
        for (char& byte : content) byte = static_cast<char>(random() & 0xff);
        rewrite(target(), content);
        ASSERT_EQ(contentOf(target()), content) << round;
    }
}

TEST_F(RewrittenFile, AFailedWriteLeavesTheContentAndNothingBesideIt) {
    rewrite(target(), "first");
    rewrite(target(), "second");
    const auto fail = [](model::ByteSink& sink) {
        sink.write(std::string_view("half"));
        throw std::runtime_error("no more");
    };
    EXPECT_THROW(rewriteFile(target(), fail), std::runtime_error);
    EXPECT_EQ(contentOf(target()), "second");
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("file")));
}

TEST_F(RewrittenFile, WhatKilledWritesLeftIsTakenAway) {
    for (const char* name :
         {".file.1.writing", ".file.2.writing", ".other.1.writing", ".file.txt"}) {
        QFile left(path(name));
        ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    }
    rewrite(target(), "content");
    EXPECT_THAT(names(), UnorderedElementsAre(QStringLiteral("file"), QStringLiteral(".file.txt"),
                                              QStringLiteral(".other.1.writing")));
}

TEST_F(RewrittenFile, ALinkInPlaceOfTheSpareIsNotWrittenThrough) {
    QFile elsewhere(path("elsewhere"));
    ASSERT_TRUE(elsewhere.open(QIODevice::WriteOnly));
    elsewhere.write("precious");
    elsewhere.close();
    ASSERT_TRUE(QFile::link(path("elsewhere"), spare()));
    rewrite(target(), "first");
    rewrite(target(), "second");
    rewrite(target(), "third");
    EXPECT_EQ(contentOf(path("elsewhere")), "precious");
    EXPECT_EQ(contentOf(target()), "third");
}

TEST_F(RewrittenFile, ItsFolderIsMadeWhenMissing) {
    rewrite(path("a/b/file"), "content");
    EXPECT_EQ(contentOf(path("a/b/file")), "content");
}

TEST_F(RewrittenFile, AFolderInItsPlaceIsAnError) {
    QDir().mkpath(target());
    EXPECT_THROW(rewrite(target(), "content"), FileError);
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("file")));
}

TEST_F(RewrittenFile, RemovingTakesTheSpareAndTheLeftovers) {
    rewrite(target(), "first");
    rewrite(target(), "second");
    QFile left(path(".file.1.writing"));
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    removeRewrittenFile(target());
    EXPECT_THAT(names(), IsEmpty());
    removeRewrittenFile(target());
}

// Letters and plain bytes in any mixture, over block boundaries, against the obvious way.
TEST(BlockSink, WritesBase64AndPlainBytesInOrder) {
    const QTemporaryDir folder;
    std::mt19937 random(2);
    QFile file(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    file.write(QByteArray(4'000'000, 'o'));
    file.seek(0);
    BlockSink sink(file, file.fileName());
    QByteArray expected;
    for (int round = 0; round < 200; ++round) {
        QByteArray piece(static_cast<qsizetype>(random() % (round % 10 == 0 ? 300'000 : 50)),
                         Qt::Uninitialized);
        for (char& byte : piece) byte = static_cast<char>(random() & 0xff);
        const std::span<const char> bytes(piece.constData(),
                                          static_cast<std::size_t>(piece.size()));
        if (random() % 2 == 0) {
            sink.write(bytes);
            expected += piece;
        } else {
            sink.writeBase64({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
            expected += piece.toBase64();
        }
    }
    sink.finish();
    EXPECT_EQ(contentOf(file.fileName()), expected);
}

} // namespace
} // namespace quillabrae::persistence
