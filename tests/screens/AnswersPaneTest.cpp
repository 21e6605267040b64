#include "screens/AnswersHarness.h"
#include "screens/AnswersReview.h"
#include "screens/AnswersWindow.h"
#include "screens/RunDetailScreen.h"

#include <QSignalSpy>

#include <map>

namespace quorl::test {
namespace {

std::string prose(std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += "An idempotency key makes the retry safe. ";
    return text;
}

// What the cards are scrolled in.
QQuickItem* paneAround(QQuickItem& card) {
    QQuickItem* pane = nullptr;
    for (QQuickItem* item = &card; item; item = item->parentItem())
        pane = item->inherits("QQuickFlickable") ? item : pane;
    return pane;
}

// The answers side of the Compare screen, alone in a window.
class AnswersPaneTest : public testing::Test {
protected:
    void open(const QuorlRun& run, QSize size = {600, 800}) {
        harness.startOn(run);
        openOnShow(size);
    }

    void openOnShow(QSize size = {600, 800}) {
        review = std::make_unique<AnswersReview>(harness.model(), *harness.adapter, harness.clipboard,
                                                 harness.announcer);
        window.open(R"(
            Window {
                id: root

                required property AnswersReview review

                AnswersPane {
                    anchors.fill: parent
                    review: root.review
                    padding: 32
                    isStacked: root.width < 450
                    fields: Item { height: 100 }
                    footer: Item { height: 36 }
                }
                TextInput {
                    objectName: "elsewhere"
                    width: 10
                    height: 10
                }
            })",
                    {{QStringLiteral("review"), QVariant::fromValue(review.get())}}, size);
    }

    // A generation with those answers, which come from "Model 1" and so on.
    QuorlRun addRun(const std::vector<std::string>& texts, ScoringMode scoring = ScoringMode::binary) {
        QuorlRun run = makeRun();
        run.scoringMode = scoring;
        std::vector<ModelAnswer> answers;
        for (const std::string& text : texts) {
            ModelAnswer answer = makeAnswer(run.id, static_cast<std::int64_t>(answers.size()));
            answer.modelName = "Model " + std::to_string(answers.size() + 1);
            answer.text = text;
            answers.push_back(answer);
        }
        return harness.add(run, answers);
    }

    QuorlRun addChoice() {
        return harness.addDecision({makeChoice("tone", {"Warm", "Factual", "Cold", "Curt"})}, choiceText);
    }

    QuorlBatch addBatch(int count) {
        const QuorlBatch batch = makeBatch();
        harness.file().saveBatch(batch);
        for (int i = 0; i < count; ++i) {
            QuorlRun run = makeRun();
            run.batchID = batch.id;
            run.createdAt += std::chrono::seconds(i);
            run.prompt = "Question " + std::string(1, static_cast<char>('A' + i)) + "?";
            batchRuns.push_back(harness.add(run, {makeAnswer(run.id)}));
        }
        return batch;
    }

    void openBatch(int count, std::size_t place) {
        const QuorlBatch batch = addBatch(count);
        harness.startOn(batchRuns[place]);
        harness.model().activeBatchID = batch.id;
        openOnShow();
    }

    void change(std::size_t place, const std::function<void(ModelAnswer&)>& edit) {
        harness.change(place, edit);
        window.settle();
    }

    QQuickItem* thumb(const char* help, int nth = 0) { return window.find(help, QAccessible::CheckBox, nth); }
    static bool isChecked(QQuickItem* item) {
        return QAccessible::queryAccessibleInterface(item)->state().checked;
    }

    // From top to bottom.
    QStringList menuEntries() {
        std::map<qreal, QString> entries;
        for (const char* name : {"Response details", "Copy response", "Run again", "Remove from dataset",
                                 "Mark as preferred answer", "Clear preferred answer"}) {
            if (QQuickItem* const entry = window.entry(name))
                entries[entry->mapToScene({}).y()] = QString::fromUtf8(name);
        }
        QStringList names;
        for (const auto& [place, name] : entries)
            names.append(name);
        return names;
    }

