#include "screens/WindowTest.h"

#include <QGuiApplication>
#include <QScreen>

namespace quorl::test {
namespace {

using Place = RootScreen::Destination;

// What surrounds the screens.
class ShellTest : public WindowTest {
protected:
    QQuickItem* findEntry(const char* name) { return find(QString::fromUtf8(name), QAccessible::PageTab); }
    QQuickItem* findMenu(const char* name) { return find(QString::fromUtf8(name), QAccessible::ButtonMenu); }
    QQuickItem* findMenuItem(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::MenuItem);
    }
    QQuickItem* findAlert(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::AlertMessage);
    }

    static bool isSelected(QQuickItem* entry) {
        return QAccessible::queryAccessibleInterface(entry)->state().selected;
    }
    // Those of the rail or of the toolbar.
    std::vector<std::string> selectedEntries() {
        std::vector<std::string> selected;
        for (const char* name : {"Compare", "History", "Dataset"}) {
            QQuickItem* entry = findEntry(name);
            if (entry && isSelected(entry))
                selected.emplace_back(name);
        }
        return selected;
    }

    void openTools() {
        click(findMenu("Tools"));
        EXPECT_TRUE(waitFor([&] { return findMenuItem("Models") != nullptr; }));
    }

    void choose(const char* entry) {
        click(findMenuItem(entry));
        EXPECT_TRUE(waitFor([&] { return findMenuItem(entry) == nullptr; }));
    }

    Destination destination() { return *harness.model().destination; }
};

TEST_F(ShellTest, FromAWidthOf980OnTheRailStandsBesideTheScreen) {
    open({980, 800});
    EXPECT_NE(findEntry("Compare"), nullptr);
    EXPECT_EQ(findEntry("History")->mapToScene({}).toPoint(), QPoint(12, 128));
    EXPECT_EQ(findEntry("History")->width(), 179);
    EXPECT_EQ(findText("Your model responses will appear here.")->mapToScene({}).x() > 204, true);

    window().resize(979, 800);
    settle();
    EXPECT_EQ(findEntry("Compare"), nullptr);
    EXPECT_LT(findEntry("History")->mapToScene({}).y(), 56);
    EXPECT_NE(findButton("Quorl"), nullptr);
    EXPECT_NE(findMenu("Tools"), nullptr);
}

TEST_F(ShellTest, BothOfferTheSamePlaces) {
    open();
    for (const int width : {1240, 420}) {
        window().resize(width, 600);
        settle();

        click(findEntry("History"));
        EXPECT_EQ(destination(), Destination(Screen::history));
        EXPECT_EQ(selectedEntries(), std::vector<std::string>{"History"});

        click(findEntry("Dataset"));
        EXPECT_EQ(destination(), Destination(Screen::dataset));
        EXPECT_EQ(selectedEntries(), std::vector<std::string>{"Dataset"});

        click(findButton("Quorl"));
        EXPECT_EQ(destination(), Destination(Screen::draft));
    }
}

TEST_F(ShellTest, TheEntryOfTheScreenIsSelectedAndThoseOfTheToolsHaveNone) {
    open();
    EXPECT_EQ(selectedEntries(), std::vector<std::string>{"Compare"});

    for (const Destination& place :
         {Destination(Screen::models), Destination(Screen::scores), Destination(RunScreen{UUID::random()})}) {
        harness.model().destination = place;
        settle();
        EXPECT_EQ(selectedEntries(), std::vector<std::string>());
    }
    EXPECT_NE(findText("Your model responses will appear here."), nullptr); // there is no such run

    click(findEntry("Compare"));
    EXPECT_EQ(selectedEntries(), std::vector<std::string>{"Compare"});
}

TEST_F(ShellTest, GoingElsewhereAndBackKeepsTheComparisonAndItsAnswers) {
    addChosenModel("up");
    harness.endpoint.answer("up", says("That way."));
    open();
    compare();

    click(findEntry("History"));
    EXPECT_EQ(findSelectable("That way."), nullptr);
    click(findEntry("Compare"));

    EXPECT_NE(findSelectable("That way."), nullptr);
}

