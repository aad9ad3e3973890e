// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RecentlyUsedList.h"
#include "platform/XdgRecentDocuments.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

namespace quillabrae::platform {
namespace {

using RecentlyUsedList::withoutUses;
using RecentlyUsedList::withUse;
using ::testing::ElementsAre;

const QUrl boat = QUrl::fromLocalFile(QStringLiteral("/home/me/a b/boat & co.quillabrae"));
const QString us = QStringLiteral("Quillabrae");

RecentlyUsedList::Use use(const QUrl& file = boat) {
    return {file, QStringLiteral("application/x-quillabrae-project"), us,
            QStringLiteral("quillabrae %u"),
            QDateTime(QDate(2024, 2, 29), QTime(12, 34, 56), Qt::UTC)};
}

/// What every token of a document says, without the order of its attributes.
std::vector<std::string> tokensOf(const QByteArray& xml) {
    QXmlStreamReader reader(xml);
    std::vector<std::string> tokens;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isWhitespace() || reader.isStartDocument()) continue;
        QStringList words{reader.tokenString(), reader.qualifiedName().toString(),
                          reader.namespaceUri().toString(), reader.text().toString()};
        QStringList attributes;
        for (const auto& attribute : reader.attributes())
            attributes << attribute.qualifiedName().toString() + u'=' +
                              attribute.value().toString();
        attributes.sort();
        tokens.push_back((words + attributes).join(u'|').toStdString());
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return tokens;
}

/// What the list says of the boat: the programs with their counts, the time and the type.
struct Entry {
    std::vector<std::string> programs;
    std::string modified;
    std::string added;
    std::string type;
};

std::vector<Entry> entriesOf(const QByteArray& list, const QUrl& file = boat) {
    QXmlStreamReader reader(list);
    std::vector<Entry> entries;
    bool isHere = false;
    const auto value = [&](const char* name) {
        return reader.attributes().value(QLatin1StringView(name)).toString().toStdString();
    };
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement()) continue;
        if (reader.qualifiedName() == u"bookmark") {
            isHere =
                QUrl(QString::fromStdString(value("href"))).toLocalFile() == file.toLocalFile();
            if (isHere) entries.push_back({{}, value("modified"), value("added"), {}});
        }
        if (!isHere) continue;
        if (reader.name() == u"mime-type") entries.back().type = value("type");
        if (reader.name() == u"application")
            entries.back().programs.push_back(value("name") + ' ' + value("count") + ' ' +
                                              value("exec"));
    }
    return entries;
}

constexpr const char* foreignList = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xbel>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info"
>
  <title>Mine &lt;only&gt;</title>
  <!-- kept by hand -->
  <folder><bookmark href="file:///in/a/folder"><title>x</title></bookmark></folder>
  <bookmark href="file:///home/me/caf%C3%A9.png" added="2023-01-01T00:00:00Z" modified="2023-01-02T00:00:00Z" visited="2023-01-02T00:00:00Z">
    <title>a &amp; b</title>
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="image/png"/>
        <bookmark:groups><bookmark:group>Graphics</bookmark:group></bookmark:groups>
        <bookmark:applications>
          <bookmark:application name="Viewer" exec="&apos;viewer %u&apos;" modified="2023-01-02T00:00:00Z" count="7"/>
        </bookmark:applications>
        <bookmark:private/>
      </metadata>
      <metadata owner="http://example.org" xmlns:e="http://example.org/ns"><e:note e:deep="1">?</e:note></metadata>
    </info>
  </bookmark>
  <bookmark href="file:///home/me/a%20b/boat%20&amp;%20co.quillabrae" added="2023-03-03T00:00:00Z" modified="2023-03-03T00:00:00Z" visited="2023-03-03T00:00:00Z">
    <desc>a boat</desc>
    <info>
      <metadata owner="http://freedesktop.org">
        <mime:mime-type type="inode/directory"/>
        <bookmark:applications>
          <bookmark:application name="Files" exec="&apos;files %u&apos;" modified="2023-03-03T00:00:00Z" count="2"/>
        </bookmark:applications>
      </metadata>
    </info>
  </bookmark>
</xbel>
)";

TEST(RecentlyUsed, ANewListHoldsTheFileWithItsProgram) {
    const auto list = withUse({}, use());
    ASSERT_TRUE(list);
    const auto entries = entriesOf(*list);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_THAT(entries[0].programs, ElementsAre("Quillabrae 1 'quillabrae %u'"));
    EXPECT_EQ(entries[0].modified, "2024-02-29T12:34:56.000Z");
    EXPECT_EQ(entries[0].added, entries[0].modified);
    EXPECT_EQ(entries[0].type, "application/x-quillabrae-project");
    EXPECT_TRUE(list->contains("href=\"file:///home/me/a%20b/boat%20&amp;%20co.quillabrae\""));
}

