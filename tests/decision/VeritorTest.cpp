#include "decision/Veritor.h"

#include "decision/Questions.h"
#include "store/StoreError.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using Problem = std::optional<std::string>;

Problem problemOf(const DecisionQuestion& question) {
    return Veritor::validate("A parcel is late.", {question});
}

std::vector<std::string> numbered(std::size_t count) {
    std::vector<std::string> texts;
    for (std::size_t number = 1; number <= count; ++number)
        texts.push_back("Entry " + std::to_string(number));
    return texts;
}

std::string keyOf(const std::string& name, const std::string& instructions = "???") {
    auto question = makeNoul();
    question.name = name;
    question.instructions = instructions;
    std::set<std::string> used;
    return Veritor::questionKey(question, used);
}

TEST(VeritorValidate, AcceptsEveryTypeOfQuestion) {
    EXPECT_EQ(Veritor::validate("A parcel is late.", {makeChoice(), makeScore(), makeNoul()}), Problem());
}

TEST(VeritorValidate, ABlankStateIsTheFirstProblem) {
    EXPECT_EQ(Veritor::validate("", {makeNoul()}), "Write the state this decision is about.");
    EXPECT_EQ(Veritor::validate("   ", {makeNoul()}), "Write the state this decision is about.");
    EXPECT_EQ(Veritor::validate(" \r\n\t\u00A0\u2028\u3000", {makeNoul()}),
              "Write the state this decision is about.");
    EXPECT_EQ(Veritor::validate("", {}), "Write the state this decision is about.");
}

TEST(VeritorValidate, NeedsAQuestion) {
    EXPECT_EQ(Veritor::validate("A parcel is late.", {}), "Add a question.");
}

TEST(VeritorValidate, LimitsTheQuestionsBeforeLookingAtAny) {
    EXPECT_EQ(Veritor::validate("A parcel is late.", std::vector(32, makeNoul())), Problem());
    EXPECT_EQ(Veritor::validate("A parcel is late.", std::vector(33, DecisionQuestion::starter())),
              "Veritor accepts at most 32 questions.");
}

TEST(VeritorValidate, NeedsTheQuestionsText) {
    auto question = makeNoul();
    question.name = "Named";
    question.instructions = " \n";

    EXPECT_EQ(problemOf(question), "Write the question text.");
}

TEST(VeritorValidate, MissingTextComesBeforeMissingOptions) {
    EXPECT_EQ(problemOf(DecisionQuestion::starter()), "Write the question text.");
}

TEST(VeritorValidate, AChoiceNeedsTwoNamedOptions) {
    EXPECT_EQ(problemOf(makeChoice({})), "A choice needs at least two options.");
    EXPECT_EQ(problemOf(makeChoice({"A"})), "A choice needs at least two options.");
    EXPECT_EQ(problemOf(makeChoice({"A", "", " \n"})), "A choice needs at least two options.");
    EXPECT_EQ(problemOf(makeChoice({"A", "", " ", "\t", "", " ", "B"})), Problem());
}

TEST(VeritorValidate, AChoiceTakesSixtyFourNamedOptions) {
    auto labels = numbered(64);
    labels.push_back("  ");
    EXPECT_EQ(problemOf(makeChoice(labels)), Problem());

    labels.push_back("One more");
    EXPECT_EQ(problemOf(makeChoice(labels)), "A choice accepts at most 64 options.");
}

TEST(VeritorValidate, TooManyOptionsComeBeforeEqualOnes) {
    EXPECT_EQ(problemOf(makeChoice(std::vector<std::string>(65, "Same"))),
              "A choice accepts at most 64 options.");
}

TEST(VeritorValidate, OptionsDifferAfterTrimmingAndByCase) {
    EXPECT_EQ(problemOf(makeChoice({"A", " A "})), "Choice options need different names.");
    EXPECT_EQ(problemOf(makeChoice({"A", "B", "C", "A\n"})), "Choice options need different names.");
    EXPECT_EQ(problemOf(makeChoice({"A", "a"})), Problem());
}

