// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LatestWork.h"

#include <QMetaObject>
#include <QObject>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quillabrae::platform {
namespace {

class DirectLatestWork final : public LatestWork {
public:
    void run(Job job) override {
        if (const Delivery deliver = job()) deliver();
    }
    void finish() override {}
    void drop() override {}
};

class ThreadedLatestWork final : public LatestWork {
public:
    ~ThreadedLatestWork() override {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
            m_waiting = nullptr;
        }
        m_changed.notify_all();
        if (m_thread.joinable()) m_thread.join();
    }

    void run(Job job) override {
        {
            const std::lock_guard lock(m_mutex);
            m_waiting = std::move(job);
        }
        m_changed.notify_all();
        if (!m_thread.joinable()) m_thread = std::thread([this] { work(); });
    }

    void finish() override {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return !m_waiting && !m_isWorking; });
        }
        deliver();
    }

    void drop() override {
        const std::lock_guard lock(m_mutex);
        m_waiting = nullptr;
        m_done.clear();
        m_dropsCurrent = m_isWorking;
    }

private:
    void work() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_waiting || m_isEnding; });
            if (m_isEnding) return;
            const Job job = std::exchange(m_waiting, nullptr);
            m_isWorking = true;
            lock.unlock();
            Delivery delivery = job();
            lock.lock();
            if (delivery && !m_dropsCurrent) m_done.push_back(std::move(delivery));
            m_dropsCurrent = false;
            m_isWorking = false;
            m_changed.notify_all();
            QMetaObject::invokeMethod(
                &m_home, [this] { deliver(); }, Qt::QueuedConnection);
        }
    }

    void deliver() {
        std::vector<Delivery> deliveries;
        {
            const std::lock_guard lock(m_mutex);
            deliveries.swap(m_done);
        }
        for (const Delivery& delivery : deliveries) delivery();
    }

    /// Lives on the thread that results go to. Last to be made and first to go is the worker.
    QObject m_home;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    Job m_waiting;
    std::vector<Delivery> m_done;
    bool m_isWorking = false;
    bool m_dropsCurrent = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace

std::unique_ptr<LatestWork> makeDirectLatestWork() {
    return std::make_unique<DirectLatestWork>();
}

std::unique_ptr<LatestWork> makeThreadedLatestWork() {
    return std::make_unique<ThreadedLatestWork>();
}

} // namespace quillabrae::platform
