#include "screens/ComposerWindow.h"

namespace quorl::test {
namespace {

// The questions of a decision and their editors.
class ComposerQuestionsTest : public ComposerWindow {};

// --- The questions ---

TEST_F(ComposerQuestionsTest, AQuestionIsAddedFromTheOptionsAndRemovedButTheFirstStays) {
    openDecision();
    type("First?");
    EXPECT_EQ(findButton("Remove question"), nullptr);

    clickAndPause(findButton("Comparison options"));
    clickAndPause(findButton("Add another question"));
    EXPECT_EQ(focused(), "Additional question");
    type("Second?");
    ASSERT_EQ(harness.model().draftQuestions->size(), 2u);
    EXPECT_EQ(draftQuestion(1).instructions, "Second?");

    click(findButton("Remove question"));
    ASSERT_EQ(harness.model().draftQuestions->size(), 1u);
    EXPECT_EQ(draftQuestion().instructions, "First?");
    EXPECT_EQ(focused(), "Question");
}

TEST_F(ComposerQuestionsTest, ADecisionIsWrittenByKeysAloneAndAnswered) {
    const ModelProfile model = harness.addDecisionModel("decider");
    harness.defaults.setStrings("draft.models", {model.id.text()});
    openDecision();
    ASSERT_EQ(focused(), "Question");
    type("Which room?");
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    ASSERT_EQ(focused(), "Context");
    type("Two rooms are free.");
    write("Choice", "Large");
    press(Qt::Key_Return);
    type("Small");
    press(Qt::Key_Return);
    type("None");

    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(harness.answered());
    settle();

    EXPECT_EQ(harness.model().library.runAt(0).prompt, "Two rooms are free.");
    EXPECT_EQ(draftQuestion().instructions, "Which room?");
    EXPECT_EQ(labels(), (Texts{"Large", "Small", "None"}));
}

TEST_F(ComposerQuestionsTest, TabGoesThroughTheComposerInOrder) {
    addChosenModel("up");
    harness.defaults.setString("draft.questions", Veritor::archive({choiceOf({"one", "two"})}));
    openDecision();

    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    EXPECT_EQ(tabStops(13),
              (Texts{"Decision", "Comparison options", "Context", "About context", "Question",
                     "Choose one option", "Choice", "Choice description and options", "Choice",
                     "Choice description and options", "Add choice", "Choose models", "Compare"}));
}

TEST_F(ComposerQuestionsTest, TabGoesThroughAScoreAndASecondQuestionInOrder) {
    DecisionQuestion score = choiceOf({"", ""});
    score.type = DecisionQuestionType::score;
    score.levels = {"bad", "middling", "good"};
    DecisionQuestion yesNo = choiceOf({"", ""});
    yesNo.type = DecisionQuestionType::noul;
    harness.defaults.setString("draft.questions", Veritor::archive({score, yesNo}));
    openDecision();
    ASSERT_EQ(focused(), "Question");

    EXPECT_EQ(tabStops(16),
              (Texts{"Question", "Place the answer on an ordered scale", "About score scales", "Use numbers",
                     "Lowest score level", "Remove score level", "Score level 2", "Remove score level",
                     "Highest score level", "Remove score level", "Add level", "Additional question",
                     "Remove question", "Ask a yes or no question", "Define Yes and No", "Choose models"}));
}

TEST_F(ComposerQuestionsTest, TabGoesThroughABulkListInOrder) {
    openBulk({"one", "two"});
    findMenuButton("Bulk questions")->forceActiveFocus(Qt::TabFocusReason);

    EXPECT_EQ(tabStops(18), (Texts{"Bulk questions", "Comparison options", "Shared context", "About context",
                                   "Choose one option", "Choice", "Choice description and options", "Choice",
                                   "Choice description and options", "Add choice", "Paste list",
                                   "Bulk question 1", "Question actions", "Bulk question 2",
                                   "Question actions", "Add question", "Choose models", "Run 2 questions"}));
}

TEST_F(ComposerQuestionsTest, TheInfoButtonExplainsTheContext) {
    openDecision();

    EXPECT_EQ(descriptionOf(findButton("About context")),
              "Required. Facts or instructions every model uses. In bulk mode, this is shared by every "
              "question.");
}

// --- Choices ---

TEST_F(ComposerQuestionsTest, AChoiceIsDescribedAndRemovedBehindItsButton) {
    openWith(choiceOf({"one", "two", "three"}));
    click(findField("Choice"));
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), "Choice description and options");
    press(Qt::Key_Space);
    pause();
    ASSERT_EQ(focused(), "Description");
    type("The first");
    EXPECT_EQ(draftQuestion().options[0].detail, "The first");
    EXPECT_EQ(draftQuestion().options[1].detail, "");

