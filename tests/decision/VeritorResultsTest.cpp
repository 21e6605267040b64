#include "decision/VeritorResults.h"

#include "base/Json.h"
#include "decision/Questions.h"
#include "decision/Veritor.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using Veritor::interpret;
using Veritor::Interpreted;
using OptionalText = std::optional<std::string>;

// The summary of a response whose one answer, under the key "key", is this.
std::string linesOf(const std::string& answer) {
    const auto result = interpret(R"({"answers":{"key":)" + answer + "}}");
    EXPECT_EQ(result.error, OptionalText()) << answer;
    return result.summary;
}

DecisionResult resultOf(const std::string& answer, const std::vector<DecisionQuestion>& questions = {}) {
    const auto results = Veritor::decisionResults(R"({"answers":{"key":)" + answer + "}}", questions);
    return results.empty() ? DecisionResult{} : results.front();
}

DecisionQuestion named(DecisionQuestion question, std::string name) {
    question.name = std::move(name);
    return question;
}

TEST(VeritorInterpret, ReadsAWholeResponse) {
    const auto result = interpret(
        R"({"model":"zun-1","usage":{"input_tokens":210,"output_tokens":12},"answers":{)"
        R"("verdict":{"type":"choice","choice":"Approve","probabilities":{"Refuse":0.125,"Approve":0.875},)"
        R"("confidence":0.81,"action":{"act_probability":0.6}},)"
        R"("urgency":{"type":"score","score":7.25,"legend":{"2":"high","1":"low"}},)"
        R"("safe":{"type":"noul","noul":0.875}}})");

    EXPECT_EQ(result.summary, "zun-1\n"
                              "safe  ·  88% yes\n"
                              "urgency  ·  7.25\n"
                              "low  ·  high\n"
                              "verdict  ·  Approve\n"
                              "Approve 88%   Refuse 13%\n"
                              "confidence 81%\n"
                              "act 60%");
    EXPECT_EQ(result.inputTokens, 210);
    EXPECT_EQ(result.outputTokens, 12);
    EXPECT_EQ(result.error, OptionalText());
}

TEST(VeritorInterpret, PrettyIsIndentedByTwoWithSortedKeysAndBareSlashes) {
    EXPECT_EQ(interpret(R"({"model":"a/b","answers":{"b":{},"a":[]}})").pretty, R"({
  "answers": {
    "a": [],
    "b": {}
  },
  "model": "a/b"
})");
}

TEST(VeritorInterpret, PrettyKeepsEveryNumberAsItCame) {
    for (const char* const number : {"7.0", "7", "0.1", "-0.0", "1.5e-07", "9007199254740993",
                                     "18446744073709551615", "-9223372036854775808", "0.30000000000000004"})
        EXPECT_EQ(interpret(std::string(R"({"n":)") + number + "}").pretty,
                  std::string("{\n  \"n\": ") + number + "\n}");
}

TEST(VeritorInterpret, PlainWordsAreTakenForAnAnswer) {
    EXPECT_EQ(
        interpret(" Server busy\n"),
        (Interpreted{
            .pretty = "Server busy", .summary = "", .inputTokens = {}, .outputTokens = {}, .error = {}}));
    EXPECT_EQ(interpret("[1, 2]").pretty, "[1, 2]");
    EXPECT_EQ(interpret("{\"answers\":").pretty, "{\"answers\":");
}

TEST(VeritorInterpret, NothingReadableIsNoJSON) {
    for (const char* const body : {"", " \r\n", "\xff\xfe", "{\"answers\":\"\xff\"}"}) {
        Interpreted expected;
        expected.error = "The response was not JSON.";
        EXPECT_EQ(interpret(body), expected) << body;
    }
}

