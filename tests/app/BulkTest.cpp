#include "app/Harness.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

DecisionQuestion makeChoice() {
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = "Next step";
    question.options = {{UUID::random(), "Refund", "money back"}, {UUID::random(), "Wait", ""}};
    question.yesMeans = "kept, though a choice does not send it";
    return question;
}

std::vector<BulkQuestion> makeLines(const std::vector<std::string>& texts) {
    std::vector<BulkQuestion> lines;
    for (const std::string& text : texts)
        lines.push_back({UUID::random(), text});
    return lines;
}

// A list of two questions that can be asked of two decision models.
class BulkTest : public testing::Test {
protected:
    void SetUp() override {
        first = addDecisionModel("first", 0);
        second = addDecisionModel("second", 1);
        generation = harness.addReadyModel("generation", 2);
        harness.start();
        writeList();
    }

    AppModel& model() { return harness.model(); }

    ModelProfile addDecisionModel(const std::string& name, std::int64_t sortIndex) {
        ModelProfile profile = makeModel(ProviderKind::veritor);
        profile.name = name;
        profile.modelIdentifier = name;
        profile.endpoint = harness.endpoint.baseURL();
        profile.sortIndex = sortIndex;
        harness.file().saveModel(profile);
        return profile;
    }

    void writeList() {
        model().setBulk(true);
        model().draftPrompt = " The parcel is late. ";
        model().draftBulkTemplate = makeChoice();
        model().draftBulkQuestions = makeLines({" What now? ", "And then?"});
        model().draftModelIDs = {first.id, second.id, generation.id};
    }

    QuorlBatch onlyBatch() {
        const auto& batches = model().library.batches();
        EXPECT_EQ(batches.size(), 1u);
        return batches.empty() ? QuorlBatch() : batches[0];
    }

    std::vector<QuorlRun> batchRuns() {
        std::vector<QuorlRun> runs;
        for (const QuorlRun* run : model().library.runsOfBatch(onlyBatch().id))
            runs.push_back(*run);
        return runs;
    }

    void expectNothingAsked() {
        EXPECT_EQ(model().library.runCount(), 0u);
        EXPECT_EQ(*model().lastAsk, distantPast);
    }

    Harness harness;
    ModelProfile first;
    ModelProfile second;
    ModelProfile generation;
};

