#include "app/Harness.h"
#include "decision/Veritor.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

class DatasetTest : public testing::Test {
protected:
    void SetUp() override {
        harness.addReadyModel("model");
        run.categoryID = UUID::random();
        answer.provider = ProviderKind::anthropic;
        answer.rating = 7;
        answer.accepted = true;
        start();
    }

    // Writes `run` and `answer` anew and starts the program on them.
    void start() {
        harness.file().deleteRun(run.id);
        harness.file().insertRun(run);
        harness.file().insertAnswer(answer);
        harness.file().updateJudgment(answer);
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    void save() { model().saveToDataset(answer.id, std::nullopt, std::nullopt, "Saved to dataset"); }

    ModelAnswer inMemory() { return *model().library.findAnswer(answer.id); }
    ModelAnswer inFile() { return harness.file().loadAnswers()[0]; }

    // What a save with nothing but an answer makes of it.
    DatasetExample expectedExample() {
        DatasetExample example;
        example.id = model().library.dataset()[0].id;
        example.createdAt = harness.clock.now();
        example.categoryID = run.categoryID;
        example.kind = run.kind;
        example.prompt = run.prompt;
        example.systemPrompt = run.systemPrompt;
        example.completion = answer.text;
        example.modelName = answer.modelName;
        example.provider = answer.provider;
        example.rating = answer.rating;
        example.accepted = answer.accepted;
        example.answerID = answer.id;
        return example;
    }

    void expectToast(const std::string& title, const std::string& detail, const std::string& symbol,
                     bool isMilestone) {
        ASSERT_TRUE(model().feedback->has_value());
        EXPECT_EQ((**model().feedback).title, title);
        EXPECT_EQ((**model().feedback).detail, detail);
        EXPECT_EQ((**model().feedback).symbol, symbol);
        EXPECT_EQ((**model().feedback).isMilestone, isMilestone);
    }

    void expectNothingHappened() {
        EXPECT_EQ(inMemory(), answer);
        EXPECT_EQ(inFile(), answer);
        EXPECT_TRUE(model().library.dataset().empty());
        EXPECT_TRUE(harness.file().loadDataset().empty());
        EXPECT_FALSE(model().feedback->has_value());
        EXPECT_FALSE(model().alertMessage->has_value());
    }

    // A library that holds so many examples already.
    void fillDataset(int count) {
        for (int i = 0; i < count; ++i)
            harness.file().insertDataset(makeExample());
        harness.start();
    }

    Harness harness;
    QuorlRun run = makeRun();
    ModelAnswer answer = makeAnswer(run.id);
};

// --- A new example ---

TEST_F(DatasetTest, ASavedAnswerBecomesAnExampleAndIsLinkedToIt) {
    save();

    ASSERT_EQ(model().library.dataset().size(), 1u);
    EXPECT_EQ(model().library.dataset()[0], expectedExample());
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(expectedExample()));
    answer.datasetID = model().library.dataset()[0].id;
    EXPECT_EQ(inMemory(), answer);
    EXPECT_EQ(inFile(), answer);
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(DatasetTest, ANewExampleStandsFirstWhateverItsDate) {
    DatasetExample later = makeExample();
    later.createdAt = dateFromSeconds(2'000'000'000);
    harness.file().insertDataset(later);
    harness.start();

    save();

    EXPECT_EQ(model().library.dataset()[0].answerID, answer.id);
    EXPECT_EQ(model().library.dataset()[1], later);
}

// The stored text is what the model said, to the byte; only what a person typed is trimmed.
TEST_F(DatasetTest, ABareSaveKeepsEveryBlankOfTheAnswer) {
    answer.text = " \n{ \"side\": \"left\" } \n";
    start();

    save();

    EXPECT_EQ(harness.file().loadDataset()[0].completion, " \n{ \"side\": \"left\" } \n");
}

TEST_F(DatasetTest, ABareSaveOfBlanksAloneIsASave) {
    answer.text = " \n ";
    start();

    save();

    EXPECT_EQ(harness.file().loadDataset()[0].completion, " \n ");
}

TEST_F(DatasetTest, ACorrectionIsTrimmed) {
    model().saveToDataset(answer.id, " \n\u2028 The other  way. \t\n", true, "Correction saved");

    EXPECT_EQ(harness.file().loadDataset()[0].completion, "The other  way.");
    EXPECT_EQ(inFile().text, answer.text);
}

// The caller has judged the answer by then; refusing the empty correction takes nothing back.
TEST_F(DatasetTest, ACorrectionOfBlanksAloneIsRefusedAndTheAnswerStaysRefused) {
    model().setAccepted(answer.id, false);
    answer.accepted = false;

    model().saveToDataset(answer.id, " \n\t ", true, "Correction saved");

    expectNothingHappened();
}

TEST_F(DatasetTest, ACorrectionIsAcceptedWhileTheAnswerIsNot) {
    model().setAccepted(answer.id, false);
    model().saveToDataset(answer.id, "The other way.", true, "Correction saved");

    EXPECT_EQ(inFile().accepted, false);
    EXPECT_EQ(inMemory().accepted, false);
    EXPECT_EQ(harness.file().loadDataset()[0].accepted, true);
    EXPECT_EQ(model().library.dataset()[0].accepted, true);
}

TEST_F(DatasetTest, AnUnjudgedAnswerMakesAnUnjudgedExample) {
    answer.accepted.reset();
    answer.rating.reset();
    start();

    save();

    EXPECT_EQ(harness.file().loadDataset()[0], expectedExample());
}

TEST_F(DatasetTest, AnExplicitNoIsNotTheAnswersYes) {
    model().saveToDataset(answer.id, std::nullopt, false, std::nullopt);

    EXPECT_EQ(harness.file().loadDataset()[0].accepted, false);
}

TEST_F(DatasetTest, TheExampleOfADecisionKeepsTheQuestionsAsTheyWereSent) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.name = "Side";
    question.instructions = "Which side?";
    question.options[0].label = "left";
    question.options[1].label = "right";
    run.kind = QuorlKind::decision;
    run.questionsJSON = Veritor::archive({question});
    start();

    save();

    EXPECT_EQ(harness.file().loadDataset()[0].systemPrompt, Veritor::wireJSON({question}));
    EXPECT_EQ(harness.file().loadDataset()[0].kind, QuorlKind::decision);
}

TEST_F(DatasetTest, TheExampleOfADecisionWithoutReadableQuestionsKeepsTheSystemPrompt) {
    run.kind = QuorlKind::decision;
    for (const char* questions : {"", "[]", "[{"}) {
        run.questionsJSON = questions;
        answer.datasetID.reset();
        start();

        save();

        EXPECT_EQ(model().library.dataset()[0].systemPrompt, run.systemPrompt);
    }
}

// Questions left over in a generation run were never asked.
TEST_F(DatasetTest, TheExampleOfAGenerationKeepsTheSystemPromptWhateverQuestionsThereAre) {
    run.questionsJSON = Veritor::archive({DecisionQuestion::starter()});
    start();

    save();

    EXPECT_EQ(model().library.dataset()[0].systemPrompt, "Answer directly.");
}

TEST_F(DatasetTest, OnlyAnAnswerThatIsDoneAndSaysSomethingIsSaved) {
    for (const auto& [state, text] :
         {std::pair(AnswerState::failed, "half"), std::pair(AnswerState::done, "")}) {
        answer.state = state;
        answer.text = text;
        start();

        model().saveToDataset(answer.id, "Corrected.", true, "Correction saved");

        expectNothingHappened();
    }
}

TEST_F(DatasetTest, ARunningAnswerIsNotSavedNorItsExampleRewritten) {
    sample::Completion slow = says("late");
    slow.delay = std::chrono::milliseconds(200);
    harness.endpoint.answer("model", slow);
    answer.modelID = model().library.models()[0].id;
    start();
    save();
    const DatasetExample before = model().library.dataset()[0];
    model().retry(answer.id);
    ASSERT_EQ(inMemory().state, AnswerState::running);

    model().saveToDataset(answer.id, "Corrected.", true, "Correction saved");

    EXPECT_EQ(model().library.dataset()[0], before);
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(before));
    ASSERT_TRUE(harness.runUntilAnswered());
    // The link outlives the retry, and the example keeps what was saved.
    EXPECT_EQ(inFile().datasetID, before.id);
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(before));
}

