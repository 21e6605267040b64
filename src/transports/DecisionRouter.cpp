#include "transports/DecisionRouter.h"

#include "base/Text.h"
#include "decision/HostedNuvel.h"
#include "decision/Veritor.h"
#include "transports/AnthropicTransport.h"
#include "transports/BedrockTransport.h"
#include "transports/ClaudeCodeTransport.h"
#include "transports/CodexTransport.h"
#include "transports/ExecutableResolver.h"
#include "transports/NuvelLocal.h"
#include "transports/NuvelLocalTransport.h"
#include "transports/OpenAITransport.h"
#include "transports/VeritorTransport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace quorl {

namespace {

constexpr const char* keyMissing = "Add an API key in Models.";
constexpr const char* modelMissing = "Set a model id in Models.";
constexpr const char* baseURLMissing = "Set a base URL in Models.";

// Each of these answers the first problem that keeps the model from being asked.
using Problem = std::optional<std::string>;

Problem decisionFamilyProblem(const ModelProfile& model, const ModelSecret& secret) {
    const bool hasKey = secret.satisfies(model.provider);
    if (model.provider == ProviderKind::nuvel && !NuvelLocal::usesHTTP(model))
        return NuvelLocal::findExecutable(model.executablePath) ? std::nullopt
                                                                : Problem(NuvelLocal::notFound);
    if (model.provider == ProviderKind::nuvel) {
        const bool needsKey = Veritor::isHostedNuvel(model.endpoint);
        return needsKey && !hasKey ? Problem(Veritor::hostedKeyMessage()) : std::nullopt;
    }
    if (model.provider == ProviderKind::veritor)
        return Text::isBlank(model.endpoint) ? Problem(baseURLMissing) : std::nullopt;
    if (!hasKey)
        return keyMissing;
    return Text::isBlank(model.modelIdentifier) ? Problem(modelMissing) : std::nullopt;
}

Problem generationFamilyProblem(const ModelProfile& model, const ModelSecret& secret) {
    const bool hasKey = secret.satisfies(model.provider);
    const bool hasModel = !Text::isBlank(model.modelIdentifier);
    switch (model.provider) {
    case ProviderKind::openAI:
    case ProviderKind::anthropic:
        if (!hasKey)
            return keyMissing;
        return hasModel ? std::nullopt : Problem(modelMissing);
    case ProviderKind::amazonBedrock:
        if (!hasKey)
            return "Add an AWS access key and secret in Models.";
        return hasModel ? std::nullopt : Problem("Set a Bedrock model id in Models.");
    case ProviderKind::openAICompatible:
        if (Text::isBlank(model.endpoint))
            return baseURLMissing;
        if (!hasModel)
            return modelMissing;
        return hasKey ? std::nullopt : Problem(keyMissing);
    case ProviderKind::claudeCode:
    case ProviderKind::codex:
        if (ExecutableResolver::find(model.provider, model.executablePath))
            return std::nullopt;
        return "Couldn't find the " + std::string(title(model.provider)) + " CLI. Set its path in Models.";
    case ProviderKind::zun:
    case ProviderKind::nuvel:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
        return std::nullopt;
    }
    __builtin_unreachable();
}

Problem preflight(const DecisionRequest& request, const ModelSecret& secret) {
    if (family(request.model.provider) == QuorlKind::generation)
        return generationFamilyProblem(request.model, secret);
    if (Problem problem = decisionFamilyProblem(request.model, secret))
        return problem;
    if (request.kind == QuorlKind::decision)
        return Veritor::validate(request.prompt, request.questions);
    return std::nullopt;
}

// A model is asked only what its family answers.
Problem familyProblem(const DecisionRequest& request) {
    if (family(request.model.provider) == request.kind)
        return std::nullopt;
    return request.kind == QuorlKind::generation
               ? "This model answers typed decisions. Switch the comparison to Decision."
               : "Decision comparisons use Veritor models such as Zun and Nuvel.";
}

// Four bytes to a token, as a rule of thumb.
std::int64_t estimatedTokens(std::size_t bytes) {
    return std::max<std::int64_t>(static_cast<std::int64_t>(bytes / 4), 1);
}

void estimateMissingTokens(DecisionOutcome& outcome, const DecisionRequest& request) {
    if (outcome.inputTokens && outcome.outputTokens)
        return;
    outcome.tokensEstimated = true;
    if (!outcome.inputTokens)
        outcome.inputTokens = estimatedTokens(request.systemPrompt.size() + 1 + request.prompt.size());
    if (!outcome.outputTokens && !outcome.text.empty())
        outcome.outputTokens = estimatedTokens(outcome.text.size());
}

// A model without prices has no known cost, which is not the same as none.
std::optional<double> cost(const DecisionOutcome& outcome, const ModelProfile& model) {
    const bool hasPrice = std::max(model.inputPricePerMillion, model.outputPricePerMillion) > 0;
    if (!hasPrice || !outcome.inputTokens || !outcome.outputTokens)
        return std::nullopt;
    const double dollars = (model.inputPricePerMillion * static_cast<double>(*outcome.inputTokens) +
                            model.outputPricePerMillion * static_cast<double>(*outcome.outputTokens)) /
                           1'000'000.0;
    // JSON has no infinity: one such cost would make every payload with this answer unwritable.
    return std::isfinite(dollars) ? std::optional(dollars) : std::nullopt;
}

} // namespace

