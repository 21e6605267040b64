#include "transports/DecisionRouter.h"

#include "domain/ServiceHosts.h"
#include "sample-endpoint/SampleEndpoint.h"
#include "support/Builders.h"
#include "support/ScarceMemory.h"
#include "support/ToolStage.h"
#include "transports/HTTPSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quorl::test {
namespace {

using sample::Completion;
using sample::SampleEndpoint;

class DecisionRouterTest : public testing::Test {
protected:
    DecisionRouterTest() { secret.apiKey = "sk-0123456789"; }

    // A request that its model's family answers and that has nothing amiss.
    DecisionRequest makeRequest(ProviderKind provider) const {
        DecisionRequest request;
        request.kind = family(provider);
        request.prompt = "Which way is up?";
        request.systemPrompt = "Answer directly.";
        request.model = makeModel(provider);
        request.model.endpoint = endpoint.baseURL();
        DecisionQuestion question = DecisionQuestion::starter();
        question.type = DecisionQuestionType::noul;
        question.instructions = "Is it up?";
        request.questions = {question};
        return request;
    }

    DecisionOutcome complete(const DecisionRequest& request) const {
        return router.complete(request, secret, stage.scratch);
    }

    std::string messageOf(const DecisionRequest& request) const {
        return complete(request).errorMessage.value_or("");
    }