TEST_F(DatasetTest, AnAnswerWithoutItsRunIsNotSaved) {
    harness.file().deleteRun(run.id);
    harness.file().exec("PRAGMA foreign_keys = OFF");
    harness.file().insertAnswer(answer);
    harness.file().updateJudgment(answer);
    harness.start();
    ASSERT_EQ(inMemory(), answer);

    save();

    expectNothingHappened();
}

// --- An example that is there ---

TEST_F(DatasetTest, SavingAgainRewritesCompletionRatingAndVerdictAndNothingElse) {
    save();
    DatasetExample expected = model().library.dataset()[0];
    harness.clock.advance(std::chrono::seconds(60));
    model().setRating(answer.id, 2);
    const ModelAnswer before = inMemory();

    model().saveToDataset(answer.id, " Better. ", false, "Correction saved");

    expected.completion = "Better.";
    expected.rating = 2;
    expected.accepted = false;
    EXPECT_EQ(model().library.dataset().size(), 1u);
    EXPECT_EQ(model().library.dataset()[0], expected);
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(expected));
    EXPECT_EQ(inMemory(), before);
    EXPECT_EQ(inFile(), before);
    expectToast("Correction saved", "Your dataset stays up to date.", "checkmark", false);
}

// A bare save means the answer's own words, whatever stood in the example.
TEST_F(DatasetTest, AYesAfterACorrectionLosesTheCorrection) {
    model().setAccepted(answer.id, false);
    model().saveToDataset(answer.id, "Corrected.", true, "Correction saved");

    model().setAccepted(answer.id, true);
    save();

    EXPECT_EQ(harness.file().loadDataset()[0].completion, answer.text);
    EXPECT_EQ(model().library.dataset()[0].completion, answer.text);
}

