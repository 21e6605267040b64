#include "app/HTTPMessage.h"
#include "app/Harness.h"
#include "base/Json.h"

using namespace quorl;
using namespace quorl::test;

namespace {

const HTTPResponse unknownAnswer{404, R"({"error":"No answer with that id."})"};
const HTTPResponse stillRunning{409, R"({"error":"This answer is still running."})"};
const HTTPResponse noVerdict{400, R"({"error":"accepted must be true, false, or null."})"};
const HTTPResponse noRating{400, R"({"error":"rating must be from 1 to 10, or null."})"};
const HTTPResponse nothingToSave{400, R"({"error":"This answer has nothing to save."})"};

class MarkingTest : public testing::Test {
protected:
    void SetUp() override {
        harness.addReadyModel("model");
        harness.file().insertRun(run);
        for (const ModelAnswer& answer : answers)
            harness.file().insertAnswer(answer);
        harness.start();
    }

    AppModel& model() { return harness.model(); }
    HTTPResponse mark(std::string_view body) { return model().markAPIAnswer(answers[0].id, body); }
    HTTPResponse saveAnswer() { return model().saveAPIAnswer(answers[0].id); }

    ModelAnswer inMemory(std::size_t place = 0) { return *model().library.findAnswer(answers[place].id); }

    ModelAnswer inFile(std::size_t place = 0) {
        for (const ModelAnswer& answer : harness.file().loadAnswers()) {
            if (answer.id == answers[place].id)
                return answer;
        }
        throw std::runtime_error("no such answer");
    }

    // Puts the first answer into memory with other contents.
    void become(const std::function<void(ModelAnswer&)>& change) {
        ModelAnswer answer = inMemory();
        change(answer);
        model().library.replaceAnswer(answer);
    }

    // Marks it, and finds it in the reply as it is afterwards.
    void expectMarked(std::string_view body) {
        const HTTPResponse reply = mark(body);
        EXPECT_EQ(reply.status, 200) << body;
        EXPECT_EQ(reply, makeReply(200, AppModel::answerJSON(inMemory(), run.kind))) << body;
    }