TEST(VeritorValidate, AScoreHasTwoToTenNamedLevels) {
    const auto message = "Add two to ten score levels, from lowest to highest.";
    EXPECT_EQ(problemOf(makeScore({"", " "})), message);
    EXPECT_EQ(problemOf(makeScore({"", "only", " \n", ""})), message);
    EXPECT_EQ(problemOf(makeScore(numbered(2))), Problem());
    EXPECT_EQ(problemOf(makeScore(numbered(10))), Problem());
    EXPECT_EQ(problemOf(makeScore(numbered(11))), message);
    EXPECT_EQ(problemOf(makeScore({"same", "same"})), Problem());
}

TEST(VeritorValidate, LooksOnlyAtTheFieldsOfTheQuestionsType) {
    auto question = makeNoul();
    question.options = makeOptions({"A", "A"});
    question.levels = {};

    EXPECT_EQ(problemOf(question), Problem());
}

TEST(VeritorValidate, TheFirstBadQuestionSpeaks) {
    EXPECT_EQ(Veritor::validate("State", {makeNoul(), makeScore({"one"}), makeChoice({})}),
              "Add two to ten score levels, from lowest to highest.");
}

TEST(VeritorKey, IsTheSlugOfTheNameOrElseOfTheInstructions) {
    EXPECT_EQ(keyOf("Is it safe?"), "is_it_safe");
    EXPECT_EQ(keyOf(" \n", "How urgent is it?"), "how_urgent_is_it");
    EXPECT_EQ(keyOf("  Risk Level  ", "ignored"), "risk_level");
}

TEST(VeritorKey, KeepsLettersAndNumbersOfEveryScript) {
    EXPECT_EQ(keyOf("Größe & Übermaß"), "größe_übermaß");
    EXPECT_EQ(keyOf("Безопасно ли?"), "безопасно_ли");
    EXPECT_EQ(keyOf("安全吗？"), "安全吗");
    EXPECT_EQ(keyOf("x² plus"), "x²_plus");
    EXPECT_EQ(keyOf("CAFE\u0301"), "cafe\u0301");
}

TEST(VeritorKey, GathersSeparatorsAndDropsTheRest) {
    EXPECT_EQ(keyOf("a-b_c d\te\r\nf\u00A0g"), "a_b_c_d_e_f_g");
    EXPECT_EQ(keyOf("a - _ b"), "a_b");
    EXPECT_EQ(keyOf("__--a--__"), "a");
    EXPECT_EQ(keyOf("a (?) b"), "a_b");
    EXPECT_EQ(keyOf("a.b/c"), "abc");
    EXPECT_EQ(keyOf("Ship \U0001F680 now"), "ship_now");
    EXPECT_EQ(keyOf("-!-"), "question");
}

TEST(VeritorKey, DoesNotStartWithANumber) {
    EXPECT_EQ(keyOf("3 Risks"), "q_3_risks");
    EXPECT_EQ(keyOf("_3"), "q_3");
    EXPECT_EQ(keyOf("\u0663 risks"), "q_\u0663_risks");
    EXPECT_EQ(keyOf("\u2167 parts"), "q_\u2177_parts");
    EXPECT_EQ(keyOf("?a3"), "a3");
}

TEST(VeritorKey, FallsBackToAWord) {
    EXPECT_EQ(keyOf("???", "!!!"), "question");
    EXPECT_EQ(keyOf("", "\xFF"), "question");
}

TEST(VeritorKey, ANameWithoutASlugDoesNotGiveWayToTheInstructions) {
    EXPECT_EQ(keyOf("???", "Is it safe?"), "question");
}

TEST(VeritorKey, EqualKeysAreCountedUp) {
    std::set<std::string> used;
    auto question = makeNoul();

    EXPECT_EQ(Veritor::questionKey(question, used), "is_it_safe");
    EXPECT_EQ(Veritor::questionKey(question, used), "is_it_safe_2");
    EXPECT_EQ(Veritor::questionKey(question, used), "is_it_safe_3");
    EXPECT_EQ(used, (std::set<std::string>{"is_it_safe", "is_it_safe_2", "is_it_safe_3"}));
}

