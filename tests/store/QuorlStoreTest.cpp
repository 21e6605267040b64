#include "store/StoreFile.h"
#include "support/Builders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace quorl::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Rows = std::vector<RawLibrary::Row>;

// Every field with a value of its own.
ModelAnswer fullAnswer(const UUID& runID) {
    ModelAnswer answer = makeAnswer(runID, 3);
    answer.provider = ProviderKind::zun;
    answer.state = AnswerState::failed;
    answer.inputTokens = -1;
    answer.outputTokens = INT64_MAX;
    answer.tokensEstimated = true;
    answer.costUSD = 0.1;
    answer.errorMessage = "";
    answer.chosenCorrect = true;
    answer.accepted = false;
    answer.rating = 10;
    answer.datasetID = UUID::random();
    return answer;
}

// Every optional field absent.
ModelAnswer bareAnswer(const UUID& runID) {
    ModelAnswer answer = makeAnswer(runID);
    answer.inputTokens.reset();
    answer.outputTokens.reset();
    answer.costUSD.reset();
    return answer;
}

} // namespace

TEST(QuorlStore, KeepsEveryFieldOfAModel) {
    StoreFile file;
    ModelProfile model = makeModel(ProviderKind::amazonBedrock);
    model.executablePath = "/opt/tool";
    model.inputPricePerMillion = 0.042;
    model.maxOutputTokens = INT64_MIN;
    model.enabled = false;
    model.notes = "Ü, ein “Zitat” und 'eins' mehr";

    file.store.saveModel(model);

    EXPECT_THAT(file.store.loadModels(), ElementsAre(model));
    EXPECT_EQ(
        file.raw.rows("SELECT id, provider, input_price, output_price, max_tokens, enabled FROM models"),
        (Rows{{model.id.text(), "amazonBedrock", "0.042", "8.0", "-9223372036854775808", "0"}}));
}

TEST(QuorlStore, SavingAModelTwiceKeepsOnlyTheSecondValues) {
    StoreFile file;
    ModelProfile model = makeModel();
    file.store.saveModel(model);
    ModelProfile second = makeModel(ProviderKind::codex);
    second.id = model.id;
    second.name = "Second";
    second.modelIdentifier = "second-1";
    second.endpoint = "second endpoint";
    second.executablePath = "/second";
    second.inputPricePerMillion = 11;
    second.outputPricePerMillion = 12;
    second.maxOutputTokens = 13;
    second.enabled = false;
    second.notes = "Second notes.";
    second.sortIndex = 14;

    file.store.saveModel(second);

    EXPECT_THAT(file.store.loadModels(), ElementsAre(second));
}

TEST(QuorlStore, ListsModelsBySortIndexThenName) {
    StoreFile file;
    const auto named = [&](const std::string& name, std::int64_t sortIndex) {
        ModelProfile model = makeModel();
        model.name = name;
        model.sortIndex = sortIndex;
        file.store.saveModel(model);
        return model;
    };
    const auto late = named("a", 7);
    const auto zebra = named("zebra", 2);
    const auto ant = named("ant", 2);
    const auto first = named("z", -1);

    EXPECT_THAT(file.store.loadModels(), ElementsAre(first, ant, zebra, late));
}

TEST(QuorlStore, DeletesOnlyTheModelNamed) {
    StoreFile file;
    const ModelProfile kept = makeModel();
    const ModelProfile gone = makeModel();
    file.store.saveModel(kept);
    file.store.saveModel(gone);

    file.store.deleteModel(gone.id);

    EXPECT_THAT(file.store.loadModels(), ElementsAre(kept));
    EXPECT_EQ(file.store.countModels(), 1);
}

TEST(QuorlStore, KeepsCategoriesAndReplacesThemById) {
    StoreFile file;
    Category root = makeCategory("Root");
    Category child = makeCategory("Child", root.id);
    child.sortIndex = 1;
    file.store.saveCategory(root);
    file.store.saveCategory(child);
    root.name = "Renamed";
    root.sortIndex = 5;

    file.store.saveCategory(root);

    EXPECT_THAT(file.store.loadCategories(), ElementsAre(child, root));
    EXPECT_EQ(file.raw.value("SELECT parent_id FROM categories WHERE name = 'Renamed'"), "NULL");

    child.parentID.reset();
    file.store.saveCategory(child);
    EXPECT_THAT(file.store.loadCategories(), ElementsAre(child, root));
}

TEST(QuorlStore, ListsCategoriesBySortIndexThenName) {
    StoreFile file;
    const auto named = [&](const std::string& name, std::int64_t sortIndex) {
        Category category = makeCategory(name);
        category.sortIndex = sortIndex;
        file.store.saveCategory(category);
        return category;
    };
    const auto late = named("a", 7);
    const auto zebra = named("zebra", 2);
    const auto ant = named("ant", 2);

    EXPECT_THAT(file.store.loadCategories(), ElementsAre(ant, zebra, late));
}

