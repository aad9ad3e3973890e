// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Parallel.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <limits>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quillabrae::raster {
namespace {

constexpr int maximumThreads = 16;
constexpr int unlimited = std::numeric_limits<int>::max();

thread_local int threadLimit = unlimited;

int machineThreads() {
    static const int threads =
        std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, maximumThreads);
    return threads;
}

/// One call of `parallelFor`; lives on the caller's stack. `helpers` is guarded by the pool's
/// mutex.
struct Job {
    int count;
    detail::IndexedCall call;
    void* context;
    int helpersWanted;
    int helpers = 0;
    std::atomic<int> next = 0;
    std::mutex errorMutex{};
    std::exception_ptr error{};

    bool isExhausted() const { return next.load(std::memory_order_relaxed) >= count; }

    void work() {
        const int limitBefore = std::exchange(threadLimit, 1);
        try {
            for (int index = next.fetch_add(1); index < count; index = next.fetch_add(1))
                call(context, index);
        } catch (...) {
            next.store(count);
            const std::lock_guard lock(errorMutex);
            if (!error) error = std::current_exception();
        }
        threadLimit = limitBefore;
    }
};

/// Threads that are started at the first call that can use them and wait between calls.
class Pool {
public:
    Pool() {
        try {
            for (int i = 1; i < machineThreads(); ++i) m_workers.emplace_back([this] { serve(); });
        } catch (const std::system_error&) {
            // No memory for another stack: fewer do the same work.
        }
    }

    ~Pool() {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_jobAdded.notify_all();
        for (std::thread& worker : m_workers) worker.join();
    }

    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    void run(Job& job) {
        {
            const std::lock_guard lock(m_mutex);
            m_jobs.push_back(&job);
        }
        for (int i = 0; i < job.helpersWanted; ++i) m_jobAdded.notify_one();
        job.work();
        std::unique_lock lock(m_mutex);
        std::erase(m_jobs, &job);
        m_helperLeft.wait(lock, [&] { return job.helpers == 0; });
    }

private:
    Job* openJob() {
        const auto open = std::ranges::find_if(m_jobs, [](const Job* job) {
            return job->helpers < job->helpersWanted && !job->isExhausted();
        });
        return open == m_jobs.end() ? nullptr : *open;
    }

    void serve() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            Job* job = nullptr;
            m_jobAdded.wait(lock, [&] { return m_isEnding || (job = openJob()) != nullptr; });
            if (job == nullptr) return;
            ++job->helpers;
            lock.unlock();
            job->work();
            lock.lock();
            --job->helpers;
            m_helperLeft.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_jobAdded;
    std::condition_variable m_helperLeft;
    std::vector<Job*> m_jobs;
    std::vector<std::thread> m_workers;
    bool m_isEnding = false;
};

Pool& pool() {
    static Pool instance;
    return instance;
}

} // namespace

void detail::runParallel(int count, IndexedCall call, void* context) {
    const int threads = std::min(parallelThreadCount(), count);
    if (threads <= 1) {
        for (int index = 0; index < count; ++index) call(context, index);
        return;
    }
    Job job{.count = count, .call = call, .context = context, .helpersWanted = threads - 1};
    pool().run(job);
    if (job.error) std::rethrow_exception(job.error);
}

int parallelThreadCount() {
    return std::min(machineThreads(), threadLimit);
}

ParallelThreadLimit::ParallelThreadLimit(int threads)
    : m_previous(std::exchange(threadLimit, std::max(threads, 1))) {}

ParallelThreadLimit::~ParallelThreadLimit() {
    threadLimit = m_previous;
}

} // namespace quillabrae::raster