TEST_F(DatasetTest, SavingAgainWithoutATitleShowsNothing) {
    save();
    model().feedback = std::nullopt;

    model().saveToDataset(answer.id, std::nullopt, std::nullopt, std::nullopt);

    EXPECT_FALSE(model().feedback->has_value());
}

// A link that leads nowhere must not keep an answer from being saved.
TEST_F(DatasetTest, ALinkToAnExampleThatIsGoneLeadsToANewOne) {
    answer.datasetID = UUID::random();
    start();

    save();

    ASSERT_EQ(model().library.dataset().size(), 1u);
    EXPECT_NE(model().library.dataset()[0].id, *answer.datasetID);
    EXPECT_EQ(inMemory().datasetID, model().library.dataset()[0].id);
    EXPECT_EQ(inFile().datasetID, harness.file().loadDataset()[0].id);
    expectToast("1 examples logged", "Your first benchmark example is logged.", "sparkle", true);
}

// --- What the user reads ---

TEST_F(DatasetTest, TheFirstExampleIsAMilestoneAndKeepsThePlural) {
    save();

    expectToast("1 examples logged", "Your first benchmark example is logged.", "sparkle", true);
}

TEST_F(DatasetTest, TheSecondExampleShowsTheTitleGiven) {
    fillDataset(1);

    save();

    expectToast("Saved to dataset", "Ready for the next question.", "checkmark", false);
}

