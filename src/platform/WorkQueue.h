// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quillabrae::platform {

/// Runs jobs one after the other, in the order in which they were asked for, on a thread of its
/// own; on the one that asks where the system has no thread for it. Is asked by one thread.
class WorkQueue {
public:
    /// Where memory ends in it, it has come to nothing; it throws nothing else.
    using Job = std::function<void()>;

    WorkQueue() = default;
    /// Waits for all jobs.
    ~WorkQueue();
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;

    void run(Job job);
    /// Forgets the jobs that have not begun.
    void clear();
    /// Returns when all jobs have run.
    void finish();

private:
    void work();
    void runAll(std::unique_lock<std::mutex>& lock);

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_isWorking = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace quillabrae::platform