TEST(QuorlStore, CountsTheChildrenOfACategory) {
    StoreFile file;
    const Category root = makeCategory("Root");
    file.store.saveCategory(root);
    EXPECT_EQ(file.store.countChildren(root.id), 0);
    file.store.saveCategory(makeCategory("One", root.id));
    file.store.saveCategory(makeCategory("Two", root.id));

    EXPECT_EQ(file.store.countChildren(root.id), 2);
    file.store.deleteCategory(root.id);
    EXPECT_EQ(file.store.loadCategories().size(), 2u);
}

TEST(QuorlStore, ACategoryIsInUseByARunOrByADatasetRowAlone) {
    StoreFile file;
    const UUID byRun = UUID::random();
    const UUID byExample = UUID::random();
    QuorlRun run = makeRun();
    run.categoryID = byRun;
    DatasetExample example = makeExample();
    example.categoryID = byExample;
    file.store.insertRun(run);
    file.store.insertDataset(example);

    EXPECT_TRUE(file.store.categoryInUse(byRun));
    EXPECT_TRUE(file.store.categoryInUse(byExample));
    EXPECT_FALSE(file.store.categoryInUse(UUID::random()));
}

TEST(QuorlStore, KeepsEveryFieldOfARun) {
    StoreFile file;
    QuorlRun run = makeRun(QuorlKind::decision);
    run.categoryID = UUID::random();
    run.scoringMode = ScoringMode::scale;
    run.createdAt = dateFromSeconds(1'790'000'000.123456);
    run.questionsJSON = R"([{"name":"a/b"}])";
    run.batchID = UUID::random();
    run.origin = RunOrigin::api;

    file.store.insertRun(run);

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(run));
    EXPECT_EQ(file.raw.rows("SELECT kind, scoring_mode, category_id, batch_id, origin FROM runs"),
              (Rows{{"decision", "scale", run.categoryID->text(), run.batchID->text(), "api"}}));
    EXPECT_EQ(file.raw.value("SELECT typeof(created_at) FROM runs"), "real");
}

TEST(QuorlStore, ListsRunsBatchesAndExamplesNewestFirst) {
    StoreFile file;
    QuorlRun runs[2] = {makeRun(), makeRun()};
    QuorlBatch batches[2] = {makeBatch(), makeBatch()};
    DatasetExample examples[2] = {makeExample(), makeExample()};
    runs[1].createdAt += std::chrono::milliseconds(1);
    batches[1].createdAt += std::chrono::milliseconds(1);
    examples[1].createdAt += std::chrono::milliseconds(1);
    for (int i = 0; i < 2; ++i) {
        file.store.insertRun(runs[i]);
        file.store.saveBatch(batches[i]);
        file.store.insertDataset(examples[i]);
    }

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(runs[1], runs[0]));
    EXPECT_THAT(file.store.loadBatches(), ElementsAre(batches[1], batches[0]));
    EXPECT_THAT(file.store.loadDataset(), ElementsAre(examples[1], examples[0]));
}

TEST(QuorlStore, ARunCannotBeInsertedTwice) {
    StoreFile file;
    const QuorlRun run = makeRun();
    file.store.insertRun(run);

    EXPECT_EQ(errorOf([&] { file.store.insertRun(run); }), "UNIQUE constraint failed: runs.id");
}

TEST(QuorlStore, ADateThatIsNoNumberIsRefused) {
    StoreFile file;
    QuorlRun run = makeRun();
    run.createdAt = dateFromSeconds(std::numeric_limits<double>::quiet_NaN());

    EXPECT_EQ(errorOf([&] { file.store.insertRun(run); }), "NOT NULL constraint failed: runs.created_at");
}

TEST(QuorlStore, KeepsEveryFieldOfAnAnswer) {
    StoreFile file;
    const ModelAnswer full = fullAnswer(UUID::random());
    const ModelAnswer bare = bareAnswer(UUID::random());

    file.store.insertAnswer(full);
    file.store.insertAnswer(bare);

    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(bare, full));
    EXPECT_EQ(file.raw.rows("SELECT input_tokens, output_tokens, tokens_estimated, cost_usd, error, "
                            "chosen_correct, accepted, rating, dataset_id FROM answers ORDER BY position"),
              (Rows{{"NULL", "NULL", "0", "NULL", "NULL", "0", "NULL", "NULL", "NULL"},
                    {"-1", "9223372036854775807", "1", "0.1", "", "1", "0", "10", full.datasetID->text()}}));
}

