#include "app/Observed.h"

#include "app/AppModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>

using namespace quorl;

namespace {

class ObservedTest : public testing::Test {
protected:
    Observers observers;
    std::vector<AppField> told;
    Observers::Subscription subscription =
        observers.subscribe([this](const AppChange& change) { told.push_back(change.field); });
};

TEST_F(ObservedTest, WritingAnotherValueTellsTheFieldsName) {
    Observed<std::string> field(observers, AppField::draftPrompt);

    field = "a";

    EXPECT_EQ(*field, "a");
    EXPECT_EQ(told, std::vector{AppField::draftPrompt});
}

TEST_F(ObservedTest, WritingAnEqualValueTellsNobody) {
    Observed<std::string> field(observers, AppField::draftPrompt, "a");

    field = "a";

    EXPECT_TRUE(told.empty());
}

TEST_F(ObservedTest, AnEntryOfAMapIsComparedByItself) {
    ObservedMap<bool> map(observers, AppField::secretFlags);
    const UUID key = UUID::random();

    map.set(key, false);
    map.set(key, false);
    map.set(UUID::random(), true);

    EXPECT_EQ(told, (std::vector{AppField::secretFlags, AppField::secretFlags}));
    EXPECT_EQ(*map.find(key), false);
}

TEST_F(ObservedTest, AnObserverThatIsGoneIsNotCalled) {
    Observed<int> field(observers, AppField::focusToken);
    subscription = {};

    field = 1;

    EXPECT_TRUE(told.empty());
}

TEST_F(ObservedTest, AnObserverMayEndItsSubscriptionWhileItIsTold) {
    Observed<int> field(observers, AppField::focusToken);
    int calls = 0;
    Observers::Subscription other;
    other = observers.subscribe([&](const AppChange&) {
        ++calls;
        other = {};
    });

    field = 1;
    field = 2;

    EXPECT_EQ(calls, 1);
    EXPECT_EQ(told.size(), 2u);
}

TEST_F(ObservedTest, AWriteFromAnotherThreadIsABug) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Observed<int> field(observers, AppField::focusToken);

    EXPECT_DEBUG_DEATH(std::thread([&] { field = 1; }).join(), "isMainThread");
}

TEST(Destination, IsEqualAndHashedByItsScreenAndRun) {
    const UUID run = UUID::random();
    const std::hash<Destination> hash;

    EXPECT_EQ(Destination(RunScreen{run}), Destination(RunScreen{run}));
    EXPECT_NE(Destination(RunScreen{run}), Destination(RunScreen{UUID::random()}));
    EXPECT_NE(Destination(Screen::draft), Destination(Screen::history));
    EXPECT_EQ(hash(RunScreen{run}), hash(RunScreen{run}));
    EXPECT_NE(hash(RunScreen{run}), hash(RunScreen{UUID::random()}));
}

} // namespace
