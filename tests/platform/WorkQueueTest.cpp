// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WorkQueue.h"

#include <gmock/gmock.h>
#include <pthread.h>

#include <future>
#include <new>
#include <vector>

namespace quillabrae::platform {
namespace {

using testing::ElementsAre;

TEST(WorkQueue, RunsJobsInTheirOrderOnOneOtherThread) {
    WorkQueue queue;
    std::vector<int> numbers;
    std::vector<std::thread::id> threads;
    for (const int number : {1, 2, 3})
        queue.run([&, number] {
            numbers.push_back(number);
            threads.push_back(std::this_thread::get_id());
        });
    queue.finish();
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3));
    EXPECT_NE(threads[0], std::this_thread::get_id());
    EXPECT_THAT(threads, ElementsAre(threads[0], threads[0], threads[0]));
}

TEST(WorkQueue, FinishingWithoutJobsReturns) {
    WorkQueue queue;
    queue.finish();
    queue.run([] {});
    queue.finish();
    queue.finish();
}

TEST(WorkQueue, ItsEndWaitsForAllJobs) {
    int done = 0;
    {
        std::promise<void> go;
        WorkQueue queue;
        queue.run([&] { go.get_future().wait(); });
        for (int job = 0; job < 10; ++job) queue.run([&] { ++done; });
        EXPECT_EQ(done, 0);
        go.set_value();
    }
    EXPECT_EQ(done, 10);
}

TEST(WorkQueue, WhatHasNotBegunIsForgotten) {
    std::promise<void> begun;
    std::promise<void> go;
    std::vector<int> numbers;
    WorkQueue queue;
    queue.run([&] {
        begun.set_value();
        go.get_future().wait();
        numbers.push_back(1);
    });
    queue.run([&] { numbers.push_back(2); });
    begun.get_future().wait();
    queue.clear();
    queue.run([&] { numbers.push_back(3); });
    go.set_value();
    queue.finish();
    EXPECT_THAT(numbers, ElementsAre(1, 3));
}

TEST(WorkQueue, AJobWithoutMemoryDoesNotStopTheNext) {
    bool isDone = false;
    WorkQueue queue;
    queue.run([] { throw std::bad_alloc(); });
    queue.run([&] { isDone = true; });
    queue.finish();
    EXPECT_TRUE(isDone);
}

#ifdef __GLIBC__
/// While it lives, no thread can be begun: each would have a stack that no address space holds.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&m_usual);
        pthread_attr_t huge;
        pthread_attr_init(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 60U);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    ~NoMoreThreads() {
        pthread_setattr_default_np(&m_usual);
        pthread_attr_destroy(&m_usual);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

private:
    pthread_attr_t m_usual{};
};

TEST(WorkQueue, WithoutAThreadItWorksOnTheOneThatAsksAndTriesAgain) {
    std::vector<std::thread::id> threads;
    const auto note = [&] { threads.push_back(std::this_thread::get_id()); };
    WorkQueue queue;
    {
        const NoMoreThreads refusal;
        queue.run(note);
        EXPECT_THAT(threads, ElementsAre(std::this_thread::get_id()));
        queue.finish();
    }
    queue.run(note);
    queue.finish();
    ASSERT_EQ(threads.size(), 2U);
    EXPECT_NE(threads[1], std::this_thread::get_id());
}
#endif

} // namespace
} // namespace quillabrae::platform