    clickAndPause(findButton("Remove choice"));
    EXPECT_EQ(labels(), (Texts{"two", "three"}));
    EXPECT_EQ(focused(), "Choice");

    clickAndPause(findButton("Choice description and options"));
    EXPECT_NE(findField("Description"), nullptr);
    EXPECT_EQ(findButton("Remove choice"), nullptr); // two are the fewest
}

TEST_F(ComposerQuestionsTest, ANewChoiceHasTheCaret) {
    openWith(choiceOf({"one", "two"}));

    click(findButton("Add choice"));
    type("three");

    EXPECT_EQ(labels(), (Texts{"one", "two", "three"}));
}

TEST_F(ComposerQuestionsTest, AChoiceThatGoesWhileItsPopoverIsOpenWritesNothingIntoItsNeighbour) {
    const DecisionQuestion question = choiceOf({"one", "two", "three"});
    openWith(question);
    clickAndPause(findButton("Choice description and options"));
    ASSERT_EQ(focused(), "Description");
    type("a");

    DecisionQuestion next = question;
    next.options.erase(next.options.begin());
    harness.model().draftQuestions = std::vector{next};
    type("bc"); // the row is still there for the first letter
    pause();
    type("d");

    EXPECT_EQ(draftQuestion(), next);
}

// --- Scores ---

TEST_F(ComposerQuestionsTest, AScoreScaleIsWrittenGrownAndShrunk) {
    openDecision();
    click(findSegment("Place the answer on an ordered scale"));
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::score);
    EXPECT_NE(findText("Lowest → highest"), nullptr);
    EXPECT_NE(findButton("About score scales"), nullptr);
    EXPECT_EQ(findButton("Remove score level"), nullptr);

    click(findField("Lowest score level"));
    type("bad");
    press(Qt::Key_Return);
    ASSERT_EQ(focused(), "Highest score level");
    type("middling");
    press(Qt::Key_Return);
    ASSERT_EQ(focused(), "Highest score level");
    type("good");
    EXPECT_EQ(draftQuestion().levels, (Texts{"bad", "middling", "good"}));
    EXPECT_NE(findField("Score level 2"), nullptr);

    click(findField("Score level 2"));
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), "Remove score level");
    press(Qt::Key_Space);
    EXPECT_EQ(draftQuestion().levels, (Texts{"bad", "good"}));
    EXPECT_EQ(focused(), "Highest score level");

    for (int presses = 0; presses < 9; ++presses)
        press(Qt::Key_Return);
    EXPECT_EQ(draftQuestion().levels.size(), 10u);
    EXPECT_FALSE(findButton("Add level")->isEnabled());
    EXPECT_EQ(descriptionOf(findButton("Add level")), "A score can use up to ten ordered levels");
}

TEST_F(ComposerQuestionsTest, NumbersReplaceTheLevels) {
    DecisionQuestion question = choiceOf({"", ""});
    question.type = DecisionQuestionType::score;
    question.levels = {"bad", "good"};
    openWith(question);
    EXPECT_EQ(descriptionOf(findMenuButton("Use numbers")), "Replace these levels with a numeric scale");

    click(findMenuButton("Use numbers"));
    click(findEntry("1 to 5"));
    pause();
    EXPECT_EQ(draftQuestion().levels, (Texts{"1", "2", "3", "4", "5"}));

    click(findMenuButton("Use numbers"));
    click(findEntry("1 to 10"));
    pause();
    EXPECT_EQ(draftQuestion().levels.size(), 10u);
}

// --- Yes and no ---

TEST_F(ComposerQuestionsTest, YesAndNoMayBeGivenAMeaning) {
    openDecision();
    click(findSegment("Ask a yes or no question"));
    EXPECT_NE(findText("Add optional definitions only when needed."), nullptr);

    clickAndPause(findButton("Define Yes and No"));
    ASSERT_EQ(focused(), "Yes means (optional)");
    type("There is a room");
    write("No means (optional)", "There is none");

    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::noul);
    EXPECT_EQ(draftQuestion().yesMeans, "There is a room");
    EXPECT_EQ(draftQuestion().noMeans, "There is none");
}

TEST_F(ComposerQuestionsTest, TheFormatIsChosenByTheArrows) {
    openDecision();
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), "Choose one option");

    press(Qt::Key_Right);
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::score);
    press(Qt::Key_Right);
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::noul);
    EXPECT_EQ(focused(), "Ask a yes or no question");
}

} // namespace
} // namespace quorl::test
