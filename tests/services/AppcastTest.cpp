// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/Appcast.h"

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

const QByteArray signature = QByteArray(64, 's').toBase64();

/// The attributes of an enclosure that lacks nothing, each replaced or removed at will.
using Attributes = std::map<QByteArray, QByteArray>;
Attributes whole(const QByteArray& version = "1.1") {
    return {{"url", "https://example.org/q.deb"},
            {"length", "123"},
            {"u:edSignature", signature},
            {"u:version", version}};
}
Attributes with(const QByteArray& name, const QByteArray& value) {
    Attributes attributes = whole();
    attributes[name] = value;
    return attributes;
}
Attributes without(const QByteArray& name) {
    Attributes attributes = whole();
    attributes.erase(name);
    return attributes;
}

QByteArray item(const Attributes& attributes, const QByteArray& elements = {}) {
    QByteArray text = "<item><title>News</title>" + elements + "<enclosure";
    for (const auto& [name, value] : attributes) text += ' ' + name + "=\"" + value + '"';
    return text + "/></item>";
}

QByteArray feed(const QByteArray& items) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:u=\"https://example.org/update\"><channel>"
           "<title>Quillabrae</title>" +
           items + "</channel></rss>\n";
}

std::vector<AppcastItem> items(const QByteArray& text) {
    return readAppcast(feed(text)).value_or(std::vector<AppcastItem>());
}

QString newest(const QByteArray& text, const char* current) {
    const auto update =
        newestUpdate(items(text), *ReleaseVersion::from(QString::fromLatin1(current)));
    return update ? update->displayVersionString : QString();
}

TEST(Appcast, ReadsWhatAnItemSays) {
    const auto read = items(item(whole("1.2.3")));
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read.front().version, *ReleaseVersion::from(u"1.2.3"));
    EXPECT_EQ(read.front().displayVersionString, QStringLiteral("1.2.3"));
    EXPECT_EQ(read.front().url, QUrl(QStringLiteral("https://example.org/q.deb")));
    EXPECT_EQ(read.front().length, 123);
    EXPECT_EQ(read.front().signature, QByteArray(64, 's'));
}

TEST(Appcast, TheVersionMayBeAnElementOfTheItem) {
    const auto read = items(item(without("u:version"),
                                 "<u:version>1.4</u:version>"
                                 "<u:shortVersionString> 1.4 \"Gull\" </u:shortVersionString>"));
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read.front().version, *ReleaseVersion::from(u"1.4"));
    EXPECT_EQ(read.front().displayVersionString, QStringLiteral("1.4 \"Gull\""));
}

TEST(Appcast, NamesCountWhateverTheirNamespaceIsCalled) {
    QByteArray text = feed(item(whole()));
    text.replace("u:", "other:");
    EXPECT_FALSE(readAppcast(text)) << "the name is not declared";
    text.replace("xmlns:u", "xmlns:other");
    ASSERT_TRUE(readAppcast(text));
    EXPECT_EQ(readAppcast(text)->size(), 1U);
    text.replace("other:", "");
    text.replace("xmlns:other", "xmlns");
    ASSERT_TRUE(readAppcast(text));
    EXPECT_EQ(readAppcast(text)->size(), 1U);
}

TEST(Appcast, AnItemThatLacksOrMistellsSomethingIsPassedOver) {
    const std::vector<Attributes> unusable{
        {},
        without("url"),
        without("length"),
        without("u:edSignature"),
        without("u:version"),
        with("url", ""),
        with("url", "http://example.org/q.deb"),
        with("url", "file:///etc/passwd"),
        with("url", "q.deb"),
        with("url", "https:///q.deb"),
        with("length", "0"),
        with("length", "-1"),
        with("length", "1e3"),
        with("length", "268435457"),
        with("length", "99999999999999999999"),
        with("u:edSignature", "AAAA"),
        with("u:edSignature", signature + "AAAA"),
        with("u:edSignature", "*" + signature),
        with("u:version", "latest"),
        with("u:version", ""),
        with("u:os", "macos"),
        with("u:os", "windows"),
    };
    for (const Attributes& attributes : unusable) {
        const auto read = items(item(attributes) + item(whole("0.5")));
        ASSERT_EQ(read.size(), 1U) << item(attributes).constData();
        EXPECT_EQ(read.front().displayVersionString, QStringLiteral("0.5"));
    }
    EXPECT_EQ(items(item(with("u:os", "linux"))).size(), 1U);
    EXPECT_EQ(items(item(with("length", "268435456"))).size(), 1U);
}