TEST(VeritorInterpret, ReadsEitherNameOfTheCounts) {
    const auto counts = [](const std::string& usage) {
        const auto result = interpret(R"({"answers":{},"usage":)" + usage + "}");
        return std::pair(result.inputTokens, result.outputTokens);
    };
    using Counts = std::pair<std::optional<std::int64_t>, std::optional<std::int64_t>>;

    EXPECT_EQ(counts(R"({"prompt_tokens":3,"completion_tokens":4})"), Counts(3, 4));
    EXPECT_EQ(counts(R"({"input_tokens":1,"prompt_tokens":3,"output_tokens":2,"completion_tokens":4})"),
              Counts(1, 2));
    EXPECT_EQ(counts(R"({"input_tokens":"1","prompt_tokens":3.9,"output_tokens":true})"),
              Counts(3, std::nullopt));
    for (const char* const usage : {"null", "[]", "7", "{}"})
        EXPECT_EQ(counts(usage), Counts()) << usage;
}

TEST(VeritorInterpret, CountsAreReadBesideAnError) {
    const auto result = interpret(R"({"error":"x","usage":{"input_tokens":5}})");

    EXPECT_EQ(result.error, "x");
    EXPECT_EQ(result.inputTokens, 5);
}

TEST(VeritorInterpret, ReportsTheFirstErrorThatIsNotEmpty) {
    const auto errorOf = [](const char* body) {
        const auto result = interpret(body);
        EXPECT_EQ(result.summary, "") << body;
        EXPECT_FALSE(result.pretty.empty()) << body;
        return result.error;
    };

    EXPECT_EQ(errorOf(R"({"error":{"message":"inner"},"message":"outer"})"), "inner");
    EXPECT_EQ(errorOf(R"({"error":"x","answers":{"a":{"type":"noul","noul":1}}})"), "x");
    EXPECT_EQ(errorOf(R"({"message":"quota"})"), "quota");
    EXPECT_EQ(errorOf(R"({"error":"","message":"quota"})"), "quota");
    EXPECT_EQ(errorOf(R"({"error":{"message":""},"message":"quota"})"), "quota");
    EXPECT_EQ(errorOf(R"({"error":{"message":7},"message":"quota"})"), "quota");
    EXPECT_EQ(errorOf(R"({"error":null,"message":"quota"})"), "quota");
    EXPECT_EQ(errorOf(R"({"message":"quota","answers":null})"), "The response had no answers.");
    EXPECT_EQ(errorOf(R"({"message":""})"), "The response had no answers.");
}

TEST(VeritorInterpret, AnswersHaveToBeAnObject) {
    for (const char* const body : {"{}", R"({"answers":[]})", R"({"answers":"a"})", R"({"model":"zun-1"})"})
        EXPECT_EQ(interpret(body).error, "The response had no answers.") << body;
}

TEST(VeritorInterpret, AMessageBesideAnswersIsNoError) {
    const auto result = interpret(R"({"message":"ok","answers":{},"model":"zun-1"})");

    EXPECT_EQ(result.error, OptionalText());
    EXPECT_EQ(result.summary, "zun-1");
}

TEST(VeritorInterpret, SummarisesInTheOrderOfTheKeysAndSkipsWhatIsNoObject) {
    EXPECT_EQ(interpret(R"({"model":"","answers":{"b":{},"a":{"type":"other"},"c":7,"d":["x"]}})").summary,
              "a\nb");
}

TEST(VeritorInterpret, AChoiceHasItsLabelAndItsProbabilities) {
    EXPECT_EQ(linesOf(R"({"type":"choice"})"), "key  ·  ");
    EXPECT_EQ(linesOf(R"({"type":"choice","choice":" A ","probabilities":[]})"), "key  ·   A ");
    EXPECT_EQ(
        linesOf(R"({"type":"choice","choice":"A","probabilities":{"b":"0.5","c":1,"a":0.005,"d":true}})"),
        "key  ·  A\na 1%   c 100%");
    EXPECT_EQ(linesOf(R"({"type":"choice","choice":"A","probabilities":{}})"), "key  ·  A\n");
}

