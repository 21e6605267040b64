#include "decision/DecisionQuestion.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

TEST(DecisionQuestionType, IsStoredAsItsRawStringAndReadBackExactly) {
    EXPECT_EQ(rawString(DecisionQuestionType::choice), "choice");
    EXPECT_EQ(rawString(DecisionQuestionType::score), "score");
    EXPECT_EQ(rawString(DecisionQuestionType::noul), "noul");

    EXPECT_EQ(decisionQuestionTypeFrom("choice"), DecisionQuestionType::choice);
    EXPECT_EQ(decisionQuestionTypeFrom("score"), DecisionQuestionType::score);
    EXPECT_EQ(decisionQuestionTypeFrom("noul"), DecisionQuestionType::noul);
    EXPECT_EQ(decisionQuestionTypeFrom("Choice"), std::nullopt);
    EXPECT_EQ(decisionQuestionTypeFrom(""), std::nullopt);
}

TEST(DecisionQuestion, StarterIsABlankChoiceWithTwoOptionsAndTwoLevels) {
    const auto question = DecisionQuestion::starter();

    EXPECT_EQ(question.name, "");
    EXPECT_EQ(question.type, DecisionQuestionType::choice);
    EXPECT_EQ(question.instructions, "");
    ASSERT_EQ(question.options.size(), 2u);
    for (const auto& option : question.options) {
        EXPECT_EQ(option.label, "");
        EXPECT_EQ(option.detail, "");
        EXPECT_NE(option.id, UUID());
    }
    EXPECT_EQ(question.levels, (std::vector<std::string>{"", ""}));
    EXPECT_EQ(question.yesMeans, "");
    EXPECT_EQ(question.noMeans, "");
}

TEST(DecisionQuestion, EveryIdentifierOfAStarterIsFresh) {
    const auto first = DecisionQuestion::starter();
    const auto second = DecisionQuestion::starter();

    EXPECT_NE(first.id, second.id);
    EXPECT_NE(first.id, UUID());
    EXPECT_NE(first.options[0].id, first.options[1].id);
    EXPECT_NE(first.options[0].id, second.options[0].id);
}

TEST(BulkQuestion, StartsEmptyUnderAFreshIdentifier) {
    EXPECT_NE(BulkQuestion().id, BulkQuestion().id);
    EXPECT_EQ(BulkQuestion().text, "");
}

} // namespace
} // namespace quorl::test
