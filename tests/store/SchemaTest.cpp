#include "store/StoreFile.h"
#include "support/Builders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {

namespace {

using testing::ElementsAre;
using Rows = std::vector<RawLibrary::Row>;

// Name, type, not null, default, place in the primary key.
Rows columns(RawLibrary& raw, const std::string& table) {
    return raw.rows("SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_info('" + table + "')");
}

// The layout of `runs` before it had questions, batches and origins, written by another hand.
constexpr const char* earlyRuns =
    "CREATE TABLE runs (id TEXT PRIMARY KEY, kind TEXT NOT NULL, prompt TEXT NOT NULL, "
    "system_prompt TEXT NOT NULL, category_id TEXT, scoring_mode TEXT NOT NULL, "
    "created_at REAL NOT NULL)";

} // namespace

TEST(Schema, HasTheSixTablesAndTheTwoIndicesAndNothingElse) {
    StoreFile file;

    EXPECT_EQ(file.raw.rows("SELECT type, name, tbl_name FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' "
                            "ORDER BY type, name"),
              (Rows{{"index", "answers_run", "answers"},
                    {"index", "runs_batch", "runs"},
                    {"table", "answers", "answers"},
                    {"table", "batches", "batches"},
                    {"table", "categories", "categories"},
                    {"table", "dataset", "dataset"},
                    {"table", "models", "models"},
                    {"table", "runs", "runs"}}));
    EXPECT_EQ(file.raw.rows("SELECT name FROM pragma_index_info('answers_run')"), (Rows{{"run_id"}}));
    EXPECT_EQ(file.raw.rows("SELECT name FROM pragma_index_info('runs_batch')"), (Rows{{"batch_id"}}));
}

TEST(Schema, MakesTheTablesInTheirOrder) {
    StoreFile file;

    EXPECT_EQ(file.raw.rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid"),
              (Rows{{"categories"}, {"models"}, {"runs"}, {"answers"}, {"dataset"}, {"batches"}}));
}

TEST(Schema, HasTheseColumnsInCategories) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "categories"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                                     {"name", "TEXT", "1", "NULL", "0"},
                                                     {"parent_id", "TEXT", "0", "NULL", "0"},
                                                     {"sort_index", "INTEGER", "1", "NULL", "0"}}));
}

TEST(Schema, HasTheseColumnsInModels) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "models"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                                 {"name", "TEXT", "1", "NULL", "0"},
                                                 {"provider", "TEXT", "1", "NULL", "0"},
                                                 {"model_identifier", "TEXT", "1", "NULL", "0"},
                                                 {"endpoint", "TEXT", "1", "NULL", "0"},
                                                 {"executable_path", "TEXT", "1", "NULL", "0"},
                                                 {"input_price", "REAL", "1", "NULL", "0"},
                                                 {"output_price", "REAL", "1", "NULL", "0"},
                                                 {"max_tokens", "INTEGER", "1", "NULL", "0"},
                                                 {"enabled", "INTEGER", "1", "NULL", "0"},
                                                 {"notes", "TEXT", "1", "NULL", "0"},
                                                 {"sort_index", "INTEGER", "1", "NULL", "0"}}));
}

TEST(Schema, HasTheseColumnsInRuns) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "runs"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                               {"kind", "TEXT", "1", "NULL", "0"},
                                               {"prompt", "TEXT", "1", "NULL", "0"},
                                               {"system_prompt", "TEXT", "1", "NULL", "0"},
                                               {"category_id", "TEXT", "0", "NULL", "0"},
                                               {"scoring_mode", "TEXT", "1", "NULL", "0"},
                                               {"created_at", "REAL", "1", "NULL", "0"},
                                               {"questions_json", "TEXT", "1", "''", "0"},
                                               {"batch_id", "TEXT", "0", "NULL", "0"},
                                               {"origin", "TEXT", "1", "'app'", "0"}}));
}

TEST(Schema, HasTheseColumnsInAnswers) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "answers"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                                  {"run_id", "TEXT", "1", "NULL", "0"},
                                                  {"model_id", "TEXT", "1", "NULL", "0"},
                                                  {"model_name", "TEXT", "1", "NULL", "0"},
                                                  {"provider", "TEXT", "1", "NULL", "0"},
                                                  {"position", "INTEGER", "1", "NULL", "0"},
                                                  {"state", "TEXT", "1", "NULL", "0"},
                                                  {"text", "TEXT", "1", "NULL", "0"},
                                                  {"latency_ms", "INTEGER", "1", "NULL", "0"},
                                                  {"input_tokens", "INTEGER", "0", "NULL", "0"},
                                                  {"output_tokens", "INTEGER", "0", "NULL", "0"},
                                                  {"tokens_estimated", "INTEGER", "1", "NULL", "0"},
                                                  {"cost_usd", "REAL", "0", "NULL", "0"},
                                                  {"error", "TEXT", "0", "NULL", "0"},
                                                  {"chosen_correct", "INTEGER", "1", "NULL", "0"},
                                                  {"accepted", "INTEGER", "0", "NULL", "0"},
                                                  {"rating", "INTEGER", "0", "NULL", "0"},
                                                  {"dataset_id", "TEXT", "0", "NULL", "0"}}));
}

