#include "sample-endpoint/BedrockConverse.h"

#include "base/Json.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

namespace quorl::sample {

namespace {

using Json::Value;

constexpr std::string_view pathStart = "/model/";
constexpr std::string_view pathEnd = "/converse";

Reply errorReply(int status, std::string_view message) {
    return makeReply(status, Json::write({{"message", message}}).value_or("{}"));
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t place = 0; place < text.size(); ++place) {
        unsigned char byte = 0;
        const auto digits = text.substr(std::min(place + 1, text.size()), 2);
        const bool isEscape = text[place] == '%' && digits.size() == 2 &&
                              std::from_chars(digits.begin(), digits.end(), byte, 16).ptr == digits.end();
        decoded += isEscape ? static_cast<char>(byte) : text[place];
        place += isEscape ? 2 : 0;
    }
    return decoded;
}

// The text of an array of parts, of which the first counts.
const std::string* firstText(const Value* parts) {
    const auto* const array = Json::array(parts);
    return array && !array->empty() ? Json::text(Json::find(array->front(), "text")) : nullptr;
}

Value contentOf(const std::string& text, BedrockConverse::Content content) {
    Value parts = Value::array();
    if (content == BedrockConverse::Content::afterReasoning)
        parts.push_back({{"reasoningContent", {{"reasoningText", {{"text", "Let me see."}}}}}});
    parts.push_back({{"text", text}});
    return parts;
}

Value usageOf(const Completion& completion) {
    Value usage = Value::object();
    if (completion.inputTokens)
        usage["inputTokens"] = *completion.inputTokens;
    if (completion.outputTokens)
        usage["outputTokens"] = *completion.outputTokens;
    if (completion.inputTokens && completion.outputTokens)
        usage["totalTokens"] = *completion.inputTokens + *completion.outputTokens;
    return usage;
}

} // namespace

Reply BedrockConverse::reply(const Completion& completion, Content content) {
    Value body{
        {"output", {{"message", {{"role", "assistant"}, {"content", contentOf(completion.text, content)}}}}},
        {"stopReason", "end_turn"},
        {"metrics", {{"latencyMs", completion.delay.count()}}},
    };
    if (auto usage = usageOf(completion); !usage.empty())
        body["usage"] = std::move(usage);
    auto json = Json::write(body);
    if (!json)
        return errorReply(500, "The answer cannot be written as JSON.");
    return delayed(makeReply(200, std::move(*json)), completion.delay);
}

bool BedrockConverse::takes(const Request& request) const {
    return request.method == "POST" && request.path.starts_with(pathStart) &&
           request.path.ends_with(pathEnd) && request.path.size() > pathStart.size() + pathEnd.size();
}

std::variant<Question, Reply> BedrockConverse::read(const Request& request) const {
    if (const auto problem = problemWithSignature(request, accepted, "bedrock"))
        return errorReply(403, *problem);
    const auto body = Json::parseObject(request.body);
    if (!body)
        return errorReply(400, "Unexpected token in the request body.");
    const auto* const messages = Json::array(Json::find(*body, "messages"));
    const auto* const prompt =
        messages && !messages->empty() ? firstText(Json::find(messages->back(), "content")) : nullptr;
    if (!prompt || prompt->empty())
        return errorReply(400, "The messages need a text.");

    const auto size = request.path.size() - pathStart.size() - pathEnd.size();
    Question question{.modelIdentifier =
                          percentDecoded(std::string_view(request.path).substr(pathStart.size(), size))};
    question.prompt = *prompt;
    if (const auto* const system = firstText(Json::find(*body, "system")))
        question.systemPrompt = *system;
    for (const auto& [name, value] : body->items())
        question.parameters.push_back(name);
    return question;
}

Reply BedrockConverse::answer(const Question&, const Completion& completion) const {
    return reply(completion);
}

Reply BedrockConverse::failure(int status, std::string_view message) const {
    return errorReply(status, message);
}

} // namespace quorl::sample
