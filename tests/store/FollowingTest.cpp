#include "store/StoreFile.h"
#include "support/Builders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace quorl::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A file whose log has just been started.
struct FollowedFile : StoreFile {
    StoreMark mark = store.startLog(*store.snapshot());

    std::optional<TouchedRows> take() { return store.takeTouched(mark, *store.snapshot()); }
};

} // namespace

TEST(Following, ASnapshotKeepsOthersFromCommitting) {
    StoreFile file;
    {
        const auto snapshot = file.store.snapshot();
        ASSERT_TRUE(snapshot);

        EXPECT_EQ(file.raw.attempt("INSERT INTO categories VALUES ('x', 'x', NULL, 1)"), SQLITE_BUSY);
    }

    EXPECT_EQ(file.raw.attempt("INSERT INTO categories VALUES ('x', 'x', NULL, 1)"), SQLITE_OK);
}

TEST(Following, AFileThatIsHeldHasNoSnapshot) {
    StoreFile file;
    file.raw.exec("BEGIN EXCLUSIVE");

    EXPECT_FALSE(file.store.snapshot());
}

TEST(Following, NamesTheRowsThatWereWritten) {
    FollowedFile file;
    const QuorlRun run = makeRun();
    const QuorlRun deleted = makeRun();
    const ModelAnswer answer = makeAnswer(run.id);
    const QuorlBatch batch = makeBatch();
    const DatasetExample example = makeExample();
    file.store.insertRun(run);
    file.store.insertAnswer(answer);
    file.store.updateOutcome(answer);
    file.store.deleteRun(deleted.id);
    file.store.saveBatch(batch);
    file.store.insertDataset(example);

    const auto touched = file.take();

    ASSERT_TRUE(touched);
    EXPECT_THAT(touched->runs, UnorderedElementsAre(run.id, deleted.id));
    EXPECT_THAT(touched->answersOfRuns, UnorderedElementsAre(run.id, deleted.id));
    EXPECT_THAT(touched->answers, UnorderedElementsAre(answer.id));
    EXPECT_THAT(touched->batches, UnorderedElementsAre(batch.id));
    EXPECT_THAT(touched->examples, UnorderedElementsAre(example.id));
    EXPECT_FALSE(touched->models);
    EXPECT_FALSE(touched->categories);
}

TEST(Following, NamesTheTablesThatAreReadWhole) {
    FollowedFile file;
    file.store.saveModel(makeModel());
    EXPECT_TRUE(file.take()->models);

    file.store.deleteModel(UUID::random());
    EXPECT_TRUE(file.take()->models);

    file.store.saveCategory(makeCategory());
    EXPECT_TRUE(file.take()->categories);

    file.store.deleteCategory(UUID::random());
    EXPECT_TRUE(file.take()->categories);
}

TEST(Following, NamesRowsWhoseWriteFailed) {
    FollowedFile file;
    QuorlRun run = makeRun();
    run.createdAt = dateFromSeconds(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(errorOf([&] { file.store.insertRun(run); }), "");

    EXPECT_THAT(file.take()->runs, UnorderedElementsAre(run.id));
}

TEST(Following, NamesRowsThatARollbackTookBack) {
    FollowedFile file;
    const QuorlRun run = makeRun();
    file.store.exec("BEGIN IMMEDIATE");
    file.store.insertRun(run);
    file.store.exec("ROLLBACK");

    EXPECT_THAT(file.take()->runs, UnorderedElementsAre(run.id));
}

TEST(Following, NamesTheRunsThatABatchTookWithIt) {
    FollowedFile file;
    const QuorlBatch batch = makeBatch();
    QuorlRun run = makeRun();
    run.batchID = batch.id;
    file.store.insertRun(run);
    (void)file.take();

    file.store.deleteBatch(batch.id);

    EXPECT_THAT(file.take()->runs, UnorderedElementsAre(run.id));
}

TEST(Following, TakingEmptiesTheLog) {
    FollowedFile file;
    file.store.insertRun(makeRun());
    (void)file.take();

    EXPECT_THAT(file.take()->runs, IsEmpty());
}

TEST(Following, CannotTellWhatAnotherConnectionWrote) {
    FollowedFile file;
    file.raw.exec("INSERT INTO categories VALUES ('x', 'x', NULL, 1)");

    EXPECT_FALSE(file.take());
}

TEST(Following, CannotTellWhatAScriptWrote) {
    FollowedFile file;
    file.store.exec("DELETE FROM runs");

    EXPECT_FALSE(file.take());
}

TEST(Following, CannotTellAnythingAboutAnOlderLog) {
    FollowedFile file;
    (void)file.store.startLog(*file.store.snapshot());

    EXPECT_FALSE(file.take());
}

TEST(Following, CannotTellAnythingAboutTheLogOfAnotherStore) {
    FollowedFile file;
    QuorlStore other(file.path);
    (void)other.startLog(*other.snapshot());

    EXPECT_FALSE(other.takeTouched(file.mark, *other.snapshot()));
}

TEST(Following, CannotTellInsideATransactionNorOfOneThatTheLogStartedIn) {
    FollowedFile file;
    file.store.exec("BEGIN IMMEDIATE");
    EXPECT_FALSE(file.take());
    file.mark = file.store.startLog(*file.store.snapshot());
    file.store.exec("ROLLBACK");

    EXPECT_FALSE(file.take());
}

TEST(Following, CannotTellWhereAWriteReachesFurther) {
    for (const char* script : {
             "CREATE TRIGGER further AFTER INSERT ON runs BEGIN DELETE FROM models; END",
             "CREATE TABLE child (run TEXT REFERENCES runs(id) ON DELETE CASCADE)",
             "CREATE TABLE other (id TEXT PRIMARY KEY ON CONFLICT REPLACE)",
             "CREATE TABLE other (id TEXT PRIMARY KEY COLLATE NOCASE)",
             "CREATE TABLE other (id TEXT PRIMARY KEY) WITHOUT ROWID",
             "CREATE VIEW other AS SELECT id FROM runs",
         }) {
        StoreFile file;
        file.raw.exec(script);
        const auto mark = file.store.startLog(*file.store.snapshot());

        EXPECT_FALSE(file.store.takeTouched(mark, *file.store.snapshot())) << script;
    }
}

TEST(Following, LoadsTheNamedRowsThatExistWithTheirNumbers) {
    StoreFile file;
    const QuorlRun first = makeRun();
    const QuorlRun second = makeRun();
    const QuorlBatch batch = makeBatch();
    const DatasetExample example = makeExample();
    file.store.insertRun(first);
    file.store.insertRun(second);
    file.store.saveBatch(batch);
    file.store.insertDataset(example);
    Reading reading;

    const auto runs = file.store.loadRuns({second.id, UUID::random()}, reading);
    const auto batches = file.store.loadBatches({batch.id}, reading);
    const auto examples = file.store.loadDataset({example.id}, reading);

    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].record, second);
    EXPECT_EQ(runs[0].rowID, 2);
    EXPECT_EQ(file.store.runRowID(first.id), 1);
    EXPECT_EQ(file.store.runRowID(UUID::random()), 0);
    EXPECT_EQ(batches.at(0).record, batch);
    EXPECT_EQ(batches.at(0).rowID, file.store.batchRowID(batch.id));
    EXPECT_EQ(examples.at(0).record, example);
    EXPECT_EQ(examples.at(0).rowID, file.store.exampleRowID(example.id));
    EXPECT_TRUE(reading.isRepeatable);
}