    AnswersHarness harness;
    std::unique_ptr<AnswersReview> review;
    AnswersWindow window; // goes ahead of the review
    std::vector<QuorlRun> batchRuns;
};

constexpr const char* up = "Mark answer correct and save to dataset";
constexpr const char* down = "Choose the correct answer and save it";

TEST_F(AnswersPaneTest, WithoutARunItInvites) {
    open(makeRun());

    EXPECT_NE(window.text("Your model responses will appear here."), nullptr);
    EXPECT_EQ(window.button("Reset comparison"), nullptr);
    EXPECT_EQ(window.button("Next question"), nullptr);
}

TEST_F(AnswersPaneTest, WhileAllAreRunningOneLoaderStandsInForThem) {
    open(addRun({"a", "b"}));
    for (const std::size_t place : {0u, 1u})
        change(place, [](ModelAnswer& answer) { answer.state = AnswerState::running; });

    EXPECT_NE(window.find("Waiting for a response from your selected models", QAccessible::ProgressBar),
              nullptr);
    EXPECT_NE(window.text("Responses will appear here without moving this workspace."), nullptr);
    EXPECT_NE(window.text("0 of 2"), nullptr);

    change(0, [](ModelAnswer& answer) { answer.state = AnswerState::done; });
    EXPECT_NE(window.selectable("a"), nullptr);
    EXPECT_NE(window.find("Waiting for a response from Model 2", QAccessible::ProgressBar), nullptr);
    EXPECT_NE(window.text("1 of 2"), nullptr);
}

TEST_F(AnswersPaneTest, AThumbIsPressedByMouseAndByKey) {
    open(addRun({"That way."}));
    EXPECT_FALSE(isChecked(thumb(up)));

    window.click(thumb(up));
    EXPECT_EQ(harness.answer().accepted, true);
    EXPECT_TRUE(harness.answer().datasetID);
    ASSERT_NE(thumb("Clear positive rating"), nullptr);
    EXPECT_TRUE(isChecked(thumb("Clear positive rating")));
    EXPECT_NE(window.button("Saved to dataset"), nullptr);
    EXPECT_NE(window.text("1 of 1 responses rated"), nullptr);

    window.press(Qt::Key_Space);
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
    EXPECT_FALSE(isChecked(thumb(up)));
}

TEST_F(AnswersPaneTest, TheBookmarkSaves) {
    open(addRun({"That way."}));

    window.click(window.button("Save to dataset"));

    EXPECT_TRUE(harness.answer().datasetID);
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
    EXPECT_NE(window.button("Saved to dataset"), nullptr);
}

TEST_F(AnswersPaneTest, ARatingIsChosenFromTheMenu) {
    open(addRun({"That way."}, ScoringMode::scale));
    EXPECT_EQ(thumb(up), nullptr);
    QQuickItem* const button = window.menuButton("Rate");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(AnswersWindow::descriptionOf(*button), QStringLiteral("Rate this answer from 1 to 10"));

    window.click(button);
    for (int value = 1; value <= 10; ++value)
        EXPECT_NE(window.entry(std::to_string(value).c_str()), nullptr) << value;
    window.choose("8");
    EXPECT_EQ(harness.answer().rating, 8);
    ASSERT_NE(window.menuButton("8 / 10"), nullptr);

    window.click(window.menuButton("8 / 10"));
    window.choose("Clear rating");
    EXPECT_EQ(harness.answer().rating, std::nullopt);
}

TEST_F(AnswersPaneTest, TheMenuHoldsWhatApplies) {
    open(addRun({"That way."}));
    QQuickItem* const button = window.menuButton("Actions for Model 1");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(AnswersWindow::descriptionOf(*button), QStringLiteral("Details, copy, and more"));

    const auto entries = [&] {
        window.click(window.menuButton("Actions for Model 1"));
        const QStringList names = menuEntries();
        window.press(Qt::Key_Escape);
        EXPECT_TRUE(window.waitFor([&] { return menuEntries().isEmpty(); }));
        return names;
    };
    EXPECT_EQ(entries(), (QStringList{QStringLiteral("Response details"), QStringLiteral("Copy response"),
                                      QStringLiteral("Run again")}));
    harness.model().saveToDataset(harness.answer().id, std::nullopt, std::nullopt, std::nullopt);
    window.settle();
    EXPECT_EQ(entries(), (QStringList{QStringLiteral("Response details"), QStringLiteral("Copy response"),
                                      QStringLiteral("Run again"), QStringLiteral("Remove from dataset")}));
}

TEST_F(AnswersPaneTest, AnAnswerUnderWayCannotBeRunAgain) {
    open(addRun({"a", "b"}));
    change(0, [](ModelAnswer& answer) { answer.state = AnswerState::running; });

    window.click(window.menuButton("Actions for Model 1"));

    EXPECT_EQ(menuEntries(),
              (QStringList{QStringLiteral("Response details"), QStringLiteral("Copy response")}));
}

TEST_F(AnswersPaneTest, TheMenuIsWorkedByKeys) {
    open(addRun({"That way."}));
    window.menuButton("Actions for Model 1")->forceActiveFocus(Qt::TabFocusReason);

    window.press(Qt::Key_Space);
    window.press(Qt::Key_Down);
    window.press(Qt::Key_Return);

    EXPECT_EQ(harness.clipboard.contents, "That way.");
    EXPECT_EQ(window.focused(), "Actions for Model 1");
}

TEST_F(AnswersPaneTest, ADecisionIsPreferredFromItsMenu) {
    open(addChoice());
    window.click(window.menuButton("Actions for Zun"));
    window.choose("Mark as preferred answer");
    EXPECT_TRUE(harness.answer().chosenCorrect);

    window.click(window.menuButton("Actions for Zun"));
    window.choose("Clear preferred answer");
    EXPECT_FALSE(harness.answer().chosenCorrect);
}

TEST_F(AnswersPaneTest, TheMenuOfASavedDecisionHoldsEverythingInOrder) {
    open(addChoice());
    harness.model().saveToDataset(harness.answer().id, std::nullopt, std::nullopt, std::nullopt);
    window.settle();

    window.click(window.menuButton("Actions for Zun"));

    EXPECT_EQ(menuEntries(), (QStringList{QStringLiteral("Response details"), QStringLiteral("Copy response"),
                                          QStringLiteral("Run again"), QStringLiteral("Remove from dataset"),
                                          QStringLiteral("Mark as preferred answer")}));
    EXPECT_GE(window.entry("Mark as preferred answer")->width(),
              window.entry("Mark as preferred answer")->implicitWidth()); // nothing of it is cut
    window.choose("Remove from dataset");
    EXPECT_EQ(harness.answer().datasetID, std::nullopt);
    EXPECT_EQ(harness.model().library.dataset().size(), 0u);
}

TEST_F(AnswersPaneTest, TheDetailsTellWhatIsKnown) {
    open(addRun({"That way."}));
    change(0, [](ModelAnswer& answer) { answer.costUSD = 0.001; });
    window.click(window.menuButton("Actions for Model 1"));
    window.choose("Response details");

    EXPECT_NE(window.text("Direct API"), nullptr);
    EXPECT_NE(window.text("Time: 420 ms"), nullptr);
    EXPECT_NE(window.text("Tokens: 12 in · 3 out"), nullptr);
    EXPECT_NE(window.text("Cost: $0.0010"), nullptr);
    EXPECT_NE(window.text("Raw response"), nullptr);

    window.click(window.button("Done"));
    ASSERT_TRUE(window.waitFor([&] { return window.text("Raw response") == nullptr; }));

    change(0, [](ModelAnswer& answer) { answer.costUSD = std::nullopt; });
    window.click(window.menuButton("Actions for Model 1"));
    window.choose("Response details");
    EXPECT_EQ(window.text("Cost: "), nullptr);
    EXPECT_EQ(window.text("Cost: —"), nullptr);
}

TEST_F(AnswersPaneTest, TheDetailsOfADecisionTellEveryProbability) {
    open(addChoice(), {1100, 800});
    window.click(window.menuButton("Actions for Zun"));
    window.choose("Response details");

    EXPECT_NE(window.text("Model confidence: 50%"), nullptr);
    for (const char* line : {"Warm 71%", "Factual 18%", "Cold 8%", "Curt 3%"})
        EXPECT_NE(window.text(line), nullptr) << line;
    window.press(Qt::Key_Escape);
    ASSERT_TRUE(window.waitFor([&] { return window.text("Raw response") == nullptr; }));
    EXPECT_EQ(window.focused(), "Actions for Zun");
}

TEST_F(AnswersPaneTest, AFailureShowsItsErrorAndIsAskedAgain) {
    const ModelProfile profile = harness.addReadyModel("up");
    harness.endpoint.answer("up", says("The other way."));
    const QuorlRun run = makeRun();
    ModelAnswer answer = makeAnswer(run.id);
    answer.modelID = profile.id;
    answer.text = "";
    answer.state = AnswerState::failed;
    answer.errorMessage = "HTTP 500: Tired.";
    open(harness.add(run, {answer}));
    EXPECT_NE(window.text("Couldn't get an answer"), nullptr);
    EXPECT_EQ(window.button("Log in to Claude Code"), nullptr);
    EXPECT_EQ(thumb(up), nullptr);

    window.click(window.button("Show error"));
    EXPECT_NE(window.selectable("HTTP 500: Tired."), nullptr);
    window.click(window.button("Done"));
    ASSERT_TRUE(window.waitFor([&] { return window.text("Raw response") == nullptr; }));

    window.click(window.button("Retry"));
    EXPECT_EQ(harness.answer().state, AnswerState::running);
    ASSERT_TRUE(harness.runUntilAnswered());
    window.settle();
    EXPECT_NE(window.selectable("The other way."), nullptr);
}

TEST_F(AnswersPaneTest, AFailedClaudeCodeOffersItsLogin) {
    open(addRun({""}));
    change(0, [](ModelAnswer& answer) {
        answer.state = AnswerState::failed;
        answer.provider = ProviderKind::claudeCode;
    });

    window.click(window.button("Log in to Claude Code"));

    EXPECT_NE(*harness.model().claudeLoginStatus, std::nullopt);
}

TEST_F(AnswersPaneTest, ProbabilitiesOpenByHoverAndByPress) {
    open(addChoice());
    QQuickItem* const button = window.button("Top choice probabilities");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(AnswersWindow::descriptionOf(*button),
              QStringLiteral("Hover or press to view the top three probabilities"));
    const auto bar = [&](const char* name) { return window.find(name, QAccessible::ProgressBar); };

    window.hover(button);
    ASSERT_TRUE(window.waitFor([&] { return bar("Warm 71%") != nullptr; }));
    EXPECT_NE(window.text("Choice probabilities"), nullptr);
    EXPECT_NE(bar("Factual 18%"), nullptr);
    EXPECT_NE(bar("Cold 8%"), nullptr);
    EXPECT_EQ(bar("Curt 3%"), nullptr);
    window.hover(window.button("Reset comparison"));
    ASSERT_TRUE(window.waitFor([&] { return bar("Warm 71%") == nullptr; }));

    button->forceActiveFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Return);
    EXPECT_NE(bar("Warm 71%"), nullptr);
    window.press(Qt::Key_Escape);
    EXPECT_EQ(bar("Warm 71%"), nullptr);
    EXPECT_EQ(window.focused(), "Top choice probabilities");
}

