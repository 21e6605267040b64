#include "sample-endpoint/OpenAIChat.h"

#include "base/Json.h"

#include <algorithm>
#include <utility>

namespace quorl::sample {

namespace {

using Json::Value;

Value choiceOf(const std::string& text, OpenAIChat::Content content) {
    Value choice{{"index", 0}, {"finish_reason", "stop"}};
    switch (content) {
    case OpenAIChat::Content::text:
        choice["message"] = {{"role", "assistant"}, {"content", text}};
        break;
    case OpenAIChat::Content::parts: {
        // Cut where a character of ASCII ends, so that each half is UTF-8 of its own.
        const auto isASCII = [](char character) { return static_cast<unsigned char>(character) < 0x80; };
        const auto middle =
            std::find_if(text.begin() + static_cast<std::ptrdiff_t>(text.size() / 2), text.end(), isASCII);
        choice["message"] = {{"role", "assistant"},
                             {"content", Value::array({
                                             {{"type", "text"}, {"text", std::string(text.begin(), middle)}},
                                             {{"type", "text"}, {"text", std::string(middle, text.end())}},
                                         })}};
        break;
    }
    case OpenAIChat::Content::completion:
        choice["text"] = text;
        break;
    }
    return choice;
}

Value usageOf(const Completion& completion) {
    Value usage = Value::object();
    if (completion.inputTokens)
        usage["prompt_tokens"] = *completion.inputTokens;
    if (completion.outputTokens)
        usage["completion_tokens"] = *completion.outputTokens;
    if (completion.inputTokens && completion.outputTokens)
        usage["total_tokens"] = *completion.inputTokens + *completion.outputTokens;
    return usage;
}

Reply errorReply(int status, std::string_view message, const Value& parameter = nullptr,
                 const Value& code = nullptr) {
    const auto* const type = status >= 500 ? "server_error" : "invalid_request_error";
    const Value body{{"error", {{"message", message}, {"type", type}, {"param", parameter}, {"code", code}}}};
    return makeReply(status, Json::write(body).value_or("{}"));
}

// The text of a message: its content, or the texts of its parts.
std::optional<std::string> contentText(const Value& message) {
    const auto* const content = Json::find(message, "content");
    if (const auto* const text = Json::text(content))
        return *text;
    if (!Json::array(content))
        return std::nullopt;
    std::string joined;
    for (const auto& part : *content) {
        if (const auto* const text = Json::text(Json::find(part, "text")))
            joined += *text;
    }
    return joined;
}

// False where it is no message.
bool addMessage(const Value& message, Question& question) {
    const auto* const role = Json::text(Json::find(message, "role"));
    auto text = contentText(message);
    if (!role || !text)
        return false;
    if (*role == "system" || *role == "developer")
        question.systemPrompt = std::move(*text);
    else if (*role == "user")
        question.prompt = std::move(*text); // the last one is the question, what stands before is the past
    return true;
}

} // namespace

Reply OpenAIChat::reply(const Completion& completion, std::string_view modelIdentifier, Content content,
                        Usage usage) {
    Value body{
        {"id", "chatcmpl-sample"},
        {"object", content == Content::completion ? "text_completion" : "chat.completion"},
        {"created", 1'790'000'000},
        {"model", modelIdentifier},
        {"choices", Value::array({choiceOf(completion.text, content)})},
    };
    auto counts = usageOf(completion);
    if (usage == Usage::null)
        body["usage"] = nullptr;
    else if (!counts.empty())
        body["usage"] = std::move(counts);

    auto json = Json::write(body);
    if (!json)
        return errorReply(500, "The answer cannot be written as JSON.");
    return delayed(makeReply(200, std::move(*json)), completion.delay);
}

bool OpenAIChat::takes(const Request& request) const {
    const auto path = std::string_view(request.path).substr(0, request.path.find('?'));
    return request.method == "POST" && path.ends_with("/chat/completions");
}

std::variant<Question, Reply> OpenAIChat::read(const Request& request) const {
    const auto body = Json::parseObject(request.body);
    if (!body)
        return errorReply(400, "The body is not a JSON object.");
    const auto* const model = Json::text(Json::find(*body, "model"));
    if (!model)
        return errorReply(400, "Missing required parameter: 'model'.", "model");
    const auto* const messages = Json::array(Json::find(*body, "messages"));
    if (!messages || messages->empty())
        return errorReply(400, "Missing required parameter: 'messages'.", "messages");
    if (Json::boolean(Json::find(*body, "stream")).value_or(false))
        return errorReply(400, "Unsupported value: 'stream' can only be false here.", "stream");

    Question question{.modelIdentifier = *model};
    for (const auto& message : *messages) {
        if (!addMessage(message, question))
            return errorReply(400, "Invalid 'messages': each needs a role and a content.", "messages");
    }
    for (const auto& [name, value] : body->items())
        question.parameters.push_back(name);
    return question;
}

Reply OpenAIChat::answer(const Question& question, const Completion& completion) const {
    return reply(completion, question.modelIdentifier);
}

Reply OpenAIChat::failure(int status, std::string_view message) const {
    return errorReply(status, message);
}

} // namespace quorl::sample
