#include "store/StoreFile.h"
#include "support/Builders.h"

#include <gtest/gtest.h>

namespace quorl::test {

namespace {

// A file with one row of each table, into which another program then writes what does not belong there. Its
// columns take anything: the constraints of ours would refuse some of it, those of an older file need not.
struct ForeignFile {
    ForeignFile() {
        const std::string id = "'" + UUID::random().text() + "'";
        raw.exec("CREATE TABLE categories (id, name, parent_id, sort_index)");
        raw.exec("CREATE TABLE models (id, name, provider, model_identifier, endpoint, executable_path, "
                 "input_price, "
                 "output_price, max_tokens, enabled, notes, sort_index)");
        raw.exec("CREATE TABLE runs (id, kind, prompt, system_prompt, category_id, scoring_mode, created_at, "
                 "questions_json, batch_id, origin)");
        raw.exec("CREATE TABLE answers (id, run_id, model_id, model_name, provider, position, state, text, "
                 "latency_ms, "
                 "input_tokens, output_tokens, tokens_estimated, cost_usd, error, chosen_correct, accepted, "
                 "rating, "
                 "dataset_id)");
        raw.exec(
            "CREATE TABLE dataset (id, created_at, category_id, kind, prompt, system_prompt, completion, "
            "model_name, provider, rating, accepted, answer_id)");
        raw.exec("CREATE TABLE batches (id, name, source, kind, created_at, status)");
        for (const char* table : {"categories", "models", "runs", "answers", "dataset", "batches"})
            raw.exec(std::string("INSERT INTO ") + table + " (id) VALUES (" + id + ")");
    }

    void set(const std::string& table, const std::string& column, const std::string& value) {
        raw.exec("UPDATE " + table + " SET " + column + " = " + value);
    }

