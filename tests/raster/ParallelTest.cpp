// SPDX-License-Identifier: GPL-3.0-or-later
#include "raster/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quillabrae::raster {
namespace {

TEST(Parallel, EveryIndexIsCalledOnce) {
    for (const int count : {0, 1, 2, 3, 17, 1000}) {
        std::vector<std::atomic<int>> calls(static_cast<std::size_t>(count));
        parallelFor(count, [&](int index) { ++calls[static_cast<std::size_t>(index)]; });
        for (const auto& seen : calls) EXPECT_EQ(seen.load(), 1);
    }
}

TEST(Parallel, BandsCoverTheRowsWithoutOverlap) {
    std::vector<std::atomic<int>> rows(103);
    parallelForRowBands(103, 10, [&](int first, int last) {
        EXPECT_LE(last - first, 10);
        for (int y = first; y < last; ++y) ++rows[static_cast<std::size_t>(y)];
    });
    for (const auto& row : rows) EXPECT_EQ(row.load(), 1);
}

TEST(Parallel, AnExceptionReachesTheCallerAndThePoolServesOn) {
    EXPECT_THROW(parallelFor(100,
                             [](int index) {
                                 if (index == 3) throw std::runtime_error("stop");
                             }),
                 std::runtime_error);
    std::atomic<int> sum = 0;
    parallelFor(10, [&](int index) { sum += index; });
    EXPECT_EQ(sum.load(), 45);
}

TEST(Parallel, ACallWithinACallRunsOnItsOwnThread) {
    std::atomic<int> strays = 0;
    parallelFor(8, [&](int) {
        const std::thread::id own = std::this_thread::get_id();
        parallelFor(8, [&](int) {
            if (std::this_thread::get_id() != own) ++strays;
        });
    });
    EXPECT_EQ(strays.load(), 0);
}

TEST(Parallel, ALimitOfOneStaysOnTheCallingThread) {
    const ParallelThreadLimit limit(1);
    EXPECT_EQ(parallelThreadCount(), 1);
    const std::thread::id own = std::this_thread::get_id();
    parallelFor(100, [&](int) { EXPECT_EQ(std::this_thread::get_id(), own); });
}

TEST(Parallel, ManyThreadsMayCallAtOnce) {
    std::atomic<int> sum = 0;
    std::vector<std::thread> callers;
    for (int i = 0; i < 6; ++i)
        callers.emplace_back([&] {
            for (int round = 0; round < 200; ++round) parallelFor(7, [&](int) { ++sum; });
        });
    for (std::thread& caller : callers) caller.join();
    EXPECT_EQ(sum.load(), 6 * 200 * 7);
}

} // namespace
} // namespace quillabrae::raster
