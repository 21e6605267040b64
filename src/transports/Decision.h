#pragma once

#include "decision/DecisionQuestion.h"
#include "domain/Records.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The values that pass between the model and the ways of reaching a provider. Thread: any.
namespace quorl {

// What every transport is given.
struct DecisionRequest {
    std::string prompt; // the question, or the state that a decision is about
    std::string systemPrompt;
    QuorlKind kind = QuorlKind::decision;
    ModelProfile model;
    std::vector<DecisionQuestion> questions; // used only for a decision
};

// What a transport gives back.
struct RawDecision {
    std::string text;                         // the answer as it is stored
    std::optional<std::int64_t> inputTokens;  // as the provider reported
    std::optional<std::int64_t> outputTokens; // as the provider reported
    bool tokensEstimated = false;
    std::optional<double> reportedCost; // US dollars, as the provider reported
    std::optional<std::string> errorMessage;

    bool operator==(const RawDecision&) const = default;

    /// A call that failed with `message` and left nothing else.
    [[nodiscard]] static RawDecision failed(std::string message);
};

// What becomes of an answer.
struct DecisionOutcome {
    std::string text;
    std::int64_t latencyMS = 0; // milliseconds of the whole call, never negative
    std::optional<std::int64_t> inputTokens;
    std::optional<std::int64_t> outputTokens;
    bool tokensEstimated = false; // at least one count was estimated
    std::optional<double> costUSD;
    std::optional<std::string> errorMessage;

    bool operator==(const DecisionOutcome&) const = default;
};

} // namespace quorl
