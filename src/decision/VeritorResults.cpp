#include "decision/VeritorResults.h"

#include "base/Json.h"
#include "base/Text.h"
#include "decision/Veritor.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

namespace quorl::Veritor {

namespace {

constexpr std::string_view separator = "  ·  ";

// Lines of text that are written as they come.
class Lines {
public:
    /// Begins the next line, to be appended to.
    std::string& next() {
        if (std::exchange(hasLines, true))
            all += '\n';
        return all;
    }
    std::string take() { return std::move(all); }

private:
    std::string all;
    bool hasLines = false;
};

// Halves away from zero. What no service means, a probability of billions, stops at what the integer holds.
std::int64_t roundedPercent(double fraction) {
    constexpr double limit = 9.2e18;
    return std::llround(std::clamp(fraction * 100, -limit, limit));
}

std::string percent(double fraction) {
    return std::to_string(roundedPercent(fraction)) + "%";
}

// Not printf, whose decimal mark is the locale's.
std::string decimal(double value) {
    char digits[512]; // the longest double has 309 digits before the mark
    const bool isWhole = value == std::trunc(value);
    // Adding zero makes a zero of minus zero.
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value + 0.0,
                                   std::chars_format::fixed, isWhole ? 0 : 2);
    return {digits, end.ptr};
}

void addProbabilityLine(const Json::Value& probabilities, Lines& lines) {
    std::string& line = lines.next();
    std::string_view between;
    for (const auto& [label, value] : probabilities.items()) {
        if (const auto probability = Json::number(&value)) {
            line.append(between).append(label).append(" ").append(percent(*probability));
            between = "   ";
        }
    }
}

// The texts of an object, in the order of its keys, or of an array.
void addLegendLine(const Json::Value& legend, Lines& lines) {
    std::string* line = nullptr; // begun by the first text: without any there is none
    for (const auto& entry : legend) {
        if (const auto* const text = Json::text(&entry)) {
            line = line ? &line->append(separator) : &lines.next();
            line->append(*text);
        }
    }
}

std::optional<DecisionQuestionType> typeOf(const Json::Value& answer) {
    const auto* const type = Json::text(Json::find(answer, "type"));
    return type ? decisionQuestionTypeFrom(*type) : std::nullopt;
}

std::string noulText(const Json::Value& answer) {
    return percent(Json::number(Json::find(answer, "noul")).value_or(0)) + " yes";
}

void addChoiceLines(const std::string& key, const Json::Value& answer, Lines& lines) {
    std::string& line = lines.next().append(key).append(separator);
    if (const auto* const choice = Json::text(Json::find(answer, "choice")))
        line.append(*choice);
    if (const auto* const probabilities = Json::object(Json::find(answer, "probabilities")))
        addProbabilityLine(*probabilities, lines);
}

void addScoreLines(const std::string& key, const Json::Value& answer, Lines& lines) {
    std::string& line = lines.next().append(key).append(separator);
    if (const auto score = Json::number(Json::find(answer, "score")))
        line.append(decimal(*score));
    const auto* const legend = Json::find(answer, "legend");
    if (legend && legend->is_structured())
        addLegendLine(*legend, lines);
}

void addAnswerLines(const std::string& key, const Json::Value& answer, Lines& lines) {
    const auto type = typeOf(answer);
    if (type == DecisionQuestionType::choice)
        addChoiceLines(key, answer, lines);
    else if (type == DecisionQuestionType::score)
        addScoreLines(key, answer, lines);
    else if (type == DecisionQuestionType::noul)
        lines.next().append(key).append(separator).append(noulText(answer));
    else
        lines.next().append(key);

    if (const auto confidence = Json::number(Json::find(answer, "confidence")))
        lines.next().append("confidence ").append(percent(*confidence));
    if (const auto act = Json::number(Json::find(Json::find(answer, "action"), "act_probability")))
        lines.next().append("act ").append(percent(*act));
}

std::string summaryOf(const Json::Value& response, const Json::Value& answers) {
    Lines lines;
    if (const auto* const model = Json::text(Json::find(response, "model")); model && !model->empty())
        lines.next().append(*model);
    for (const auto& [key, answer] : answers.items()) {
        if (answer.is_object())
            addAnswerLines(key, answer, lines);
    }
    return lines.take();
}

std::optional<std::string> nonEmpty(const Json::Value* value) {
    const auto* const text = Json::text(value);
    return text && !text->empty() ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> errorMessage(const Json::Value& response) {
    const auto* const error = Json::find(response, "error");
    if (auto message = nonEmpty(Json::find(error, "message")))
        return message;
    if (auto message = nonEmpty(error))
        return message;
    return Json::find(response, "answers") ? std::nullopt : nonEmpty(Json::find(response, "message"));
}

std::optional<std::int64_t> countOf(const Json::Value* usage, std::string_view key,
                                    std::string_view olderKey) {
    const auto count = Json::truncatedCount(Json::find(usage, key));
    return count ? count : Json::truncatedCount(Json::find(usage, olderKey));
}

// A server that answers in plain words is taken at its word.
Interpreted interpretPlainText(std::string_view body) {
    Interpreted result;
    if (Text::isUTF8(body))
        result.pretty = Text::trimmed(body);
    if (result.pretty.empty())
        result.error = "The response was not JSON.";
    return result;
}

// The summary and the error, which are what a response says; the rest of it is how it is kept.
void readSummary(const Json::Value& response, Interpreted& result) {
    result.error = errorMessage(response);
    if (result.error)
        return;
    const auto* const answers = Json::object(Json::find(response, "answers"));
    if (answers)
        result.summary = summaryOf(response, *answers);
    else
        result.error = "The response had no answers.";
}

std::string_view typeWord(DecisionQuestionType type) {
    switch (type) {
    case DecisionQuestionType::choice:
        return "Choice";
    case DecisionQuestionType::score:
        return "Score";
    case DecisionQuestionType::noul:
        return "Yes / No";
    }
    __builtin_unreachable();
}

// The questions by the keys under which they were sent.
std::map<std::string, const DecisionQuestion*> byKey(const std::vector<DecisionQuestion>& questions) {
    std::map<std::string, const DecisionQuestion*> found;
    std::set<std::string> used;
    for (const auto& question : questions)
        found.emplace(questionKey(question, used), &question);
    return found;
}

std::string promptOf(const DecisionQuestion& question) {
    const auto name = Text::trimmed(question.name);
    return std::string(name.empty() ? Text::trimmed(question.instructions) : name);
}

// What is left to show of a key that belongs to no question.
std::string promptOf(std::string key) {
    std::replace_if(
        key.begin(), key.end(), [](char character) { return character == '_' || character == '-'; }, ' ');
    return Text::capitalized(key);
}

std::string answerText(DecisionQuestionType type, const Json::Value& answer) {
    switch (type) {
    case DecisionQuestionType::choice: {
        const auto* const choice = Json::text(Json::find(answer, "choice"));
        return choice ? std::string(Text::trimmed(*choice)) : "No answer returned";
    }
    case DecisionQuestionType::score: {
        const auto score = Json::number(Json::find(answer, "score"));
        return score ? decimal(*score) : "No score returned";
    }
    case DecisionQuestionType::noul:
        return noulText(answer);
    }
    __builtin_unreachable();
}

std::vector<DecisionResult::Signal> signalsOf(const Json::Value& answer) {
    std::vector<DecisionResult::Signal> found;
    if (const auto* const probabilities = Json::object(Json::find(answer, "probabilities"))) {
        found.reserve(probabilities->size());
        for (const auto& [label, value] : probabilities->items()) {
            if (const auto probability = Json::number(&value))
                found.push_back({label, roundedPercent(*probability)});
        }
    }
    // Equals in the order of their labels, so that a card looks the same every time.
    std::sort(found.begin(), found.end(), [](const auto& left, const auto& right) {
        return std::tie(right.percent, left.label) < std::tie(left.percent, right.label);
    });
    return found;
}

std::vector<std::string> labelsOf(const DecisionQuestion& question) {
    std::vector<std::string> labels;
    if (question.type == DecisionQuestionType::choice) {
        for (const auto& option : question.options)
            labels.push_back(option.label);
    }
    return labels;
}

DecisionResult makeResult(const std::string& key, DecisionQuestionType type, const Json::Value& answer,
                          const DecisionQuestion* question) {
    DecisionResult result;
    result.key = key;
    result.prompt = question ? promptOf(*question) : promptOf(key);
    result.answer = answerText(type, answer);
    if (const auto confidence = Json::number(Json::find(answer, "confidence")))
        result.confidence = roundedPercent(*confidence);
    result.signals = signalsOf(answer);
    if (question)
        result.choiceOptions = labelsOf(*question);
    return result;
}

} // namespace

Interpreted interpret(std::string_view body) {
    const auto response = Json::parseObject(body);
    if (!response)
        return interpretPlainText(body);
    Interpreted result;
    result.pretty = Json::write(*response, Json::Layout::pretty).value_or(std::string(body));
    const auto* const usage = Json::object(Json::find(*response, "usage"));
    result.inputTokens = countOf(usage, "input_tokens", "prompt_tokens");
    result.outputTokens = countOf(usage, "output_tokens", "completion_tokens");
    readSummary(*response, result);
    return result;
}

std::string summary(std::string_view text) {
    Interpreted result;
    if (const auto response = Json::parseObject(text))
        readSummary(*response, result);
    return result.summary.empty() ? std::string(text) : result.summary;
}

std::string preview(std::string_view questionsJSON) {
    Lines lines;
    for (const auto& question : restore(questionsJSON)) {
        std::string& line = lines.next().append(typeWord(question.type));
        if (const auto name = Text::trimmed(question.name); !name.empty())
            line.append(" · ").append(name);
        line.append(" · ").append(Text::trimmed(question.instructions));
    }
    return lines.take();
}

std::vector<DecisionResult> decisionResults(std::string_view text,
                                            const std::vector<DecisionQuestion>& questions) {
    const auto response = Json::parseObject(text);
    const auto* const answers = response ? Json::object(Json::find(*response, "answers")) : nullptr;
    if (!answers)
        return {};
    const auto asked = byKey(questions);
    std::vector<DecisionResult> results;
    for (const auto& [key, answer] : answers->items()) {
        const auto type = typeOf(answer);
        if (!type)
            continue;
        const auto question = asked.find(key);
        results.push_back(
            makeResult(key, *type, answer, question == asked.end() ? nullptr : question->second));
    }
    return results;
}

std::optional<std::string> applyingChoiceCorrections(std::string_view text,
                                                     const std::map<std::string, std::string>& choices) {
    auto response = choices.empty() ? std::nullopt : Json::parseObject(text);
    if (!response || !Json::object(Json::find(*response, "answers")))
        return std::nullopt;
    auto& answers = (*response)["answers"];
    for (const auto& [key, label] : choices) {
        const auto answer = answers.find(key);
        if (answer == answers.end() || typeOf(*answer) != DecisionQuestionType::choice)
            return std::nullopt;
        (*answer)["choice"] = label;
        // They told of the model's choice, not of this one.
        for (const char* const stale : {"probabilities", "confidence", "action"})
            answer->erase(stale);
    }
    return Json::write(*response, Json::Layout::pretty);
}

} // namespace quorl::Veritor
