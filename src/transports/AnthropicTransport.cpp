#include "transports/AnthropicTransport.h"

#include "base/Json.h"
#include "base/Text.h"
#include "domain/ServiceHosts.h"
#include "transports/HTTPJSON.h"
#include "transports/HTTPSession.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quorl::AnthropicTransport {

namespace {

// From the host, the base or the full path, whichever the user has pasted.
std::optional<std::string> messagesURL(std::string_view endpoint) {
    std::string_view base = Text::trimmed(endpoint);
    if (base.empty())
        base = ServiceHosts::anthropicAPI;
    std::string url(Text::withoutTrailing(base, '/'));
    if (!url.ends_with("/v1/messages"))
        url += url.ends_with("/v1") ? "/messages" : "/v1/messages";
    return HTTPSession::isURL(url) ? std::optional(std::move(url)) : std::nullopt;
}

std::optional<std::string> requestBody(const DecisionRequest& request) {
    Json::Value body{{"model", request.model.modelIdentifier}, {"max_tokens", request.model.maxOutputTokens}};
    body["messages"].push_back({{"role", "user"}, {"content", request.prompt}});
    if (!Text::isBlank(request.systemPrompt))
        body["system"] = request.systemPrompt;
    if (request.kind == QuorlKind::decision)
        body["temperature"] = 0;
    return Json::write(body);
}

RawDecision read(const HTTPReply& reply, std::string_view key) {
    const auto json = HTTPJSON::isSuccess(reply.status) ? Json::parseObject(reply.body) : std::nullopt;
    if (!json)
        return RawDecision::failed(HTTPJSON::failure(reply.body, reply.status, {key}));
    RawDecision decision;
    decision.text = HTTPJSON::joinedText(Json::find(*json, "content"));
    if (decision.text.empty())
        return RawDecision::failed("Anthropic returned an empty response.");
    const Json::Value* const usage = Json::find(*json, "usage");
    decision.inputTokens = HTTPJSON::count(Json::find(usage, "input_tokens"));
    decision.outputTokens = HTTPJSON::count(Json::find(usage, "output_tokens"));
    return decision;
}

} // namespace

RawDecision complete(HTTPSession& session, const DecisionRequest& request, const ModelSecret& secret) {
    const auto url = messagesURL(request.model.endpoint);
    if (!url)
        return RawDecision::failed("The Anthropic base URL is not valid.");
    auto body = requestBody(request);
    if (!body)
        return RawDecision::failed("Couldn't encode the request.");
    const std::string key(Text::trimmed(secret.apiKey));
    const auto reply = session.post(
        *url, {{"x-api-key", key}, {"anthropic-version", "2023-06-01"}, {"content-type", "application/json"}},
        *std::move(body));
    return reply ? read(reply.value(), key) : RawDecision::failed(reply.message());
}

} // namespace quorl::AnthropicTransport
