#include "screens/ComposerWindow.h"

namespace quorl::test {
namespace {

// The composer as a whole: its mode, its options, its layout.
class ComposerWindowTest : public ComposerWindow {};

// --- The mode ---

TEST_F(ComposerWindowTest, TheMenuNamesTheModeAndSwitchesIt) {
    open();
    QQuickItem* mode = findMenuButton("Ask models");
    ASSERT_NE(mode, nullptr);
    EXPECT_EQ(descriptionOf(mode), "Switch between single questions, bulk questions, or language models");

    click(mode);
    click(findEntry("Decision models"));
    pause();
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::decision);
    EXPECT_NE(findField("Context"), nullptr);

    click(findMenuButton("Decision"));
    click(findEntry("Bulk questions"));
    pause();
    EXPECT_TRUE(*harness.model().draftIsBulk);
    EXPECT_NE(findField("Shared context"), nullptr);
    EXPECT_NE(findField("Bulk question 1"), nullptr);
    EXPECT_NE(findButton("Run 1 question"), nullptr);

    click(findMenuButton("Bulk questions"));
    click(findEntry("Single question"));
    pause();
    EXPECT_FALSE(*harness.model().draftIsBulk);
    EXPECT_NE(findMenuButton("Decision"), nullptr);

    click(findMenuButton("Decision"));
    click(findEntry("Ask language models"));
    pause();
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::generation);
    EXPECT_NE(findMenuButton("Ask models"), nullptr);
    EXPECT_EQ(focused(), "Question");
}

TEST_F(ComposerWindowTest, TheMenuWorksByKeysAlone) {
    open();
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Ask models");

    press(Qt::Key_Space);
    pause();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    pause();

    EXPECT_TRUE(*harness.model().draftIsBulk);
    EXPECT_EQ(focused(), "Bulk question 1");
}

// --- The options ---

TEST_F(ComposerWindowTest, TheOptionsOfADecision) {
    openDecision();

    clickAndPause(findButton("Comparison options"));
    EXPECT_NE(findText("Options"), nullptr);
    EXPECT_EQ(findField("System prompt"), nullptr);
    EXPECT_EQ(focused(), "Question identifier (optional)");
    type("room");
    write("Category (optional)", "Support");
    write("Subcategory (optional)", "Returns");
    click(findSegment("1 to 10"));

    EXPECT_EQ(draftQuestion().name, "room");
    EXPECT_EQ(*harness.model().draftCategoryText, "Support");
    EXPECT_EQ(*harness.model().draftSubcategoryText, "Returns");
    EXPECT_EQ(*harness.model().draftScoring, ScoringMode::scale);

    escape();
    EXPECT_EQ(findText("Options"), nullptr);
    EXPECT_EQ(focused(), "Comparison options");
}

TEST_F(ComposerWindowTest, TheOptionsOfAGeneration) {
    open();

    clickAndPause(findButton("Comparison options"));
    EXPECT_EQ(findField("Question identifier (optional)"), nullptr);
    EXPECT_EQ(findButton("Add another question"), nullptr);
    ASSERT_EQ(focused(), "System prompt");
    press(Qt::Key_A, Qt::ControlModifier);
    type("Briefly.");

    EXPECT_EQ(*harness.model().draftSystem, "Briefly.");
}

TEST_F(ComposerWindowTest, TheOptionsOfABulkListAreThoseOfAllItsQuestions) {
    openBulk({"one"});

    clickAndPause(findButton("Comparison options"));

    EXPECT_EQ(findField("Question identifier (optional)"), nullptr);
    EXPECT_EQ(findButton("Add another question"), nullptr);
    EXPECT_EQ(findField("System prompt"), nullptr);
    EXPECT_NE(findField("Category (optional)"), nullptr);
}

TEST_F(ComposerWindowTest, TheIdentifierExplainsItself) {
    openDecision();
    clickAndPause(findButton("Comparison options"));

    EXPECT_EQ(descriptionOf(findField("Question identifier (optional)")),
              "An identifier for API responses. Generated automatically when blank.");
}

