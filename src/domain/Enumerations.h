#pragma once

#include <array>
#include <optional>
#include <string_view>

// The enumerations of the domain. Their raw strings are what the library, the user defaults and the API hold;
// `…From` answers nothing for a string that is none of them. Thread: any.
namespace quorl {

// How a model is reached. The first four are the decision family, the other six the generation family. The
// order is that of every list and picker.
enum class ProviderKind {
    zun,
    nuvel,
    openAIDecisions,
    veritor,
    openAI,
    anthropic,
    amazonBedrock,
    openAICompatible,
    claudeCode,
    codex,
};

inline constexpr std::array allProviderKinds{
    ProviderKind::zun,
    ProviderKind::nuvel,
    ProviderKind::openAIDecisions,
    ProviderKind::veritor,
    ProviderKind::openAI,
    ProviderKind::anthropic,
    ProviderKind::amazonBedrock,
    ProviderKind::openAICompatible,
    ProviderKind::claudeCode,
    ProviderKind::codex,
};

// What a comparison asks for: typed results, or free text.
enum class QuorlKind { decision, generation };

// How answers are judged: through `accepted`, or through `rating`.
enum class ScoringMode { binary, scale };

// Who started a run or a batch.
enum class RunOrigin { app, api };

enum class BatchStatus { running, done };

enum class AnswerState { running, done, failed };

[[nodiscard]] std::string_view rawString(ProviderKind);
[[nodiscard]] std::string_view rawString(QuorlKind);
[[nodiscard]] std::string_view rawString(ScoringMode);
[[nodiscard]] std::string_view rawString(RunOrigin);
[[nodiscard]] std::string_view rawString(BatchStatus);
[[nodiscard]] std::string_view rawString(AnswerState);

[[nodiscard]] std::optional<ProviderKind> providerKindFrom(std::string_view raw);
[[nodiscard]] std::optional<QuorlKind> quorlKindFrom(std::string_view raw);
[[nodiscard]] std::optional<ScoringMode> scoringModeFrom(std::string_view raw);
[[nodiscard]] std::optional<RunOrigin> runOriginFrom(std::string_view raw);
[[nodiscard]] std::optional<BatchStatus> batchStatusFrom(std::string_view raw);
[[nodiscard]] std::optional<AnswerState> answerStateFrom(std::string_view raw);

/// The words shown.
[[nodiscard]] std::string_view title(ProviderKind);
[[nodiscard]] std::string_view title(QuorlKind);
[[nodiscard]] std::string_view title(ScoringMode);

/// The way a kind is reached, in the words shown: "Local CLI", "Decisions API", "Veritor" or "Direct API".
[[nodiscard]] std::string_view transportTitle(ProviderKind);

/// The model id that a new model of the kind starts with; may be empty.
[[nodiscard]] std::string_view defaultModelIdentifier(ProviderKind);

/// The kind of comparison that models of this kind answer.
[[nodiscard]] QuorlKind family(ProviderKind);

} // namespace quorl
