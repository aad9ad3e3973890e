// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LatestWork.h"

#include <QCoreApplication>
#include <QThread>

#include <gmock/gmock.h>

#include <semaphore>
#include <vector>

namespace quillabrae::platform {
namespace {

using testing::ElementsAre;

/// Jobs that note what was delivered; the first one begins and waits.
class ThreadedWork : public testing::Test {
protected:
    LatestWork::Job job(int number) {
        return [this, number] { return [this, number] { delivered.push_back(number); }; };
    }
    void runBlocked(int number) {
        work->run([this, number, deliver = job(number)]() -> LatestWork::Delivery {
            begun.release();
            mayEnd.acquire();
            return deliver();
        });
        begun.acquire();
    }
    static void letResultsArrive() {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents();
            QThread::msleep(2);
        }
    }

    std::vector<int> delivered;
    std::binary_semaphore begun{0};
    std::binary_semaphore mayEnd{0};
    std::unique_ptr<LatestWork> work = makeThreadedLatestWork();
};

TEST(DirectWork, IsDeliveredAtOnce) {
    int delivered = 0;
    const auto work = makeDirectLatestWork();
    work->run([&] { return [&] { ++delivered; }; });
    EXPECT_EQ(delivered, 1);
    work->run([] { return LatestWork::Delivery(); });
    work->drop();
    work->finish();
    EXPECT_EQ(delivered, 1);
}

TEST_F(ThreadedWork, IsDeliveredByTheEventLoop) {
    work->run(job(1));
    EXPECT_TRUE(delivered.empty());
    for (int i = 0; i < 1000 && delivered.empty(); ++i) letResultsArrive();
    EXPECT_THAT(delivered, ElementsAre(1));
}

TEST_F(ThreadedWork, OnlyTheLatestOfWhatWaitsIsDone) {
    runBlocked(1);
    for (const int number : {2, 3, 4}) work->run(job(number));
    mayEnd.release();
    work->finish();
    EXPECT_THAT(delivered, ElementsAre(1, 4));
    letResultsArrive();
    EXPECT_THAT(delivered, ElementsAre(1, 4));
}

TEST_F(ThreadedWork, NothingThatWasDroppedIsDelivered) {
    runBlocked(1);
    work->run(job(2));
    work->drop();
    work->run(job(3));
    mayEnd.release();
    work->finish();
    EXPECT_THAT(delivered, ElementsAre(3));
    work->run(job(4));
    while (delivered.size() < 2) letResultsArrive();
    work->run(job(5));
    QThread::msleep(20);
    work->drop();
    letResultsArrive();
    EXPECT_THAT(delivered, ElementsAre(3, 4));
}

TEST_F(ThreadedWork, EndsWithItsOwner) {
    runBlocked(1);
    work->run(job(2));
    mayEnd.release();
    work.reset();
    letResultsArrive();
    EXPECT_TRUE(delivered.empty());
    work = makeThreadedLatestWork();
    work->finish();
}

} // namespace
} // namespace quillabrae::platform
