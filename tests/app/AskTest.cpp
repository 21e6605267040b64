#include "app/Harness.h"
#include "base/Json.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class AskTest : public testing::Test {
protected:
    void SetUp() override {
        first = harness.addReadyModel("first", 0);
        second = harness.addReadyModel("second", 1);
        harness.endpoint.answer("first", says("one"));
        harness.endpoint.answer("second", says("two"));
        harness.start();
        harness.writeDraft();
    }

    AppModel& model() { return harness.model(); }

    std::vector<std::string> activeTexts() {
        std::vector<std::string> texts;
        for (const ModelAnswer& answer : harness.activeAnswers())
            texts.push_back(answer.text);
        return texts;
    }

    UUID askAndFinish() {
        model().ask();
        EXPECT_TRUE(harness.runUntilAnswered());
        return **model().activeRunID;
    }

    void refuse(const std::string& what) {
        harness.file().exec(
            ("CREATE TRIGGER refuse BEFORE " + what + " BEGIN SELECT RAISE(ABORT, 'no room'); END").c_str());
    }

    // The second model never answers, so that a run stays half finished.
    void silenceSecond() { harness.endpoint.answer("second", sample::Fault::neverAnswer()); }

    bool runUntilDone(const UUID& answerID) {
        return harness.loop.runUntil(
            [&] { return model().library.findAnswer(answerID)->state != AnswerState::running; });
    }

    Harness harness;
    ModelProfile first;
    ModelProfile second;
};

TEST_F(AskTest, EveryReadyModelAnswersAndEachAnswerStandsInTheFile) {
    askAndFinish();

    EXPECT_THAT(activeTexts(), ElementsAre("one", "two"));
    EXPECT_EQ(harness.file().loadAnswers(), harness.activeAnswers());
    const ModelAnswer answer = harness.activeAnswers().at(0);
    EXPECT_EQ(answer.state, AnswerState::done);
    EXPECT_EQ(answer.inputTokens, 12);
    EXPECT_EQ(answer.outputTokens, 3);
    EXPECT_FALSE(answer.tokensEstimated);
    EXPECT_DOUBLE_EQ(*answer.costUSD, (2.0 * 12 + 8.0 * 3) / 1'000'000);
    EXPECT_FALSE(answer.errorMessage.has_value());
}

TEST_F(AskTest, TheRunIsMadeOfTheDraft) {
    model().draftPrompt = "  Which way is up? \n";
    model().draftSystem = " kept as it stands ";
    model().draftScoring = ScoringMode::scale;
    model().draftCategoryText = " Support ";

    model().ask();

    const QuorlRun& run = *model().library.findRun(**model().activeRunID);
    EXPECT_EQ(run.kind, QuorlKind::generation);
    EXPECT_EQ(run.prompt, "Which way is up?");
    EXPECT_EQ(run.systemPrompt, " kept as it stands ");
    EXPECT_EQ(run.scoringMode, ScoringMode::scale);
    EXPECT_EQ(run.createdAt, harness.clock.now());
    EXPECT_EQ(run.questionsJSON, "");
    EXPECT_FALSE(run.batchID.has_value());
    EXPECT_EQ(run.origin, RunOrigin::app);
    EXPECT_EQ(run.categoryID, model().library.categories().at(0).id);
    EXPECT_EQ(model().library.categories().at(0).name, "Support");
    EXPECT_FALSE(model().draftCategoryID->has_value());
    EXPECT_FALSE(model().selectedCategoryID->has_value());
    EXPECT_THAT(harness.file().loadRuns(), ElementsAre(run));
}

TEST_F(AskTest, TheAnswersAreThereAtOnceInStateRunning) {
    silenceSecond();
    model().ask();

    const ModelAnswer answer = harness.activeAnswers().at(1);
    ModelAnswer expected;
    expected.id = answer.id;
    expected.runID = **model().activeRunID;
    expected.modelID = second.id;
    expected.modelName = second.name;
    expected.provider = second.provider;
    expected.position = 1;
    expected.state = AnswerState::running;
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_FALSE(model().activeBatchID->has_value());
}

TEST_F(AskTest, TheRunIsShownOnTheCompareScreenAndTheModelsSelectionStays) {
    model().destination = Screen::batches;
    model().activeBatchID = UUID::random();
    model().selectedModelID = second.id;

    model().ask();

    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_FALSE(model().activeBatchID->has_value());
    EXPECT_EQ(*model().activeRunID, model().library.runAt(0).id);
    EXPECT_EQ(*model().selectedModelID, second.id);
}