DecisionOutcome DecisionRouter::complete(const DecisionRequest& request, const ModelSecret& secret,
                                         const std::filesystem::path& scratch) const {
    const auto start = std::chrono::steady_clock::now();
    RawDecision raw = dispatchWithinMemory(request, secret, scratch);
    const auto latency = std::chrono::steady_clock::now() - start;

    DecisionOutcome outcome;
    outcome.text = std::move(raw.text);
    outcome.latencyMS = std::chrono::duration_cast<std::chrono::milliseconds>(latency).count();
    outcome.inputTokens = raw.inputTokens;
    outcome.outputTokens = raw.outputTokens;
    outcome.tokensEstimated = raw.tokensEstimated;
    outcome.errorMessage = std::move(raw.errorMessage);
    if (!outcome.errorMessage)
        estimateMissingTokens(outcome, request);
    outcome.costUSD = raw.reportedCost ? raw.reportedCost : cost(outcome, request.model);
    return outcome;
}

// How long a question and an answer may be is up to others; one too long for this machine costs its own card
// and not the program.
RawDecision DecisionRouter::dispatchWithinMemory(const DecisionRequest& request, const ModelSecret& secret,
                                                 const std::filesystem::path& scratch) const {
    try {
        return dispatch(request, secret, scratch);
    } catch (const std::bad_alloc&) {
        return RawDecision::failed("There is not enough memory to ask this model.");
    }
}

RawDecision DecisionRouter::dispatch(const DecisionRequest& request, const ModelSecret& secret,
                                     const std::filesystem::path& scratch) const {
    if (Problem problem = preflight(request, secret))
        return RawDecision::failed(*std::move(problem));
    if (Problem problem = familyProblem(request))
        return RawDecision::failed(*std::move(problem));
    switch (request.model.provider) {
    case ProviderKind::nuvel:
        if (!NuvelLocal::usesHTTP(request.model))
            return NuvelLocalTransport::complete(request, scratch);
        return VeritorTransport::complete(session, request, secret);
    case ProviderKind::zun:
    case ProviderKind::openAIDecisions:
    case ProviderKind::veritor:
        return VeritorTransport::complete(session, request, secret);
    case ProviderKind::openAI:
    case ProviderKind::openAICompatible:
        return OpenAITransport::complete(session, request, secret);
    case ProviderKind::anthropic:
        return AnthropicTransport::complete(session, request, secret);
    case ProviderKind::amazonBedrock:
        return BedrockTransport::complete(session, request, secret);
    case ProviderKind::claudeCode:
        return ClaudeCodeTransport::complete(request, scratch);
    case ProviderKind::codex:
        return CodexTransport::complete(request, scratch);
    }
    __builtin_unreachable();
}

} // namespace quorl
