#include "decision/DecisionQuestion.h"

namespace quorl {

std::string_view rawString(DecisionQuestionType type) {
    switch (type) {
    case DecisionQuestionType::choice:
        return "choice";
    case DecisionQuestionType::score:
        return "score";
    case DecisionQuestionType::noul:
        return "noul";
    }
    __builtin_unreachable();
}

std::optional<DecisionQuestionType> decisionQuestionTypeFrom(std::string_view raw) {
    for (const auto type :
         {DecisionQuestionType::choice, DecisionQuestionType::score, DecisionQuestionType::noul}) {
        if (rawString(type) == raw)
            return type;
    }
    return std::nullopt;
}

DecisionQuestion DecisionQuestion::starter() {
    DecisionQuestion question;
    question.id = UUID::random();
    question.options = {{UUID::random(), "", ""}, {UUID::random(), "", ""}};
    question.levels = {"", ""};
    return question;
}

} // namespace quorl
