#include "app/Harness.h"

using namespace quorl;
using namespace quorl::test;
using namespace std::chrono_literals;

namespace {

class FeedbackTest : public testing::Test {
protected:
    void SetUp() override { harness.start(); }

    Harness harness;
};

TEST_F(FeedbackTest, AToastShowsFor2800Milliseconds) {
    harness.model().announce("Title", "Detail", "checkmark", true);

    ASSERT_TRUE(harness.model().feedback->has_value());
    const QuorlFeedback shown = **harness.model().feedback;
    EXPECT_EQ(shown, (QuorlFeedback{shown.id, "Title", "Detail", "checkmark", true}));
    harness.loop.advance(2799ms);
    EXPECT_TRUE(harness.model().feedback->has_value());
    harness.loop.advance(1ms);
    EXPECT_FALSE(harness.model().feedback->has_value());
}

TEST_F(FeedbackTest, TheTimerOfAnOlderToastLeavesTheNewerAlone) {
    harness.model().announce("First", "", "checkmark", false);
    harness.loop.advance(2000ms);
    harness.model().announce("Second", "", "checkmark", false);

    harness.loop.advance(1000ms);
    ASSERT_TRUE(harness.model().feedback->has_value());
    EXPECT_EQ((*harness.model().feedback)->title, "Second");
    harness.loop.advance(1800ms);
    EXPECT_FALSE(harness.model().feedback->has_value());
}

TEST_F(FeedbackTest, EachAnnouncementHasAFreshId) {
    harness.model().announce("Same", "", "checkmark", false);
    const UUID first = (*harness.model().feedback)->id;
    harness.model().announce("Same", "", "checkmark", false);

    EXPECT_NE((*harness.model().feedback)->id, first);
}

TEST_F(FeedbackTest, ATimerThatOutlivesTheModelDoesNothing) {
    harness.model().announce("Title", "", "checkmark", false);
    harness.quit();

    harness.loop.advance(3000ms);
}

} // namespace
