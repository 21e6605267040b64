#pragma once

#include "base/UUID.h"

#include <unordered_set>

namespace quorl {

// The rows that were written, or were tried to be, in terms of what has to be read again. A row that is named
// here need not have changed, and need not exist. Thread: main.
struct TouchedRows {
    bool models = false;     // the whole table
    bool categories = false; // the whole table
    std::unordered_set<UUID> runs;
    std::unordered_set<UUID> batches;
    std::unordered_set<UUID> examples;
    std::unordered_set<UUID> answers;       // by their own id, wherever they stand
    std::unordered_set<UUID> answersOfRuns; // all answers of a run

    /// Adds what `other` names.
    void merge(TouchedRows&& other) {
        models = models || other.models;
        categories = categories || other.categories;
        runs.merge(other.runs);
        batches.merge(other.batches);
        examples.merge(other.examples);
        answers.merge(other.answers);
        answersOfRuns.merge(other.answersOfRuns);
    }
};

} // namespace quorl
