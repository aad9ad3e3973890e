// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

namespace quillabrae::shell {

/// Does something with the dialog that is run during its life, as soon as that is up. A dialog that
/// is still there after a check of the test has failed is closed, so that no loop waits for ever.
class WhenShown {
public:
    explicit WhenShown(std::function<void(QDialog& dialog)> act) : m_act(std::move(act)) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(std::chrono::milliseconds{1});
    }
    ~WhenShown() { EXPECT_FALSE(m_timer.isActive()) << "no dialog was shown"; }
    WhenShown(const WhenShown&) = delete;
    WhenShown& operator=(const WhenShown&) = delete;

private:
    void look() {
        const QPointer<QDialog> dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        m_timer.stop();
        m_act(*dialog);
        if (dialog && testing::Test::HasFailure()) dialog->close();
    }

    std::function<void(QDialog& dialog)> m_act;
    QTimer m_timer;
};

} // namespace quillabrae::shell
