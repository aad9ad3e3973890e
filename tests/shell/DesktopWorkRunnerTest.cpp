// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/WhenShown.h"
#include "shell/dialogs/DesktopWorkRunner.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace quillabrae::shell {
namespace {

using namespace std::chrono_literals;
using platform::WorkCancelled;
using platform::WorkControl;

QWidget* noWindow() {
    return nullptr;
}

/// Works until it is told to stop one way or the other, for ten seconds at most.
void workUntil(const std::atomic<bool>& isEnough, const WorkControl& control) {
    for (int i = 0; i < 10000 && !isEnough; ++i) {
        control.stopIfCancelled();
        std::this_thread::sleep_for(1ms);
    }
}

TEST(DesktopWorkRunner, QuickWorkShowsNothing) {
    DesktopWorkRunner runner(noWindow, 5s);
    std::thread::id where;
    runner.run(QStringLiteral("Saving"), [&](WorkControl&) { where = std::this_thread::get_id(); });
    EXPECT_NE(where, std::this_thread::get_id());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(DesktopWorkRunner, LongWorkShowsWhatIsDoneAndHowFarItIsWhileTheProgramLives) {
    DesktopWorkRunner runner(noWindow, 1ms);
    std::atomic<bool> isEnough = false;
    QPointer<QDialog> shown;
    const WhenShown dialogs([&](QDialog& dialog) {
        shown = &dialog;
        EXPECT_EQ(dialog.accessibleName(), QStringLiteral("Saving “a”"));
        EXPECT_EQ(dialog.windowModality(), Qt::ApplicationModal);
        const auto* bar = dialog.findChild<QProgressBar*>();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return bar->maximum() > 0 && bar->value() * 4 == bar->maximum(); }));
        isEnough = true;
    });
    runner.run(QStringLiteral("Saving “a”"), [&](WorkControl& control) {
        control.setFraction(0.25);
        workUntil(isEnough, control);
    });
    EXPECT_TRUE(isEnough);
    EXPECT_TRUE(shown.isNull());
}

TEST(DesktopWorkRunner, WorkThatCannotTellHowFarItIsShowsSo) {
    DesktopWorkRunner runner(noWindow, 1ms);
    std::atomic<bool> isEnough = false;
    const WhenShown dialogs([&](const QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QProgressBar*>()->maximum(), 0);
        isEnough = true;
    });
    runner.run(QStringLiteral("Saving"),
               [&](WorkControl& control) { workUntil(isEnough, control); });
    EXPECT_TRUE(isEnough);
}

TEST(DesktopWorkRunner, CancelAndEscapeStopTheWork) {
    for (const bool byKey : {false, true}) {
        DesktopWorkRunner runner(noWindow, 1ms);
        const WhenShown dialogs([&](QDialog& dialog) {
            if (byKey)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.findChild<QPushButton*>()->click();
            EXPECT_FALSE(dialog.findChild<QPushButton*>()->isEnabled());
        });
        const std::atomic<bool> isEnough = false;
        EXPECT_THROW(runner.run(QStringLiteral("Saving"),
                                [&](WorkControl& control) { workUntil(isEnough, control); }),
                     WorkCancelled);
    }
}

TEST(DesktopWorkRunner, WhatTheWorkThrowsComesOut) {
    for (const auto patience : {0ms, 5000ms}) {
        DesktopWorkRunner runner(noWindow, patience);
        EXPECT_THROW(runner.run(QStringLiteral("Saving"),
                                [](WorkControl&) { throw std::runtime_error("no"); }),
                     std::runtime_error);
    }
}

} // namespace
} // namespace quillabrae::shell
