#include "store/StoreFile.h"
#include "support/Builders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/fsuid.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace quorl::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string openError(const std::string& path) {
    return errorOf([&] { QuorlStore store(path); });
}

// Rights do not bind root. While it lives, this thread meets files as the user "nobody" does; for others it
// changes nothing.
class AsAnybody {
public:
    AsAnybody() { setfsuid(geteuid() == 0 ? 65534 : geteuid()); }
    ~AsAnybody() { setfsuid(geteuid()); }
};

// Each operation that throws where its table is gone.
template <class Operation>
void expectNoSuchTable(const std::string& table, Operation operation) {
    StoreFile file;
    file.raw.exec("DROP TABLE " + table);
    file.store.exec("SELECT COUNT(*) FROM sqlite_master"); // or it would find out only as it steps
    EXPECT_EQ(errorOf([&] { operation(file.store); }), "no such table: " + table);
}

} // namespace

TEST(StoreFailure, AFolderThatIsNotThereCannotHoldALibrary) {
    TempFolder folder;

    EXPECT_EQ(openError((folder.path() / "missing" / "quorl.sqlite").string()),
              "unable to open database file");
}

TEST(StoreFailure, AFileThatIsNoLibraryIsRefusedAndLeftAsItIs) {
    TempFolder folder;
    const auto path = folder.path() / "quorl.sqlite";
    const std::string content(4096, 'x');
    std::ofstream(path) << content;

    EXPECT_EQ(openError(path.string()), "file is not a database");

    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content);
}

TEST(StoreFailure, ALibraryWithoutASchemaIsRefused) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    RawLibrary(path).exec("CREATE VIEW runs_batch AS SELECT 1; CREATE TABLE other (x)");

    // The name of our index is taken.
    EXPECT_EQ(openError(path), "there is already a table named runs_batch");
}

TEST(StoreFailure, ALibraryThatIsHeldByAnotherProgramIsRefusedAfterTheWait) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    { QuorlStore made(path); }
    RawLibrary other(path);
    other.exec("BEGIN EXCLUSIVE");
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(openError(path), "database is locked");

    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(1900));
}

TEST(StoreFailure, AWriteToAHeldLibraryFailsAfterTheWait) {
    StoreFile file;
    file.raw.exec("BEGIN IMMEDIATE");

    EXPECT_EQ(errorOf([&] { file.store.saveModel(makeModel()); }), "database is locked");
    file.raw.exec("ROLLBACK");
    EXPECT_EQ(errorOf([&] { file.store.saveModel(makeModel()); }), "");
}

TEST(StoreFailure, ALoadFromAHeldLibraryIsEmptyAndNoError) {
    StoreFile file;
    file.store.saveModel(makeModel());
    file.raw.exec("BEGIN EXCLUSIVE");
    Reading reading;

    EXPECT_THAT(file.store.loadModels(&reading), IsEmpty());
    EXPECT_FALSE(reading.isRepeatable);
}

TEST(StoreFailure, ALibraryThatMayOnlyBeReadLoadsAndRefusesWrites) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    const ModelProfile model = makeModel();
    QuorlStore(path).saveModel(model);
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    {
        const AsAnybody anybody;
        QuorlStore store(path);

        EXPECT_THAT(store.loadModels(), ElementsAre(model));
        EXPECT_EQ(errorOf([&] { store.saveModel(makeModel()); }), "attempt to write a readonly database");
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
}