TEST(VeritorKey, CountingSkipsWhatANameHasTaken) {
    std::set<std::string> used;
    auto question = makeNoul();
    question.name = "Safe 2";
    EXPECT_EQ(Veritor::questionKey(question, used), "safe_2");
    question.name = "Safe";
    EXPECT_EQ(Veritor::questionKey(question, used), "safe");
    EXPECT_EQ(Veritor::questionKey(question, used), "safe_3");
    question.name = "3 Risks";
    EXPECT_EQ(Veritor::questionKey(question, used), "q_3_risks");
    question.name = "3 risks!";
    EXPECT_EQ(Veritor::questionKey(question, used), "q_3_risks_2");
}

TEST(VeritorBulk, MakesOneQuestionOfEachLineInTheTemplatesForm) {
    auto form = makeChoice({"Yes", "No"});
    form.name = "Check";
    const std::vector<BulkQuestion> items{{UUID::random(), "  First?\n"}, {UUID::random(), "Second?"}};

    const auto questions = Veritor::bulkQuestions("State", form, items);

    ASSERT_EQ(questions.size(), 2u);
    auto expected = form;
    expected.id = items[0].id;
    expected.instructions = "First?";
    EXPECT_EQ(questions[0], expected);
    expected.id = items[1].id;
    expected.instructions = "Second?";
    EXPECT_EQ(questions[1], expected);
}

std::string bulkProblem(const std::string& context, const DecisionQuestion& form,
                        const std::vector<BulkQuestion>& items) {
    try {
        static_cast<void>(Veritor::bulkQuestions(context, form, items));
        return "";
    } catch (const StoreError& error) {
        return error.message();
    }
}

std::vector<BulkQuestion> lines(std::size_t count) {
    std::vector<BulkQuestion> items;
    for (const auto& text : numbered(count))
        items.push_back({UUID::random(), text});
    return items;
}

TEST(VeritorBulk, TakesOneToTwoHundredLines) {
    EXPECT_EQ(bulkProblem("State", makeNoul(), {}), "Add between 1 and 200 questions.");
    EXPECT_EQ(bulkProblem("State", makeNoul(), lines(1)), "");
    EXPECT_EQ(bulkProblem("State", makeNoul(), lines(200)), "");
}

TEST(VeritorBulk, CountsTheLinesBeforeValidatingAny) {
    EXPECT_EQ(bulkProblem("", makeChoice({}), lines(201)), "Add between 1 and 200 questions.");
}

TEST(VeritorBulk, NamesTheLineOfTheFirstProblem) {
    auto items = lines(4);
    items[2].text = " \n";
    items[3].text = "";
    EXPECT_EQ(bulkProblem("State", makeNoul(), items), "Question 3: Write the question text.");
    EXPECT_EQ(bulkProblem(" ", makeNoul(), lines(2)), "Question 1: Write the state this decision is about.");
    EXPECT_EQ(bulkProblem("State", makeScore({"one"}), lines(2)),
              "Question 1: Add two to ten score levels, from lowest to highest.");
}

TEST(VeritorStored, IsSortedCompactJSONWithAllKeysAndBareSlashes) {
    DecisionQuestion question;
    question.id = UUID::parse("0a000000-0000-4000-8000-00000000000b").value();
    question.name = "A/B";
    question.type = DecisionQuestionType::score;
    question.instructions = "Größe \"x\"?\n";
    question.options = {{UUID::parse("0c000000-0000-4000-8000-00000000000d").value(), "L", "D"}};
    question.levels = {"low", " high "};
    question.yesMeans = "Y";
    question.noMeans = "N";

    EXPECT_EQ(Veritor::archive({question}),
              R"([{"id":"0A000000-0000-4000-8000-00000000000B","instructions":"Größe \"x\"?\n",)"
              R"("levels":["low"," high "],"name":"A/B","noMeans":"N","options":[{"detail":"D",)"
              R"("id":"0C000000-0000-4000-8000-00000000000D","label":"L"}],"type":"score","yesMeans":"Y"}])");
}

TEST(VeritorStored, ReadsBackWhatWasWritten) {
    auto odd = makeChoice({" padded ", "\U0001F469\u200D\U0001F680", std::string("nul\0byte", 8), ""});
    odd.levels = {};
    odd.yesMeans = "“yes”";
    const std::vector questions{odd, makeScore(), makeNoul(), DecisionQuestion::starter()};

    EXPECT_EQ(Veritor::restore(Veritor::archive(questions)), questions);
    EXPECT_EQ(Veritor::archive({}), "[]");
}

