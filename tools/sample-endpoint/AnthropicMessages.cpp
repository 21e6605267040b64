#include "sample-endpoint/AnthropicMessages.h"

#include "base/Json.h"

#include <string>
#include <utility>

namespace quorl::sample {

namespace {

using Json::Value;

std::string_view errorType(int status) {
    switch (status) {
    case 400:
        return "invalid_request_error";
    case 401:
        return "authentication_error";
    case 404:
        return "not_found_error";
    case 429:
        return "rate_limit_error";
    case 503:
    case 529:
        return "overloaded_error";
    default:
        return "api_error";
    }
}

Reply errorReply(int status, std::string_view message) {
    const Value body{{"type", "error"}, {"error", {{"type", errorType(status)}, {"message", message}}}};
    return makeReply(status, Json::write(body).value_or("{}"));
}

Value contentOf(const std::string& text, AnthropicMessages::Content content) {
    Value blocks = Value::array();
    if (content == AnthropicMessages::Content::afterThinking)
        blocks.push_back({{"type", "thinking"}, {"thinking", "Let me see."}, {"signature", "c2FtcGxl"}});
    blocks.push_back({{"type", "text"}, {"text", text}});
    return blocks;
}

Value usageOf(const Completion& completion) {
    Value usage = Value::object();
    if (completion.inputTokens)
        usage["input_tokens"] = *completion.inputTokens;
    if (completion.outputTokens)
        usage["output_tokens"] = *completion.outputTokens;
    return usage;
}

} // namespace

Reply AnthropicMessages::reply(const Completion& completion, std::string_view modelIdentifier,
                               Content content) {
    Value body{
        {"id", "msg_sample"},
        {"type", "message"},
        {"role", "assistant"},
        {"model", modelIdentifier},
        {"content", contentOf(completion.text, content)},
        {"stop_reason", "end_turn"},
        {"stop_sequence", nullptr},
    };
    if (auto usage = usageOf(completion); !usage.empty())
        body["usage"] = std::move(usage);
    auto json = Json::write(body);
    if (!json)
        return errorReply(500, "The answer cannot be written as JSON.");
    return delayed(makeReply(200, std::move(*json)), completion.delay);
}

bool AnthropicMessages::takes(const Request& request) const {
    const auto path = std::string_view(request.path).substr(0, request.path.find('?'));
    return request.method == "POST" && path.ends_with("/v1/messages");
}

std::variant<Question, Reply> AnthropicMessages::read(const Request& request) const {
    if (const auto* const key = request.header("x-api-key"); !key || key->empty())
        return errorReply(401, "x-api-key header is required");
    if (const auto* const version = request.header("anthropic-version"); !version || version->empty())
        return errorReply(400, "anthropic-version: header is required");
    const auto body = Json::parseObject(request.body);
    if (!body)
        return errorReply(400, "The request body is not valid JSON.");
    const auto* const model = Json::text(Json::find(*body, "model"));
    if (!model)
        return errorReply(400, "model: Field required");
    if (Json::wholeNumber(Json::find(*body, "max_tokens")).value_or(0) < 1)
        return errorReply(400, "max_tokens: Field required");
    const auto* const messages = Json::array(Json::find(*body, "messages"));
    if (!messages || messages->empty())
        return errorReply(400, "messages: Field required");

    Question question{.modelIdentifier = *model};
    if (const auto* const system = Json::text(Json::find(*body, "system")))
        question.systemPrompt = *system;
    const auto* const prompt = Json::text(Json::find(messages->back(), "content"));
    if (!prompt || prompt->empty())
        return errorReply(400, "messages: text content blocks must be non-empty");
    question.prompt = *prompt;
    for (const auto& [name, value] : body->items())
        question.parameters.push_back(name);
    return question;
}

Reply AnthropicMessages::answer(const Question& question, const Completion& completion) const {
    return reply(completion, question.modelIdentifier);
}

Reply AnthropicMessages::failure(int status, std::string_view message) const {
    return errorReply(status, message);
}

} // namespace quorl::sample