TEST_F(AnswersPaneTest, AChoiceIsCorrectedByMouse) {
    open(addChoice());
    window.click(thumb(down));
    EXPECT_NE(window.find("Choose the correct answer", QAccessible::Dialog), nullptr);
    EXPECT_NE(window.text("This correction will be saved to your dataset."), nullptr);
    EXPECT_FALSE(window.button("Save correction")->isEnabled());

    window.click(window.find("Correct answer", QAccessible::ComboBox));
    window.choose("Cold");
    EXPECT_TRUE(window.button("Save correction")->isEnabled());
    window.click(window.button("Save correction"));

    EXPECT_EQ(harness.answer().accepted, false);
    ASSERT_EQ(harness.model().library.dataset().size(), 1u);
    EXPECT_TRUE(isChecked(thumb("Clear negative rating")));
    EXPECT_EQ(window.find("Choose the correct answer", QAccessible::Dialog), nullptr);
}

TEST_F(AnswersPaneTest, ATextIsCorrectedByKeysAloneAndTheKeysAreLetters) {
    open(addRun({"That way."}));
    window.press(Qt::Key_J);
    EXPECT_EQ(window.focused(), "Model 1");
    window.press(Qt::Key_N);
    ASSERT_NE(window.find("Enter the corrected response", QAccessible::Dialog), nullptr);
    EXPECT_NE(window.text("This response—not the model's answer—will be saved to your dataset."), nullptr);
    EXPECT_EQ(window.focused(), "Corrected response");
    EXPECT_FALSE(window.button("Save correction")->isEnabled());

    window.type("only y");
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Tab);
    window.press(Qt::Key_Return);

    EXPECT_EQ(harness.answer().accepted, false);
    ASSERT_TRUE(harness.answer().datasetID);
    EXPECT_EQ(harness.model().library.findExample(*harness.answer().datasetID)->completion, "only y");
    EXPECT_EQ(window.focused(), "Model 1");
}

