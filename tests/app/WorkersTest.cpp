#include "app/Workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>

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
