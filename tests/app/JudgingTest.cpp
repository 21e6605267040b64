#include "app/Harness.h"

using namespace quorl;
using namespace quorl::test;
using testing::Each;
using testing::ElementsAre;
using testing::Field;

namespace {

class JudgingTest : public testing::Test {
protected:
    void SetUp() override {
        harness.addReadyModel("model");
        harness.file().insertRun(run);
        for (ModelAnswer& answer : answers)
            harness.file().insertAnswer(answer);
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    ModelAnswer inMemory(std::size_t place = 0) { return *model().library.findAnswer(answers[place].id); }

    ModelAnswer inFile(std::size_t place = 0) {
        for (const ModelAnswer& answer : harness.file().loadAnswers()) {
            if (answer.id == answers[place].id)
                return answer;
        }
        throw std::runtime_error("no such answer");
    }

    // A correction as the sheet makes it: the answer is refused, the corrected text accepted.
    DatasetExample saveCorrection() {
        model().setAccepted(answers[0].id, false);
        model().saveToDataset(answers[0].id, "Corrected.", true, "Correction saved");
        return model().library.dataset()[0];
    }

    void refuse(const std::string& what) {
        harness.file().exec(
            ("CREATE TRIGGER refuse BEFORE " + what + " BEGIN SELECT RAISE(ABORT, 'held fast'); END")
                .c_str());
    }

    Harness harness;
    QuorlRun run = makeRun();
    std::vector<ModelAnswer> answers{makeAnswer(run.id, 0), makeAnswer(run.id, 1), makeAnswer(run.id, 2)};
};

void expectToast(const AppModel& model, const std::string& title, const std::string& detail,
                 const std::string& symbol) {
    ASSERT_TRUE(model.feedback->has_value());
    EXPECT_EQ((**model.feedback).title, title);
    EXPECT_EQ((**model.feedback).detail, detail);
    EXPECT_EQ((**model.feedback).symbol, symbol);
    EXPECT_FALSE((**model.feedback).isMilestone);
}

// --- The verdict ---

TEST_F(JudgingTest, AVerdictIsInMemoryAndInTheFileAndShowsNothing) {
    for (const std::optional<bool> value :
         {std::optional(true), std::optional(false), std::optional<bool>()}) {
        model().setAccepted(answers[0].id, value);

        ModelAnswer expected = answers[0];
        expected.accepted = value;
        EXPECT_EQ(inMemory(), expected);
        EXPECT_EQ(inFile(), expected);
    }
    EXPECT_FALSE(model().feedback->has_value());
    EXPECT_FALSE(model().alertMessage->has_value());
}

// A yes may be given to several answers of a run, so it says nothing about which is preferred.
TEST_F(JudgingTest, AYesLeavesThePreferenceAsItWas) {
    model().markCorrect(answers[0].id);

    model().setAccepted(answers[0].id, true);
    model().setAccepted(answers[1].id, true);

    EXPECT_TRUE(inMemory(0).chosenCorrect);
    EXPECT_TRUE(inFile(0).chosenCorrect);
    EXPECT_FALSE(inMemory(1).chosenCorrect);
    EXPECT_FALSE(inFile(1).chosenCorrect);
}

// What is not accepted cannot be the preferred answer.
TEST_F(JudgingTest, ANoAndATakenBackVerdictBothClearThePreference) {
    for (const std::optional<bool> value : {std::optional(false), std::optional<bool>()}) {
        model().markCorrect(answers[0].id);
        ASSERT_TRUE(inFile().chosenCorrect);

        model().setAccepted(answers[0].id, value);

        EXPECT_FALSE(inMemory().chosenCorrect);
        EXPECT_FALSE(inFile().chosenCorrect);
        EXPECT_EQ(inFile(1).accepted, false); // the others stay refused
    }
}

TEST_F(JudgingTest, AVerdictLeavesTheRatingAndTheOtherAnswersAlone) {
    model().setRating(answers[0].id, 7);

    model().setAccepted(answers[0].id, false);

    EXPECT_EQ(inFile().rating, 7);
    EXPECT_EQ(inMemory(1), answers[1]);
    EXPECT_EQ(inFile(2), answers[2]);
}

// --- The rating ---

TEST_F(JudgingTest, ARatingIsInMemoryAndInTheFileAndIsThankedFor) {
    model().setRating(answers[0].id, 8);

    ModelAnswer expected = answers[0];
    expected.rating = 8;
    EXPECT_EQ(inMemory(), expected);
    EXPECT_EQ(inFile(), expected);
    expectToast(model(), "Rating recorded", "Keep going while the comparison is in view.", "star.fill");
}

TEST_F(JudgingTest, ClearingARatingShowsNothing) {
    model().setRating(answers[0].id, 8);
    model().feedback = std::nullopt;

    model().setRating(answers[0].id, std::nullopt);

    EXPECT_EQ(inMemory().rating, std::nullopt);
    EXPECT_EQ(inFile().rating, std::nullopt);
    EXPECT_FALSE(model().feedback->has_value());
}

// A good mark is no verdict, and a bad one takes no preference away.
TEST_F(JudgingTest, ARatingLeavesVerdictAndPreferenceAsTheyWere) {
    model().markCorrect(answers[0].id);

    model().setRating(answers[0].id, 1);

    EXPECT_TRUE(inFile().chosenCorrect);
    EXPECT_EQ(inFile().accepted, true);
}

TEST_F(JudgingTest, TheRangeOfARatingIsItsCallersBusiness) {
    model().setRating(answers[0].id, 42);

    EXPECT_EQ(inFile().rating, 42);
}

TEST_F(JudgingTest, ARatingNeverMakesAnExample) {
    model().setRating(answers[0].id, 10);

    EXPECT_TRUE(model().library.dataset().empty());
    EXPECT_TRUE(harness.file().loadDataset().empty());
}

// --- The preferred answer ---

// To prefer one is to refuse the others: false, where one might expect no verdict.
TEST_F(JudgingTest, PreferringAnAnswerRefusesTheOthersOfTheRun) {
    model().markCorrect(answers[1].id);

    for (std::size_t place = 0; place < 3; ++place) {
        ModelAnswer expected = answers[place];
        expected.chosenCorrect = place == 1;
        expected.accepted = place == 1;
        EXPECT_EQ(inMemory(place), expected);
        EXPECT_EQ(inFile(place), expected);
    }
    expectToast(model(), "Preferred answer updated", "The comparison now reflects your choice.", "checkmark");
}

// The way back is not the way there: all verdicts of the run go, also those that were given by hand.
TEST_F(JudgingTest, TakingThePreferenceBackLeavesTheWholeRunUnjudged) {
    model().setAccepted(answers[2].id, false);
    model().markCorrect(answers[1].id);
    model().setAccepted(answers[0].id, true);
    model().feedback = std::nullopt;

    model().markCorrect(answers[1].id);

    for (std::size_t place = 0; place < 3; ++place) {
        EXPECT_EQ(inMemory(place), answers[place]);
        EXPECT_EQ(inFile(place), answers[place]);
    }
    expectToast(model(), "Preferred answer updated", "The comparison now reflects your choice.", "checkmark");
}

TEST_F(JudgingTest, AtMostOneAnswerOfARunIsPreferred) {
    model().markCorrect(answers[1].id);

    model().markCorrect(answers[2].id);

    EXPECT_FALSE(inFile(1).chosenCorrect);
    EXPECT_EQ(inFile(1).accepted, false);
    EXPECT_TRUE(inFile(2).chosenCorrect);
}

TEST_F(JudgingTest, NobodySeesTwoPreferredAnswers) {
    model().markCorrect(answers[1].id);
    std::vector<int> seen;
    const auto subscription = model().observe([&](const AppChange& change) {
        if (change.field == AppField::answersByRun)
            seen.push_back(inMemory(0).chosenCorrect + inMemory(1).chosenCorrect + inMemory(2).chosenCorrect);
    });

    model().markCorrect(answers[0].id);

    EXPECT_THAT(seen, ElementsAre(1));
}

TEST_F(JudgingTest, APreferenceKeepsTheRatings) {
    for (std::size_t place = 0; place < 3; ++place)
        model().setRating(answers[place].id, static_cast<std::int64_t>(place) + 4);

    model().markCorrect(answers[0].id);
    model().markCorrect(answers[0].id);

    EXPECT_EQ(inFile(0).rating, 4);
    EXPECT_EQ(inFile(1).rating, 5);
    EXPECT_EQ(inMemory(2).rating, 6);
}

TEST_F(JudgingTest, APreferenceStaysWithinItsRun) {
    const QuorlRun other = makeRun();
    const ModelAnswer elsewhere = makeAnswer(other.id);
    harness.file().insertRun(other);
    harness.file().insertAnswer(elsewhere);
    harness.start();

    model().markCorrect(answers[0].id);

    EXPECT_EQ(*model().library.findAnswer(elsewhere.id), elsewhere);
}

TEST_F(JudgingTest, APreferenceReachesTheExamplesOfTheWholeRun) {
    for (const ModelAnswer& answer : answers)
        model().saveToDataset(answer.id, std::nullopt, true, std::nullopt);

    model().markCorrect(answers[1].id);

    for (const DatasetExample& example : harness.file().loadDataset())
        EXPECT_EQ(example.accepted, example.answerID == answers[1].id);
    model().markCorrect(answers[1].id);
    EXPECT_THAT(harness.file().loadDataset(), Each(Field(&DatasetExample::accepted, std::nullopt)));
}

// An id may be a part of what the operation is about to replace.
TEST_F(JudgingTest, AnIdInsideTheMirrorMayBePassed) {
    model().markCorrect(model().library.answersOfRun(run.id)[2].id);
    model().setRating(model().library.answersOfRun(run.id)[2].id, 3);
    model().setAccepted(model().library.answersOfRun(run.id)[2].id, false);

    EXPECT_EQ(inFile(2).rating, 3);
    EXPECT_EQ(inFile(2).accepted, false);
    EXPECT_EQ(inFile(0).accepted, false);
}

TEST_F(JudgingTest, JudgingAnUnknownAnswerDoesNothing) {
    const UUID unknown = UUID::random();

    model().setAccepted(unknown, true);
    model().setRating(unknown, 5);
    model().markCorrect(unknown);
    model().saveToDataset(unknown, "text", true, "title");
    model().removeFromDataset(unknown);

    EXPECT_FALSE(model().feedback->has_value());
    EXPECT_FALSE(model().alertMessage->has_value());
    EXPECT_EQ(inFile(0), answers[0]);
    EXPECT_TRUE(harness.file().loadDataset().empty());
}

// --- What a judgement does to the example ---

TEST_F(JudgingTest, AJudgementIsCopiedIntoTheExampleAndNothingElse) {
    model().saveToDataset(answers[0].id, "Corrected.", std::nullopt, std::nullopt);
    DatasetExample expected = model().library.dataset()[0];

    model().setAccepted(answers[0].id, true);
    model().setRating(answers[0].id, 9);

    expected.accepted = true;
    expected.rating = 9;
    EXPECT_EQ(model().library.dataset()[0], expected);
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(expected));
}

// The answer was refused and the corrected text accepted; the next judgement, a mere rating, is of the answer
// and carries its refusal along.
TEST_F(JudgingTest, ARatingAfterACorrectionBringsTheRefusalIntoTheExample) {
    DatasetExample example = saveCorrection();
    ASSERT_EQ(inFile().accepted, false);
    ASSERT_EQ(example.accepted, true);

    model().setRating(answers[0].id, 6);

    example.accepted = false;
    example.rating = 6;
    EXPECT_EQ(model().library.dataset()[0], example);
    EXPECT_THAT(harness.file().loadDataset(), ElementsAre(example));
    EXPECT_EQ(example.completion, "Corrected.");
}

TEST_F(JudgingTest, TakingAVerdictBackTakesItFromTheExampleToo) {
    model().saveToDataset(answers[0].id, std::nullopt, true, std::nullopt);

    model().setAccepted(answers[0].id, std::nullopt);

    EXPECT_EQ(harness.file().loadDataset()[0].accepted, std::nullopt);
}

TEST_F(JudgingTest, ALinkToAnExampleThatIsGoneIsNoObstacleToAJudgement) {
    answers[0].datasetID = UUID::random();
    harness.file().updateJudgment(answers[0]);
    harness.start();

    model().setRating(answers[0].id, 2);

    EXPECT_EQ(inFile().rating, 2);
    EXPECT_EQ(inFile().datasetID, answers[0].datasetID);
    EXPECT_FALSE(model().alertMessage->has_value());
}

// --- When the file refuses ---

// One row is written on its own and memory has changed before it; the screen keeps what the user said.
TEST_F(JudgingTest, AJudgementThatTheFileRefusesStaysInMemory) {
    refuse("UPDATE ON answers");

    model().setAccepted(answers[0].id, true);
    EXPECT_EQ(*model().alertMessage, "held fast");
    model().alertMessage = std::nullopt;
    model().setRating(answers[0].id, 3);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(inMemory().accepted, true);
    EXPECT_EQ(inMemory().rating, 3);
    EXPECT_EQ(inFile(), answers[0]);
    expectToast(model(), "Rating recorded", "Keep going while the comparison is in view.", "star.fill");
}

TEST_F(JudgingTest, AJudgementThatTheAnswersRowRefusesStillReachesTheExample) {
    model().saveToDataset(answers[0].id, std::nullopt, std::nullopt, std::nullopt);
    refuse("UPDATE ON answers");

    model().setRating(answers[0].id, 3);

    EXPECT_EQ(harness.file().loadDataset()[0].rating, 3);
    EXPECT_EQ(inFile().rating, std::nullopt);
}

TEST_F(JudgingTest, AJudgementThatTheExamplesRowRefusesStaysInMemory) {
    model().saveToDataset(answers[0].id, std::nullopt, std::nullopt, std::nullopt);
    refuse("UPDATE ON dataset");

    model().setRating(answers[0].id, 3);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(model().library.dataset()[0].rating, 3);
    EXPECT_EQ(harness.file().loadDataset()[0].rating, std::nullopt);
    EXPECT_EQ(inFile().rating, 3);
}

TEST_F(JudgingTest, APreferenceGoesOnWithTheNextAnswerWhereTheFileRefusesOne) {
    refuse("UPDATE ON answers WHEN old.position = 0");

    model().markCorrect(answers[1].id);

    EXPECT_EQ(*model().alertMessage, "held fast");
    EXPECT_EQ(inMemory(0).accepted, false);
    EXPECT_EQ(inFile(0), answers[0]);
    EXPECT_TRUE(inFile(1).chosenCorrect);
    EXPECT_EQ(inFile(2).accepted, false);
    expectToast(model(), "Preferred answer updated", "The comparison now reflects your choice.", "checkmark");
}

} // namespace
