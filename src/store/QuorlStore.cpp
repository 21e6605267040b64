#include "store/QuorlStore.h"

#include "store/Statement.h"

#include <sqlite3.h>

#include <string_view>

namespace quorl {

namespace {

constexpr int busyTimeoutMS = 2000;

constexpr const char* schema = R"sql(
CREATE TABLE IF NOT EXISTS categories (
    id TEXT PRIMARY KEY,
    name TEXT NOT NULL,
    parent_id TEXT,
    sort_index INTEGER NOT NULL
);
CREATE TABLE IF NOT EXISTS models (
    id TEXT PRIMARY KEY,
    name TEXT NOT NULL,
    provider TEXT NOT NULL,
    model_identifier TEXT NOT NULL,
    endpoint TEXT NOT NULL,
    executable_path TEXT NOT NULL,
    input_price REAL NOT NULL,
    output_price REAL NOT NULL,
    max_tokens INTEGER NOT NULL,
    enabled INTEGER NOT NULL,
    notes TEXT NOT NULL,
    sort_index INTEGER NOT NULL
);
CREATE TABLE IF NOT EXISTS runs (
    id TEXT PRIMARY KEY,
    kind TEXT NOT NULL,
    prompt TEXT NOT NULL,
    system_prompt TEXT NOT NULL,
    category_id TEXT,
    scoring_mode TEXT NOT NULL,
    created_at REAL NOT NULL,
    questions_json TEXT NOT NULL DEFAULT '',
    batch_id TEXT,
    origin TEXT NOT NULL DEFAULT 'app'
);
CREATE TABLE IF NOT EXISTS answers (
    id TEXT PRIMARY KEY,
    run_id TEXT NOT NULL,
    model_id TEXT NOT NULL,
    model_name TEXT NOT NULL,
    provider TEXT NOT NULL,
    position INTEGER NOT NULL,
    state TEXT NOT NULL,
    text TEXT NOT NULL,
    latency_ms INTEGER NOT NULL,
    input_tokens INTEGER,
    output_tokens INTEGER,
    tokens_estimated INTEGER NOT NULL,
    cost_usd REAL,
    error TEXT,
    chosen_correct INTEGER NOT NULL,
    accepted INTEGER,
    rating INTEGER,
    dataset_id TEXT
);
CREATE TABLE IF NOT EXISTS dataset (
    id TEXT PRIMARY KEY,
    created_at REAL NOT NULL,
    category_id TEXT,
    kind TEXT NOT NULL,
    prompt TEXT NOT NULL,
    system_prompt TEXT NOT NULL,
    completion TEXT NOT NULL,
    model_name TEXT NOT NULL,
    provider TEXT NOT NULL,
    rating INTEGER,
    accepted INTEGER,
    answer_id TEXT NOT NULL
);
CREATE TABLE IF NOT EXISTS batches (
    id TEXT PRIMARY KEY,
    name TEXT NOT NULL,
    source TEXT NOT NULL,
    kind TEXT NOT NULL,
    created_at REAL NOT NULL,
    status TEXT NOT NULL
);
CREATE INDEX IF NOT EXISTS answers_run ON answers(run_id);
)sql";

template <class Record, class Visit>
void forEachRow(sqlite3* db, const char* sql, Reading* reading, Visit visit) {
    Reading unasked;
    Reading& learned = reading ? *reading : unasked;
    Statement statement(db, sql);
    int result = statement.step();
    for (; result == SQLITE_ROW; result = statement.step())
        visit(readRow<Record>(statement.get(), learned));
    if (result != SQLITE_DONE)
        learned.isRepeatable = false;
}

template <class Record>
std::vector<Record> load(sqlite3* db, const char* sql, Reading* reading) {
    std::vector<Record> records;
    forEachRow<Record>(db, sql, reading, [&](Record&& record) { records.push_back(std::move(record)); });
    return records;
}

template <class... Values>
void write(sqlite3* db, const char* sql, const Values&... values) {
    Statement(db, sql).bind(values...).run();
}

constexpr const char* insertRunSQL =
    "INSERT INTO runs (id, kind, prompt, system_prompt, category_id, scoring_mode, created_at, "
    "questions_json, batch_id, origin) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

constexpr const char* insertAnswerSQL =
    "INSERT INTO answers (id, run_id, model_id, model_name, provider, position, state, text, latency_ms, "
    "input_tokens, output_tokens, tokens_estimated, cost_usd, error, chosen_correct, accepted, rating, "
    "dataset_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

void insertRow(Statement& insert, const QuorlRun& run) {
    insert
        .bind(run.id, rawString(run.kind), run.prompt, run.systemPrompt, run.categoryID,
              rawString(run.scoringMode), run.createdAt, run.questionsJSON, run.batchID,
              rawString(run.origin))
        .run();
    insert.reset();
}

void insertRow(Statement& insert, const ModelAnswer& answer) {
    insert
        .bind(answer.id, answer.runID, answer.modelID, answer.modelName, rawString(answer.provider),
              answer.position, rawString(answer.state), answer.text, answer.latencyMS, answer.inputTokens,
              answer.outputTokens, answer.tokensEstimated, answer.costUSD, answer.errorMessage,
              answer.chosenCorrect, answer.accepted, answer.rating, answer.datasetID)
        .run();
    insert.reset();
}

// The first column of the first row; 0 if there is no row.
template <class... Values>
std::int64_t count(sqlite3* db, const char* sql, const Values&... values) {
    Statement statement(db, sql);
    if (statement.bind(values...).step() != SQLITE_ROW)
        return 0;
    return sqlite3_column_int64(statement.get(), 0);
}

bool isAboutTransactionOnly(std::string_view script) {
    return script == "BEGIN IMMEDIATE" || script == "COMMIT" || script == "ROLLBACK";
}

} // namespace

