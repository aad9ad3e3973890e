// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/panels/PanelPlacement.h"

#include <gtest/gtest.h>

#include <random>

namespace quillabrae::shell {
namespace {

constexpr QSize room{1000, 600};
constexpr QSize panel{200, 150};

TEST(PanelPlacement, StandsAtItsCorner) {
    const QPoint margin(panelMargin, panelMargin);
    EXPECT_EQ(panelRect({PanelCorner::topLeft, margin}, panel, room), QRect(12, 12, 200, 150));
    EXPECT_EQ(panelRect({PanelCorner::topRight, margin}, panel, room), QRect(788, 12, 200, 150));
    EXPECT_EQ(panelRect({PanelCorner::bottomLeft, margin}, panel, room), QRect(12, 438, 200, 150));
    EXPECT_EQ(panelRect({PanelCorner::bottomRight, margin}, panel, room),
              QRect(788, 438, 200, 150));
}

TEST(PanelPlacement, KeepsItsDistanceFromTheNearestCornerWhenTheRoomChanges) {
    const PanelPlace place = panelPlace(QRect(700, 400, 200, 150), room);
    EXPECT_EQ(place, (PanelPlace{PanelCorner::bottomRight, {100, 50}}));
    EXPECT_EQ(panelRect(place, panel, {1400, 900}), QRect(1100, 700, 200, 150));
}

TEST(PanelPlacement, GrowsAwayFromItsCorner) {
    const PanelPlace place = panelPlace(QRect(12, 438, 200, 150), room);
    EXPECT_EQ(panelRect(place, {400, 30}, room), QRect(12, 558, 400, 30));
}

TEST(PanelPlacement, ShowsTheTopLeftOfAPanelThatIsLargerThanTheRoom) {
    EXPECT_EQ(panelRect({PanelCorner::bottomRight, {12, 12}}, {1200, 700}, room).topLeft(),
              QPoint(0, 0));
}

TEST(PanelPlacement, IsAlwaysInsideAndComesBackWhereItWas) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> anywhere(-2000, 3000);
    for (int round = 0; round < 2000; ++round) {
        const QRect rect = insideRoom({QPoint(anywhere(random), anywhere(random)), panel}, room);
        EXPECT_TRUE(QRect(QPoint(), room).contains(rect));
        EXPECT_EQ(panelRect(panelPlace(rect, room), panel, room), rect);
        const QSize smaller(700, 300);
        EXPECT_TRUE(
            QRect(QPoint(), smaller).contains(panelRect(panelPlace(rect, room), panel, smaller)));
    }
}

} // namespace
} // namespace quillabrae::shell
