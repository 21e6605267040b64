#include "decision/Veritor.h"

#include "base/RecordFields.h"
#include "base/Text.h"
#include "store/StoreError.h"

#include <algorithm>

namespace quorl {

// The stored form's keys. The wire form has others and is written by hand below.
static constexpr auto fieldsOf(const DecisionOption*) {
    return std::tuple{Field{"id", &DecisionOption::id}, Field{"label", &DecisionOption::label},
                      Field{"detail", &DecisionOption::detail}};
}

static constexpr auto fieldsOf(const DecisionQuestion*) {
    return std::tuple{Field{"id", &DecisionQuestion::id},
                      Field{"name", &DecisionQuestion::name},
                      Field{"type", &DecisionQuestion::type, decisionQuestionTypeFrom},
                      Field{"instructions", &DecisionQuestion::instructions},
                      Field{"options", &DecisionQuestion::options},
                      Field{"levels", &DecisionQuestion::levels},
                      Field{"yesMeans", &DecisionQuestion::yesMeans},
                      Field{"noMeans", &DecisionQuestion::noMeans}};
}

static constexpr auto fieldsOf(const BulkQuestion*) {
    return std::tuple{Field{"id", &BulkQuestion::id}, Field{"text", &BulkQuestion::text}};
}

} // namespace quorl

