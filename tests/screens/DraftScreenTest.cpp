#include "screens/DraftScreen.h"

#include "decision/VeritorResults.h"
#include "screens/ScreenHarness.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <algorithm>

namespace quorl::test {
namespace {

class DraftScreenTest : public testing::Test {
protected:
    DraftScreenTest() { harness.defaults.setString("draft.kind", "generation"); }

    DraftScreen& show() { return *harness.show().draft(); }

    // A screen whose draft is one question to those models.
    DraftScreen& showAsking(const std::vector<ModelProfile>& models) {
        DraftScreen& screen = show();
        std::set<UUID> ids;
        for (const ModelProfile& model : models)
            ids.insert(model.id);
        harness.model().draftModelIDs = ids;
        screen.editPrompt(QStringLiteral("Which way is up?"));
        ScreenHarness::endTurn();
        return screen;
    }

    static QVariant choice(DraftScreen& screen, int row, int role) {
        return screen.models()->data(screen.models()->index(row), role);
    }
    static AnswerCardModel& card(DraftScreen& screen, int row) {
        AnswerCardListModel& cards = *screen.review()->cards();
        return *cards.data(cards.index(row), AnswerCardListModel::CardRole).value<AnswerCardModel*>();
    }

    ScreenHarness harness;
};

TEST_F(DraftScreenTest, OpensInTheModeOfTheDraft) {
    harness.defaults.setString("draft.kind", "decision");

    EXPECT_EQ(show().mode(), DraftScreen::Mode::Decision);
    EXPECT_EQ(*harness.model().draftKind, QuorlKind::decision);
}

TEST_F(DraftScreenTest, ChoosingDecisionsShowsTheirModelsAndKeepsTheTexts) {
    harness.addReadyModel("speaker");
    harness.addDecisionModel("decider", 1);
    DraftScreen& screen = show();
    screen.editPrompt(QStringLiteral("Two rooms are free."));
    ASSERT_EQ(choice(screen, 0, ModelChoiceListModel::ModelNameRole), QStringLiteral("speaker"));

    screen.askDecisionModels();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Decision);
    EXPECT_EQ(screen.modeLabel(), QStringLiteral("Decision"));
    EXPECT_EQ(harness.defaults.string("draft.kind"), "decision");
    EXPECT_EQ(screen.prompt(), QStringLiteral("Two rooms are free."));
    ASSERT_EQ(screen.models()->rowCount(), 1);
    EXPECT_EQ(choice(screen, 0, ModelChoiceListModel::ModelNameRole), QStringLiteral("decider"));
}

TEST_F(DraftScreenTest, ChoosingToAskModelsLeavesTheBulkListAndHidesTheAnswers) {
    harness.defaults.setString("draft.kind", "decision");
    harness.defaults.setBoolean("draft.bulk", true);
    const QuorlRun run = makeRun(QuorlKind::decision);
    harness.file().insertRun(run);
    DraftScreen& screen = show();
    harness.model().activeRunID = run.id;
    ScreenHarness::endTurn();
    QSignalSpy focusRequested(&screen, &DraftScreen::questionFocusRequested);

    EXPECT_EQ(screen.modeLabel(), QStringLiteral("Bulk questions"));

    screen.askLanguageModels();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Generation);
    EXPECT_EQ(screen.modeLabel(), QStringLiteral("Ask models"));
    EXPECT_EQ(harness.defaults.string("draft.kind"), "generation");
    EXPECT_FALSE(*harness.model().draftIsBulk);
    EXPECT_EQ(harness.defaults.boolean("draft.bulk"), false);
    EXPECT_FALSE(screen.review()->hasRun());
    EXPECT_EQ(focusRequested.size(), 1);
}

TEST_F(DraftScreenTest, ASingleQuestionKeepsTheFamilyOfTheModels) {
    harness.defaults.setString("draft.kind", "decision");
    harness.defaults.setBoolean("draft.bulk", true);
    const QuorlRun run = makeRun(QuorlKind::decision);
    harness.file().insertRun(run);
    DraftScreen& screen = show();
    harness.model().activeRunID = run.id;

    screen.askSingleQuestion();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Decision);
    EXPECT_EQ(harness.defaults.boolean("draft.bulk"), false);
    EXPECT_EQ(*harness.model().activeRunID, std::nullopt);

    screen.askLanguageModels();
    screen.askSingleQuestion();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Generation);
}