TEST(VeritorInterpret, AScoreIsAnIntegerOrHasTwoDecimals) {
    const auto scoreLine = [](const std::string& score) {
        return linesOf(R"({"type":"score","score":)" + score + "}").substr(std::string("key  ·  ").size());
    };

    EXPECT_EQ(scoreLine("7.0"), "7");
    EXPECT_EQ(scoreLine("7"), "7");
    EXPECT_EQ(scoreLine("7.25"), "7.25");
    EXPECT_EQ(scoreLine("-7.5"), "-7.50");
    EXPECT_EQ(scoreLine("-0.0"), "0");
    EXPECT_EQ(scoreLine("1e20"), "100000000000000000000");
    EXPECT_EQ(scoreLine("\"7\""), "");
    EXPECT_EQ(scoreLine("true"), "");
}

TEST(VeritorInterpret, ALegendIsItsTextsInOneLine) {
    const auto legendLines = [](const std::string& legend) {
        return linesOf(R"({"type":"score","score":1,"legend":)" + legend + "}");
    };

    EXPECT_EQ(legendLines(R"({"10":"c","1":"a","2":7})"), "key  ·  1\na  ·  c");
    EXPECT_EQ(legendLines(R"(["low",7,"high"])"), "key  ·  1\nlow  ·  high");
    for (const char* const none : {"{}", "[]", R"({"1":7})", "[7]", "\"low\"", "null"})
        EXPECT_EQ(legendLines(none), "key  ·  1") << none;
}

TEST(VeritorInterpret, EmptyTextsKeepTheirPlace) {
    EXPECT_EQ(linesOf(R"({"type":"score","score":1,"legend":["","high"]})"), "key  ·  1\n  ·  high");
    EXPECT_EQ(linesOf(R"({"type":"score","score":1,"legend":[""]})"), "key  ·  1\n");
    EXPECT_EQ(interpret(R"({"answers":{"":{"confidence":1}}})").summary, "\nconfidence 100%");
}

TEST(VeritorInterpret, ANoulIsThePercentageOfYes) {
    EXPECT_EQ(linesOf(R"({"type":"noul","noul":0.875})"), "key  ·  88% yes");
    EXPECT_EQ(linesOf(R"({"type":"noul","noul":1})"), "key  ·  100% yes");
    EXPECT_EQ(linesOf(R"({"type":"noul"})"), "key  ·  0% yes");
    EXPECT_EQ(linesOf(R"({"type":"noul","noul":true})"), "key  ·  0% yes");
    EXPECT_EQ(linesOf(R"({"type":"noul","noul":1e300})"), "key  ·  9200000000000000000% yes");
}

TEST(VeritorInterpret, ConfidenceAndActionFollowWhateverTheType) {
    EXPECT_EQ(linesOf(R"({"confidence":0.5,"action":{"act_probability":1}})"),
              "key\nconfidence 50%\nact 100%");
    EXPECT_EQ(linesOf(R"({"type":7,"confidence":"0.5","action":{"act_probability":false}})"), "key");
    EXPECT_EQ(linesOf(R"({"type":"Choice","action":0.5})"), "key");
}

TEST(VeritorSummary, IsTheTextItselfWhereThereIsNone) {
    EXPECT_EQ(Veritor::summary(R"({"answers":{"a":{"type":"noul","noul":0.5}}})"), "a  ·  50% yes");
    EXPECT_EQ(Veritor::summary(" Server busy\n"), " Server busy\n");
    EXPECT_EQ(Veritor::summary(R"({"answers":{}})"), R"({"answers":{}})");
    EXPECT_EQ(Veritor::summary(R"({"error":"x","answers":{"a":{}}})"), R"({"error":"x","answers":{"a":{}}})");
    EXPECT_EQ(Veritor::summary(""), "");
}

