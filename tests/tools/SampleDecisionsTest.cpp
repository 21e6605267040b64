#include "sample-endpoint/SampleDecisions.h"

#include "base/Json.h"
#include "sample-endpoint/SampleAnswers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace quorl::sample {
namespace {

constexpr const char* state = "The refund was promised twice, and the customer asks for the refund again.";

Completion completionOf(std::string_view model, const std::string& question, std::string prompt = state) {
    Question asked{.modelIdentifier = std::string(model)};
    asked.prompt = std::move(prompt);
    asked.decisions = R"({"key":)" + question + "}";
    return SampleDecisions::answer(asked).value();
}

Json::Value answerOf(std::string_view model, const std::string& question, std::string prompt = state) {
    return Json::parse(completionOf(model, question, std::move(prompt)).text).value()["key"];
}

constexpr const char* choice =
    R"({"type":"choice","instructions":"What now?","criteria":{"Refund":"Pay the refund.","Refuse":"Refusing it.","Ask":"Ask"}})";

double sumOf(const Json::Value& probabilities) {
    double sum = 0;
    for (const auto& each : probabilities)
        sum += each.get<double>();
    return sum;
}

TEST(SampleDecisions, AChoiceGoesToTheOptionThatSharesMostWithTheState) {
    const auto answer = answerOf(SampleDecisions::literal, choice);

    EXPECT_EQ(answer["type"], "choice");
    EXPECT_EQ(answer["choice"], "Refund");
    EXPECT_EQ(answer["probabilities"],
              (Json::Value{{"Ask", 0.1428}, {"Refund", 0.7144}, {"Refuse", 0.1428}}));
    EXPECT_EQ(answer["confidence"], 0.7144);
    EXPECT_EQ(answer["action"]["act_probability"], 0.7144);
}

TEST(SampleDecisions, ProbabilitiesSumToOne) {
    for (const auto model : SampleDecisions::demoModels)
        EXPECT_LT(std::abs(sumOf(answerOf(model, choice)["probabilities"]) - 1), 1e-12) << model;
}

TEST(SampleDecisions, AScoreIsTheWeightedPlaceAmongTheLevels) {
    const auto answer = answerOf(
        SampleDecisions::literal,
        R"({"type":"score","instructions":"How bad?","criteria":["calm","customer asks","promised twice refund"]})");

    EXPECT_EQ(answer["type"], "score");
    EXPECT_EQ(answer["legend"], Json::Value({"calm", "customer asks", "promised twice refund"}));
    // Weights 1, 5 and 9: a third in the middle, three fifths at the top.
    EXPECT_EQ(answer["score"], 2.5335);
    EXPECT_EQ(answer["confidence"], 0.6001);
}

TEST(SampleDecisions, AYesNoQuestionWeighsItsMeaningsAndTheStatesNegations) {
    constexpr auto question = R"({"type":"noul","instructions":"Was the refund promised?"})";
    const auto yes = answerOf(SampleDecisions::literal, question);
    const auto no = answerOf(SampleDecisions::literal, question, "No, it was never promised, not once.");

    EXPECT_EQ(yes["type"], "noul");
    EXPECT_EQ(yes["noul"], 0.8);
    EXPECT_EQ(yes["confidence"], 0.8);
    EXPECT_LT(no["noul"].get<double>(), 0.5);
    EXPECT_GT(no["confidence"].get<double>(), 0.5);
}

TEST(SampleDecisions, TheTwoModelsOfTheDemoDiffer) {
    std::set<std::string> texts;
    for (const auto model : SampleDecisions::demoModels)
        texts.insert(completionOf(model, choice).text);
    EXPECT_EQ(texts.size(), SampleDecisions::demoModels.size());
    EXPECT_LT(answerOf(SampleDecisions::stems, choice)["confidence"],
              answerOf(SampleDecisions::literal, choice)["confidence"]);
}

TEST(SampleDecisions, TheSameQuestionGetsTheSameAnswer) {
    for (const auto model : SampleDecisions::demoModels)
        EXPECT_EQ(completionOf(model, choice).text, completionOf(model, choice).text);
}

TEST(SampleDecisions, NothingInCommonLeavesEveryOptionAsLikely) {
    const auto answer =
        answerOf("any", R"({"type":"choice","instructions":"?","criteria":{"b":"b","a":"a"}})", "…");

    EXPECT_EQ(answer["probabilities"], (Json::Value{{"a", 0.5}, {"b", 0.5}}));
    EXPECT_EQ(answer["choice"], "a");
}

TEST(SampleDecisions, OnlyTheDemosModelsTakeTime) {
    for (const auto model : SampleDecisions::demoModels)
        EXPECT_GT(completionOf(model, choice).delay.count(), 0) << model;
    EXPECT_EQ(completionOf("any", choice).delay.count(), 0);
    EXPECT_EQ(completionOf("any", choice).text, completionOf(SampleDecisions::literal, choice).text);
}

TEST(SampleDecisions, CountsAreReported) {
    const auto completion = completionOf("any", choice);

    EXPECT_GT(completion.inputTokens, 0);
    EXPECT_GT(completion.outputTokens, 0);
}

TEST(SampleDecisions, TheUnavailableModelHasNoAnswer) {
    Question asked{.modelIdentifier = std::string(SampleAnswers::unavailable)};
    asked.decisions = "{}";

    EXPECT_EQ(SampleDecisions::answer(asked).has_value(), false);
}

} // namespace
} // namespace quorl::sample