    ToolStage stage; // no tool of this machine is found
    SampleEndpoint endpoint;
    HTTPSession session;
    DecisionRouter router{session};
    ModelSecret secret;
};

TEST_F(DecisionRouterTest, AnAnswerHasItsReportedCountsItsCostAndItsTime) {
    endpoint.answer("test-1", Completion{.text = "That way.",
                                         .inputTokens = 1000,
                                         .outputTokens = 500,
                                         .delay = std::chrono::milliseconds(20)});

    const DecisionOutcome outcome = complete(makeRequest(ProviderKind::openAICompatible));

    EXPECT_EQ(outcome.text, "That way.");
    EXPECT_EQ(outcome.inputTokens, 1000);
    EXPECT_EQ(outcome.outputTokens, 500);
    EXPECT_FALSE(outcome.tokensEstimated);
    EXPECT_EQ(outcome.costUSD, (2.0 * 1000 + 8.0 * 500) / 1'000'000.0);
    EXPECT_EQ(outcome.errorMessage, std::nullopt);
    EXPECT_GE(outcome.latencyMS, 20);
}

TEST_F(DecisionRouterTest, OpenAIIsAskedThroughTheSameTransport) {
    endpoint.answer("test-1", Completion{.text = "That way."});

    EXPECT_EQ(complete(makeRequest(ProviderKind::openAI)).text, "That way.");
}

TEST_F(DecisionRouterTest, MissingCountsAreEstimatedFromBytesAndPriced) {
    endpoint.answer("test-1", Completion{.text = std::string(40, 'x')});
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.systemPrompt = "";
    request.prompt = "1234567"; // eight bytes with the line end between the two

    const DecisionOutcome outcome = complete(request);

    EXPECT_EQ(outcome.inputTokens, 2);
    EXPECT_EQ(outcome.outputTokens, 10);
    EXPECT_TRUE(outcome.tokensEstimated);
    EXPECT_EQ(outcome.costUSD, (2.0 * 2 + 8.0 * 10) / 1'000'000.0);
}

TEST_F(DecisionRouterTest, OneMissingCountIsEnoughToBeEstimated) {
    endpoint.answer("test-1", Completion{.text = std::string(40, 'x'), .inputTokens = 10});

    const DecisionOutcome outcome = complete(makeRequest(ProviderKind::openAICompatible));

    EXPECT_EQ(outcome.inputTokens, 10);
    EXPECT_EQ(outcome.outputTokens, 10);
    EXPECT_TRUE(outcome.tokensEstimated);
}

TEST_F(DecisionRouterTest, AnEstimateIsAtLeastOneToken) {
    endpoint.answer("test-1", Completion{.text = "x"});
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.systemPrompt = "";
    request.prompt = "";

    const DecisionOutcome outcome = complete(request);

    EXPECT_EQ(outcome.inputTokens, 1);
    EXPECT_EQ(outcome.outputTokens, 1);
}

TEST_F(DecisionRouterTest, AModelWithoutPricesHasNoCost) {
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.model.inputPricePerMillion = 0;
    request.model.outputPricePerMillion = 0;
    EXPECT_EQ(complete(request).costUSD, std::nullopt);

    request.model.inputPricePerMillion = -1;
    EXPECT_EQ(complete(request).costUSD, std::nullopt);
}

TEST_F(DecisionRouterTest, OnePriceIsEnoughForACost) {
    endpoint.answer("test-1", Completion{.text = "x", .inputTokens = 7, .outputTokens = 2});
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.model.inputPricePerMillion = 0;
    request.model.outputPricePerMillion = 3;

    EXPECT_EQ(complete(request).costUSD, 3.0 * 2 / 1'000'000.0);
}

TEST_F(DecisionRouterTest, ACostBeyondAllNumbersIsUnknown) {
    endpoint.answer("test-1", Completion{.text = "x", .inputTokens = 1000, .outputTokens = 2});
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.model.inputPricePerMillion = 1e308;

    const DecisionOutcome outcome = complete(request);

    EXPECT_EQ(outcome.text, "x");
    EXPECT_EQ(outcome.costUSD, std::nullopt);
}

TEST_F(DecisionRouterTest, CountsThatAreNoneAreEstimated) {
    for (const char* const count : {"1e300", "9223372036854775808", "-1e19", "\"12\"", "true", "null"}) {
        const std::string usage =
            R"({"prompt_tokens":)" + std::string(count) + R"(,"completion_tokens":1e19})";
        endpoint.answer("test-1",
                        sample::makeReply(200, R"({"choices":[{"text":"x"}],"usage":)" + usage + "}"));

        const DecisionOutcome outcome = complete(makeRequest(ProviderKind::openAICompatible));

        EXPECT_EQ(outcome.errorMessage, std::nullopt) << count;
        EXPECT_EQ(outcome.inputTokens, 8) << count; // 33 bytes
        EXPECT_EQ(outcome.outputTokens, 1) << count;
        EXPECT_TRUE(outcome.tokensEstimated) << count;
    }
}

TEST_F(DecisionRouterTest, ARequestThatFindsNoMemoryIsAFailure) {
    if (!ScarceMemory::isSurvived)
        GTEST_SKIP();
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    request.prompt.assign(256'000'000, 'x');

    DecisionOutcome outcome;
    {
        const ScarceMemory scarce(64'000'000);
        outcome = complete(request);
    }

    EXPECT_EQ(outcome.errorMessage, "There is not enough memory to ask this model.");
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(outcome.inputTokens, std::nullopt);
    EXPECT_EQ(messageOf(makeRequest(ProviderKind::openAICompatible)), "");
}

TEST_F(DecisionRouterTest, WhateverAReplyHoldsTheNextAnswerComes) {
    const std::string deep = R"({"answers":)" + std::string(1000, '[') + std::string(1000, ']') + "}";
    const std::string broken = "{\"answers\":{},\"choices\":[{\"text\":\"\xc3\x28\"}]}";
    const std::string cut = std::string("{\"answers\":{}}\0{}", 17);
    for (const ProviderKind provider :
         {ProviderKind::openAICompatible, ProviderKind::anthropic, ProviderKind::veritor}) {
        const DecisionRequest request = makeRequest(provider);
        for (const std::string& body : {deep, broken, cut, std::string("[]"), std::string("\0", 1)}) {
            endpoint.answer(sample::everyModel, sample::makeReply(200, body));
            const DecisionOutcome outcome = complete(request);
            // A decision service's plain words are an answer.
            EXPECT_NE(outcome.errorMessage.has_value(), !outcome.text.empty()) << body;
        }
        const char* const answer = R"({"answers":{},"choices":[{"text":"x"}],"content":[{"text":"x"}]})";
        endpoint.answer(sample::everyModel, sample::makeReply(200, answer));
        EXPECT_EQ(messageOf(request), "");
    }
}

TEST_F(DecisionRouterTest, AFailureHasNoTextNoCountsAndNoCost) {
    endpoint.answer(sample::everyModel, sample::makeReply(500, "broken"));

    DecisionOutcome outcome = complete(makeRequest(ProviderKind::openAICompatible));

    EXPECT_GE(outcome.latencyMS, 0);
    outcome.latencyMS = 0;
    DecisionOutcome expected;
    expected.errorMessage = "HTTP 500: broken";
    EXPECT_EQ(outcome, expected);
}

TEST_F(DecisionRouterTest, ZunAndOpenAIDecisionsNeedAKeyThenAModelId) {
    for (const ProviderKind provider : {ProviderKind::zun, ProviderKind::openAIDecisions}) {
        DecisionRequest request = makeRequest(provider);
        request.model.modelIdentifier = " \n";
        EXPECT_EQ(messageOf(request), "Set a model id in Models.");
        secret.apiKey = " ";
        EXPECT_EQ(messageOf(request), "Add an API key in Models.");
        secret.apiKey = "sk-0123456789";
    }
}

TEST_F(DecisionRouterTest, VeritorNeedsABaseURLButNoKeyAndNoModelId) {
    DecisionRequest request = makeRequest(ProviderKind::veritor);
    secret.apiKey = "";
    request.model.modelIdentifier = "";
    endpoint.answer(sample::everyModel, sample::makeReply(200, "Yes."));
    EXPECT_EQ(complete(request).text, "Yes.");

    request.model.endpoint = " \n";
    EXPECT_EQ(messageOf(request), "Set a base URL in Models.");
}

TEST_F(DecisionRouterTest, NuvelNeedsAKeyAtItsHostedHostOnly) {
    DecisionRequest request = makeRequest(ProviderKind::nuvel);
    request.model.modelIdentifier = "";
    secret.apiKey = " \n";
    endpoint.answer(sample::everyModel, sample::makeReply(200, "Yes."));
    request.model.endpoint = " HTTP" + request.model.endpoint.substr(4);
    EXPECT_EQ(complete(request).text, "Yes.");
    for (const char* local : {"", "api.nuvel.example"}) {
        request.model.endpoint = local;
        EXPECT_EQ(messageOf(request), "Couldn't find the nuvel-rs CLI. Ombrel uses the same library.")
            << local;
    }

    for (const char* hosted :
         {"https://api.nuvel.example", "HTTPS://API.Nuvel.Example/v1", "https://nuvel.example"}) {
        request.model.endpoint = hosted;
        EXPECT_EQ(messageOf(request),
                  "api.nuvel.example is Nuvel Studio’s hosted API, so it requires a key. In Models, paste an "
                  "nvk_live_ key and click Save credentials. For the open-source model, run nuvel-serve and "
                  "set the "
                  "base URL to http://127.0.0.1:8000.")
            << hosted;
    }
}

TEST_F(DecisionRouterTest, ADecisionIsValidatedOnceTheModelIsReady) {
    for (const ProviderKind provider :
         {ProviderKind::zun, ProviderKind::nuvel, ProviderKind::openAIDecisions, ProviderKind::veritor}) {
        DecisionRequest request = makeRequest(provider);
        request.questions = {};
        EXPECT_EQ(messageOf(request), "Add a question.");
        request.prompt = " ";
        EXPECT_EQ(messageOf(request), "Write the state this decision is about.");
    }

    DecisionRequest request = makeRequest(ProviderKind::zun);
    request.questions = {};
    secret.apiKey = "";
    EXPECT_EQ(messageOf(request), "Add an API key in Models.");
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(DecisionRouterTest, OpenAIAndAnthropicNeedAKeyThenAModelId) {
    for (const ProviderKind provider : {ProviderKind::openAI, ProviderKind::anthropic}) {
        DecisionRequest request = makeRequest(provider);
        request.model.modelIdentifier = " ";
        EXPECT_EQ(messageOf(request), "Set a model id in Models.");
        secret.apiKey = "\n";
        EXPECT_EQ(messageOf(request), "Add an API key in Models.");
        secret.apiKey = "sk-0123456789";
    }
}

TEST_F(DecisionRouterTest, BedrockNeedsBothKeysThenAModelId) {
    DecisionRequest request = makeRequest(ProviderKind::amazonBedrock);
    request.model.modelIdentifier = "";
    EXPECT_EQ(messageOf(request), "Add an AWS access key and secret in Models.");
    secret.awsAccessKey = "AKIA0123456789";
    EXPECT_EQ(messageOf(request), "Add an AWS access key and secret in Models.");
    secret.awsSecretKey = "secret";
    EXPECT_EQ(messageOf(request), "Set a Bedrock model id in Models.");
}

TEST_F(DecisionRouterTest, ACompatibleServerNeedsABaseURLThenAModelIdThenAKey) {
    DecisionRequest request = makeRequest(ProviderKind::openAICompatible);
    const std::string base = request.model.endpoint;
    request.model.endpoint = " ";
    request.model.modelIdentifier = "";
    secret.apiKey = "";
    EXPECT_EQ(messageOf(request), "Set a base URL in Models.");
    request.model.endpoint = base;
    EXPECT_EQ(messageOf(request), "Set a model id in Models.");
    request.model.modelIdentifier = "test-1";
    EXPECT_EQ(messageOf(request), "Add an API key in Models.");
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(DecisionRouterTest, AModelIsAskedOnlyWhatItsFamilyAnswers) {
    for (const ProviderKind provider : allProviderKinds) {
        secret.awsAccessKey = "AKIA0123456789";
        secret.awsSecretKey = "secret";
        DecisionRequest request = makeRequest(provider);
        request.model.executablePath = stage.tool("echo '{}'"); // a missing tool would be told first
        if (request.kind == QuorlKind::decision) {
            request.kind = QuorlKind::generation;
            request.questions = {}; // not looked at
            EXPECT_EQ(messageOf(request),
                      "This model answers typed decisions. Switch the comparison to Decision.");
        } else {
            request.kind = QuorlKind::decision;
            EXPECT_EQ(messageOf(request), "Decision comparisons use Veritor models such as Zun and Nuvel.");
        }
    }
}

TEST_F(DecisionRouterTest, AMissingKeyIsReportedBeforeAWrongKind) {
    secret.apiKey = "";
    DecisionRequest request = makeRequest(ProviderKind::zun);
    request.kind = QuorlKind::generation;

    EXPECT_EQ(messageOf(request), "Add an API key in Models.");
}

TEST_F(DecisionRouterTest, DecisionsAreAskedOverHTTPAtThePathOfTheirProvider) {
    endpoint.answer(sample::everyModel,
                    sample::makeReply(200, R"({"answers":{},"usage":{"input_tokens":7}})"));
    for (const ProviderKind provider : {ProviderKind::zun, ProviderKind::nuvel, ProviderKind::veritor}) {
        EXPECT_EQ(complete(makeRequest(provider)).inputTokens, 7);
        EXPECT_EQ(endpoint.requests().back().path, "/v1/veritor");
    }

    EXPECT_EQ(complete(makeRequest(ProviderKind::openAIDecisions)).inputTokens, 7);
    EXPECT_EQ(endpoint.requests().back().path, "/v1/decisions");
}

TEST_F(DecisionRouterTest, AnErrorInsideAResponseKeepsItsTextAndHasNoCounts) {
    endpoint.answer(sample::everyModel,
                    sample::makeReply(200, R"({"error":"overloaded","usage":{"input_tokens":7}})"));

    const DecisionOutcome outcome = complete(makeRequest(ProviderKind::zun));

    EXPECT_EQ(outcome.errorMessage, "overloaded");
    EXPECT_EQ(outcome.text,
              "{\n  \"error\": \"overloaded\",\n  \"usage\": {\n    \"input_tokens\": 7\n  }\n}");
    EXPECT_EQ(outcome.inputTokens, std::nullopt);
    EXPECT_FALSE(outcome.tokensEstimated);
    EXPECT_EQ(outcome.costUSD, std::nullopt);
}

TEST_F(DecisionRouterTest, AnthropicIsAskedInItsOwnFormat) {
    endpoint.answer(sample::everyModel, sample::makeReply(200, R"({"content":[{"text":"That way."}]})"));

    EXPECT_EQ(complete(makeRequest(ProviderKind::anthropic)).text, "That way.");
    EXPECT_EQ(endpoint.requests().back().path, "/v1/messages");
}

TEST_F(DecisionRouterTest, BedrockIsAskedInTheModelsRegion) {
    secret.awsAccessKey = "AKIA0123456789";
    secret.awsSecretKey = "secret";
    DecisionRequest request = makeRequest(ProviderKind::amazonBedrock);
    request.model.endpoint = "no region";

    EXPECT_EQ(messageOf(request), "Couldn't build the Bedrock URL.");
}

TEST_F(DecisionRouterTest, AToolThatIsNotThereIsTold) {
    EXPECT_EQ(messageOf(makeRequest(ProviderKind::claudeCode)),
              "Couldn't find the Claude Code CLI. Set its path in Models.");
    EXPECT_EQ(messageOf(makeRequest(ProviderKind::codex)),
              "Couldn't find the Codex CLI. Set its path in Models.");
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(DecisionRouterTest, AToolAnswersWithoutAModelId) {
    secret = {};
    DecisionRequest claude = makeRequest(ProviderKind::claudeCode);
    claude.model.modelIdentifier = "";
    claude.model.executablePath = stage.tool("echo '{\"result\":\"up\"}'", "own-claude");
    DecisionRequest codex = makeRequest(ProviderKind::codex);
    codex.model.modelIdentifier = "";
    codex.model.executablePath = stage.tool(
        R"(echo '{"type":"item.completed","item":{"type":"agent_message","text":"down"}}')", "own-codex");

    EXPECT_EQ(complete(claude).text, "up");
    EXPECT_EQ(complete(codex).text, "down");
}

TEST_F(DecisionRouterTest, LocalNuvelIsAskedThroughItsToolOnceItsQuestionsAreValid) {
    secret = {};
    DecisionRequest request = makeRequest(ProviderKind::nuvel);
    request.model.endpoint = "";
    request.model.executablePath = stage.tool(R"(echo '{"answers":{}}')", "own-nuvel");
    EXPECT_EQ(complete(request).text, "{\n  \"answers\": {}\n}");

    request.questions.clear();
    EXPECT_EQ(messageOf(request), "Add a question.");
}

} // namespace
} // namespace quorl::test
