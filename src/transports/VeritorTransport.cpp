#include "transports/VeritorTransport.h"

#include "base/Attempt.h"
#include "base/Text.h"
#include "decision/HostedNuvel.h"
#include "decision/VeritorRequest.h"
#include "decision/VeritorResults.h"
#include "store/StoreError.h"
#include "transports/HTTPJSON.h"
#include "transports/HTTPSession.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quorl::VeritorTransport {

namespace {

Attempt<std::string> requestBody(const DecisionRequest& request) {
    try {
        return Attempt<std::string>::success(
            Veritor::requestBody(request.prompt, request.model.modelIdentifier, request.questions));
    } catch (const StoreError& error) {
        return Attempt<std::string>::failure(error.message());
    }
}

std::map<std::string, std::string> headersWith(const std::string& key) {
    std::map<std::string, std::string> headers{{"Content-Type", "application/json"}};
    // A server of one's own needs none.
    if (!key.empty())
        headers["Authorization"] = "Bearer " + key;
    return headers;
}

std::string refusal(const HTTPReply& reply, const std::optional<std::string>& reported,
                    const ModelProfile& model, std::string_view key) {
    if (reply.status == 401 && model.provider == ProviderKind::nuvel &&
        Veritor::isHostedNuvel(model.endpoint))
        return Veritor::hostedKeyMessage();
    if (reported)
        return "HTTP " + std::to_string(reply.status) + ": " + HTTPJSON::withoutKeys(*reported, {key});
    return HTTPJSON::failure(reply.body, reply.status, {key});
}

RawDecision read(const HTTPReply& reply, const ModelProfile& model, std::string_view key) {
    auto response = Veritor::interpret(reply.body);
    if (!HTTPJSON::isSuccess(reply.status))
        return RawDecision::failed(refusal(reply, response.error, model, key));
    RawDecision decision;
    // An error in a response keeps its text, which may tell more.
    decision.text = std::move(response.pretty);
    if (response.error) {
        decision.errorMessage = HTTPJSON::withoutKeys(*response.error, {key});
        return decision;
    }
    decision.inputTokens = response.inputTokens;
    decision.outputTokens = response.outputTokens;
    return decision;
}

} // namespace

RawDecision complete(HTTPSession& session, const DecisionRequest& request, const ModelSecret& secret) {
    const auto url = Veritor::url(request.model.endpoint, request.model.provider);
    if (!url)
        return RawDecision::failed("The base URL is not valid.");
    auto body = requestBody(request);
    if (!body)
        return RawDecision::failed(body.message());
    const std::string key(Text::trimmed(secret.apiKey));
    const auto reply = session.post(*url, headersWith(key), std::move(body).value());
    return reply ? read(reply.value(), request.model, key) : RawDecision::failed(reply.message());
}

} // namespace quorl::VeritorTransport
