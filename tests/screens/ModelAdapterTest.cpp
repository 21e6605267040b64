#include "screens/ModelAdapter.h"

#include "screens/ScreenHarness.h"

namespace quorl::test {
namespace {

class ModelAdapterTest : public testing::Test {
protected:
    void listen() {
        adapter = std::make_unique<ModelAdapter>(harness.start());
        QObject::connect(adapter.get(), &ModelAdapter::changed,
                         [this](const ModelChanges& changes) { told.push_back(changes); });
    }

    Harness harness;
    std::unique_ptr<ModelAdapter> adapter;
    std::vector<ModelChanges> told;
};

TEST_F(ModelAdapterTest, ManyChangesOfOneTurnAreToldOnceAtItsEnd) {
    const UUID run = UUID::random();
    listen();

    for (int i = 0; i < 1000; ++i)
        harness.model().library.replaceAnswer(makeAnswer(run, i));
    harness.model().draftPrompt = "Why?";

    EXPECT_TRUE(told.empty());
    ScreenHarness::endTurn();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_TRUE(told[0].hasAnswersOf(run));
    EXPECT_FALSE(told[0].hasAnswersOf(UUID::random()));
    EXPECT_TRUE(told[0].has(AppField::draftPrompt));
    EXPECT_FALSE(told[0].has(AppField::draftSystem));
}

TEST_F(ModelAdapterTest, EachTurnIsToldOnItsOwn) {
    listen();
    harness.model().draftPrompt = "One?";
    ScreenHarness::endTurn();
    harness.model().draftSystem = "Two.";
    ScreenHarness::endTurn();
    ScreenHarness::endTurn();

    ASSERT_EQ(told.size(), 2u);
    EXPECT_FALSE(told[1].has(AppField::draftPrompt));
    EXPECT_TRUE(told[1].has(AppField::draftSystem));
}

TEST_F(ModelAdapterTest, DeliveringTellsAtOnceAndNotAgain) {
    listen();
    harness.model().draftPrompt = "Why?";

    adapter->deliver();
    adapter->deliver();
    ScreenHarness::endTurn();

    EXPECT_EQ(told.size(), 1u);
}

} // namespace
} // namespace quorl::test
