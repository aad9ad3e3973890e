// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/VirtualTime.h"

#include <gmock/gmock.h>

#include <vector>

namespace quillabrae::replay {
namespace {

using testing::ElementsAre;

TEST(VirtualTime, TasksRunWhenTheirInstantHasCome) {
    VirtualTime time;
    std::vector<int> ran;
    time.schedule(0.2, [&] { ran.push_back(2); });
    time.schedule(0.1, [&] { ran.push_back(1); });
    time.advance(0.05);
    EXPECT_THAT(ran, ElementsAre());
    time.advance(0.05);
    EXPECT_THAT(ran, ElementsAre(1));
    time.advance(1.0);
    EXPECT_THAT(ran, ElementsAre(1, 2));
    EXPECT_DOUBLE_EQ(time.now(), 1.1);
}

TEST(VirtualTime, TasksOfOneInstantRunInTheOrderOfAsking) {
    VirtualTime time;
    std::vector<int> ran;
    for (int i = 0; i < 4; ++i) time.schedule(0.1, [&ran, i] { ran.push_back(i); });
    time.advance(0.1);
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3));
}

TEST(VirtualTime, ATaskSeesItsOwnInstantAndMayAskForMore) {
    VirtualTime time;
    std::vector<double> instants;
    time.schedule(0.5, [&] {
        instants.push_back(time.now());
        time.schedule(0.25, [&] { instants.push_back(time.now()); });
        time.schedule(2.0, [&] { instants.push_back(-1.0); });
    });
    time.advance(1.0);
    EXPECT_THAT(instants, ElementsAre(0.5, 0.75));
    EXPECT_DOUBLE_EQ(time.now(), 1.0);
}

TEST(VirtualTime, ACancelledTaskDoesNotRun) {
    VirtualTime time;
    bool hasRun = false;
    const auto task = time.schedule(0.1, [&] { hasRun = true; });
    time.cancel(task);
    time.advance(1.0);
    EXPECT_FALSE(hasRun);
}

} // namespace
} // namespace quillabrae::replay
