#include "transports/CLIOutputParser.h"

#include "transports/CLIDecision.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using CLIOutputParser::parseClaude;
using CLIOutputParser::parseCodex;
using CLIOutputParser::stripANSI;

ParsedCLI answer(std::string text) {
    ParsedCLI parsed;
    parsed.text = std::move(text);
    return parsed;
}

ParsedCLI error(std::string message) {
    ParsedCLI parsed;
    parsed.error = std::move(message);
    return parsed;
}

const std::string message = R"({"type":"item.completed","item":{"type":"agent_message","text":"up"}})";

TEST(StripANSI, ControlSequencesGo) {
    EXPECT_EQ(stripANSI("\x1b[32mgreen\x1b[0m and \x1b[1;31mred\x1b[m"), "green and red");
    EXPECT_EQ(stripANSI("\x1b[2Ka\x1b[@b\x1b[~c"), "abc");
}

TEST(StripANSI, EverythingElseStays) {
    EXPECT_EQ(stripANSI(""), "");
    EXPECT_EQ(stripANSI("plain [32m größe"), "plain [32m größe");
    EXPECT_EQ(stripANSI("\x1b]8;;x\x07 \x1b"), "\x1b]8;;x\x07 \x1b");
    EXPECT_EQ(stripANSI("\x1b\x1b[mx"), "\x1bx");
}

TEST(StripANSI, ASequenceWithoutAnEndTakesTheRest) {
    EXPECT_EQ(stripANSI("a\x1b[12;34"), "a");
    EXPECT_EQ(stripANSI("a\x1b["), "a");
}

TEST(ParseClaude, ReadsAnswerCountsAndCost) {
    ParsedCLI expected = answer(" up\n");
    expected.inputTokens = 12;
    expected.outputTokens = 3;
    expected.costUSD = 0.25;

    EXPECT_EQ(parseClaude(R"({"is_error":false,"result":" up\n","total_cost_usd":0.25,"cost_usd":9,
                             "usage":{"input_tokens":12,"output_tokens":3.9},
                             "modelUsage":{"m":{"inputTokens":99,"outputTokens":99}}})",
                          "a warning"),
              expected);
}

TEST(ParseClaude, TextAroundTheObjectDoesNotMatter) {
    EXPECT_EQ(parseClaude("\x1b[1mWelcome!\x1b[0m\n{\"result\":\"up\"}\nbye\n", ""), answer("up"));
}

TEST(ParseClaude, PlainTextIsTheAnswer) {
    EXPECT_EQ(parseClaude(" \x1b[32mup\x1b[0m \n", "noise"), answer("up"));
    EXPECT_EQ(parseClaude("} {", ""), answer("} {"));
    EXPECT_EQ(parseClaude("{not json}", ""), answer("{not json}"));
    EXPECT_EQ(parseClaude("[1]", ""), answer("[1]"));
}

TEST(ParseClaude, EmptyOutputFallsBackToTheErrorOutputAsAnswer) {
    EXPECT_EQ(parseClaude(" \n", " said there \n"), answer("said there"));
}

TEST(ParseClaude, NoOutputAtAllIsAnError) {
    EXPECT_EQ(parseClaude("", " \n"), error("Claude Code returned no output."));
    EXPECT_EQ(parseClaude("\x1b[0m", ""), error("Claude Code returned no output."));
}

TEST(ParseClaude, AReportedErrorKeepsTheText) {
    ParsedCLI expected = answer("Not logged in");
    expected.error = "Not logged in";
    EXPECT_EQ(parseClaude(R"({"is_error":true,"result":"Not logged in"})", "noise"), expected);

    expected.error = "Overloaded";
    EXPECT_EQ(
        parseClaude(R"({"is_error":true,"result":"Not logged in","error":{"message":"Overloaded"}})", ""),
        expected);
}

TEST(ParseClaude, AReportedErrorWithoutWordsHasOurs) {
    EXPECT_EQ(parseClaude(R"({"is_error":true,"error":"text"})", "noise"),
              error("Claude Code reported an error."));
}

