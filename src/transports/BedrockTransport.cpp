#include "transports/BedrockTransport.h"

#include "base/Json.h"
#include "base/Text.h"
#include "decision/HostName.h"
#include "domain/ServiceHosts.h"
#include "transports/HTTPJSON.h"
#include "transports/HTTPSession.h"
#include "transports/SigV4.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorl::BedrockTransport {

namespace {

constexpr const char* noURL = "Couldn't build the Bedrock URL.";

// Of ASCII, whatever the locale.
bool isPlain(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '.' || character == '_';
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        if (isPlain(character)) {
            encoded += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        encoded += {'%', digits[byte >> 4], digits[byte & 0xf]};
    }
    return encoded;
}

std::optional<std::string> requestBody(const DecisionRequest& request) {
    Json::Value content = Json::Value::array();
    content.push_back({{"text", request.prompt}});
    Json::Value body{{"inferenceConfig", {{"maxTokens", request.model.maxOutputTokens}}}};
    body["messages"].push_back({{"role", "user"}, {"content", std::move(content)}});
    if (request.kind == QuorlKind::decision)
        body["inferenceConfig"]["temperature"] = 0;
    if (!Text::isBlank(request.systemPrompt))
        body["system"].push_back({{"text", request.systemPrompt}});
    return Json::write(body);
}

SigV4::Credentials credentialsOf(const ModelSecret& secret) {
    return {std::string(Text::trimmed(secret.awsAccessKey)), std::string(Text::trimmed(secret.awsSecretKey)),
            std::string(Text::trimmed(secret.awsSessionToken))};
}

RawDecision read(const HTTPReply& reply, const SigV4::Credentials& credentials) {
    const auto json = HTTPJSON::isSuccess(reply.status) ? Json::parseObject(reply.body) : std::nullopt;
    if (!json) // the secret key is never sent, so nobody can quote it
        return RawDecision::failed(
            HTTPJSON::failure(reply.body, reply.status, {credentials.accessKey, credentials.sessionToken}));
    const Json::Value* const message = Json::find(Json::find(*json, "output"), "message");
    RawDecision decision;
    decision.text = HTTPJSON::joinedText(Json::find(message, "content"));
    if (decision.text.empty())
        return RawDecision::failed("Bedrock returned an empty response.");
    const Json::Value* const usage = Json::find(*json, "usage");
    decision.inputTokens = HTTPJSON::count(Json::find(usage, "inputTokens"));
    decision.outputTokens = HTTPJSON::count(Json::find(usage, "outputTokens"));
    return decision;
}

} // namespace

RawDecision complete(HTTPSession& session, const DecisionRequest& request, const ModelSecret& secret) {
    const auto runtime = runtimeURL(regionName(request.model.endpoint));
    if (!runtime)
        return RawDecision::failed(noURL);
    return completeAt(*runtime, std::chrono::system_clock::now(), session, request, secret);
}

std::string regionName(std::string_view endpoint) {
    constexpr std::string_view runtimeName = "bedrock-runtime.";
    const std::string_view text = Text::trimmed(endpoint);
    if (text.empty())
        return "us-east-1";
    const std::string withScheme = "https://" + std::string(text);
    auto host = findHostName(text);
    if (!host)
        host = findHostName(withScheme);
    if (!host || !host->starts_with(runtimeName))
        return std::string(text);
    host->remove_prefix(runtimeName.size());
    const std::string_view region = host->substr(0, host->find('.'));
    return std::string(region.empty() ? text : region);
}

std::optional<std::string> runtimeURL(std::string_view region) {
    // Anything else could end the host early and send the credentials' signature elsewhere.
    if (!std::all_of(region.begin(), region.end(), isPlain))
        return std::nullopt;
    return "https://" + std::string(ServiceHosts::bedrockRuntimePrefix) + std::string(region) +
           std::string(ServiceHosts::bedrockRuntimeSuffix);
}

std::string conversePath(std::string_view modelIdentifier) {
    return "/model/" + percentEncoded(Text::trimmed(modelIdentifier)) + "/converse";
}

RawDecision completeAt(const std::string& runtimeURL, Date now, HTTPSession& session,
                       const DecisionRequest& request, const ModelSecret& secret) {
    std::string url = runtimeURL + conversePath(request.model.modelIdentifier);
    if (!HTTPSession::isURL(url))
        return RawDecision::failed(noURL);
    auto body = requestBody(request);
    if (!body)
        return RawDecision::failed("Couldn't encode the Bedrock request.");
    const SigV4::Credentials credentials = credentialsOf(secret);
    auto toSend =
        SigV4::sign("POST", std::move(url), *std::move(body), {{"content-type", "application/json"}},
                    credentials, {regionName(request.model.endpoint), "bedrock"}, now);
    const auto reply = session.post(toSend.url, toSend.headers, std::move(toSend.body));
    return reply ? read(reply.value(), credentials) : RawDecision::failed(reply.message());
}

} // namespace quorl::BedrockTransport