TEST(Following, LoadsTheAnswersOfRunsInTheOrderOfAllAnswers) {
    StoreFile file;
    const UUID runID = UUID::random();
    const auto later = makeAnswer(runID, 1);
    const auto first = makeAnswer(runID, 0);
    const auto second = makeAnswer(runID, 0);
    for (const auto& answer : {later, first, second, makeAnswer(UUID::random())})
        file.store.insertAnswer(answer);
    Reading reading;
    std::vector<ModelAnswer> answers;

    file.store.forEachRunsAnswers(
        {runID}, [&](const UUID&, std::vector<ModelAnswer> ofRun) { answers = std::move(ofRun); }, reading);

    EXPECT_THAT(answers, ElementsAre(first, second, later));
}

TEST(Following, CountsTheAnswersOfEachRun) {
    StoreFile file;
    const UUID one = UUID::random();
    const UUID other = UUID::random();
    for (const UUID& runID : {one, other, one})
        file.store.insertAnswer(makeAnswer(runID));
    std::vector<std::pair<UUID, std::size_t>> counts;

    file.store.forEachAnswerCount(
        [&](const UUID& runID, std::size_t count) { counts.emplace_back(runID, count); });

    EXPECT_THAT(counts, UnorderedElementsAre(std::pair(one, 2u), std::pair(other, 1u)));
}

TEST(Following, AReadingIsRepeatableOfRowsThatStandAsWeWriteThem) {
    StoreFile file;
    file.store.saveModel(makeModel());
    file.store.insertRun(makeRun());
    file.store.insertAnswer(makeAnswer(UUID::random()));
    file.store.insertDataset(makeExample());
    file.store.saveBatch(makeBatch());
    Reading reading;

    (void)file.store.loadModels(&reading);
    (void)file.store.loadRuns(&reading);
    (void)file.store.loadAnswers(&reading);
    (void)file.store.loadDataset(&reading);
    (void)file.store.loadBatches(&reading);

    EXPECT_TRUE(reading.isRepeatable);
}

TEST(Following, AReadingIsNotRepeatableWhereIdsAreNoneOrStandOtherwise) {
    for (const char* script : {
             "UPDATE answers SET id = 'x'",
             "UPDATE answers SET id = lower(id)",
             "UPDATE answers SET id = CAST(id AS BLOB)",
             "UPDATE answers SET id = id || x'00'",
             "UPDATE answers SET run_id = lower(run_id)",
             "UPDATE answers SET model_id = 'x'",
         }) {
        StoreFile file;
        // With letters in it, or its lower case would be the same.
        auto answer = makeAnswer(*UUID::parse("AAAAAAAA-AAAA-4AAA-8AAA-AAAAAAAAAAAA"));
        answer.id = *UUID::parse("BBBBBBBB-AAAA-4AAA-8AAA-AAAAAAAAAAAA");
        file.store.insertAnswer(answer);
        file.raw.exec(script);
        Reading reading;

        (void)file.store.loadAnswers(&reading);

        EXPECT_FALSE(reading.isRepeatable) << script;
    }
}

TEST(Following, AReadingIsNotRepeatableWhereADateIsNoNumber) {
    StoreFile file;
    file.store.insertRun(makeRun());
    file.raw.exec("UPDATE runs SET created_at = 'yesterday'");
    Reading reading;

    (void)file.store.loadRuns(&reading);

    EXPECT_FALSE(reading.isRepeatable);
}

} // namespace quorl::test
