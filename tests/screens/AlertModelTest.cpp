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
    RootScreen root(harness.model(), harness.services());

    EXPECT_TRUE(root.alert()->isShown());
}

TEST(AlertModel, AnEmptyMessageIsAnAlertToo) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    harness.model().alertMessage = "";
    ScreenHarness::endTurn();

    EXPECT_TRUE(alert.isShown());
    EXPECT_EQ(alert.kind(), AlertModel::Kind::General);
}

TEST(AlertModel, TheWordsStayWhileTheAlertGoes) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    EXPECT_EQ(alert.kind(), AlertModel::Kind::None);
    harness.model().alertMessage = "disk I/O error";
    ScreenHarness::endTurn();

    alert.dismiss();

    EXPECT_EQ(alert.kind(), AlertModel::Kind::None);
    EXPECT_EQ(alert.message(), QStringLiteral("disk I/O error"));
}

TEST(AlertModel, TheSameMessageOnceMoreInTheSameTurnIsANewAlert) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    harness.model().alertMessage = "disk I/O error";
    ScreenHarness::endTurn();
    const QSignalSpy changes(&alert, &AlertModel::changed);

    alert.dismiss();
    harness.model().alertMessage = "disk I/O error";
    ScreenHarness::endTurn();

    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(alert.isShown());
}

TEST(AlertModel, ADeletionAsksByWhatWouldGo) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    using Kind = PendingDelete::Kind;
    for (const auto& [kind, title] : {
             std::pair(Kind::model, "Delete this model?"),
             std::pair(Kind::category, "Delete this category?"),
             std::pair(Kind::run, "Delete this comparison?"),
             std::pair(Kind::example, "Remove this example from the dataset?"),
             std::pair(Kind::batch, "Delete this batch?"),
         }) {
        harness.model().pendingDelete = PendingDelete{kind, UUID::random()};
        ScreenHarness::endTurn();

        EXPECT_EQ(alert.kind(), AlertModel::Kind::Deletion);
        EXPECT_EQ(alert.deletionTitle(), QString::fromUtf8(title));
    }
}

TEST(AlertModel, ADeletionHappensWhenItIsConfirmed) {
    ScreenHarness harness;
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    AlertModel& alert = *harness.show().alert();
    harness.model().requestDelete({PendingDelete::Kind::run, run.id});
    ScreenHarness::endTurn();

    alert.confirmDelete();
    ScreenHarness::endTurn();

    EXPECT_EQ(harness.model().library.findRun(run.id), nullptr);
    EXPECT_FALSE(alert.isShown());
}

TEST(AlertModel, ADeletionThatIsCancelledLeavesEverything) {
    ScreenHarness harness;
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    AlertModel& alert = *harness.show().alert();
    harness.model().requestDelete({PendingDelete::Kind::run, run.id});
    ScreenHarness::endTurn();

    alert.cancelDelete();
    ScreenHarness::endTurn();

    EXPECT_NE(harness.model().library.findRun(run.id), nullptr);
    EXPECT_EQ(*harness.model().pendingDelete, std::nullopt);
    EXPECT_FALSE(alert.isShown());
}

TEST(AlertModel, AMessageWaitsForTheDeletionThatIsAskedFor) {
    ScreenHarness harness;
    AlertModel& alert = *harness.show().alert();
    harness.model().pendingDelete = PendingDelete{PendingDelete::Kind::model, UUID::random()};
    harness.model().alertMessage = "disk I/O error";
    ScreenHarness::endTurn();
    EXPECT_EQ(alert.kind(), AlertModel::Kind::Deletion);

    alert.cancelDelete();
    ScreenHarness::endTurn();

    EXPECT_EQ(alert.kind(), AlertModel::Kind::General);
    EXPECT_EQ(alert.message(), QStringLiteral("disk I/O error"));
}

} // namespace
} // namespace quorl::test
