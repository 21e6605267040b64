#include "screens/MainWindow.h"

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
    EXPECT_TRUE(waitFor([&] { return findButton("OK") == nullptr; }));
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

} // namespace
} // namespace quorl::test
