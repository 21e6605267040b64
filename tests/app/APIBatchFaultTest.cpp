// Every statement of a batch that is made fails in turn; each time the file and the memory must be as if the
// batch had never been posted, and no model may have been asked.
#include "app/BatchHarness.h"
#include "store/RawLibrary.h"
#include "store/StatementLog.h"
#include "support/FullDisk.h"

#include <algorithm>

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class APIBatchFaultTest : public testing::Test {
protected:
    void SetUp() override {
        harness.addReadyModel("first", 0);
        harness.addReadyModel("second", 1);
        harness.start();
        model().destination = Screen::models;
        StatementLog::lines().clear();
    }

    AppModel& model() { return harness.model(); }

    RawLibrary& raw() {
        if (!rawLibrary)
            rawLibrary = std::make_unique<RawLibrary>(harness.libraryPath());
        return *rawLibrary;
    }

    // Which write of which row fails, and how.
    void obstruct(const std::string& write, const std::string& raise = "ABORT, 'held fast'") {
        harness.file().exec(
            ("CREATE TRIGGER obstacle BEFORE " + write + " BEGIN SELECT RAISE(" + raise + "); END").c_str());
        StatementLog::lines().clear();
    }

    void expectRefusal(const HTTPResponse& response, const std::string& reason) {
        EXPECT_EQ(response, makeErrorReply(500, "Couldn't save the batch. " + reason));
        EXPECT_EQ(*model().destination, Destination(Screen::models));
        EXPECT_FALSE(model().selectedBatchID->has_value());
        EXPECT_FALSE(model().activeRunID->has_value());
        EXPECT_EQ(model().alertMessage->value_or(""), "");
        EXPECT_EQ(model().library.runCount(), 0u);
        EXPECT_TRUE(model().library.batches().empty());
        for (const char* table : {"batches", "runs", "answers"})
            EXPECT_EQ(raw().value("SELECT count(*) FROM " + std::string(table)), "0") << table;
        EXPECT_EQ(raw().value("PRAGMA integrity_check"), "ok");
        harness.loop.runPosted();
        EXPECT_THAT(harness.endpoint.requests(), IsEmpty());
    }

    // With the obstacle gone: no transaction may be left open, and nothing may have been queued.
    void expectTheNextBatchSucceeds() {
        const UUID batch = harness.postBatch(generation({"c"}));
        ASSERT_TRUE(harness.runUntilDone(batch));
        EXPECT_EQ(harness.file().loadBatches().size(), 1u);
        EXPECT_EQ(harness.file().loadRuns().size(), 1u);
        EXPECT_EQ(harness.endpoint.requests().size(), 2u);
    }

    StatementLog log;
    BatchHarness harness;
    std::unique_ptr<RawLibrary> rawLibrary;
};

TEST_F(APIBatchFaultTest, ABatchIsOneTransactionThatIsReadBackAfterwards) {
    harness.postBatch(generation({"a", "b"}));

    auto lines = StatementLog::lines();
    ASSERT_GT(lines.size(), 9u);
    const bool readsBack = std::ranges::all_of(lines.begin() + 9, lines.end(), [](const std::string& line) {
        return line.starts_with("SELECT") || line.starts_with("PRAGMA");
    });
    EXPECT_TRUE(readsBack) << testing::PrintToString(lines);
    lines.resize(9);
    EXPECT_THAT(lines, ElementsAre("BEGIN IMMEDIATE", "INSERT INTO", "INSERT INTO", "INSERT INTO",
                                   "INSERT INTO", "INSERT INTO", "INSERT INTO", "INSERT INTO", "COMMIT"));
}

TEST_F(APIBatchFaultTest, CategoriesStandAheadOfTheTransaction) {
    Json::Value body = generation({"a"});
    body["category"] = "Support";
    body["subcategory"] = "Refunds";
    obstruct("INSERT ON batches");

    const HTTPResponse response = harness.post(body);

    EXPECT_THAT(StatementLog::lines(),
                ElementsAre("INSERT INTO", "INSERT INTO", "BEGIN IMMEDIATE", "INSERT INTO", "ROLLBACK"));
    expectRefusal(response, "held fast");
    EXPECT_EQ(harness.file().loadCategories().size(), 2u);
    EXPECT_EQ(model().library.categories().size(), 2u);
}

// Nothing was begun, so there is nothing to roll back. Takes the two seconds that SQLite waits.
TEST_F(APIBatchFaultTest, AFileLockedByAnotherLeavesNothingAndGetsNoRollback) {
    raw().exec("BEGIN IMMEDIATE");
    StatementLog::lines().clear();

    const HTTPResponse response = harness.post(generation({"a", "b"}));

    EXPECT_THAT(StatementLog::lines(), ElementsAre("BEGIN IMMEDIATE"));
    raw().exec("ROLLBACK");
    expectRefusal(response, "database is locked");
    expectTheNextBatchSucceeds();
}

struct Obstacle {
    const char* name;
    const char* write;
    std::size_t insertsTried;
};

