#pragma once

#include "base/UUID.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace quorl::bench {

// The floor for writing a batch: the same rows by the same commits, with every statement prepared once. A
// failure ends the process.
class BareRows {
public:
    /// `path` is a library that exists.
    explicit BareRows(const std::string& path) {
        check(sqlite3_open(path.c_str(), &db));
        batch = prepare("INSERT INTO batches (id, name, source, kind, created_at, status) "
                        "VALUES (?, 'API batch', 'api', 'generation', 1800000000.25, 'running')");
        run = prepare("INSERT INTO runs (id, kind, prompt, system_prompt, scoring_mode, created_at, "
                      "questions_json, batch_id, origin) "
                      "VALUES (?, 'generation', 'Which way is up?', '', 'binary', ?, '', ?, 'api')");
        answer = prepare("INSERT INTO answers (id, run_id, model_id, model_name, provider, position, state, "
                         "text, latency_ms, tokens_estimated, chosen_correct) "
                         "VALUES (?, ?, ?, 'Model', 'openAICompatible', ?, 'running', '', 0, 0, 0)");
        outcome = prepare("UPDATE answers SET state = 'done', text = ?, latency_ms = 1, input_tokens = 9, "
                          "output_tokens = 1, tokens_estimated = 0, cost_usd = 0.0001, error = NULL "
                          "WHERE id = ?");
        status = prepare("UPDATE batches SET status = 'done' WHERE id = ?");
    }
    ~BareRows() {
        for (sqlite3_stmt* statement : {batch, run, answer, outcome, status})
            sqlite3_finalize(statement);
        sqlite3_close(db);
    }

    BareRows(const BareRows&) = delete;
    BareRows& operator=(const BareRows&) = delete;

    /// All rows of a batch in one transaction.
    void insertBatch(int items, int models) {
        batchID = UUID::random().text();
        answerIDs.clear();
        const std::string modelID = UUID::random().text();
        exec("BEGIN IMMEDIATE");
        write(batch, batchID);
        for (int item = 0; item < items; ++item) {
            const std::string runID = UUID::random().text();
            sqlite3_bind_double(run, 2, 1800000000.25 + item * 0.001);
            bind(run, 3, batchID);
            write(run, runID);
            for (int place = 0; place < models; ++place) {
                answerIDs.push_back(UUID::random().text());
                bind(answer, 2, runID);
                bind(answer, 3, modelID);
                sqlite3_bind_int(answer, 4, place);
                write(answer, answerIDs.back());
            }
        }
        exec("COMMIT");
    }

    /// By the answer's number in the batch.
    void finish(std::size_t number, const std::string& text) {
        bind(outcome, 2, answerIDs[number]);
        write(outcome, text);
    }

    void endBatch() { write(status, batchID); }

private:
    void check(int result) const {
        if (result == SQLITE_OK || result == SQLITE_DONE)
            return;
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(db));
        std::exit(EXIT_FAILURE);
    }

    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(db, sql, -1, &statement, nullptr));
        return statement;
    }

    void exec(const char* script) { check(sqlite3_exec(db, script, nullptr, nullptr, nullptr)); }

    static void bind(sqlite3_stmt* statement, int parameter, const std::string& text) {
        sqlite3_bind_text(statement, parameter, text.c_str(), -1, SQLITE_TRANSIENT);
    }

    void write(sqlite3_stmt* statement, const std::string& first) {
        bind(statement, 1, first);
        check(sqlite3_step(statement));
        sqlite3_reset(statement);
    }

    sqlite3* db = nullptr;
    sqlite3_stmt* batch = nullptr;
    sqlite3_stmt* run = nullptr;
    sqlite3_stmt* answer = nullptr;
    sqlite3_stmt* outcome = nullptr;
    sqlite3_stmt* status = nullptr;
    std::string batchID;
    std::vector<std::string> answerIDs;
};

} // namespace quorl::bench