TEST_F(ShellTest, ControlNLeadsToACleanCompareScreenFromAnywhere) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    open();
    for (const Destination& place :
         {Destination(Screen::history), Destination(Screen::dataset), Destination(Screen::models),
          Destination(Screen::scores), Destination(Screen::categories), Destination(Screen::batches),
          Destination(RunScreen{run.id}), Destination(Screen::draft)}) {
        harness.model().activeRunID = run.id;
        harness.model().destination = place;
        settle();

        press(Qt::Key_N, Qt::ControlModifier);

        EXPECT_EQ(destination(), Destination(Screen::draft));
        EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
        EXPECT_EQ(focused(), "Question");
    }
}

TEST_F(ShellTest, ControlNWaitsForTheAlert) {
    open();
    click(findEntry("History"));
    harness.model().alertMessage = "disk I/O error";
    settle();

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(destination(), Destination(Screen::history));
}

TEST_F(ShellTest, TabGoesThroughTheNavigationInOrderAndOnIntoTheScreen) {
    open();
    click(findEntry("History"));
    for (int stops = 0; focused() != "Quorl" && stops < 20; ++stops)
        press(Qt::Key_Backtab);

    EXPECT_EQ(tabStops(5), (std::vector<std::string>{"Quorl", "Compare", "History", "Dataset", "Tools"}));
}

TEST_F(ShellTest, TabGoesThroughTheToolbarInOrder) {
    open({420, 800});
    findButton("Quorl")->forceActiveFocus(Qt::TabFocusReason);

    EXPECT_EQ(tabStops(5), (std::vector<std::string>{"Quorl", "History", "Dataset", "Tools", "Ask models"}));
}

TEST_F(ShellTest, EveryPlaceHasItsSymbol) {
    open();
    EXPECT_EQ(symbolsOn(findEntry("Compare")), u"\ue8f3");
    EXPECT_EQ(symbolsOn(findEntry("History")), u"\ue8b5");
    EXPECT_EQ(symbolsOn(findEntry("Dataset")), u"\ue97f");
    EXPECT_EQ(symbolsOn(findMenu("Tools")), u"\ue5d3");

    openTools();
    EXPECT_EQ(symbolsOn(findMenuItem("Models")), u"\ue322");
    EXPECT_EQ(symbolsOn(findMenuItem("Performance")), u"\ue26b");
    EXPECT_EQ(symbolsOn(findMenuItem("Categories")), u"\ue893");
    EXPECT_EQ(symbolsOn(findMenuItem("API batches")), u"\ue3e0");
    click(findMenuItem("Motion"));
    ASSERT_TRUE(waitFor([&] { return findMenuItem("Full motion") != nullptr; }));
    EXPECT_EQ(symbolsOn(findMenuItem("System setting")), u"\ue5ca");
    EXPECT_EQ(symbolsOn(findMenuItem("Full motion")), u"");
}

TEST_F(ShellTest, TheToolbarHasSymbolsOfItsOwnWhichTheirHelpTextsName) {
    open({420, 800});

    EXPECT_EQ(symbolsOn(findEntry("History")), u"\ue8b5");
    EXPECT_EQ(symbolsOn(findEntry("Dataset")), u"\ue2c8");
    EXPECT_EQ(symbolsOn(findMenu("Tools")), u"\ue5d3");
    EXPECT_EQ(findEntry("Dataset")->property("helpText"), QStringLiteral("Dataset"));
    EXPECT_EQ(findMenu("Tools")->property("helpText"), QStringLiteral("Tools"));
}

TEST_F(ShellTest, UpAndDownMoveAmongTheEntriesAndReturnGoes) {
    open();
    findEntry("Compare")->forceActiveFocus(Qt::TabFocusReason);

    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "History");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Dataset");
    press(Qt::Key_Up);
    EXPECT_EQ(focused(), "History");
    EXPECT_EQ(destination(), Destination(Screen::draft));

    press(Qt::Key_Return);
    EXPECT_EQ(destination(), Destination(Screen::history));
    EXPECT_EQ(focused(), "History");
}

TEST_F(ShellTest, AnEntrySaysWhatItIsFor) {
    open();

    EXPECT_EQ(descriptionOf(findButton("Quorl")), "Comparison workspace");
    EXPECT_EQ(descriptionOf(findMenu("Tools")), "Models, performance, categories, and API batches");
}

TEST_F(ShellTest, TheToolsLeadToTheOtherScreens) {
    open();
    for (const auto& [entry, screen] :
         {std::pair("Models", Screen::models), std::pair("Performance", Screen::scores),
          std::pair("Categories", Screen::categories), std::pair("API batches", Screen::batches)}) {
        openTools();
        choose(entry);

        EXPECT_EQ(destination(), Destination(screen));
    }
}