TEST(StoreFailure, AFullFileRefusesTheWriteAndKeepsWhatItHas) {
    StoreFile file;
    const ModelProfile model = makeModel();
    file.store.saveModel(model);
    file.store.exec("PRAGMA max_page_count = 1"); // SQLite takes the present size as the least
    QuorlRun large = makeRun();
    large.prompt = std::string(100'000, 'x');

    EXPECT_EQ(errorOf([&] { file.store.insertRun(large); }), "database or disk is full");

    EXPECT_THAT(file.store.loadModels(), ElementsAre(model));
    EXPECT_THAT(file.store.loadRuns(), IsEmpty());
    EXPECT_EQ(file.raw.value("PRAGMA integrity_check"), "ok");
}

TEST(StoreFailure, AWriteThatATriggerRefusesGivesItsText) {
    StoreFile file;
    file.raw.exec(
        "CREATE TRIGGER refusing BEFORE INSERT ON models BEGIN SELECT RAISE(ABORT, 'not today'); END");

    EXPECT_EQ(errorOf([&] { file.store.saveModel(makeModel()); }), "not today");
    EXPECT_EQ(file.store.countModels(), 0);
}

TEST(StoreFailure, AFailingCommitLeavesNoRowOfTheTransaction) {
    StoreFile file;
    file.store.insertDataset(makeExample());
    // A reader that is under way keeps the commit from its exclusive lock.
    file.raw.exec("BEGIN; SELECT COUNT(*) FROM dataset");
    file.store.exec("BEGIN IMMEDIATE");
    file.store.insertDataset(makeExample());

    EXPECT_EQ(errorOf([&] { file.store.exec("COMMIT"); }), "database is locked");
    file.store.exec("ROLLBACK");

    file.raw.exec("COMMIT");
    EXPECT_EQ(file.raw.value("SELECT COUNT(*) FROM dataset"), "1");
}

TEST(StoreFailure, ABeginWhereAnotherProgramWritesFails) {
    StoreFile file;
    file.raw.exec("BEGIN IMMEDIATE");

    EXPECT_EQ(errorOf([&] { file.store.exec("BEGIN IMMEDIATE"); }), "database is locked");
}

TEST(StoreFailure, AScriptThatFailsGivesSQLitesText) {
    StoreFile file;

    EXPECT_EQ(errorOf([&] { file.store.exec("COMMIT"); }), "cannot commit - no transaction is active");
    EXPECT_EQ(errorOf([&] { file.store.exec("NONSENSE"); }), "near \"NONSENSE\": syntax error");
}

TEST(StoreFailure, EveryLoadThrowsWhereItsTableIsGone) {
    expectNoSuchTable("models", [](QuorlStore& store) { (void)store.loadModels(); });
    expectNoSuchTable("categories", [](QuorlStore& store) { (void)store.loadCategories(); });
    expectNoSuchTable("runs", [](QuorlStore& store) { (void)store.loadRuns(); });
    expectNoSuchTable("batches", [](QuorlStore& store) { (void)store.loadBatches(); });
    expectNoSuchTable("answers", [](QuorlStore& store) { (void)store.loadAnswers(); });
    expectNoSuchTable("dataset", [](QuorlStore& store) { (void)store.loadDataset(); });
    expectNoSuchTable("models", [](QuorlStore& store) { (void)store.countModels(); });
    expectNoSuchTable("categories", [](QuorlStore& store) { (void)store.countChildren(UUID::random()); });
    expectNoSuchTable("runs", [](QuorlStore& store) { (void)store.categoryInUse(UUID::random()); });
    expectNoSuchTable("dataset", [](QuorlStore& store) { (void)store.categoryInUse(UUID::random()); });
}

TEST(StoreFailure, ALoadThatFindsOutLateThatItsTableIsGoneIsEmptyAndNoError) {
    StoreFile file;
    file.store.saveModel(makeModel());
    file.raw.exec("DROP TABLE models");
    Reading reading;

    EXPECT_THAT(file.store.loadModels(&reading), IsEmpty());
    EXPECT_FALSE(reading.isRepeatable);
    EXPECT_EQ(errorOf([&] { (void)file.store.loadModels(); }), "no such table: models");
}

TEST(StoreFailure, EveryWriteThrowsWhereItsTableIsGone) {
    const UUID id = UUID::random();
    expectNoSuchTable("models", [](QuorlStore& store) { store.saveModel(makeModel()); });
    expectNoSuchTable("models", [&](QuorlStore& store) { store.deleteModel(id); });
    expectNoSuchTable("categories", [](QuorlStore& store) { store.saveCategory(makeCategory()); });
    expectNoSuchTable("categories", [&](QuorlStore& store) { store.deleteCategory(id); });
    expectNoSuchTable("runs", [](QuorlStore& store) { store.insertRun(makeRun()); });
    expectNoSuchTable("runs", [&](QuorlStore& store) { store.deleteRun(id); });
    expectNoSuchTable("answers", [&](QuorlStore& store) { store.deleteRun(id); });
    expectNoSuchTable("answers", [&](QuorlStore& store) { store.insertAnswer(makeAnswer(id)); });
    expectNoSuchTable("answers", [&](QuorlStore& store) { store.updateOutcome(makeAnswer(id)); });
    expectNoSuchTable("answers", [&](QuorlStore& store) { store.updateJudgment(makeAnswer(id)); });
    expectNoSuchTable("dataset", [](QuorlStore& store) { store.insertDataset(makeExample()); });
    expectNoSuchTable("dataset", [&](QuorlStore& store) { store.updateDatasetJudgment(id, 1, true); });
    expectNoSuchTable("dataset", [&](QuorlStore& store) { store.updateDatasetExample(id, "x", 1, true); });
    expectNoSuchTable("dataset", [&](QuorlStore& store) { store.deleteExample(id); });
    expectNoSuchTable("batches", [](QuorlStore& store) { store.saveBatch(makeBatch()); });
    expectNoSuchTable("batches", [&](QuorlStore& store) { store.setBatchStatus(id, BatchStatus::done); });
    expectNoSuchTable("batches", [&](QuorlStore& store) { store.deleteBatch(id); });
    expectNoSuchTable("runs", [&](QuorlStore& store) { store.deleteBatch(id); });
}

TEST(StoreFailure, RunsThatABatchsDeletionReachedBeforeItFailedStayDeleted) {
    StoreFile file;
    const QuorlBatch batch = makeBatch();
    QuorlRun first = makeRun();
    QuorlRun second = makeRun();
    first.batchID = batch.id;
    second.batchID = batch.id;
    file.store.saveBatch(batch);
    file.store.insertRun(first);
    file.store.insertRun(second);
    file.store.insertAnswer(makeAnswer(second.id));
    file.raw.exec("CREATE TRIGGER refusing BEFORE DELETE ON answers BEGIN SELECT RAISE(ABORT, 'kept'); END");

    EXPECT_EQ(errorOf([&] { file.store.deleteBatch(batch.id); }), "kept");

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(second));
    EXPECT_THAT(file.store.loadBatches(), ElementsAre(batch));
}

