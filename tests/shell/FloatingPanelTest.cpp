// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FloatingPanel.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace quillabrae::shell {
namespace {

class FloatingPanelTest : public testing::Test {
protected:
    FloatingPanelTest() {
        room.resize(400, 400);
        content = new QLabel(QStringLiteral("Content"));
        content->setMinimumSize(120, 80);
        panel.content()->addWidget(content);
        panel.setGeometry(QRect(QPoint(50, 60), panel.sizeHint()));
        room.show();
    }

    QAbstractButton* fold() const { return panel.findChild<QAbstractButton*>(); }

    QWidget room;
    FloatingPanel panel{QStringLiteral("Things"), &room};
    QLabel* content = nullptr;
};

TEST_F(FloatingPanelTest, FoldsUpToItsHeadingAndBack) {
    const QSize open = panel.sizeHint();
    EXPECT_GE(open.height(), 80);
    EXPECT_EQ(fold()->accessibleName(), QStringLiteral("Collapse Things"));
    QSignalSpy changed(&panel, &FloatingPanel::sizeChanged);
    fold()->click();
    EXPECT_TRUE(panel.isCollapsed());
    EXPECT_GE(changed.count(), 1);
    EXPECT_LT(panel.sizeHint().height(), 40);
    EXPECT_EQ(panel.sizeHint().width(), open.width());
    EXPECT_FALSE(content->isVisible());
    EXPECT_EQ(fold()->accessibleName(), QStringLiteral("Expand Things"));
    QTest::mouseDClick(&panel, Qt::LeftButton, {}, QPoint(20, 10));
    EXPECT_FALSE(panel.isCollapsed());
    EXPECT_EQ(panel.sizeHint(), open);
}

TEST_F(FloatingPanelTest, IsMovedByItsHeadingOnly) {
    QSignalSpy moved(&panel, &FloatingPanel::moveRequested);
    QTest::mousePress(&panel, Qt::LeftButton, {}, QPoint(20, 10));
    QTest::mouseMove(&panel, QPoint(50, 30));
    QTest::mouseRelease(&panel, Qt::LeftButton, {}, QPoint(50, 30));
    ASSERT_EQ(moved.count(), 1);
    EXPECT_EQ(moved.front().front().toPoint(), QPoint(80, 80));
    QTest::mousePress(&panel, Qt::LeftButton, {}, QPoint(20, panel.height() - 3));
    QTest::mouseMove(&panel, QPoint(50, 30));
    EXPECT_EQ(moved.count(), 1);
}

TEST_F(FloatingPanelTest, HasTheHeightThatItIsGivenWhileItIsOpen) {
    panel.setExpandedHeight(300);
    EXPECT_EQ(panel.sizeHint().height(), 300);
    panel.setCollapsed(true);
    EXPECT_LT(panel.sizeHint().height(), 40);
}

} // namespace
} // namespace quillabrae::shell