TEST_F(DatasetTest, MilestonesAreTheseAndNoOthers) {
    for (const int milestone : {10, 25, 50, 100}) {
        harness.file().exec("DELETE FROM dataset");
        fillDataset(milestone - 1);
        const std::string number = std::to_string(milestone);

        save();

        expectToast(number + " examples logged", number + " examples now strengthen this benchmark.",
                    "sparkle", true);
    }
    for (const int count : {9, 11, 24, 26, 49, 51, 99, 101, 200, 1000}) {
        harness.file().exec("BEGIN IMMEDIATE");
        harness.file().exec("DELETE FROM dataset");
        for (int i = 1; i < count; ++i)
            harness.file().insertDataset(makeExample());
        harness.file().exec("COMMIT");
        harness.start();

        save();

        expectToast("Saved to dataset", "Ready for the next question.", "checkmark", false);
    }
}

// Nothing was added, so nothing is counted.
TEST_F(DatasetTest, RewritingAnExampleIsNoMilestone) {
    fillDataset(9);
    save();

    save();

    ASSERT_EQ(model().library.dataset().size(), 10u);
    expectToast("Saved to dataset", "Your dataset stays up to date.", "checkmark", false);
}

TEST_F(DatasetTest, ASaveWithoutATitleShowsNothingNotEvenAMilestone) {
    model().saveToDataset(answer.id, std::nullopt, std::nullopt, std::nullopt);

    EXPECT_EQ(harness.file().loadDataset().size(), 1u);
    EXPECT_FALSE(model().feedback->has_value());
}

// --- Taking it out again ---

TEST_F(DatasetTest, TakingAnAnswerOutKeepsItsJudgements) {
    model().markCorrect(answer.id);
    answer.chosenCorrect = true;
    save();

    model().removeFromDataset(answer.id);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_TRUE(harness.file().loadDataset().empty());
    EXPECT_EQ(inMemory(), answer);
    EXPECT_EQ(inFile(), answer);
}

TEST_F(DatasetTest, TakingOutAnAnswerThatWasNeverSavedDoesNothing) {
    model().removeFromDataset(answer.id);

    expectNothingHappened();
}

TEST_F(DatasetTest, TakingOutAnAnswerWhoseExampleIsGoneDoesNothing) {
    answer.datasetID = UUID::random();
    start();

    model().removeFromDataset(answer.id);

    expectNothingHappened();
}

TEST_F(DatasetTest, AnAnswerTakenOutCanBeSavedAgain) {
    save();
    const UUID first = model().library.dataset()[0].id;
    model().removeFromDataset(answer.id);

    save();

    EXPECT_NE(model().library.dataset()[0].id, first);
    EXPECT_EQ(inFile().datasetID, model().library.dataset()[0].id);
}

TEST_F(DatasetTest, AnExampleThatTheFileKeepsIsForgottenAllTheSame) {
    save();
    harness.file().exec("CREATE TRIGGER refuse BEFORE DELETE ON dataset BEGIN SELECT RAISE(ABORT, 'held "
                        "fast'); END");

    model().removeFromDataset(answer.id);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_EQ(harness.file().loadDataset().size(), 1u);
    EXPECT_EQ(inFile().datasetID, std::nullopt);
}

TEST_F(DatasetTest, AnExampleOutlivesItsRunAndCanStillBeRemoved) {
    save();
    const DatasetExample example = model().library.dataset()[0];
    model().requestDelete({PendingDelete::Kind::run, run.id});
    model().confirmDelete();
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(example));

    model().removeExample(example.id);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_TRUE(harness.file().loadDataset().empty());
    EXPECT_FALSE(model().alertMessage->has_value());
}

TEST_F(DatasetTest, RemovingAnExampleLeavesALinkToAnother) {
    const DatasetExample older = makeExample(answer.id);
    harness.file().insertDataset(older);
    harness.start();
    save();
    const auto link = inMemory().datasetID;

    model().removeExample(older.id);

    EXPECT_EQ(inMemory().datasetID, link);
    EXPECT_EQ(inFile().datasetID, link);
}

// The caller's id may lie in the very answer that loses its link.
TEST_F(DatasetTest, TheIdOfALinkMayBePassed) {
    save();

    model().removeExample(*model().library.findAnswer(answer.id)->datasetID);

    EXPECT_EQ(inFile().datasetID, std::nullopt);
    EXPECT_TRUE(harness.file().loadDataset().empty());
}

} // namespace
