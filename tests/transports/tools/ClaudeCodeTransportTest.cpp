#include "transports/ClaudeCodeTransport.h"

#include "support/Builders.h"
#include "support/ToolStage.h"
#include "transports/ClaudeCommand.h"
#include "transports/ProcessRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ClaudeCodeTransportTest : testing::Test, ToolStage {
    [[nodiscard]] RawDecision ask(const std::string& executable) {
        request.kind = QuorlKind::generation;
        request.model.executablePath = executable;
        return ClaudeCodeTransport::complete(request, scratch);
    }

    DecisionRequest request{.prompt = "Which way\nis up?",
                            .systemPrompt = "Answer directly.",
                            .kind = QuorlKind::generation,
                            .model = makeModel(ProviderKind::claudeCode),
                            .questions = {}};
};

TEST(ClaudeCommand, HasItsWordsInOrder) {
    EXPECT_THAT(ClaudeCommand::arguments("sonnet", "Be brief."),
                ElementsAre("--print", "--output-format", "json", "--no-session-persistence",
                            "--permission-mode", "dontAsk", "--disable-slash-commands", "--tools", "",
                            "--model", "sonnet", "--system-prompt", "Be brief."));
}

TEST(ClaudeCommand, LeavesOutAnEmptyModelAndAnEmptySystemPrompt) {
    const std::vector<std::string> bare{"--print",
                                        "--output-format",
                                        "json",
                                        "--no-session-persistence",
                                        "--permission-mode",
                                        "dontAsk",
                                        "--disable-slash-commands",
                                        "--tools",
                                        ""};
    EXPECT_EQ(ClaudeCommand::arguments("", ""), bare);

    auto blank = bare;
    blank.insert(blank.end(), {"--system-prompt", "  "});
    EXPECT_EQ(ClaudeCommand::arguments("", "  "), blank);
}

TEST_F(ClaudeCodeTransportTest, TheToolGetsTheWordsTheQuestionAndTheHome) {
    const ScopedVariable key("ANTHROPIC_API_KEY", " ");
    request.model.modelIdentifier = " sonnet \n";

    const auto decision = ask(recordingTool(R"(echo '{"result":"That way.","total_cost_usd":0.5,
        "usage":{"input_tokens":12,"output_tokens":3}}')"));

    RawDecision expected;
    expected.text = "That way.";
    expected.inputTokens = 12;
    expected.outputTokens = 3;
    expected.reportedCost = 0.5;
    EXPECT_EQ(decision, expected);
    EXPECT_EQ(arguments(), ClaudeCommand::arguments("sonnet", "Answer directly."));
    EXPECT_EQ(input(), "Which way\nis up?");
    EXPECT_EQ(folder(), home.string());
    auto environment = ProcessRunner::childEnvironment((bin / "tool").string());
    environment.erase("ANTHROPIC_API_KEY");
    EXPECT_EQ(this->environment(), environment);
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(ClaudeCodeTransportTest, WithoutAPathTheHomesToolIsAsked) {
    script(home / ".local/bin/claude", "echo from home");

    EXPECT_EQ(ask("").text, "from home");
    EXPECT_EQ(ask((bin / "missing").string()).text, "from home");
}

TEST_F(ClaudeCodeTransportTest, WithoutAToolThereIsNoAnswer) {
    for (const char* folder : {"/opt/homebrew/bin/claude", "/usr/local/bin/claude", "/usr/bin/claude"}) {
        if (std::filesystem::exists(folder))
            GTEST_SKIP() << "this machine has the tool in a folder of its own";
    }

    EXPECT_EQ(ask(""), RawDecision::failed("Couldn't find the Claude Code CLI."));
}

TEST_F(ClaudeCodeTransportTest, AToolThatCannotStartIsTold) {
    const std::string broken = tool("");
    std::ofstream(broken) << "no interpreter";

    EXPECT_EQ(ask(broken), RawDecision::failed("Couldn't start " + broken + ". Exec format error"));
}

TEST_F(ClaudeCodeTransportTest, AReportedErrorKeepsItsTextAndCounts) {
    const auto decision =
        ask(tool(R"(echo '{"is_error":true,"result":"Not logged in","usage":{"input_tokens":1}}'; exit 1)"));

    RawDecision expected = RawDecision::failed("Not logged in");
    expected.text = "Not logged in";
    expected.inputTokens = 1;
    EXPECT_EQ(decision, expected);
}

TEST_F(ClaudeCodeTransportTest, AnAnswerWithAnErrorCodeIsAnAnswer) {
    RawDecision expected;
    expected.text = "up";

    EXPECT_EQ(ask(tool("echo up; exit 9")), expected);
}

TEST_F(ClaudeCodeTransportTest, ASilentFailureIsTold) {
    EXPECT_EQ(ask(tool("exit 9")), RawDecision::failed("Claude Code returned no output."));
}

} // namespace
} // namespace quorl::test
