#include "decision/Veritor.h"

#include "decision/Questions.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

Json::Value wire(const char* text) {
    return Json::parse(text).value();
}

std::optional<std::vector<DecisionQuestion>> decode(const char* text) {
    return Veritor::decodeWireQuestions(wire(text));
}

// The one question of a wire form, whose place among the starter's fields no test has to spell out.
DecisionQuestion decodeOne(const char* text) {
    const auto questions = decode(text);
    return questions && questions->size() == 1 ? questions->front() : DecisionQuestion();
}

std::vector<std::pair<std::string, std::string>> labelsAndDetails(const DecisionQuestion& question) {
    std::vector<std::pair<std::string, std::string>> result;
    for (const auto& option : question.options)
        result.emplace_back(option.label, option.detail);
    return result;
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(VeritorWire, AChoiceMapsItsLabelsToTheirDetails) {
    auto question = makeChoice({" Approve ", "Refuse", " ", ""});
    question.instructions = "  Is the refund due?\n";
    question.options[0].detail = " within 30 days ";
    question.options[1].detail = " \n";
    question.options[2].detail = "of nothing";

    EXPECT_EQ(Veritor::wireJSON({question}),
              R"({"verdict":{"criteria":{"Approve":"within 30 days","Refuse":"Refuse"},)"
              R"("instructions":"Is the refund due?","type":"choice"}})");
}

TEST(VeritorWire, AChoiceWithoutOptionsKeepsItsEmptyCriteria) {
    EXPECT_EQ(Veritor::wireJSON({makeChoice({"", " "})}),
              R"({"verdict":{"criteria":{},"instructions":"Is the refund due?","type":"choice"}})");
}

TEST(VeritorWire, AScoreListsItsLevelsInTheirOrder) {
    EXPECT_EQ(Veritor::wireJSON({makeScore({" low ", "", "high", "\n", "a/b"})}),
              R"({"how_urgent_is_it":{"criteria":["low","high","a/b"],"instructions":"How urgent is it?",)"
              R"("type":"score"}})");
    EXPECT_EQ(Veritor::wireJSON({makeScore({""})}),
              R"({"how_urgent_is_it":{"criteria":[],"instructions":"How urgent is it?","type":"score"}})");
}

TEST(VeritorWire, ANoulSaysOnlyWhatWasWritten) {
    auto question = makeNoul();
    question.yesMeans = " ";
    EXPECT_EQ(Veritor::wireJSON({question}),
              R"({"is_it_safe":{"instructions":"Is it safe?","type":"noul"}})");

    question.noMeans = " not at all ";
    EXPECT_EQ(
        Veritor::wireJSON({question}),
        R"({"is_it_safe":{"criteria":{"false":"not at all"},"instructions":"Is it safe?","type":"noul"}})");

    question.yesMeans = "wholly";
    EXPECT_EQ(Veritor::wireJSON({question}),
              R"({"is_it_safe":{"criteria":{"false":"not at all","true":"wholly"},)"
              R"("instructions":"Is it safe?","type":"noul"}})");
}

TEST(VeritorWire, EqualQuestionsHaveKeysOfTheirOwn) {
    EXPECT_EQ(Veritor::wireJSON({makeNoul(), makeNoul()}),
              R"({"is_it_safe":{"instructions":"Is it safe?","type":"noul"},)"
              R"("is_it_safe_2":{"instructions":"Is it safe?","type":"noul"}})");
}

TEST(VeritorWire, NoQuestionsAreAnEmptyObject) {
    EXPECT_EQ(Veritor::wireJSON({}), "{}");
}

TEST(VeritorWire, TextThatIsNotUTF8GivesNothing) {
    auto question = makeNoul();
    question.yesMeans = "\xFF";

    EXPECT_EQ(Veritor::wireJSON({question}), std::nullopt);
}

TEST(VeritorWireReading, TheMapIsANonEmptyObject) {
    EXPECT_EQ(decode("{}"), std::nullopt);
    EXPECT_EQ(decode("[]"), std::nullopt);
    EXPECT_EQ(decode("null"), std::nullopt);
    EXPECT_EQ(decode(R"("a")"), std::nullopt);
}

TEST(VeritorWireReading, QuestionsComeInTheOrderOfTheirKeys) {
    const auto questions =
        decode(R"({"b":{"type":"noul","instructions":"B?"},"a":{"type":"noul","instructions":"A?"}})");

    ASSERT_TRUE(questions);
    ASSERT_EQ(questions->size(), 2u);
    EXPECT_EQ(questions->at(0).instructions, "A?");
    EXPECT_EQ(questions->at(1).instructions, "B?");
    EXPECT_NE(questions->at(0).id, questions->at(1).id);
}

TEST(VeritorWireReading, BuildsOnAStarterNamedAsTheKeyStands) {
    const auto question = decodeOne(R"({" My Key ":{"type":" noul\n","instructions":"  Is it? "}})");

    EXPECT_EQ(question.name, " My Key ");
    EXPECT_EQ(question.type, DecisionQuestionType::noul);
    EXPECT_EQ(question.instructions, "Is it?");
    EXPECT_EQ(labelsAndDetails(question), (Pairs{{"", ""}, {"", ""}}));
    EXPECT_EQ(question.levels, (std::vector<std::string>{"", ""}));
    EXPECT_NE(question.id, UUID());
}

TEST(VeritorWireReading, TheTypeIsOneOfThreeWords) {
    EXPECT_EQ(decode(R"({"a":{"instructions":"A?"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":1,"instructions":"A?"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"Noul","instructions":"A?"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"yesno","instructions":"A?"}})"), std::nullopt);
}

