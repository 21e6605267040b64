#include "screens/MainWindow.h"

#include "decision/VeritorResults.h"
#include "screens/WindowTest.h"

namespace quorl::test {
namespace {

class MainWindowTest : public WindowTest {};

TEST_F(MainWindowTest, OpensOnAnEmptyComparisonWithTheCaretInTheQuestion) {
    const QQuickWindow& window = open();

    EXPECT_EQ(window.title(), QStringLiteral("Quorl"));
    EXPECT_EQ(window.minimumSize(), QSize(375, 420));
    EXPECT_EQ(window.size(), QSize(1240, 800));
    EXPECT_FALSE(window.icon().isNull());
    EXPECT_EQ(focused(), "Question");
    EXPECT_NE(findText("Your model responses will appear here."), nullptr);
    EXPECT_EQ(findButton("Reset comparison"), nullptr);
}

TEST_F(MainWindowTest, TypingAndControlReturnAskAndTheAnswerAppears) {
    addChosenModel("up");
    harness.endpoint.answer("up", says("That way."));
    open();

    compare("Which way?");

    EXPECT_EQ(harness.activeAnswers()[0].text, "That way.");
    EXPECT_EQ(harness.model().library.runAt(0).prompt, "Which way?");
    EXPECT_NE(findSelectable("That way."), nullptr);
    EXPECT_NE(findText("1 of 1"), nullptr);
}

TEST_F(MainWindowTest, TheButtonAsksToo) {
    addChosenModel("up");
    open();
    type("Why?");

    click(findButton("Compare"));

    EXPECT_EQ(harness.model().library.runCount(), 1u);
    ASSERT_TRUE(harness.answered());
}

TEST_F(MainWindowTest, AnAnswerIsShownLetterByLetterAndNeverAsMarkup) {
    addChosenModel("up");
    const char* markup = "<b>bold</b> &amp; *star* <img src=\"http://127.0.0.1:1/x.png\">";
    harness.endpoint.answer("up", says(markup));
    open();

    compare();

    QQuickItem* text = findSelectable(markup);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->property("textFormat").toInt(), int(Qt::PlainText));
}

TEST_F(MainWindowTest, ABlankQuestionIsRefusedUnderTheButtonUntilTheNextLetter) {
    addChosenModel("up");
    open();

    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_NE(find(QStringLiteral("Write a question first."), QAccessible::AlertMessage), nullptr);

    type("W");
    EXPECT_EQ(find(QStringLiteral("Write a question first."), QAccessible::AlertMessage), nullptr);
}

TEST_F(MainWindowTest, WithoutAReadyModelTheFocusGoesToTheModels) {
    harness.addReadyModel("up");
    harness.defaults.setStrings("draft.models", {UUID::random().text()});
    open();
    harness.model().draftModelIDs = std::set<UUID>();
    type("Why?");

    press(Qt::Key_Return, Qt::ControlModifier);

    EXPECT_NE(find(QStringLiteral("Choose at least one ready model."), QAccessible::AlertMessage), nullptr);
    EXPECT_EQ(focused(), "up");
}

TEST_F(MainWindowTest, ControlNHidesTheAnswersAndReturnsToTheQuestion) {
    addChosenModel("up");
    open();
    compare();
    press(Qt::Key_Tab);

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
    EXPECT_EQ(*harness.model().draftPrompt, "Why?");
    EXPECT_EQ(focused(), "Question");
    EXPECT_NE(findText("Your model responses will appear here."), nullptr);
}

TEST_F(MainWindowTest, ResetDoesTheSame) {
    addChosenModel("up");
    open();
    compare();

    click(findButton("Reset comparison"));

    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
}

TEST_F(MainWindowTest, AModelIsChosenByClickAndByKey) {
    const ModelProfile first = addChosenModel("first");
    const ModelProfile second = addChosenModel("second");
    open();
    const auto isChosen = [&](const ModelProfile& model) {
        return harness.model().draftModelIDs->contains(model.id);
    };

    click(find(QStringLiteral("second"), QAccessible::CheckBox));
    EXPECT_TRUE(isChosen(first));
    EXPECT_FALSE(isChosen(second));

    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_FALSE(isChosen(first));

    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(isChosen(second));
}

TEST_F(MainWindowTest, AModelThatIsNotReadySaysWhyAndCannotBeChosen) {
    ModelProfile keyless = makeModel();
    keyless.name = "keyless";
    harness.file().saveModel(keyless);
    open();

    QQuickItem* row = find(QStringLiteral("keyless"), QAccessible::CheckBox);
    ASSERT_NE(row, nullptr);
    const bool before = harness.model().draftModelIDs->contains(keyless.id);
    click(row);

    EXPECT_EQ(harness.model().draftModelIDs->contains(keyless.id), before);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(row)->text(QAccessible::Description),
              QStringLiteral("Add an API key."));
}