TEST_F(BulkTest, EveryLineIsARunOfOneBatchAskedOfTheChosenDecisionModels) {
    model().draftScoring = ScoringMode::scale;
    model().draftCategoryText = "Support";
    model().draftSubcategoryText = "Parcels";

    model().askBulk();
    ASSERT_TRUE(harness.runUntilAnswered());

    const QuorlBatch batch = onlyBatch();
    EXPECT_EQ(batch.name, "Bulk · What now?");
    EXPECT_EQ(batch.kind, QuorlKind::decision);
    EXPECT_EQ(batch.source, RunOrigin::app);
    EXPECT_EQ(batch.status, BatchStatus::done);
    const std::vector<QuorlRun> runs = batchRuns();
    ASSERT_EQ(runs.size(), 2u);
    for (const QuorlRun& run : runs) {
        EXPECT_EQ(run.kind, QuorlKind::decision);
        EXPECT_EQ(run.prompt, "The parcel is late.");
        EXPECT_EQ(run.scoringMode, ScoringMode::scale);
        EXPECT_EQ(run.origin, RunOrigin::app);
        EXPECT_EQ(model().library.findCategory(run.categoryID.value_or(UUID()))->name, "Parcels");
        std::vector<UUID> asked;
        for (const ModelAnswer& answer : model().library.answersOfRun(run.id)) {
            EXPECT_EQ(answer.state, AnswerState::done) << answer.errorMessage.value_or("");
            asked.push_back(answer.modelID);
        }
        EXPECT_THAT(asked, ElementsAre(first.id, second.id));
    }
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(BulkTest, TheRunsKeepTheWholeQuestion) {
    model().askBulk();

    const std::vector<QuorlRun> runs = batchRuns();
    ASSERT_EQ(runs.size(), 2u);
    const auto expected =
        Veritor::bulkQuestions("state", *model().draftBulkTemplate, *model().draftBulkQuestions);
    EXPECT_EQ(runs[0].questionsJSON, Veritor::archive({expected[0]}));
    EXPECT_EQ(runs[1].questionsJSON, Veritor::archive({expected[1]}));
}

TEST_F(BulkTest, TheFirstRunIsShownAndTheDraftKept) {
    model().destination = Screen::history;
    harness.defaults.writes.clear();

    model().askBulk();

    EXPECT_EQ(*model().destination, Destination(Screen::draft));
    EXPECT_EQ(*model().activeBatchID, onlyBatch().id);
    EXPECT_EQ(*model().activeRunID, batchRuns().at(0).id);
    EXPECT_EQ(*model().lastAsk, harness.clock.now());
    EXPECT_FALSE(harness.defaults.writes.empty());
    EXPECT_EQ(harness.defaults.string("draft.prompt"), " The parcel is late. ");
}

TEST_F(BulkTest, TheBatchIsNamedByTheFirst60Characters) {
    std::string sixty;
    for (int count = 0; count < 60; ++count)
        sixty += "ä";
    model().draftBulkQuestions = makeLines({sixty + "b"});

    model().askBulk();

    EXPECT_EQ(onlyBatch().name, "Bulk · " + sixty);
}

TEST_F(BulkTest, ASecondPressWithin800MillisecondsIsSilent) {
    harness.clock.set(dateFromSeconds(0));
    model().askBulk();
    harness.clock.set(dateFromSeconds(0.8));
    model().draftBulkQuestions = {}; // which would be complained of
    model().askBulk();
    EXPECT_FALSE(model().alertMessage->has_value());

    harness.clock.set(dateFromSeconds(0.81));
    model().askBulk();
    EXPECT_EQ(*model().alertMessage, "Add between 1 and 200 questions.");
}

TEST_F(BulkTest, AnAcceptedListCanBeSentAgainAfterTheDebounce) {
    model().askBulk();
    harness.clock.advance(std::chrono::duration<double>(0.81));

    model().askBulk();

    EXPECT_EQ(model().library.batches().size(), 2u);
}

TEST_F(BulkTest, AProblemOfTheListIsShown) {
    model().draftBulkQuestions = makeLines({"What now?", "  "});

    model().askBulk();

    EXPECT_EQ(*model().alertMessage, "Question 2: Write the question text.");
    expectNothingAsked();
}

TEST_F(BulkTest, AProblemOfTheListComesBeforeThatOfTheModels) {
    model().draftBulkQuestions = makeLines({""});
    model().draftModelIDs = std::set<UUID>();

    model().askBulk();
    EXPECT_EQ(*model().alertMessage, "Question 1: Write the question text.");

    model().draftBulkQuestions = makeLines({"What now?"});
    model().askBulk();
    EXPECT_EQ(*model().alertMessage, "Choose at least one ready model.");
    expectNothingAsked();
}

TEST_F(BulkTest, OnlyReadyDecisionModelsCount) {
    ModelProfile disabled = addDecisionModel("disabled", 3);
    disabled.enabled = false;
    harness.file().saveModel(disabled);
    ModelProfile blocked = addDecisionModel("blocked", 4);
    blocked.endpoint = " ";
    harness.file().saveModel(blocked);
    harness.start();
    writeList();
    model().draftModelIDs = {disabled.id, blocked.id, generation.id, UUID::random()};

    model().askBulk();

    EXPECT_EQ(*model().alertMessage, "Choose at least one ready model.");
    expectNothingAsked();
}

TEST_F(BulkTest, AListIsADecisionWhateverTheDraftsKind) {
    model().draftKind = QuorlKind::generation;

    model().askBulk();

    EXPECT_EQ(onlyBatch().kind, QuorlKind::decision);
}

TEST_F(BulkTest, ARefusedBatchSaysWhyAndCanBeSentAgainAtOnce) {
    model().draftSubcategoryText = "Parcels";
    harness.defaults.writes.clear();

    model().askBulk();

    EXPECT_EQ(*model().alertMessage, "Type a category before a subcategory.");
    EXPECT_THAT(harness.defaults.writes, IsEmpty());
    expectNothingAsked();

    model().draftCategoryText = "Support";
    model().askBulk();
    EXPECT_EQ(model().library.runCount(), 2u);
}

TEST_F(BulkTest, ABatchThatCannotBeSavedSaysWhy) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE INSERT ON runs BEGIN SELECT RAISE(ABORT, 'no room'); END");

    model().askBulk();

    EXPECT_EQ(*model().alertMessage, "Couldn't save the batch. no room");
    expectNothingAsked();
}

TEST_F(BulkTest, TextsThatAreNotUTF8AreRefused) {
    auto question = makeChoice();
    question.options[0].label = "Ref\xFFund";
    model().draftBulkTemplate = question;
    model().askBulk();
    EXPECT_EQ(*model().alertMessage, "The questions can't be written as JSON.");

    model().alertMessage = std::nullopt;
    model().draftBulkTemplate = makeChoice();
    model().draftPrompt = "The parcel\xFF";
    model().askBulk();
    EXPECT_EQ(*model().alertMessage, "The questions can't be written as JSON.");
    expectNothingAsked();
}

TEST_F(BulkTest, TheNextQuestionWalksTheBatch) {
    model().askBulk();
    const std::vector<QuorlRun> runs = batchRuns();
    const auto focus = *model().focusToken;

    model().nextQuestion();

    EXPECT_EQ(*model().activeRunID, runs.at(1).id);
    EXPECT_EQ(*model().activeBatchID, runs.at(1).batchID);
    EXPECT_EQ(*model().focusToken, focus);
}

