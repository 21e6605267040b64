#include "screens/kit/KitHarness.h"

namespace quorl::test {
namespace {

class KitPanels : public KitTest {
protected:
    KitPanels() { open("Panels"); }

    void openBy(const char* button, QObject& panel) {
        tabTo(button);
        press(Qt::Key_Space);
        ASSERT_TRUE(waitFor([&] { return isOpen(panel); }));
    }

    // Where the panel stands in the window.
    QRectF placeOf(QObject& panel) {
        QQuickItem* content = panel.property("contentItem").value<QQuickItem*>()->parentItem();
        return content->mapRectToScene({0, 0, content->width(), content->height()});
    }

    QObject& popover() { return find<QObject>("popover"); }
    QObject& sheet() { return find<QObject>("sheet"); }
};

TEST_F(KitPanels, APopoverOpensUnderItsButtonAndInsideTheWindow) {
    openBy("options", popover());

    const QRectF place = placeOf(popover());
    QQuickItem& button = find("options");
    EXPECT_EQ(place.top(), button.y() + button.height() + 4);
    EXPECT_EQ(place.right(), button.x() + button.width());
    EXPECT_EQ(place.width(), 320);
}

TEST_F(KitPanels, APopoverTakesTheKeyboardAndKeepsItUntilEscape) {
    openBy("options", popover());
    EXPECT_EQ(keys(), "Question identifier (optional)");

    for (const char* stop : {"Add another question", "Rating", "Question identifier (optional)"}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(keys(), stop);
    }
    press(Qt::Key_Backtab);
    EXPECT_EQ(keys(), "Rating");

    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(popover()); }));
    EXPECT_EQ(keys(), "Options");
    EXPECT_TRUE(find("options").property("visualFocus").toBool());
}

TEST_F(KitPanels, APopoverStaysWhileAFieldInItIsEditedAndGoesByAClickOutside) {
    click(find("options"));
    ASSERT_TRUE(waitFor([&] { return isOpen(popover()); }));
    type("return");
    click(find("identifier"));
    EXPECT_TRUE(isOpen(popover()));

    clickAt({100, 500});
    EXPECT_TRUE(waitFor([&] { return isGone(popover()); }));
    EXPECT_FALSE(find("options").property("visualFocus").toBool());
}

TEST_F(KitPanels, APopoverGoesWhenTheKeyboardIsTakenElsewhere) {
    openBy("options", popover());

    find("paste").forceActiveFocus(Qt::OtherFocusReason);

    EXPECT_TRUE(waitFor([&] { return isGone(popover()); }));
    EXPECT_EQ(keys(), "Paste");
}

TEST_F(KitPanels, APopoverLeavesTheWindowItsShortcuts) {
    openBy("options", popover());

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(log(), "shortcut ");
    EXPECT_TRUE(isOpen(popover()));
}

TEST_F(KitPanels, APopoverIsClosedByItsButton) {
    click(find("options"));
    ASSERT_TRUE(waitFor([&] { return isOpen(popover()); }));

    click(find("options"));

    EXPECT_TRUE(waitFor([&] { return isGone(popover()); }));
}

TEST_F(KitPanels, APopoverThatGrowsStaysInTheWindowAndScrolls) {
    openBy("options", popover());
    find("more").setProperty("visible", true);
    settle();

    const QRectF place = placeOf(popover());
    EXPECT_GE(place.top(), 12);
    EXPECT_EQ(place.height(), window.height() - 24);

    press(Qt::Key_Backtab);
    EXPECT_EQ(keys(), "Rating");
    EXPECT_TRUE(place.contains(find("picker").mapToScene({10, 10})));
}

TEST_F(KitPanels, APopoverInANarrowWindowKeepsFromBothEdges) {
    window.resize(300, 600);
    root->setSize(window.size());
    settle();
    openBy("options", popover());

    EXPECT_EQ(placeOf(popover()).left(), 12);
    EXPECT_EQ(placeOf(popover()).right(), 288);
}

TEST_F(KitPanels, EscapeClosesTheTopmostOnly) {
    openBy("options", popover());
    press(Qt::Key_Backtab);
    press(Qt::Key_Space);
    EXPECT_NE(findShown("1 to 10"), nullptr);

    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return findShown("1 to 10") == nullptr; }));
    EXPECT_TRUE(isOpen(popover()));
    EXPECT_EQ(keys(), "Rating");

    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(popover()); }));
}