TEST(QuorlStore, RunsOfOneCallAreKeptWholeWithTheirAnswers) {
    StoreFile file;
    QuorlRun first = makeRun(QuorlKind::decision);
    first.categoryID = UUID::random();
    first.questionsJSON = "[]";
    first.batchID = UUID::random();
    first.createdAt += std::chrono::seconds(1);
    const QuorlRun second = makeRun();
    const std::vector answers{bareAnswer(first.id), fullAnswer(first.id), bareAnswer(second.id)};

    file.store.insertRuns(
        std::vector<AnsweredRun>{{first, {answers[0], answers[1]}}, {second, {answers[2]}}});

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(first, second));
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(answers[0], answers[2], answers[1]));
}

TEST(QuorlStore, RunsOfOneCallAreKeptUpToTheRowThatFails) {
    StoreFile file;
    const QuorlRun first = makeRun();
    const QuorlRun second = makeRun();
    const ModelAnswer answer = makeAnswer(first.id);

    EXPECT_EQ(errorOf([&] {
                  file.store.insertRuns(std::vector<AnsweredRun>{
                      {first, {answer, answer, makeAnswer(first.id)}}, {second, {makeAnswer(second.id)}}});
              }),
              "UNIQUE constraint failed: answers.id");

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(first));
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(answer));
}

TEST(QuorlStore, ListsAnswersOfAllRunsByPositionAndThenAsTheyCame) {
    StoreFile file;
    const UUID one = UUID::random();
    const UUID other = UUID::random();
    const auto second = makeAnswer(one, 1);
    const auto first = makeAnswer(one, 0);
    const auto alsoFirst = makeAnswer(other, 0);
    file.store.insertAnswer(second);
    file.store.insertAnswer(first);
    file.store.insertAnswer(alsoFirst);

    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(first, alsoFirst, second));
}

TEST(QuorlStore, TheOutcomeIsWrittenAndNothingElse) {
    StoreFile file;
    const ModelAnswer before = bareAnswer(UUID::random());
    file.store.insertAnswer(before);
    ModelAnswer after = fullAnswer(UUID::random());
    after.id = before.id;
    after.text = "Another way.";
    after.latencyMS = 7;

    file.store.updateOutcome(after);

    ModelAnswer expected = before;
    expected.state = after.state;
    expected.text = after.text;
    expected.latencyMS = after.latencyMS;
    expected.inputTokens = after.inputTokens;
    expected.outputTokens = after.outputTokens;
    expected.tokensEstimated = after.tokensEstimated;
    expected.costUSD = after.costUSD;
    expected.errorMessage = after.errorMessage;
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(expected));
}

TEST(QuorlStore, TheJudgmentIsWrittenAndNothingElse) {
    StoreFile file;
    const ModelAnswer before = bareAnswer(UUID::random());
    file.store.insertAnswer(before);
    ModelAnswer after = fullAnswer(UUID::random());
    after.id = before.id;

    file.store.updateJudgment(after);

    ModelAnswer expected = before;
    expected.chosenCorrect = after.chosenCorrect;
    expected.accepted = after.accepted;
    expected.rating = after.rating;
    expected.datasetID = after.datasetID;
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(expected));
}

TEST(QuorlStore, ACostThatIsNoNumberIsKeptAsUnknown) {
    StoreFile file;
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.costUSD = std::numeric_limits<double>::quiet_NaN();

    file.store.insertAnswer(answer);

    EXPECT_EQ(file.store.loadAnswers().at(0).costUSD, std::nullopt);
}

TEST(QuorlStore, ATextEndsAtItsFirstNUL) {
    StoreFile file;
    ModelAnswer answer = makeAnswer(UUID::random());
    answer.text = std::string("before\0after", 12);
    file.store.insertAnswer(answer);
    EXPECT_EQ(file.raw.value("SELECT CAST(text AS BLOB) = x'6265666F7265' FROM answers"), "1");

    file.raw.exec("UPDATE answers SET text = CAST(x'610062' AS TEXT)");

    EXPECT_EQ(file.store.loadAnswers().at(0).text, "a");
}

TEST(QuorlStore, DeletingARunTakesItsAnswersAndLeavesItsExamples) {
    StoreFile file;
    const QuorlRun gone = makeRun();
    const QuorlRun kept = makeRun();
    const ModelAnswer goneAnswer = makeAnswer(gone.id);
    const ModelAnswer keptAnswer = makeAnswer(kept.id);
    const DatasetExample example = makeExample(goneAnswer.id);
    for (const QuorlRun& run : {gone, kept})
        file.store.insertRun(run);
    for (const ModelAnswer& answer : {goneAnswer, keptAnswer})
        file.store.insertAnswer(answer);
    file.store.insertDataset(example);

    file.store.deleteRun(gone.id);

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(kept));
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(keptAnswer));
    EXPECT_THAT(file.store.loadDataset(), ElementsAre(example));
}