TEST_F(AnswersPaneTest, ACorrectionIsCancelledByItsButtonAndByEscape) {
    open(addRun({"That way."}));
    for (const bool byKey : {false, true}) {
        window.click(thumb(down));
        window.type("x");
        if (byKey)
            window.press(Qt::Key_Escape);
        else
            window.click(window.button("Cancel"));
        EXPECT_EQ(window.find("Enter the corrected response", QAccessible::Dialog), nullptr);
        EXPECT_EQ(harness.answer().accepted, std::nullopt);
    }
    EXPECT_EQ(harness.model().library.dataset().size(), 0u);
}

TEST_F(AnswersPaneTest, KeysMoveBetweenCardsAndJudgeTheOneThatHasTheKeyboard) {
    open(addRun({"a", "b", "c"}));
    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer(0).accepted, std::nullopt); // shows first which card that would be
    EXPECT_EQ(window.focused(), "Model 1");

    window.press(Qt::Key_J);
    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer(1).accepted, true);
    window.press(Qt::Key_J);
    window.press(Qt::Key_J);
    EXPECT_EQ(window.focused(), "Model 3");
    window.press(Qt::Key_K);
    window.press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.focused(), "Model 1");
    window.press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(window.focused(), "Model 2");
}

TEST_F(AnswersPaneTest, TabLeadsFromACardToItsControlsAndBack) {
    open(addRun({"a", "b"}));
    window.press(Qt::Key_J);
    window.press(Qt::Key_J);
    ASSERT_EQ(window.focused(), "Model 2");

    window.press(Qt::Key_Tab);
    EXPECT_EQ(window.focused(), "Actions for Model 2");

    window.press(Qt::Key_K);
    ASSERT_EQ(window.focused(), "Model 1");
    window.press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window.focused(), "Reset comparison");
}

TEST_F(AnswersPaneTest, AKeyJudgesTheCardThatAControlInItHasTheKeyboardOf) {
    open(addRun({"a", "b"}));
    window.menuButton("Actions for Model 2")->forceActiveFocus(Qt::TabFocusReason);

    window.press(Qt::Key_Y);

    EXPECT_EQ(harness.answer(0).accepted, std::nullopt);
    EXPECT_EQ(harness.answer(1).accepted, true);
}

