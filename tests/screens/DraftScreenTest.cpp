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
    static QVariant card(DraftScreen& screen, int row, int role) {
        return screen.answers()->data(screen.answers()->index(row), role);
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

    screen.chooseMode(DraftScreen::Mode::Decision);
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Decision);
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

    screen.chooseMode(DraftScreen::Mode::Generation);
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.mode(), DraftScreen::Mode::Generation);
    EXPECT_FALSE(*harness.model().draftIsBulk);
    EXPECT_EQ(harness.defaults.boolean("draft.bulk"), false);
    EXPECT_FALSE(screen.hasRun());
    EXPECT_EQ(focusRequested.size(), 1);
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

    screen.chooseMode(DraftScreen::Mode::Generation);
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.validation(), QString());
}

TEST_F(DraftScreenTest, ADecisionIsAskedAndItsAnswerShownInLines) {
    harness.defaults.setString("draft.kind", "decision");
    DraftScreen& screen = showAsking({harness.addDecisionModel("decider")});
    QuestionListModel& questions = *screen.questions();
    const QString id = questions.data(questions.index(0), QuestionListModel::QuestionIDRole).toString();
    questions.editInstructions(id, QStringLiteral("Is it late?"));
    questions.setType(id, QuestionListModel::Type::YesNo);
    ScreenHarness::endTurn();

    screen.compare();
    ASSERT_TRUE(harness.answered());
    ScreenHarness::endTurn();

    ASSERT_EQ(screen.answers()->rowCount(), 1);
    EXPECT_EQ(card(screen, 0, AnswerListModel::AnswerTextRole).toString().toStdString(),
              Veritor::summary(harness.activeAnswers()[0].text));
    EXPECT_NE(card(screen, 0, AnswerListModel::AnswerTextRole).toString().toStdString(),
              harness.activeAnswers()[0].text);
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
    QSignalSpy changed(&screen, &DraftScreen::promptChanged);
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

TEST_F(DraftScreenTest, AnyEditClearsTheValidationLine) {
    DraftScreen& screen = show();
    screen.compare();
    ASSERT_NE(screen.validation(), QString());

    screen.editSystemPrompt(QStringLiteral("Briefly."));
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.validation(), QString());
}

TEST_F(DraftScreenTest, ComparingAsksTheModelsAndShowsTheirAnswers) {
    harness.endpoint.answer("up", says("That way."));
    harness.endpoint.answer("down", sample::makeReply(500, R"({"error":{"message":"Tired."}})"));
    DraftScreen& screen = showAsking({harness.addReadyModel("up", 0), harness.addReadyModel("down", 1)});
    const QAbstractItemModelTester tester(screen.answers(),
                                          QAbstractItemModelTester::FailureReportingMode::Warning);
    QSignalSpy started(&screen, &DraftScreen::comparisonStarted);

    screen.compare();
    ScreenHarness::endTurn();

    EXPECT_EQ(started.size(), 1);
    EXPECT_TRUE(screen.hasRun());
    EXPECT_TRUE(screen.allRunning());
    EXPECT_EQ(screen.awaited(), QStringLiteral("your selected models"));
    EXPECT_EQ(screen.finishedCount(), QStringLiteral("0 of 2"));
    ASSERT_TRUE(harness.answered());
    ScreenHarness::endTurn();
    EXPECT_FALSE(screen.allRunning());
    EXPECT_EQ(screen.finishedCount(), QStringLiteral("2 of 2"));
    ASSERT_EQ(screen.answers()->rowCount(), 2);
    EXPECT_EQ(card(screen, 0, AnswerListModel::AnswerTextRole), QStringLiteral("That way."));
    EXPECT_EQ(card(screen, 1, AnswerListModel::ErrorRole), QStringLiteral("HTTP 500: Tired."));
}

TEST_F(DraftScreenTest, TheOnlyModelIsAwaitedByItsName) {
    DraftScreen& screen = showAsking({harness.addReadyModel("up")});
    screen.compare();
    ScreenHarness::endTurn();

    EXPECT_EQ(screen.awaited(), QStringLiteral("up"));
    ASSERT_TRUE(harness.answered());
}

TEST_F(DraftScreenTest, ResettingHidesTheAnswersAndKeepsTheDraft) {
    DraftScreen& screen = showAsking({harness.addReadyModel("up")});
    screen.compare();
    ASSERT_TRUE(harness.answered());
    QSignalSpy focusRequested(&screen, &DraftScreen::questionFocusRequested);

    screen.reset();
    ScreenHarness::endTurn();

    EXPECT_FALSE(screen.hasRun());
    EXPECT_EQ(screen.answers()->rowCount(), 0);
    EXPECT_EQ(screen.prompt(), QStringLiteral("Which way is up?"));
    EXPECT_EQ(focusRequested.size(), 1);
}

TEST_F(DraftScreenTest, RetryingAsksOneModelAgain) {
    harness.endpoint.answerInTurn(
        "up", {sample::makeReply(500, R"({"error":{"message":"Tired."}})"), says("That way.")});
    DraftScreen& screen = showAsking({harness.addReadyModel("up")});
    screen.compare();
    ASSERT_TRUE(harness.answered());

    screen.retry(card(screen, 0, AnswerListModel::AnswerIDRole).toString());
    ScreenHarness::endTurn();
    EXPECT_EQ(card(screen, 0, AnswerListModel::AnswerStateRole).toInt(),
              int(AnswerListModel::State::Running));
    ASSERT_TRUE(harness.answered());
    ScreenHarness::endTurn();

    EXPECT_EQ(card(screen, 0, AnswerListModel::AnswerTextRole), QStringLiteral("That way."));
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
    ASSERT_EQ(screen.finishedCount(), QStringLiteral("1000 of 1000"));
    for (ModelAnswer& answer : answers) {
        answer.state = AnswerState::running;
        harness.model().library.replaceAnswer(answer);
    }
    ScreenHarness::endTurn();
    QSignalSpy told(&screen, &DraftScreen::answersChanged);

    for (ModelAnswer& answer : answers) {
        answer.state = AnswerState::done;
        harness.model().library.replaceAnswer(answer);
    }
    ScreenHarness::endTurn();

    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(screen.finishedCount(), QStringLiteral("1000 of 1000"));
}

} // namespace
} // namespace quorl::test
