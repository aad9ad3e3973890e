// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

namespace quillabrae::platform {

/// Runs work of which only the latest counts, such as what a slider's value makes of a picture.
class LatestWork {
public:
    /// Takes a result to where it belongs, on the thread that asked for the work.
    using Delivery = std::function<void()>;
    /// May run on another thread and touches nothing but what it was given.
    using Job = std::function<Delivery()>;

    virtual ~LatestWork() = default;

    /// Asks for a job in place of the one that has not begun yet. A job that has begun goes on and
    /// is delivered.
    virtual void run(Job job) = 0;
    /// Returns when the latest job has been delivered.
    virtual void finish() = 0;
    /// Forgets all jobs: nothing is delivered any more.
    virtual void drop() = 0;
};

using LatestWorkFactory = std::function<std::unique_ptr<LatestWork>()>;

/// Runs each job where it is asked for, and delivers it before returning.
std::unique_ptr<LatestWork> makeDirectLatestWork();

/// Runs jobs on a thread of its own and delivers them through the event loop of the thread that
/// made it.
std::unique_ptr<LatestWork> makeThreadedLatestWork();

} // namespace quillabrae::platform