TEST(QuorlStore, KeepsEveryFieldOfAnExample) {
    StoreFile file;
    DatasetExample example = makeExample();
    example.categoryID = UUID::random();
    example.provider = ProviderKind::nuvel;
    example.rating = 4;
    example.accepted = true;
    example.createdAt = dateFromSeconds(0.25);

    file.store.insertDataset(example);

    EXPECT_THAT(file.store.loadDataset(), ElementsAre(example));
}

TEST(QuorlStore, AnExamplesJudgmentIsWrittenAndNothingElse) {
    StoreFile file;
    DatasetExample example = makeExample();
    file.store.insertDataset(example);

    file.store.updateDatasetJudgment(example.id, 9, false);

    example.rating = 9;
    example.accepted = false;
    EXPECT_THAT(file.store.loadDataset(), ElementsAre(example));
}

TEST(QuorlStore, AnExamplesCompletionAndJudgmentAreWrittenAndNothingElse) {
    StoreFile file;
    DatasetExample example = makeExample();
    example.rating = 2;
    file.store.insertDataset(example);

    file.store.updateDatasetExample(example.id, "Mended.", std::nullopt, true);

    example.completion = "Mended.";
    example.rating.reset();
    example.accepted = true;
    EXPECT_THAT(file.store.loadDataset(), ElementsAre(example));
}

TEST(QuorlStore, DeletesOnlyTheExampleNamed) {
    StoreFile file;
    const DatasetExample kept = makeExample();
    const DatasetExample gone = makeExample();
    file.store.insertDataset(kept);
    file.store.insertDataset(gone);

    file.store.deleteExample(gone.id);

    EXPECT_THAT(file.store.loadDataset(), ElementsAre(kept));
}

TEST(QuorlStore, KeepsEveryFieldOfABatchAndChangesItsStatusAlone) {
    StoreFile file;
    QuorlBatch batch = makeBatch();
    batch.source = RunOrigin::app;
    file.store.saveBatch(batch);
    EXPECT_THAT(file.store.loadBatches(), ElementsAre(batch));

    file.store.setBatchStatus(batch.id, BatchStatus::done);

    batch.status = BatchStatus::done;
    EXPECT_THAT(file.store.loadBatches(), ElementsAre(batch));
}

TEST(QuorlStore, DeletingABatchTakesItsRunsAndTheirAnswers) {
    StoreFile file;
    const QuorlBatch batch = makeBatch();
    QuorlRun inBatch = makeRun();
    inBatch.batchID = batch.id;
    const QuorlRun alone = makeRun();
    const ModelAnswer kept = makeAnswer(alone.id);
    file.store.saveBatch(batch);
    file.store.insertRun(inBatch);
    file.store.insertRun(alone);
    file.store.insertAnswer(makeAnswer(inBatch.id));
    file.store.insertAnswer(kept);

    file.store.deleteBatch(batch.id);

    EXPECT_THAT(file.store.loadBatches(), IsEmpty());
    EXPECT_THAT(file.store.loadRuns(), ElementsAre(alone));
    EXPECT_THAT(file.store.loadAnswers(), ElementsAre(kept));
}

TEST(QuorlStore, ABatchsRunWithoutAReadableIdStays) {
    StoreFile file;
    const QuorlBatch batch = makeBatch();
    QuorlRun run = makeRun();
    run.batchID = batch.id;
    file.store.saveBatch(batch);
    file.store.insertRun(run);
    file.raw.exec("UPDATE runs SET id = 'unreadable'");

    file.store.deleteBatch(batch.id);

    EXPECT_EQ(file.raw.value("SELECT COUNT(*) FROM batches"), "0");
    EXPECT_EQ(file.raw.value("SELECT COUNT(*) FROM runs"), "1");
}

TEST(QuorlStore, ACommittedTransactionStaysAndARolledBackOneLeavesNothing) {
    StoreFile file;
    const DatasetExample kept = makeExample();
    file.store.exec("BEGIN IMMEDIATE");
    file.store.insertDataset(kept);
    file.store.exec("COMMIT");

    file.store.exec("BEGIN IMMEDIATE");
    file.store.insertDataset(makeExample());
    file.store.exec("ROLLBACK");

    EXPECT_THAT(file.store.loadDataset(), ElementsAre(kept));
}

TEST(QuorlStore, ALibraryOfAllTablesIsIntact) {
    StoreFile file;
    file.store.saveModel(makeModel());
    file.store.saveCategory(makeCategory());
    const QuorlRun run = makeRun();
    file.store.insertRun(run);
    file.store.insertAnswer(makeAnswer(run.id));
    file.store.insertDataset(makeExample());
    file.store.saveBatch(makeBatch());

    EXPECT_EQ(file.raw.value("PRAGMA integrity_check"), "ok");
}

} // namespace quorl::test