TEST_F(DraftScreenTest, BulkQuestionsStartWithTheQuestionsOfTheDraft) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = show();
    screen.questions()->first()->editInstructions(QStringLiteral("Is it late?"));

    screen.askBulkQuestions();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Bulk);
    ASSERT_EQ(screen.bulkQuestions()->rowCount(), 1);
    EXPECT_EQ(harness.model().draftBulkQuestions->front().text, "Is it late?");
    EXPECT_EQ(screen.bulkTemplate()->instructions(), QStringLiteral("Is it late?"));
    EXPECT_EQ(harness.defaults.boolean("draft.bulk"), true);
}

TEST_F(DraftScreenTest, DecisionModelsKeepABulkList) {
    harness.defaults.setString("draft.kind", "decision");
    harness.defaults.setBoolean("draft.bulk", true);
    DraftScreen& screen = show();

    screen.askDecisionModels();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Bulk);
}

TEST_F(DraftScreenTest, TheRunButtonCountsTheRowsOfABulkListBlankOnesToo) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = show();
    EXPECT_EQ(screen.runLabel(), QStringLiteral("Compare"));
    QSignalSpy changed(&screen, &DraftScreen::runLabelChanged);

    screen.askBulkQuestions();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.runLabel(), QStringLiteral("Run 1 question"));
    EXPECT_GE(changed.size(), 1);

    screen.bulkQuestions()->add();
    EXPECT_EQ(screen.runLabel(), QStringLiteral("Run 2 questions"));
    EXPECT_GE(changed.size(), 2);
    harness.model().draftBulkQuestions = std::vector<BulkQuestion>();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.runLabel(), QStringLiteral("Run 0 questions"));
}

TEST_F(DraftScreenTest, WhatIsWrongWithABulkListIsSaidWithItsNumber) {
    harness.defaults.setString("draft.kind", "decision");
    harness.defaults.setBoolean("draft.bulk", true);
    DraftScreen& screen = show();
    screen.editPrompt(QStringLiteral("Two rooms are free."));
    screen.bulkTemplate()->setType(QuestionEditor::Type::YesNo);
    harness.model().draftBulkQuestions =
        std::vector<BulkQuestion>{{UUID::random(), "Is it late?"}, {UUID::random(), ""}};

    screen.compare();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.validation(), QStringLiteral("Question 2: Write the question text."));

    harness.model().draftBulkQuestions = std::vector<BulkQuestion>();
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.validation(), QString());
    screen.compare();
    EXPECT_EQ(screen.validation(), QStringLiteral("Add between 1 and 200 questions."));
    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
    EXPECT_EQ(harness.model().library.runCount(), 0u);
}

TEST_F(DraftScreenTest, ABulkListIsAskedAsOneBatch) {
    harness.defaults.setString("draft.kind", "decision");
    harness.defaults.setBoolean("draft.bulk", true);
    DraftScreen& screen = showAsking({harness.addDecisionModel("decider")});
    screen.bulkTemplate()->setType(QuestionEditor::Type::YesNo);
    harness.model().draftBulkQuestions =
        std::vector<BulkQuestion>{{UUID::random(), "Is it late?"}, {UUID::random(), "Is it cold?"}};
    QSignalSpy started(&screen, &DraftScreen::comparisonStarted);

    screen.compare();

    EXPECT_EQ(screen.validation(), QString());
    EXPECT_EQ(harness.model().library.runCount(), 2u);
    EXPECT_NE(*harness.model().activeBatchID, std::nullopt);
    EXPECT_EQ(started.size(), 1);
    ASSERT_TRUE(harness.answered());
}

TEST_F(DraftScreenTest, WhatIsWrongWithADecisionIsSaidAndNothingIsAsked) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = show();

    screen.compare();
    EXPECT_EQ(screen.validation(), QStringLiteral("Write the state this decision is about."));

    screen.editPrompt(QStringLiteral("Two rooms are free."));
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.validation(), QString());
    screen.compare();
    EXPECT_EQ(screen.validation(), QStringLiteral("Write the question text."));
    EXPECT_EQ(*harness.model().alertMessage, std::nullopt);
    EXPECT_EQ(harness.model().library.runCount(), 0u);
}

TEST_F(DraftScreenTest, AnotherModeTakesTheValidationLineAlong) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = show();
    screen.compare();
    ASSERT_NE(screen.validation(), QString());

    screen.askLanguageModels();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.validation(), QString());
}

