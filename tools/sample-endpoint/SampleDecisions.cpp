#include "sample-endpoint/SampleDecisions.h"

#include "base/Json.h"
#include "base/Text.h"
#include "sample-endpoint/SampleAnswers.h"
#include "sample-endpoint/Words.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <numeric>
#include <set>
#include <string>
#include <vector>

namespace quorl::sample::SampleDecisions {

namespace {

using Json::Value;

// How a model counts.
struct Habit {
    std::string_view model;
    std::size_t wordLength; // what follows in a word does not matter
    std::int64_t mostUses;  // of one word that count
    std::int64_t doubt;     // every option's weight before any word has spoken for it
    std::chrono::milliseconds delay;
};

constexpr std::array habits{
    Habit{literal, 100, 5, 1, std::chrono::milliseconds(350)},
    Habit{stems, 5, 1, 3, std::chrono::milliseconds(900)},
};

using WordCounts = std::map<std::string, std::int64_t>;

std::string shortened(const std::string& word, const Habit& habit) {
    return std::string(Text::firstCharacters(Text::lowercased(word), habit.wordLength));
}

WordCounts countsOf(const std::string& text, const Habit& habit) {
    WordCounts counts;
    for (const auto& word : wordsOf(text)) {
        if (word.carriesMeaning)
            ++counts[shortened(word.text, habit)];
    }
    return counts;
}

// How much of a text the state says as well.
std::int64_t overlap(const std::string& text, const WordCounts& state, const Habit& habit) {
    std::int64_t common = 0;
    for (const auto& [word, uses] : countsOf(text, habit)) {
        if (const auto found = state.find(word); found != state.end())
            common += std::min(found->second, habit.mostUses);
    }
    return common;
}

// Counted in ten-thousandths, so that they can be written short and still sum to one.
using Shares = std::vector<std::int64_t>;
constexpr std::int64_t whole = 10'000;

double asProbability(std::int64_t share) {
    return static_cast<double>(share) / static_cast<double>(whole);
}

Shares sharesOf(const std::vector<std::int64_t>& weights) {
    const auto sum = std::accumulate(weights.begin(), weights.end(), std::int64_t{0});
    Shares shares;
    for (const auto weight : weights)
        shares.push_back(weight * whole / sum);
    // What was cut off goes to the first of the largest.
    const auto rest = whole - std::accumulate(shares.begin(), shares.end(), std::int64_t{0});
    *std::ranges::max_element(shares) += rest;
    return shares;
}

std::size_t indexOfLargest(const Shares& shares) {
    return static_cast<std::size_t>(std::ranges::max_element(shares) - shares.begin());
}

Value chosen(const Value& criteria, const WordCounts& state, const Habit& habit) {
    std::vector<std::string> labels;
    std::vector<std::int64_t> weights;
    for (const auto& [label, detail] : criteria.items()) {
        const auto* const text = Json::text(&detail);
        labels.push_back(label);
        weights.push_back(habit.doubt + 2 * overlap(text ? label + ' ' + *text : label, state, habit));
    }
    const auto shares = sharesOf(weights);
    const auto first = indexOfLargest(shares);
    Value probabilities;
    for (std::size_t place = 0; place < labels.size(); ++place)
        probabilities[labels[place]] = asProbability(shares[place]);
    return {
        {"type", "choice"},
        {"choice", labels[first]},
        {"probabilities", std::move(probabilities)},
        {"confidence", asProbability(shares[first])},
        {"action", {{"act_probability", asProbability(shares[first])}}},
    };
}

// The levels count from 1.
Value scored(const Value& levels, const WordCounts& state, const Habit& habit) {
    std::vector<std::int64_t> weights;
    for (const auto& level : levels)
        weights.push_back(habit.doubt + 2 * overlap(level.get<std::string>(), state, habit));
    const auto shares = sharesOf(weights);
    std::int64_t position = 0;
    for (std::size_t place = 0; place < shares.size(); ++place)
        position += shares[place] * static_cast<std::int64_t>(place + 1);
    return {
        {"type", "score"},
        {"score", asProbability(position)},
        {"legend", levels},
        {"confidence", asProbability(shares[indexOfLargest(shares)])},
    };
}

std::int64_t negations(const std::string& state) {
    static const std::set<std::string> words{"no", "not", "never", "none", "without", "cannot", "can't"};
    return std::ranges::count_if(
        wordsOf(state), [](const Word& word) { return words.contains(Text::lowercased(word.text)); });
}

Value answeredYesOrNo(const std::string& instructions, const Value* criteria, const std::string& stateText,
                      const WordCounts& state, const Habit& habit) {
    const auto meaning = [&](std::string_view key) {
        const auto* const text = Json::text(Json::find(criteria, key));
        return text ? *text : std::string();
    };
    const auto yes =
        habit.doubt + overlap(instructions, state, habit) + 2 * overlap(meaning("true"), state, habit);
    const auto no = habit.doubt + negations(stateText) + 2 * overlap(meaning("false"), state, habit);
    const auto shares = sharesOf({yes, no});
    return {
        {"type", "noul"},
        {"noul", asProbability(shares[0])},
        {"confidence", asProbability(std::max(shares[0], shares[1]))},
    };
}

Value answerTo(const Value& question, const std::string& stateText, const WordCounts& state,
               const Habit& habit) {
    const auto& type = question.at("type");
    if (type == "choice")
        return chosen(question.at("criteria"), state, habit);
    if (type == "score")
        return scored(question.at("criteria"), state, habit);
    return answeredYesOrNo(question.at("instructions"), Json::find(question, "criteria"), stateText, state,
                           habit);
}

} // namespace

std::optional<Completion> answer(const Question& question) {
    const auto questions = Json::parseObject(question.decisions);
    if (question.modelIdentifier == SampleAnswers::unavailable || !questions)
        return std::nullopt;

    const auto found = std::ranges::find(habits, question.modelIdentifier, &Habit::model);
    const auto& habit = found == habits.end() ? habits.front() : *found;
    const auto state = countsOf(question.prompt, habit);
    auto answers = Value::object();
    for (const auto& [key, each] : questions->items())
        answers[key] = answerTo(each, question.prompt, state, habit);

    Completion completion{.text = Json::write(answers).value_or("{}")};
    completion.inputTokens = tokensIn(question.prompt) + tokensIn(question.decisions);
    completion.outputTokens = tokensIn(completion.text);
    if (found != habits.end())
        completion.delay = habit.delay;
    return completion;
}

} // namespace quorl::sample::SampleDecisions
