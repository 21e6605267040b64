#pragma once

#include "domain/Records.h"
#include "store/Rows.h"
#include "store/StoreError.h"
#include "store/TouchedRows.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

struct sqlite3;

namespace quorl {

class Statement;

// The file at one moment. While it lives no other connection can commit, so that what is read meanwhile goes
// together.
class StoreSnapshot {
public:
    StoreSnapshot(StoreSnapshot&&) noexcept;
    ~StoreSnapshot();

private:
    friend class QuorlStore;
    StoreSnapshot(std::unique_ptr<Statement> underWay, std::int64_t dataVersion);

    std::unique_ptr<Statement> reading; // under way, which is what holds the file
    std::int64_t version;               // another one whenever another connection has committed
};

// A moment since which the store has kept the log of its writes.
struct StoreMark {
    std::uint64_t log = 0; // no two logs in the process have the same number
    std::int64_t version = 0;
};

// A record and the number of its row, by which the table is ordered where the statement leaves the order
// open.
template <class Record>
struct FiledRow {
    Record record;
    std::int64_t rowID = 0;
};

struct AnsweredRun {
    QuorlRun run;
    std::vector<ModelAnswer> answers;
};

// The one owner of the library file: opens it, brings an older layout up to date, reads and writes rows.
// Thread: main. Failures: throws `StoreError`, whose text is SQLite's own. A load throws only where its
// statement cannot be prepared; where reading breaks off later, the rows so far are its result.
class QuorlStore {
public:
    explicit QuorlStore(const std::string& path); // ":memory:" gives a library that dies with the object
    ~QuorlStore();

    QuorlStore(const QuorlStore&) = delete;
    QuorlStore& operator=(const QuorlStore&) = delete;

    /// By `sortIndex`, then name. `reading`, where it is given, learns what the load found.
    [[nodiscard]] std::vector<ModelProfile> loadModels(Reading* reading = nullptr);
    [[nodiscard]] std::vector<Category> loadCategories(Reading* reading = nullptr);
    /// Newest first.
    [[nodiscard]] std::vector<QuorlRun> loadRuns(Reading* reading = nullptr);
    [[nodiscard]] std::vector<QuorlBatch> loadBatches(Reading* reading = nullptr);
    [[nodiscard]] std::vector<DatasetExample> loadDataset(Reading* reading = nullptr);
    /// Of all runs together, by `position`.
    [[nodiscard]] std::vector<ModelAnswer> loadAnswers(Reading* reading = nullptr);
    /// The same, one by one, for a library whose answers need not stand in memory twice.
    void forEachAnswer(const std::function<void(ModelAnswer&&)>& visit, Reading* reading = nullptr);

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
    /// Each run and then its answers, up to a row that fails.
    void insertRuns(std::span<const AnsweredRun> runs);
    void updateOutcome(const ModelAnswer& answer);  // state, text, latency, tokens, cost, error
    void updateJudgment(const ModelAnswer& answer); // chosenCorrect, accepted, rating, datasetID

    void insertDataset(const DatasetExample& example);
    void updateDatasetJudgment(const UUID& id, std::optional<std::int64_t> rating,
                               std::optional<bool> accepted);
    void updateDatasetExample(const UUID& id, const std::string& completion,
                              std::optional<std::int64_t> rating, std::optional<bool> accepted);
    void deleteExample(const UUID& id);

    void saveBatch(const QuorlBatch& batch);
    void setBatchStatus(const UUID& id, BatchStatus status);
    void deleteBatch(const UUID& id); // its runs one by one, then the batch

    /// Runs a script, such as the statements around a caller's transaction.
    void exec(const char* script);

    // --- Following the file (Following.cpp) ---

    /// Nothing if the file cannot be read now.
    [[nodiscard]] std::optional<StoreSnapshot> snapshot();

    /// Starts a log of the writes to come; to be called before the rows are read that are to be kept up with
    /// it.
    [[nodiscard]] StoreMark startLog(const StoreSnapshot& snapshot);

    /// The rows written since `mark`, or since the last call with it. Nothing where these would not be all:
    /// another connection has written, another log was started, or the writes were such that no log can tell
    /// what they touched.
    [[nodiscard]] std::optional<TouchedRows> takeTouched(const StoreMark& mark,
                                                         const StoreSnapshot& snapshot);

    /// Those of the rows that exist, in no particular order.
    [[nodiscard]] std::vector<FiledRow<QuorlRun>> loadRuns(const std::unordered_set<UUID>& ids,
                                                           Reading& reading);
    [[nodiscard]] std::vector<FiledRow<QuorlBatch>> loadBatches(const std::unordered_set<UUID>& ids,
                                                                Reading& reading);
    [[nodiscard]] std::vector<FiledRow<DatasetExample>> loadDataset(const std::unordered_set<UUID>& ids,
                                                                    Reading& reading);
    /// The row's number; 0 if there is none.
    [[nodiscard]] std::int64_t runRowID(const UUID& id);
    [[nodiscard]] std::int64_t batchRowID(const UUID& id);
    [[nodiscard]] std::int64_t exampleRowID(const UUID& id);

    /// Calls `visit` with the answers of each run in turn, in the order of `loadAnswers`.
    void forEachRunsAnswers(const std::unordered_set<UUID>& runIDs,
                            const std::function<void(const UUID& runID, std::vector<ModelAnswer>)>& visit,
                            Reading& reading);
    /// How many answers each run has, as far as that can be told.
    void forEachAnswerCount(const std::function<void(const UUID& runID, std::size_t count)>& visit);

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };

    void migrate();

    std::unique_ptr<sqlite3, Close> db;
    std::uint64_t logNumber = 0; // 0 while no log is kept
    bool logIsBlind = false;     // something was written that `touched` does not name
    TouchedRows touched;
};

} // namespace quorl
