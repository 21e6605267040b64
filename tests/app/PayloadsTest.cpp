#include "app/Harness.h"
#include "base/Json.h"

#include <utility>

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

class PayloadsTest : public testing::Test {
protected:
    // Any model keeps the catalogue away.
    void SetUp() override { ready = harness.addReadyModel("sample-brief", 1); }

    AppModel& model() { return harness.model(); }

    // A batch whose runs were made in the order in which they are written.
    void save(const QuorlBatch& saved, const std::vector<QuorlRun>& runs) {
        harness.file().saveBatch(saved);
        double seconds = 0;
        for (QuorlRun run : runs) {
            run.batchID = saved.id;
            run.createdAt = dateFromSeconds(1'790'000'000 + ++seconds);
            harness.file().insertRun(run);
        }
    }

    Json::Value payload() { return model().batchPayload(batch.id).value(); }

    std::string createdAt(double seconds) {
        QuorlBatch made = batch;
        made.createdAt = dateFromSeconds(seconds);
        return model().batchSummary(made)["created_at"].get<std::string>();
    }

    Harness harness;
    ModelProfile ready;
    QuorlBatch batch = makeBatch();
};

std::vector<std::string> keysOf(const Json::Value& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items())
        keys.push_back(key);
    return keys;
}

// --- Models ---

TEST_F(PayloadsTest, AModelTellsWhetherItCanBeAskedAndWhyNot) {
    ModelProfile disabled = makeModel(ProviderKind::anthropic);
    disabled.name = "Off";
    disabled.enabled = false;
    disabled.sortIndex = 2;
    harness.file().saveModel(disabled);
    ModelProfile keyless = makeModel(ProviderKind::zun);
    keyless.name = "No key";
    keyless.sortIndex = 3;
    harness.file().saveModel(keyless);
    harness.start();

    EXPECT_EQ(model().apiModels(), (Json::Value{{{"id", ready.id.text()},
                                                 {"name", "sample-brief"},
                                                 {"provider", "openAICompatible"},
                                                 {"model", "sample-brief"},
                                                 {"serves", "generation"},
                                                 {"ready", true},
                                                 {"reason", nullptr}},
                                                {{"id", disabled.id.text()},
                                                 {"name", "Off"},
                                                 {"provider", "anthropic"},
                                                 {"model", "test-1"},
                                                 {"serves", "generation"},
                                                 {"ready", false},
                                                 {"reason", "Disabled"}},
                                                {{"id", keyless.id.text()},
                                                 {"name", "No key"},
                                                 {"provider", rawString(ProviderKind::zun)},
                                                 {"model", "test-1"},
                                                 {"serves", "decision"},
                                                 {"ready", false},
                                                 {"reason", "Add an API key."}}}));
}

TEST_F(PayloadsTest, TheFirstFourKindsServeDecisionsAndTheOthersGeneration) {
    std::int64_t place = 2;
    for (const ProviderKind kind : allProviderKinds) {
        ModelProfile profile = makeModel(kind);
        profile.sortIndex = place++;
        harness.file().saveModel(profile);
    }
    harness.start();

    std::vector<std::string> serves;
    for (const Json::Value& shown : model().apiModels())
        serves.push_back(shown["serves"].get<std::string>());

    EXPECT_THAT(serves, ElementsAre("generation", // the one that was there before
                                    "decision", "decision", "decision", "decision", "generation",
                                    "generation", "generation", "generation", "generation", "generation"));
}

TEST_F(PayloadsTest, WithoutModelsTheListIsEmptyAndStillAList) {
    harness.start();
    for (const ModelProfile& profile : std::vector(model().library.models()))
        model().library.removeModel(profile.id);

    EXPECT_EQ(model().apiModels(), Json::Value::array());
}

// --- Summaries ---

TEST_F(PayloadsTest, ASummaryHasEightKeys) {
    batch.source = RunOrigin::app;
    batch.status = BatchStatus::done;
    save(batch, {makeRun(), makeRun()});
    harness.start();
    model().apiBase = "http://127.0.0.1:9";

    EXPECT_EQ(model().batchSummary(batch),
              (Json::Value{{"id", batch.id.text()},
                           {"name", "Nightly"},
                           {"source", "app"},
                           {"kind", "generation"},
                           {"status", "done"},
                           {"created_at", "2026-09-21T14:13:20Z"},
                           {"items", 2},
                           {"url", "http://127.0.0.1:9/v1/batches/" + batch.id.text()}}));
}

