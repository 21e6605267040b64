#pragma once

#include "base/ThreadSafety.h"
#include "sample-endpoint/Format.h"
#include "sample-endpoint/Reply.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quorl::sample {

// What a model is told to answer: a completion, in the format of the request, or the very bytes.
using Answer = std::variant<Completion, Reply>;

// In place of a model's id: all models that have been told nothing of their own.
inline constexpr std::string_view everyModel = "*";

// What the models have been told to answer and to refuse. Thread: any. Failures: none.
class Script {
public:
    /// From now on, one after the other; the last one stays.
    void set(std::string_view model, std::vector<Answer> answers);

    void refuse(std::string_view model, std::string_view parameter);

    /// The model's next answer, else everyone's; nothing where neither has been told.
    [[nodiscard]] std::optional<Answer> next(std::string_view model);

    /// Everyone's next answer if it stands for itself, for a request from which no question can be read.
    [[nodiscard]] std::optional<Reply> nextForAnyRequest();

    /// The first of the question's parameters that its model or everyone refuses.
    [[nodiscard]] std::optional<std::string> refusedParameter(const Question& question) const;

private:
    using Turns = std::deque<Answer>;

    [[nodiscard]] Turns* turnsOf(std::string_view model) REQUIRES(lock);

    mutable Mutex lock;
    std::map<std::string, Turns, std::less<>> told GUARDED_BY(lock);
    std::set<std::pair<std::string, std::string>> refused GUARDED_BY(lock); // model and parameter
};

} // namespace quorl::sample
