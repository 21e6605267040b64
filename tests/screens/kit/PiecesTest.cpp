#include "screens/kit/KitHarness.h"

#include <cmath>

namespace quorl::test {
namespace {

class KitPieces : public KitTest {
protected:
    KitPieces() { open("Pieces"); }

    void announce(const char* id, const char* title) {
        QQuickItem& toast = find("toast");
        toast.setProperty("title", QString::fromUtf8(title));
        toast.setProperty("detail", QStringLiteral("Kept as a correct answer."));
        toast.setProperty("symbol", QStringLiteral("hand.thumbsup"));
        toast.setProperty("feedbackID", QString::fromUtf8(id));
        settle();
    }
};

TEST_F(KitPieces, ThePaletteHasTwelveOpaqueColours) {
    EXPECT_EQ(
        root->property("palette").toString().toStdString(),
        "#F2EFE7 #F7F4EC #ECE9E0 #C8DFDB #1F3447 #58718A #3368A0 #28547F #66A3BF #C8DFDB #3368A0 #B42318");
}

TEST_F(KitPieces, TheMarkMovesOnlyWhileItIsAtWork) {
    QQuickItem& mark = find("mark");
    EXPECT_FALSE(mark.property("isMoving").toBool());

    mark.setProperty("animates", true);
    if (mark.property("isMoving").toBool()) { // unless the desktop wants it to stand still
        EXPECT_TRUE(waitFor([&] { return mark.property("lift").toReal() > 0.01; }));
    }

    mark.setProperty("animates", false);
    EXPECT_EQ(mark.property("lift").toReal(), 0);
    EXPECT_EQ(mark.size(), QSizeF(40, 40));
}

TEST_F(KitPieces, TheMarkStandsOnWholePixels) {
    const QList<QQuickItem*> parts = find("mark").childItems().first()->childItems();
    ASSERT_EQ(parts.size(), 5);

    for (const QQuickItem* part : parts.first(3)) { // the others are slanting strokes
        EXPECT_EQ(part->x(), std::round(part->x()));
        EXPECT_EQ(part->width(), std::round(part->width()));
    }
}

TEST_F(KitPieces, ALoaderSaysWhomItWaitsFor) {
    EXPECT_EQ(accessible(find("loader")).role(), QAccessible::ProgressBar);
    EXPECT_EQ(nameOf(find("loader")), "Waiting for a response from Zun");
    EXPECT_NE(findShown("Checking Zun"), nullptr);
    EXPECT_NE(findShown("Comparing this response"), nullptr);
    EXPECT_EQ(nameOf(find("compact")), "Collecting model responses");
    EXPECT_NE(findShown("Collecting"), nullptr);
}

TEST_F(KitPieces, TheRatingsAreCounted) {
    EXPECT_NE(findShown("1 of 4 rated"), nullptr);
    EXPECT_EQ(nameOf(find("rating")), "1 of 4 responses rated");
    EXPECT_FALSE(find("rating").property("isComplete").toBool());

    find("rating").setProperty("completed", 4);
    EXPECT_TRUE(find("rating").property("isComplete").toBool());
    EXPECT_NE(findShown("4 of 4 rated"), nullptr);
}

TEST_F(KitPieces, ABarFillsToItsShareAndSaysIt) {
    QQuickItem& bar = find("bar");
    EXPECT_EQ(accessible(bar).role(), QAccessible::ProgressBar);
    EXPECT_EQ(nameOf(bar), "Refund in full 71%");

    EXPECT_TRUE(waitFor([&] { return bar.property("filled").toReal() == 1; }));
    EXPECT_NEAR(bar.childItems().first()->width(), 71, 0.01);
}

TEST_F(KitPieces, FiguresInColumnsHaveOneWidthAndKeepTheirName) {
    EXPECT_EQ(find("figures").implicitWidth(), find("wider").implicitWidth());
    EXPECT_EQ(nameOf(find("figures")), "1.111");
}

TEST_F(KitPieces, ADotExplainsItself) {
    EXPECT_EQ(nameOf(find("dot")), "Add an API key.");
    QTest::mouseMove(&window, middle(find("dot")) + QPoint(9, 9));

    EXPECT_TRUE(waitFor([&] { return findShown("Add an API key.") != nullptr; }));
}

TEST_F(KitPieces, AToastComesIsReplacedAndGoesWithItsWords) {
    QQuickItem& toast = find("toast");
    EXPECT_FALSE(toast.isVisible());

    announce("1", "Correct answer");
    EXPECT_TRUE(waitFor([&] { return toast.opacity() == 1; }));
    EXPECT_NE(findShown("Correct answer"), nullptr);
    EXPECT_EQ(toast.width(), 280);
    EXPECT_EQ(toast.scale(), 1);
    EXPECT_EQ(accessible(toast).role(), QAccessible::AlertMessage);
    EXPECT_EQ(nameOf(toast), "Correct answer");

    announce("2", "Another one");
    EXPECT_LT(toast.opacity(), 1);
    EXPECT_EQ(findShown("Correct answer"), nullptr);
    EXPECT_TRUE(waitFor([&] { return toast.opacity() == 1; }));

    announce("", "");
    EXPECT_TRUE(toast.isVisible());
    EXPECT_NE(findShown("Another one"), nullptr);
    EXPECT_TRUE(waitFor([&] { return !toast.isVisible(); }));
}

TEST_F(KitPieces, AToastTakesNoClicks) {
    announce("1", "Correct answer");
    click(find("under"));

    EXPECT_EQ(log(), "under ");
}

TEST_F(KitPieces, ADividerIsDraggedWithinItsLimits) {
    QTest::mousePress(&window, Qt::LeftButton, {}, {351, 300});
    QTest::mouseMove(&window, {381, 300});
    QTest::mouseMove(&window, {600, 300});
    QTest::mouseMove(&window, {100, 300});
    QTest::mouseRelease(&window, Qt::LeftButton, {}, {100, 300});
    settle();

    EXPECT_EQ(log(), "380 440 300 ");
}

TEST_F(KitPieces, AHeaderHasItsButtonAtTheRightOrBelow) {
    QQuickItem& button = find("export");
    EXPECT_EQ(button.mapToScene({button.width(), 0}).x(), 700);
    EXPECT_EQ(accessible(*findShown("Performance")).role(), QAccessible::Heading);

    find("header").setWidth(200);
    settle();
    EXPECT_EQ(button.mapToScene({0, 0}).x(), 400);
    EXPECT_GT(button.mapToScene({0, 0}).y(), findShown("A calm summary")->mapToScene({0, 20}).y());
}

TEST_F(KitPieces, AnEmptyPaneWrapsItsMessage) {
    QQuickItem* message = findShown("Completed comparisons will be available here.");
    ASSERT_NE(message, nullptr);
    EXPECT_LE(message->property("contentWidth").toReal(), 300 - 36);
    EXPECT_EQ(findShown("No comparisons yet")->mapToScene({0, 0}).x(), 418);
}

} // namespace
} // namespace quorl::test
