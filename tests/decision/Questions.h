#pragma once

#include "decision/DecisionQuestion.h"

#include <string>
#include <utility>
#include <vector>

// Questions that pass every rule; a test breaks the one it is about.
namespace quorl::test {

inline std::vector<DecisionOption> makeOptions(const std::vector<std::string>& labels) {
    std::vector<DecisionOption> options;
    for (const auto& label : labels)
        options.push_back({UUID::random(), label, ""});
    return options;
}

inline DecisionQuestion makeChoice(std::vector<std::string> labels = {"Approve", "Refuse"}) {
    auto question = DecisionQuestion::starter();
    question.name = "Verdict";
    question.instructions = "Is the refund due?";
    question.options = makeOptions(labels);
    return question;
}

inline DecisionQuestion makeScore(std::vector<std::string> levels = {"low", "high"}) {
    auto question = DecisionQuestion::starter();
    question.type = DecisionQuestionType::score;
    question.instructions = "How urgent is it?";
    question.levels = std::move(levels);
    return question;
}

inline DecisionQuestion makeNoul() {
    auto question = DecisionQuestion::starter();
    question.type = DecisionQuestionType::noul;
    question.instructions = "Is it safe?";
    return question;
}

} // namespace quorl::test
