#include "decision/Veritor.h"
#include "screens/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace quorl::test {
namespace {

// The composer as a person uses it, by mouse and by keys.
class ComposerWindowTest : public WindowTest {
protected:
    void openWith(const DecisionQuestion& question) {
        harness.defaults.setString("draft.questions", Veritor::archive({question}));
        openDecision();
    }

    void openBulk(const std::vector<std::string>& texts, QSize size = {1240, 800}) {
        std::vector<BulkQuestion> questions;
        for (const std::string& text : texts)
            questions.push_back({UUID::random(), text});
        harness.defaults.setString("draft.kind", "decision");
        harness.defaults.setBoolean("draft.bulk", true);
        harness.defaults.setBytes("draft.bulkQuestions", Veritor::archiveBulk(questions));
        open(size);
    }

    QQuickItem* findField(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::EditableText);
    }
    QQuickItem* findMenuButton(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::ButtonMenu);
    }
    QQuickItem* findEntry(const char* name) { return find(QString::fromUtf8(name), QAccessible::MenuItem); }
    QQuickItem* findSegment(const char* name) {
        return find(QString::fromUtf8(name), QAccessible::RadioButton);
    }
    QQuickItem* findToggle(const char* name) { return find(QString::fromUtf8(name), QAccessible::CheckBox); }
    QQuickItem* findProblem(const char* text) {
        return find(QString::fromUtf8(text), QAccessible::AlertMessage);
    }

    // What opens comes in over a few frames, what closes goes over a few.
    void pause() {
        QTest::qWait(150);
        settle();
    }
    void clickAndPause(QQuickItem* item) {
        click(item);
        pause();
    }
    void escape() {
        press(Qt::Key_Escape);
        pause();
    }
    void paste(const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        press(Qt::Key_V, Qt::ControlModifier);
    }

    std::vector<std::string> bulkTexts() {
        std::vector<std::string> texts;
        for (const BulkQuestion& question : *harness.model().draftBulkQuestions)
            texts.push_back(question.text);
        return texts;
    }

    std::vector<std::string> labels() {
        std::vector<std::string> result;
        for (const DecisionOption& option : draftQuestion().options)
            result.push_back(option.label);
        return result;
    }

    static DecisionQuestion choiceOf(const std::vector<std::string>& labels) {
        DecisionQuestion question = DecisionQuestion::starter();
        question.instructions = "Which room?";
        question.options.clear();
        for (const std::string& label : labels)
            question.options.push_back({UUID::random(), label, ""});
        return question;
    }
};

using Texts = std::vector<std::string>;

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

// --- The questions ---