TEST_F(ShellTest, EscapeClosesTheTools) {
    open();
    openTools();

    press(Qt::Key_Escape);

    EXPECT_TRUE(waitFor([&] { return findMenuItem("Models") == nullptr; }));
    EXPECT_EQ(destination(), Destination(Screen::draft));
}

TEST_F(ShellTest, MotionIsChosenInAMenuOfItsOwn) {
    open();
    openTools();
    click(findMenuItem("Motion"));
    ASSERT_TRUE(waitFor([&] { return findMenuItem("Full motion") != nullptr; }));
    const auto isMarked = [&](const char* entry) {
        return bool(QAccessible::queryAccessibleInterface(findMenuItem(entry))->state().checked);
    };
    EXPECT_TRUE(isMarked("System setting"));
    EXPECT_FALSE(isMarked("Reduced motion"));
    EXPECT_FALSE(isMarked("Full motion"));

    choose("Reduced motion");
    EXPECT_EQ(harness.defaults.string("quorl.motion.preference"), "reduced");

    openTools();
    click(findMenuItem("Motion"));
    ASSERT_TRUE(waitFor([&] { return findMenuItem("Full motion") != nullptr; }));
    EXPECT_TRUE(isMarked("Reduced motion"));
    EXPECT_FALSE(isMarked("System setting"));
}

TEST_F(ShellTest, APreferenceForMotionThatIsNoneIsMarkedNowhere) {
    harness.defaults.setString("quorl.motion.preference", "wild");
    open();
    openTools();
    click(findMenuItem("Motion"));
    ASSERT_TRUE(waitFor([&] { return findMenuItem("Full motion") != nullptr; }));

    for (const char* entry : {"System setting", "Reduced motion", "Full motion"})
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(findMenuItem(entry))->state().checked);
}

class DeletionTest : public ShellTest {
protected:
    DeletionTest() { harness.file().insertRun(run); }

    void ask() {
        harness.model().requestDelete({PendingDelete::Kind::run, run.id});
        settle();
        ASSERT_NE(findAlert("Delete this comparison?"), nullptr);
    }

    bool isThere() { return harness.model().library.findRun(run.id) != nullptr; }

    void expectCancelled() {
        EXPECT_TRUE(isThere());
        EXPECT_EQ(*harness.model().pendingDelete, std::nullopt);
        EXPECT_TRUE(waitFor([&] { return findAlert("Delete this comparison?") == nullptr; }));
    }

    const QuorlRun run = makeRun();
};

TEST_F(DeletionTest, ReturnAndEscapeCancel) {
    open();
    ask();
    EXPECT_EQ(focused(), "Cancel");
    press(Qt::Key_Return);
    expectCancelled();

    ask();
    press(Qt::Key_Escape);
    expectCancelled();
}

TEST_F(DeletionTest, OnlyItsButtonDeletes) {
    open();
    ask();

    click(findButton("Delete"));

    EXPECT_FALSE(isThere());
    EXPECT_TRUE(waitFor([&] { return findAlert("Delete this comparison?") == nullptr; }));
}

TEST_F(DeletionTest, AMessageThatCameMeanwhileFollows) {
    open();
    ask();
    harness.model().alertMessage = "disk I/O error";
    settle();
    EXPECT_EQ(findAlert("Something needs attention"), nullptr);

    click(findButton("Cancel"));

    EXPECT_TRUE(waitFor([&] { return focused() == "OK"; }));
    EXPECT_NE(findAlert("Something needs attention"), nullptr);
    EXPECT_NE(findSelectable("disk I/O error"), nullptr);
}

class ToastTest : public ShellTest {
protected:
    // As it stands when it has come.
    QQuickItem* announce(const char* title, const char* detail) {
        harness.model().announce(title, detail, "tray.full", false);
        EXPECT_TRUE(waitFor([&] {
            QQuickItem* toast = findAlert(title);
            return toast && toast->opacity() == 1;
        }));
        return findAlert(title);
    }
};

