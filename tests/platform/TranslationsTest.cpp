// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Translations.h"
#include "support/PseudoLanguages.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace quillabrae::platform {
namespace {

QString steps(int count) {
    return QCoreApplication::translate("Settings", "%n steps", nullptr, count);
}

TEST(Translations, EnglishHasItsPluralForms) {
    const Translations english({QStringLiteral("en-GB"), QStringLiteral("en")});
    EXPECT_EQ(english.language(), QStringLiteral("en"));
    EXPECT_EQ(steps(1), QStringLiteral("1 step"));
    EXPECT_EQ(steps(2), QStringLiteral("2 steps"));
    EXPECT_EQ(steps(0), QStringLiteral("0 steps"));
}

TEST(Translations, AnUnknownLanguageIsEnglish) {
    const Translations english({QStringLiteral("tlh"), QString(), QStringLiteral("_-_")});
    EXPECT_EQ(english.language(), QStringLiteral("en"));
    EXPECT_EQ(steps(1), QStringLiteral("1 step"));
}

TEST(Translations, TheFirstLanguageThatIsKnownIsSpoken) {
    const Translations pseudo(
        {QStringLiteral("tlh-Latn-US"), QStringLiteral("en-XA-nobody"), QStringLiteral("en")});
    EXPECT_EQ(pseudo.language(), QStringLiteral("en_XA"));
    EXPECT_TRUE(steps(7).startsWith(QStringLiteral("[7 šţéþš"))) << qPrintable(steps(7));
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::LeftToRight);
}

TEST(Translations, LayoutsRunAsTheLanguageDoes) {
    {
        const Translations pseudo({rightToLeftLanguage()});
        EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    }
    EXPECT_EQ(QGuiApplication::layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(steps(7), QStringLiteral("7 steps"));
}

} // namespace
} // namespace quillabrae::platform