TEST_F(ComposerWindowTest, ControlNClosesTheOptionsAndLeadsToTheQuestion) {
    open();
    clickAndPause(findButton("Comparison options"));

    press(Qt::Key_N, Qt::ControlModifier);
    pause();

    EXPECT_EQ(findText("Options"), nullptr);
    EXPECT_EQ(focused(), "Question");
}

// --- Layout ---

TEST_F(ComposerWindowTest, FromAWidthOf800OnTheAnswersStandBesideTheComposer) {
    open();
    const auto isBeside = [&](int width) {
        window().resize(width, 800);
        settle();
        const double answers = find(QStringLiteral("Answers"), QAccessible::Heading)->mapToScene({}).x();
        return answers > findButton("Comparison options")->mapToScene({}).x();
    };

    EXPECT_TRUE(isBeside(1004)); // of which the rail takes 204
    EXPECT_FALSE(isBeside(1003));
    EXPECT_FALSE(isBeside(980));
    EXPECT_TRUE(isBeside(979));
    EXPECT_TRUE(isBeside(800));
    EXPECT_FALSE(isBeside(799));
}

TEST_F(ComposerWindowTest, ThePaddingIs32AndInANarrowWindow20) {
    open({500, 800});
    EXPECT_EQ(findField("Question")->mapToScene({}).x(), 32);

    window().resize(499, 800);
    settle();
    EXPECT_EQ(findField("Question")->mapToScene({}).x(), 20);
    EXPECT_EQ(findField("Question")->width(), 459);
}

TEST_F(ComposerWindowTest, TheFooterFollowsTheFieldsAndSticksToTheBottomUnderALongList) {
    openBulk({"one"});
    const auto bottom = [&] {
        QQuickItem* run = findButton(bulkTexts().size() == 1 ? "Run 1 question" : "Run 60 questions");
        return run->mapToScene({0, run->height()}).y();
    };
    EXPECT_LT(bottom(), 700);

    harness.model().draftBulkQuestions = std::vector<BulkQuestion>(60);
    settle();
    EXPECT_EQ(bottom(), 768);
    click(findButton("Run 60 questions"));
    EXPECT_NE(findProblem("Question 1: Write the state this decision is about."), nullptr);
}

TEST_F(ComposerWindowTest, TheCaretStaysInSightInALongList) {
    openBulk(Texts(60, "why"));

    for (int presses = 0; presses < 59; ++presses)
        press(Qt::Key_Return);

    ASSERT_EQ(focused(), "Bulk question 60");
    const double y = window().activeFocusItem()->mapToScene({}).y();
    EXPECT_GT(y, 60);
    EXPECT_LT(y, 700);
}

TEST_F(ComposerWindowTest, AListOpensAtItsTop) {
    openBulk(Texts(60, "why"));

    EXPECT_EQ(findMenuButton("Bulk questions")->mapToScene({}).y(), 28);
}

TEST_F(ComposerWindowTest, TheDividerIsDraggedAsFarAsBothSidesHaveRoom) {
    open();
    QQuickItem* divider = find(QString(), QAccessible::Splitter);
    ASSERT_NE(divider, nullptr);
    const auto drag = [&](int by) {
        const QPoint from = divider->mapToScene({0.5, 300}).toPoint();
        QTest::mousePress(&window(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&window(), from + QPoint(by, 0));
        QTest::mouseRelease(&window(), Qt::LeftButton, {}, from + QPoint(by, 0));
        settle();
    };
    const double start = divider->mapToScene({}).x();

    drag(-50);
    EXPECT_EQ(divider->mapToScene({}).x(), start - 50);
    EXPECT_EQ(harness.windowState.divider(), 390);
    drag(-500);
    EXPECT_EQ(harness.windowState.divider(), 300);
    drag(500);
    EXPECT_EQ(harness.windowState.divider(), 440);
}

TEST_F(ComposerWindowTest, EverythingFitsTheSmallestWindow) {
    addChosenModel("A model with a name that is far too long for the smallest window");
    harness.defaults.setString("draft.kind", "decision");
    open({375, 420});

    for (const char* name : {"Comparison options", "Compare", "Add choice"}) {
        QQuickItem* button = findButton(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_LE(button->mapToScene({button->width(), 0}).x(), 375) << name;
        EXPECT_GE(button->mapToScene({}).x(), 0) << name;
    }
}

} // namespace
} // namespace quorl::test
