// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ApplicationService.h"
#include "platform/ProgramLink.h"
#include "platform/StartRequest.h"

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

const QUrl photo = QUrl::fromLocalFile(QStringLiteral("/home/me/photo.jpg"));
const QUrl callback(QStringLiteral("quillabrae://auth/callback?code=1"));
const QString tokenKey = QStringLiteral("activation-token");
const QString idKey = QStringLiteral("desktop-startup-id");

StartRequest fromArgument(const QString& argument) {
    return sortedRequest(urlsFromArguments({argument}, QStringLiteral("/home/me")));
}

TEST(StartRequest, ArgumentsAreFilesByPathOrUrl) {
    const auto file = [](const QString& path) { return StartRequest{{QUrl::fromLocalFile(path)}}; };
    EXPECT_EQ(fromArgument(QStringLiteral("a 100%.png")),
              file(QStringLiteral("/home/me/a 100%.png")));
    EXPECT_EQ(fromArgument(QStringLiteral("../b#1.png")), file(QStringLiteral("/home/b#1.png")));
    EXPECT_EQ(fromArgument(QStringLiteral("c.quillabrae/")),
              file(QStringLiteral("/home/me/c.quillabrae")));
    EXPECT_EQ(fromArgument(QStringLiteral("/d.png")), file(QStringLiteral("/d.png")));
    EXPECT_EQ(fromArgument(QStringLiteral("file:///e%20f.png")), file(QStringLiteral("/e f.png")));
    EXPECT_EQ(fromArgument(QStringLiteral("12:30.png")),
              file(QStringLiteral("/home/me/12:30.png")));
    EXPECT_FALSE(fromArgument(QString()).asksForMore());
}

TEST(StartRequest, ArgumentsOfTheProgramsOwnSchemeAreLinksOrActions) {
    EXPECT_EQ(fromArgument(callback.toString()), StartRequest{.links = {callback}});
    EXPECT_EQ(fromArgument(QStringLiteral("quillabrae://action/new-project")),
              StartRequest{.action = QStringLiteral("new-project")});
}

TEST(StartRequest, EveryKindIsSortedToItsOwn) {
    const StartRequest request =
        sortedRequest({callback, photo, actionUrl(QStringLiteral("open-file"))});
    EXPECT_EQ(request, (StartRequest{{photo}, {callback}, QStringLiteral("open-file")}));
}

TEST(StartRequest, AResourceOfTheProgramIsNoFile) {
    EXPECT_FALSE(sortedRequest({QUrl(QStringLiteral("file::/icons/a.svg"), QUrl::StrictMode),
                                QUrl(QStringLiteral("file:://ctaden-n-q"))})
                     .asksForMore());
}

TEST(StartRequest, AFileIsOneOfThisMachine) {
    const StartRequest request =
        sortedRequest({QUrl(QStringLiteral("file://localhost/home/me/photo.jpg")),
                       QUrl(QStringLiteral("file://localhost//home/me/photo.jpg")),
                       QUrl(QStringLiteral("file:////home/me/photo.jpg")),
                       QUrl(QStringLiteral("file://server/home/me/photo.jpg"))});
    EXPECT_EQ(request, (StartRequest{{photo, photo, photo}}));
}

TEST(StartRequest, WhatIsOfNoKindIsLeftOut) {
    const QString endless(maximumProgramLink, u'a');
    const StartRequest request = sortedRequest(
        {QUrl(), QUrl(QStringLiteral("https://example.org/a.png")), QUrl(QStringLiteral("a.png")),
         QUrl(QStringLiteral("quillabrae://auth/") + endless),
         QUrl(QStringLiteral("quillabrae://action/")),
         QUrl(QStringLiteral("quillabrae://action/../quit")),
         QUrl(QStringLiteral("quillabrae://action/Quit%00")),
         QUrl(QStringLiteral("quillabrae://action/") + endless.left(maximumActionLength + 1))});
    EXPECT_EQ(request, StartRequest());
}

TEST(StartRequest, ATokenIsShortPrintableAscii) {
    EXPECT_EQ(checkedToken("gnome-shell/Files/2041-1_TIME123"), "gnome-shell/Files/2041-1_TIME123");
    for (const QByteArray& bad :
         {QByteArray("two words"), QByteArray("a\nb"), QByteArray("a\0b", 3),
          QByteArray("\xc3\xa9"), QByteArray(maximumTokenLength + 1, 'a')})
        EXPECT_TRUE(checkedToken(bad).isEmpty()) << bad.constData();
}

TEST(StartRequest, ATokenIsInTheEnvironmentOnlyWhileWindowsMayUseIt) {
    {
        const ActivationLeave leave("abc");
        EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "abc");
        EXPECT_EQ(qgetenv("DESKTOP_STARTUP_ID"), "abc");
        EXPECT_EQ(activationTokenOfThisStart(), "abc");
    }
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
}

TEST(BusCalls, SayWhatIsAskedForAndWithWhichToken) {
    EXPECT_EQ(ApplicationService::activation({{tokenKey, QStringLiteral("abc")}}),
              StartRequest{.activationToken = "abc"});
    EXPECT_EQ(ApplicationService::opening({photo.toString(), callback.toString()},
                                          {{idKey, QStringLiteral("def")}}),
              (StartRequest{{photo}, {callback}, {}, "def"}));
    EXPECT_EQ(ApplicationService::actionCall(QStringLiteral("new-project"), {}),
              StartRequest{.action = QStringLiteral("new-project")});
}

TEST(BusCalls, TakeNoTokenOfAnotherTypeOrForm) {
    for (const QVariant& bad :
         {QVariant(5), QVariant(QByteArray("abc")), QVariant(QStringLiteral("a b")),
          QVariant(QString(100'000, u'a')), QVariant(QVariantMap{{tokenKey, tokenKey}})})
        EXPECT_EQ(ApplicationService::activation({{tokenKey, bad}, {QStringLiteral("x"), bad}}),
                  StartRequest());
    EXPECT_EQ(ApplicationService::activation(
                  {{tokenKey, QStringLiteral("a b")}, {idKey, QStringLiteral("def")}}),
              StartRequest{.activationToken = "def"});
}

TEST(BusCalls, BeyondTheBoundsAreRefusedWhole) {
    const QString uri = photo.toString();
    EXPECT_FALSE(ApplicationService::opening(QStringList(maximumUrlCount + 1, QString()), {}));
    EXPECT_FALSE(ApplicationService::opening(
        {uri, QString(ApplicationService::maximumUrlLength, u'a')}, {}));
    EXPECT_EQ(ApplicationService::actionCall(QString(100'000, u'a'), {}), StartRequest());
}

} // namespace
} // namespace quillabrae::platform
