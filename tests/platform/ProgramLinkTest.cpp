// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"
#include "platform/ProgramInstance.h"
#include "platform/ProgramLink.h"

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

const QString callback = QStringLiteral("quillabrae://auth/callback?code=a%2Bb&state=s");

QList<QUrl> files(const QStringList& arguments) {
    return filesFromArguments(arguments, QStringLiteral("/home/me"));
}

TEST(ProgramLinks, ALinkAmongTheArgumentsIsNoFile) {
    const QStringList arguments{QStringLiteral("a.png"), callback, QStringLiteral("b.png")};
    EXPECT_EQ(linksFromArguments(arguments), QList<QUrl>{QUrl(callback)});
    EXPECT_EQ(files(arguments),
              (QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/home/me/a.png")),
                           QUrl::fromLocalFile(QStringLiteral("/home/me/b.png"))}));
}

TEST(ProgramLinks, WhatOnlyBeginsLikeALinkIsNeitherLinkNorFile) {
    for (const char* argument : {"quillabrae:", "QUILLABRAE://auth/callback", "quillabrae:/%zz",
                                 "quillabrae://auth/a b", "quillabrae:x.png"}) {
        const QStringList arguments{QString::fromLatin1(argument)};
        EXPECT_TRUE(files(arguments).isEmpty()) << argument;
        for (const QUrl& link : linksFromArguments(arguments))
            EXPECT_EQ(link.scheme(), programLinkScheme) << argument;
    }
    EXPECT_TRUE(linksFromArguments({QStringLiteral("quillabrae:/%zz")}).isEmpty());
    EXPECT_TRUE(linksFromArguments({QStringLiteral("quillabrae://auth/a b")}).isEmpty());
}

TEST(ProgramLinks, OtherAddressesAreNoLinks) {
    EXPECT_TRUE(linksFromArguments({QStringLiteral("https://example.org"), QStringLiteral("a.png"),
                                    QStringLiteral("file:///a"), QString(),
                                    QStringLiteral("quillabrae"), QStringLiteral("./quillabrae:x")})
                    .isEmpty());
    EXPECT_EQ(files({QStringLiteral("./quillabrae:x")}),
              QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/home/me/quillabrae:x"))});
}

TEST(ProgramLinks, ALinkOfAnyLengthIsNotTaken) {
    const QString start = QStringLiteral("quillabrae://auth/callback?code=");
    const QString longest = start + QString(maximumProgramLink - start.size(), u'c');
    EXPECT_EQ(linksFromArguments({longest}).size(), 1);
    EXPECT_TRUE(linksFromArguments({longest + u'c'}).isEmpty());
    EXPECT_TRUE(HandOver::read(HandOver::message({QUrl(longest + u'c')})).links.isEmpty());
}

TEST(ProgramLinks, AreHandedOverBesideFiles) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/tmp/a.png"));
    const HandOver::Reading reading = HandOver::read(HandOver::message({QUrl(callback), file}));
    EXPECT_EQ(reading.progress, HandOver::Progress::complete);
    EXPECT_EQ(reading.links, QList<QUrl>{QUrl(callback)});
    EXPECT_EQ(reading.links.front().toEncoded(), callback.toLatin1());
    EXPECT_EQ(reading.files, QList<QUrl>{file});
}

} // namespace
} // namespace quillabrae::platform