TEST_F(AnswersPaneTest, KeysJudgeWhileTheTextOfAnAnswerHasTheKeyboard) {
    open(addRun({"a", "b"}));
    window.click(window.selectable("b"));
    ASSERT_EQ(window.focused(), "b");

    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer(1).accepted, true);
    window.press(Qt::Key_K);
    EXPECT_EQ(window.focused(), "Model 1");
}

TEST_F(AnswersPaneTest, AClickIntoALongAnswerLeavesItWhereItIs) {
    std::string text;
    while (text.size() < 100'000)
        text += "An answer of very many words that are told again and again. \n\n";
    open(addRun({text, text}), {600, 600});
    window.press(Qt::Key_J);
    QQuickItem* const words = window.selectable(text.c_str());
    ASSERT_NE(words, nullptr);
    const qreal before = words->mapToScene({}).y();

    QTest::mouseClick(window.window.get(), Qt::LeftButton, {}, words->mapToScene({100, 200}).toPoint());
    window.settle();

    EXPECT_EQ(words->mapToScene({}).y(), before);
    EXPECT_TRUE(words->hasActiveFocus());
}

TEST_F(AnswersPaneTest, ACardThatAKeyLeadsToIsAllInSight) {
    std::string text;
    while (text.size() < 10'000)
        text += "An answer of very many words that are told again and again.\n";
    open(addRun({text, text, text, text}), {600, 600});

    for (int card = 0; card < 4; ++card)
        window.press(Qt::Key_J);

    const qreal foot = window.button("Save to dataset", 3)->mapToScene({}).y();
    EXPECT_GT(foot, 300);
    EXPECT_LT(foot, 600 - 84 - 28);
}

TEST_F(AnswersPaneTest, DigitsRate) {
    open(addRun({"a"}, ScoringMode::scale));
    window.press(Qt::Key_J);

    window.press(Qt::Key_7);
    EXPECT_EQ(harness.answer().rating, 7);
    window.press(Qt::Key_0);
    EXPECT_EQ(harness.answer().rating, 10);
    window.press(Qt::Key_1);
    EXPECT_EQ(harness.answer().rating, 1);
}

TEST_F(AnswersPaneTest, KeysAreLettersWhereSomebodyWrites) {
    open(addRun({"a"}));
    auto* const field = window.window->findChild<QQuickItem*>(QStringLiteral("elsewhere"));
    field->forceActiveFocus();

    window.type("jynlh7");

    EXPECT_EQ(field->property("text"), QStringLiteral("jynlh7"));
    EXPECT_EQ(harness.answer().accepted, std::nullopt);
    EXPECT_TRUE(review->hasRun());
}

TEST_F(AnswersPaneTest, KeysRestWhileAMenuIsOpen) {
    open(addRun({"a", "b"}));
    window.press(Qt::Key_J);
    window.click(window.menuButton("Actions for Model 1"));

    window.press(Qt::Key_Y);

    EXPECT_EQ(harness.answer(0).accepted, std::nullopt);
}

TEST_F(AnswersPaneTest, ABatchIsSteppedThrough) {
    openBatch(3, 1);
    EXPECT_NE(window.text("Question 2 of 3"), nullptr);
    EXPECT_NE(window.selectable("Question B?"), nullptr);
    EXPECT_NE(window.button("Next question", 1), nullptr); // the arrow and the button below

    window.click(window.button("Next question", 0));
    EXPECT_EQ(*harness.model().activeRunID, batchRuns[2].id);
    EXPECT_FALSE(window.button("Next question")->isEnabled());
    EXPECT_NE(window.button("Done"), nullptr);

    window.click(window.menuButton("Jump to question"));
    EXPECT_NE(window.entry("2. Question B?"), nullptr);
    window.choose("1. Question A?");
    EXPECT_EQ(*harness.model().activeRunID, batchRuns[0].id);
    EXPECT_FALSE(window.button("Previous question")->isEnabled());

    window.press(Qt::Key_L);
    EXPECT_NE(window.selectable("Question B?"), nullptr);
    EXPECT_EQ(window.focused(), "Test model");
    window.press(Qt::Key_H);
    EXPECT_NE(window.selectable("Question A?"), nullptr);
}

TEST_F(AnswersPaneTest, ARunningBatchShowsHowFarItIs) {
    openBatch(2, 0);
    EXPECT_EQ(window.find("0 of 2 answers", QAccessible::ProgressBar), nullptr);

    Library& library = harness.model().library;
    QuorlBatch batch = *library.findBatch(*batchRuns[0].batchID);
    ModelAnswer answer = library.answersOfRun(batchRuns[1].id)[0];
    answer.state = AnswerState::running;
    library.replaceAnswer(answer);
    batch.status = BatchStatus::running;
    library.replaceBatch(batch);
    window.settle();

    EXPECT_NE(window.find("1 of 2 answers", QAccessible::ProgressBar), nullptr);
}

TEST_F(AnswersPaneTest, KeysJudgeQuestionAfterQuestion) {
    openBatch(2, 0);
    window.press(Qt::Key_J);
    window.press(Qt::Key_Y);
    window.press(Qt::Key_L);
    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer(0).accepted, true);
    EXPECT_EQ(harness.answer(1).accepted, true);

    window.press(Qt::Key_H);
    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer(0).accepted, std::nullopt);
}

