// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/ProgramIdentity.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

class ProgramIdentityTest : public testing::Test {
protected:
    ~ProgramIdentityTest() override { QLocale::setDefault(m_locale); }

private:
    QLocale m_locale;
};

TEST_F(ProgramIdentityTest, SaysWhatItIsGiven) {
    const ProgramIdentity identity = identityOfThisProgram(
        QStringLiteral("1.2.3"), QStringLiteral("45"), QStringLiteral("beta"));

    EXPECT_EQ(identity.version, QStringLiteral("1.2.3"));
    EXPECT_EQ(identity.build, QStringLiteral("45"));
    EXPECT_EQ(identity.channel, QStringLiteral("beta"));
    EXPECT_FALSE(identity.operatingSystemVersion.isEmpty());
}

TEST_F(ProgramIdentityTest, OwnsUpToWhatItDoesNotKnow) {
    const ProgramIdentity identity = identityOfThisProgram({}, {}, {});

    EXPECT_EQ(identity.version, QStringLiteral("unknown"));
    EXPECT_EQ(identity.build, QStringLiteral("unknown"));
    EXPECT_EQ(identity.channel, QStringLiteral("release"));
}

TEST_F(ProgramIdentityTest, WritesTheLanguageWithAHyphen) {
    QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil));

    EXPECT_EQ(identityOfThisProgram({}, {}, {}).language, QStringLiteral("pt-BR"));
}

} // namespace
} // namespace quillabrae::services