TEST_F(DraftScreenTest, ADecisionIsAskedAndItsAnswerShownInLines) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = showAsking({harness.addDecisionModel("decider")});
    QuestionListModel& questions = *screen.questions();
    questions.first()->editInstructions(QStringLiteral("Is it late?"));
    questions.first()->setType(QuestionEditor::Type::YesNo);
    ScreenHarness::endTurn();

    screen.compare();
    ASSERT_TRUE(harness.answered());
    ScreenHarness::endTurn();

    ASSERT_EQ(screen.review()->cards()->rowCount(), 1);
    EXPECT_EQ(card(screen, 0).results().size(), 1);
}

TEST_F(DraftScreenTest, EditsReachTheDraftAtOnceAndTheSettingsAtTheEndOfTheTurn) {
    DraftScreen& screen = show();
    screen.editPrompt(QStringLiteral("Pourquoi ça?"));
    screen.editSystemPrompt(QStringLiteral("Briefly."));

    EXPECT_EQ(*harness.model().draftPrompt, "Pourquoi ça?");
    EXPECT_EQ(*harness.model().draftSystem, "Briefly.");
    EXPECT_NE(harness.defaults.string("draft.prompt"), "Pourquoi ça?");
    ScreenHarness::endTurn();
    EXPECT_EQ(harness.defaults.string("draft.prompt"), "Pourquoi ça?");
    EXPECT_EQ(harness.defaults.string("draft.system"), "Briefly.");
}

TEST_F(DraftScreenTest, TheOptionsReachTheDraftAndTheSettings) {
    DraftScreen& screen = show();
    EXPECT_EQ(screen.scoring(), DraftScreen::Scoring::YesNo);
    screen.editCategory(QStringLiteral("Support "));
    screen.editSubcategory(QStringLiteral("Returns"));
    screen.setScoring(DraftScreen::Scoring::OneToTen);
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.category(), QStringLiteral("Support "));
    EXPECT_EQ(screen.subcategory(), QStringLiteral("Returns"));
    EXPECT_EQ(screen.scoring(), DraftScreen::Scoring::OneToTen);
    EXPECT_EQ(harness.defaults.string("draft.categoryText"), "Support ");
    EXPECT_EQ(harness.defaults.string("draft.subcategoryText"), "Returns");
    EXPECT_EQ(harness.defaults.string("draft.scoring"), "scale");
}

TEST_F(DraftScreenTest, ManyEditsOfOneTurnAreWrittenOnce) {
    DraftScreen& screen = show();
    ScreenHarness::endTurn();
    harness.defaults.writes.clear();

    for (const char* text : {"W", "Wh", "Why", "Wh", "Why?"})
        screen.editPrompt(QString::fromUtf8(text));
    ScreenHarness::endTurn();

    EXPECT_EQ(std::count(harness.defaults.writes.begin(), harness.defaults.writes.end(), "draft.prompt"), 1);
    EXPECT_EQ(harness.defaults.string("draft.prompt"), "Why?");
}

TEST_F(DraftScreenTest, TakingAnEditBackInTheSameTurnLeavesTheOldText) {
    DraftScreen& screen = show();
    screen.editPrompt(QStringLiteral("W"));
    screen.editPrompt(QString());

    EXPECT_EQ(*harness.model().draftPrompt, "");
}

TEST_F(DraftScreenTest, WhatAnEditorMakesOfATextByItselfIsNoEdit) {
    harness.defaults.setString("draft.prompt", "one\r\ntwo\xC2\xA0three\xE2\x80\xA9"
                                               "four");
    DraftScreen& screen = show();

    screen.editPrompt(QStringLiteral("one\ntwo three\nfour"));

    EXPECT_EQ(*harness.model().draftPrompt, "one\r\ntwo\xC2\xA0three\xE2\x80\xA9"
                                            "four");
}

TEST_F(DraftScreenTest, AChangeOfTheDraftFromElsewhereIsShownAndKept) {
    DraftScreen& screen = show();
    QSignalSpy changed(&screen, &DraftScreen::textsChanged);
    harness.model().draftPrompt = "From history";
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.prompt(), QStringLiteral("From history"));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(harness.defaults.string("draft.prompt"), "From history");
}

