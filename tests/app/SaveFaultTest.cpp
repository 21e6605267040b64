// Every statement of the two dataset saves fails in turn; each time the file and the memory must be as if the
// save had never been asked for.
#include "app/Harness.h"
#include "store/RawLibrary.h"
#include "store/StatementLog.h"
#include "support/FullDisk.h"

using namespace quorl;
using namespace quorl::test;
using testing::ElementsAre;

namespace {

// Whether the answer to be saved has its example already.
enum class Save { first, again };

class SaveFaultTest : public testing::TestWithParam<Save> {
protected:
    void SetUp() override {
        harness.addReadyModel("model");
        answer.rating = 7;
        harness.file().insertRun(run);
        harness.file().insertAnswer(answer);
        harness.file().updateJudgment(answer);
        harness.start();
        if (GetParam() == Save::again)
            model().saveToDataset(answer.id, std::nullopt, std::nullopt, std::nullopt);
        remember();
        StatementLog::lines().clear();
    }

    AppModel& model() { return harness.model(); }

    void remember() {
        answerBefore = *model().library.findAnswer(answer.id);
        datasetBefore = datasetInMemory();
    }

    std::vector<DatasetExample> datasetInMemory() {
        return {model().library.dataset().begin(), model().library.dataset().end()};
    }

    void save(const std::string& completion = "Corrected.") {
        model().saveToDataset(answer.id, completion, true, "Correction saved");
    }

    [[nodiscard]] std::string firstWrite() const {
        return GetParam() == Save::first ? "INSERT INTO" : "UPDATE dataset";
    }

    void expectRefusal(const std::string& reason) {
        const std::string words = GetParam() == Save::first ? "Couldn't save this answer. "
                                                            : "Couldn't update this dataset example. ";
        EXPECT_EQ(model().alertMessage->value_or(""), words + reason);
        EXPECT_FALSE(model().feedback->has_value());
        EXPECT_EQ(*model().library.findAnswer(answer.id), answerBefore);
        EXPECT_EQ(datasetInMemory(), datasetBefore);
        EXPECT_THAT(harness.file().loadAnswers(), ElementsAre(answerBefore));
        EXPECT_EQ(harness.file().loadDataset(), datasetBefore);
        EXPECT_EQ(raw().value("PRAGMA integrity_check"), "ok");
    }

    // With the obstacle gone: no transaction may be left open.
    void expectTheNextSaveSucceeds() {
        model().alertMessage = std::nullopt;
        save();
        EXPECT_EQ(model().alertMessage->value_or(""), "");
        ASSERT_EQ(harness.file().loadDataset().size(), 1u);
        EXPECT_EQ(harness.file().loadDataset(), datasetInMemory());
        EXPECT_EQ(harness.file().loadDataset()[0].completion, "Corrected.");
        EXPECT_EQ(harness.file().loadAnswers()[0].datasetID, harness.file().loadDataset()[0].id);
    }

    RawLibrary& raw() {
        if (!rawLibrary)
            rawLibrary = std::make_unique<RawLibrary>(harness.libraryPath());
        return *rawLibrary;
    }