TEST(Schema, HasTheseColumnsInDataset) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "dataset"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                                  {"created_at", "REAL", "1", "NULL", "0"},
                                                  {"category_id", "TEXT", "0", "NULL", "0"},
                                                  {"kind", "TEXT", "1", "NULL", "0"},
                                                  {"prompt", "TEXT", "1", "NULL", "0"},
                                                  {"system_prompt", "TEXT", "1", "NULL", "0"},
                                                  {"completion", "TEXT", "1", "NULL", "0"},
                                                  {"model_name", "TEXT", "1", "NULL", "0"},
                                                  {"provider", "TEXT", "1", "NULL", "0"},
                                                  {"rating", "INTEGER", "0", "NULL", "0"},
                                                  {"accepted", "INTEGER", "0", "NULL", "0"},
                                                  {"answer_id", "TEXT", "1", "NULL", "0"}}));
}

TEST(Schema, HasTheseColumnsInBatches) {
    StoreFile file;

    EXPECT_EQ(columns(file.raw, "batches"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                                  {"name", "TEXT", "1", "NULL", "0"},
                                                  {"source", "TEXT", "1", "NULL", "0"},
                                                  {"kind", "TEXT", "1", "NULL", "0"},
                                                  {"created_at", "REAL", "1", "NULL", "0"},
                                                  {"status", "TEXT", "1", "NULL", "0"}}));
}

TEST(Schema, DeclaresNoForeignKeys) {
    StoreFile file;

    EXPECT_EQ(file.raw.value("SELECT COUNT(*) FROM sqlite_master WHERE sql LIKE '%REFERENCES%'"), "0");
}

TEST(Schema, ForeignKeysThatAnotherHandDeclaresHold) {
    StoreFile file;
    file.store.exec("CREATE TABLE parents (id INTEGER PRIMARY KEY);"
                    "CREATE TABLE children (parent INTEGER REFERENCES parents(id))");

    EXPECT_THROW(file.store.exec("INSERT INTO children VALUES (1)"), StoreError);
}

TEST(Schema, KeepsTheDefaultJournal) {
    StoreFile file;

    EXPECT_EQ(file.raw.value("PRAGMA journal_mode"), "delete");
    EXPECT_EQ(file.raw.value("PRAGMA user_version"), "0");
    EXPECT_EQ(file.raw.value("PRAGMA integrity_check"), "ok");
}

TEST(Schema, OpeningAgainLeavesNoTrace) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    const auto layout = [&] { return RawLibrary(path).rows("SELECT * FROM sqlite_master ORDER BY rowid"); };
    QuorlStore(path).saveModel(makeModel());
    const auto before = layout();
    const auto version = RawLibrary(path).value("PRAGMA schema_version");

    QuorlStore again(path);

    EXPECT_EQ(layout(), before);
    EXPECT_EQ(RawLibrary(path).value("PRAGMA schema_version"), version);
    EXPECT_EQ(again.countModels(), 1);
}

TEST(Schema, BringsAnEarlyLibraryUpToDateWithoutLoss) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    const QuorlRun run = [] {
        QuorlRun early = makeRun();
        early.prompt = "From before.";
        return early;
    }();
    RawLibrary raw(path);
    raw.exec(earlyRuns);
    raw.exec("INSERT INTO runs VALUES ('" + run.id.text() +
             "', 'generation', 'From before.', 'Answer directly.', NULL, 'binary', 1790000000.5)");

    QuorlStore store(path);

    EXPECT_THAT(store.loadRuns(), ElementsAre(run));
    EXPECT_EQ(columns(raw, "runs"), (Rows{{"id", "TEXT", "0", "NULL", "1"},
                                          {"kind", "TEXT", "1", "NULL", "0"},
                                          {"prompt", "TEXT", "1", "NULL", "0"},
                                          {"system_prompt", "TEXT", "1", "NULL", "0"},
                                          {"category_id", "TEXT", "0", "NULL", "0"},
                                          {"scoring_mode", "TEXT", "1", "NULL", "0"},
                                          {"created_at", "REAL", "1", "NULL", "0"},
                                          {"questions_json", "TEXT", "1", "''", "0"},
                                          {"batch_id", "TEXT", "0", "NULL", "0"},
                                          {"origin", "TEXT", "1", "'app'", "0"}}));
    EXPECT_EQ(raw.value("SELECT COUNT(*) FROM sqlite_master WHERE name = 'runs_batch'"), "1");
    EXPECT_EQ(raw.value("PRAGMA integrity_check"), "ok");
}

TEST(Schema, BringsALibraryWithSomeOfTheColumnsUpToDate) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    RawLibrary raw(path);
    raw.exec(earlyRuns);
    raw.exec("ALTER TABLE runs ADD COLUMN questions_json TEXT NOT NULL DEFAULT ''");
    QuorlRun run = makeRun(QuorlKind::decision);
    run.questionsJSON = "[]";
    raw.exec("INSERT INTO runs VALUES ('" + run.id.text() +
             "', 'decision', 'Which way is up?', 'Answer directly.', NULL, 'binary', 1790000000.5, '[]')");

    QuorlStore store(path);

    EXPECT_THAT(store.loadRuns(), ElementsAre(run));
}

TEST(Schema, InMemoryIsTheSameAndDiesWithTheStore) {
    {
        QuorlStore store(":memory:");
        store.saveModel(makeModel());
        EXPECT_EQ(store.countModels(), 1);
    }

    QuorlStore store(":memory:");

    EXPECT_EQ(store.countModels(), 0);
}

} // namespace quorl::test
