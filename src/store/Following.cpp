#include "store/QuorlStore.h"
#include "store/Statement.h"

#include <sqlite3.h>

#include <atomic>

namespace quorl {

namespace {

std::uint64_t nextLogNumber() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

// Whether a write can reach rows that its statement does not name, which no statement of our own schema can.
bool mayReachFurther(sqlite3* db) {
    try {
        Statement statement(db, "SELECT COUNT(*) FROM sqlite_master WHERE type IN ('trigger', 'view') "
                                "OR sql LIKE '%REFERENCES%' OR sql LIKE '%CONFLICT%' OR sql LIKE '%COLLATE%' "
                                "OR sql LIKE '%ROWID%'");
        return statement.step() != SQLITE_ROW || sqlite3_column_int64(statement.get(), 0) != 0;
    } catch (const StoreError&) {
        return true;
    }
}

// `sql` gives the row's number behind the record's columns.
template <class Record>
std::vector<FiledRow<Record>> loadByID(sqlite3* db, const char* sql, int rowIDColumn,
                                       const std::unordered_set<UUID>& ids, Reading& reading) {
    std::vector<FiledRow<Record>> rows;
    if (ids.empty())
        return rows;
    Statement statement(db, sql);
    for (const UUID& id : ids) {
        statement.bind(id);
        int result = statement.step();
        if (result == SQLITE_ROW) {
            rows.push_back({readRow<Record>(statement.get(), reading),
                            sqlite3_column_int64(statement.get(), rowIDColumn)});
            result = statement.step();
        }
        // A second row is one that the primary key should have refused, and tells that this table has none.
        if (result != SQLITE_DONE)
            reading.isRepeatable = false;
        statement.reset();
    }
    return rows;
}

std::int64_t rowID(sqlite3* db, const char* sql, const UUID& id) {
    Statement statement(db, sql);
    return statement.bind(id).step() == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 0) : 0;
}

} // namespace

StoreSnapshot::StoreSnapshot(std::unique_ptr<Statement> underWay, std::int64_t dataVersion)
    : reading(std::move(underWay)), version(dataVersion) {}

StoreSnapshot::StoreSnapshot(StoreSnapshot&&) noexcept = default;

StoreSnapshot::~StoreSnapshot() = default;

std::optional<StoreSnapshot> QuorlStore::snapshot() {
    try {
        auto reading = std::make_unique<Statement>(db.get(), "PRAGMA data_version");
        if (reading->step() != SQLITE_ROW)
            return std::nullopt;
        // Left on its row: a statement that has not ended keeps its read lock.
        const std::int64_t version = sqlite3_column_int64(reading->get(), 0);
        return StoreSnapshot(std::move(reading), version);
    } catch (const StoreError&) {
        return std::nullopt;
    }
}

StoreMark QuorlStore::startLog(const StoreSnapshot& snapshot) {
    logNumber = nextLogNumber();
    touched = {};
    // Rows that are read inside a transaction may be taken back, and no log says so.
    logIsBlind = sqlite3_get_autocommit(db.get()) == 0 || mayReachFurther(db.get());
    return {logNumber, snapshot.version};
}

std::optional<TouchedRows> QuorlStore::takeTouched(const StoreMark& mark, const StoreSnapshot& snapshot) {
    const bool isInTransaction = sqlite3_get_autocommit(db.get()) == 0;
    if (mark.log != logNumber || mark.version != snapshot.version || logIsBlind || isInTransaction)
        return std::nullopt;
    return std::exchange(touched, {});
}

std::vector<FiledRow<QuorlRun>> QuorlStore::loadRuns(const std::unordered_set<UUID>& ids, Reading& reading) {
    return loadByID<QuorlRun>(
        db.get(),
        "SELECT id, kind, prompt, system_prompt, category_id, scoring_mode, created_at, "
        "questions_json, batch_id, origin, rowid FROM runs WHERE id = ?",
        10, ids, reading);
}

std::vector<FiledRow<QuorlBatch>> QuorlStore::loadBatches(const std::unordered_set<UUID>& ids,
                                                          Reading& reading) {
    return loadByID<QuorlBatch>(
        db.get(), "SELECT id, name, source, kind, created_at, status, rowid FROM batches WHERE id = ?", 6,
        ids, reading);
}

std::vector<FiledRow<DatasetExample>> QuorlStore::loadDataset(const std::unordered_set<UUID>& ids,
                                                              Reading& reading) {
    return loadByID<DatasetExample>(
        db.get(),
        "SELECT id, created_at, category_id, kind, prompt, system_prompt, completion, model_name, provider, "
        "rating, accepted, answer_id, rowid FROM dataset WHERE id = ?",
        12, ids, reading);
}

std::int64_t QuorlStore::runRowID(const UUID& id) {
    return rowID(db.get(), "SELECT rowid FROM runs WHERE id = ?", id);
}

std::int64_t QuorlStore::batchRowID(const UUID& id) {
    return rowID(db.get(), "SELECT rowid FROM batches WHERE id = ?", id);
}

std::int64_t QuorlStore::exampleRowID(const UUID& id) {
    return rowID(db.get(), "SELECT rowid FROM dataset WHERE id = ?", id);
}

void QuorlStore::forEachRunsAnswers(
    const std::unordered_set<UUID>& runIDs,
    const std::function<void(const UUID& runID, std::vector<ModelAnswer>)>& visit, Reading& reading) {
    if (runIDs.empty())
        return;
    // The number of the row decides between equal positions, as it does where the whole table is scanned and
    // sorted.
    Statement statement(
        db.get(), "SELECT id, run_id, model_id, model_name, provider, position, state, text, latency_ms, "
                  "input_tokens, output_tokens, tokens_estimated, cost_usd, error, chosen_correct, "
                  "accepted, rating, dataset_id FROM answers WHERE run_id = ? ORDER BY position, rowid");
    for (const UUID& runID : runIDs) {
        std::vector<ModelAnswer> answers;
        statement.bind(runID);
        int result = statement.step();
        for (; result == SQLITE_ROW; result = statement.step())
            answers.push_back(readRow<ModelAnswer>(statement.get(), reading));
        if (result != SQLITE_DONE)
            reading.isRepeatable = false;
        statement.reset();
        visit(runID, std::move(answers));
    }
}

void QuorlStore::forEachAnswerCount(const std::function<void(const UUID& runID, std::size_t count)>& visit) {
    Statement statement(db.get(), "SELECT run_id, COUNT(*) FROM answers GROUP BY run_id");
    Reading unasked;
    while (statement.step() == SQLITE_ROW) {
        const UUID runID = readKey(statement.get(), 0, unasked);
        visit(runID, static_cast<std::size_t>(sqlite3_column_int64(statement.get(), 1)));
    }
}

} // namespace quorl