TEST_F(ComposerWindowTest, AQuestionIsAddedFromTheOptionsAndRemovedButTheFirstStays) {
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

TEST_F(ComposerWindowTest, ADecisionIsWrittenByKeysAloneAndAnswered) {
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

TEST_F(ComposerWindowTest, TabGoesThroughTheComposerInOrder) {
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

TEST_F(ComposerWindowTest, TabGoesThroughAScoreAndASecondQuestionInOrder) {
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

TEST_F(ComposerWindowTest, TabGoesThroughABulkListInOrder) {
    openBulk({"one", "two"});
    findMenuButton("Bulk questions")->forceActiveFocus(Qt::TabFocusReason);

    EXPECT_EQ(tabStops(18), (Texts{"Bulk questions", "Comparison options", "Shared context", "About context",
                                   "Choose one option", "Choice", "Choice description and options", "Choice",
                                   "Choice description and options", "Add choice", "Paste list",
                                   "Bulk question 1", "Question actions", "Bulk question 2",
                                   "Question actions", "Add question", "Choose models", "Run 2 questions"}));
}

TEST_F(ComposerWindowTest, TheInfoButtonExplainsTheContext) {
    openDecision();

    EXPECT_EQ(descriptionOf(findButton("About context")),
              "Required. Facts or instructions every model uses. In bulk mode, this is shared by every "
              "question.");
}

// --- Choices ---

TEST_F(ComposerWindowTest, AChoiceIsDescribedAndRemovedBehindItsButton) {
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

TEST_F(ComposerWindowTest, ANewChoiceHasTheCaret) {
    openWith(choiceOf({"one", "two"}));

    click(findButton("Add choice"));
    type("three");

    EXPECT_EQ(labels(), (Texts{"one", "two", "three"}));
}

TEST_F(ComposerWindowTest, AChoiceThatGoesWhileItsPopoverIsOpenWritesNothingIntoItsNeighbour) {
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

TEST_F(ComposerWindowTest, AScoreScaleIsWrittenGrownAndShrunk) {
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

TEST_F(ComposerWindowTest, NumbersReplaceTheLevels) {
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

TEST_F(ComposerWindowTest, YesAndNoMayBeGivenAMeaning) {
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

TEST_F(ComposerWindowTest, TheFormatIsChosenByTheArrows) {
    openDecision();
    press(Qt::Key_Tab);
    ASSERT_EQ(focused(), "Choose one option");

    press(Qt::Key_Right);
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::score);
    press(Qt::Key_Right);
    EXPECT_EQ(draftQuestion().type, DecisionQuestionType::noul);
    EXPECT_EQ(focused(), "Ask a yes or no question");
}

// --- The bulk list ---

TEST_F(ComposerWindowTest, ABulkListIsWrittenByReturn) {
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

TEST_F(ComposerWindowTest, ARowIsCopiedAndRemovedByItsMenu) {
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

TEST_F(ComposerWindowTest, ARowThatGoesWhileItsMenuIsOpenTakesNobodyAlong) {
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

TEST_F(ComposerWindowTest, ARowThatGoesWhileItIsEditedWritesNothingIntoItsNeighbour) {
    openBulk({"one", "two"});
    click(findField("Bulk question 1"));
    auto next = *harness.model().draftBulkQuestions;
    next.erase(next.begin());
    harness.model().draftBulkQuestions = next;

    type("xyz");

    EXPECT_EQ(bulkTexts(), Texts{"two"});
}

TEST_F(ComposerWindowTest, LinesPastedIntoARowBecomeRowsAndTheCaretIsInTheLast) {
    openBulk({"first", "", "last"});
    click(findField("Bulk question 2"));

    paste(QStringLiteral("one\ntwo\n\nthree\n"));

    EXPECT_EQ(bulkTexts(), (Texts{"first", "one", "two", "three", "last"}));
    EXPECT_EQ(focused(), "Bulk question 4");
    type("!");
    EXPECT_EQ(bulkTexts()[3], "three!");
}

TEST_F(ComposerWindowTest, APasteWhoseFirstLineIsTheRowAlreadyShowsThatLineAlone) {
    openBulk({"one"});
    click(findField("Bulk question 1"));

    paste(QStringLiteral("\ntwo"));

    EXPECT_EQ(bulkTexts(), (Texts{"one", "two"}));
    EXPECT_EQ(findField("Bulk question 1")->property("text").toString(), QStringLiteral("one"));
}

TEST_F(ComposerWindowTest, TheTwoHundredthRowIsTheLast) {
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

TEST_F(ComposerWindowTest, AListIsPastedIntoTheSheet) {
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

TEST_F(ComposerWindowTest, TheSheetSaysWhenTheListWouldBeTooLong) {
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

TEST_F(ComposerWindowTest, TheTemplateOfTheListIsEditedLikeAQuestion) {
    openBulk({"one"});

    click(findSegment("Place the answer on an ordered scale"));
    click(findField("Lowest score level"));
    type("low");

    EXPECT_EQ(harness.model().draftBulkTemplate->type, DecisionQuestionType::score);
    EXPECT_EQ(harness.model().draftBulkTemplate->levels[0], "low");
}

// --- Models and the run button ---

TEST_F(ComposerWindowTest, ModelsAreChosenInTheirPopover) {
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

TEST_F(ComposerWindowTest, AModelThatIsNotReadySaysWhyAndCannotBeChosen) {
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

TEST_F(ComposerWindowTest, ThePopoverLeadsToTheModelsAndToTheLogin) {
    open();
    harness.model().claudeLoggedIn = false;
    clickAndPause(findButton("Choose models"));
    EXPECT_NE(findButton("Log in to Claude Code"), nullptr);

    clickAndPause(findButton("Manage models…"));

    EXPECT_EQ(*harness.model().destination, Destination(Screen::models));
}

TEST_F(ComposerWindowTest, WithoutAReadyModelThePopoverOpens) {
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

TEST_F(ComposerWindowTest, ControlReturnRunsFromThePopoverOfTheModels) {
    addChosenModel("up");
    open();
    type("Why?");
    clickAndPause(findButton("up"));

    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(harness.answered());

    EXPECT_EQ(harness.model().library.runCount(), 1u);
}

TEST_F(ComposerWindowTest, ABlankQuestionIsRefusedUnderTheButtonUntilTheNextLetter) {
    addChosenModel("up");
    open();

    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_NE(findProblem("Write a question first."), nullptr);
    EXPECT_EQ(harness.model().library.runCount(), 0u);

    type("W");
    EXPECT_EQ(findProblem("Write a question first."), nullptr);
}

TEST_F(ComposerWindowTest, EveryControlHasItsSymbol) {
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

TEST_F(ComposerWindowTest, EveryControlOfABulkListHasItsSymbol) {
    openBulk({"one"});

    EXPECT_EQ(symbolsOn(findButton("Paste list")), u"\ue14f");
    EXPECT_EQ(descriptionOf(findButton("Paste list")), "Add one question per line");
    EXPECT_EQ(findField("Bulk question 1")->property("placeholderText"), QStringLiteral("Question"));
    EXPECT_EQ(symbolsOn(findMenuButton("Question actions")), u"\ue5d3");
    EXPECT_EQ(symbolsOn(findButton("Add question")), u"\ue145");
    EXPECT_EQ(symbolsOn(findButton("Run 1 question")), u"\ue5c8");
}

TEST_F(ComposerWindowTest, EveryEmptyFieldSaysWhatBelongsThere) {
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

TEST_F(ComposerWindowTest, WhatIsOpenIsClosedByItsButtonAndByEscapeWhichReturnsTheKeyboard) {
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