TEST_F(AskTest, TheSubcategoryIsFoundOrMadeUnderItsCategory) {
    model().draftCategoryText = "Support";
    model().draftSubcategoryText = " Refunds ";
    askAndFinish();
    harness.clock.advance(std::chrono::seconds(1));
    model().draftCategoryText = "SUPPORT";
    model().draftSubcategoryText = "refunds";
    askAndFinish();

    ASSERT_EQ(model().library.categories().size(), 2u);
    const Category& child = model().library.categories().at(1);
    EXPECT_EQ(child.name, "Refunds");
    EXPECT_EQ(child.parentID, model().library.categories().at(0).id);
    for (std::size_t i = 0; i < model().library.runCount(); ++i)
        EXPECT_EQ(model().library.runAt(i).categoryID, child.id);
}

TEST_F(AskTest, ACategoryThatCannotBeWrittenShowsTheErrorAndTheRunHasItAllTheSame) {
    refuse("INSERT ON categories");
    model().draftCategoryText = "Support";

    model().ask();

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_TRUE(model().library.runAt(0).categoryID.has_value());
}

TEST_F(AskTest, TheDraftIsPersisted) {
    model().draftPrompt = "persisted";
    model().ask();

    EXPECT_EQ(harness.defaults.string("draft.prompt"), "persisted");
}