void QuorlStore::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

QuorlStore::QuorlStore(const std::string& path) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open(path.c_str(), &handle);
    db.reset(handle); // a failed open leaves one too
    if (result != SQLITE_OK)
        throw StoreError(handle ? sqlite3_errmsg(handle) : "Unable to open the library.");
    sqlite3_busy_timeout(handle, busyTimeoutMS);
    exec("PRAGMA foreign_keys = ON");
    migrate();
}

QuorlStore::~QuorlStore() = default;

void QuorlStore::migrate() {
    const auto addColumn = [this](const char* script) {
        try {
            exec(script);
        } catch (const StoreError&) {
            // The column is there already, as in every library but an early one.
        }
    };
    exec(schema);
    addColumn("ALTER TABLE runs ADD COLUMN questions_json TEXT NOT NULL DEFAULT ''");
    addColumn("ALTER TABLE runs ADD COLUMN batch_id TEXT");
    addColumn("ALTER TABLE runs ADD COLUMN origin TEXT NOT NULL DEFAULT 'app'");
    // Not in the script above: an early library has its column only now.
    exec("CREATE INDEX IF NOT EXISTS runs_batch ON runs(batch_id)");
}

void QuorlStore::exec(const char* script) {
    // What happens inside a transaction logs itself, and what a rollback takes back is read again all the
    // same.
    if (!isAboutTransactionOnly(script))
        logIsBlind = true;
    char* problem = nullptr;
    if (sqlite3_exec(db.get(), script, nullptr, nullptr, &problem) == SQLITE_OK)
        return;
    const std::string message = problem ? problem : "SQLite error";
    sqlite3_free(problem);
    throw StoreError(message);
}

std::vector<ModelProfile> QuorlStore::loadModels(Reading* reading) {
    return load<ModelProfile>(
        db.get(),
        "SELECT id, name, provider, model_identifier, endpoint, executable_path, input_price, output_price, "
        "max_tokens, enabled, notes, sort_index FROM models ORDER BY sort_index, name",
        reading);
}

std::vector<Category> QuorlStore::loadCategories(Reading* reading) {
    return load<Category>(db.get(),
                          "SELECT id, name, parent_id, sort_index FROM categories ORDER BY sort_index, name",
                          reading);
}

std::vector<QuorlRun> QuorlStore::loadRuns(Reading* reading) {
    return load<QuorlRun>(db.get(),
                          "SELECT id, kind, prompt, system_prompt, category_id, scoring_mode, created_at, "
                          "questions_json, batch_id, origin FROM runs ORDER BY created_at DESC",
                          reading);
}

