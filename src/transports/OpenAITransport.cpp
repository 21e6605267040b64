#include "transports/OpenAITransport.h"

#include "base/Attempt.h"
#include "base/Json.h"
#include "base/Text.h"
#include "domain/ServiceHosts.h"
#include "transports/HTTPJSON.h"
#include "transports/HTTPSession.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quorl::OpenAITransport {

namespace {

// The two names that servers know the limit on an answer's tokens by; newer models refuse the older one.
enum class TokenParameter { maxTokens, maxCompletionTokens };

std::string_view name(TokenParameter parameter) {
    switch (parameter) {
    case TokenParameter::maxTokens:
        return "max_tokens";
    case TokenParameter::maxCompletionTokens:
        return "max_completion_tokens";
    }
    __builtin_unreachable();
}

TokenParameter other(TokenParameter parameter) {
    return parameter == TokenParameter::maxTokens ? TokenParameter::maxCompletionTokens
                                                  : TokenParameter::maxTokens;
}

template <std::size_t count>
bool startsWithAny(std::string_view text, const std::array<std::string_view, count>& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](std::string_view prefix) { return text.starts_with(prefix); });
}

TokenParameter firstParameter(std::string_view modelIdentifier) {
    constexpr std::array<std::string_view, 4> newer{"gpt-5", "o1", "o3", "o4"};
    return startsWithAny(Text::lowercased(modelIdentifier), newer) ? TokenParameter::maxCompletionTokens
                                                                   : TokenParameter::maxTokens;
}

bool takesTemperature(std::string_view modelIdentifier) {
    constexpr std::array<std::string_view, 3> fixed{"o1", "o3", "o4"};
    return !startsWithAny(Text::lowercased(modelIdentifier), fixed);
}

// Only the words decide, whatever the status that they came with.
bool isAboutTokenParameter(std::string_view message) {
    const std::string words = Text::lowercased(message);
    return words.find(name(TokenParameter::maxTokens)) != std::string::npos ||
           words.find(name(TokenParameter::maxCompletionTokens)) != std::string::npos;
}

// From the base or from the full path, whichever the user has pasted.
std::optional<std::string> chatURL(std::string_view endpoint, ProviderKind provider) {
    constexpr std::string_view path = "/chat/completions";
    std::string_view base = Text::trimmed(endpoint);
    if (base.empty() && provider != ProviderKind::openAI)
        return std::nullopt;
    if (base.empty())
        base = ServiceHosts::openAIAPI;
    std::string url(Text::withoutTrailing(base, '/'));
    if (!url.ends_with(path))
        url += path;
    return HTTPSession::isURL(url) ? std::optional(std::move(url)) : std::nullopt;
}

std::optional<std::string> requestBody(const DecisionRequest& request, TokenParameter parameter) {
    Json::Value messages = Json::Value::array();
    if (!Text::isBlank(request.systemPrompt))
        messages.push_back({{"role", "system"}, {"content", request.systemPrompt}});
    messages.push_back({{"role", "user"}, {"content", request.prompt}});
    Json::Value body{{"model", request.model.modelIdentifier}, {"messages", std::move(messages)}};
    body[std::string(name(parameter))] = request.model.maxOutputTokens;
    if (request.kind == QuorlKind::decision && takesTemperature(request.model.modelIdentifier))
        body["temperature"] = 0;
    return Json::write(body);
}

std::string messageText(const Json::Value& reply) {
    const Json::Value* const choices = Json::find(reply, "choices");
    if (!HTTPJSON::isArrayOfObjects(choices) || choices->empty())
        return "";
    const Json::Value& first = choices->front();
    const Json::Value* const content = Json::find(Json::object(Json::find(first, "message")), "content");
    if (const std::string* const text = Json::text(content))
        return *text;
    if (HTTPJSON::isArrayOfObjects(content))
        return HTTPJSON::joinedText(content);
    const std::string* const text = Json::text(Json::find(first, "text")); // a completion-style server
    return text ? *text : "";
}

Attempt<RawDecision> send(HTTPSession& session, const DecisionRequest& request, const ModelSecret& secret,
                          TokenParameter parameter) {
    using Outcome = Attempt<RawDecision>;
    const auto url = chatURL(request.model.endpoint, request.model.provider);
    if (!url)
        return Outcome::failure("The base URL is not valid.");
    auto body = requestBody(request, parameter);
    if (!body)
        return Outcome::failure("Couldn't encode the request.");
    const std::string key(Text::trimmed(secret.apiKey));
    const auto reply = session.post(
        *url, {{"Authorization", "Bearer " + key}, {"Content-Type", "application/json"}}, *std::move(body));
    if (!reply)
        return Outcome::failure(reply.message());
    if (!HTTPJSON::isSuccess(reply.value().status))
        return Outcome::failure(HTTPJSON::failure(reply.value().body, reply.value().status, {key}));
    const auto json = Json::parseObject(reply.value().body);
    if (!json)
        return Outcome::failure("OpenAI returned a response that wasn't JSON.");
    RawDecision decision;
    decision.text = messageText(*json);
    if (decision.text.empty())
        return Outcome::failure("OpenAI returned an empty response.");
    const Json::Value* const usage = Json::object(Json::find(*json, "usage"));
    decision.inputTokens = HTTPJSON::count(Json::find(usage, "prompt_tokens"));
    decision.outputTokens = HTTPJSON::count(Json::find(usage, "completion_tokens"));
    return Outcome::success(std::move(decision));
}

} // namespace

RawDecision complete(HTTPSession& session, const DecisionRequest& request, const ModelSecret& secret) {
    const TokenParameter parameter = firstParameter(request.model.modelIdentifier);
    auto outcome = send(session, request, secret, parameter);
    if (!outcome && isAboutTokenParameter(outcome.message()))
        outcome = send(session, request, secret, other(parameter));
    return outcome ? std::move(outcome).value() : RawDecision::failed(outcome.message());
}

} // namespace quorl::OpenAITransport
