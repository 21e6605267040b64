#include "screens/ComposerWindow.h"

namespace quorl::test {
namespace {

// A list of questions.
class ComposerBulkTest : public ComposerWindow {};

TEST_F(ComposerBulkTest, ABulkListIsWrittenByReturn) {
    openBulk({""});
    EXPECT_EQ(focused(), "Bulk question 1");

    type("one");
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), "Bulk question 2");
    type("two");
    click(findField("Bulk question 1"));
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), "Bulk question 2");
    click(findButton("Add question"));
    type("three");

    EXPECT_EQ(bulkTexts(), (Texts{"one", "two", "three"}));
    EXPECT_NE(findButton("Run 3 questions"), nullptr);
}

TEST_F(ComposerBulkTest, ARowIsCopiedAndRemovedByItsMenu) {
    openBulk({"one", "two", "three"});
    EXPECT_EQ(descriptionOf(findMenuButton("Question actions")), "Duplicate or remove question");

    click(findMenuButton("Question actions"));
    click(findEntry("Duplicate"));
    pause();
    EXPECT_EQ(bulkTexts(), (Texts{"one", "two", "three", "one"}));
    EXPECT_EQ(focused(), "Bulk question 4");

    click(findField("Bulk question 2"));
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), "Question actions");
    press(Qt::Key_Space);
    pause();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    pause();
    EXPECT_EQ(bulkTexts(), (Texts{"one", "three", "one"}));
    EXPECT_EQ(focused(), "Bulk question 2");
    type("!");
    EXPECT_EQ(bulkTexts()[1], "three!");
}

TEST_F(ComposerBulkTest, ARowThatGoesWhileItsMenuIsOpenTakesNobodyAlong) {
    openBulk({"one", "two", "three"});
    click(findMenuButton("Question actions"));
    pause();
    auto next = *harness.model().draftBulkQuestions;
    next.erase(next.begin());
    harness.model().draftBulkQuestions = next;
    settle();

    if (QQuickItem* remove = findEntry("Remove"))
        clickAndPause(remove);

    EXPECT_EQ(bulkTexts(), (Texts{"two", "three"}));
}

TEST_F(ComposerBulkTest, ARowThatGoesWhileItIsEditedWritesNothingIntoItsNeighbour) {
    openBulk({"one", "two"});
    click(findField("Bulk question 1"));
    auto next = *harness.model().draftBulkQuestions;
    next.erase(next.begin());
    harness.model().draftBulkQuestions = next;

    type("xyz");

    EXPECT_EQ(bulkTexts(), Texts{"two"});
}

TEST_F(ComposerBulkTest, LinesPastedIntoARowBecomeRowsAndTheCaretIsInTheLast) {
    openBulk({"first", "", "last"});
    click(findField("Bulk question 2"));

    paste(QStringLiteral("one\ntwo\n\nthree\n"));

    EXPECT_EQ(bulkTexts(), (Texts{"first", "one", "two", "three", "last"}));
    EXPECT_EQ(focused(), "Bulk question 4");
    type("!");
    EXPECT_EQ(bulkTexts()[3], "three!");
}

TEST_F(ComposerBulkTest, APasteWhoseFirstLineIsTheRowAlreadyShowsThatLineAlone) {
    openBulk({"one"});
    click(findField("Bulk question 1"));

    paste(QStringLiteral("\ntwo"));

    EXPECT_EQ(bulkTexts(), (Texts{"one", "two"}));
    EXPECT_EQ(findField("Bulk question 1")->property("text").toString(), QStringLiteral("one"));
}

TEST_F(ComposerBulkTest, TheTwoHundredthRowIsTheLast) {
    openBulk(Texts(199, "why"));

    findButton("Add question")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_EQ(bulkTexts().size(), 200u);
    EXPECT_EQ(focused(), "Bulk question 200");
    EXPECT_FALSE(findButton("Add question")->isEnabled());

    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    pause();
    ASSERT_NE(findEntry("Duplicate"), nullptr);
    EXPECT_FALSE(findEntry("Duplicate")->isEnabled());
    EXPECT_TRUE(findEntry("Remove")->isEnabled());
}

TEST_F(ComposerBulkTest, AListIsPastedIntoTheSheet) {
    openBulk({""});
    clickAndPause(findButton("Paste list"));
    EXPECT_NE(find(QStringLiteral("Paste questions"), QAccessible::Dialog), nullptr);
    ASSERT_EQ(focused(), "Questions to paste");
    EXPECT_FALSE(findButton("Add 0 questions")->isEnabled());

    paste(QStringLiteral("one\n two \n\nthree"));
    clickAndPause(findButton("Add 3 questions"));

    EXPECT_EQ(bulkTexts(), (Texts{"one", "two", "three"}));
    EXPECT_EQ(find(QStringLiteral("Paste questions"), QAccessible::Dialog), nullptr);
}

TEST_F(ComposerBulkTest, TheSheetSaysWhenTheListWouldBeTooLong) {
    openBulk(Texts(60, "why"));
    clickAndPause(findButton("Paste list"));

    paste(QStringLiteral("how\n").repeated(150));
    QQuickItem* problem = findProblem("A batch can hold up to 200 questions.");
    ASSERT_NE(problem, nullptr);
    EXPECT_LT(problem->mapToScene({0, problem->height()}).y(), findButton("Cancel")->mapToScene({}).y());
    EXPECT_GT(problem->mapToScene({}).y(), 0); // however long the list
    EXPECT_FALSE(findButton("Add 150 questions")->isEnabled());

    escape();
    EXPECT_EQ(find(QStringLiteral("Paste questions"), QAccessible::Dialog), nullptr);
    EXPECT_EQ(bulkTexts().size(), 60u);
    EXPECT_EQ(focused(), "Paste list");

    clickAndPause(findButton("Paste list"));
    EXPECT_NE(findButton("Add 150 questions"), nullptr);
    clickAndPause(findButton("Cancel"));
    EXPECT_EQ(find(QStringLiteral("Paste questions"), QAccessible::Dialog), nullptr);
}

TEST_F(ComposerBulkTest, TheTemplateOfTheListIsEditedLikeAQuestion) {
    openBulk({"one"});

    click(findSegment("Place the answer on an ordered scale"));
    click(findField("Lowest score level"));
    type("low");

    EXPECT_EQ(harness.model().draftBulkTemplate->type, DecisionQuestionType::score);
    EXPECT_EQ(harness.model().draftBulkTemplate->levels[0], "low");
}

} // namespace
} // namespace quorl::test
