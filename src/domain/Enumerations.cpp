#include "domain/Enumerations.h"

namespace quorl {

namespace {

// The first of `all` whose raw string is `raw`.
template <class Enumeration, std::size_t count>
std::optional<Enumeration> findRaw(std::string_view raw, const std::array<Enumeration, count>& all) {
    for (const Enumeration value : all) {
        if (rawString(value) == raw)
            return value;
    }
    return std::nullopt;
}

} // namespace

std::string_view rawString(ProviderKind kind) {
    switch (kind) {
    case ProviderKind::zun:
        return "zun";
    case ProviderKind::nuvel:
        return "nuvel";
    case ProviderKind::openAIDecisions:
        return "openAIDecisions";
    case ProviderKind::veritor:
        return "veritor";
    case ProviderKind::openAI:
        return "openAI";
    case ProviderKind::anthropic:
        return "anthropic";
    case ProviderKind::amazonBedrock:
        return "amazonBedrock";
    case ProviderKind::openAICompatible:
        return "openAICompatible";
    case ProviderKind::claudeCode:
        return "claudeCode";
    case ProviderKind::codex:
        return "codex";
    }
    __builtin_unreachable();
}

std::string_view rawString(QuorlKind kind) {
    switch (kind) {
    case QuorlKind::decision:
        return "decision";
    case QuorlKind::generation:
        return "generation";
    }
    __builtin_unreachable();
}

std::string_view rawString(ScoringMode mode) {
    switch (mode) {
    case ScoringMode::binary:
        return "binary";
    case ScoringMode::scale:
        return "scale";
    }
    __builtin_unreachable();
}

std::string_view rawString(RunOrigin origin) {
    switch (origin) {
    case RunOrigin::app:
        return "app";
    case RunOrigin::api:
        return "api";
    }
    __builtin_unreachable();
}

std::string_view rawString(BatchStatus status) {
    switch (status) {
    case BatchStatus::running:
        return "running";
    case BatchStatus::done:
        return "done";
    }
    __builtin_unreachable();
}

std::string_view rawString(AnswerState state) {
    switch (state) {
    case AnswerState::running:
        return "running";
    case AnswerState::done:
        return "done";
    case AnswerState::failed:
        return "failed";
    }
    __builtin_unreachable();
}

std::optional<ProviderKind> providerKindFrom(std::string_view raw) {
    return findRaw(raw, allProviderKinds);
}

std::optional<QuorlKind> quorlKindFrom(std::string_view raw) {
    return findRaw(raw, std::array{QuorlKind::decision, QuorlKind::generation});
}

std::optional<ScoringMode> scoringModeFrom(std::string_view raw) {
    return findRaw(raw, std::array{ScoringMode::binary, ScoringMode::scale});
}

std::optional<RunOrigin> runOriginFrom(std::string_view raw) {
    return findRaw(raw, std::array{RunOrigin::app, RunOrigin::api});
}

std::optional<BatchStatus> batchStatusFrom(std::string_view raw) {
    return findRaw(raw, std::array{BatchStatus::running, BatchStatus::done});
}

std::optional<AnswerState> answerStateFrom(std::string_view raw) {
    return findRaw(raw, std::array{AnswerState::running, AnswerState::done, AnswerState::failed});
}

std::string_view title(ProviderKind kind) {
    switch (kind) {
    case ProviderKind::zun:
        return "Zun";
    case ProviderKind::nuvel:
        return "Nuvel";
    case ProviderKind::openAIDecisions:
        return "OpenAI Decisions";
    case ProviderKind::veritor:
        return "Veritor";
    case ProviderKind::openAI:
        return "OpenAI";
    case ProviderKind::anthropic:
        return "Anthropic";
    case ProviderKind::amazonBedrock:
        return "Amazon Bedrock";
    case ProviderKind::openAICompatible:
        return "OpenAI-compatible";
    case ProviderKind::claudeCode:
        return "Claude Code";
    case ProviderKind::codex:
        return "Codex";
    }
    __builtin_unreachable();
}

std::string_view title(QuorlKind kind) {
    switch (kind) {
    case QuorlKind::decision:
        return "Decision";
    case QuorlKind::generation:
        return "Generation";
    }
    __builtin_unreachable();
}

std::string_view title(ScoringMode mode) {
    switch (mode) {
    case ScoringMode::binary:
        return "Yes / No";
    case ScoringMode::scale:
        return "Rating";
    }
    __builtin_unreachable();
}

std::string_view transportTitle(ProviderKind kind) {
    if (kind == ProviderKind::claudeCode || kind == ProviderKind::codex)
        return "Local CLI";
    if (kind == ProviderKind::openAIDecisions)
        return "Decisions API";
    return family(kind) == QuorlKind::decision ? "Veritor" : "Direct API";
}

std::string_view defaultModelIdentifier(ProviderKind kind) {
    switch (kind) {
    case ProviderKind::zun:
        return "zun-latest";
    case ProviderKind::nuvel:
        return "d41ce07/nuvel-mlx";
    case ProviderKind::openAIDecisions:
        return "gpt-5.6-luna";
    case ProviderKind::openAI:
        return "gpt-4.1";
    case ProviderKind::anthropic:
        return "claude-sonnet-4-5";
    case ProviderKind::amazonBedrock:
        return "amazon.nova-pro-v1:0";
    case ProviderKind::claudeCode:
        return "sonnet";
    case ProviderKind::veritor:
    case ProviderKind::openAICompatible:
    case ProviderKind::codex:
        return "";
    }
    __builtin_unreachable();
}

QuorlKind family(ProviderKind kind) {
    return kind <= ProviderKind::veritor ? QuorlKind::decision : QuorlKind::generation;
}

} // namespace quorl