TEST(ParseClaude, OnlyABooleanIsAnErrorFlag) {
    EXPECT_EQ(parseClaude(R"({"is_error":1,"result":"up","error":{"message":"m"}})", ""), answer("up"));
    EXPECT_EQ(parseClaude(R"({"is_error":"true","result":"up"})", ""), answer("up"));
}

TEST(ParseClaude, AnEmptyAnswerIsTheErrorOutputElseAnError) {
    EXPECT_EQ(parseClaude(R"({"result":""})", " went wrong\n"), error("went wrong"));
    EXPECT_EQ(parseClaude(R"({"result":5})", ""), error("Claude Code returned an empty response."));
}

TEST(ParseClaude, WithoutCountsTheModelsAreSummed) {
    ParsedCLI expected = answer("up");
    expected.inputTokens = 30;
    expected.outputTokens = 7;

    EXPECT_EQ(parseClaude(R"({"result":"up","modelUsage":{"a":{"inputTokens":10,"outputTokens":7.9},
                             "b":{"inputTokens":20,"outputTokens":"8"},"c":5}})",
                          ""),
              expected);
}

TEST(ParseClaude, EachCountIsSummedOnItsOwn) {
    ParsedCLI expected = answer("up");
    expected.inputTokens = 1;
    expected.outputTokens = 7;

    EXPECT_EQ(parseClaude(R"({"result":"up","usage":{"input_tokens":1},
                             "modelUsage":{"a":{"inputTokens":10,"outputTokens":7}}})",
                          ""),
              expected);
    EXPECT_EQ(parseClaude(R"({"result":"up","modelUsage":{}})", "").inputTokens, std::nullopt);
    EXPECT_EQ(parseClaude(R"({"result":"up","modelUsage":[{"inputTokens":1}]})", "").inputTokens,
              std::nullopt);
}

TEST(ParseClaude, CountsBeyondAllNumbersDoNotOverflow) {
    EXPECT_EQ(parseClaude(R"({"result":"up","modelUsage":{"a":{"inputTokens":9223372036854775807},
                             "b":{"inputTokens":1}}})",
                          "")
                  .inputTokens,
              9223372036854775807);
}

TEST(ParseClaude, ACostOfNothingIsACost) {
    EXPECT_EQ(parseClaude(R"({"result":"up","total_cost_usd":0,"cost_usd":1})", "").costUSD, 0.0);
    EXPECT_EQ(parseClaude(R"({"result":"up","total_cost_usd":"0","cost_usd":2})", "").costUSD, 2.0);
    EXPECT_EQ(parseClaude(R"({"result":"up","cost_usd":true})", "").costUSD, std::nullopt);
}

TEST(ParseCodex, ReadsAnswerAndCounts) {
    ParsedCLI expected = answer("up");
    expected.inputTokens = 12;
    expected.outputTokens = 3;

    EXPECT_EQ(parseCodex("{\"type\":\"thread.started\"}\nnoise\n\n" + message + "\n" +
                             R"({"type":"turn.completed","usage":{"input_tokens":12,"output_tokens":3.7}})" +
                             "\n",
                         "noise"),
              expected);
}

TEST(ParseCodex, TheLastMessageWins) {
    EXPECT_EQ(parseCodex(message + "\n" +
                             R"({"type":"item.started","item":{"type":"agent_message","text":"down"}})",
                         ""),
              answer("down"));
}

TEST(ParseCodex, WhatIsNoMessageWithTextIsIgnored) {
    EXPECT_EQ(parseCodex(message + "\n" +
                             R"({"type":"item.completed","item":{"type":"agent_message","text":""}})" + "\n" +
                             R"({"type":"item.completed","item":{"type":"reasoning","text":"hm"}})" + "\n" +
                             R"({"type":"item.updated","item":{"type":"agent_message","text":"part"}})" +
                             "\n" + R"({"type":"item.completed","item":"agent_message"})" + "\n" +
                             R"({"type":7})" + "\n" + R"({"item":{"type":"agent_message","text":"x"}})",
                         ""),
              answer("up"));
}