    StatementLog log;
    Harness harness;
    QuorlRun run = makeRun();
    ModelAnswer answer = makeAnswer(run.id);
    ModelAnswer answerBefore;
    std::vector<DatasetExample> datasetBefore;
    std::unique_ptr<RawLibrary> rawLibrary;
};

TEST_P(SaveFaultTest, ASaveIsTwoWritesInOneTransaction) {
    save();

    EXPECT_THAT(StatementLog::lines(),
                ElementsAre("BEGIN IMMEDIATE", firstWrite(), "UPDATE answers", "COMMIT"));
}

TEST_P(SaveFaultTest, MemoryChangesOnlyAfterTheCommit) {
    std::vector<std::string> lastStatements;
    const auto subscription = model().observe([&](const AppChange& change) {
        if (change.field == AppField::dataset || change.field == AppField::answersByRun)
            lastStatements.push_back(StatementLog::lines().back());
    });

    save();

    EXPECT_THAT(lastStatements, testing::Each("COMMIT"));
    EXPECT_EQ(lastStatements.size(), GetParam() == Save::first ? 2u : 1u);
}

// Nothing was begun, so there is nothing to roll back.
TEST_P(SaveFaultTest, AFileLockedByAnotherLeavesNothingAndGetsNoRollback) {
    raw().exec("BEGIN IMMEDIATE");
    StatementLog::lines().clear();

    save();

    EXPECT_THAT(StatementLog::lines(), ElementsAre("BEGIN IMMEDIATE"));
    raw().exec("ROLLBACK");
    expectRefusal("database is locked");
    expectTheNextSaveSucceeds();
}

TEST_P(SaveFaultTest, AnExampleThatIsRefusedLeavesNothing) {
    harness.file().exec("CREATE TRIGGER one BEFORE INSERT ON dataset BEGIN SELECT RAISE(ABORT, 'held fast'); "
                        "END;"
                        "CREATE TRIGGER two BEFORE UPDATE ON dataset BEGIN SELECT RAISE(ABORT, 'held fast'); "
                        "END");
    StatementLog::lines().clear();

    save();

    EXPECT_THAT(StatementLog::lines(), ElementsAre("BEGIN IMMEDIATE", firstWrite(), "ROLLBACK"));
    expectRefusal("held fast");
    harness.file().exec("DROP TRIGGER one; DROP TRIGGER two");
    expectTheNextSaveSucceeds();
}

TEST_P(SaveFaultTest, ALinkThatIsRefusedTakesTheExampleWithIt) {
    harness.file().exec("CREATE TRIGGER one BEFORE UPDATE ON answers BEGIN SELECT RAISE(ABORT, 'held fast'); "
                        "END");
    StatementLog::lines().clear();

    save();

    EXPECT_THAT(StatementLog::lines(),
                ElementsAre("BEGIN IMMEDIATE", firstWrite(), "UPDATE answers", "ROLLBACK"));
    expectRefusal("held fast");
    harness.file().exec("DROP TRIGGER one");
    expectTheNextSaveSucceeds();
}

// SQLite has rolled back by itself; that the ROLLBACK then fails is nobody's business.
TEST_P(SaveFaultTest, TheFirstErrorIsToldNotTheRollbacks) {
    harness.file().exec("CREATE TRIGGER one BEFORE UPDATE ON answers BEGIN SELECT RAISE(ROLLBACK, 'gone "
                        "back'); END");
    StatementLog::lines().clear();

    save();

    EXPECT_EQ(StatementLog::lines().back(), "ROLLBACK");
    expectRefusal("gone back");
    harness.file().exec("DROP TRIGGER one");
    expectTheNextSaveSucceeds();
}

TEST_P(SaveFaultTest, ACommitThatIsRefusedLeavesNothing) {
    harness.file().exec("CREATE TABLE parent (id INTEGER PRIMARY KEY);"
                        "CREATE TABLE child (parent INTEGER REFERENCES parent DEFERRABLE INITIALLY DEFERRED);"
                        "CREATE TRIGGER one AFTER UPDATE ON answers BEGIN INSERT INTO child VALUES (1); END");
    StatementLog::lines().clear();

    save();

    EXPECT_THAT(StatementLog::lines(),
                ElementsAre("BEGIN IMMEDIATE", firstWrite(), "UPDATE answers", "COMMIT", "ROLLBACK"));
    expectRefusal("FOREIGN KEY constraint failed");
    harness.file().exec("DROP TRIGGER one");
    expectTheNextSaveSucceeds();
}

TEST_P(SaveFaultTest, ADiskThatIsFullAtTheCommitLeavesNothing) {
    {
        const FullDisk full(harness.libraryPath());
        save(std::string(300'000, 'x'));
    }

    EXPECT_THAT(StatementLog::lines(),
                ElementsAre("BEGIN IMMEDIATE", firstWrite(), "UPDATE answers", "COMMIT", "ROLLBACK"));
    expectRefusal("disk I/O error");
    expectTheNextSaveSucceeds();
}

// More than SQLite keeps in memory, so that it writes before the commit.
TEST_P(SaveFaultTest, ADiskThatIsFullAtTheFirstWriteLeavesNothing) {
    {
        const FullDisk full(harness.libraryPath());
        save(std::string(20'000'000, 'x'));
    }

    EXPECT_THAT(StatementLog::lines(), ElementsAre("BEGIN IMMEDIATE", firstWrite(), "ROLLBACK"));
    expectRefusal("disk I/O error");
    expectTheNextSaveSucceeds();
}

INSTANTIATE_TEST_SUITE_P(, SaveFaultTest, testing::Values(Save::first, Save::again),
                         [](const auto& tested) { return tested.param == Save::first ? "First" : "Again"; });

// Once only: it takes the two seconds that SQLite waits for the reader.
class SaveBesideAReaderTest : public SaveFaultTest {};

TEST_P(SaveBesideAReaderTest, ACommitThatAReaderHoldsUpLeavesNothing) {
    raw().exec("BEGIN");
    ASSERT_EQ(raw().value("SELECT count(*) FROM answers"), "1");

    save();

    EXPECT_THAT(StatementLog::lines(), testing::Contains("COMMIT"));
    EXPECT_EQ(StatementLog::lines().back(), "ROLLBACK");
    raw().exec("ROLLBACK");
    expectRefusal("database is locked");
    expectTheNextSaveSucceeds();
}

INSTANTIATE_TEST_SUITE_P(, SaveBesideAReaderTest, testing::Values(Save::first),
                         [](const auto&) { return "First"; });

} // namespace
