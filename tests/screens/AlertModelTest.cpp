#include "screens/ScreenHarness.h"

#include <QSignalSpy>

namespace quorl::test {
namespace {

TEST(AlertModel, ShowsTheMessageUntilItIsDismissed) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    EXPECT_FALSE(alert.isShown());

    harness.model().alertMessage = "disk I/O error";
    ScreenHarness::endTurn();
    EXPECT_TRUE(alert.isShown());
    EXPECT_EQ(alert.message(), QStringLiteral("disk I/O error"));

    alert.dismiss();
    ScreenHarness::endTurn();
    EXPECT_FALSE(alert.isShown());
    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
}

TEST(AlertModel, ASecondMessageReplacesTheFirst) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    harness.model().alertMessage = "One";
    ScreenHarness::endTurn();

    harness.model().alertMessage = "Two";
    ScreenHarness::endTurn();

    EXPECT_EQ(alert.message(), QStringLiteral("Two"));
}

TEST(AlertModel, TheMessageThatAFailedStartLeftIsShown) {
    ScreenHarness harness;
    harness.start().alertMessage = "At the start";
    RootScreen root(harness.model(), {.defaults = harness.defaults});

    EXPECT_TRUE(root.alert()->isShown());
}

TEST(AlertModel, AnEmptyMessageIsAnAlertToo) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    harness.model().alertMessage = "";
    ScreenHarness::endTurn();

    EXPECT_TRUE(alert.isShown());
}

} // namespace
} // namespace quorl::test