TEST(VeritorPreview, IsOneLineAQuestion) {
    auto choice = named(makeChoice(), " Verdict ");
    choice.instructions = " Is the refund due? ";

    EXPECT_EQ(Veritor::preview(Veritor::archive({choice, makeScore(), makeNoul()})),
              "Choice · Verdict · Is the refund due?\n"
              "Score · How urgent is it?\n"
              "Yes / No · Is it safe?");
    EXPECT_EQ(Veritor::preview(""), "");
    EXPECT_EQ(Veritor::preview("[]"), "");
    EXPECT_EQ(Veritor::preview("nonsense"), "");
}

TEST(VeritorDecisionResults, AreReadWithTheirQuestions) {
    auto choice = named(makeChoice({"Approve", " ", "Refuse"}), " Verdict ");
    const auto results = Veritor::decisionResults(
        R"({"answers":{"verdict":{"type":"choice","choice":" Approve ","confidence":0.805,)"
        R"("probabilities":{"Approve":0.7,"Refuse":0.2,"Ask":0.1}},"how_urgent_is_it":{"type":"score","score":7},)"
        R"("is_it_safe":{"type":"noul","noul":0.25},"is_it_safe_2":{"type":"noul"}}})",
        {choice, makeScore(), makeNoul(), makeNoul()});

    using Signals = std::vector<DecisionResult::Signal>;
    EXPECT_EQ(results, (std::vector<DecisionResult>{
                           {"how_urgent_is_it", "How urgent is it?", "7", {}, {}, {}},
                           {"is_it_safe", "Is it safe?", "25% yes", {}, {}, {}},
                           {"is_it_safe_2", "Is it safe?", "0% yes", {}, {}, {}},
                           {"verdict",
                            "Verdict",
                            "Approve",
                            81,
                            Signals{{"Approve", 70}, {"Refuse", 20}, {"Ask", 10}},
                            {"Approve", " ", "Refuse"}},
                       }));
}

TEST(VeritorDecisionResults, NeedAnObjectOfAnswers) {
    for (const char* const text : {"", "Server busy", "[]", "{}", R"({"answers":[]})", R"({"answers":null})"})
        EXPECT_TRUE(Veritor::decisionResults(text, {makeNoul()}).empty()) << text;
}

TEST(VeritorDecisionResults, SkipWhatIsNoTypedAnswer) {
    const auto results = Veritor::decisionResults(
        R"({"answers":{"a":7,"b":{},"c":{"type":"other"},"d":{"type":" noul"},"e":{"type":"noul"}}})", {});

    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].key, "e");
}

TEST(VeritorDecisionResults, AKeyWithoutAQuestionIsMadeReadable) {
    const auto promptOf = [](const std::string& key) {
        const auto results =
            Veritor::decisionResults(R"({"answers":{")" + key + R"(":{"type":"noul"}}})", {makeChoice()});
        return results.empty() ? "" : results[0].prompt;
    };

    EXPECT_EQ(promptOf("risk_level-2"), "Risk Level 2");
    EXPECT_EQ(promptOf("IS_IT"), "Is It");
    EXPECT_EQ(promptOf("élan_vital"), "Élan Vital");
    EXPECT_EQ(promptOf(""), "");
}

TEST(VeritorDecisionResults, AnAnswerWithoutItsValueSaysSo) {
    EXPECT_EQ(resultOf(R"({"type":"choice"})").answer, "No answer returned");
    EXPECT_EQ(resultOf(R"({"type":"choice","choice":7})").answer, "No answer returned");
    EXPECT_EQ(resultOf(R"({"type":"choice","choice":" "})").answer, "");
    EXPECT_EQ(resultOf(R"({"type":"score"})").answer, "No score returned");
    EXPECT_EQ(resultOf(R"({"type":"score","score":true})").answer, "No score returned");
    EXPECT_EQ(resultOf(R"({"type":"score","score":7.125})").answer, "7.12");
    EXPECT_EQ(resultOf(R"({"type":"noul","noul":"1"})").answer, "0% yes");
}