TEST(ParseCodex, EachCountFoundReplacesTheOneBefore) {
    const auto parsed = parseCodex(
        message + "\n" + R"({"type":"turn.completed","usage":{"input_tokens":1,"output_tokens":2}})" + "\n" +
            R"({"type":"turn.completed","usage":{"output_tokens":5}})" + "\n" +
            R"({"type":"turn.completed","usage":[]})",
        "");

    EXPECT_EQ(parsed.inputTokens, 1);
    EXPECT_EQ(parsed.outputTokens, 5);
    EXPECT_EQ(parsed.costUSD, std::nullopt);
}

TEST(ParseCodex, AnyLineEndEndsALine) {
    for (const char* end : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"}) {
        ParsedCLI expected = answer("up");
        expected.error = "late";
        EXPECT_EQ(parseCodex(message + end + R"({"type":"error","message":"late"})" + end, ""), expected);
    }
}

TEST(ParseCodex, ALineSeparatorInsideAnAnswerStaysInIt) {
    EXPECT_EQ(
        parseCodex(
            "{\"type\":\"item.completed\",\"item\":{\"type\":\"agent_message\",\"text\":\"a\u2028b\"}}\n",
            ""),
        answer("a\u2028b"));
}

TEST(ParseCodex, AColouredLineIsRead) {
    EXPECT_EQ(parseCodex("\x1b[32m" + message + "\x1b[0m", ""), answer("up"));
}

TEST(ParseCodex, AFailureStandsBesideTheAnswer) {
    ParsedCLI expected = answer("up");
    expected.error = "limit";

    EXPECT_EQ(parseCodex(R"({"type":"error","message":"early"})"
                         "\n" +
                             message + "\n" + R"({"type":"turn.failed","error":{"message":"limit"}})",
                         ""),
              expected);
}

TEST(ParseCodex, AnErrorsMessageStandsInOneOfThreePlaces) {
    EXPECT_EQ(parseCodex(R"({"type":"error","message":"a","error":{"message":"b"}})", ""), error("a"));
    EXPECT_EQ(parseCodex(R"({"type":"error","message":"","error":{"message":"b"}})", ""), error("b"));
    EXPECT_EQ(parseCodex(R"({"type":"turn.failed","error":"c"})", ""), error("c"));
    EXPECT_EQ(parseCodex(R"({"type":"error","message":"a"})"
                         "\n"
                         R"({"type":"error","error":""})",
                         ""),
              error("a"));
}

TEST(ParseCodex, WithoutAnAnswerTheErrorOutputElseOurSentenceIsTheError) {
    EXPECT_EQ(parseCodex("", " not logged in\n"), error("not logged in"));
    EXPECT_EQ(parseCodex("noise", " \n"), error("Codex returned no assistant message."));
}

// Neither parser leaves a run without text and without error, so a tool that does is made up here.
TEST(CLIDecision, AFailureWithoutAWordIsToldByItsStatus) {
    const CLITool silent{"Silent", [](std::string_view, std::string_view) { return ParsedCLI(); }};
    ProcessRunner::Result result;
    result.code = 3;
    EXPECT_EQ(decisionOf(result, silent), RawDecision::failed("Silent exited with status 3."));

    result.standardError = " why \n";
    EXPECT_EQ(decisionOf(result, silent), RawDecision::failed("why"));

    result.code = 0;
    EXPECT_EQ(decisionOf(result, silent), RawDecision());
}

TEST(CLIDecision, ATimeOutIsTold) {
    ProcessRunner::Result result;
    result.timedOut = true;
    result.standardOutput = "{\"result\":\"up\"}";

    EXPECT_EQ(decisionOf(result, {"Claude Code", parseClaude}),
              RawDecision::failed("Claude Code timed out after 3 minutes."));
    EXPECT_EQ(decisionOf(result, {"Codex", parseCodex}),
              RawDecision::failed("Codex timed out after 3 minutes."));
}

TEST(CLIDecision, ALaunchErrorIsTheFailureAsItStands) {
    ProcessRunner::Result result;
    result.launchError = "Couldn't write CLI output.";

    EXPECT_EQ(decisionOf(result, {"Codex", parseCodex}), RawDecision::failed("Couldn't write CLI output."));
}

} // namespace
} // namespace quorl::test
