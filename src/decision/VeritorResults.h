#pragma once

#include "decision/DecisionQuestion.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Reading a decision response: what is stored of it, and what is derived from the stored text whenever it is
// shown. The stored text is the only source, so the card, the summary and a restart always agree. Thread:
// any. Failures: empty results.
namespace quorl {

// The typed reading of one answer.
struct DecisionResult {
    struct Signal {
        std::string label;
        std::int64_t percent = 0;

        bool operator==(const Signal&) const = default;
    };

    std::string key;                        // the question's key in the response
    std::string prompt;                     // the question as it is shown
    std::string answer;                     // the answer as it is shown
    std::optional<std::int64_t> confidence; // percent
    std::vector<Signal> signals;            // probabilities, highest first
    std::vector<std::string> choiceOptions; // of a choice: its labels as stored

    bool operator==(const DecisionResult&) const = default;
};

namespace Veritor {

// What one response body yields.
struct Interpreted {
    std::string pretty;  // the body as pretty JSON, or its raw text
    std::string summary; // lines for a plain view; empty if there are no answers
    std::optional<std::int64_t> inputTokens;
    std::optional<std::int64_t> outputTokens;
    std::optional<std::string> error; // what the response itself reports as wrong

    bool operator==(const Interpreted&) const = default;
};

[[nodiscard]] Interpreted interpret(std::string_view body);

/// The summary of a stored answer text, or the text itself where it has none.
[[nodiscard]] std::string summary(std::string_view text);

/// One line a question of a run's stored questions; empty if there are none.
[[nodiscard]] std::string preview(std::string_view questionsJSON);

/// The typed results in a stored answer text, in ascending order of their keys.
[[nodiscard]] std::vector<DecisionResult> decisionResults(std::string_view text,
                                                          const std::vector<DecisionQuestion>& questions);

/// The stored text with the chosen labels (by question key) in place of the model's choices and without the
/// probabilities that belonged to those; nothing if any key names no choice in it, or if there are no choices
/// at all.
[[nodiscard]] std::optional<std::string>
applyingChoiceCorrections(std::string_view text, const std::map<std::string, std::string>& choices);

} // namespace Veritor
} // namespace quorl
