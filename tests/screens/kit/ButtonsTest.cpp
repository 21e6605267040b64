#include "screens/kit/KitHarness.h"

#include <array>

namespace quorl::test {
namespace {

class KitButtons : public KitTest {
protected:
    KitButtons() { open("Buttons"); }
};

constexpr std::array pressable{"primary", "secondary", "text",      "icon",
                               "thumb",   "bookmark",  "workspace", "entry"};

TEST_F(KitButtons, AreAllPressedByClickSpaceAndReturn) {
    for (const char* name : pressable) {
        clearLog();
        click(find(name));
        tabTo(name);
        press(Qt::Key_Space);
        press(Qt::Key_Return);

        const std::string word = std::string(name) + " ";
        EXPECT_EQ(log(), word + word + word);
    }
}

TEST_F(KitButtons, LeaveControlReturnToTheWindow) {
    for (const char* name : pressable) {
        clearLog();
        tabTo(name);
        press(Qt::Key_Return, Qt::ControlModifier);

        EXPECT_EQ(log(), "run ") << name;
    }
}

TEST_F(KitButtons, ShowTheirRingForTheKeyboardOnly) {
    for (const char* name : pressable) {
        click(find(name));
        EXPECT_TRUE(hasKeys(find(name))) << name;
        EXPECT_FALSE(find(name).property("visualFocus").toBool()) << name;

        press(Qt::Key_Tab);
        press(Qt::Key_Backtab);
        EXPECT_TRUE(find(name).property("visualFocus").toBool()) << name;
    }
}

TEST_F(KitButtons, ThatAreOffAreFadedAndNoStopAndTakeNoPress) {
    click(find("off"));
    tabTo("entry");
    press(Qt::Key_Tab);

    EXPECT_EQ(log(), "");
    EXPECT_TRUE(hasKeys(find("narrow")));
    EXPECT_DOUBLE_EQ(find("off").opacity(), 0.4);
}

TEST_F(KitButtons, ArePressedByAssistiveTechnologiesUnlessTheyAreOff) {
    const auto pressFromOutside = [&](const char* button) {
        accessible(find(button)).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        return log();
    };

    EXPECT_EQ(pressFromOutside("off"), "");
    EXPECT_EQ(pressFromOutside("primary"), "primary ");
}

TEST_F(KitButtons, ExplainThemselvesUnderThePointer) {
    QTest::mouseMove(&window, middle(find("primary")));
    settle();
    EXPECT_EQ(findShown("Asks all of them"), nullptr);

    EXPECT_TRUE(waitFor([&] { return findShown("Asks all of them") != nullptr; }));
}

TEST_F(KitButtons, ThatAreOffExplainThemselvesToo) {
    QTest::mouseMove(&window, middle(find("off")));
    EXPECT_TRUE(waitFor([&] { return findShown("Not now") != nullptr; }));

    QTest::mouseMove(&window, middle(find("icon")));
    EXPECT_TRUE(waitFor([&] { return findShown("Not now") == nullptr; }));
}

TEST_F(KitButtons, HaveTheirWordsForANameOrTheirHelpText) {
    EXPECT_EQ(nameOf(find("primary")), "Compare");
    EXPECT_EQ(accessible(find("primary")).text(QAccessible::Description), QStringLiteral("Asks all of them"));
    EXPECT_EQ(nameOf(find("icon")), "Options");
    EXPECT_EQ(accessible(find("icon")).text(QAccessible::Description), QString());
    EXPECT_EQ(nameOf(find("named")), "Actions for Zun");
    EXPECT_EQ(nameOf(find("info")), "Facts that every question may use");
    EXPECT_EQ(accessible(find("icon")).role(), QAccessible::Button);
}

TEST_F(KitButtons, KeepTheirSymbolAndCutTheirWordWhereThereIsNoRoom) {
    QQuickItem& button = find("narrow");
    ASSERT_EQ(button.width(), 80);

    auto* label = button.property("contentItem").value<QQuickItem*>();
    for (QQuickItem* child : label->childItems()) {
        const bool isInside = child->x() + child->width() <= label->width();
        EXPECT_TRUE(isInside || !child->isVisible());
    }
    EXPECT_TRUE(findShown("A word that is far too long")->property("truncated").toBool());
}

TEST_F(KitButtons, AThumbIsACheckBoxThatWaitsForTheModel) {
    QQuickItem& thumb = find("thumb");
    EXPECT_EQ(accessible(thumb).role(), QAccessible::CheckBox);
    EXPECT_EQ(nameOf(thumb), "Good answer");

    click(thumb);
    EXPECT_FALSE(accessible(thumb).state().checked);

    thumb.setProperty("checked", true);
    EXPECT_TRUE(accessible(thumb).state().checked);
}

TEST_F(KitButtons, ABookmarkSaysWhetherItIsSaved) {
    EXPECT_EQ(nameOf(find("bookmark")), "Save to dataset");

    find("bookmark").setProperty("saved", true);
    EXPECT_EQ(nameOf(find("bookmark")), "Saved to dataset");
}

TEST_F(KitButtons, DestinationsAreTabsOfWhichOneIsSelected) {
    EXPECT_EQ(accessible(find("workspace")).role(), QAccessible::PageTab);
    EXPECT_EQ(nameOf(find("workspace")), "History");
    EXPECT_TRUE(accessible(find("workspace")).state().selected);
    EXPECT_EQ(accessible(find("entry")).role(), QAccessible::PageTab);
    EXPECT_EQ(nameOf(find("entry")), "Dataset");
    EXPECT_FALSE(accessible(find("entry")).state().selected);
}

TEST_F(KitButtons, AnInfoButtonExplainsOnPressAndOnFocusAtOnce) {
    click(find("info"));
    EXPECT_TRUE(waitFor([&] { return findShown("Facts that every question may use") != nullptr; }));

    click(find("narrow"));
    EXPECT_TRUE(waitFor([&] { return findShown("Facts that every question may use") == nullptr; }));

    press(Qt::Key_Tab);
    EXPECT_TRUE(hasKeys(find("info")));
    EXPECT_TRUE(waitFor([&] { return findShown("Facts that every question may use") != nullptr; }));
}

TEST_F(KitButtons, AnInfoButtonIsHitAroundItsSmallSymbolToo) {
    const QPoint beside = middle(find("info")) + QPoint(-12, 11);

    clickAt(beside);

    EXPECT_TRUE(hasKeys(find("info")));
}

} // namespace
} // namespace quorl::test