namespace quorl::Veritor {

namespace {

std::vector<std::string_view> namedLabels(const DecisionQuestion& question) {
    std::vector<std::string_view> labels;
    for (const auto& option : question.options) {
        if (const auto label = Text::trimmed(option.label); !label.empty())
            labels.push_back(label);
    }
    return labels;
}

std::vector<std::string> namedLevels(const std::vector<std::string>& levels) {
    std::vector<std::string> named;
    for (const auto& level : levels) {
        if (const auto name = Text::trimmed(level); !name.empty())
            named.emplace_back(name);
    }
    return named;
}

std::optional<std::string> validateChoice(const DecisionQuestion& question) {
    auto labels = namedLabels(question);
    if (labels.size() < 2)
        return "A choice needs at least two options.";
    if (labels.size() > maximumOptions)
        return "A choice accepts at most 64 options.";
    std::sort(labels.begin(), labels.end());
    if (std::adjacent_find(labels.begin(), labels.end()) != labels.end())
        return "Choice options need different names.";
    return std::nullopt;
}

bool isLevelCount(std::size_t count) {
    return count >= 2 && count <= maximumLevels;
}

std::optional<std::string> validateQuestion(const DecisionQuestion& question, std::set<std::string>& used) {
    if (Text::isBlank(question.instructions))
        return "Write the question text.";
    if (questionKey(question, used).empty())
        return "Give the question a key.";
    switch (question.type) {
    case DecisionQuestionType::choice:
        return validateChoice(question);
    case DecisionQuestionType::score:
        if (!isLevelCount(namedLevels(question.levels).size()))
            return "Add two to ten score levels, from lowest to highest.";
        return std::nullopt;
    case DecisionQuestionType::noul:
        return std::nullopt;
    }
    __builtin_unreachable();
}

// Drops what is neither kept nor a separator, and gathers separators into single underscores inside the text.
std::string slug(std::string_view text) {
    std::string result;
    bool isSeparated = false;
    bool startsWithNumber = false;
    const std::string lower = Text::lowercased(text);
    Text::forEachCharacter(lower, [&](std::string_view character, Text::CharacterClass kind) {
        if (kind == Text::CharacterClass::letter || kind == Text::CharacterClass::number) {
            if (result.empty())
                startsWithNumber = kind == Text::CharacterClass::number;
            else if (isSeparated)
                result += '_';
            isSeparated = false;
            result += character;
        } else if (kind == Text::CharacterClass::whiteSpace || character == "_" || character == "-") {
            isSeparated = true;
        }
    });
    return startsWithNumber ? "q_" + result : result;
}

std::optional<Json::Value> wireCriteria(const DecisionQuestion& question) {
    switch (question.type) {
    case DecisionQuestionType::choice: {
        auto criteria = Json::Value::object();
        for (const auto& option : question.options) {
            const auto label = Text::trimmed(option.label);
            const auto detail = Text::trimmed(option.detail);
            if (!label.empty())
                criteria[std::string(label)] = detail.empty() ? label : detail;
        }
        return criteria;
    }
    case DecisionQuestionType::score:
        return Json::Value(namedLevels(question.levels));
    case DecisionQuestionType::noul: {
        auto criteria = Json::Value::object();
        if (const auto yes = Text::trimmed(question.yesMeans); !yes.empty())
            criteria["true"] = yes;
        if (const auto no = Text::trimmed(question.noMeans); !no.empty())
            criteria["false"] = no;
        if (criteria.empty())
            return std::nullopt;
        return criteria;
    }
    }
    __builtin_unreachable();
}

// The texts of an array, whatever else is in it; none of anything that is no array.
std::vector<std::string> textsOf(const Json::Value* value) {
    std::vector<std::string> texts;
    if (const auto* array = Json::array(value)) {
        for (const auto& entry : *array) {
            if (const auto* text = Json::text(&entry))
                texts.push_back(*text);
        }
    }
    return texts;
}

std::vector<DecisionOption> choiceOptions(const Json::Value* criteria) {
    std::vector<DecisionOption> options;
    if (const auto* object = Json::object(criteria)) {
        for (const auto& [label, value] : object->items()) {
            const auto* detail = Json::text(&value);
            options.push_back({UUID::random(), label, detail ? *detail : label});
        }
        return options;
    }
    for (const auto& label : textsOf(criteria))
        options.push_back({UUID::random(), label, label});
    return options;
}

std::vector<std::string> scoreLevels(const Json::Value* criteria) {
    return namedLevels(textsOf(criteria));
}

std::string textOrEmpty(const Json::Value* value) {
    const auto* text = Json::text(value);
    return text ? *text : "";
}

std::optional<DecisionQuestion> decodeWireQuestion(const std::string& key, const Json::Value& value) {
    if (!value.is_object())
        return std::nullopt;
    const std::string typeText = textOrEmpty(Json::find(value, "type"));
    const std::string instructions = textOrEmpty(Json::find(value, "instructions"));
    const auto type = decisionQuestionTypeFrom(Text::trimmed(typeText));
    if (!type || Text::isBlank(instructions))
        return std::nullopt;

    auto question = DecisionQuestion::starter();
    question.name = key;
    question.type = *type;
    question.instructions = Text::trimmed(instructions);
    const auto* criteria = Json::find(value, "criteria");
    switch (*type) {
    case DecisionQuestionType::choice:
        question.options = choiceOptions(criteria);
        return question.options.size() < 2 ? std::nullopt : std::optional(std::move(question));
    case DecisionQuestionType::score:
        question.levels = scoreLevels(criteria);
        return isLevelCount(question.levels.size()) ? std::optional(std::move(question)) : std::nullopt;
    case DecisionQuestionType::noul:
        question.yesMeans = textOrEmpty(Json::find(criteria, "true"));
        question.noMeans = textOrEmpty(Json::find(criteria, "false"));
        return question;
    }
    __builtin_unreachable();
}

template <class Record>
std::optional<std::vector<Record>> decodeList(std::string_view text) {
    const auto value = Json::parse(text);
    return value ? fields::decode<std::vector<Record>>(*value, nullptr) : std::nullopt;
}

} // namespace

std::optional<std::string> validate(std::string_view state, const std::vector<DecisionQuestion>& questions) {
    if (Text::isBlank(state))
        return "Write the state this decision is about.";
    if (questions.empty())
        return "Add a question.";
    if (questions.size() > maximumQuestions)
        return "Veritor accepts at most 32 questions.";
    std::set<std::string> used;
    for (const auto& question : questions) {
        if (auto problem = validateQuestion(question, used))
            return problem;
    }
    return std::nullopt;
}

std::vector<DecisionQuestion> bulkQuestions(std::string_view context,
                                            const DecisionQuestion& templateQuestion,
                                            const std::vector<BulkQuestion>& items) {
    if (items.empty() || items.size() > maximumBulkQuestions)
        throw StoreError("Add between 1 and 200 questions.");
    std::vector<DecisionQuestion> questions;
    for (const auto& item : items) {
        auto question = templateQuestion;
        question.id = item.id;
        question.instructions = Text::trimmed(item.text);
        if (const auto problem = validate(context, {question}))
            throw StoreError("Question " + std::to_string(questions.size() + 1) + ": " + *problem);
        questions.push_back(std::move(question));
    }
    return questions;
}

std::string questionKey(const DecisionQuestion& question, std::set<std::string>& used) {
    const auto name = Text::trimmed(question.name);
    auto stem = slug(name.empty() ? std::string_view(question.instructions) : name);
    if (stem.empty())
        stem = "question";
    auto key = stem;
    for (int number = 2; !used.insert(key).second; ++number)
        key = stem + "_" + std::to_string(number);
    return key;
}

std::string archive(const std::vector<DecisionQuestion>& questions) {
    return Json::write(fields::encode(questions)).value_or("");
}

std::vector<DecisionQuestion> restore(std::string_view text) {
    return decodeList<DecisionQuestion>(text).value_or(std::vector<DecisionQuestion>());
}

Json::Value wireMap(const std::vector<DecisionQuestion>& questions) {
    auto map = Json::Value::object();
    std::set<std::string> used;
    for (const auto& question : questions) {
        auto& entry = map[questionKey(question, used)];
        entry["type"] = rawString(question.type);
        entry["instructions"] = Text::trimmed(question.instructions);
        if (auto criteria = wireCriteria(question))
            entry["criteria"] = std::move(*criteria);
    }
    return map;
}

std::optional<std::string> wireJSON(const std::vector<DecisionQuestion>& questions) {
    return Json::write(wireMap(questions));
}

std::optional<std::vector<DecisionQuestion>> decodeWireQuestions(const Json::Value& value) {
    if (!value.is_object() || value.empty())
        return std::nullopt;
    std::vector<DecisionQuestion> questions;
    for (const auto& [key, entry] : value.items()) {
        auto question = decodeWireQuestion(key, entry);
        if (!question)
            return std::nullopt;
        questions.push_back(std::move(*question));
    }
    return questions;
}

std::string archiveBulk(const std::vector<BulkQuestion>& items) {
    return Json::write(fields::encode(items)).value_or("");
}

std::optional<std::vector<BulkQuestion>> restoreBulk(std::string_view text) {
    return decodeList<BulkQuestion>(text);
}

} // namespace quorl::Veritor
