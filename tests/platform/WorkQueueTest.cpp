// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/WorkQueue.h"

#include <gmock/gmock.h>

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

} // namespace
} // namespace quillabrae::platform
