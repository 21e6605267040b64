#include "app/BatchHarness.h"
#include "support/ToolStage.h"

#include <algorithm>

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class WorkQueueTest : public testing::Test {
protected:
    void SetUp() override {
        first = harness.addReadyModel("first", 0);
        second = harness.addReadyModel("second", 1);
        harness.endpoint.answer("first", says("one"));
        harness.endpoint.answer("second", says("two"));
        harness.start();
    }

    AppModel& model() { return harness.model(); }

    // The prompts, or another member of the requests' bodies, in the order of arrival.
    std::vector<std::string> asked() {
        std::vector<std::string> prompts;
        for (const sample::Request& request : harness.endpoint.requests())
            prompts.push_back(Json::parse(request.body)->at("messages").back().at("content"));
        return prompts;
    }

    std::vector<AnswerState> states(const UUID& batchID) {
        std::vector<AnswerState> all;
        for (std::size_t i = 0; i < harness.runsOf(batchID).size(); ++i) {
            for (const ModelAnswer& answer : harness.answersOf(batchID, i))
                all.push_back(answer.state);
        }
        return all;
    }

    void silence(const std::string& identifier) {
        harness.endpoint.answer(identifier, sample::Fault::neverAnswer());
    }

    bool runUntilFinished(const UUID& answerID) {
        return harness.loop.runUntil([&] {
            const ModelAnswer* answer = model().library.findAnswer(answerID);
            return answer && answer->state != AnswerState::running;
        });
    }

    BatchStatus statusOf(const UUID& batchID) { return model().library.findBatch(batchID)->status; }

    void remove(PendingDelete::Kind kind, const UUID& id) {
        model().requestDelete({kind, id});
        model().confirmDelete();
    }

    BatchHarness harness;
    ModelProfile first;
    ModelProfile second;
};

Json::Value with(Json::Value body, const char* key, Json::Value value) {
    body[key] = std::move(value);
    return body;
}

TEST_F(WorkQueueTest, EveryAnswerOfABatchComesAndStandsInTheFile) {
    const UUID batch = harness.postBatch(with(generation({"a", "b", "c"}), "system", "Be brief."));
    EXPECT_EQ(statusOf(batch), BatchStatus::running);

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(states(batch), testing::Each(AnswerState::done));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(harness.answersOf(batch, i).at(0).text, "one");
        EXPECT_EQ(harness.answersOf(batch, i).at(1).text, "two");
        EXPECT_EQ(harness.answersOf(batch, i).at(0).inputTokens, 12);
    }
    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b", "c", "c"));
    EXPECT_EQ(harness.file().loadBatches()[0].status, BatchStatus::done);
    for (const ModelAnswer& stored : harness.file().loadAnswers())
        EXPECT_EQ(*model().library.findAnswer(stored.id), stored);
    EXPECT_EQ(model().alertMessage->value_or(""), "");
    const sample::Request request = harness.endpoint.requests().at(0);
    EXPECT_EQ(Json::parse(request.body)->at("messages").at(0).at("content"), "Be brief.");
    EXPECT_EQ(*request.header("authorization"), "Bearer key-of-the-test");
}

TEST_F(WorkQueueTest, DecisionsAreAskedWithTheirQuestions) {
    harness.addDecisionModel("decider");
    harness.start();
    const UUID batch = harness.postBatch({{"items", {{{"state", "Rain"}, {"questions", yesOrNo()}}}}});

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(states(batch), ElementsAre(AnswerState::done));
    const auto body = Json::parse(harness.endpoint.requests().at(0).body);
    EXPECT_NE(body->dump().find("Is it wet?"), std::string::npos);
}

