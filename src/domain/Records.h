#pragma once

#include "base/Date.h"
#include "base/UUID.h"
#include "domain/Enumerations.h"

#include <cstdint>
#include <optional>
#include <string>

// The records that every part of the program passes around: plain values, compared field by field, known by
// their `id`. A text is never null; "nothing" in a text that is not optional is the empty text. Thread: any.
namespace quorl {

// One configured model.
struct ModelProfile {
    UUID id;
    std::string name;
    ProviderKind provider = ProviderKind::openAI;
    std::string modelIdentifier;      // the provider's id of the model; may be empty where the kind allows it
    std::string endpoint;             // base URL, or the region of `amazonBedrock`; may be empty
    std::string executablePath;       // the local tool; empty until one is set or found
    double inputPricePerMillion = 0;  // US dollars per million tokens
    double outputPricePerMillion = 0; // US dollars per million tokens
    std::int64_t maxOutputTokens = 0;
    bool enabled = false;
    std::string notes;
    std::int64_t sortIndex = 0; // lists sort by it, then by name

    bool operator==(const ModelProfile&) const = default;
};

// A node of the two-level category tree.
struct Category {
    UUID id;
    std::string name;
    std::optional<UUID> parentID; // absent for a root
    std::int64_t sortIndex = 0;   // lists sort by it, then by name

    bool operator==(const Category&) const = default;
};

// One comparison: one question put to several models.
struct QuorlRun {
    UUID id;
    QuorlKind kind = QuorlKind::decision;
    std::string prompt; // the question, or the state text of a decision
    std::string systemPrompt;
    std::optional<UUID> categoryID;
    ScoringMode scoringMode = ScoringMode::binary;
    Date createdAt{};
    std::string questionsJSON; // the typed questions as they are stored; empty for a generation run
    std::optional<UUID> batchID;
    RunOrigin origin = RunOrigin::app;

    bool operator==(const QuorlRun&) const = default;
};

// A named group of runs.
struct QuorlBatch {
    UUID id;
    std::string name;
    RunOrigin source = RunOrigin::api;
    QuorlKind kind = QuorlKind::decision;
    Date createdAt{};
    BatchStatus status = BatchStatus::running;

    bool operator==(const QuorlBatch&) const = default;
};

// What one model did in one run. Made in state `running` before the request is sent, rewritten when the
// outcome arrives.
struct ModelAnswer {
    UUID id;
    UUID runID;
    UUID modelID;          // may name a profile that has been deleted since
    std::string modelName; // the profile's name at the time
    ProviderKind provider = ProviderKind::openAI;
    std::int64_t position = 0; // zero-based place among the run's answers
    AnswerState state = AnswerState::running;
    std::string text; // for a decision run the response itself, as pretty JSON
    std::int64_t latencyMS = 0;
    std::optional<std::int64_t> inputTokens;
    std::optional<std::int64_t> outputTokens;
    bool tokensEstimated = false;
    std::optional<double> costUSD;
    std::optional<std::string> errorMessage;
    bool chosenCorrect = false;
    std::optional<bool> accepted;
    std::optional<std::int64_t> rating; // 1 to 10
    std::optional<UUID> datasetID;

    bool operator==(const ModelAnswer&) const = default;
};

// One saved example: a free-standing copy that outlives the run and the answer it came from.
struct DatasetExample {
    UUID id;
    Date createdAt{};
    std::optional<UUID> categoryID;
    QuorlKind kind = QuorlKind::decision;
    std::string prompt;
    std::string systemPrompt;
    std::string completion; // the target text
    std::string modelName;
    ProviderKind provider = ProviderKind::openAI;
    std::optional<std::int64_t> rating;
    std::optional<bool> accepted;
    UUID answerID; // may name an answer that is gone

    bool operator==(const DatasetExample&) const = default;
};

} // namespace quorl
