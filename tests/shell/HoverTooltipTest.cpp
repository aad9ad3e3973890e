// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/HoverTooltip.h"
#include "shell/controls/TooltipBubble.h"
#include "store/StoreTest.h"

#include <QEnterEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

class HoverTooltipTest : public testing::Test {
protected:
    HoverTooltipTest() {
        window.resize(300, 200);
        control.setGeometry(10, 10, 40, 20);
        window.show();
    }

    void enter() {
        QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QCoreApplication::sendEvent(&control, &event);
    }
    void leave() {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&control, &event);
    }

    QWidget window;
    QWidget control{&window};
    HoverTooltip* tooltip =
        new HoverTooltip(&control, {QStringLiteral("Brush"), QStringLiteral("Paints.")},
                         HoverTooltipPlacement::trailing);
};

TEST_F(HoverTooltipTest, ShowsAfterTwoSecondsOfRestAndNotBefore) {
    enter();
    QTest::qWait(1700);
    EXPECT_FALSE(tooltip->isShowing());
    EXPECT_TRUE(QTest::qWaitFor([this] { return tooltip->isShowing(); }, 2000));
    leave();
    EXPECT_FALSE(tooltip->isShowing());
}

TEST_F(HoverTooltipTest, NeverShowsWhenThePointerLeavesEarlier) {
    enter();
    QTest::qWait(200);
    leave();
    QTest::qWait(2200);
    EXPECT_FALSE(tooltip->isShowing());
}

TEST_F(HoverTooltipTest, IsAlsoTheAccessibleText) {
    EXPECT_EQ(control.accessibleName(), QStringLiteral("Brush"));
    EXPECT_EQ(control.accessibleDescription(), QStringLiteral("Paints."));
}

TEST_F(HoverTooltipTest, StandsBesideItsControlAndInsideTheWindow) {
    TooltipBubble bubble({QStringLiteral("Brush"), {}}, &window);
    const QRect anchor = control.geometry();
    bubble.place(anchor, HoverTooltipPlacement::below);
    EXPECT_GT(bubble.y(), anchor.bottom());
    bubble.place(anchor, HoverTooltipPlacement::trailing);
    EXPECT_GT(bubble.x(), anchor.right());
    bubble.place(QRect(290, 0, 10, 10), HoverTooltipPlacement::above);
    EXPECT_TRUE(window.rect().contains(bubble.geometry()));
}

} // namespace
} // namespace quillabrae::shell