TEST_F(BulkTest, BehindTheLastRunTheScreenIsEmptyAndTheListKept) {
    model().askBulk();
    model().activeRunID = batchRuns().back().id;
    const auto lines = *model().draftBulkQuestions;
    const auto questions = *model().draftQuestions;
    harness.defaults.writes.clear();

    model().nextQuestion();

    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_FALSE(model().activeBatchID->has_value());
    EXPECT_EQ(*model().draftPrompt, " The parcel is late. ");
    EXPECT_EQ(*model().draftBulkQuestions, lines);
    EXPECT_EQ(*model().draftQuestions, questions);
    EXPECT_TRUE(*model().draftIsBulk);
    EXPECT_THAT(harness.defaults.writes, IsEmpty());
}

TEST_F(BulkTest, ARunThatIsNotOfTheBatchEndsTheWalk) {
    model().askBulk();
    model().activeRunID = UUID::random();

    model().nextQuestion();

    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_EQ(*model().draftPrompt, " The parcel is late. ");
}

// One question at a time.
class NextQuestionTest : public testing::Test {
protected:
    void SetUp() override {
        harness.file().saveModel(makeModel());
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    Harness harness;
};

TEST_F(NextQuestionTest, ADecisionKeepsTheContextAndTheOptionsOfTheRun) {
    DecisionQuestion question = makeChoice();
    question.instructions = "What now?";
    DecisionQuestion other = makeChoice();
    other.instructions = "And then?";
    QuorlRun run = makeRun(QuorlKind::decision);
    run.questionsJSON = Veritor::archive({question, other});
    run.scoringMode = ScoringMode::scale;
    harness.file().insertRun(run);
    harness.start();
    model().activeRunID = run.id;
    const auto focus = *model().focusToken;

    model().nextQuestion();

    EXPECT_EQ(*model().draftPrompt, run.prompt);
    EXPECT_EQ(*model().draftScoring, ScoringMode::scale);
    question.instructions.clear();
    other.instructions.clear();
    EXPECT_THAT(*model().draftQuestions, ElementsAre(question, other));
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_GT(*model().focusToken, focus);
    EXPECT_EQ(harness.defaults.string("draft.questions"), Veritor::archive({question, other}));
    EXPECT_EQ(model().library.runAt(0), run);
}

TEST_F(NextQuestionTest, AGenerationLosesItsPromptAlone) {
    const QuorlRun run = makeRun();
    harness.file().insertRun(run);
    harness.start();
    model().activeRunID = run.id;

    model().nextQuestion();

    EXPECT_EQ(*model().draftKind, QuorlKind::generation);
    EXPECT_EQ(*model().draftPrompt, "");
    EXPECT_EQ(*model().draftSystem, run.systemPrompt);
    EXPECT_EQ(harness.defaults.string("draft.prompt"), "");
}

TEST_F(NextQuestionTest, WithoutARunTheQuestionIsClearedAllTheSame) {
    model().setKind(QuorlKind::generation);
    model().draftPrompt = "Which way is up?";
    model().destination = Screen::history;

    model().nextQuestion();

    EXPECT_EQ(*model().draftPrompt, "");
    EXPECT_EQ(*model().destination, Destination(Screen::draft));
}

TEST_F(NextQuestionTest, WithoutARunADecisionKeepsItsContextAndOptions) {
    DecisionQuestion question = makeChoice();
    question.instructions = "What now?";
    model().setKind(QuorlKind::decision);
    model().draftPrompt = "The parcel is late.";
    model().draftQuestions = std::vector{question};
    const auto focus = *model().focusToken;

    model().nextQuestion();

    question.instructions.clear();
    EXPECT_THAT(*model().draftQuestions, ElementsAre(question));
    EXPECT_EQ(*model().draftPrompt, "The parcel is late.");
    EXPECT_GT(*model().focusToken, focus);
    EXPECT_EQ(harness.defaults.string("draft.questions"), Veritor::archive({question}));
}

TEST_F(NextQuestionTest, OfARunThatIsGoneTheQuestionIsClearedAllTheSame) {
    model().setKind(QuorlKind::generation);
    model().draftPrompt = "Which way is up?";
    model().activeRunID = UUID::random();

    model().nextQuestion();

    EXPECT_EQ(*model().draftPrompt, "");
    EXPECT_FALSE(model().activeRunID->has_value());
}

TEST_F(NextQuestionTest, OfABatchWithoutARunTheQuestionIsCleared) {
    model().setKind(QuorlKind::generation);
    model().draftPrompt = "Which way is up?";
    model().activeBatchID = UUID::random();

    model().nextQuestion();

    EXPECT_EQ(*model().draftPrompt, "");
    EXPECT_FALSE(model().activeBatchID->has_value());
}

} // namespace