TEST(RecentlyUsed, AddressesAreEscapedAsGlibEscapesThem) {
    const QUrl odd = QUrl::fromLocalFile(QStringLiteral("/a;b [1]#?%/é~-_.!$&'()*+,:=@"));
    const auto list = withUse({}, use(odd));
    ASSERT_TRUE(list);
    EXPECT_TRUE(
        list->contains("href=\"file:///a%3Bb%20%5B1%5D%23%3F%25/%C3%A9~-_.!$&amp;'()*+,:=@\""))
        << list->toStdString();
    EXPECT_EQ(entriesOf(*list, odd).size(), 1U);
    EXPECT_TRUE(withoutUses(*list, odd, us));
}

TEST(RecentlyUsed, AnotherUseCountsAndKeepsWhenItWasAdded) {
    auto list = withUse({}, use());
    auto later = use();
    later.time = later.time.addDays(1);
    list = withUse(*list, later);
    const auto entries = entriesOf(*list);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_THAT(entries[0].programs, ElementsAre("Quillabrae 2 'quillabrae %u'"));
    EXPECT_EQ(entries[0].added, "2024-02-29T12:34:56.000Z");
    EXPECT_EQ(entries[0].modified, "2024-03-01T12:34:56.000Z");
}

TEST(RecentlyUsed, WhatOthersSayStaysWordForWord) {
    const QUrl other = QUrl::fromLocalFile(QStringLiteral("/other.quillabrae"));
    const auto list = withUse(foreignList, use(other));
    ASSERT_TRUE(list);
    auto tokens = tokensOf(*list);
    const auto before = tokensOf(foreignList);
    // The new bookmark stands at the end, before the ends of the list and of the document.
    ASSERT_GT(tokens.size(), before.size());
    const auto added = static_cast<std::ptrdiff_t>(tokens.size() - before.size());
    tokens.erase(tokens.end() - 2 - added, tokens.end() - 2);
    EXPECT_EQ(tokens, before);
    // And goes again without a trace.
    const auto without = withoutUses(*list, other, us);
    ASSERT_TRUE(without);
    EXPECT_EQ(tokensOf(*without), before);
}

TEST(RecentlyUsed, AFileThatOthersUsedTooKeepsThem) {
    auto list = withUse(foreignList, use());
    ASSERT_TRUE(list);
    const auto entries = entriesOf(*list);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_THAT(entries[0].programs,
                ElementsAre("Files 2 'files %u'", "Quillabrae 1 'quillabrae %u'"));
    EXPECT_EQ(entries[0].type, "inode/directory");
    EXPECT_EQ(entries[0].added, "2023-03-03T00:00:00Z");
    EXPECT_TRUE(list->contains("<desc>a boat</desc>"));
    list = withoutUses(*list, boat, us);
    ASSERT_TRUE(list);
    EXPECT_THAT(entriesOf(*list)[0].programs, ElementsAre("Files 2 'files %u'"));
}

TEST(RecentlyUsed, BookmarksOfFewWordsAreFilledIn) {
    const QByteArray start = "<xbel version=\"1.0\"><bookmark href=\"" + boat.toEncoded() + "\"";
    for (const char* rest :
         {"/></xbel>", "><info/></bookmark></xbel>",
          "><info><metadata owner=\"http://freedesktop.org\"/></info></bookmark></xbel>"}) {
        const auto list = withUse(QByteArray(start).replace("&", "&amp;") + rest, use());
        ASSERT_TRUE(list) << rest;
        const auto entries = entriesOf(*list);
        ASSERT_EQ(entries.size(), 1U) << rest;
        EXPECT_THAT(entries[0].programs, ElementsAre("Quillabrae 1 'quillabrae %u'")) << rest;
        tokensOf(*list);
    }
}

TEST(RecentlyUsed, AListThatIsNotInOrderIsLeftAlone) {
    QByteArray torn = foreignList;
    torn.chop(40);
    for (const QByteArray& list :
         {torn, QByteArray("no list"), QByteArray("<html/>"), QByteArray("<xbel>"),
          QByteArray("\0\0", 2), QByteArray(foreignList) + "<again/>"}) {
        EXPECT_FALSE(withUse(list, use())) << list.toStdString();
        EXPECT_FALSE(withoutUses(list, boat, us));
    }
}

TEST(RecentlyUsed, NothingOfOursIsNothingToTakeBack) {
    EXPECT_FALSE(withoutUses(foreignList, boat, us));
    EXPECT_FALSE(withoutUses({}, boat, us));
}

class RecentDocumentsFile : public ::testing::Test {
protected:
    using Missing = XdgRecentDocuments::Missing;

