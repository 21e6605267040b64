#include "app/AppModel.h"

#include "store/QuorlStore.h"

#include <algorithm>

namespace quorl {

void AppModel::refreshBatchStatus(const UUID& batchID) {
    const QuorlBatch* found = library.findBatch(batchID);
    if (!found)
        return;
    const auto isRunning = [this](const QuorlRun* run) {
        const auto answers = library.answersOfRun(run->id);
        return std::ranges::find(answers, AnswerState::running, &ModelAnswer::state) != answers.end();
    };
    QuorlBatch batch = *found;
    batch.status = std::ranges::any_of(library.runsOfBatch(batchID), isRunning) ? BatchStatus::running
                                                                                : BatchStatus::done;
    if (batch.status == found->status)
        return;
    library.replaceBatch(batch);
    alertOnFailure([&] { store->setBatchStatus(batchID, batch.status); });
}

void AppModel::settleBatches() {
    std::vector<UUID> ids;
    for (const QuorlBatch& batch : library.batches())
        ids.push_back(batch.id);
    for (const UUID& id : ids)
        refreshBatchStatus(id);
}

} // namespace quorl
