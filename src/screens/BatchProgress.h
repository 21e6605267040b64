#pragma once

#include <QString>

namespace quorl {

class Library;
struct QuorlBatch;

// How far a batch is. Thread: main.
struct BatchProgress {
    int ended = 0; // answers, done or failed
    int all = 0;   // none where nobody wants to know: of a batch that does not run

    /// Empty for a batch that does not run.
    [[nodiscard]] static BatchProgress of(const Library& library, const QuorlBatch& batch);

    [[nodiscard]] double share() const { return all > 0 ? static_cast<double>(ended) / all : 0; }
    /// "3 of 20", and "3 of 20 answers"; empty where there is no progress.
    [[nodiscard]] QString figures() const;
    [[nodiscard]] QString words() const;

    bool operator==(const BatchProgress&) const = default;
};

} // namespace quorl