TEST_F(AnswersPaneTest, BeforeTheFirstQuestionThereIsNone) {
    openBatch(2, 0);
    QQuickItem* const reset = window.button("Reset comparison");
    reset->forceActiveFocus(Qt::TabFocusReason);

    window.press(Qt::Key_H);

    EXPECT_EQ(*harness.model().activeRunID, batchRuns[0].id);
    EXPECT_EQ(window.focused(), "Reset comparison");
}

TEST_F(AnswersPaneTest, DoneEndsTheBatch) {
    openBatch(2, 1);

    window.click(window.button("Done"));

    EXPECT_FALSE(review->hasRun());
    EXPECT_NE(window.text("Your model responses will appear here."), nullptr);
}

TEST_F(AnswersPaneTest, ResetHidesTheAnswers) {
    open(addRun({"That way."}));
    QQuickItem* const button = window.button("Reset comparison");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(
        AnswersWindow::descriptionOf(*button),
        QStringLiteral("Return to the question and hide the current answers. Your setup stays in place."));

    window.click(button);

    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);
}

TEST_F(AnswersPaneTest, TabGoesThroughEverythingInOrder) {
    open(addChoice());
    window.button("Reset comparison")->forceActiveFocus(Qt::TabFocusReason);

    std::vector<std::string> visited;
    for (int stop = 0; stop < 6; ++stop) {
        window.press(Qt::Key_Tab);
        visited.push_back(window.focused());
    }

    EXPECT_EQ(visited, (std::vector<std::string>{"Actions for Zun", "Top choice probabilities", up, down,
                                                 "Save to dataset", "Next question"}));
}

TEST_F(AnswersPaneTest, GenerationsStandSideBySideAndShortDecisionsDoNot) {
    open(addRun({"one", "two", "three"}), {800, 800});
    const auto place = [&](const char* words) { return window.selectable(words)->mapToScene({}); };
    EXPECT_EQ(place("one").y(), place("two").y());
    EXPECT_GT(place("two").x(), place("one").x() + 340);
    EXPECT_GT(place("three").y(), place("one").y());

    window.window->resize(700, 800);
    window.settle();
    EXPECT_EQ(place("one").x(), place("two").x());
}

TEST_F(AnswersPaneTest, ShortDecisionsAreReadDown) {
    QuorlRun run = makeRun(QuorlKind::decision);
    run.questionsJSON = Veritor::archive({makeChoice("tone", {"Warm", "Cold"})});
    std::vector<ModelAnswer> answers;
    for (int i = 0; i < 2; ++i) {
        answers.push_back(makeAnswer(run.id, i));
        answers.back().modelName = "Model " + std::to_string(i + 1);
        answers.back().text = choiceText;
    }
    open(harness.add(run, answers), {800, 800});
    const auto place = [&](const char* name) { return window.menuButton(name)->mapToScene({}); };
    EXPECT_EQ(place("Actions for Model 1").x(), place("Actions for Model 2").x());
    EXPECT_EQ(window.text("tone"), nullptr);

    window.window->resize(1100, 800);
    window.settle();
    EXPECT_EQ(place("Actions for Model 1").y(), place("Actions for Model 2").y());
}

TEST_F(AnswersPaneTest, SeveralResultsHaveTheirQuestions) {
    open(harness.addDecision({makeChoice("tone", {"Warm", "Cold"}), makeScore("goodwill")},
                             R"({"answers":{"goodwill":{"score":3.625,"type":"score"},)"
                             R"("tone":{"choice":"Warm","type":"choice"}}})"));

    EXPECT_NE(window.text("goodwill"), nullptr);
    EXPECT_NE(window.selectable("3.62"), nullptr);
    EXPECT_NE(window.text("tone"), nullptr);
    EXPECT_NE(window.selectable("Warm"), nullptr);
    EXPECT_EQ(window.button("Top choice probabilities"), nullptr);
}

TEST_F(AnswersPaneTest, AnAnswerIsNeverMarkup) {
    const char* const markup = "<b>bold</b> &amp; *star* <img src=\"http://127.0.0.1:1/x.png\">";
    open(addRun({markup}));

    QQuickItem* const text = window.selectable(markup);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->property("textFormat").toInt(), int(Qt::PlainText));
}

TEST_F(AnswersPaneTest, ALongWordStaysInsideItsCard) {
    const std::string word(2000, 'w');
    open(addRun({word}));

    QQuickItem* const text = window.selectable(word.c_str());
    ASSERT_NE(text, nullptr);
    EXPECT_LE(text->property("contentWidth").toReal(), text->width());
}