TEST(VeritorDecisionResults, SignalsAreTheNumbersHighestFirst) {
    const auto result =
        resultOf(R"({"type":"choice","probabilities":{"d":0.1,"c":0.1,"b":"0.9","a":0.8,"e":0.104}})");

    using Signals = std::vector<DecisionResult::Signal>;
    EXPECT_EQ(result.signals, (Signals{{"a", 80}, {"c", 10}, {"d", 10}, {"e", 10}}));
    EXPECT_TRUE(resultOf(R"({"type":"choice","probabilities":[0.5]})").signals.empty());
    EXPECT_EQ(resultOf(R"({"type":"score","probabilities":{"low":1}})").signals, (Signals{{"low", 100}}));
}

TEST(VeritorDecisionResults, ConfidenceIsThereIfItIsANumber) {
    EXPECT_EQ(resultOf(R"({"type":"noul","confidence":0.875})").confidence, 88);
    EXPECT_EQ(resultOf(R"({"type":"noul","confidence":"0.8"})").confidence, std::nullopt);
    EXPECT_EQ(resultOf(R"({"type":"noul"})").confidence, std::nullopt);
}

TEST(VeritorDecisionResults, OptionsAreTheQuestionsWhateverTheAnswersType) {
    const auto labels = std::vector<std::string>{"Approve", "Refuse"};

    EXPECT_EQ(resultOf(R"({"type":"noul"})", {named(makeChoice(), "key")}).choiceOptions, labels);
    auto score = named(makeScore(), "key");
    score.options = makeOptions(labels);
    EXPECT_TRUE(resultOf(R"({"type":"choice"})", {score}).choiceOptions.empty());
    EXPECT_TRUE(resultOf(R"({"type":"choice"})").choiceOptions.empty());
}

constexpr const char* answered =
    R"({"model":"zun-1","answers":{)"
    R"("a":{"type":"choice","choice":"X","probabilities":{"X":1},"confidence":1,)"
    R"("action":{},"note":"kept"},"b":{"type":"choice","choice":"X"},)"
    R"("c":{"type":"score","score":7.0},"d":7}})";

TEST(VeritorCorrections, ReplaceTheChoiceAndDropWhatBelongedToIt) {
    EXPECT_EQ(Veritor::applyingChoiceCorrections(answered, {{"a", "Y"}}), R"({
  "answers": {
    "a": {
      "choice": "Y",
      "note": "kept",
      "type": "choice"
    },
    "b": {
      "choice": "X",
      "type": "choice"
    },
    "c": {
      "score": 7.0,
      "type": "score"
    },
    "d": 7
  },
  "model": "zun-1"
})");
}

TEST(VeritorCorrections, AreAllMadeOrNone) {
    for (const char* const wrong : {"c", "d", "e"})
        EXPECT_EQ(Veritor::applyingChoiceCorrections(answered, {{"a", "Y"}, {wrong, "Y"}}), OptionalText())
            << wrong;
    EXPECT_TRUE(Veritor::applyingChoiceCorrections(answered, {{"a", "Y"}, {"b", "Z"}}));
}

TEST(VeritorCorrections, NeedAMapAndAnswers) {
    EXPECT_EQ(Veritor::applyingChoiceCorrections(answered, {}), OptionalText());
    for (const char* const text : {"", "Server busy", "[]", "{}", R"({"answers":[]})"})
        EXPECT_EQ(Veritor::applyingChoiceCorrections(text, {{"a", "Y"}}), OptionalText()) << text;
}

TEST(VeritorCorrections, LeaveNoSignalToShow) {
    const auto corrected = Veritor::applyingChoiceCorrections(answered, {{"a", "Y"}});
    ASSERT_TRUE(corrected);

    const auto results = Veritor::decisionResults(*corrected, {});

    EXPECT_EQ(results.at(0).answer, "Y");
    EXPECT_TRUE(results.at(0).signals.empty());
    EXPECT_EQ(results.at(0).confidence, std::nullopt);
}

} // namespace
} // namespace quorl::test