TEST(StoreFailure, ARunWhoseAnswersStayStaysToo) {
    StoreFile file;
    const QuorlRun run = makeRun();
    file.store.insertRun(run);
    file.store.insertAnswer(makeAnswer(run.id));
    file.raw.exec("CREATE TRIGGER refusing BEFORE DELETE ON answers BEGIN SELECT RAISE(ABORT, 'kept'); END");

    EXPECT_EQ(errorOf([&] { file.store.deleteRun(run.id); }), "kept");

    EXPECT_THAT(file.store.loadRuns(), ElementsAre(run));
}

TEST(StoreFailure, ADamagedPageEndsTheLoadWithTheRowsSoFar) {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    {
        QuorlStore store(path);
        for (int i = 0; i < 40; ++i) {
            ModelProfile model = makeModel();
            model.notes = std::string(1000, 'n');
            store.saveModel(model);
        }
    }
    const auto root =
        std::stoll(RawLibrary(path).value("SELECT rootpage FROM sqlite_master WHERE name = 'models'"));
    {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp((root - 1) * 4096);
        file << std::string(64, '\xFF');
    }
    QuorlStore store(path);
    Reading reading;

    EXPECT_THAT(store.loadModels(&reading), IsEmpty());
    EXPECT_FALSE(reading.isRepeatable);
    EXPECT_EQ(errorOf([&] { store.saveModel(makeModel()); }), "database disk image is malformed");
}

TEST(StoreFailure, AFailedStatementLeavesNothingOpen) {
    // An unfinished statement would keep the connection from closing, and its lock would stay.
    StoreFile file;
    const QuorlRun run = makeRun();
    {
        QuorlStore second(file.path);
        second.insertRun(run);
        EXPECT_NE(errorOf([&] { second.insertRun(run); }), "");
        EXPECT_NE(errorOf([&] { second.exec("NONSENSE"); }), "");
    }

    file.raw.exec("BEGIN EXCLUSIVE; COMMIT");
}

} // namespace quorl::test
