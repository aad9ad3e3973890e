// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/WorkRunner.h"

#include <QStringList>

namespace quillabrae::store {

/// Runs work at once. Can be told that the user cancels it, and to do something else while it goes
/// on.
class FakeWork final : public platform::WorkRunner {
public:
    bool isCancelled = false;
    /// Happens at the end of the work.
    std::function<void()> meanwhile;
    QStringList titles;
    /// Of the work that is running.
    platform::WorkControl* control = nullptr;

    void run(const QString& title,
             const std::function<void(platform::WorkControl&)>& work) override {
        titles << title;
        platform::WorkControl present;
        control = &present;
        if (isCancelled) present.cancel();
        work(present);
        if (meanwhile) meanwhile();
    }
};

} // namespace quillabrae::store