TEST_F(MainWindowTest, TabGoesThroughEverythingInOrderAndLeavesTheTextFields) {
    addChosenModel("first");
    addChosenModel("second");
    harness.endpoint.answer("first", says("That way."));
    harness.endpoint.answer("second", sample::makeReply(500, R"({"error":{"message":"Tired."}})"));
    open();
    compare();

    std::vector<std::string> visited{focused()};
    for (int i = 0; i < 7; ++i) {
        press(Qt::Key_Tab);
        visited.push_back(focused());
    }
    EXPECT_EQ(visited, (std::vector<std::string>{"Question", "first + second", "Compare", "Reset comparison",
                                                 "Actions for first", "That way.",
                                                 "Mark answer correct and save to dataset",
                                                 "Choose the correct answer and save it"}));

    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Mark answer correct and save to dataset");
    EXPECT_EQ(*harness.model().draftPrompt, "Why?");
}

TEST_F(MainWindowTest, AnAlertTakesTheKeysAndGoesByItsButtonOrEscape) {
    open();
    type("Why?");
    harness.model().alertMessage = "disk I/O error";
    settle();
    EXPECT_NE(find(QStringLiteral("Something needs attention"), QAccessible::AlertMessage), nullptr);
    EXPECT_NE(findSelectable("disk I/O error"), nullptr);
    EXPECT_EQ(focused(), "OK");

    press(Qt::Key_Return, Qt::ControlModifier);
    type("x");
    EXPECT_EQ(*harness.model().draftPrompt, "Why?");
    EXPECT_EQ(harness.root().draft()->validation(), QString());

    harness.model().alertMessage = "another";
    settle();
    EXPECT_NE(findSelectable("another"), nullptr);

    click(findButton("OK"));
    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
    EXPECT_EQ(focused(), "Question");

    harness.model().alertMessage = "once more";
    settle();
    press(Qt::Key_Escape);
    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
    EXPECT_EQ(findButton("OK"), nullptr);
}

TEST_F(MainWindowTest, InANarrowWindowTheAnswersStandBelowAndArePulledUpByAPress) {
    addChosenModel("up");
    harness.endpoint.answer("up", says("That way."));
    open({420, 800});
    EXPECT_GT(findText("Your model responses will appear here.")->mapToScene({}).y(),
              findButton("Compare")->mapToScene({}).y());

    compare();

    EXPECT_LT(findText("1 of 1")->mapToScene({}).y(), 100); // under the toolbar
    EXPECT_EQ(focused(), "Question");
}

TEST_F(MainWindowTest, TheCaretSurvivesTheChangeOfLayout) {
    open();
    type("Wh");
    window().resize(420, 800);
    settle();
    type("y");
    window().resize(1240, 800);
    settle();
    type("?");

    EXPECT_EQ(*harness.model().draftPrompt, "Why?");
}

TEST_F(MainWindowTest, UndoTakesBackLettersOnly) {
    open();
    type("Why?");
    press(Qt::Key_Z, Qt::ControlModifier);

    EXPECT_EQ(*harness.model().draftPrompt, "");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(*harness.model().draftPrompt, "");
}