TEST_F(PayloadsTest, ASummaryOfARunningDecisionBatchSaysSo) {
    batch.source = RunOrigin::api;
    batch.kind = QuorlKind::decision;
    batch.status = BatchStatus::running;
    harness.start();

    const Json::Value summary = model().batchSummary(batch);

    EXPECT_EQ(summary["source"], "api");
    EXPECT_EQ(summary["kind"], "decision");
    EXPECT_EQ(summary["status"], "running");
    EXPECT_EQ(summary["items"], 0);
}

TEST_F(PayloadsTest, ADateLosesItsFractionAndIsNeverRounded) {
    harness.start();

    EXPECT_EQ(createdAt(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(createdAt(0.999), "1970-01-01T00:00:00Z");
    EXPECT_EQ(createdAt(951'868'799.9), "2000-02-29T23:59:59Z");
    EXPECT_EQ(createdAt(1'790'000'000.9), "2026-09-21T14:13:20Z");
}

TEST_F(PayloadsTest, ADateBefore1970IsTheSecondThatItLiesIn) {
    harness.start();

    EXPECT_EQ(createdAt(-0.1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(createdAt(-86'400), "1969-12-31T00:00:00Z");
    EXPECT_EQ(createdAt(-62'135'596'800), "0001-01-01T00:00:00Z");
}

TEST_F(PayloadsTest, ADateThatFourDigitsCannotTellStaysAtTheEndOfThem) {
    harness.start();

    EXPECT_EQ(createdAt(253'402'300'799.9), "9999-12-31T23:59:59Z");
    EXPECT_EQ(createdAt(253'402'300'800), "9999-12-31T23:59:59Z");
    EXPECT_EQ(createdAt(1e300), "9999-12-31T23:59:59Z");
    EXPECT_EQ(createdAt(-62'167'219'201), "0000-01-01T00:00:00Z");
    EXPECT_EQ(createdAt(-1e300), "0000-01-01T00:00:00Z");
}

// --- Payloads ---

TEST_F(PayloadsTest, APayloadIsTheSummaryWithTheItemsInTheirOrder) {
    const QuorlRun first = makeRun();
    const QuorlRun second = makeRun();
    save(batch, {first, second});
    harness.start();

    Json::Value expected = model().batchSummary(*model().library.findBatch(batch.id));
    expected["items"] = payload()["items"];
    EXPECT_EQ(payload(), expected);
    ASSERT_EQ(payload()["items"].size(), 2);
    EXPECT_EQ(payload()["items"][0]["id"], first.id.text());
    EXPECT_EQ(payload()["items"][1]["id"], second.id.text());
}

TEST_F(PayloadsTest, AnUnknownBatchHasNoPayload) {
    harness.start();

    EXPECT_EQ(model().batchPayload(UUID::random()), std::nullopt);
}

TEST_F(PayloadsTest, ABatchWithoutRunsHasAnEmptyList) {
    save(batch, {});
    harness.start();

    EXPECT_EQ(payload()["items"], Json::Value::array());
}

TEST_F(PayloadsTest, AnItemShowsItsTextUnderBothKeysAndItsCategoryAsAPath) {
    const Category root = makeCategory("Support");
    const Category leaf = makeCategory("Refunds", root.id);
    harness.file().saveCategory(root);
    harness.file().saveCategory(leaf);
    QuorlRun run = makeRun();
    run.categoryID = leaf.id;
    save(batch, {run});
    harness.start();

    EXPECT_EQ(payload()["items"][0], (Json::Value{{"id", run.id.text()},
                                                  {"state", "Which way is up?"},
                                                  {"prompt", "Which way is up?"},
                                                  {"category", "Support / Refunds"},
                                                  {"complete", false},
                                                  {"answers", Json::Value::array()}}));
}

TEST_F(PayloadsTest, AnItemWithoutACategoryIsUncategorized) {
    save(batch, {makeRun()});
    harness.start();

    EXPECT_EQ(payload()["items"][0]["category"], "Uncategorized");
}

TEST_F(PayloadsTest, AnItemIsCompleteOnceItHasAnswersAndNoneIsRunning) {
    const QuorlRun run = makeRun();
    save(batch, {run});
    ModelAnswer done = makeAnswer(run.id, 0);
    ModelAnswer failed = makeAnswer(run.id, 1);
    failed.state = AnswerState::failed;
    harness.file().insertAnswer(done);
    harness.file().insertAnswer(failed);
    harness.start();
    EXPECT_EQ(payload()["items"][0]["complete"], true);

    failed.state = AnswerState::running;
    model().library.replaceAnswer(failed);
    EXPECT_EQ(payload()["items"][0]["complete"], false);
}

TEST_F(PayloadsTest, AnswersStandByTheirPosition) {
    const QuorlRun run = makeRun();
    save(batch, {run});
    const std::vector<ModelAnswer> answers{makeAnswer(run.id, 2), makeAnswer(run.id, 0),
                                           makeAnswer(run.id, 1)};
    for (const ModelAnswer& answer : answers)
        harness.file().insertAnswer(answer);
    harness.start();

    const Json::Value shown = payload()["items"][0]["answers"];

    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(shown[0], AppModel::answerJSON(answers[1], run.kind));
    EXPECT_EQ(shown[1]["id"], answers[2].id.text());
    EXPECT_EQ(shown[2]["id"], answers[0].id.text());
}

// --- Answers ---

TEST(AnswerJSON, HasEveryKeyWhereEverythingIsKnown) {
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.state = AnswerState::failed;
    answer.tokensEstimated = true;
    answer.errorMessage = "It rained.";
    answer.chosenCorrect = true;
    answer.accepted = false;
    answer.rating = 7;
    answer.datasetID = UUID::random();

    EXPECT_EQ(AppModel::answerJSON(answer, QuorlKind::generation),
              (Json::Value{{"id", answer.id.text()},
                           {"model", "Test model"},
                           {"model_id", answer.modelID.text()},
                           {"state", "failed"},
                           {"text", "That way."},
                           {"summary", "That way."},
                           {"latency_ms", 420},
                           {"tokens_estimated", true},
                           {"chosen_correct", true},
                           {"accepted", false},
                           {"rating", 7},
                           {"dataset_id", answer.datasetID->text()},
                           {"input_tokens", 12},
                           {"output_tokens", 3},
                           {"cost_usd", 0.000048},
                           {"error", "It rained."}}));
}

TEST(AnswerJSON, JudgementsAreNullAndMeasurementsMissingWhereThereAreNone) {
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.inputTokens.reset();
    answer.outputTokens.reset();
    answer.costUSD.reset();

    const Json::Value json = AppModel::answerJSON(answer, QuorlKind::generation);

    EXPECT_THAT(keysOf(json),
                ElementsAre("accepted", "chosen_correct", "dataset_id", "id", "latency_ms", "model",
                            "model_id", "rating", "state", "summary", "text", "tokens_estimated"));
    EXPECT_TRUE(json["accepted"].is_null());
    EXPECT_TRUE(json["rating"].is_null());
    EXPECT_TRUE(json["dataset_id"].is_null());
}

TEST(AnswerJSON, NothingIsMissingForBeingZero) {
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.inputTokens = 0;
    answer.outputTokens = 0;
    answer.costUSD = 0;
    answer.errorMessage = "";

    const Json::Value json = AppModel::answerJSON(answer, QuorlKind::generation);

    EXPECT_EQ(json["input_tokens"], 0);
    EXPECT_EQ(json["output_tokens"], 0);
    EXPECT_EQ(Json::write(json["cost_usd"]), "0");
    EXPECT_EQ(json["error"], "");
}

TEST(AnswerJSON, ACostIsWrittenAsShortAsItCanBe) {
    const auto written = [](double cost) {
        ModelAnswer answer = makeAnswer(UUID::random());
        answer.costUSD = cost;
        return Json::write(AppModel::answerJSON(answer, QuorlKind::generation)["cost_usd"]);
    };

    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(0.000048), "4.8e-05");
    EXPECT_EQ(written(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(written(2), "2");
    EXPECT_EQ(written(1e20), "1e+20"); // larger than a whole number that every reader takes
}

TEST(AnswerJSON, OnlyADecisionIsSummedUp) {
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.text = "{\n  \"answers\": {\n    \"refund\": {\n      \"noul\": 0.9,\n      \"type\": \"noul\"\n  "
                  "  }\n  }\n}";

    const Json::Value decision = AppModel::answerJSON(answer, QuorlKind::decision);
    const Json::Value generation = AppModel::answerJSON(answer, QuorlKind::generation);

    EXPECT_EQ(decision["text"], answer.text);
    EXPECT_EQ(decision["summary"], "refund  ·  90% yes");
    EXPECT_EQ(generation["summary"], answer.text);
}

TEST(AnswerJSON, TellsTheStateInItsRawForm) {
    ModelAnswer answer = makeAnswer(UUID::random());
    for (const auto& [state, raw] :
         {std::pair(AnswerState::running, "running"), std::pair(AnswerState::done, "done"),
          std::pair(AnswerState::failed, "failed")}) {
        answer.state = state;
        EXPECT_EQ(AppModel::answerJSON(answer, QuorlKind::generation)["state"], raw);
    }
}

} // namespace