TEST(VeritorStored, TextThatIsNotUTF8IsWrittenAsNothing) {
    auto question = makeNoul();
    question.noMeans = "\xC3";

    EXPECT_EQ(Veritor::archive({question}), "");
}

TEST(VeritorStored, UnreadableTextHoldsNoQuestions) {
    EXPECT_TRUE(Veritor::restore("").empty());
    EXPECT_TRUE(Veritor::restore("[]").empty());
    EXPECT_TRUE(Veritor::restore("{}").empty());
    EXPECT_TRUE(Veritor::restore("null").empty());
    EXPECT_TRUE(Veritor::restore("not json").empty());
    EXPECT_TRUE(Veritor::restore(R"([{"id":"x"}])").empty());
    EXPECT_TRUE(Veritor::restore(Veritor::archive({makeNoul()}) + "x").empty());
}

// The stored form of one question beside a good one, after `change` has been at it.
template <class Change>
bool isRestoredAfter(Change change) {
    auto value = Json::parse(Veritor::archive({makeNoul(), makeChoice()})).value();
    change(value[1]);
    return !Veritor::restore(Json::write(value).value()).empty();
}

TEST(VeritorStored, EveryKeyIsNeeded) {
    ASSERT_TRUE(isRestoredAfter([](Json::Value&) {}));
    for (const auto* key :
         {"id", "instructions", "levels", "name", "noMeans", "options", "type", "yesMeans"}) {
        EXPECT_FALSE(isRestoredAfter([&](Json::Value& question) { question.erase(key); })) << key;
        EXPECT_FALSE(isRestoredAfter([&](Json::Value& question) { question[key] = nullptr; })) << key;
        EXPECT_FALSE(isRestoredAfter([&](Json::Value& question) { question[key] = 1; })) << key;
    }
    for (const auto* key : {"detail", "id", "label"}) {
        EXPECT_FALSE(isRestoredAfter([&](Json::Value& question) { question["options"][1].erase(key); }))
            << key;
        EXPECT_FALSE(isRestoredAfter([&](Json::Value& question) { question["options"][1][key] = true; }))
            << key;
    }
}

TEST(VeritorStored, WrongShapesMakeTheWholeUnreadable) {
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question = "text"; }));
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question["type"] = "Choice"; }));
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question["id"] = "not-a-uuid"; }));
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question["levels"] = {"a", 1}; }));
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question["levels"] = Json::Value::object(); }));
    EXPECT_FALSE(isRestoredAfter([](Json::Value& question) { question["options"][0] = "A"; }));
}

TEST(VeritorStored, FurtherKeysAndLowerCaseIdentifiersAreRead) {
    EXPECT_TRUE(isRestoredAfter([](Json::Value& question) {
        question["later"] = 1;
        question["id"] = "0a000000-0000-4000-8000-00000000000b";
    }));
}

TEST(VeritorStored, ABulkListIsSortedCompactJSON) {
    const std::vector<BulkQuestion> items{
        {UUID::parse("0A000000-0000-4000-8000-00000000000B").value(), " a/b "},
        {UUID::parse("0C000000-0000-4000-8000-00000000000D").value(), ""}};

    const auto text = Veritor::archiveBulk(items);

    EXPECT_EQ(text, R"([{"id":"0A000000-0000-4000-8000-00000000000B","text":" a/b "},)"
                    R"({"id":"0C000000-0000-4000-8000-00000000000D","text":""}])");
    EXPECT_EQ(Veritor::restoreBulk(text), items);
}

TEST(VeritorStored, AnUnreadableBulkListIsNothingAndAnEmptyOneIsEmpty) {
    EXPECT_EQ(Veritor::restoreBulk(""), std::nullopt);
    EXPECT_EQ(Veritor::restoreBulk("{}"), std::nullopt);
    EXPECT_EQ(Veritor::restoreBulk(R"([{"text":"a"}])"), std::nullopt);
    EXPECT_EQ(Veritor::restoreBulk(R"([{"id":"x","text":"a"}])"), std::nullopt);
    EXPECT_EQ(Veritor::restoreBulk("[]"), std::vector<BulkQuestion>());
}

} // namespace
} // namespace quorl::test
