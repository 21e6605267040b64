#include "app/AppModel.h"

#include "store/QuorlStore.h"

namespace quorl {

void AppModel::refreshBatchStatus(const UUID& batchID) {
    const QuorlBatch* found = library.findBatch(batchID);
    if (!found)
        return;
    const BatchStatus status = library.isBatchRunning(batchID) ? BatchStatus::running : BatchStatus::done;
    if (status == found->status)
        return;
    QuorlBatch batch = *found;
    batch.status = status;
    library.replaceBatch(batch);
    alertOnFailure([&] { store->setBatchStatus(batchID, status); });
}

void AppModel::settleBatches() {
    std::vector<UUID> ids;
    for (const QuorlBatch& batch : library.batches())
        ids.push_back(batch.id);
    for (const UUID& id : ids)
        refreshBatchStatus(id);
}

} // namespace quorl
