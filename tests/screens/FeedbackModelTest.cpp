#include "screens/ScreenHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

TEST(FeedbackModel, ShowsTheToastUntilItsTimeIsOver) {
    ScreenHarness harness;
    FeedbackModel& toast = *harness.show().feedback();
    EXPECT_FALSE(toast.isShown());

    harness.model().announce("Saved to dataset", "1 example logged", "tray.full", false);
    ScreenHarness::endTurn();
    EXPECT_TRUE(toast.isShown());
    EXPECT_EQ(toast.title(), QStringLiteral("Saved to dataset"));
    EXPECT_EQ(toast.detail(), QStringLiteral("1 example logged"));
    EXPECT_EQ(toast.symbol(), QStringLiteral("tray.full"));
    EXPECT_FALSE(toast.isMilestone());

    harness.loop.advance(std::chrono::seconds(3));
    ScreenHarness::endTurn();
    EXPECT_FALSE(toast.isShown());
}

TEST(FeedbackModel, TheWordsStayWhileTheToastGoes) {
    ScreenHarness harness;
    FeedbackModel& toast = *harness.show().feedback();
    harness.model().announce("25 examples logged", "25 examples now strengthen this benchmark.", "sparkle",
                             true);
    ScreenHarness::endTurn();

    harness.model().feedback = std::nullopt;
    ScreenHarness::endTurn();

    EXPECT_FALSE(toast.isShown());
    EXPECT_EQ(toast.title(), QStringLiteral("25 examples logged"));
    EXPECT_TRUE(toast.isMilestone());
}

TEST(FeedbackModel, TheSameWordsOnceMoreAreAnotherToast) {
    ScreenHarness harness;
    FeedbackModel& toast = *harness.show().feedback();
    harness.model().announce("Saved to dataset", "", "tray.full", false);
    ScreenHarness::endTurn();
    const QString first = toast.feedbackID();
    const QSignalSpy changes(&toast, &FeedbackModel::changed);

    harness.model().announce("Saved to dataset", "", "tray.full", false);
    ScreenHarness::endTurn();

    EXPECT_NE(toast.feedbackID(), first);
    EXPECT_EQ(changes.count(), 1);
}

TEST(FeedbackModel, IsReadToThoseWhoDoNotSeeIt) {
    ScreenHarness harness;
    const Announcer& announcer = *harness.show().announcer();
    const QSignalSpy announced(&announcer, &Announcer::announced);

    harness.model().announce("Saved to dataset", "1 example logged", "tray.full", false);
    ScreenHarness::endTurn();
    EXPECT_EQ(announcer.words(), QStringLiteral("Saved to dataset. 1 example logged"));

    harness.model().announce("Correction saved", "", "tray.full", false);
    ScreenHarness::endTurn();
    EXPECT_EQ(announcer.words(), QStringLiteral("Correction saved"));

    harness.model().feedback = std::nullopt;
    ScreenHarness::endTurn();
    EXPECT_EQ(announced.count(), 2);
}

} // namespace
} // namespace quorl::test