TEST_F(WorkQueueTest, AFirstBatchEndsBeforeASecondBegins) {
    const UUID one = harness.postBatch(with(generation({"a", "b"}), "models", "first"));
    const UUID two = harness.postBatch(with(generation({"c", "d"}), "models", "second"));
    const UUID three = harness.postBatch(with(generation({"e"}), "models", "first"));

    ASSERT_TRUE(harness.runUntilDone(three));

    EXPECT_THAT(asked(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(statusOf(one), BatchStatus::done);
    EXPECT_EQ(statusOf(two), BatchStatus::done);
}

TEST_F(WorkQueueTest, AnAnswerIsThereWhileItsItemsOtherModelsAreStillAtWork) {
    silence("first");
    const UUID batch = harness.postBatch(generation({"a", "b"}));

    ASSERT_TRUE(runUntilFinished(harness.answersOf(batch, 0).at(1).id));

    EXPECT_THAT(states(batch), ElementsAre(AnswerState::running, AnswerState::done, AnswerState::running,
                                           AnswerState::running));
    EXPECT_EQ(statusOf(batch), BatchStatus::running);
    EXPECT_EQ(harness.file().loadBatches()[0].status, BatchStatus::running);
}

// The slowest model of an item sets the pace, also for other batches.
TEST_F(WorkQueueTest, AModelThatDoesNotReturnHoldsUpTheQueue) {
    silence("first");
    const UUID one = harness.postBatch(generation({"a", "b"}));
    harness.postBatch(with(generation({"c"}), "models", "second"));

    ASSERT_TRUE(runUntilFinished(harness.answersOf(one, 0).at(1).id));
    ASSERT_TRUE(harness.endpoint.waitForRequests(2));
    harness.loop.runPosted();

    EXPECT_THAT(asked(), ElementsAre("a", "a"));
}

TEST_F(WorkQueueTest, AComparisonDoesNotWaitForTheQueue) {
    silence("first");
    harness.postBatch(with(generation({"a", "b"}), "models", "first"));
    harness.writeDraft("beside");
    model().draftModelIDs = std::set<UUID>{second.id};

    model().ask();

    ASSERT_TRUE(runUntilFinished(harness.activeAnswers().at(0).id));
    EXPECT_EQ(harness.activeAnswers().at(0).text, "two");
}

TEST_F(WorkQueueTest, AModelThatIsNamedTwiceIsAskedTwiceAtOnce) {
    silence("first");
    const UUID batch = harness.postBatch(with(generation({"a"}), "models", {"first", "first"}));

    ASSERT_TRUE(harness.endpoint.waitForRequests(2));

    EXPECT_EQ(states(batch).size(), 2u);
    EXPECT_NE(harness.endpoint.requests()[0].connection, harness.endpoint.requests()[1].connection);
}

TEST_F(WorkQueueTest, AModelThatFailsFailsItsAnswerAndNothingElse) {
    harness.endpoint.answer("first", sample::OpenAIChat().failure(500, "no luck"));
    const UUID batch = harness.postBatch(generation({"a", "b"}));

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(states(batch),
                ElementsAre(AnswerState::failed, AnswerState::done, AnswerState::failed, AnswerState::done));
    EXPECT_NE(harness.answersOf(batch, 0).at(0).errorMessage.value_or("").find("no luck"), std::string::npos);
}

TEST_F(WorkQueueTest, ABatchInWhichEveryModelFailsIsDone) {
    for (const char* identifier : {"first", "second"})
        harness.endpoint.answer(identifier, sample::Fault::resetBeforeAnswer());
    const UUID batch = harness.postBatch(generation({"a", "b"}));
    const UUID next = harness.postBatch(generation({"c"}));

    ASSERT_TRUE(harness.runUntilDone(next));

    EXPECT_EQ(statusOf(batch), BatchStatus::done);
    EXPECT_THAT(states(batch), testing::Each(AnswerState::failed));
    EXPECT_EQ(model().batchPayload(batch)->at("items").at(0).at("complete"), true);
    EXPECT_EQ(harness.file().loadBatches().size(), 2u);
}

TEST_F(WorkQueueTest, ABatchThatHasEndedLetsTheNextOneRunAtOnce) {
    ASSERT_TRUE(harness.runUntilDone(harness.postBatch(generation({"a"}))));
    ASSERT_TRUE(harness.runUntilDone(harness.postBatch(generation({"b"}))));
    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b"));
}

// --- What is deleted meanwhile ---

TEST_F(WorkQueueTest, ARunThatIsDeletedWhileItWaitsIsStillAsked) {
    const UUID batch = harness.postBatch(generation({"a", "b", "c"}));
    remove(PendingDelete::Kind::run, harness.runsOf(batch).at(1)->id);

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b", "c", "c"));
    EXPECT_EQ(states(batch).size(), 4u);
    EXPECT_EQ(harness.file().loadAnswers().size(), 4u);
    EXPECT_EQ(model().alertMessage->value_or(""), "");
}

TEST_F(WorkQueueTest, ARunThatIsDeletedUnderWayIsForgottenAndTheQueueMovesOn) {
    const UUID batch = harness.postBatch(generation({"a", "b"}));
    remove(PendingDelete::Kind::run, harness.runsOf(batch).at(0)->id);

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b"));
    EXPECT_THAT(states(batch), ElementsAre(AnswerState::done, AnswerState::done));
}

TEST_F(WorkQueueTest, ABatchThatIsDeletedIsAskedToItsEndAndLeavesNothing) {
    const UUID gone = harness.postBatch(generation({"a", "b"}));
    const UUID next = harness.postBatch(generation({"c"}));
    remove(PendingDelete::Kind::batch, gone);

    ASSERT_TRUE(harness.runUntilDone(next));

    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b", "c", "c"));
    EXPECT_EQ(harness.file().loadBatches().size(), 1u);
    EXPECT_EQ(harness.file().loadRuns().size(), 1u);
    EXPECT_EQ(harness.file().loadAnswers().size(), 2u);
    EXPECT_EQ(model().library.findBatch(gone), nullptr);
}

TEST_F(WorkQueueTest, TheQueueMovesOnFromAnItemThatIsDeletedUnderWayAfterAllOthers) {
    const UUID batch = harness.postBatch(generation({"a", "b"}));
    ASSERT_TRUE(harness.loop.runUntil([&] {
        const auto all = states(batch);
        return all[0] == AnswerState::done && all[1] == AnswerState::done;
    }));
    remove(PendingDelete::Kind::run, harness.runsOf(batch).at(1)->id);
    const UUID next = harness.postBatch(generation({"c"}));

    ASSERT_TRUE(harness.runUntilDone(next));

    EXPECT_THAT(asked(), ElementsAre("a", "a", "b", "b", "c", "c"));
}

// --- What changes meanwhile ---

TEST_F(WorkQueueTest, AModelIsAskedAsItWasWhenTheBatchWasMade) {
    const UUID batch = harness.postBatch(with(generation({"a", "b", "c"}), "models", "first"));
    ModelProfile changed = first;
    changed.modelIdentifier = "other";
    changed.enabled = false;
    model().replaceModel(changed);
    model().saveSecret(first.id, {"other-key", "", "", ""});

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_EQ(harness.endpoint.requests().size(), 3u);
    for (const sample::Request& request : harness.endpoint.requests()) {
        EXPECT_EQ(Json::parse(request.body)->at("model"), "first");
        EXPECT_EQ(*request.header("authorization"), "Bearer key-of-the-test");
    }
    EXPECT_THAT(states(batch), testing::Each(AnswerState::done));
}

TEST_F(WorkQueueTest, AModelThatIsDeletedIsStillAsked) {
    const UUID batch = harness.postBatch(with(generation({"a", "b"}), "models", "first"));
    remove(PendingDelete::Kind::model, first.id);

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_THAT(states(batch), ElementsAre(AnswerState::done, AnswerState::done));
}

TEST_F(WorkQueueTest, ALostToolFailsWithTheRoutersWords) {
    ToolStage stage;
    ModelProfile tool = makeModel(ProviderKind::codex);
    tool.name = "tool";
    tool.executablePath = stage.recordingTool("echo '{}'");
    harness.file().saveModel(tool);
    harness.start();
    // Gone as soon as the first item's answer is in, which is before the second is asked.
    const auto subscription = model().observe([&](const AppChange& change) {
        if (change.field == AppField::batches)
            return;
        const auto runs = model().library.runCount();
        if (change.field == AppField::answersByRun && runs == 2)
            std::filesystem::remove(tool.executablePath);
    });
    const UUID batch = harness.postBatch(with(generation({"a", "b"}), "models", "tool"));

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_EQ(harness.answersOf(batch, 1).at(0).state, AnswerState::failed);
    EXPECT_EQ(harness.answersOf(batch, 1).at(0).errorMessage,
              "Couldn't find the Codex CLI. Set its path in Models.");
}

TEST_F(WorkQueueTest, AStoreThatFailsDoesNotHoldUpTheQueue) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON answers BEGIN SELECT RAISE(ABORT, 'no room'); "
        "END");
    const UUID batch = harness.postBatch(generation({"a", "b"}));

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_EQ(model().alertMessage->value_or(""), "no room");
    EXPECT_THAT(states(batch), testing::Each(AnswerState::done));
}