TEST_F(DraftScreenTest, ListsTheEnabledModelsOfTheFamilyWithWhatStandsInTheirWay) {
    const ModelProfile ready = harness.addReadyModel("ready", 0);
    ModelProfile keyless = makeModel();
    keyless.name = "keyless";
    keyless.sortIndex = 1;
    ModelProfile off = makeModel();
    off.enabled = false;
    harness.file().saveModel(keyless);
    harness.file().saveModel(off);
    harness.file().saveModel(makeModel(ProviderKind::zun));
    DraftScreen& screen = show();
    const QAbstractItemModelTester tester(screen.models(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);

    ASSERT_EQ(screen.models()->rowCount(), 2);
    EXPECT_EQ(choice(screen, 0, ModelChoiceListModel::ModelNameRole), QStringLiteral("ready"));
    EXPECT_EQ(choice(screen, 0, ModelChoiceListModel::ReadyRole), true);
    EXPECT_EQ(choice(screen, 0, ModelChoiceListModel::ObstacleRole), QString());
    EXPECT_EQ(choice(screen, 1, ModelChoiceListModel::ModelNameRole), QStringLiteral("keyless"));
    EXPECT_EQ(choice(screen, 1, ModelChoiceListModel::ReadyRole), false);
    EXPECT_EQ(choice(screen, 1, ModelChoiceListModel::ObstacleRole), QStringLiteral("Add an API key."));
}

TEST_F(DraftScreenTest, TogglingChoosesAndKeepsTheChoice) {
    const ModelProfile model = harness.addReadyModel("up");
    DraftScreen& screen = show();
    const bool before = choice(screen, 0, ModelChoiceListModel::ChosenRole).toBool();

    screen.toggleModel(QString::fromStdString(model.id.text()));
    ScreenHarness::endTurn();

    EXPECT_EQ(choice(screen, 0, ModelChoiceListModel::ChosenRole).toBool(), !before);
    EXPECT_EQ(harness.model().draftModelIDs->contains(model.id), !before);
}

TEST_F(DraftScreenTest, TheLabelNamesTwoModelsAndCountsTheOthers) {
    std::vector<ModelProfile> models;
    for (const char* name : {"A", "B", "C", "D"})
        models.push_back(harness.addReadyModel(name, static_cast<std::int64_t>(models.size())));
    DraftScreen& screen = show();
    harness.model().draftModelIDs = std::set<UUID>();
    ScreenHarness::endTurn();

    std::vector<std::string> labels{screen.modelsLabel().toStdString()};
    for (const ModelProfile& model : models) {
        screen.toggleModel(QString::fromStdString(model.id.text()));
        ScreenHarness::endTurn();
        labels.push_back(screen.modelsLabel().toStdString());
    }

    EXPECT_EQ(labels, (std::vector<std::string>{"Choose models", "A", "A + B", "A + B +1", "A + B +2"}));
}

TEST_F(DraftScreenTest, ABlankQuestionIsRefused) {
    DraftScreen& screen = showAsking({harness.addReadyModel("up")});
    screen.editPrompt(QStringLiteral(" \n\u2003"));

    screen.compare();

    EXPECT_EQ(screen.validation(), QStringLiteral("Write a question first."));
    EXPECT_EQ(harness.model().library.runCount(), 0u);
}

TEST_F(DraftScreenTest, AQuestionWithoutAReadyModelIsRefusedAndAsksForOne) {
    harness.addReadyModel("up");
    DraftScreen& screen = show();
    harness.model().draftModelIDs = std::set<UUID>{UUID::random()};
    screen.editPrompt(QStringLiteral("Why?"));
    QSignalSpy modelsRequested(&screen, &DraftScreen::modelsRequested);

    screen.compare();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.validation(), QStringLiteral("Choose at least one ready model."));
    EXPECT_EQ(modelsRequested.size(), 1);
    EXPECT_EQ(harness.model().library.runCount(), 0u);
}

TEST_F(DraftScreenTest, WhatIsMissingIsReadWithEveryPress) {
    DraftScreen& screen = show();
    const Announcer& announcer = *harness.root().announcer();
    const QSignalSpy announced(&announcer, &Announcer::announced);

    screen.compare();
    EXPECT_EQ(announcer.words(), QStringLiteral("Write a question first."));
    screen.compare();
    EXPECT_EQ(announced.count(), 2);

    screen.editPrompt(QStringLiteral("Why?"));
    ScreenHarness::endTurn();
    EXPECT_EQ(announced.count(), 2);
    screen.compare();
    EXPECT_EQ(announcer.words(), QStringLiteral("Choose at least one ready model."));
}