TEST_F(MainWindowTest, TheModeIsSwitchedByClickAndByKey) {
    open();
    click(find(QStringLiteral("Decision"), QAccessible::RadioButton));
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::decision);
    EXPECT_NE(find(QStringLiteral("Context"), QAccessible::EditableText), nullptr);
    EXPECT_EQ(find(QStringLiteral("System prompt"), QAccessible::EditableText), nullptr);
    EXPECT_TRUE(
        QAccessible::queryAccessibleInterface(find(QStringLiteral("Decision"), QAccessible::RadioButton))
            ->state()
            .checked);

    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Ask models");
    press(Qt::Key_Return);
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::generation);
    EXPECT_EQ(focused(), "Question");
}

TEST_F(MainWindowTest, AListWithoutModelsSaysSo) {
    open();

    EXPECT_NE(findText("No model is enabled for this kind of comparison."), nullptr);
}

TEST_F(MainWindowTest, AListWithAModelSaysNoMore) {
    addChosenModel("up");
    open();

    EXPECT_EQ(findText("No model is enabled for this kind of comparison."), nullptr);
}

TEST_F(MainWindowTest, ADecisionIsWrittenByKeysAloneAndAnswered) {
    harness.addDecisionModel("decider");
    openDecision();
    EXPECT_EQ(focused(), "Question");

    type("Which room?");
    write("Choice 1", "Large");
    write("Choice 2", "Small");
    press(Qt::Key_Tab);
    press(Qt::Key_Space); // "Add choice"
    write("Choice 3", "None");
    write("Context", "Two rooms are free.");
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(harness.answered());
    settle();

    EXPECT_EQ(harness.model().library.runAt(0).kind, QuorlKind::decision);
    EXPECT_EQ(harness.model().library.runAt(0).prompt, "Two rooms are free.");
    EXPECT_EQ(draftQuestion().instructions, "Which room?");
    ASSERT_EQ(draftQuestion().options.size(), 3u);
    EXPECT_EQ(draftQuestion().options[0].label, "Large");
    EXPECT_EQ(draftQuestion().options[2].label, "None");
    EXPECT_NE(findSelectable(Veritor::summary(harness.activeAnswers()[0].text).c_str()), nullptr);
}

TEST_F(MainWindowTest, WhatIsWrongWithADecisionIsSaidUnderTheButton) {
    openDecision();

    press(Qt::Key_Return, Qt::ControlModifier);

    EXPECT_NE(find(QStringLiteral("Write the state this decision is about."), QAccessible::AlertMessage),
              nullptr);
}

TEST_F(MainWindowTest, AScoreGrowsToTenLevels) {
    openDecision();
    click(find(QStringLiteral("Place the answer on an ordered scale"), QAccessible::RadioButton));
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::score);

    write("Lowest score level", "bad");
    write("Highest score level", "good");
    press(Qt::Key_Tab);
    for (int presses = 0; presses < 9; ++presses)
        press(Qt::Key_Return);

    EXPECT_EQ(draftQuestion().levels.size(), 10u);
    EXPECT_EQ(draftQuestion().levels[0], "bad");
    EXPECT_EQ(draftQuestion().levels[1], "good");
    EXPECT_FALSE(findButton("Add level")->isEnabled());
    EXPECT_NE(find(QStringLiteral("Score level 9"), QAccessible::EditableText), nullptr);
}

TEST_F(MainWindowTest, YesAndNoMayBeGivenAMeaning) {
    openDecision();
    click(find(QStringLiteral("Ask a yes or no question"), QAccessible::RadioButton));
    EXPECT_NE(findText("Add optional definitions only when needed."), nullptr);

    write("Yes means (optional)", "There is a room");
    write("No means (optional)", "There is none");

    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::noul);
    EXPECT_EQ(draftQuestion().yesMeans, "There is a room");
    EXPECT_EQ(draftQuestion().noMeans, "There is none");
}

TEST_F(MainWindowTest, AQuestionIsAddedAndRemovedButTheFirstStays) {
    openDecision();
    type("First?");
    EXPECT_EQ(findButton("Remove question"), nullptr);

    click(findButton("Add another question"));
    write("Additional question", "");
    type("Second?");
    EXPECT_EQ(draftQuestion(1).instructions, "Second?");

    click(findButton("Remove question"));
    ASSERT_EQ(harness.model().draftQuestions->size(), 1u);
    EXPECT_EQ(draftQuestion().instructions, "First?");
}

} // namespace
} // namespace quorl::test
