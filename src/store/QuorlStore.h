#pragma once

#include "domain/Records.h"
#include "store/StoreError.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace quorl {

// The one owner of the library file: opens it, brings an older layout up to date, reads and writes rows.
// Thread: main. Failures: throws `StoreError`, whose text is SQLite's own.
class QuorlStore {
public:
    explicit QuorlStore(const std::string& path); // ":memory:" gives a library that dies with the object
    ~QuorlStore();

    QuorlStore(const QuorlStore&) = delete;
    QuorlStore& operator=(const QuorlStore&) = delete;

    /// By `sortIndex`, then name.
    [[nodiscard]] std::vector<ModelProfile> loadModels();
    [[nodiscard]] std::vector<Category> loadCategories();
    /// Newest first.
    [[nodiscard]] std::vector<QuorlRun> loadRuns();
    [[nodiscard]] std::vector<QuorlBatch> loadBatches();
    [[nodiscard]] std::vector<DatasetExample> loadDataset();
    /// Of all runs together, by `position`.
    [[nodiscard]] std::vector<ModelAnswer> loadAnswers();

    /// Throws where the statement cannot be prepared.
    [[nodiscard]] std::int64_t countModels();
    [[nodiscard]] std::int64_t countChildren(const UUID& categoryID);
    /// A run or a dataset row names the category.
    [[nodiscard]] bool categoryInUse(const UUID& categoryID);

    void saveModel(const ModelProfile& model); // inserts, or replaces the row of that id
    void deleteModel(const UUID& id);
    void saveCategory(const Category& category); // inserts, or replaces the row of that id
    void deleteCategory(const UUID& id);

    void insertRun(const QuorlRun& run);
    void deleteRun(const UUID& id); // its answers first, then the run; dataset rows stay
    void insertAnswer(const ModelAnswer& answer);
    void updateOutcome(const ModelAnswer& answer);  // state, text, latency, tokens, cost, error
    void updateJudgment(const ModelAnswer& answer); // chosenCorrect, accepted, rating, datasetID

    void insertDataset(const DatasetExample& example);
    void updateDatasetJudgment(const UUID& id, std::optional<std::int64_t> rating, std::optional<bool> accepted);
    void updateDatasetExample(const UUID& id, const std::string& completion, std::optional<std::int64_t> rating,
                              std::optional<bool> accepted);
    void deleteExample(const UUID& id);

    void saveBatch(const QuorlBatch& batch);
    void setBatchStatus(const UUID& id, BatchStatus status);
    void deleteBatch(const UUID& id); // its runs one by one, then the batch

    /// Runs a script, such as the statements around a caller's transaction.
    void exec(const char* script);

private:
    sqlite3* db = nullptr;
};

} // namespace quorl