std::vector<QuorlBatch> QuorlStore::loadBatches(Reading* reading) {
    return load<QuorlBatch>(
        db.get(), "SELECT id, name, source, kind, created_at, status FROM batches ORDER BY created_at DESC",
        reading);
}

std::vector<DatasetExample> QuorlStore::loadDataset(Reading* reading) {
    return load<DatasetExample>(
        db.get(),
        "SELECT id, created_at, category_id, kind, prompt, system_prompt, completion, model_name, provider, "
        "rating, accepted, answer_id FROM dataset ORDER BY created_at DESC",
        reading);
}

void QuorlStore::forEachAnswer(const std::function<void(ModelAnswer&&)>& visit, Reading* reading) {
    forEachRow<ModelAnswer>(
        db.get(),
        "SELECT id, run_id, model_id, model_name, provider, position, state, text, latency_ms, input_tokens, "
        "output_tokens, tokens_estimated, cost_usd, error, chosen_correct, accepted, rating, dataset_id "
        "FROM answers ORDER BY position",
        reading, visit);
}

std::vector<ModelAnswer> QuorlStore::loadAnswers(Reading* reading) {
    std::vector<ModelAnswer> answers;
    forEachAnswer([&](ModelAnswer&& answer) { answers.push_back(std::move(answer)); }, reading);
    return answers;
}

std::int64_t QuorlStore::countModels() {
    return count(db.get(), "SELECT COUNT(*) FROM models");
}

std::int64_t QuorlStore::countChildren(const UUID& categoryID) {
    return count(db.get(), "SELECT COUNT(*) FROM categories WHERE parent_id = ?", categoryID);
}

bool QuorlStore::categoryInUse(const UUID& categoryID) {
    const auto runs = count(db.get(), "SELECT COUNT(*) FROM runs WHERE category_id = ?", categoryID);
    const auto examples = count(db.get(), "SELECT COUNT(*) FROM dataset WHERE category_id = ?", categoryID);
    return runs + examples > 0;
}

// Every write is logged before it runs: one that fails may still have taken back others.

void QuorlStore::saveModel(const ModelProfile& model) {
    touched.models = true;
    write(
        db.get(),
        "INSERT INTO models (id, name, provider, model_identifier, endpoint, executable_path, input_price, "
        "output_price, max_tokens, enabled, notes, sort_index)\n"
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)\n"
        "ON CONFLICT(id) DO UPDATE SET name = excluded.name, provider = excluded.provider, "
        "model_identifier = excluded.model_identifier, endpoint = excluded.endpoint, "
        "executable_path = excluded.executable_path, input_price = excluded.input_price, "
        "output_price = excluded.output_price, max_tokens = excluded.max_tokens, enabled = excluded.enabled, "
        "notes = excluded.notes, sort_index = excluded.sort_index",
        model.id, model.name, rawString(model.provider), model.modelIdentifier, model.endpoint,
        model.executablePath, model.inputPricePerMillion, model.outputPricePerMillion, model.maxOutputTokens,
        model.enabled, model.notes, model.sortIndex);
}

void QuorlStore::deleteModel(const UUID& id) {
    touched.models = true;
    write(db.get(), "DELETE FROM models WHERE id = ?", id);
}

void QuorlStore::saveCategory(const Category& category) {
    touched.categories = true;
    write(db.get(),
          "INSERT INTO categories (id, name, parent_id, sort_index) VALUES (?, ?, ?, ?)\n"
          "ON CONFLICT(id) DO UPDATE SET name = excluded.name, parent_id = excluded.parent_id, "
          "sort_index = excluded.sort_index",
          category.id, category.name, category.parentID, category.sortIndex);
}

void QuorlStore::deleteCategory(const UUID& id) {
    touched.categories = true;
    write(db.get(), "DELETE FROM categories WHERE id = ?", id);
}

void QuorlStore::insertRun(const QuorlRun& run) {
    touched.runs.insert(run.id);
    Statement insert(db.get(), insertRunSQL);
    insertRow(insert, run);
}

void QuorlStore::deleteRun(const UUID& id) {
    touched.answersOfRuns.insert(id);
    touched.runs.insert(id);
    write(db.get(), "DELETE FROM answers WHERE run_id = ?", id);
    write(db.get(), "DELETE FROM runs WHERE id = ?", id);
}

