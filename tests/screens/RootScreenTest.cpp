#include "screens/RootScreen.h"

#include "screens/ScreenHarness.h"

#include <QPointer>
#include <QSignalSpy>

namespace quorl::test {
namespace {

using Place = RootScreen::Destination;

constexpr auto compareFile = "CompareScreen.qml";

class RootScreenTest : public testing::Test {
protected:
    void goTo(Place destination) {
        harness.root().goTo(destination);
        ScreenHarness::endTurn();
    }

    void show(const Destination& destination) {
        harness.model().destination = destination;
        ScreenHarness::endTurn();
    }

    [[nodiscard]] std::string file() { return harness.root().screenFile().toStdString(); }

    ScreenHarness harness;
};

TEST_F(RootScreenTest, StartsOnCompare) {
    RootScreen& root = harness.show();

    EXPECT_EQ(root.destination(), Place::Draft);
    EXPECT_EQ(file(), compareFile);
    EXPECT_EQ(root.screen(), root.draft());
}

TEST_F(RootScreenTest, StartsWhereTheModelStands) {
    harness.start().destination = Screen::dataset;
    const RootScreen root(harness.model(), harness.services());

    EXPECT_EQ(root.destination(), Place::Dataset);
    EXPECT_NE(root.screenFile(), QString::fromLatin1(compareFile));
}

TEST_F(RootScreenTest, EachEntryOfTheNavigationSetsItsDestination) {
    RootScreen& root = harness.show();
    for (const auto& [place, screen] : {
             std::pair(Place::History, Screen::history),
             std::pair(Place::Scores, Screen::scores),
             std::pair(Place::Dataset, Screen::dataset),
             std::pair(Place::Models, Screen::models),
             std::pair(Place::Categories, Screen::categories),
             std::pair(Place::Batches, Screen::batches),
             std::pair(Place::Draft, Screen::draft),
         }) {
        goTo(place);

        EXPECT_EQ(*harness.model().destination, Destination(screen));
        EXPECT_EQ(root.destination(), place);
        EXPECT_EQ(file() == compareFile, place == Place::Draft);
    }
}

TEST_F(RootScreenTest, GoingElsewhereAndBackFindsTheComparisonStillOpen) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    harness.show();
    harness.model().activeRunID = run.id;

    goTo(Place::History);
    goTo(Place::Draft);

    EXPECT_EQ(*harness.model().activeRunID, run.id);
    EXPECT_EQ(file(), compareFile);
}

TEST_F(RootScreenTest, ANewComparisonLeadsToACleanCompareScreenFromAnywhere) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    RootScreen& root = harness.show();
    harness.model().activeRunID = run.id;
    goTo(Place::Models);

    root.newComparison();
    ScreenHarness::endTurn();

    EXPECT_EQ(root.destination(), Place::Draft);
    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
    EXPECT_EQ(root.screen(), root.draft());
}

TEST_F(RootScreenTest, ARunHasAScreenOfItsOwn) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    RootScreen& root = harness.show();

    show(RunScreen{run.id});

    EXPECT_EQ(root.destination(), Place::Run);
    EXPECT_NE(file(), compareFile);
}

TEST_F(RootScreenTest, ARunThatDoesNotExistShowsCompareUnderNoEntry) {
    RootScreen& root = harness.show();

    show(RunScreen{UUID::random()});

    EXPECT_EQ(root.destination(), Place::Run);
    EXPECT_EQ(file(), compareFile);
    EXPECT_EQ(root.screen(), root.draft());
}

TEST_F(RootScreenTest, ARunThatIsDeletedWhileItShowsGivesWayToCompare) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    RootScreen& root = harness.show();
    show(RunScreen{run.id});

    harness.model().library.removeRun(run.id);
    ScreenHarness::endTurn();

    EXPECT_EQ(root.destination(), Place::Run);
    EXPECT_EQ(file(), compareFile);
}

TEST_F(RootScreenTest, AnotherRunIsAnotherScreen) {
    const QuorlRun first = makeRun();
    const QuorlRun second = makeRun();
    harness.file().insertRun(first);
    harness.file().insertRun(second);
    RootScreen& root = harness.show();
    show(RunScreen{first.id});
    const QSignalSpy screens(&root, &RootScreen::screenChanged);

    show(RunScreen{second.id});

    EXPECT_EQ(screens.count(), 1);
}

TEST_F(RootScreenTest, AScreenLivesAsLongAsItIsVisited) {
    RootScreen& root = harness.show();
    goTo(Place::History);
    const QPointer<QObject> first(root.screen());
    ASSERT_NE(first, nullptr);

    goTo(Place::Dataset);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(first, nullptr);

    goTo(Place::History);
    EXPECT_NE(root.screen(), nullptr);
}

TEST_F(RootScreenTest, WhatIsDrawnOfAScreenMayStillReadItWhileItGoes) {
    RootScreen& root = harness.show();
    goTo(Place::History);
    const QPointer<QObject> left(root.screen());
    bool wasThere = false;
    QObject::connect(&root, &RootScreen::screenChanged, [&] { wasThere = !left.isNull(); });

    goTo(Place::Draft);

    EXPECT_TRUE(wasThere);
}

TEST_F(RootScreenTest, AChangeThatLeadsNowhereIsNotTold) {
    RootScreen& root = harness.show();
    goTo(Place::History);
    const QSignalSpy destinations(&root, &RootScreen::destinationChanged);
    const QSignalSpy screens(&root, &RootScreen::screenChanged);

    goTo(Place::History);
    harness.model().library.removeRun(UUID::random());
    ScreenHarness::endTurn();

    EXPECT_EQ(destinations.count(), 0);
    EXPECT_EQ(screens.count(), 0);
}

TEST_F(RootScreenTest, TheDesktopsWishForLessMotionIsFollowed) {
    harness.motion.set(true);
    RootScreen& root = harness.show();
    EXPECT_FALSE(root.motion().isAllowed());

    harness.motion.set(false);
    EXPECT_TRUE(root.motion().isAllowed());
}

} // namespace
} // namespace quorl::test