TEST_F(AskTest, ABlankPromptStopsWithoutAWord) {
    model().draftPrompt = " \n";

    model().ask();

    EXPECT_EQ(model().library.runCount(), 0u);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(AskTest, ADecisionDraftShowsTheFirstProblem) {
    model().setKind(QuorlKind::decision);
    model().draftPrompt = "  ";

    model().ask();

    EXPECT_EQ(*model().alertMessage, "Write the state this decision is about.");
    EXPECT_EQ(*model().lastAsk, distantPast);
}

TEST_F(AskTest, ASubcategoryWithoutACategoryIsRefused) {
    model().draftCategoryText = " ";
    model().draftSubcategoryText = "x";

    model().ask();

    EXPECT_EQ(*model().alertMessage, "Type a category before a subcategory.");
    EXPECT_EQ(model().library.runCount(), 0u);
    EXPECT_EQ(*model().lastAsk, distantPast); // so that the mended draft can go at once
}

TEST_F(AskTest, ASecondPressWithin800MillisecondsIsSilent) {
    askAndFinish();
    harness.clock.advance(std::chrono::duration<double>(0.5));
    model().ask();
    EXPECT_EQ(model().library.runCount(), 1u);

    harness.clock.set(*model().lastAsk + std::chrono::duration<double>(0.81));
    model().ask();
    EXPECT_EQ(model().library.runCount(), 2u);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(AskTest, ExactlyTheDebounceStillStops) {
    harness.clock.set(dateFromSeconds(0));
    askAndFinish();
    harness.clock.set(dateFromSeconds(0.8));

    model().ask();

    EXPECT_EQ(model().library.runCount(), 1u);
}

TEST_F(AskTest, OnlyChosenReadyModelsOfTheFamilyAreAskedWithoutGaps) {
    ModelProfile disabled = harness.addReadyModel("disabled", -3);
    disabled.enabled = false;
    harness.file().saveModel(disabled);
    ModelProfile keyless = makeModel();
    keyless.sortIndex = -2;
    harness.file().saveModel(keyless);
    ModelProfile decision = makeModel(ProviderKind::veritor);
    decision.sortIndex = -1;
    harness.file().saveModel(decision);
    harness.start();
    harness.writeDraft();
    model().draftModelIDs = {disabled.id, keyless.id, decision.id, second.id, UUID::random()};

    model().ask();

    ASSERT_EQ(harness.activeAnswers().size(), 1u);
    EXPECT_EQ(harness.activeAnswers()[0].modelID, second.id);
    EXPECT_EQ(harness.activeAnswers()[0].position, 0);
}

TEST_F(AskTest, ADecisionDraftWithOnlyGenerationModelsStartsNothing) {
    model().setKind(QuorlKind::decision);
    DecisionQuestion question = DecisionQuestion::starter();
    question.instructions = "Is it up?";
    question.type = DecisionQuestionType::noul;
    model().draftQuestions = {question};

    model().ask();

    EXPECT_EQ(model().library.runCount(), 0u);
    EXPECT_FALSE(model().alertMessage->has_value());
    EXPECT_EQ(*model().lastAsk, distantPast);
}

TEST_F(AskTest, ADecisionRunKeepsItsQuestionsAndNoSystemPrompt) {
    ModelProfile decision = makeModel(ProviderKind::veritor);
    harness.file().saveModel(decision);
    harness.start();
    model().setKind(QuorlKind::decision);
    model().draftPrompt = "The state.";
    model().draftSystem = "ignored";
    model().draftModelIDs = {decision.id};
    DecisionQuestion question = DecisionQuestion::starter();
    question.instructions = "Is it up?";
    question.type = DecisionQuestionType::noul;
    model().draftQuestions = {question};

    model().ask();

    const QuorlRun& run = *model().library.findRun(**model().activeRunID);
    EXPECT_EQ(run.kind, QuorlKind::decision);
    EXPECT_EQ(run.systemPrompt, "");
    EXPECT_EQ(run.questionsJSON, Veritor::archive({question}));
    EXPECT_TRUE(harness.runUntilAnswered());
}

TEST_F(AskTest, AModelThatNeverAnswersHoldsNobodyUp) {
    silenceSecond();
    model().ask();
    const UUID quick = harness.activeAnswers().at(0).id;

    EXPECT_TRUE(runUntilDone(quick));

    EXPECT_EQ(harness.activeAnswers().at(0).text, "one");
    EXPECT_EQ(harness.activeAnswers().at(1).state, AnswerState::running);
}

TEST_F(AskTest, AnswersThatArriveOutOfOrderKeepTheirPositions) {
    sample::Completion late = says("one");
    late.delay = std::chrono::milliseconds(200);
    harness.endpoint.answer("first", late);
    model().ask();
    const UUID slow = harness.activeAnswers().at(0).id;
    const UUID quick = harness.activeAnswers().at(1).id;

    ASSERT_TRUE(runUntilDone(quick));
    EXPECT_EQ(model().library.findAnswer(slow)->state, AnswerState::running);
    ASSERT_TRUE(runUntilDone(slow));

    EXPECT_THAT(activeTexts(), ElementsAre("one", "two"));
}

TEST_F(AskTest, AFailureOfOneModelEndsItsAnswerAlone) {
    harness.endpoint.answer("first", sample::makeReply(500, R"({"error":{"message":"broken"}})"));

    askAndFinish();

    const ModelAnswer failed = harness.activeAnswers().at(0);
    EXPECT_EQ(failed.state, AnswerState::failed);
    EXPECT_EQ(failed.errorMessage, "HTTP 500: broken");
    EXPECT_EQ(failed.text, "");
    EXPECT_FALSE(failed.inputTokens.has_value());
    EXPECT_FALSE(failed.costUSD.has_value());
    EXPECT_EQ(harness.activeAnswers().at(1).state, AnswerState::done);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(AskTest, TheEndOfARunMovesAndAnnouncesNothing) {
    model().ask();
    model().destination = Screen::history;
    model().newComparison();
    model().destination = Screen::history;

    ASSERT_TRUE(harness.runUntilAnswered());

    EXPECT_EQ(*model().destination, Destination(Screen::history));
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_FALSE(model().feedback->has_value());
}

TEST_F(AskTest, AKeyEditedWhileARunIsUnderWayDoesNotTouchIt) {
    model().ask();
    model().saveSecret(first.id, {"another", "", "", ""});
    ASSERT_TRUE(harness.runUntilAnswered());

    for (const sample::Request& request : harness.endpoint.requests())
        EXPECT_EQ(*request.header("authorization"), "Bearer key-of-the-test");
}

TEST_F(AskTest, ARunThatCannotBeWrittenShowsTheErrorAndItsAnswersAreAskedAllTheSame) {
    refuse("INSERT ON runs");

    model().ask();
    ASSERT_TRUE(harness.runUntilAnswered());

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_EQ(model().library.runCount(), 0u);
    EXPECT_THAT(activeTexts(), ElementsAre("one", "two"));
}

TEST_F(AskTest, AnAnswerWithoutARowIsAskedAndItsOutcomeDropped) {
    refuse("INSERT ON answers WHEN NEW.position = 0");

    model().ask();
    ASSERT_TRUE(harness.endpoint.waitForRequests(2));
    ASSERT_TRUE(harness.runUntilAnswered());

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_THAT(activeTexts(), ElementsAre("two"));
}

TEST_F(AskTest, AnOutcomeThatCannotBeWrittenStaysInMemoryWithAnAlert) {
    refuse("UPDATE ON answers");

    askAndFinish();

    EXPECT_EQ(*model().alertMessage, "no room");
    EXPECT_THAT(activeTexts(), ElementsAre("one", "two"));
    EXPECT_EQ(harness.file().loadAnswers().at(0).state, AnswerState::running);
}

TEST_F(AskTest, OutcomesOfADeletedRunAreDropped) {
    sample::Completion late = says("late");
    late.delay = std::chrono::milliseconds(100);
    harness.endpoint.answer("first", late);
    model().ask();
    const UUID other = **model().activeRunID;
    model().pendingDelete = PendingDelete{PendingDelete::Kind::run, other};
    model().confirmDelete();
    harness.clock.advance(std::chrono::seconds(1));

    askAndFinish();
    // The same model answers both in turn, so by now the dropped outcomes have come.
    ASSERT_TRUE(harness.endpoint.waitForRequests(4));
    harness.loop.runPosted();

    EXPECT_EQ(harness.file().loadAnswers().size(), 2u);
    EXPECT_TRUE(model().library.answersOfRun(other).empty());
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(AskTest, AnOutcomeThatComesAfterTheProgramIsDropped) {
    sample::Completion late = says("late");
    late.delay = std::chrono::milliseconds(100);
    harness.endpoint.answer("first", late);
    model().ask();
    ASSERT_TRUE(harness.endpoint.waitForRequests(2));

    harness.quit();
    harness.loop.runPosted();
}

TEST_F(AskTest, AnswersAreThereAfterARestart) {
    const UUID runID = askAndFinish();
    const std::vector<ModelAnswer> before = harness.activeAnswers();

    harness.start();

    const auto after = model().library.answersOfRun(runID);
    EXPECT_EQ(std::vector(after.begin(), after.end()), before);
    EXPECT_FALSE(model().activeRunID->has_value());
}

TEST_F(AskTest, ABatchRunsWhileAnAnswerOfItRunsAndIsDoneWithTheLast) {
    const QuorlBatch batch = makeBatch();
    QuorlRun run = makeRun();
    run.batchID = batch.id;
    ModelAnswer quick = makeAnswer(run.id, 0);
    quick.modelID = first.id;
    ModelAnswer silent = makeAnswer(run.id, 1);
    silent.modelID = second.id;
    harness.file().saveBatch(batch);
    harness.file().insertRun(run);
    harness.file().insertAnswer(quick);
    harness.file().insertAnswer(silent);
    harness.start();
    const auto expectStatus = [&](BatchStatus status) {
        EXPECT_EQ(model().library.findBatch(batch.id)->status, status);
        EXPECT_EQ(harness.file().loadBatches().at(0).status, status);
    };
    expectStatus(BatchStatus::done);

    silenceSecond();
    model().retry(silent.id);
    model().retry(quick.id);
    ASSERT_TRUE(runUntilDone(quick.id));
    expectStatus(BatchStatus::running);

    harness.endpoint.answer("second", says("two"));
    model().retry(silent.id);
    ASSERT_TRUE(runUntilDone(silent.id));
    expectStatus(BatchStatus::done);
}

TEST_F(AskTest, FiveHundredModelsAreAskedAtOnce) {
    for (int i = 0; i < 498; ++i)
        harness.addReadyModel("many", 2 + i);
    harness.endpoint.answer(sample::everyModel, sample::Fault::neverAnswer());
    harness.endpoint.answer("first", sample::Fault::neverAnswer());
    harness.endpoint.answer("second", sample::Fault::neverAnswer());
    harness.defaults.values.erase("draft.models");
    harness.start();
    harness.writeDraft();

    model().ask();

    // None is answered, so all are under way side by side.
    EXPECT_TRUE(harness.endpoint.waitForRequests(500));
    EXPECT_EQ(harness.activeAnswers().size(), 500u);
}

class RetryTest : public AskTest {
protected:
    void SetUp() override {
        AskTest::SetUp();
        runID = askAndFinish();
        answer = harness.activeAnswers().at(0);
    }

    UUID runID;
    ModelAnswer answer;
};

TEST_F(RetryTest, ANewOutcomeReplacesTheTextAndKeepsTheJudgement) {
    answer.accepted = true;
    answer.rating = 9;
    answer.datasetID = UUID::random();
    harness.file().updateJudgment(answer);
    harness.start();
    harness.endpoint.answer("first", says("again", 20, 5));

    model().retry(answer.id);
    ASSERT_TRUE(runUntilDone(answer.id));

    const ModelAnswer& now = *model().library.findAnswer(answer.id);
    EXPECT_EQ(now.text, "again");
    EXPECT_EQ(now.inputTokens, 20);
    EXPECT_EQ(now.accepted, true);
    EXPECT_EQ(now.rating, 9);
    EXPECT_EQ(now.datasetID, answer.datasetID);
    EXPECT_EQ(harness.file().loadAnswers().at(0), now);
}

TEST_F(RetryTest, TheAnswerRunsAgainAndKeepsItsCountsUntilTheOutcomeComes) {
    harness.endpoint.answer("first", sample::Fault::neverAnswer());

    model().retry(answer.id);

    ModelAnswer expected = answer;
    expected.state = AnswerState::running;
    expected.text = "";
    expected.latencyMS = 0;
    EXPECT_EQ(*model().library.findAnswer(answer.id), expected);
    EXPECT_EQ(harness.file().loadAnswers().at(0), expected);
}

TEST_F(RetryTest, TheMessageOfAFailureGoesAtOnce) {
    answer.state = AnswerState::failed;
    answer.errorMessage = "HTTP 500: broken";
    harness.file().updateOutcome(answer);
    harness.start();
    harness.endpoint.answer("first", sample::Fault::neverAnswer());

    model().retry(answer.id);

    EXPECT_FALSE(model().library.findAnswer(answer.id)->errorMessage.has_value());
    EXPECT_FALSE(harness.file().loadAnswers().at(0).errorMessage.has_value());
}

TEST_F(RetryTest, ItAsksWithTheStoredRunAndThePresentProfile) {
    harness.writeDraft("another question");
    ModelProfile edited = first;
    edited.modelIdentifier = "edited";
    model().replaceModel(edited);
    harness.endpoint.answer("edited", says("from the edited one"));
    const Date asked = *model().lastAsk;

    model().retry(answer.id);
    ASSERT_TRUE(runUntilDone(answer.id));

    EXPECT_EQ(model().library.findAnswer(answer.id)->text, "from the edited one");
    const auto body = Json::parse(harness.endpoint.requests().back().body);
    EXPECT_EQ((*body)["messages"].back()["content"], "Which way is up?");
    EXPECT_EQ(*model().lastAsk, asked);
    EXPECT_EQ(model().library.runCount(), 1u);
}

TEST_F(RetryTest, AModelThatIsNoLongerReadyFailsInItsAnswer) {
    model().clearSecret(first.id);

    model().retry(answer.id);
    ASSERT_TRUE(runUntilDone(answer.id));

    EXPECT_EQ(model().library.findAnswer(answer.id)->state, AnswerState::failed);
    EXPECT_EQ(model().library.findAnswer(answer.id)->errorMessage, "Add an API key in Models.");
}

TEST_F(RetryTest, ADeletedModelCannotBeRetried) {
    model().pendingDelete = PendingDelete{PendingDelete::Kind::model, first.id};
    model().confirmDelete();

    model().retry(answer.id);

    EXPECT_EQ(*model().library.findAnswer(answer.id), answer);
}

TEST_F(RetryTest, AnUnknownAnswerOrOneWithoutItsRunIsPassedOver) {
    model().retry(UUID::random());
    ModelAnswer orphan = makeAnswer(UUID::random());
    orphan.modelID = first.id;
    harness.file().insertAnswer(orphan);
    harness.start();

    model().retry(orphan.id);

    EXPECT_EQ(*model().library.findAnswer(orphan.id), orphan);
}

TEST_F(RetryTest, OfTwoAttemptsAtOnceTheLastOutcomeStands) {
    sample::Completion slow = says("slow");
    slow.delay = std::chrono::milliseconds(200);
    harness.endpoint.answerInTurn("first", {slow, says("quick")});

    model().retry(answer.id);
    ASSERT_TRUE(harness.endpoint.waitForRequests(3));
    model().retry(answer.id);

    const auto text = [&] { return model().library.findAnswer(answer.id)->text; };
    ASSERT_TRUE(harness.loop.runUntil([&] { return text() == "quick"; }));
    EXPECT_TRUE(harness.loop.runUntil([&] { return text() == "slow"; }));
}

TEST_F(RetryTest, AResetThatCannotBeWrittenShowsTheErrorAndGoesOn) {
    refuse("UPDATE ON answers");
    harness.endpoint.answer("first", says("again"));

    model().retry(answer.id);
    EXPECT_EQ(*model().alertMessage, "no room");
    ASSERT_TRUE(runUntilDone(answer.id));

    EXPECT_EQ(model().library.findAnswer(answer.id)->text, "again");
}

TEST_F(RetryTest, TheScreenDoesNotMove) {
    model().destination = Screen::history;

    model().retry(answer.id);

    EXPECT_EQ(*model().destination, Destination(Screen::history));
}

} // namespace