TEST_F(WorkQueueTest, AStatusThatCannotBeWrittenIsKeptInMemoryAndTold) {
    harness.file().exec(
        "CREATE TRIGGER refuse BEFORE UPDATE ON batches BEGIN SELECT RAISE(ABORT, 'no room'); "
        "END");
    const UUID batch = harness.postBatch(generation({"a"}));

    ASSERT_TRUE(harness.runUntilDone(batch));

    EXPECT_EQ(model().alertMessage->value_or(""), "no room");
    EXPECT_EQ(harness.file().loadBatches()[0].status, BatchStatus::running);
}

// --- The end of the process ---

TEST_F(WorkQueueTest, AfterARestartTheBatchIsDoneAndWhatWasMissingHasFailed) {
    silence("first");
    const UUID batch = harness.postBatch(generation({"a", "b"}));
    ASSERT_TRUE(runUntilFinished(harness.answersOf(batch, 0).at(1).id));

    harness.start();

    EXPECT_EQ(statusOf(batch), BatchStatus::done);
    EXPECT_EQ(harness.file().loadBatches()[0].status, BatchStatus::done);
    const auto answered = harness.answersOf(batch, 0);
    EXPECT_EQ(answered.at(1).state, AnswerState::done);
    EXPECT_EQ(answered.at(1).text, "two");
    for (const ModelAnswer& answer :
         {answered.at(0), harness.answersOf(batch, 1).at(0), harness.answersOf(batch, 1).at(1)}) {
        EXPECT_EQ(answer.state, AnswerState::failed);
        EXPECT_EQ(answer.errorMessage, "Quorl closed before this response finished.");
    }
    // Nothing runs again by itself.
    harness.loop.runPosted();
    EXPECT_EQ(harness.endpoint.requests().size(), 2u);
}

TEST_F(WorkQueueTest, TheQueueMovesAfterARestart) {
    silence("first");
    harness.postBatch(generation({"a", "b"}));
    ASSERT_TRUE(harness.endpoint.waitForRequests(2));
    harness.endpoint.answer("first", says("one"));
    harness.start();

    EXPECT_TRUE(harness.runUntilDone(harness.postBatch(generation({"c"}))));
}

} // namespace
