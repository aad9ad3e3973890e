// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LastCrashReport.h"
#include "shell/app/CrashOffer.h"
#include "shell/dialogs/Alert.h"

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

struct KeptReport final : platform::LastCrashReport {
    std::optional<QString> text() const override { return report; }
    void forget() override { report.reset(); }

    std::optional<QString> report = QStringLiteral("signal: SIGSEGV\n");
};

class CrashOfferTest : public ::testing::Test {
protected:
    KeptReport crash;
    int answer = 0;
    int asked = 0;
    int shown = 0;
    CrashOffer offer{crash,
                     {.ask =
                          [this](const Alert&) {
                              ++asked;
                              return answer;
                          },
                      .showFeedback = [this] { ++shown; }}};
};

TEST_F(CrashOfferTest, AsksNothingWithoutAReport) {
    crash.forget();
    offer.offer();
    EXPECT_EQ(asked + shown, 0);
    EXPECT_EQ(offer.draft(), QString());
}

TEST_F(CrashOfferTest, PutsAReportThatIsWantedInTheForm) {
    EXPECT_EQ(offer.draft(), QString()) << "nobody has asked for it yet";
    offer.offer();
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(offer.draft(), QStringLiteral("\n\nsignal: SIGSEGV\n"));
}

TEST_F(CrashOfferTest, KeepsTheReportUntilItIsSent) {
    offer.offer();
    EXPECT_TRUE(crash.report);
    offer.feedbackSent();
    EXPECT_FALSE(crash.report);
    EXPECT_EQ(offer.draft(), QString());
}

TEST_F(CrashOfferTest, ForgetsAReportThatIsNotWanted) {
    answer = 1;
    offer.offer();
    EXPECT_EQ(shown, 0);
    EXPECT_FALSE(crash.report);
}

TEST_F(CrashOfferTest, LeavesTheReportAloneWhenOtherFeedbackIsSent) {
    offer.feedbackSent();
    EXPECT_TRUE(crash.report);
}

} // namespace
} // namespace quillabrae::shell
