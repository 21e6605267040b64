#include "screens/ComposerWindow.h"

namespace quorl::test {
namespace {

// The choice of models, the run button and what it finds missing.
class ComposerRunTest : public ComposerWindow {};

TEST_F(ComposerRunTest, ModelsAreChosenInTheirPopover) {
    const ModelProfile first = addChosenModel("first");
    const ModelProfile second = addChosenModel("second");
    open();
    QQuickItem* selector = findButton("first + second");
    ASSERT_NE(selector, nullptr);
    EXPECT_EQ(descriptionOf(selector), "Select the models to compare");
    const auto words = selector->findChildren<QQuickItem*>();
    EXPECT_TRUE(std::ranges::any_of(words, [&](const QQuickItem* item) {
        return item->property("text") == selector->property("text") &&
               item->property("elide") == Qt::ElideMiddle;
    }));

    clickAndPause(selector);
    EXPECT_NE(findText("Models"), nullptr);
    click(findToggle("second"));
    EXPECT_EQ(*harness.model().draftModelIDs, std::set{first.id});
    EXPECT_NE(findButton("first"), nullptr);

    press(Qt::Key_Space);
    EXPECT_TRUE(harness.model().draftModelIDs->contains(second.id));
    escape();
    EXPECT_EQ(findToggle("second"), nullptr);
    EXPECT_EQ(focused(), "first + second");
}

TEST_F(ComposerRunTest, AModelThatIsNotReadySaysWhyAndCannotBeChosen) {
    ModelProfile keyless = makeModel();
    keyless.name = "keyless";
    harness.file().saveModel(keyless);
    open();
    const auto before = *harness.model().draftModelIDs;

    clickAndPause(findButton("Choose models"));
    QQuickItem* toggle = findToggle("keyless");
    ASSERT_NE(toggle, nullptr);
    click(toggle);

    EXPECT_FALSE(toggle->isEnabled());
    EXPECT_EQ(descriptionOf(toggle), "Add an API key.");
    EXPECT_EQ(*harness.model().draftModelIDs, before);
}

TEST_F(ComposerRunTest, ThePopoverLeadsToTheModelsAndToTheLogin) {
    open();
    harness.model().claudeLoggedIn = false;
    clickAndPause(findButton("Choose models"));
    EXPECT_NE(findButton("Log in to Claude Code"), nullptr);

    clickAndPause(findButton("Manage models…"));

    EXPECT_EQ(*harness.model().destination, Destination(Screen::models));
}

TEST_F(ComposerRunTest, WithoutAReadyModelThePopoverOpens) {
    harness.addReadyModel("up");
    open();
    harness.model().draftModelIDs = std::set<UUID>();
    type("Why?");

    press(Qt::Key_Return, Qt::ControlModifier);
    pause();

    EXPECT_NE(findProblem("Choose at least one ready model."), nullptr);
    EXPECT_NE(findToggle("up"), nullptr);
    EXPECT_EQ(focused(), "up");

    press(Qt::Key_Space);
    escape();
    EXPECT_EQ(findToggle("up"), nullptr);
    EXPECT_NE(findProblem("Choose at least one ready model."), nullptr); // until the next edit
}

TEST_F(ComposerRunTest, ControlReturnRunsFromThePopoverOfTheModels) {
    addChosenModel("up");
    open();
    type("Why?");
    clickAndPause(findButton("up"));

    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(harness.answered());

    EXPECT_EQ(harness.model().library.runCount(), 1u);
}

TEST_F(ComposerRunTest, ABlankQuestionIsRefusedUnderTheButtonUntilTheNextLetter) {
    addChosenModel("up");
    open();

    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_NE(findProblem("Write a question first."), nullptr);
    EXPECT_EQ(harness.model().library.runCount(), 0u);

    type("W");
    EXPECT_EQ(findProblem("Write a question first."), nullptr);
}

TEST_F(ComposerRunTest, EveryControlHasItsSymbol) {
    DecisionQuestion score = choiceOf({"", ""});
    score.type = DecisionQuestionType::score;
    score.levels = {"bad", "middling", "good"};
    harness.defaults.setString("draft.questions", Veritor::archive({choiceOf({"one", "two"}), score}));
    openDecision();
    harness.root().draft()->compare();
    settle();

    EXPECT_EQ(symbolsOn(findMenuButton("Decision")), u"\ue5cf");
    EXPECT_EQ(symbolsOn(findButton("Comparison options")), u"\ue429");
    EXPECT_EQ(symbolsOn(findSegment("Choose one option")), u"\ue241");
    EXPECT_EQ(symbolsOn(findSegment("Place the answer on an ordered scale")), u"\ueac7");
    EXPECT_EQ(symbolsOn(findSegment("Ask a yes or no question")), u"\ue5ca");
    EXPECT_EQ(symbolsOn(findButton("Choice description and options")), u"\ue5d3");
    EXPECT_EQ(symbolsOn(findButton("Add choice")), u"\ue145");
    EXPECT_EQ(symbolsOn(findButton("Remove question")), u"\ue15d");
    EXPECT_EQ(symbolsOn(findMenuButton("Use numbers")), u"\ueac7\ue5cf");
    EXPECT_EQ(symbolsOn(findButton("Remove score level")), u"\ue15d");
    EXPECT_EQ(symbolsOn(findButton("Add level")), u"\ue145");
    EXPECT_EQ(symbolsOn(findButton("Choose models")), u"\ue5cf");
    EXPECT_EQ(symbolsOn(findButton("Compare")), u"\ue5c8");
    EXPECT_EQ(symbolsOn(findProblem("Write the state this decision is about.")), u"\ue001");
}

TEST_F(ComposerRunTest, EveryControlOfABulkListHasItsSymbol) {
    openBulk({"one"});

    EXPECT_EQ(symbolsOn(findButton("Paste list")), u"\ue14f");
    EXPECT_EQ(descriptionOf(findButton("Paste list")), "Add one question per line");
    EXPECT_EQ(findField("Bulk question 1")->property("placeholderText"), QStringLiteral("Question"));
    EXPECT_EQ(symbolsOn(findMenuButton("Question actions")), u"\ue5d3");
    EXPECT_EQ(symbolsOn(findButton("Add question")), u"\ue145");
    EXPECT_EQ(symbolsOn(findButton("Run 1 question")), u"\ue5c8");
}

TEST_F(ComposerRunTest, EveryEmptyFieldSaysWhatBelongsThere) {
    DecisionQuestion score = choiceOf({"", ""});
    score.instructions = "";
    score.type = DecisionQuestionType::score;
    score.levels = {"", "", ""};
    harness.defaults.setString("draft.questions", Veritor::archive({score, choiceOf({"", ""})}));
    openDecision();
    const auto placeholder = [&](const char* field) {
        QQuickItem* found = findField(field);
        return found ? found->property("placeholderText").toString().toStdString() : std::string();
    };

    EXPECT_EQ(placeholder("Context"), "What should the models know?");
    EXPECT_EQ(placeholder("Question"), "What would you like to ask?");
    EXPECT_EQ(placeholder("Additional question"), "What would you like to ask?");
    EXPECT_EQ(placeholder("Lowest score level"), "Lowest level");
    EXPECT_EQ(placeholder("Score level 2"), "Level 2");
    EXPECT_EQ(placeholder("Highest score level"), "Highest level");
    EXPECT_EQ(placeholder("Choice"), "Choice");
    EXPECT_EQ(descriptionOf(findButton("About score scales")),
              "Define two to ten ordered levels. Nuvel returns a weighted position on this scale, not a "
              "value between numeric minimum and maximum fields.");
    clickAndPause(findButton("Choice description and options"));
    EXPECT_EQ(placeholder("Description"), "Optional meaning of this choice");
}

TEST_F(ComposerRunTest, WhatIsOpenIsClosedByItsButtonAndByEscapeWhichReturnsTheKeyboard) {
    DecisionQuestion yesNo = choiceOf({"", ""});
    yesNo.type = DecisionQuestionType::noul;
    DecisionQuestion score = choiceOf({"", ""});
    score.type = DecisionQuestionType::score;
    harness.defaults.setString("draft.questions", Veritor::archive({choiceOf({"", ""}), score, yesNo}));
    openDecision();
    window().resize(1240, 1200);
    settle();
    const auto isAnythingOpen = [&] {
        const QList<QQuickItem*> popups = window().contentItem()->childItems().last()->childItems();
        return std::any_of(popups.begin(), popups.end(),
                           [](QQuickItem* popup) { return popup->isVisible(); });
    };

    for (QQuickItem* opener : {findButton("Comparison options"), findButton("Define Yes and No")}) {
        clickAndPause(opener);
        EXPECT_TRUE(isAnythingOpen());
        clickAndPause(opener);
        EXPECT_TRUE(waitFor([&] { return !isAnythingOpen(); }));
    }
    for (QQuickItem* opener :
         {findMenuButton("Decision"), findButton("Comparison options"),
          findButton("Choice description and options"), findMenuButton("Use numbers"),
          findButton("Define Yes and No"), findButton("Choose models"), findMenuButton("Tools")}) {
        ASSERT_NE(opener, nullptr);
        opener->forceActiveFocus(Qt::TabFocusReason);
        const std::string name = focused();
        press(Qt::Key_Space);
        pause();
        EXPECT_TRUE(isAnythingOpen()) << name;

        escape();
        EXPECT_TRUE(waitFor([&] { return !isAnythingOpen(); })) << name;
        EXPECT_EQ(focused(), name);
    }
}

} // namespace
} // namespace quorl::test
