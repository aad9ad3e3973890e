// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"
#include "platform/ProgramLink.h"
#include "platform/StartRequest.h"

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

const QString callback = QStringLiteral("quillabrae://auth/callback?code=a%2Bb&state=s");

StartRequest asked(const QStringList& arguments) {
    return sortedRequest(urlsFromArguments(arguments, QStringLiteral("/home/me")));
}
QList<QUrl> files(const QStringList& arguments) {
    return asked(arguments).files;
}
QList<QUrl> links(const QStringList& arguments) {
    return asked(arguments).links;
}

TEST(ProgramLinks, ALinkAmongTheArgumentsIsNoFile) {
    const QStringList arguments{QStringLiteral("a.png"), callback, QStringLiteral("b.png")};
    EXPECT_EQ(links(arguments), QList<QUrl>{QUrl(callback)});
    EXPECT_EQ(files(arguments),
              (QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/home/me/a.png")),
                           QUrl::fromLocalFile(QStringLiteral("/home/me/b.png"))}));
}

TEST(ProgramLinks, WhatOnlyBeginsLikeALinkIsNeitherLinkNorFile) {
    for (const char* argument : {"quillabrae:", "QUILLABRAE://auth/callback", "quillabrae:/%zz",
                                 "quillabrae://auth/a b", "quillabrae:x.png"}) {
        const QStringList arguments{QString::fromLatin1(argument)};
        EXPECT_TRUE(files(arguments).isEmpty()) << argument;
        for (const QUrl& link : links(arguments))
            EXPECT_EQ(link.scheme(), programLinkScheme) << argument;
    }
    EXPECT_TRUE(links({QStringLiteral("quillabrae:/%zz")}).isEmpty());
    EXPECT_TRUE(links({QStringLiteral("quillabrae://auth/a b")}).isEmpty());
}

TEST(ProgramLinks, OtherAddressesAreNoLinks) {
    EXPECT_TRUE(links({QStringLiteral("https://example.org"), QStringLiteral("a.png"),
                       QStringLiteral("file:///a"), QString(), QStringLiteral("quillabrae"),
                       QStringLiteral("./quillabrae:x")})
                    .isEmpty());
    EXPECT_EQ(files({QStringLiteral("./quillabrae:x")}),
              QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/home/me/quillabrae:x"))});
}

TEST(ProgramLinks, ALinkOfAnyLengthIsNotTaken) {
    const QString start = QStringLiteral("quillabrae://auth/callback?code=");
    const QString longest = start + QString(maximumProgramLink - start.size(), u'c');
    EXPECT_EQ(links({longest}).size(), 1);
    EXPECT_TRUE(links({longest + u'c'}).isEmpty());
    EXPECT_TRUE(
        HandOver::read(HandOver::message({{}, {QUrl(longest + u'c')}})).request.links.isEmpty());
}

TEST(ProgramLinks, AreHandedOverBesideFiles) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"));
    const HandOver::Reading reading = HandOver::read(HandOver::message({{file}, {QUrl(callback)}}));
    EXPECT_EQ(reading.progress, HandOver::Progress::complete);
    EXPECT_EQ(reading.request.links, QList<QUrl>{QUrl(callback)});
    EXPECT_EQ(reading.request.links.front().toEncoded(), callback.toLatin1());
    EXPECT_EQ(reading.request.files, QList<QUrl>{file});
}

} // namespace
} // namespace quillabrae::platform