TEST(Appcast, WhatIsShownIsShortAndPlain) {
    for (const QByteArray& shown :
         {QByteArray(65, 'x'), QByteArray("two&#10;lines"), QByteArray("")})
        EXPECT_EQ(items(item(with("u:shortVersionString", shown))).front().displayVersionString,
                  QStringLiteral("1.1"));
    EXPECT_EQ(items(item(with("u:shortVersionString", "1.1 &amp; &lt;b&gt;")))
                  .front()
                  .displayVersionString,
              QStringLiteral("1.1 & <b>"));
}

TEST(Appcast, TheNewestOfSeveralCountsWhereItIsNewer) {
    const QByteArray several = item(whole("1.2")) + item(whole("1.10")) + item(whole("1.9"));
    EXPECT_EQ(newest(several, "1.0"), QStringLiteral("1.10"));
    EXPECT_EQ(newest(several, "1.9"), QStringLiteral("1.10"));
    EXPECT_EQ(newest(several, "1.10"), QString());
    EXPECT_EQ(newest(several, "1.10.0"), QString());
    EXPECT_EQ(newest(several, "2"), QString());
    EXPECT_EQ(newest({}, "1.0"), QString());
}

TEST(Appcast, OfSeveralAlikeTheFirstCounts) {
    const auto read = items(item(with("length", "1")) + item(with("length", "2")));
    EXPECT_EQ(newestUpdate(read, *ReleaseVersion::from(u"1"))->length, 1);
}

TEST(Appcast, WhatIsNoFeedIsNone) {
    for (const char* text :
         {"", "   ", "not xml", "<html><body/></html>", "<rss", "<rss><channel>",
          "<rss><channel></rss></channel>", "<rss/><rss/>", "<rss></rss>trailing", "\xff\xfe<\x01",
          "<rss>&unknown;</rss>", "<rss><channel>\xff</channel></rss>"})
        EXPECT_FALSE(readAppcast(text)) << text;
    EXPECT_TRUE(readAppcast("<rss/>")->empty());
    EXPECT_TRUE(readAppcast("<rss><other><item/></other></rss>")->empty());
}

TEST(Appcast, ADocumentTypeIsRefused) {
    for (const char* type :
         {"<!DOCTYPE rss>", "<!DOCTYPE rss SYSTEM \"file:///etc/passwd\">",
          "<!DOCTYPE rss [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>",
          "<!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">"
          "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;\">"
          "<!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;\">]>"})
        EXPECT_FALSE(readAppcast(type + QByteArray("<rss><channel><title>&e;</title>") +
                                 item(whole()) + "</channel></rss>"))
            << type;
}

TEST(Appcast, AMegabyteIsTheMost) {
    const QByteArray bare = feed(item(whole()) + "<description></description>");
    const auto padded = [&](qsizetype size) {
        QByteArray text = bare;
        return text.insert(text.indexOf("</description>"), QByteArray(size - bare.size(), 'x'));
    };
    EXPECT_EQ(readAppcast(padded(maximumFeedBytes))->size(), 1U);
    EXPECT_FALSE(readAppcast(padded(maximumFeedBytes + 1)));
}

TEST(Appcast, DepthAndNumberHarmNobody) {
    QByteArray deep;
    for (int i = 0; i < 100'000; ++i) deep += "<a>";
    EXPECT_FALSE(readAppcast("<rss><channel>" + deep));
    QByteArray many;
    for (int i = 0; i < 3000; ++i) many += item(whole());
    EXPECT_LE(items(many).size(), 1000U);
}

} // namespace
} // namespace quillabrae::services
