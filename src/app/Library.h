#pragma once

#include "app/DatedList.h"
#include "app/Observed.h"
#include "domain/Records.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace quorl {

class QuorlStore;

// How much of the file a reload had to read.
enum class ReloadExtent { touchedRows, allRows };

// The mirrors of the six tables, which are the working state of the program, with the indices that keep every
// look-up cheap. Changing a mirror changes memory only; writing it to the file is the caller's. Each change
// that makes a difference is notified, with the run's id for runs and answers. A pointer or span that is
// given out is valid until its list next changes. Thread: main. Failures: none.
class Library {
public:
    explicit Library(Observers& notified);
    ~Library();

    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    [[nodiscard]] const std::vector<ModelProfile>& models() const;
    [[nodiscard]] const ModelProfile* findModel(const UUID& id) const;
    void appendModel(ModelProfile model);
    void replaceModel(const ModelProfile& model); // by id; nothing happens if there is none
    void removeModel(UUID id);

    [[nodiscard]] const std::vector<Category>& categories() const;
    [[nodiscard]] const Category* findCategory(const UUID& id) const;
    void appendCategory(Category category);
    void replaceCategory(const Category& category);
    void removeCategory(UUID id);

    /// Newest first.
    [[nodiscard]] std::size_t runCount() const;
    [[nodiscard]] const QuorlRun& runAt(std::size_t place) const;
    /// The first run with that id in that order; null if there is none.
    [[nodiscard]] const QuorlRun* findRun(const UUID& id) const;
    /// Oldest first; of two made at the same moment the one that stands first in the order above comes first.
    [[nodiscard]] std::vector<const QuorlRun*> runsOfBatch(const UUID& batchID) const;
    [[nodiscard]] std::size_t runCountOfBatch(const UUID& batchID) const;
    /// Whether any answer of its runs is still to come.
    [[nodiscard]] bool isBatchRunning(const UUID& batchID) const;
    /// The run and its answers.
    void removeRun(UUID id);

    /// Newest first.
    [[nodiscard]] const DatedList<QuorlBatch>& batches() const;
    [[nodiscard]] const QuorlBatch* findBatch(const UUID& id) const;
    void replaceBatch(const QuorlBatch& batch);
    void removeBatch(UUID id);

    /// By `position`; none for an unknown run.
    [[nodiscard]] std::span<const ModelAnswer> answersOfRun(const UUID& runID) const;
    [[nodiscard]] const ModelAnswer* findAnswer(const UUID& id) const;
    /// Puts the answer in the place of the one with its id in its run, or at the end if there is none.
    void replaceAnswer(const ModelAnswer& answer);
    /// All answers of the run, in one notification.
    void replaceAnswersOfRun(const UUID& runID, std::vector<ModelAnswer> answers);
    /// The ids under which answers are kept, whether or not such a run exists; in no particular order.
    [[nodiscard]] std::vector<UUID> runsWithAnswers() const;

    /// Newest first.
    [[nodiscard]] const DatedList<DatasetExample>& dataset() const;
    [[nodiscard]] const DatasetExample* findExample(const UUID& id) const;
    void prependExample(DatasetExample example); // in front of all, whatever its date
    void replaceExample(const DatasetExample& example);
    void removeExample(UUID id);

    /// Leaves exactly what reading the six tables would: a load that fails keeps models and categories and
    /// empties the others. Rows that neither this program nor another has touched since the last reload are
    /// not read again.
    ReloadExtent reload(QuorlStore& store);

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace quorl
