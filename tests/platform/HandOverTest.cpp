// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HandOver.h"

#include <gtest/gtest.h>

namespace quillabrae::platform::HandOver {
namespace {

const StartRequest twoFiles{{
    QUrl::fromLocalFile(QStringLiteral("/home/me/line\nbreak & 100%.png")),
    QUrl::fromLocalFile(QStringLiteral("/tmp/é ö.quillabrae")),
}};

TEST(HandOver, FilesOfEveryNameArriveAsTheyWere) {
    const Reading reading = read(message(twoFiles));
    EXPECT_EQ(reading.progress, Progress::complete);
    EXPECT_EQ(reading.request, twoFiles);
}

TEST(HandOver, AMessageWithoutFilesIsComplete) {
    const Reading reading = read(message({}));
    EXPECT_EQ(reading.progress, Progress::complete);
    EXPECT_EQ(reading.request, StartRequest());
}

TEST(HandOver, EveryBeginningOfAMessageIsIncomplete) {
    const QByteArray whole = message(twoFiles);
    for (qsizetype size = 0; size < whole.size(); ++size)
        ASSERT_EQ(read(whole.first(size)).progress, Progress::incomplete) << size;
}

TEST(HandOver, AnotherProtocolIsMalformedFromItsFirstByte) {
    EXPECT_EQ(read("G").progress, Progress::malformed);
    EXPECT_EQ(read("GET / HTTP/1.1\r\n\r\n").progress, Progress::malformed);
}

TEST(HandOver, ALengthBeyondTheLimitIsMalformedBeforeThePayloadArrives) {
    QByteArray header = message({});
    header.replace(header.size() - 4, 4, QByteArray("\xff\xff\xff\xff", 4));
    EXPECT_EQ(read(header).progress, Progress::malformed);
}

TEST(HandOver, MoreLinesThanAnybodyHasFilesAreMalformed) {
    StartRequest request;
    request.files = QList<QUrl>(maximumUrlCount, twoFiles.files[0]);
    request.activationToken = "editor_TIME123";
    EXPECT_EQ(read(message(request)).request, request);
    request.files.append(twoFiles.files[1]);
    EXPECT_EQ(read(message(request)).progress, Progress::malformed);
}

TEST(HandOver, LinksActionAndTokenArriveToo) {
    StartRequest request = twoFiles;
    request.links = {QUrl(QStringLiteral("quillabrae://auth/callback?code=a%20b&state=c"))};
    request.action = QStringLiteral("new-project");
    request.activationToken = "editor_TIME123";
    EXPECT_EQ(read(message(request)).request, request);
}

TEST(HandOver, WhatIsOfNoKnownKindIsPassedOver) {
    StartRequest hostile{{QUrl(QStringLiteral("https://example.org/a.png")), twoFiles.files[1],
                          QUrl(QStringLiteral("file:relative.png")), QUrl()}};
    hostile.activationToken = "two words";
    EXPECT_EQ(read(message(hostile)).request, StartRequest{{twoFiles.files[1]}});
}

} // namespace
} // namespace quillabrae::platform::HandOver
