#include "screens/kit/KitHarness.h"

namespace quorl::test {
namespace {

class KitMenus : public KitTest {
protected:
    KitMenus() { open("Menus"); }

    void openByKey() {
        tabTo("button");
        press(Qt::Key_Space);
        ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    }

    QObject& menu() { return find<QObject>("menu"); }
    QObject& inside() { return find<QObject>("inside"); }
};

TEST_F(KitMenus, OpenBelowTheirButtonAndCloseByItToo) {
    QQuickItem& button = find("button");
    click(button);
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    QQuickItem* panel = menu().property("contentItem").value<QQuickItem*>()->parentItem();
    EXPECT_EQ(panel->mapToScene({0, 0}), button.mapToScene({0, button.height() + 4}));

    click(button);
    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
    EXPECT_TRUE(hasKeys(button));
}

TEST_F(KitMenus, AreButtonsWithAMenuToAScreenReader) {
    EXPECT_EQ(accessible(find("button")).role(), QAccessible::ButtonMenu);
    EXPECT_EQ(nameOf(find("button")), "Tools");
    EXPECT_EQ(accessible(find("right")).role(), QAccessible::ButtonMenu);
    EXPECT_EQ(nameOf(find("right")), "Actions for Zun");

    openByKey();
    QQuickItem* entry = window.activeFocusItem();
    EXPECT_EQ(accessible(*entry).role(), QAccessible::MenuItem);
    EXPECT_EQ(nameOf(*entry), "Models");
}

TEST_F(KitMenus, AreWalkedByTheArrowsAndChosenFromByReturn) {
    openByKey();
    press(Qt::Key_Return);

    EXPECT_EQ(log(), "models ");
    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
    EXPECT_TRUE(hasKeys(find("button")));
    EXPECT_TRUE(find("button").property("visualFocus").toBool());
}

TEST_F(KitMenus, OpenByTheDownKeyAndAreChosenFromBySpace) {
    tabTo("button");
    press(Qt::Key_Down);
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    press(Qt::Key_Space);

    EXPECT_EQ(log(), "models ");
}

TEST_F(KitMenus, AreChosenFromByAClick) {
    click(find("button"));
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    click(*findShown("Models"));

    EXPECT_EQ(log(), "models ");
    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
    EXPECT_TRUE(hasKeys(find("button")));
    EXPECT_FALSE(find("button").property("visualFocus").toBool());
}

TEST_F(KitMenus, OpenAgainWhileTheyStillFadeOut) {
    click(find("button"));
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    QTest::mouseClick(&window, Qt::LeftButton, {}, middle(*findShown("Models")));
    QTest::mouseClick(&window, Qt::LeftButton, {}, middle(find("button")));

    EXPECT_TRUE(waitFor([&] { return isOpen(menu()); }));
}

TEST_F(KitMenus, DoNothingForAnEntryThatIsOff) {
    click(find("button"));
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    click(*findShown("Off"));

    EXPECT_EQ(log(), "");
    EXPECT_TRUE(isOpen(menu()));
}

TEST_F(KitMenus, CloseByEscapeAndByAClickOutside) {
    openByKey();
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
    EXPECT_TRUE(hasKeys(find("button")));

    openByKey();
    clickAt({600, 500});
    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
}

TEST_F(KitMenus, LetTheKeyboardGoWhereTheClickOutsideHasPutIt) {
    openByKey();
    click(find("other"));

    EXPECT_TRUE(waitFor([&] { return isGone(menu()); }));
    EXPECT_TRUE(hasKeys(find("other")));
}

TEST_F(KitMenus, InsideAnotherAreEnteredAndLeftByTheArrowsAndEscape) {
    openByKey();
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    while (keys() != "Motion")
        press(Qt::Key_Down);
    press(Qt::Key_Right);
    ASSERT_TRUE(waitFor([&] { return isOpen(inside()); }));
    EXPECT_EQ(keys(), "System setting");
    EXPECT_TRUE(accessible(*window.activeFocusItem()).state().checked);

    press(Qt::Key_Left);
    EXPECT_TRUE(waitFor([&] { return isGone(inside()); }));
    EXPECT_TRUE(isOpen(menu()));
    EXPECT_EQ(keys(), "Motion");

    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([&] { return isOpen(inside()); }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(inside()); }));
    EXPECT_TRUE(isOpen(menu()));

    press(Qt::Key_Right);
    ASSERT_TRUE(waitFor([&] { return isOpen(inside()); }));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(log(), "reduced ");
    EXPECT_TRUE(waitFor([&] { return isGone(menu()) && isGone(inside()); }));
    EXPECT_TRUE(hasKeys(find("button")));
}

TEST_F(KitMenus, ThatAreTooHighScrollInsideTheWindow) {
    tabTo("right");
    press(Qt::Key_Space);
    QObject& menu = find<QObject>("long");
    ASSERT_TRUE(waitFor([&] { return isOpen(menu); }));
    QQuickItem* list = menu.property("contentItem").value<QQuickItem*>();
    QQuickItem* panel = list->parentItem();
    const QPointF place = panel->mapToScene({0, 0});
    EXPECT_EQ(place.y(), 12);
    EXPECT_EQ(panel->height(), window.height() - 24);
    EXPECT_EQ(place.x() + panel->width(), find("right").mapToScene({find("right").width(), 0}).x());

    press(Qt::Key_End);
    for (int step = 0; step < 59; ++step)
        press(Qt::Key_Down);
    EXPECT_GT(list->property("contentY").toReal(), 1000);
    press(Qt::Key_Return);
    EXPECT_EQ(log(), "Entry 59 ");
}

TEST_F(KitMenus, OpenAboveAButtonThatIsLow) {
    click(find("low"));
    QObject& menu = find<QObject>("above");
    ASSERT_TRUE(waitFor([&] { return isOpen(menu); }));

    QQuickItem* panel = menu.property("contentItem").value<QQuickItem*>()->parentItem();
    EXPECT_EQ(panel->mapToScene({0, panel->height()}).y(), find("low").y() - 4);
}

TEST_F(KitMenus, ReturnTheKeyboardToTheirButtonAfterWhatAnEntryHasOpened) {
    openByKey();
    while (keys() != "Delete")
        press(Qt::Key_Down);
    press(Qt::Key_Return);
    QObject& alert = find<QObject>("alert");
    ASSERT_TRUE(waitFor([&] { return isOpen(alert) && isGone(menu()); }));
    EXPECT_EQ(keys(), "Cancel");

    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(alert); }));
    EXPECT_TRUE(hasKeys(find("button")));
    EXPECT_TRUE(find("button").property("visualFocus").toBool());
}

TEST_F(KitMenus, OpenedByTheMouseShowNoRingAfterWhatHasOpenedSince) {
    click(find("button"));
    ASSERT_TRUE(waitFor([&] { return isOpen(menu()); }));
    click(*findShown("Models"));
    ASSERT_TRUE(waitFor([&] { return isGone(menu()); }));
    QObject& alert = find<QObject>("alert"); // as a choice may open it a turn later
    QMetaObject::invokeMethod(&alert, "open");
    ASSERT_TRUE(waitFor([&] { return isOpen(alert); }));

    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(alert); }));
    EXPECT_TRUE(hasKeys(find("button")));
    EXPECT_FALSE(find("button").property("visualFocus").toBool());

    press(Qt::Key_Tab);
    press(Qt::Key_Backtab);
    EXPECT_TRUE(find("button").property("visualFocus").toBool());
}

} // namespace
} // namespace quorl::test
