#include "sample-endpoint/TypedDecisions.h"

#include "base/Json.h"
#include "base/Text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace quorl::sample {

namespace {

using Json::Value;

bool isCriteria(std::string_view type, const Value* criteria) {
    if (type == "choice")
        return Json::object(criteria) && criteria->size() >= 2;
    if (type == "score")
        return Json::array(criteria) && criteria->size() >= 2 &&
               std::ranges::all_of(*criteria, [](const Value& level) { return level.is_string(); });
    return type == "noul" && (!criteria || criteria->is_object());
}

bool isQuestion(const Value& question) {
    const auto* const type = Json::text(Json::find(question, "type"));
    const auto* const instructions = Json::text(Json::find(question, "instructions"));
    return type && instructions && !Text::isBlank(*instructions) &&
           isCriteria(*type, Json::find(question, "criteria"));
}

Value usageOf(const Completion& completion, TypedDecisions::Usage names) {
    const bool areNewer = names == TypedDecisions::Usage::inputAndOutput;
    Value usage = Value::object();
    if (completion.inputTokens)
        usage[areNewer ? "input_tokens" : "prompt_tokens"] = *completion.inputTokens;
    if (completion.outputTokens)
        usage[areNewer ? "output_tokens" : "completion_tokens"] = *completion.outputTokens;
    return usage;
}

} // namespace

Reply TypedDecisions::reply(const Completion& completion, std::string_view modelIdentifier, Usage usage) {
    auto answers = Json::parseObject(completion.text);
    if (!answers)
        return errorReply(500, "The answers are not a JSON object.");
    Value body{{"answers", std::move(*answers)}};
    if (!modelIdentifier.empty())
        body["model"] = modelIdentifier;
    if (auto counts = usageOf(completion, usage); !counts.empty())
        body["usage"] = std::move(counts);
    return delayed(makeReply(200, Json::write(body).value_or("{}")), completion.delay);
}

Reply TypedDecisions::errorReply(int status, std::string_view message, Error error) {
    Value body;
    switch (error) {
    case Error::text:
        body["error"] = message;
        break;
    case Error::object:
        body["error"]["message"] = message;
        break;
    case Error::message:
        body["message"] = message;
        break;
    }
    return makeReply(status, Json::write(body).value_or("{}"));
}

bool TypedDecisions::takes(const Request& request) const {
    const auto path = std::string_view(request.path).substr(0, request.path.find('?'));
    return request.method == "POST" && (path.ends_with("/veritor") || path.ends_with("/decisions"));
}

std::variant<Question, Reply> TypedDecisions::read(const Request& request) const {
    const auto body = Json::parseObject(request.body);
    if (!body)
        return errorReply(400, "The body is not a JSON object.");
    const auto* const state = Json::text(Json::find(*body, "state"));
    if (!state || Text::isBlank(*state))
        return errorReply(400, "A state is required.");
    const auto* const questions = Json::object(Json::find(*body, "questions"));
    if (!questions || questions->empty())
        return errorReply(400, "Questions are required.");
    for (const auto& [key, question] : questions->items()) {
        if (!isQuestion(question))
            return errorReply(400, "The question '" + key + "' is not one.");
    }

    const auto* const model = Json::text(Json::find(*body, "model"));
    Question question{.modelIdentifier = model ? *model : ""}; // a server of one model needs no name for it
    question.prompt = *state;
    question.decisions = Json::write(*questions).value_or("");
    for (const auto& [name, value] : body->items())
        question.parameters.push_back(name);
    return question;
}

Reply TypedDecisions::answer(const Question& question, const Completion& completion) const {
    return reply(completion, question.modelIdentifier);
}

Reply TypedDecisions::failure(int status, std::string_view message) const {
    return errorReply(status, message);
}

} // namespace quorl::sample