    Harness harness;
    QuorlRun run = makeRun();
    std::vector<ModelAnswer> answers{makeAnswer(run.id, 0), makeAnswer(run.id, 1)};
};

// --- What cannot be judged ---

TEST_F(MarkingTest, AnUnknownAnswerIsNotFoundWhateverTheBody) {
    EXPECT_EQ(model().markAPIAnswer(UUID::random(), "not JSON"), unknownAnswer);
}

TEST_F(MarkingTest, ARunningAnswerIsAConflictWhateverTheBody) {
    become([](ModelAnswer& answer) { answer.state = AnswerState::running; });

    EXPECT_EQ(mark("not JSON"), stillRunning);
}

TEST_F(MarkingTest, AFailedAnswerIsToldInTheSameWords) {
    become([](ModelAnswer& answer) { answer.state = AnswerState::failed; });

    EXPECT_EQ(mark(R"({"accepted":true})"), stillRunning);
    EXPECT_EQ(inMemory().accepted, std::nullopt);
}

TEST_F(MarkingTest, ABodyThatIsNoObjectIsRefused) {
    for (const char* body : {"", "{", "[]", "null", "7", "\"accepted\"", "{\"accepted\":true}x"})
        EXPECT_EQ(mark(body), (HTTPResponse{400, R"({"error":"Send a JSON object."})"})) << body;
}

TEST_F(MarkingTest, AnObjectWithoutAJudgementIsRefused) {
    for (const char* body : {"{}", R"({"stars":3})", R"({"Rating":3})"})
        EXPECT_EQ(mark(body), (HTTPResponse{400, R"({"error":"Send chosen_correct, accepted, or rating."})"}))
            << body;
}

// --- Preference ---

TEST_F(MarkingTest, APreferenceRefusesTheOthersAndTheReplyShowsWhatCameOfIt) {
    expectMarked(R"({"chosen_correct":true})");

    EXPECT_TRUE(inFile(0).chosenCorrect);
    EXPECT_EQ(inFile(0).accepted, true);
    EXPECT_EQ(inFile(1).accepted, false);
}

TEST_F(MarkingTest, APreferenceStatedTwiceIsNoToggle) {
    expectMarked(R"({"chosen_correct":true})");
    expectMarked(R"({"chosen_correct":true})");

    EXPECT_TRUE(inFile().chosenCorrect);
    EXPECT_EQ(inFile(1).accepted, false);
}

TEST_F(MarkingTest, APreferenceCanBeTakenBack) {
    expectMarked(R"({"chosen_correct":true})");

    expectMarked(R"({"chosen_correct":false})");

    EXPECT_EQ(inFile(0), answers[0]);
    EXPECT_EQ(inFile(1), answers[1]);
}

TEST_F(MarkingTest, APreferenceThatIsNoTruthValueChangesNothing) {
    for (const char* body : {R"({"chosen_correct":"yes"})", R"({"chosen_correct":1})",
                             R"({"chosen_correct":null})", R"({"chosen_correct":[]})"}) {
        expectMarked(body);
        EXPECT_EQ(inMemory(), answers[0]) << body;
    }
}

// --- Verdict ---

TEST_F(MarkingTest, AVerdictIsSetAndCleared) {
    for (const auto& [body, verdict] : {std::pair(R"({"accepted":true})", std::optional(true)),
                                        std::pair(R"({"accepted":false})", std::optional(false)),
                                        std::pair(R"({"accepted":null})", std::optional<bool>())}) {
        expectMarked(body);
        EXPECT_EQ(inFile().accepted, verdict) << body;
    }
    EXPECT_TRUE(Json::parse(mark(R"({"accepted":null})").body).value()["accepted"].is_null());
}

TEST_F(MarkingTest, AVerdictOfAnotherTypeIsRefused) {
    for (const char* body : {R"({"accepted":"true"})", R"({"accepted":1})", R"({"accepted":0})",
                             R"({"accepted":{}})", R"({"accepted":[true]})"}) {
        EXPECT_EQ(mark(body), noVerdict) << body;
    }
    EXPECT_EQ(inMemory(), answers[0]);
}

// --- Rating ---

TEST_F(MarkingTest, ARatingFromOneToTenIsSetAndCleared) {
    for (const auto& [body, rating] : {std::pair(R"({"rating":1})", std::optional<std::int64_t>(1)),
                                       std::pair(R"({"rating":10})", std::optional<std::int64_t>(10)),
                                       std::pair(R"({"rating":5.0})", std::optional<std::int64_t>(5)),
                                       std::pair(R"({"rating":null})", std::optional<std::int64_t>())}) {
        expectMarked(body);
        EXPECT_EQ(inFile().rating, rating) << body;
    }
}

TEST_F(MarkingTest, ARatingThatIsNoneIsRefused) {
    for (const char* body :
         {R"({"rating":0})", R"({"rating":11})", R"({"rating":-1})", R"({"rating":"5"})", R"({"rating":5.5})",
          R"({"rating":true})", R"({"rating":false})", R"({"rating":[]})", R"({"rating":{}})",
          R"({"rating":1e300})", R"({"rating":18446744073709551617})"}) {
        EXPECT_EQ(mark(body), noRating) << body;
    }
    EXPECT_EQ(inMemory(), answers[0]);
}

// --- Several at once ---

TEST_F(MarkingTest, AllThreeAreAppliedOneAfterTheOther) {
    expectMarked(R"({"rating":9,"accepted":false,"chosen_correct":true})");

    EXPECT_FALSE(inFile().chosenCorrect); // the refusal came after the preference and ended it
    EXPECT_EQ(inFile().accepted, false);
    EXPECT_EQ(inFile().rating, 9);
    EXPECT_EQ(inFile(1).accepted, false);
}

TEST_F(MarkingTest, APreferenceBeforeAnErrorStays) {
    EXPECT_EQ(mark(R"({"chosen_correct":true,"rating":11})"), noRating);

    EXPECT_TRUE(inFile(0).chosenCorrect);
    EXPECT_EQ(inFile(0).accepted, true);
    EXPECT_EQ(inFile(1).accepted, false);
}

TEST_F(MarkingTest, WhatWasJudgedBeforeAnErrorStays) {
    EXPECT_EQ(mark(R"({"chosen_correct":true,"accepted":null,"rating":11})"), noRating);

    EXPECT_EQ(inFile(0).accepted, std::nullopt);
    EXPECT_FALSE(inFile(0).chosenCorrect); // taken back together with the verdict
    EXPECT_EQ(inFile(1).accepted, false);  // and this is left of the preference
}

TEST_F(MarkingTest, AfterAnErrorNothingMoreIsJudged) {
    EXPECT_EQ(mark(R"({"accepted":"yes","rating":5})"), noVerdict);

    EXPECT_EQ(inFile().rating, std::nullopt);
}

TEST_F(MarkingTest, AnAnswerWhoseRunIsGoneIsNotFoundAfterItWasJudged) {
    ModelAnswer orphan = makeAnswer(UUID::random());
    model().library.replaceAnswer(orphan);

    EXPECT_EQ(model().markAPIAnswer(orphan.id, R"({"rating":5})"), unknownAnswer);
    EXPECT_EQ(model().library.findAnswer(orphan.id)->rating, 5);
}

TEST_F(MarkingTest, ADecisionIsShownWithItsSummary) {
    QuorlRun decision = makeRun(QuorlKind::decision);
    ModelAnswer answer = makeAnswer(decision.id);
    answer.text = R"({"answers":{"refund":{"type":"noul","noul":0.9}}})";
    harness.file().insertRun(decision);
    harness.file().insertAnswer(answer);
    harness.start();

    const auto shown = Json::parse(model().markAPIAnswer(answer.id, R"({"rating":5})").body).value();

    EXPECT_EQ(shown["text"], answer.text);
    EXPECT_EQ(shown["summary"], "refund  ·  90% yes");
}

TEST_F(MarkingTest, AFailureOfTheFileShowsInTheAlertAndNotInTheReply) {
    harness.file().exec("CREATE TRIGGER refuse BEFORE UPDATE ON answers "
                        "BEGIN SELECT RAISE(ABORT, 'held fast'); END");

    expectMarked(R"({"rating":5})");

    EXPECT_EQ(inMemory().rating, 5);
    EXPECT_EQ(*model().alertMessage, "held fast");
}

// --- The dataset ---

TEST_F(MarkingTest, AnAnswerIsSavedOnceAndTheSecondReplyIsTheFirst) {
    const HTTPResponse first = saveAnswer();
    const HTTPResponse second = saveAnswer();

    ASSERT_TRUE(inFile().datasetID.has_value());
    EXPECT_EQ(first, (HTTPResponse{200, R"({"answer_id":")" + answers[0].id.text() + R"(","dataset_id":")" +
                                            inFile().datasetID->text() + R"("})"}));
    EXPECT_EQ(second, first);
    ASSERT_EQ(model().library.dataset().size(), 1);
    EXPECT_EQ(model().library.dataset()[0].completion, answers[0].text);
    EXPECT_FALSE(model().feedback->has_value()); // what a program does is not announced
}

TEST_F(MarkingTest, AnExampleThatIsThereKeepsItsCorrection) {
    model().saveToDataset(answers[0].id, "Corrected.", true, std::nullopt);

    EXPECT_EQ(saveAnswer().status, 200);

    EXPECT_EQ(model().library.dataset()[0].completion, "Corrected.");
    EXPECT_EQ(model().library.dataset()[0].accepted, true);
}

TEST_F(MarkingTest, ASavedExampleHasTheVerdictOfItsAnswer) {
    expectMarked(R"({"accepted":false,"rating":3})");

    EXPECT_EQ(saveAnswer().status, 200);

    EXPECT_EQ(model().library.dataset()[0].accepted, false);
    EXPECT_EQ(model().library.dataset()[0].rating, 3);
}

TEST_F(MarkingTest, AnUnknownAnswerIsNotSaved) {
    EXPECT_EQ(model().saveAPIAnswer(UUID::random()), unknownAnswer);
}

TEST_F(MarkingTest, AnAnswerThatIsNotDoneIsNotSaved) {
    for (const AnswerState state : {AnswerState::running, AnswerState::failed}) {
        become([&](ModelAnswer& answer) { answer.state = state; });
        EXPECT_EQ(saveAnswer(), stillRunning);
    }
    EXPECT_EQ(model().library.dataset().size(), 0);
}

TEST_F(MarkingTest, AnEmptyAnswerHasNothingToSave) {
    become([](ModelAnswer& answer) { answer.text.clear(); });

    EXPECT_EQ(saveAnswer(), nothingToSave);
}

TEST_F(MarkingTest, ASaveThatTheFileRefusesLooksTheSameToAClient) {
    harness.file().exec("CREATE TRIGGER refuse BEFORE INSERT ON dataset "
                        "BEGIN SELECT RAISE(ABORT, 'held fast'); END");

    EXPECT_EQ(saveAnswer(), nothingToSave);

    EXPECT_EQ(*model().alertMessage, "Couldn't save this answer. held fast");
    EXPECT_EQ(inMemory().datasetID, std::nullopt);
}

} // namespace
