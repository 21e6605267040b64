#include "app/Harness.h"
#include "base/Json.h"
#include "decision/VeritorResults.h"
#include "support/ToolStage.h"

#include <algorithm>

using namespace quorl;
using namespace quorl::test;
using testing::HasSubstr;

namespace {

// One comparison of each family, with every kind of model that can be pointed at this machine. (Bedrock's
// host is made of its region and nothing else; BedrockTransportTest sends its requests here.)
class EveryKindTest : public testing::Test {
protected:
    ModelProfile add(ProviderKind provider, const std::string& path = "") {
        ModelProfile profile = makeModel(provider);
        profile.name = title(provider);
        profile.modelIdentifier = std::string(rawString(provider)) + "-model";
        profile.endpoint = path.empty() ? endpointURL() : "";
        profile.executablePath = path;
        profile.sortIndex = static_cast<std::int64_t>(provider);
        harness.file().saveModel(profile);
        harness.giveKey(profile.id);
        return profile;
    }

    std::string endpointURL() const { return harness.endpoint.baseURL(); }

    AppModel& model() { return harness.model(); }

    void start() {
        harness.start();
        std::set<UUID> all;
        for (const ModelProfile& profile : model().library.models())
            all.insert(profile.id);
        model().draftModelIDs = all;
        model().draftPrompt = "The door is open and it rains.";
    }

    // The request in which a model was named.
    sample::Request requestOf(const ModelProfile& profile) {
        for (const sample::Request& request : harness.endpoint.requests()) {
            if (request.body.find(profile.modelIdentifier) != std::string::npos)
                return request;
        }
        ADD_FAILURE() << profile.name << " was not asked";
        return {};
    }

    const ModelAnswer& answerOf(const ModelProfile& profile) {
        const auto answers = model().library.answersOfRun(**model().activeRunID);
        return *std::ranges::find(answers, profile.id, &ModelAnswer::modelID);
    }

