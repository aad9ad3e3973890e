// SPDX-License-Identifier: GPL-3.0-or-later
#include "services/ReleaseVersion.h"

#include <gtest/gtest.h>

namespace quillabrae::services {
namespace {

ReleaseVersion version(const char* text) {
    return ReleaseVersion::from(QString::fromLatin1(text)).value();
}

TEST(ReleaseVersion, IsComparedNumberByNumber) {
    const std::vector<const char*> ascending{"0",     "0.0.1", "0.1",  "0.9", "0.10",     "1",
                                             "1.0.1", "1.2",   "1.10", "2.0", "999999999"};
    for (std::size_t i = 0; i + 1 < ascending.size(); ++i)
        EXPECT_LT(version(ascending[i]), version(ascending[i + 1])) << ascending[i];
}

TEST(ReleaseVersion, MissingNumbersAndLeadingZerosCountForNothing) {
    EXPECT_EQ(version("1"), version("1.0.0"));
    EXPECT_EQ(version("1.02"), version("1.2"));
    EXPECT_EQ(version("0"), version("0.0"));
}

TEST(ReleaseVersion, IsNothingButNumbersAndPoints) {
    for (const char* text :
         {"", ".", "1.", ".1", "1..2", "1.2b", "v1", "1,2", " 1", "1 ", "-1", "+1", "1.2-3",
          "unknown", "1234567890", "1.1.1.1.1.1.1.1.1", "0x1", "1e3"})
        EXPECT_FALSE(ReleaseVersion::from(QString::fromLatin1(text))) << text;
    // Digits of other scripts are no digits here.
    EXPECT_FALSE(ReleaseVersion::from(QStringLiteral("١.٢")));
}

} // namespace
} // namespace quillabrae::services
