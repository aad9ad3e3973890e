// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/EveryWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillabrae::shell {
namespace {

class DesktopWindowsTest : public EveryWindow {
protected:
    DesktopWindowsTest() : EveryWindow(QString()) {}
    ~DesktopWindowsTest() override { QCursor::setPos(pointer); }

    const QPoint pointer = QCursor::pos();
};

TEST_F(DesktopWindowsTest, OpenInTheMiddleOfThePrimaryScreenWhereverThePointerIs) {
    // The most that a usual frame moves the middle by.
    constexpr int slack = 16;
    const QScreen* const primary = QGuiApplication::primaryScreen();
    ASSERT_GT(QGuiApplication::screens().size(), 1);
    QCursor::setPos(QGuiApplication::screens().last()->geometry().center());
    for (const WindowRole role :
         {WindowRole::welcome, WindowRole::editor, WindowRole::paintNetQuickStart,
          WindowRole::settings, WindowRole::pluginLibrary}) {
        const auto window = makeWindow(role);
        window->show();
        runDeferred();
        SCOPED_TRACE(window->objectName().toStdString());
        EXPECT_EQ(window->screen(), primary);
        const QPoint off = window->geometry().center() - primary->availableGeometry().center();
        EXPECT_LE(std::abs(off.x()), slack);
        EXPECT_LE(std::abs(off.y()), slack);
    }
}

} // namespace
} // namespace quillabrae::shell