TEST_F(ToastTest, StandsInTheCornerUntilItsTimeIsOver) {
    open();

    QQuickItem* toast = announce("Saved to dataset", "1 example logged");

    EXPECT_EQ(descriptionOf(toast), "1 example logged");
    EXPECT_EQ(toast->width(), 280);
    EXPECT_EQ(toast->mapToScene({toast->width(), toast->height()}).toPoint(), QPoint(1240 - 24, 800 - 24));

    harness.loop.advance(std::chrono::seconds(3));
    EXPECT_TRUE(waitFor([&] { return findAlert("Saved to dataset") == nullptr; }));
}

TEST_F(ToastTest, ANewOneTakesItsPlace) {
    open();
    announce("Saved to dataset", "1 example logged");

    QQuickItem* toast = announce("Correction saved", "2 examples logged");

    EXPECT_EQ(findAlert("Saved to dataset"), nullptr);
    EXPECT_EQ(descriptionOf(toast), "2 examples logged");
}

TEST_F(ToastTest, TakesNoClicks) {
    open({420, 600});
    click(findEntry("History"));
    QQuickItem* toast = announce("Saved to dataset", "1 example logged");

    for (QQuickItem* item = toast; item; item = item->childItems().value(0))
        EXPECT_EQ(item->acceptedMouseButtons(), Qt::NoButton);
    EXPECT_EQ(focused(), "History");
}

// That it is read is for the tests with a screen reader's bus: this platform has none.
TEST_F(ShellTest, WhatIsAnnouncedIsTheNameOfANotification) {
    open();

    harness.root().announcer()->announce(QStringLiteral("Zun has answered."));

    EXPECT_NE(find(QStringLiteral("Zun has answered."), QAccessible::Notification), nullptr);
}

TEST_F(ShellTest, WhatIsAnnouncedStaysWhileMoreIs) {
    open();

    harness.root().announcer()->announce(QStringLiteral("Zun has answered."));
    harness.root().announcer()->announce(QStringLiteral("Nuvel has answered."));

    EXPECT_NE(find(QStringLiteral("Zun has answered."), QAccessible::Notification), nullptr);
    EXPECT_NE(find(QStringLiteral("Nuvel has answered."), QAccessible::Notification), nullptr);
}

class WindowFrameTest : public ShellTest {
protected:
    WindowFrame frame() { return {window().x(), window().y(), window().width(), window().height()}; }

    // As the window stands by itself.
    void start() {
        mainWindow = std::make_unique<MainWindow>(harness.show());
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&mainWindow->window()));
        QCoreApplication::processEvents();
    }

    QQuickWindow& window() { return mainWindow->window(); }

    std::unique_ptr<MainWindow> mainWindow;
};

TEST_F(WindowFrameTest, AWindowOpensWhereItWasLeft) {
    harness.windowState.keptFrame = WindowFrame{10, 20, 500, 600};

    start();

    EXPECT_EQ(frame(), (WindowFrame{10, 20, 500, 600}));
}

TEST_F(WindowFrameTest, AWindowForAScreenThatHasGoneIsBroughtBack) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    harness.windowState.keptFrame = WindowFrame{0, 0, 3000, 2000};

    start();

    const int width = std::min(1240, screen.width() - 48);
    const int height = std::min(800, screen.height() - 48);
    EXPECT_EQ(frame(), (WindowFrame{screen.x() + (screen.width() - width) / 2,
                                    screen.y() + (screen.height() - height) / 2, width, height}));
}

TEST_F(WindowFrameTest, IsKeptOnceTheWindowRestsAndWhenItCloses) {
    start();
    harness.windowState.keptFrame = std::nullopt;

    window().setGeometry(30, 40, 500, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(harness.windowState.keptFrame, std::nullopt);
    EXPECT_TRUE(waitFor([&] { return harness.windowState.keptFrame.has_value(); }));
    EXPECT_EQ(harness.windowState.keptFrame, (WindowFrame{30, 40, 500, 600}));

    window().setGeometry(30, 40, 600, 700);
    window().close();
    EXPECT_EQ(harness.windowState.keptFrame, (WindowFrame{30, 40, 600, 700}));
}

TEST_F(WindowFrameTest, OfAWindowThatFillsTheScreenTheOneBeforeIsKept) {
    start();
    harness.windowState.keptFrame = WindowFrame{30, 40, 500, 600};

    window().showMaximized();
    QCoreApplication::processEvents();
    window().close();

    EXPECT_EQ(harness.windowState.keptFrame, (WindowFrame{30, 40, 500, 600}));
}

} // namespace
} // namespace quorl::test