TEST_F(KitPanels, ASheetStandsInTheMiddleAndKeepsTheKeyboard) {
    openBy("paste", sheet());
    EXPECT_EQ(keys(), "Questions to paste");
    EXPECT_EQ(placeOf(sheet()).width(), 440);
    EXPECT_EQ(placeOf(sheet()).center().x(), window.width() / 2);

    for (const char* stop : {"Category", "Cancel", "Add", "Questions to paste"}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(keys(), stop);
    }
    clickAt({5, 5});
    EXPECT_TRUE(isOpen(sheet()));
    EXPECT_EQ(log(), "");
}

TEST_F(KitPanels, ASheetIsADialogToAScreenReader) {
    openBy("paste", sheet());
    auto* body = sheet().property("contentItem").value<QQuickItem*>();

    EXPECT_EQ(accessible(*body).role(), QAccessible::Dialog);
    EXPECT_EQ(nameOf(*body), "Paste questions");
}

TEST_F(KitPanels, ASheetIsCancelledOnceByEscapeAndByItsButton) {
    openBy("paste", sheet());
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return isGone(sheet()); }));
    EXPECT_EQ(log(), "cancelled ");
    EXPECT_EQ(keys(), "Paste");

    clearLog();
    openBy("paste", sheet());
    click(find("cancel"));
    EXPECT_TRUE(waitFor([&] { return isGone(sheet()); }));
    EXPECT_EQ(log(), "cancelled ");
}

TEST_F(KitPanels, EscapeInASheetClosesAnOpenMenuFirst) {
    openBy("paste", sheet());
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    ASSERT_NE(findShown("One"), nullptr);
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return findShown("One") == nullptr; }));
    EXPECT_TRUE(isOpen(sheet()));
    EXPECT_EQ(keys(), "Category");

    press(Qt::Key_Return);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(log(), "chosen1 ");
    EXPECT_EQ(keys(), "Category");
}

TEST_F(KitPanels, ASheetThatIsTooHighKeepsItsButtonsInSight) {
    window.resize(375, 300);
    root->setSize(window.size());
    settle();
    openBy("paste", sheet());

    EXPECT_EQ(placeOf(sheet()), QRectF(20, 20, 335, 260));
    QQuickItem& add = find("addLines");
    EXPECT_TRUE(placeOf(sheet()).contains(add.mapRectToScene({0, 0, add.width(), add.height()})));
}

TEST_F(KitPanels, AQuestionIsAnsweredByReturnWithTheHarmlessButton) {
    tabTo("remove");
    press(Qt::Key_Return);
    ASSERT_NE(findShown("Delete this comparison?"), nullptr);
    EXPECT_EQ(keys(), "Cancel");
    EXPECT_TRUE(window.activeFocusItem()->property("visualFocus").toBool());

    press(Qt::Key_Return);
    EXPECT_EQ(log(), "kept ");
    EXPECT_TRUE(waitFor([&] { return findShown("Delete this comparison?") == nullptr; }));
    EXPECT_EQ(keys(), "Remove");
}

TEST_F(KitPanels, AQuestionDeletesOnlyByItsOwnButton) {
    click(find("remove"));
    press(Qt::Key_Tab);
    EXPECT_EQ(keys(), "Delete");
    press(Qt::Key_Return);
    EXPECT_EQ(log(), "deleted ");
}

TEST_F(KitPanels, AQuestionIsCancelledByEscape) {
    click(find("remove"));
    press(Qt::Key_Escape);

    EXPECT_EQ(log(), "kept ");
    EXPECT_TRUE(waitFor([&] { return findShown("Delete this comparison?") == nullptr; }));
}

TEST_F(KitPanels, AnAlertHasOneButtonWhichHasTheKeyboard) {
    click(find("warn"));
    EXPECT_EQ(keys(), "OK");
    press(Qt::Key_Tab); // to the message, which can be copied
    press(Qt::Key_Tab);
    EXPECT_EQ(keys(), "OK");
    QQuickItem* body = window.activeFocusItem()->parentItem()->parentItem();
    EXPECT_EQ(accessible(*body).role(), QAccessible::AlertMessage);
    EXPECT_EQ(nameOf(*body), "Something needs attention");
    EXPECT_EQ(accessible(*body).text(QAccessible::Description), QStringLiteral("Paste a key first."));

    press(Qt::Key_Space);
    EXPECT_TRUE(waitFor([&] { return findShown("Something needs attention") == nullptr; }));
    EXPECT_EQ(keys(), "Warn");
}

TEST_F(KitPanels, AnAlertThatIsTakenAwayGivesTheKeyboardBack) {
    click(find("warn"));
    EXPECT_EQ(keys(), "OK");

    find<QObject>("warning").setProperty("active", false);

    EXPECT_TRUE(waitFor([&] { return findShown("Something needs attention") == nullptr; }));
    settle();
    EXPECT_EQ(keys(), "Warn");
}

} // namespace
} // namespace quorl::test