    ModelProfile model() { return QuorlStore(path).loadModels().at(0); }
    Category category() { return QuorlStore(path).loadCategories().at(0); }
    QuorlRun run() { return QuorlStore(path).loadRuns().at(0); }
    ModelAnswer answer() { return QuorlStore(path).loadAnswers().at(0); }
    DatasetExample example() { return QuorlStore(path).loadDataset().at(0); }
    QuorlBatch batch() { return QuorlStore(path).loadBatches().at(0); }

    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    RawLibrary raw{path};
};

} // namespace

TEST(RowFallback, AMissingTextIsEmpty) {
    ForeignFile file;

    EXPECT_EQ(file.model().name, "");
    EXPECT_EQ(file.model().notes, "");
    EXPECT_EQ(file.category().name, "");
    EXPECT_EQ(file.run().prompt, "");
    EXPECT_EQ(file.run().questionsJSON, "");
    EXPECT_EQ(file.answer().text, "");
    EXPECT_EQ(file.answer().modelName, "");
    EXPECT_EQ(file.example().completion, "");
    EXPECT_EQ(file.batch().name, "");
}

TEST(RowFallback, AnIdThatCannotBeReadIsAFreshOneAtEachLoad) {
    for (const char* value : {"NULL", "'not an id'", "''", "12"}) {
        ForeignFile file;
        for (const char* table : {"categories", "models", "runs", "answers", "dataset", "batches"})
            file.set(table, "id", value);

        EXPECT_NE(file.category().id, file.category().id) << value;
        EXPECT_NE(file.model().id, file.model().id) << value;
        EXPECT_NE(file.run().id, file.run().id) << value;
        EXPECT_NE(file.answer().id, file.answer().id) << value;
        EXPECT_NE(file.example().id, file.example().id) << value;
        EXPECT_NE(file.batch().id, file.batch().id) << value;
    }
}

TEST(RowFallback, AReferenceThatMustBeThereIsAFreshOneAtEachLoad) {
    ForeignFile file;
    EXPECT_NE(file.answer().runID, file.answer().runID);
    EXPECT_NE(file.answer().modelID, file.answer().modelID);
    EXPECT_NE(file.example().answerID, file.example().answerID);

    file.set("answers", "run_id", "'x'");
    file.set("answers", "model_id", "'x'");
    file.set("dataset", "answer_id", "'x'");

    EXPECT_NE(file.answer().runID, file.answer().runID);
    EXPECT_NE(file.answer().modelID, file.answer().modelID);
    EXPECT_NE(file.example().answerID, file.example().answerID);
}

TEST(RowFallback, AnUpdateAddressedToAFreshIdChangesNothing) {
    ForeignFile file;
    file.set("answers", "id", "'x'");
    QuorlStore store(file.path);
    auto answer = store.loadAnswers().at(0);
    answer.text = "Nowhere.";

    store.updateOutcome(answer);

    EXPECT_EQ(file.raw.value("SELECT text FROM answers"), "NULL");
}

TEST(RowFallback, AnIdInLowerCaseIsRead) {
    ForeignFile file;
    file.set("models", "id", "'aaaaaaaa-aaaa-4aaa-8aaa-aaaaaaaaaaaa'");

    EXPECT_EQ(file.model().id.text(), "AAAAAAAA-AAAA-4AAA-8AAA-AAAAAAAAAAAA");
}

TEST(RowFallback, AnOptionalReferenceIsAbsentIfItIsMissingOrUnreadable) {
    for (const char* value : {"NULL", "'x'", "''"}) {
        ForeignFile file;
        file.set("categories", "parent_id", value);
        file.set("runs", "category_id", value);
        file.set("runs", "batch_id", value);
        file.set("answers", "dataset_id", value);
        file.set("dataset", "category_id", value);

        EXPECT_EQ(file.category().parentID, std::nullopt) << value;
        EXPECT_EQ(file.run().categoryID, std::nullopt) << value;
        EXPECT_EQ(file.run().batchID, std::nullopt) << value;
        EXPECT_EQ(file.answer().datasetID, std::nullopt) << value;
        EXPECT_EQ(file.example().categoryID, std::nullopt) << value;
    }
}

TEST(RowFallback, AnUnknownProviderIsOpenAI) {
    for (const char* value : {"NULL", "'zuN'", "'x'"}) {
        ForeignFile file;
        file.set("models", "provider", value);
        file.set("answers", "provider", value);
        file.set("dataset", "provider", value);

        EXPECT_EQ(file.model().provider, ProviderKind::openAI) << value;
        EXPECT_EQ(file.answer().provider, ProviderKind::openAI) << value;
        EXPECT_EQ(file.example().provider, ProviderKind::openAI) << value;
    }
}

TEST(RowFallback, SavingAModelOfAnUnknownProviderWritesOpenAIBack) {
    StoreFile file;
    file.store.saveModel(makeModel());
    file.raw.exec("UPDATE models SET provider = 'unheard of'");

    file.store.saveModel(file.store.loadModels().at(0));

    EXPECT_EQ(file.raw.value("SELECT provider FROM models"), "openAI");
}

TEST(RowFallback, AnUnknownKindIsADecision) {
    for (const char* value : {"NULL", "'x'", "'Generation'"}) {
        ForeignFile file;
        for (const char* table : {"runs", "batches", "dataset"})
            file.set(table, "kind", value);

        EXPECT_EQ(file.run().kind, QuorlKind::decision) << value;
        EXPECT_EQ(file.batch().kind, QuorlKind::decision) << value;
        EXPECT_EQ(file.example().kind, QuorlKind::decision) << value;
    }
}

TEST(RowFallback, AnUnknownScoringModeIsBinary) {
    ForeignFile file;
    EXPECT_EQ(file.run().scoringMode, ScoringMode::binary);
    file.set("runs", "scoring_mode", "'stars'");
    EXPECT_EQ(file.run().scoringMode, ScoringMode::binary);
    file.set("runs", "scoring_mode", "'scale'");
    EXPECT_EQ(file.run().scoringMode, ScoringMode::scale);
}

TEST(RowFallback, AnUnknownOriginOfARunIsTheApp) {
    ForeignFile file;
    EXPECT_EQ(file.run().origin, RunOrigin::app);
    file.set("runs", "origin", "'import'");
    EXPECT_EQ(file.run().origin, RunOrigin::app);
    file.set("runs", "origin", "'api'");
    EXPECT_EQ(file.run().origin, RunOrigin::api);
}

TEST(RowFallback, AnUnknownSourceOfABatchIsTheAPI) {
    ForeignFile file;
    EXPECT_EQ(file.batch().source, RunOrigin::api);
    file.set("batches", "source", "'import'");
    EXPECT_EQ(file.batch().source, RunOrigin::api);
    file.set("batches", "source", "'app'");
    EXPECT_EQ(file.batch().source, RunOrigin::app);
}

TEST(RowFallback, AnUnknownStatusOfABatchIsDone) {
    ForeignFile file;
    EXPECT_EQ(file.batch().status, BatchStatus::done);
    file.set("batches", "status", "'paused'");
    EXPECT_EQ(file.batch().status, BatchStatus::done);
    file.set("batches", "status", "'running'");
    EXPECT_EQ(file.batch().status, BatchStatus::running);
}

TEST(RowFallback, AnUnknownStateOfAnAnswerIsFailed) {
    ForeignFile file;
    EXPECT_EQ(file.answer().state, AnswerState::failed);
    file.set("answers", "state", "'lost'");
    EXPECT_EQ(file.answer().state, AnswerState::failed);
    file.set("answers", "state", "'running'");
    EXPECT_EQ(file.answer().state, AnswerState::running);
}

TEST(RowFallback, AbsenceIsNullAndNotZero) {
    ForeignFile file;
    EXPECT_EQ(file.answer().inputTokens, std::nullopt);
    EXPECT_EQ(file.answer().outputTokens, std::nullopt);
    EXPECT_EQ(file.answer().costUSD, std::nullopt);
    EXPECT_EQ(file.answer().errorMessage, std::nullopt);
    EXPECT_EQ(file.answer().accepted, std::nullopt);
    EXPECT_EQ(file.answer().rating, std::nullopt);
    EXPECT_EQ(file.example().rating, std::nullopt);
    EXPECT_EQ(file.example().accepted, std::nullopt);

    for (const char* column : {"input_tokens", "output_tokens", "cost_usd", "accepted", "rating"})
        file.set("answers", column, "0");
    file.set("answers", "error", "''");
    file.set("dataset", "rating", "0");
    file.set("dataset", "accepted", "0");

    EXPECT_EQ(file.answer().inputTokens, 0);
    EXPECT_EQ(file.answer().outputTokens, 0);
    EXPECT_EQ(file.answer().costUSD, 0.0);
    EXPECT_EQ(file.answer().errorMessage, "");
    EXPECT_EQ(file.answer().accepted, false);
    EXPECT_EQ(file.answer().rating, 0);
    EXPECT_EQ(file.example().rating, 0);
    EXPECT_EQ(file.example().accepted, false);
}

TEST(RowFallback, AnyIntegerButZeroIsTrue) {
    // The last one is zero in its lower half.
    for (const char* value : {"1", "-1", "2", "4294967296"}) {
        ForeignFile file;
        file.set("models", "enabled", value);
        file.set("answers", "tokens_estimated", value);
        file.set("answers", "chosen_correct", value);
        file.set("answers", "accepted", value);
        file.set("dataset", "accepted", value);

        EXPECT_TRUE(file.model().enabled) << value;
        EXPECT_TRUE(file.answer().tokensEstimated) << value;
        EXPECT_TRUE(file.answer().chosenCorrect) << value;
        EXPECT_EQ(file.answer().accepted, true) << value;
        EXPECT_EQ(file.example().accepted, true) << value;
    }
}

TEST(RowFallback, AMissingFlagOrNumberThatMustBeThereIsFalseOrZero) {
    ForeignFile file;

    EXPECT_FALSE(file.model().enabled);
    EXPECT_EQ(file.model().inputPricePerMillion, 0);
    EXPECT_EQ(file.model().maxOutputTokens, 0);
    EXPECT_FALSE(file.answer().chosenCorrect);
    EXPECT_EQ(file.answer().position, 0);
    EXPECT_EQ(file.run().createdAt, dateFromSeconds(0));
}

} // namespace quorl::test
