#include "domain/RecordsJSON.h"

#include "support/Builders.h"

#include <gtest/gtest.h>

#include <set>

namespace quorl::test {
namespace {

UUID numbered(int number) {
    return UUID::parse("00000000-0000-4000-8000-00000000000" + std::to_string(number)).value();
}

std::string textOf(int number) {
    return numbered(number).text();
}

ModelProfile fullModel() {
    auto model = makeModel(ProviderKind::amazonBedrock);
    model.id = numbered(1);
    model.executablePath = "/usr/bin/tool";
    return model;
}

Category fullCategory() {
    return {numbered(1), "Größe", numbered(2), 30};
}

QuorlRun fullRun() {
    auto run = makeRun(QuorlKind::decision);
    run.id = numbered(1);
    run.categoryID = numbered(2);
    run.scoringMode = ScoringMode::scale;
    run.questionsJSON = "[]";
    run.batchID = numbered(3);
    run.origin = RunOrigin::api;
    return run;
}

QuorlBatch fullBatch() {
    auto batch = makeBatch();
    batch.id = numbered(1);
    batch.status = BatchStatus::done;
    return batch;
}

ModelAnswer fullAnswer() {
    auto answer = makeAnswer(numbered(2), 3);
    answer.id = numbered(1);
    answer.modelID = numbered(3);
    answer.state = AnswerState::failed;
    answer.tokensEstimated = true;
    answer.costUSD = 0.5;
    answer.errorMessage = "No.";
    answer.chosenCorrect = true;
    answer.accepted = false;
    answer.rating = 7;
    answer.datasetID = numbered(4);
    return answer;
}

DatasetExample fullExample() {
    auto example = makeExample(numbered(3));
    example.id = numbered(1);
    example.categoryID = numbered(2);
    example.rating = 9;
    example.accepted = true;
    return example;
}

TEST(RecordsJSON, AModelHasAllItsFields) {
    EXPECT_EQ(toJSON(fullModel()), (Json::Value{{"id", textOf(1)},
                                                {"name", "Test model"},
                                                {"provider", "amazonBedrock"},
                                                {"modelIdentifier", "test-1"},
                                                {"endpoint", "http://127.0.0.1:9/v1"},
                                                {"executablePath", "/usr/bin/tool"},
                                                {"inputPricePerMillion", 2.0},
                                                {"outputPricePerMillion", 8.0},
                                                {"maxOutputTokens", 1024},
                                                {"enabled", true},
                                                {"notes", "For tests."},
                                                {"sortIndex", 20}}));
}

TEST(RecordsJSON, ACategoryHasAllItsFields) {
    EXPECT_EQ(
        toJSON(fullCategory()),
        (Json::Value{{"id", textOf(1)}, {"name", "Größe"}, {"parentID", textOf(2)}, {"sortIndex", 30}}));
}

TEST(RecordsJSON, ARunHasAllItsFields) {
    EXPECT_EQ(toJSON(fullRun()), (Json::Value{{"id", textOf(1)},
                                              {"kind", "decision"},
                                              {"prompt", "Which way is up?"},
                                              {"systemPrompt", "Answer directly."},
                                              {"categoryID", textOf(2)},
                                              {"scoringMode", "scale"},
                                              {"createdAt", 1'790'000'000.5},
                                              {"questionsJSON", "[]"},
                                              {"batchID", textOf(3)},
                                              {"origin", "api"}}));
}

TEST(RecordsJSON, ABatchHasAllItsFields) {
    EXPECT_EQ(toJSON(fullBatch()), (Json::Value{{"id", textOf(1)},
                                                {"name", "Nightly"},
                                                {"source", "api"},
                                                {"kind", "generation"},
                                                {"createdAt", 1'790'000'000.5},
                                                {"status", "done"}}));
}

TEST(RecordsJSON, AnAnswerHasAllItsFields) {
    EXPECT_EQ(toJSON(fullAnswer()), (Json::Value{{"id", textOf(1)},
                                                 {"runID", textOf(2)},
                                                 {"modelID", textOf(3)},
                                                 {"modelName", "Test model"},
                                                 {"provider", "openAICompatible"},
                                                 {"position", 3},
                                                 {"state", "failed"},
                                                 {"text", "That way."},
                                                 {"latencyMS", 420},
                                                 {"inputTokens", 12},
                                                 {"outputTokens", 3},
                                                 {"tokensEstimated", true},
                                                 {"costUSD", 0.5},
                                                 {"errorMessage", "No."},
                                                 {"chosenCorrect", true},
                                                 {"accepted", false},
                                                 {"rating", 7},
                                                 {"datasetID", textOf(4)}}));
}

TEST(RecordsJSON, AnExampleHasAllItsFields) {
    EXPECT_EQ(toJSON(fullExample()), (Json::Value{{"id", textOf(1)},
                                                  {"createdAt", 1'790'000'100.5},
                                                  {"categoryID", textOf(2)},
                                                  {"kind", "generation"},
                                                  {"prompt", "Which way is up?"},
                                                  {"systemPrompt", "Answer directly."},
                                                  {"completion", "That way."},
                                                  {"modelName", "Test model"},
                                                  {"provider", "openAICompatible"},
                                                  {"rating", 9},
                                                  {"accepted", true},
                                                  {"answerID", textOf(3)}}));
}

std::set<std::string> keysOf(const Json::Value& object) {
    std::set<std::string> keys;
    for (const auto& [key, value] : object.items())
        keys.insert(key);
    return keys;
}

TEST(RecordsJSON, AbsentFieldsAreLeftOut) {
    EXPECT_EQ(keysOf(toJSON(Category())), (std::set<std::string>{"id", "name", "sortIndex"}));
    EXPECT_FALSE(toJSON(QuorlRun()).contains("categoryID"));
    EXPECT_FALSE(toJSON(QuorlRun()).contains("batchID"));
    EXPECT_EQ(keysOf(toJSON(ModelAnswer())),
              (std::set<std::string>{"id", "runID", "modelID", "modelName", "provider", "position", "state",
                                     "text", "latencyMS", "tokensEstimated", "chosenCorrect"}));
    EXPECT_EQ(keysOf(toJSON(DatasetExample())),
              (std::set<std::string>{"id", "createdAt", "kind", "prompt", "systemPrompt", "completion",
                                     "modelName", "provider", "answerID"}));
}

// What holds of every record: it reads back as it was, needs each key that is not optional, and refuses other
// types. A field that is left out of equality or hash shows as a change that neither notices.
template <class Record>
void expectJSONForm(const Record& full, const std::set<std::string>& optional) {
    const auto form = toJSON(full);
    EXPECT_EQ(fromJSON<Record>(form), full);
    EXPECT_EQ(fromJSON<Record>(toJSON(Record())), Record());
    EXPECT_EQ(std::hash<Record>{}(full), std::hash<Record>{}(*fromJSON<Record>(form)));

    for (const auto& key : keysOf(form)) {
        auto changed = form;
        changed.erase(key);
        EXPECT_EQ(fromJSON<Record>(changed).has_value(), optional.contains(key)) << key;
        changed[key] = nullptr;
        EXPECT_EQ(fromJSON<Record>(changed).has_value(), optional.contains(key)) << key;
        changed[key] = Json::Value::array();
        EXPECT_EQ(fromJSON<Record>(changed), std::nullopt) << key;

        // The default of another record stands in for "another value of the same type".
        const auto blank = toJSON(Record());
        changed[key] = blank.contains(key) ? blank[key] : Json::Value();
        if (changed[key] == form[key])
            continue;
        const auto other = fromJSON<Record>(changed);
        ASSERT_TRUE(other) << key;
        EXPECT_NE(*other, full) << key;
        EXPECT_NE(std::hash<Record>{}(*other), std::hash<Record>{}(full)) << key;
    }
    EXPECT_EQ(fromJSON<Record>(Json::Value::array()), std::nullopt);
    EXPECT_EQ(fromJSON<Record>(Json::Value()), std::nullopt);
}

TEST(RecordsJSON, ReadBackAndHashOverAllFields) {
    expectJSONForm(fullModel(), {});
    expectJSONForm(fullCategory(), {"parentID"});
    expectJSONForm(fullRun(), {"categoryID", "batchID"});
    expectJSONForm(fullBatch(), {});
    expectJSONForm(fullAnswer(), {"inputTokens", "outputTokens", "costUSD", "errorMessage", "accepted",
                                  "rating", "datasetID"});
    expectJSONForm(fullExample(), {"categoryID", "rating", "accepted"});
}

TEST(RecordsJSON, UnknownRawStringsAreRefused) {
    auto form = toJSON(fullModel());
    form["provider"] = "OpenAI";
    EXPECT_EQ(fromJSON<ModelProfile>(form), std::nullopt);

    form = toJSON(fullRun());
    form["origin"] = "";
    EXPECT_EQ(fromJSON<QuorlRun>(form), std::nullopt);
}

TEST(RecordsJSON, WholeNumbersMayHaveAFractionOfZeroAndNoOther) {
    auto form = toJSON(fullCategory());
    form["sortIndex"] = 30.0;
    EXPECT_EQ(fromJSON<Category>(form), fullCategory());
    form["sortIndex"] = 30.5;
    EXPECT_EQ(fromJSON<Category>(form), std::nullopt);
    form["sortIndex"] = true;
    EXPECT_EQ(fromJSON<Category>(form), std::nullopt);
}

TEST(Records, EqualRecordsHaveEqualHashesAlsoWithBothZeros) {
    auto model = fullModel();
    model.inputPricePerMillion = 0.0;
    auto other = model;
    other.inputPricePerMillion = -0.0;

    EXPECT_EQ(model, other);
    EXPECT_EQ(std::hash<ModelProfile>{}(model), std::hash<ModelProfile>{}(other));
}

} // namespace
} // namespace quorl::test