void QuorlStore::insertAnswer(const ModelAnswer& answer) {
    touched.answersOfRuns.insert(answer.runID);
    Statement insert(db.get(), insertAnswerSQL);
    insertRow(insert, answer);
}

// Preparing takes longer than the insertion itself, so the rows of one call share their statements.
void QuorlStore::insertRuns(std::span<const AnsweredRun> runs) {
    Statement insertRun(db.get(), insertRunSQL);
    Statement insertAnswer(db.get(), insertAnswerSQL);
    for (const auto& [run, answers] : runs) {
        touched.runs.insert(run.id);
        insertRow(insertRun, run);
        for (const ModelAnswer& answer : answers) {
            touched.answersOfRuns.insert(answer.runID);
            insertRow(insertAnswer, answer);
        }
    }
}

void QuorlStore::updateOutcome(const ModelAnswer& answer) {
    touched.answers.insert(answer.id);
    write(db.get(),
          "UPDATE answers SET state = ?, text = ?, latency_ms = ?, input_tokens = ?, output_tokens = ?,\n"
          "tokens_estimated = ?, cost_usd = ?, error = ? WHERE id = ?",
          rawString(answer.state), answer.text, answer.latencyMS, answer.inputTokens, answer.outputTokens,
          answer.tokensEstimated, answer.costUSD, answer.errorMessage, answer.id);
}

void QuorlStore::updateJudgment(const ModelAnswer& answer) {
    touched.answers.insert(answer.id);
    write(db.get(),
          "UPDATE answers SET chosen_correct = ?, accepted = ?, rating = ?, dataset_id = ? WHERE id = ?",
          answer.chosenCorrect, answer.accepted, answer.rating, answer.datasetID, answer.id);
}

void QuorlStore::insertDataset(const DatasetExample& example) {
    touched.examples.insert(example.id);
    write(db.get(),
          "INSERT INTO dataset (id, created_at, category_id, kind, prompt, system_prompt, completion, "
          "model_name, provider, rating, accepted, answer_id)\n"
          "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
          example.id, example.createdAt, example.categoryID, rawString(example.kind), example.prompt,
          example.systemPrompt, example.completion, example.modelName, rawString(example.provider),
          example.rating, example.accepted, example.answerID);
}

void QuorlStore::updateDatasetJudgment(const UUID& id, std::optional<std::int64_t> rating,
                                       std::optional<bool> accepted) {
    touched.examples.insert(id);
    write(db.get(), "UPDATE dataset SET rating = ?, accepted = ? WHERE id = ?", rating, accepted, id);
}

void QuorlStore::updateDatasetExample(const UUID& id, const std::string& completion,
                                      std::optional<std::int64_t> rating, std::optional<bool> accepted) {
    touched.examples.insert(id);
    write(db.get(), "UPDATE dataset SET completion = ?, rating = ?, accepted = ? WHERE id = ?", completion,
          rating, accepted, id);
}

void QuorlStore::deleteExample(const UUID& id) {
    touched.examples.insert(id);
    write(db.get(), "DELETE FROM dataset WHERE id = ?", id);
}

void QuorlStore::saveBatch(const QuorlBatch& batch) {
    touched.batches.insert(batch.id);
    write(db.get(),
          "INSERT INTO batches (id, name, source, kind, created_at, status) VALUES (?, ?, ?, ?, ?, ?)",
          batch.id, batch.name, rawString(batch.source), rawString(batch.kind), batch.createdAt,
          rawString(batch.status));
}

void QuorlStore::setBatchStatus(const UUID& id, BatchStatus status) {
    touched.batches.insert(id);
    write(db.get(), "UPDATE batches SET status = ? WHERE id = ?", rawString(status), id);
}

void QuorlStore::deleteBatch(const UUID& id) {
    touched.batches.insert(id);
    std::vector<UUID> runIDs;
    {
        Statement runs(db.get(), "SELECT id FROM runs WHERE batch_id = ?");
        runs.bind(id);
        Reading unasked;
        while (runs.step() == SQLITE_ROW)
            runIDs.push_back(readKey(runs.get(), 0, unasked));
    }
    for (const UUID& runID : runIDs)
        deleteRun(runID);
    write(db.get(), "DELETE FROM batches WHERE id = ?", id);
}

} // namespace quorl