    ToolStage stage;
    Harness harness;
};

DecisionQuestion makeQuestion(DecisionQuestionType type, const std::string& instructions) {
    DecisionQuestion question = DecisionQuestion::starter();
    question.type = type;
    question.instructions = instructions;
    question.options = {{UUID::random(), "Close the door", ""}, {UUID::random(), "Leave it", ""}};
    question.levels = {"dry", "wet"};
    return question;
}

TEST_F(EveryKindTest, EveryDecisionModelAnswersTypedQuestions) {
    const ModelProfile zun = add(ProviderKind::zun);
    const ModelProfile openAIDecisions = add(ProviderKind::openAIDecisions);
    const ModelProfile veritor = add(ProviderKind::veritor);
    const ModelProfile local =
        add(ProviderKind::nuvel,
            stage.recordingTool(
                R"(echo '{"answers":{"is_it_wet":{"type":"noul","noul":0.875}},"model":"local"}')"));
    ModelProfile served = add(ProviderKind::nuvel);
    served.modelIdentifier = "served-model";
    harness.file().saveModel(served);
    start();
    model().setKind(QuorlKind::decision);
    model().draftQuestions = {makeQuestion(DecisionQuestionType::choice, "What now?"),
                              makeQuestion(DecisionQuestionType::score, "How wet is it?"),
                              makeQuestion(DecisionQuestionType::noul, "Is it wet?")};

    model().ask();
    ASSERT_TRUE(harness.runUntilAnswered());

    for (const ModelProfile& profile : {zun, openAIDecisions, veritor, served}) {
        const ModelAnswer& answer = answerOf(profile);
        EXPECT_EQ(answer.state, AnswerState::done)
            << profile.name << ": " << answer.errorMessage.value_or("");
        EXPECT_EQ(Veritor::decisionResults(answer.text, *model().draftQuestions).size(), 3u) << profile.name;
        EXPECT_EQ(*requestOf(profile).header("authorization"), "Bearer key-of-the-test");
    }
    EXPECT_EQ(requestOf(zun).path, "/v1/veritor");
    EXPECT_EQ(requestOf(openAIDecisions).path, "/v1/decisions");
    EXPECT_EQ(requestOf(veritor).path, "/v1/veritor");
    EXPECT_EQ(requestOf(served).path, "/v1/veritor");
    EXPECT_EQ(Veritor::summary(answerOf(local).text), "local\nis_it_wet  ·  88% yes");
    EXPECT_EQ(stage.arguments().at(0), "predict");

    // All that is shown is derived from the stored text, so a restart shows the same.
    const UUID runID = **model().activeRunID;
    const std::string before = Veritor::summary(answerOf(zun).text);
    const ModelAnswer stored = answerOf(zun);
    harness.start();
    const auto answers = model().library.answersOfRun(runID);
    const auto after = std::ranges::find(answers, stored.id, &ModelAnswer::id);
    EXPECT_EQ(*after, stored);
    EXPECT_EQ(Veritor::summary(after->text), before);
}

TEST_F(EveryKindTest, EveryGenerationModelAnswersAPrompt) {
    const ModelProfile openAI = add(ProviderKind::openAI);
    const ModelProfile anthropic = add(ProviderKind::anthropic);
    const ModelProfile compatible = add(ProviderKind::openAICompatible);
    const ModelProfile claude =
        add(ProviderKind::claudeCode,
            stage.tool(R"([ "$2" = status ] || { cat > /dev/null; echo '{"result":"from claude"}'; })",
                       "claude"));
    const ModelProfile codex = add(
        ProviderKind::codex,
        stage.tool(R"(echo '{"type":"item.completed","item":{"type":"agent_message","text":"from codex"}}')",
                   "codex"));
    start();
    model().setKind(QuorlKind::generation);

    model().ask();
    ASSERT_TRUE(harness.runUntilAnswered());

    for (const ModelProfile& profile : {openAI, anthropic, compatible, claude, codex}) {
        const ModelAnswer& answer = answerOf(profile);
        EXPECT_EQ(answer.state, AnswerState::done)
            << profile.name << ": " << answer.errorMessage.value_or("");
        EXPECT_NE(answer.text, "") << profile.name;
    }
    EXPECT_EQ(requestOf(openAI).path, "/v1/chat/completions");
    EXPECT_EQ(requestOf(anthropic).path, "/v1/messages");
    EXPECT_EQ(*requestOf(anthropic).header("x-api-key"), "key-of-the-test");
    EXPECT_EQ(requestOf(compatible).path, "/v1/chat/completions");
    EXPECT_EQ(answerOf(claude).text, "from claude");
    EXPECT_EQ(answerOf(codex).text, "from codex");
}

// What a keychain is for: no file but its own has the key, and no text that is shown.
TEST_F(EveryKindTest, NoKeyIsWrittenAnywhereByAFailingComparison) {
    const std::string key = "key-of-the-test";
    for (const ProviderKind provider :
         {ProviderKind::openAI, ProviderKind::anthropic, ProviderKind::openAICompatible})
        add(provider);
    // A server that throws the key back at its client.
    harness.endpoint.answer(
        sample::everyModel,
        sample::makeReply(401, R"({"error":{"message":"Incorrect key: )" + key + R"("}})"));
    start();
    model().setKind(QuorlKind::generation);

    model().ask();
    ASSERT_TRUE(harness.runUntilAnswered());

    for (const ModelAnswer& answer : harness.activeAnswers()) {
        EXPECT_THAT(*answer.errorMessage, HasSubstr("HTTP 401"));
        EXPECT_THAT(*answer.errorMessage, Not(HasSubstr(key)));
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(harness.folder.path())) {
        if (entry.is_regular_file()) {
            EXPECT_THAT(contentOf(entry.path()), Not(HasSubstr(key))) << entry.path();
        }
    }
    for (const auto& [name, value] : harness.defaults.values) {
        if (const auto* text = std::get_if<std::string>(&value)) {
            EXPECT_THAT(*text, Not(HasSubstr(key))) << name;
        }
    }
}

} // namespace