TEST_F(AnswersPaneTest, ALongAnswerLeavesTheJudgementInSightUntilAllOfItIsAskedFor) {
    std::string text;
    for (int line = 0; line < 500; ++line)
        text += "Line " + std::to_string(line) + "\n";
    open(addRun({text}));
    const auto footAt = [&] { return window.button("Save to dataset")->mapToScene({}).y(); };
    EXPECT_LT(footAt(), window.window->height() - 84);
    window.window->resize(500, 700);
    window.settle();
    EXPECT_LT(footAt(), 700 - 84);

    window.click(window.button("Show all"));
    EXPECT_GT(footAt(), 500 * 20);
    window.button("Show less")->forceActiveFocus(Qt::TabFocusReason);
    window.press(Qt::Key_Return);
    EXPECT_LT(footAt(), window.window->height());
}

TEST_F(AnswersPaneTest, ALongAnswerIsLaidOutAsFarAsItIsRead) {
    std::string text;
    while (text.size() < 100'000)
        text += "This line is one of very many.\r\n";
    open(addRun({text}));
    QQuickItem* const words = window.selectable(text.c_str()); // all of it to a screen reader
    ASSERT_NE(words, nullptr);
    const auto length = [&] { return words->property("length").toInt(); };
    EXPECT_LT(length(), 20'000);

    window.turnWheel(words, -30);
    ASSERT_TRUE(window.waitFor(
        [&] { return words->parentItem()->parentItem()->property("contentY").toReal() > 300; }));

    words->forceActiveFocus(Qt::TabFocusReason);
    window.press(Qt::Key_A, Qt::ControlModifier);
    const int lines = static_cast<int>(text.size() / 32);
    EXPECT_EQ(length(), lines * 31); // with one kind of line end
    EXPECT_EQ(words->property("selectedText").toString().size(), lines * 31);
}

TEST_F(AnswersPaneTest, ALongAnswerFillsAHighWindow) {
    std::string text;
    while (text.size() < 100'000)
        text += "Line.\n";
    open(addRun({text, text}), {1700, 2160});

    QQuickItem* const words = window.selectable(text.c_str());
    ASSERT_NE(words, nullptr);
    EXPECT_GT(words->height(), 2160);
    EXPECT_LT(words->property("length").toInt(), 60'000);
}

TEST_F(AnswersPaneTest, AfterResizingEveryCardHasItsWidthAndItsPlace) {
    std::vector<std::string> texts;
    for (int card = 0; card < 6; ++card)
        texts.push_back("Card " + std::to_string(card) + prose(20'000));
    open(addRun(texts), {1240, 800});
    std::vector<QQuickItem*> cards;
    for (const std::string& text : texts)
        cards.push_back(window.selectable(text.c_str()));
    ASSERT_NE(cards[5], nullptr); // made, and out of sight
    const qreal before = cards[0]->width();
    ASSERT_TRUE(window.waitFor([&] { return cards[5]->width() == before; }));

    window.window->contentItem()->setWidth(1200);
    window.window->contentItem()->setWidth(1160);

    EXPECT_LT(cards[0]->width(), before);
    EXPECT_EQ(cards[5]->width(), before);
    ASSERT_TRUE(window.waitFor([&] { return cards[5]->width() == cards[0]->width(); }));
    window.settle();
    for (QQuickItem* card : cards)
        EXPECT_LE(card->property("contentWidth").toReal(), card->width());
    EXPECT_EQ(cards[5]->mapToScene({}).x(), cards[2]->mapToScene({}).x());
    EXPECT_EQ(cards[5]->mapToScene({}).y(), cards[3]->mapToScene({}).y());
}

TEST_F(AnswersPaneTest, WhatComesIntoSightWhileTheWindowIsResizedFitsAtOnce) {
    const std::vector<std::string> texts(6, prose(20'000));
    open(addRun(texts), {1240, 800});
    QQuickItem* const last = window.find(texts[5].c_str(), QAccessible::EditableText, 5);
    ASSERT_NE(last, nullptr);
    const qreal before = window.selectable(texts[0].c_str())->width();
    ASSERT_TRUE(window.waitFor([&] { return last->width() == before; }));

    window.window->contentItem()->setWidth(1200);
    ASSERT_EQ(last->width(), before);
    paneAround(*last)->setProperty("contentY", 600);

    EXPECT_EQ(last->width(), window.selectable(texts[0].c_str())->width());
    EXPECT_LT(last->width(), before);
}

TEST_F(AnswersPaneTest, AVeryLongTextIsLaidOutAnewWhenResizingRests) {
    const std::string text = prose(100'000);
    open(addRun({text}), {700, 800});
    QQuickItem* const words = window.selectable(text.c_str());
    window.click(window.button("Show all"));
    QQuickItem* const place = words->parentItem()->parentItem();
    const qreal before = place->height();

    window.window->contentItem()->setWidth(600);
    EXPECT_GT(words->width(), place->width());
    ASSERT_TRUE(window.waitFor([&] { return words->width() == place->width(); }));
    window.settle();

    EXPECT_GT(place->height(), before);
    EXPECT_EQ(place->height(), words->height());
    EXPECT_LE(words->property("contentWidth").toReal(), words->width());
}

TEST_F(AnswersPaneTest, AJudgementKeepsSelectionScrollAndKeyboard) {
    std::string lines;
    for (int line = 0; line < 12; ++line)
        lines += "line\n";
    std::vector<std::string> texts(8, lines);
    texts[6] = "Select this.";
    open(addRun(texts));
    for (int card = 0; card < 7; ++card)
        window.press(Qt::Key_J);
    QQuickItem* const text = window.selectable("Select this.");
    ASSERT_NE(text, nullptr);
    text->forceActiveFocus(Qt::TabFocusReason);
    window.settle();
    QMetaObject::invokeMethod(text, "select", Q_ARG(int, 0), Q_ARG(int, 6));
    const qreal place = text->mapToScene({}).y();
    ASSERT_LT(place, 800);

    harness.model().setAccepted(harness.answer(6).id, true);
    harness.model().setAccepted(harness.answer(0).id, true);
    window.settle();

    EXPECT_EQ(window.selectable("Select this."), text);
    EXPECT_EQ(text->property("selectedText"), QStringLiteral("Select"));
    EXPECT_EQ(text->mapToScene({}).y(), place);
    EXPECT_EQ(window.focused(), "Select this.");
}

TEST_F(AnswersPaneTest, StackedAllOfItScrolls) {
    open(addRun({"a", "b"}), {420, 800});
    QQuickItem* const head = window.button("Reset comparison");
    const qreal before = head->mapToScene({}).y();
    EXPECT_GT(before, 150);

    window.press(Qt::Key_J);
    window.press(Qt::Key_J);
    QQuickItem* const pane = window.window->contentItem()->childItems().first();
    QMetaObject::invokeMethod(pane, "scrollToHead");
    window.settle();

    EXPECT_LT(head->mapToScene({}).y(), 40);
    EXPECT_NE(window.button("Next question"), nullptr);
}

TEST_F(AnswersPaneTest, ADeletedRunTakesItsPanelsAlong) {
    open(addRun({"That way."}));
    window.click(window.menuButton("Actions for Model 1"));
    window.choose("Response details");
    ASSERT_NE(window.text("Raw response"), nullptr);

    harness.model().newComparison();
    window.settle();

    EXPECT_EQ(window.text("Raw response"), nullptr);
}

// One comparison, alone in a window.
class RunDetailTest : public AnswersPaneTest {
protected:
    void openDetail(const QuorlRun& run, QSize size = {1036, 800}) {
        harness.startOn(run);
        screen = std::make_unique<RunDetailScreen>(run.id, harness.model(), *harness.adapter,
                                                   harness.clipboard, harness.clock, harness.announcer);
        window.open(R"(
            Window {
                id: root

                required property RunDetailScreen screen

                RunDetail {
                    anchors.fill: parent
                    screen: root.screen
                }
            })",
                    {{QStringLiteral("screen"), QVariant::fromValue(screen.get())}}, size);
    }

    ~RunDetailTest() override { window.window.reset(); } // ahead of its screen

    std::unique_ptr<RunDetailScreen> screen;
};

TEST_F(RunDetailTest, ShowsWhatWasAskedAndAnswered) {
    openDetail(addRun({"That way."}));

    EXPECT_NE(window.find("Generation", QAccessible::Heading), nullptr);
    EXPECT_NE(window.find("Prompt", QAccessible::Heading), nullptr);
    EXPECT_NE(window.selectable("Which way is up?"), nullptr);
    EXPECT_NE(window.find("System prompt", QAccessible::Heading), nullptr);
    EXPECT_NE(window.selectable("Answer directly."), nullptr);
    EXPECT_NE(window.selectable("That way."), nullptr);
    window.press(Qt::Key_J);
    window.press(Qt::Key_Y);
    EXPECT_EQ(harness.answer().accepted, true);
}

TEST_F(RunDetailTest, HasNoOtherQuestions) {
    openDetail(addRun({"That way."}));
    window.button("Delete")->forceActiveFocus(Qt::TabFocusReason);

    window.press(Qt::Key_L);
    window.press(Qt::Key_H);

    EXPECT_EQ(window.focused(), "Delete");
}

TEST_F(RunDetailTest, VariesAndDeletes) {
    openDetail(addRun({"That way."}));

    window.click(window.button("Delete"));
    EXPECT_TRUE(*harness.model().pendingDelete);

    window.click(window.button("Run a variation"));
    EXPECT_EQ(*harness.model().draftPrompt, "Which way is up?");
}

TEST_F(RunDetailTest, OfADeletedRunNothingIsShown) {
    openDetail(addRun({"That way."}));

    harness.model().library.removeRun(harness.model().library.runAt(0).id);
    window.settle();

    EXPECT_EQ(window.button("Delete"), nullptr);
    EXPECT_EQ(window.selectable("That way."), nullptr);
}

} // namespace
} // namespace quorl::test
