#include "sample-endpoint/SampleAnswers.h"

#include "base/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace quorl::sample {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

Completion answerOf(std::string_view model, std::string prompt, std::string system = "") {
    return SampleAnswers::answer({.modelIdentifier = std::string(model),
                                  .systemPrompt = std::move(system),
                                  .prompt = std::move(prompt)})
        .value();
}

TEST(SampleAnswers, EachModelOfTheDemoAnswersInItsOwnWayAndSaysWhatItIs) {
    std::set<std::string> texts;
    for (const auto model : SampleAnswers::demoModels) {
        const auto text = answerOf(model, "Which way is up?").text;
        EXPECT_THAT(text, HasSubstr("ample answer")) << model;
        EXPECT_THAT(text, HasSubstr("no model behind it")) << model;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), SampleAnswers::demoModels.size());
}

TEST(SampleAnswers, TheSameQuestionGetsTheSameAnswer) {
    for (const auto model : SampleAnswers::demoModels) {
        const auto first = answerOf(model, "Why is the sky blue?");
        const auto second = answerOf(model, "Why is the sky blue?");
        EXPECT_EQ(first.text, second.text);
        EXPECT_EQ(first.delay, second.delay);
    }
}

TEST(SampleAnswers, BriefRestatesTheQuestionAndNamesItsTerms) {
    EXPECT_EQ(answerOf(SampleAnswers::brief, "Why does tea\ngo cold?\n").text,
              "Sample answer, no model behind it. You asked, in 5 words: “Why does tea go cold?” "
              "An answer would turn on “tea” and “cold”.");
}

TEST(SampleAnswers, ThoroughKeepsTheLinesAndCounts) {
    EXPECT_EQ(
        answerOf(SampleAnswers::thorough, "Why does tea\ngo cold? Tea should not.", "Be kind.").text,
        "This is a sample answer. There is no model behind it; it is composed from the question itself.\n\n"
        "The question\n> Why does tea\n> go cold? Tea should not.\n\n"
        "What it holds\n- 8 words in 2 sentences on 2 lines\n- Key terms: “tea”, “cold”\n"
        "- Asked for beside it: “Be kind.”\n\n"
        "How an answer would go\n- What is observed about “tea”, and when.\n"
        "- The causes that could explain it, the likeliest first.\n"
        "- How “cold” tells one cause from another.\n- What follows once the cause is known.\n\n"
        "Connect a provider of your own under Models to read a real one.");
}

TEST(SampleAnswers, StepsAreNumberedThrough) {
    EXPECT_EQ(
        answerOf(SampleAnswers::steps, "How do I bake bread?").text,
        "Sample answer, no model behind it: the steps in which one would work on this.\n\n"
        "1. Read the question (5 words, 1 sentence) and say back what is wanted.\n"
        "2. Settle what “bake” means here.\n3. Settle what “bread” means here.\n"
        "4. What has to be true about “bake” before one starts.\n5. The steps, each with what it needs.\n"
        "6. Where “bread” can go wrong, and how that shows.\n7. How one knows that it has worked.\n"
        "8. Check the result against the question once more.");
}

TEST(SampleAnswers, TheSkepticAsksBack) {
    EXPECT_EQ(answerOf(SampleAnswers::skeptic, "Should we buy or rent?").text,
              "Sample answer, no model behind it. Before I answer, some questions back:\n\n"
              "- What exactly counts as “buy”, and what does not?\n"
              "- What exactly counts as “rent”, and what does not?\n"
              "- Is there a choice that is not among those named?\n"
              "- The question is short. What do you know already that it leaves out?");
}

TEST(SampleAnswers, FindsTheTermsOfScriptsThatAreWrittenWithoutBlanks) {
    const auto text = answerOf(SampleAnswers::thorough, "水はなぜ冷えるのですか。コーヒーは？").text;

    EXPECT_THAT(text, HasSubstr("in 2 sentences on 1 line\n"));
    EXPECT_THAT(text, HasSubstr("> 水はなぜ冷えるのですか。コーヒーは？\n"));
    EXPECT_THAT(text, HasSubstr("Key terms: “水”, “冷える”, “コーヒー”\n"));
}

TEST(SampleAnswers, CutsALongQuestionBetweenCharacters) {
    std::string flags;
    for (int count = 0; count < 400; ++count)
        flags += "🇯🇵";

    const auto text = answerOf(SampleAnswers::brief, flags).text;

    EXPECT_TRUE(Text::isUTF8(text));
    EXPECT_THAT(text, HasSubstr("🇯🇵…”"));
}

TEST(SampleAnswers, AQuestionWithoutWordsIsAnsweredToo) {
    for (const auto model : SampleAnswers::demoModels) {
        EXPECT_THAT(answerOf(model, "").text, Not(HasSubstr("Key terms"))) << model;
        EXPECT_THAT(answerOf(model, "?!").text, HasSubstr("ample answer")) << model;
    }
    EXPECT_EQ(answerOf(SampleAnswers::brief, "").text,
              "Sample answer, no model behind it. You asked, in 0 words: “”");
}

TEST(SampleAnswers, TheTimeIsBelievableAndDiffers) {
    std::set<milliseconds> times;
    for (const auto model : SampleAnswers::demoModels) {
        for (const std::string& prompt : {std::string("Hi"), std::string(20'000, 'x')}) {
            EXPECT_GE(answerOf(model, prompt).delay, milliseconds(400)) << model;
            EXPECT_LE(answerOf(model, prompt).delay, milliseconds(3000)) << model;
        }
        times.insert(answerOf(model, "Why does tea go cold faster in a wide cup?").delay);
    }
    EXPECT_EQ(times.size(), SampleAnswers::demoModels.size());
}

TEST(SampleAnswers, TheCountsFollowTheLengthOfTheTexts) {
    const auto completion = answerOf(SampleAnswers::brief, std::string(400, 'x'), std::string(40, 'y'));

    EXPECT_EQ(completion.inputTokens, 100 + 10 + 7);
    EXPECT_EQ(completion.outputTokens, static_cast<std::int64_t>((completion.text.size() + 3) / 4));
}

TEST(SampleAnswers, AnyOtherModelAnswersAtOnce) {
    const auto other = answerOf("whatever", "Which way is up?");

    EXPECT_EQ(other.text, answerOf(SampleAnswers::brief, "Which way is up?").text);
    EXPECT_EQ(other.delay, milliseconds(0));
}

TEST(SampleAnswers, TheUnavailableModelHasNone) {
    EXPECT_FALSE(SampleAnswers::answer({.modelIdentifier = "sample-unavailable", .prompt = "Hello?"}));
}

} // namespace
} // namespace quorl::sample