class RefusedRowTest : public APIBatchFaultTest, public testing::WithParamInterface<Obstacle> {};

TEST_P(RefusedRowTest, TakesTheWholeBatchWithIt) {
    obstruct(GetParam().write);

    const HTTPResponse response = harness.post(generation({"a", "b"}));

    std::vector<std::string> expected(GetParam().insertsTried, "INSERT INTO");
    expected.insert(expected.begin(), "BEGIN IMMEDIATE");
    expected.push_back("ROLLBACK");
    EXPECT_EQ(StatementLog::lines(), expected);
    expectRefusal(response, "held fast");
    harness.file().exec("DROP TRIGGER obstacle");
    expectTheNextBatchSucceeds();
}

INSTANTIATE_TEST_SUITE_P(
    , RefusedRowTest,
    testing::Values(Obstacle{"Batch", "INSERT ON batches", 1},
                    Obstacle{"FirstRun", "INSERT ON runs WHEN NEW.prompt = 'a'", 2},
                    Obstacle{"FirstAnswer", "INSERT ON answers", 3},
                    Obstacle{"SecondAnswer", "INSERT ON answers WHEN NEW.position = 1", 4},
                    Obstacle{"SecondRun", "INSERT ON runs WHEN NEW.prompt = 'b'", 5},
                    Obstacle{"ThirdAnswer", "INSERT ON answers WHEN (SELECT count(*) FROM answers) = 2", 6},
                    Obstacle{"LastAnswer", "INSERT ON answers WHEN (SELECT count(*) FROM answers) = 3", 7}),
    [](const auto& tested) { return tested.param.name; });

// SQLite has rolled back by itself; that the ROLLBACK then fails is nobody's business.
TEST_F(APIBatchFaultTest, TheFirstErrorIsToldNotTheRollbacks) {
    obstruct("INSERT ON answers", "ROLLBACK, 'gone back'");

    const HTTPResponse response = harness.post(generation({"a", "b"}));

    EXPECT_EQ(StatementLog::lines().back(), "ROLLBACK");
    expectRefusal(response, "gone back");
    harness.file().exec("DROP TRIGGER obstacle");
    expectTheNextBatchSucceeds();
}

TEST_F(APIBatchFaultTest, ACommitThatIsRefusedLeavesNothing) {
    harness.file().exec("CREATE TABLE parent (id INTEGER PRIMARY KEY);"
                        "CREATE TABLE child (parent INTEGER REFERENCES parent DEFERRABLE INITIALLY DEFERRED);"
                        "CREATE TRIGGER obstacle AFTER INSERT ON runs BEGIN INSERT INTO child VALUES (1); "
                        "END");
    StatementLog::lines().clear();

    const HTTPResponse response = harness.post(generation({"a"}));

    const auto lines = StatementLog::lines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "COMMIT");
    EXPECT_EQ(lines.back(), "ROLLBACK");
    expectRefusal(response, "FOREIGN KEY constraint failed");
    harness.file().exec("DROP TRIGGER obstacle");
    expectTheNextBatchSucceeds();
}

TEST_F(APIBatchFaultTest, ADiskThatIsFullAtTheCommitLeavesNothing) {
    HTTPResponse response;
    {
        const FullDisk full(harness.libraryPath());
        response = harness.post(generation({std::string(300'000, 'x')}));
    }

    EXPECT_EQ(StatementLog::lines().back(), "ROLLBACK");
    expectRefusal(response, "disk I/O error");
    expectTheNextBatchSucceeds();
}

// More than SQLite keeps in memory, so that it writes before the commit.
TEST_F(APIBatchFaultTest, ADiskThatIsFullAtAWriteLeavesNothing) {
    HTTPResponse response;
    {
        const FullDisk full(harness.libraryPath());
        response = harness.post(generation(std::vector<std::string>(10, std::string(1'000'000, 'x'))));
    }

    EXPECT_THAT(StatementLog::lines(), testing::Not(testing::Contains("COMMIT")));
    EXPECT_EQ(StatementLog::lines().back(), "ROLLBACK");
    expectRefusal(response, "disk I/O error");
    expectTheNextBatchSucceeds();
}

// Somebody else's trigger has taken the runs away; the answers are asked for all the same.
TEST_F(APIBatchFaultTest, ABatchWithoutRunsShowsNone) {
    harness.file().exec("CREATE TRIGGER strip AFTER INSERT ON answers BEGIN DELETE FROM runs; END");

    const HTTPResponse response =
        model().createAPIBatch(generation({"a"}).dump(), RunOrigin::app, std::nullopt);

    EXPECT_EQ(response.status, 202);
    EXPECT_EQ(Json::parse(response.body)->at("items"), 0);
    EXPECT_EQ(**model().activeBatchID, BatchHarness::idOf(response));
    EXPECT_FALSE(model().activeRunID->has_value());
    EXPECT_TRUE(harness.runUntilAnswered());
}

} // namespace
