#include "transports/NuvelLocalTransport.h"

#include "decision/Veritor.h"
#include "decision/VeritorResults.h"
#include "support/Builders.h"
#include "support/ToolStage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

DecisionQuestion question() {
    DecisionQuestion made;
    made.id = UUID::random();
    made.name = "Up";
    made.instructions = "Is it up?";
    made.type = DecisionQuestionType::noul;
    return made;
}

struct NuvelLocalTransportTest : testing::Test, ToolStage {
    [[nodiscard]] RawDecision ask(const std::string& executable) {
        request.model.executablePath = executable;
        return NuvelLocalTransport::complete(request, scratch);
    }

    /// A tool that keeps its two files.
    [[nodiscard]] std::string keepingTool(const std::string& body) const {
        return recordingTool("cp \"$5\" " + (notes / "state").string() + "; cp \"$7\" " +
                             (notes / "questions").string() + "\n" + body);
    }

    DecisionRequest request{.prompt = " The ball rises. ",
                            .systemPrompt = "",
                            .kind = QuorlKind::decision,
                            .model = makeModel(ProviderKind::nuvel),
                            .questions = {question()}};
};

constexpr const char* response =
    R"({"answers":{"up":{"type":"noul","answer":true}},"usage":{"input_tokens":12,"output_tokens":3}})";

TEST(StateData, AJSONDocumentIsWrittenAsItStands) {
    EXPECT_EQ(NuvelLocalTransport::stateData(" {\"a\" : 1}\n").value(), "{\"a\" : 1}");
    EXPECT_EQ(NuvelLocalTransport::stateData("[1, 2]").value(), "[1, 2]");
}