TEST(VeritorWireReading, InstructionsAreNeeded) {
    EXPECT_EQ(decode(R"({"a":{"type":"noul"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"noul","instructions":" \n"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"noul","instructions":["A?"]}})"), std::nullopt);
}

TEST(VeritorWireReading, OneBadEntryAmongGoodOnesSpoilsTheWhole) {
    auto map = Json::Value::object();
    for (int number = 1; number <= 31; ++number)
        map["good" + std::to_string(number)] = wire(R"({"type":"noul","instructions":"Is it?"})");
    ASSERT_TRUE(Veritor::decodeWireQuestions(map));

    map["bad"] = "noul";
    EXPECT_EQ(Veritor::decodeWireQuestions(map), std::nullopt);
}

TEST(VeritorWireReading, ChoiceOptionsOfAnObjectAreInTheOrderOfTheirLabels) {
    const auto question = decodeOne(
        R"({"a":{"type":"choice","instructions":"A?","criteria":{"z":" last ","B ":1,"b":"","c":null}}})");

    EXPECT_EQ(labelsAndDetails(question), (Pairs{{"B ", "B "}, {"b", ""}, {"c", "c"}, {"z", " last "}}));
    EXPECT_NE(question.options[0].id, question.options[1].id);
}

TEST(VeritorWireReading, ChoiceOptionsOfAnArrayAreItsTexts) {
    EXPECT_EQ(
        labelsAndDetails(decodeOne(R"({"a":{"type":"choice","instructions":"A?","criteria":["y"," x "]}})")),
        (Pairs{{"y", "y"}, {" x ", " x "}}));
    EXPECT_EQ(labelsAndDetails(decodeOne(
                  R"({"a":{"type":"choice","instructions":"A?","criteria":[1,"y",null,["z"],"x"]}})")),
              (Pairs{{"y", "y"}, {"x", "x"}}));
}

TEST(VeritorWireReading, AChoiceNeedsTwoOptionsOfAnyName) {
    EXPECT_EQ(decode(R"({"a":{"type":"choice","instructions":"A?"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"choice","instructions":"A?","criteria":"x, y"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"choice","instructions":"A?","criteria":{"x":"y"}}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"choice","instructions":"A?","criteria":["x",1]}})"), std::nullopt);
    // Whether they are named and differ is for `validate`.
    EXPECT_TRUE(decode(R"({"a":{"type":"choice","instructions":"A?","criteria":["x","x"]}})"));
    EXPECT_TRUE(decode(R"({"a":{"type":"choice","instructions":"A?","criteria":["x"," "]}})"));
}

TEST(VeritorWireReading, ScoreLevelsAreTheTrimmedTextsOfAnArray) {
    const auto question =
        decodeOne(R"({"a":{"type":"score","instructions":"A?","criteria":[" low ",1,"","high",null," "]}})");

    EXPECT_EQ(question.levels, (std::vector<std::string>{"low", "high"}));
}

TEST(VeritorWireReading, AScoreHasTwoToTenLevels) {
    EXPECT_EQ(decode(R"({"a":{"type":"score","instructions":"A?"}})"), std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"score","instructions":"A?","criteria":{"1":"low","2":"high"}}})"),
              std::nullopt);
    EXPECT_EQ(decode(R"({"a":{"type":"score","instructions":"A?","criteria":["low"," "]}})"), std::nullopt);
    EXPECT_TRUE(decode(
        R"({"a":{"type":"score","instructions":"A?","criteria":["1","2","3","4","5","6","7","8","9","10"]}})"));
    EXPECT_EQ(
        decode(
            R"({"a":{"type":"score","instructions":"A?","criteria":["1","2","3","4","5","6","7","8","9","10","11"]}})"),
        std::nullopt);
}

TEST(VeritorWireReading, ANoulReadsItsMeaningsUntrimmed) {
    const auto question =
        decodeOne(R"({"a":{"type":"noul","instructions":"A?","criteria":{"true":" yes ","false":"no"}}})");

    EXPECT_EQ(question.yesMeans, " yes ");
    EXPECT_EQ(question.noMeans, "no");
}

TEST(VeritorWireReading, ANoulAcceptsCriteriaOfAnyShape) {
    for (const auto* text :
         {R"({"a":{"type":"noul","instructions":"A?"}})",
          R"({"a":{"type":"noul","instructions":"A?","criteria":["true"]}})",
          R"({"a":{"type":"noul","instructions":"A?","criteria":null}})",
          R"({"a":{"type":"noul","instructions":"A?","criteria":{"true":1,"false":["no"]}}})"}) {
        const auto question = decodeOne(text);

        EXPECT_EQ(question.instructions, "A?") << text;
        EXPECT_EQ(question.yesMeans, "") << text;
        EXPECT_EQ(question.noMeans, "") << text;
    }
}

TEST(VeritorWireReading, SetsNoLimitOnTheNumberOfQuestions) {
    auto map = Json::Value::object();
    for (int number = 1; number <= 40; ++number)
        map["q" + std::to_string(number)] = wire(R"({"type":"noul","instructions":"Is it?"})");

    EXPECT_EQ(Veritor::decodeWireQuestions(map)->size(), 40u);
}

TEST(VeritorWireReading, ReadsBackWhatIsSent) {
    auto question = makeChoice({"A", "B"});
    question.options[0].detail = "first";
    const auto map = Veritor::wireMap({question});

    const auto read = Veritor::decodeWireQuestions(map);

    ASSERT_TRUE(read);
    EXPECT_EQ(read->at(0).name, "verdict");
    EXPECT_EQ(read->at(0).instructions, "Is the refund due?");
    EXPECT_EQ(labelsAndDetails(read->at(0)), (Pairs{{"A", "first"}, {"B", "B"}}));
    EXPECT_EQ(Veritor::wireMap(*read), map);
}

} // namespace
} // namespace quorl::test
