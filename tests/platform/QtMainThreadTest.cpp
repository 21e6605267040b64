#include "platform/linux/QtMainThread.h"

#include "platform/linux/SystemClock.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace quorl::test {
namespace {

class QtMainThreadLoop : public testing::Test {
protected:
    // Turns the loop until `isDone`.
    template <class Condition>
    bool turnUntil(Condition isDone) {
        const QDeadlineTimer deadline(std::chrono::seconds(60));
        while (!isDone() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
        return isDone();
    }

    int count = 0;
    QCoreApplication application{count, nullptr};
    QtMainThread mainThread;
};

TEST_F(QtMainThreadLoop, RunsWorkInTheOrderOfPostingAndNeverInsideTheCall) {
    std::vector<int> ran;
    for (int number = 0; number < 3; ++number)
        mainThread.post([&, number] { ran.push_back(number); });
    EXPECT_TRUE(ran.empty());

    ASSERT_TRUE(turnUntil([&] { return ran.size() == 3; }));
    EXPECT_EQ(ran, (std::vector{0, 1, 2}));
}

TEST_F(QtMainThreadLoop, WorkMayPostMore) {
    std::vector<int> ran;
    mainThread.post([&] {
        mainThread.post([&] { ran.push_back(2); });
        ran.push_back(1);
    });

    ASSERT_TRUE(turnUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran, (std::vector{1, 2}));
}

TEST_F(QtMainThreadLoop, RunsOnTheMainThreadWhatAnyThreadPosts) {
    constexpr int each = 200;
    std::vector<std::vector<int>> ran(4);
    bool isElsewhere = false;
    const auto* here = QThread::currentThread();
    std::vector<std::jthread> threads;
    for (auto& own : ran) {
        threads.emplace_back([&] {
            for (int number = 0; number < each; ++number) {
                mainThread.post([&, number] {
                    isElsewhere |= QThread::currentThread() != here;
                    own.push_back(number);
                });
            }
        });
    }

    ASSERT_TRUE(turnUntil([&] {
        return std::all_of(ran.begin(), ran.end(), [](const auto& own) { return own.size() == each; });
    }));
    EXPECT_FALSE(isElsewhere);
    for (const auto& own : ran)
        EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
}

TEST_F(QtMainThreadLoop, RunsDelayedWorkAfterItsDelay) {
    const auto start = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration waited{};
    std::vector<int> ran;
    mainThread.postAfter(std::chrono::milliseconds(50), [&] {
        waited = std::chrono::steady_clock::now() - start;
        ran.push_back(2);
    });
    mainThread.postAfter(std::chrono::milliseconds(0), [&] { ran.push_back(1); });
    EXPECT_TRUE(ran.empty());

    ASSERT_TRUE(turnUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran, (std::vector{1, 2}));
    // Qt's coarse timers may come a twentieth early.
    EXPECT_GE(waited, std::chrono::milliseconds(47));
}

TEST_F(QtMainThreadLoop, DropsWorkThatOutlivesIt) {
    auto kept = std::make_shared<int>(0);
    {
        QtMainThread shortLived;
        shortLived.post([kept] { ++*kept; });
        shortLived.postAfter(std::chrono::milliseconds(0), [kept] { ++*kept; });
    }
    bool isPast = false;
    mainThread.postAfter(std::chrono::milliseconds(1), [&] { isPast = true; });

    ASSERT_TRUE(turnUntil([&] { return isPast; }));
    EXPECT_EQ(*kept, 0);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(SystemClock, TellsTheTimeWithItsFraction) {
    const std::chrono::duration<double> before = std::chrono::system_clock::now().time_since_epoch();
    const auto now = SystemClock().now().time_since_epoch();
    const std::chrono::duration<double> after = std::chrono::system_clock::now().time_since_epoch();

    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

} // namespace
} // namespace quorl::test