    void write(const QByteArray& list) const {
        QFile stored(file);
        ASSERT_TRUE(stored.open(QIODevice::WriteOnly));
        stored.write(list);
    }
    QByteArray read() const {
        QFile stored(file);
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray();
    }
    void add(
        Missing missing, std::function<bool()> isWanted = [] { return true; }) const {
        XdgRecentDocuments(file, missing, std::move(isWanted)).add(boat);
    }
    QStringList names() const {
        return QDir(QFileInfo(file).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("share/recently-used.xbel"));
};

TEST_F(RecentDocumentsFile, IsMadeForThisUserAloneWhereADesktopWillHaveIt) {
    add(Missing::made);
    EXPECT_EQ(entriesOf(read()).size(), 1U);
    struct stat facts {};
    ASSERT_EQ(::stat(file.toLocal8Bit().constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("recently-used.xbel")));
}

TEST_F(RecentDocumentsFile, IsNotMadeWhereThereIsNoDesktop) {
    add(Missing::leftOut);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(RecentDocumentsFile, TakesUsesInTheirOrderAndKeepsItsRights) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    write(foreignList);
    ASSERT_TRUE(
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const auto rights = QFile::permissions(file);
    {
        XdgRecentDocuments documents(file, Missing::leftOut, [] { return true; });
        for (int i = 0; i < 5; ++i) documents.add(boat);
        documents.remove(boat);
        documents.add(boat);
    }
    EXPECT_THAT(entriesOf(read())[0].programs,
                ElementsAre("Files 2 'files %u'", "Quillabrae 1 'quillabrae %u'"));
    EXPECT_EQ(QFile::permissions(file), rights);
    EXPECT_THAT(names(), ElementsAre(QStringLiteral("recently-used.xbel")));
}

TEST_F(RecentDocumentsFile, StaysAsItIsWhenItIsNotInOrder) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    write("<xbel><bookmark");
    add(Missing::made);
    EXPECT_EQ(read(), QByteArray("<xbel><bookmark"));
}

TEST_F(RecentDocumentsFile, ThatIsNoFileIsNotWaitedFor) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    ASSERT_EQ(::mkfifo(file.toLocal8Bit().constData(), 0600), 0);
    add(Missing::made);
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QDir().mkpath(file));
    add(Missing::made);
    EXPECT_TRUE(QFileInfo(file).isDir());
}

TEST_F(RecentDocumentsFile, AUserWhoWantsNoneHasNone) {
    add(Missing::made, [] { return false; });
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(RecentDocumentsFile, IsInOrderWhileAnotherProgramWritesItToo) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
    write(foreignList);
    const QUrl others = QUrl::fromLocalFile(QStringLiteral("/theirs"));
    std::atomic<bool> stop = false;
    int written = 0;
    std::thread other([&] {
        while (!stop && written < 200) {
            auto theirs = use(others);
            theirs.program = QStringLiteral("Theirs");
            const auto list = withUse(read(), theirs);
            if (!list) continue;
            QSaveFile saved(file);
            if (!saved.open(QIODevice::WriteOnly)) continue;
            saved.write(*list);
            saved.commit();
            ++written;
        }
    });
    {
        XdgRecentDocuments documents(file, Missing::leftOut, [] { return true; });
        for (int i = 0; i < 20; ++i) documents.add(boat);
    }
    stop = true;
    other.join();
    EXPECT_EQ(entriesOf(read(), QUrl(QStringLiteral("file:///home/me/café.png"))).size(), 1U);
    tokensOf(read());
}

class RecentFilesWanted : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
        qputenv("PATH", folder.path().toLocal8Bit());
    }
    void TearDown() override {
        qputenv("PATH", m_path);
        if (m_configuration.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", m_configuration);
    }
    void write(const QString& name, const QByteArray& text) const {
        const QString path = folder.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QTemporaryDir folder;

private:
    QByteArray m_path = qgetenv("PATH");
    QByteArray m_configuration = qgetenv("XDG_CONFIG_HOME");
};

TEST_F(RecentFilesWanted, ByDefault) {
    EXPECT_TRUE(desktopNotesRecentFiles());
}

TEST_F(RecentFilesWanted, ExceptByThoseWhoToldTheirDesktopSo) {
    const struct {
        const char* file;
        const char* off;
        const char* on;
    } cases[] = {
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-recent-files-enabled=false\n",
         "[Settings]\ngtk-recent-files-enabled=true\n"},
        {"gtk-4.0/settings.ini", "[Settings]\ngtk-recent-files-enabled=0\n", "[Settings]\n"},
        {"kdeglobals", "[RecentDocuments]\nUseRecent=false\n", "[RecentDocuments]\n"},
        {"gsettings",
         "#!/bin/sh\n[ \"$*\" = 'get org.gnome.desktop.privacy "
         "remember-recent-files' ] && echo false\n",
         "#!/bin/sh\necho true\n"},
    };
    for (const auto& entry : cases) {
        write(QString::fromLatin1(entry.file), entry.off);
        EXPECT_FALSE(desktopNotesRecentFiles()) << entry.file;
        write(QString::fromLatin1(entry.file), entry.on);
        EXPECT_TRUE(desktopNotesRecentFiles()) << entry.file;
    }
}

} // namespace
} // namespace quillabrae::platform
