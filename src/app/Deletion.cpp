#include "app/AppModel.h"

#include "store/QuorlStore.h"

#include <algorithm>

namespace quorl {

namespace {

// A check that fails is no obstacle.
template <class Check>
bool holds(Check check) {
    try {
        return check();
    } catch (const StoreError&) {
        return false;
    }
}

} // namespace

void AppModel::requestDelete(const PendingDelete& pending) {
    if (pending.kind == PendingDelete::Kind::category) {
        if (holds([&] { return store->countChildren(pending.target) > 0; })) {
            alertMessage = "Remove its subcategories first.";
            return;
        }
        if (holds([&] { return store->categoryInUse(pending.target); })) {
            alertMessage = "Comparisons or dataset rows still use this category.";
            return;
        }
    }
    pendingDelete = pending;
}

// In every case memory follows the request even when the file did not: what is gone from the screen may come
// back at the next start.
void AppModel::confirmDelete() {
    if (!*pendingDelete)
        return;
    const PendingDelete pending = **pendingDelete;
    pendingDelete = std::nullopt;
    switch (pending.kind) {
    case PendingDelete::Kind::model:
        return deleteModel(pending.target);
    case PendingDelete::Kind::category:
        return deleteCategory(pending.target);
    case PendingDelete::Kind::run:
        return deleteRun(pending.target);
    case PendingDelete::Kind::example:
        return removeExample(pending.target);
    case PendingDelete::Kind::batch:
        return deleteBatch(pending.target);
    }
}

void AppModel::deleteModel(const UUID& id) {
    alertOnFailure([&] { store->deleteModel(id); });
    secrets.clear(id);
    library.removeModel(id);
    std::set<UUID> chosen = *draftModelIDs;
    chosen.erase(id);
    draftModelIDs = std::move(chosen);
    if (*selectedModelID == id) {
        const auto& left = library.models();
        selectedModelID = left.empty() ? std::nullopt : std::optional(left.front().id);
    }
}

void AppModel::deleteCategory(const UUID& id) {
    alertOnFailure([&] { store->deleteCategory(id); });
    library.removeCategory(id);
    if (*draftCategoryID == id)
        draftCategoryID = std::nullopt;
    if (*selectedCategoryID == id)
        selectedCategoryID = std::nullopt;
}

void AppModel::deleteRun(const UUID& id) {
    const QuorlRun* found = library.findRun(id);
    const std::optional<UUID> batchID = found ? found->batchID : std::nullopt;
    alertOnFailure([&] { store->deleteRun(id); });
    library.removeRun(id);
    if (*activeRunID == id)
        activeRunID = std::nullopt;
    if (*destination == Destination(RunScreen{id}))
        destination = Screen::draft;
    // What was running here will not be missed any more when it comes, and clients wait for the batch.
    if (batchID)
        refreshBatchStatus(*batchID);
}

// A run of a batch on the screen goes back to the batches, where such a run came from. `activeRunID` stays.
void AppModel::deleteBatch(const UUID& id) {
    std::vector<UUID> runIDs;
    for (const QuorlRun* run : library.runsOfBatch(id))
        runIDs.push_back(run->id);
    alertOnFailure([&] { store->deleteBatch(id); });
    for (const UUID& runID : runIDs)
        library.removeRun(runID);
    library.removeBatch(id);
    if (*selectedBatchID == id)
        selectedBatchID = std::nullopt;
    const RunScreen* shown = std::get_if<RunScreen>(&*destination);
    if (shown && std::ranges::find(runIDs, shown->runID) != runIDs.end())
        destination = Screen::batches;
}

void AppModel::removeExample(UUID id) {
    const DatasetExample* example = library.findExample(id);
    if (!example)
        return;
    const UUID answerID = example->answerID;
    alertOnFailure([&] { store->deleteExample(id); });
    library.removeExample(id);
    const ModelAnswer* found = library.findAnswer(answerID);
    if (!found || found->datasetID != id)
        return;
    ModelAnswer answer = *found; // its judgements stay
    answer.datasetID.reset();
    library.replaceAnswer(answer);
    alertOnFailure([&] { store->updateJudgment(answer); });
}

} // namespace quorl
