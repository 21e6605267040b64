#include "app/Workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <latch>

using namespace quorl;

namespace {

TEST(Workers, AllWorkRunsAtTheSameTime) {
    constexpr int count = 500;
    std::barrier together(count);
    std::atomic<int> done = 0;
    {
        Workers workers;
        for (int i = 0; i < count; ++i) {
            // Nobody passes before all have come, so a limit would hang here.
            workers.start([&] {
                together.arrive_and_wait();
                ++done;
            });
        }
    }

    EXPECT_EQ(done, count);
}

TEST(Workers, ManyRoundsOfWorkAreAllDone) {
    std::atomic<int> done = 0;
    {
        Workers workers;
        for (int round = 0; round < 50; ++round) {
            // Some rounds find the threads of the one before idle, some find them still at work.
            std::latch ended(20);
            for (int i = 0; i < 20; ++i) {
                workers.start([&] {
                    ++done;
                    ended.count_down();
                });
            }
            ended.wait();
        }
    }

    EXPECT_EQ(done, 1000);
}

TEST(Workers, WorkThatStartsWorkDoesNotWaitForItself) {
    std::atomic<bool> done = false;
    {
        Workers workers;
        workers.start([&] {
            std::latch inner(1);
            workers.start([&] { inner.count_down(); });
            inner.wait();
            done = true;
        });
    }

    EXPECT_TRUE(done);
}

TEST(Workers, TheEndWaitsForAllWork) {
    std::atomic<int> done = 0;
    {
        Workers workers;
        for (int i = 0; i < 50; ++i)
            workers.start([&] { ++done; });
    }

    EXPECT_EQ(done, 50);
}

} // namespace