TEST(StateData, AnyOtherTextIsWrittenAsAJSONString) {
    EXPECT_EQ(NuvelLocalTransport::stateData("hello").value(), "\"hello\"");
    EXPECT_EQ(NuvelLocalTransport::stateData(" a \"b\"\n/ö ").value(), R"("a \"b\"\n/ö")");
    EXPECT_EQ(NuvelLocalTransport::stateData("5").value(), "\"5\"");
    EXPECT_EQ(NuvelLocalTransport::stateData("\"quoted\"").value(), R"("\"quoted\"")");
    EXPECT_EQ(NuvelLocalTransport::stateData("{\"a\":").value(), R"("{\"a\":")");
    EXPECT_EQ(NuvelLocalTransport::stateData("").value(), "\"\"");
}

TEST(StateData, BytesThatAreNotUTF8Fail) {
    EXPECT_FALSE(NuvelLocalTransport::stateData("a\xff"));
}

TEST_F(NuvelLocalTransportTest, TheToolGetsItsWordsAndTwoFiles) {
    request.model.modelIdentifier = " my/model ";

    const auto decision = ask(keepingTool(std::string("echo '") + response + "'"));

    const auto interpreted = Veritor::interpret(response);
    RawDecision expected;
    expected.text = interpreted.pretty;
    expected.inputTokens = 12;
    expected.outputTokens = 3;
    EXPECT_EQ(decision, expected);
    const auto words = arguments();
    ASSERT_THAT(words, SizeIs(7));
    EXPECT_EQ(words[0], "predict");
    EXPECT_EQ(words[1], "--model");
    EXPECT_EQ(words[2], "my/model");
    EXPECT_EQ(words[3], "--state-file");
    EXPECT_THAT(words[4], MatchesRegex(scratch.string() + "/nuvel-state-[0-9A-F-]{36}\\.json"));
    EXPECT_EQ(words[5], "--questions");
    EXPECT_THAT(words[6], MatchesRegex(scratch.string() + "/nuvel-questions-[0-9A-F-]{36}\\.json"));
    EXPECT_EQ(contentOf(notes / "state"), "\"The ball rises.\"");
    EXPECT_EQ(contentOf(notes / "questions"), Veritor::wireJSON(request.questions));
    EXPECT_EQ(input(), "");
    EXPECT_EQ(folder(), home.string());
    EXPECT_EQ(environment(), ProcessRunner::childEnvironment((bin / "tool").string()));
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(NuvelLocalTransportTest, WithoutAModelTheDefaultCheckpointIsAsked) {
    request.model.modelIdentifier = " ";

    static_cast<void>(ask(recordingTool("")));

    EXPECT_EQ(arguments().at(2), "d41ce07/nuvel-mlx");
}

TEST_F(NuvelLocalTransportTest, WithoutAToolThereIsNoAnswer) {
    for (const char* folder : {"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin"}) {
        if (std::filesystem::exists(std::filesystem::path(folder) / "nuvel-rs"))
            GTEST_SKIP() << "this machine has the tool in a folder of its own";
    }

    EXPECT_EQ(ask(""), RawDecision::failed("Couldn't find the nuvel-rs CLI. Ombrel uses the same library."));
}

TEST_F(NuvelLocalTransportTest, AScratchFolderThatTakesNoFileIsTold) {
    request.model.executablePath = tool("");

    EXPECT_EQ(NuvelLocalTransport::complete(request, top / "missing"),
              RawDecision::failed("Couldn't write the Nuvel request. No such file or directory"));
}

TEST_F(NuvelLocalTransportTest, AStateThatCannotBeEncodedIsTold) {
    request.prompt = "\xff";

    EXPECT_EQ(ask(tool("")),
              RawDecision::failed("Couldn't write the Nuvel request. The state is not UTF-8."));
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(NuvelLocalTransportTest, QuestionsThatCannotBeEncodedAreToldAndLeaveNoFile) {
    request.questions.front().instructions = "\xff";

    EXPECT_EQ(ask(tool("")), RawDecision::failed("Couldn't encode the Nuvel questions."));
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(NuvelLocalTransportTest, AToolThatCannotStartIsToldAndLeavesNoFile) {
    const std::string broken = tool("");
    std::ofstream(broken) << "no interpreter";

    EXPECT_EQ(ask(broken), RawDecision::failed("Couldn't start " + broken + ". Exec format error"));
    EXPECT_THAT(namesIn(scratch), IsEmpty());
}

TEST_F(NuvelLocalTransportTest, AReportedErrorKeepsThePrintedObject) {
    RawDecision expected = RawDecision::failed("overloaded");
    expected.text = "{\n  \"error\": \"overloaded\"\n}";

    EXPECT_EQ(ask(tool(R"(echo '{"error":"overloaded"}')")), expected);
    EXPECT_EQ(ask(tool(R"(echo '{"error":"overloaded"}'; echo noise >&2; exit 2)")), expected);
}

TEST_F(NuvelLocalTransportTest, AFailureWithAnAnswerIsToldInTheErrorOutputsWords) {
    const auto decision = ask(tool(std::string("echo '") + response + "'; echo ' why ' >&2; exit 2"));

    RawDecision expected = RawDecision::failed("why");
    expected.text = Veritor::interpret(response).pretty;
    EXPECT_EQ(decision, expected);

    expected.errorMessage = "nuvel-rs exited with status 2.";
    EXPECT_EQ(ask(tool(std::string("echo '") + response + "'; exit 2")), expected);
}

TEST_F(NuvelLocalTransportTest, ASilentFailureIsToldByItsErrorOutputElseItsStatus) {
    EXPECT_EQ(ask(tool("exit 2")), RawDecision::failed("nuvel-rs exited with status 2."));
    EXPECT_EQ(ask(tool("echo; echo ' why ' >&2; exit 2")), RawDecision::failed("why"));
}

TEST_F(NuvelLocalTransportTest, ASilentSuccessIsNoAnswer) {
    EXPECT_EQ(ask(tool("")), RawDecision::failed("The response was not JSON."));
}

TEST_F(NuvelLocalTransportTest, ATimeOutIsTold) {
    ProcessRunner::Result result;
    result.timedOut = true;
    result.code = 15;

    EXPECT_EQ(NuvelLocalTransport::decisionOf(result),
              RawDecision::failed("Nuvel timed out after 3 minutes."));
}

} // namespace
} // namespace quorl::test