TEST_F(DraftScreenTest, AnyEditClearsTheValidationLine) {
    DraftScreen& screen = show();
    const auto text = QStringLiteral("x");
    const std::vector<std::function<void()>> edits{
        [&] { screen.editSystemPrompt(text); },
        [&] { screen.editCategory(text); },
        [&] { screen.editSubcategory(text); },
        [&] { screen.setScoring(DraftScreen::Scoring::OneToTen); },
        [&] { screen.questions()->first()->editInstructions(text); },
        [&] { screen.bulkTemplate()->addOption(); },
        [&] { screen.bulkQuestions()->add(); },
        [&] { screen.editPrompt(QStringLiteral(" ")); },
        [&] { harness.model().newComparison(); },
    };

    for (std::size_t place = 0; place < edits.size(); ++place) {
        screen.compare();
        ASSERT_NE(screen.validation(), QString());
        edits[place]();
        ScreenHarness::endTurn();
        EXPECT_EQ(screen.validation(), QString()) << place;
    }
}

TEST_F(DraftScreenTest, TheLoginIsOfferedWhereItIsMissingAndOfUse) {
    DraftScreen& screen = show();
    harness.model().claudeLoggedIn = std::nullopt;
    ScreenHarness::endTurn();
    EXPECT_FALSE(screen.offersLogin());

    harness.model().claudeLoggedIn = false;
    ScreenHarness::endTurn();
    EXPECT_TRUE(screen.offersLogin());

    screen.askDecisionModels();
    ScreenHarness::endTurn();
    EXPECT_FALSE(screen.offersLogin());

    screen.askLanguageModels();
    harness.model().claudeLoggedIn = true;
    ScreenHarness::endTurn();
    EXPECT_FALSE(screen.offersLogin());
}

TEST_F(DraftScreenTest, TheModelsAreManagedOnTheirOwnScreen) {
    show().manageModels();

    EXPECT_EQ(*harness.model().destination, Destination(Screen::models));
}

TEST_F(DraftScreenTest, ComparingAsksTheModelsAndShowsTheirAnswers) {
    harness.endpoint.answer("up", says("That way."));
    harness.endpoint.answer("down", sample::makeReply(500, R"({"error":{"message":"Tired."}})"));
    DraftScreen& screen = showAsking({harness.addReadyModel("up", 0), harness.addReadyModel("down", 1)});
    QSignalSpy started(&screen, &DraftScreen::comparisonStarted);

    screen.compare();
    ScreenHarness::endTurn();

    EXPECT_EQ(started.size(), 1);
    EXPECT_TRUE(screen.review()->isWaiting());
    ASSERT_TRUE(harness.answered());
    ScreenHarness::endTurn();
    EXPECT_EQ(screen.review()->finishedCount(), QStringLiteral("2 of 2"));
    ASSERT_EQ(screen.review()->cards()->rowCount(), 2);
    EXPECT_EQ(card(screen, 0).text(), QStringLiteral("That way."));
    EXPECT_EQ(card(screen, 1).error(), QStringLiteral("HTTP 500: Tired."));
}

TEST_F(DraftScreenTest, ResettingHidesTheAnswersAndKeepsTheDraft) {
    DraftScreen& screen = showAsking({harness.addReadyModel("up")});
    screen.compare();
    ASSERT_TRUE(harness.answered());
    QSignalSpy focusRequested(&screen, &DraftScreen::questionFocusRequested);

    screen.review()->reset();
    ScreenHarness::endTurn();

    EXPECT_FALSE(screen.review()->hasRun());
    EXPECT_EQ(screen.prompt(), QStringLiteral("Which way is up?"));
    EXPECT_EQ(focusRequested.size(), 1);
}

TEST_F(DraftScreenTest, AThousandAnswersThatArriveTogetherAreToldOnce) {
    const QuorlRun run = makeRun();
    std::vector<ModelAnswer> answers;
    harness.file().insertRun(run);
    for (int i = 0; i < 1000; ++i) {
        answers.push_back(makeAnswer(run.id, i));
        answers.back().state = AnswerState::failed; // what was running at the last quit has failed
        harness.file().insertAnswer(answers.back());
    }
    DraftScreen& screen = show();
    harness.model().activeRunID = run.id;
    ScreenHarness::endTurn();
    ASSERT_EQ(screen.review()->finishedCount(), QStringLiteral("1000 of 1000"));
    for (ModelAnswer& answer : answers) {
        answer.state = AnswerState::running;
        harness.model().library.replaceAnswer(answer);
    }
    ScreenHarness::endTurn();
    QSignalSpy told(screen.review(), &AnswersReview::changed);

    for (ModelAnswer& answer : answers) {
        answer.state = AnswerState::done;
        harness.model().library.replaceAnswer(answer);
    }
    ScreenHarness::endTurn();

    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(screen.review()->finishedCount(), QStringLiteral("1000 of 1000"));
}

} // namespace
} // namespace quorl::test
