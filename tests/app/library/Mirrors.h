#pragma once

#include "app/Library.h"
#include "store/QuorlStore.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace quorl::test {

// All that a library's mirrors hold, as plain values that can be compared.
struct Mirrors {
    std::vector<ModelProfile> models;
    std::vector<Category> categories;
    std::vector<QuorlRun> runs;
    std::vector<QuorlBatch> batches;
    std::map<UUID, std::vector<ModelAnswer>> answersByRun;
    std::vector<DatasetExample> dataset;

    bool operator==(const Mirrors&) const = default;
};

inline Mirrors mirrorsOf(const Library& library) {
    Mirrors mirrors;
    mirrors.models = library.models();
    mirrors.categories = library.categories();
    for (std::size_t place = 0; place < library.runCount(); ++place)
        mirrors.runs.push_back(library.runAt(place));
    for (const QuorlBatch& batch : library.batches())
        mirrors.batches.push_back(batch);
    for (const UUID& runID : library.runsWithAnswers()) {
        const auto answers = library.answersOfRun(runID);
        mirrors.answersByRun[runID] = {answers.begin(), answers.end()};
    }
    for (const DatasetExample& example : library.dataset())
        mirrors.dataset.push_back(example);
    return mirrors;
}

/// What reading the six tables gives, where models and categories stay as they are in `before` if they cannot
/// be read.
inline Mirrors mirrorsInFile(QuorlStore& store, const Mirrors& before = {}) {
    const auto attempt = [](auto load, auto otherwise) {
        try {
            return load();
        } catch (const StoreError&) {
            return otherwise;
        }
    };
    Mirrors mirrors;
    mirrors.models = attempt([&] { return store.loadModels(); }, before.models);
    mirrors.categories = attempt([&] { return store.loadCategories(); }, before.categories);
    mirrors.runs = attempt([&] { return store.loadRuns(); }, std::vector<QuorlRun>{});
    mirrors.batches = attempt([&] { return store.loadBatches(); }, std::vector<QuorlBatch>{});
    for (ModelAnswer& answer : attempt([&] { return store.loadAnswers(); }, std::vector<ModelAnswer>{}))
        mirrors.answersByRun[answer.runID].push_back(std::move(answer));
    for (auto& [runID, answers] : mirrors.answersByRun)
        std::ranges::stable_sort(answers, {}, &ModelAnswer::position);
    mirrors.dataset = attempt([&] { return store.loadDataset(); }, std::vector<DatasetExample>{});
    return mirrors;
}

/// The runs of a batch, found the long way.
inline std::vector<UUID> idsOfBatch(const Mirrors& mirrors, const UUID& batchID) {
    std::vector<QuorlRun> runs;
    for (const QuorlRun& run : mirrors.runs) {
        if (run.batchID == batchID)
            runs.push_back(run);
    }
    std::ranges::stable_sort(runs, {}, &QuorlRun::createdAt);
    std::vector<UUID> ids;
    for (const QuorlRun& run : runs)
        ids.push_back(run.id);
    return ids;
}

} // namespace quorl::test
