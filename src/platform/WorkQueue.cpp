// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WorkQueue.h"

#include <exception>
#include <new>
#include <utility>

namespace quillabrae::platform {

WorkQueue::~WorkQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

void WorkQueue::run(Job job) {
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_all();
    if (m_thread.joinable()) return;
    try {
        m_thread = std::thread([this] { work(); });
    } catch (const std::exception&) {
        // Refused by the system, or for want of memory.
        std::unique_lock lock(m_mutex);
        runAll(lock);
    }
}

void WorkQueue::clear() {
    const std::lock_guard lock(m_mutex);
    m_jobs.clear();
}

void WorkQueue::finish() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_jobs.empty() && !m_isWorking; });
}

void WorkQueue::work() {
    std::unique_lock lock(m_mutex);
    while (!m_isEnding || !m_jobs.empty()) {
        runAll(lock);
        m_changed.wait(lock, [this] { return !m_jobs.empty() || m_isEnding; });
    }
}

void WorkQueue::runAll(std::unique_lock<std::mutex>& lock) {
    while (!m_jobs.empty()) {
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_isWorking = true;
        lock.unlock();
        try {
            job();
        } catch (const std::bad_alloc&) {
            // Nothing, as announced.
        }
        // What it holds may take a while to go.
        job = nullptr;
        lock.lock();
        m_isWorking = false;
        m_changed.notify_all();
    }
}

} // namespace quillabrae::platform
