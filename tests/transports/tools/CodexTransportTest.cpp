#include "transports/CodexTransport.h"

#include "support/Builders.h"
#include "support/ToolStage.h"
#include "transports/CodexCommand.h"
#include "transports/ProcessRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* answerUp =
    R"(echo '{"type":"item.completed","item":{"type":"agent_message","text":"up"}}')";

struct CodexTransportTest : testing::Test, ToolStage {
    [[nodiscard]] RawDecision ask(const std::string& executable) {
        request.model.executablePath = executable;
        return CodexTransport::complete(request, scratch);
    }

    /// The prompt as the tool got it, with the words before it.
    [[nodiscard]] std::vector<std::string> argumentsFor(const std::string& system,
                                                        const std::string& question) {
        request.model.modelIdentifier = "";
        request.systemPrompt = system;
        request.prompt = question;
        static_cast<void>(ask(recordingTool(answerUp)));
        auto words = arguments();
        const auto fixed = static_cast<std::ptrdiff_t>(CodexCommand::arguments("").size());
        words.erase(words.begin(), words.begin() + fixed);
        return words;
    }

    DecisionRequest request{.prompt = "Which way is up?",
                            .systemPrompt = "",
                            .kind = QuorlKind::generation,
                            .model = makeModel(ProviderKind::codex),
                            .questions = {}};
};

TEST(CodexCommand, HasItsWordsInOrder) {
    EXPECT_THAT(CodexCommand::arguments("gpt-5"),
                ElementsAre("--model", "gpt-5", "exec", "--json", "--skip-git-repo-check", "--ephemeral",
                            "--sandbox", "read-only"));
    EXPECT_THAT(CodexCommand::arguments(""), ElementsAre("exec", "--json", "--skip-git-repo-check",
                                                         "--ephemeral", "--sandbox", "read-only"));
}

TEST_F(CodexTransportTest, TheToolGetsTheWordsAndNoInputInTheScratchFolder) {
    request.model.modelIdentifier = "gpt-5";

    const auto decision = ask(
        recordingTool(std::string(answerUp) +
                      R"(; echo '{"type":"turn.completed","usage":{"input_tokens":12,"output_tokens":3}}')"));

    RawDecision expected;
    expected.text = "up";
    expected.inputTokens = 12;
    expected.outputTokens = 3;
    EXPECT_EQ(decision, expected);
    auto words = CodexCommand::arguments("gpt-5");
    words.emplace_back("Which way is up?");
    EXPECT_EQ(arguments(), words);
    EXPECT_EQ(input(), "");
    EXPECT_EQ(folder(), scratch.string());
    EXPECT_EQ(environment(), ProcessRunner::childEnvironment((bin / "tool").string()));
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(CodexTransportTest, ASystemPromptGoesBeforeTheQuestion) {
    EXPECT_THAT(argumentsFor(" Be brief.\n", " Why? "),
                ElementsAre("Follow these instructions:\nBe brief.\n\nQuestion:\n Why? "));
    EXPECT_THAT(argumentsFor(" \n", " Why? "), ElementsAre(" Why? "));
}

TEST_F(CodexTransportTest, AQuestionThatLooksLikeAnOptionIsNone) {
    EXPECT_THAT(argumentsFor("", "- item"), ElementsAre("--", "- item"));
    EXPECT_THAT(argumentsFor("", "--help"), ElementsAre("--", "--help"));
    EXPECT_THAT(argumentsFor("Be brief.", "- item"),
                ElementsAre("Follow these instructions:\nBe brief.\n\nQuestion:\n- item"));
}

TEST_F(CodexTransportTest, WithoutAPathTheInstalledPackageComesBeforeTheName) {
    script(home / ".local/bin/codex", std::string(answerUp) + " | sed s/up/name/");
    script(home / ".nvm/versions/node/v20/lib/node_modules/@openai/codex/vendor/p/codex/codex",
           std::string(answerUp) + " | sed s/up/package/");

    EXPECT_EQ(ask("").text, "package");
}

TEST_F(CodexTransportTest, WithoutAToolThereIsNoAnswer) {
    for (const char* place :
         {"/opt/homebrew/bin/codex", "/usr/local/bin/codex", "/usr/bin/codex",
          "/opt/homebrew/lib/node_modules/@openai", "/usr/local/lib/node_modules/@openai"}) {
        if (std::filesystem::exists(place))
            GTEST_SKIP() << "this machine has the tool in a folder of its own";
    }

    EXPECT_EQ(ask(""), RawDecision::failed("Couldn't find the Codex CLI."));
}

TEST_F(CodexTransportTest, AFailureIsToldInTheToolsWords) {
    EXPECT_EQ(ask(tool("echo ' no login' >&2; exit 1")), RawDecision::failed("no login"));
    EXPECT_EQ(ask(tool("exit 1")), RawDecision::failed("Codex returned no assistant message."));
}

TEST_F(CodexTransportTest, AToolThatCannotStartIsTold) {
    const std::string broken = tool("");
    std::ofstream(broken) << "no interpreter";

    EXPECT_EQ(ask(broken), RawDecision::failed("Couldn't start " + broken + ". Exec format error"));
}

} // namespace
} // namespace quorl::test
