// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <atomic>
#include <functional>

namespace quillabrae::platform {

/// Thrown out of work that was asked to stop before it had any effect.
class WorkCancelled {};

/// Where work and those who wait for it meet. Safe on any thread.
class WorkControl {
public:
    void cancel() { m_isCancelled = true; }
    bool isCancelled() const { return m_isCancelled; }
    /// Throws WorkCancelled once `cancel` was called. Work calls it between its steps, and no more
    /// after the first step that has an effect.
    void stopIfCancelled() const {
        if (m_isCancelled) throw WorkCancelled();
    }

    /// How much is done, 0 to 1; below 0 while nobody can tell.
    double fraction() const { return m_fraction; }
    void setFraction(double fraction) { m_fraction = fraction; }

private:
    std::atomic<bool> m_isCancelled = false;
    std::atomic<double> m_fraction = -1.0;
};

/// Runs work that may take longer than a user waits without a word.
class WorkRunner {
public:
    virtual ~WorkRunner() = default;

    /// Returns when `work` has returned, and throws what it threw. `work` may run on another thread
    /// while this one shows `title` ("Saving “a.heic”") and offers to cancel, and while the program
    /// goes on: it touches nothing but what it was given, and the caller looks up afterwards what
    /// it knew of the program's state.
    virtual void run(const QString& title, const std::function<void(WorkControl&)>& work) = 0;
};

/// Runs work where it is asked for, to its end.
class DirectWorkRunner final : public WorkRunner {
public:
    void run(const QString&, const std::function<void(WorkControl&)>& work) override {
        WorkControl control;
        work(control);
    }
};

/// One for those who have no other.
WorkRunner& directWorkRunner();

} // namespace quillabrae::platform
