#include "transports/OpenAITransport.h"

#include "sample-endpoint/SampleEndpoint.h"
#include "support/Builders.h"
#include "transports/HTTPSession.h"
#include "transports/UnusedPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quorl::test {
namespace {

using sample::everyModel;
using sample::makeReply;
using sample::OpenAIChat;
using sample::SampleEndpoint;
using testing::HasSubstr;
using testing::Not;
namespace Fault = sample::Fault;

constexpr const char* key = "sk-0123456789";

class OpenAITransportTest : public testing::Test {
protected:
    OpenAITransportTest() {
        request.kind = QuorlKind::generation;
        request.prompt = "Which way is up?";
        request.systemPrompt = "Answer directly.";
        request.model = makeModel();
        request.model.endpoint = endpoint.baseURL();
        secret.apiKey = key;
    }

    RawDecision complete() { return OpenAITransport::complete(session, request, secret); }

    // The answer to a reply of status 200 with this body.
    RawDecision completeWith(std::string body) {
        endpoint.answer(everyModel, makeReply(200, std::move(body)));
        return complete();
    }

    // The bodies that came in.
    std::vector<std::string> bodies() const {
        std::vector<std::string> all;
        for (const sample::Request& sent : endpoint.requests())
            all.push_back(sent.body);
        return all;
    }

    SampleEndpoint endpoint;
    HTTPSession session;
    DecisionRequest request;
    ModelSecret secret;
};

TEST_F(OpenAITransportTest, SendsSystemAndUserMessagesWithTheLimitAndTheKey) {
    endpoint.answer("test-1", sample::Completion{.text = "That way.", .inputTokens = 12, .outputTokens = 3});

    const RawDecision decision = complete();

    EXPECT_EQ(decision, (RawDecision{.text = "That way.",
                                     .inputTokens = 12,
                                     .outputTokens = 3,
                                     .tokensEstimated = false,
                                     .reportedCost = {},
                                     .errorMessage = {}}));
    ASSERT_EQ(endpoint.requests().size(), 1u);
    const sample::Request sent = endpoint.requests().front();
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.path, "/v1/chat/completions");
    EXPECT_EQ(*sent.header("Authorization"), "Bearer sk-0123456789");
    EXPECT_EQ(*sent.header("Content-Type"), "application/json");
    EXPECT_EQ(sent.body, R"({"max_tokens":1024,"messages":[{"content":"Answer directly.","role":"system"},)"
                         R"({"content":"Which way is up?","role":"user"}],"model":"test-1"})");
}

TEST_F(OpenAITransportTest, LeavesOutABlankSystemPromptAndKeepsTheRestAsItStands) {
    request.systemPrompt = " \n";
    request.prompt = " a/b \"c\" ";
    request.model.modelIdentifier = " Test-1 ";

    (void)complete();

    EXPECT_EQ(bodies().at(0), R"({"max_tokens":1024,"messages":[{"content":" a/b \"c\" ","role":"user"}],)"
                              R"("model":" Test-1 "})");
}

TEST_F(OpenAITransportTest, SendsASystemPromptUntrimmed) {
    request.systemPrompt = " Be brief. ";

    (void)complete();

    EXPECT_THAT(bodies().at(0), HasSubstr(R"({"content":" Be brief. ","role":"system"})"));
}

TEST_F(OpenAITransportTest, TrimsTheKey) {
    secret.apiKey = "\n sk-0123456789\t\r\n";

    (void)complete();

    EXPECT_EQ(*endpoint.requests().at(0).header("Authorization"), "Bearer sk-0123456789");
}

TEST_F(OpenAITransportTest, ADecisionHasTemperatureZero) {
    request.kind = QuorlKind::decision;

    (void)complete();

    EXPECT_THAT(bodies().at(0), HasSubstr(R"("temperature":0})"));
}

TEST_F(OpenAITransportTest, AModelOfAFixedTemperatureIsSentNone) {
    request.kind = QuorlKind::decision;
    for (const char* model : {"o1", "O3-mini", "o4-mini"}) {
        request.model.modelIdentifier = model;
        (void)complete();
        EXPECT_THAT(bodies().back(), Not(HasSubstr("temperature"))) << model;
    }

    request.model.modelIdentifier = "gpt-5";
    (void)complete();
    EXPECT_THAT(bodies().back(), HasSubstr(R"("temperature":0)"));
}

TEST_F(OpenAITransportTest, NewerModelsGetTheNewerTokenParameter) {
    for (const char* model : {"gpt-5", "GPT-5-mini", "o1", "o3-mini", "O4"}) {
        request.model.modelIdentifier = model;
        (void)complete();
        EXPECT_THAT(bodies().back(), HasSubstr(R"("max_completion_tokens":1024)")) << model;
        EXPECT_THAT(bodies().back(), Not(HasSubstr(R"("max_tokens")"))) << model;
    }
    for (const char* model : {"gpt-4.1", "o2", " gpt-5", "my-o1", ""}) {
        request.model.modelIdentifier = model;
        (void)complete();
        EXPECT_THAT(bodies().back(), HasSubstr(R"("max_tokens":1024)")) << model;
        EXPECT_THAT(bodies().back(), Not(HasSubstr(R"("max_completion_tokens")"))) << model;
    }
}

TEST_F(OpenAITransportTest, ARefusedTokenParameterIsRetriedOnceWithTheOther) {
    endpoint.answer("test-1", sample::Completion{.text = "That way."});
    endpoint.refuseParameter("test-1", "max_tokens");

    const RawDecision decision = complete();

    EXPECT_EQ(decision.text, "That way.");
    EXPECT_EQ(decision.errorMessage, std::nullopt);
    ASSERT_EQ(bodies().size(), 2u);
    EXPECT_THAT(bodies()[0], HasSubstr(R"("max_tokens":1024)"));
    EXPECT_THAT(bodies()[1], HasSubstr(R"("max_completion_tokens":1024)"));
    EXPECT_THAT(bodies()[1], Not(HasSubstr(R"("max_tokens")")));
}

TEST_F(OpenAITransportTest, ANewerModelIsRetriedWithTheOlderParameter) {
    request.model.modelIdentifier = "gpt-5";
    endpoint.refuseParameter("gpt-5", "max_completion_tokens");

    EXPECT_EQ(complete().errorMessage, std::nullopt);

    ASSERT_EQ(bodies().size(), 2u);
    EXPECT_THAT(bodies()[1], HasSubstr(R"("max_tokens":1024)"));
}

TEST_F(OpenAITransportTest, ASecondRefusalIsFinalAndItsMessageIsTheOneShown) {
    endpoint.answerInTurn(
        everyModel, {makeReply(400, R"({"error":{"message":"Unsupported: 'MAX_TOKENS'"}})"),
                     makeReply(400, R"({"error":{"message":"Unsupported: 'max_completion_tokens'"}})")});

    const RawDecision decision = complete();

    EXPECT_EQ(decision, RawDecision::failed("HTTP 400: Unsupported: 'max_completion_tokens'"));
    EXPECT_EQ(bodies().size(), 2u);
}

TEST_F(OpenAITransportTest, TheWordsDecideOnTheRetryAndNotTheStatus) {
    endpoint.answerInTurn(everyModel, {makeReply(503, "max_tokens"),
                                       OpenAIChat::reply(sample::Completion{.text = "That way."}, "test-1")});

    EXPECT_EQ(complete().text, "That way.");
}

TEST_F(OpenAITransportTest, AnyOtherRefusalIsNotRetried) {
    endpoint.answer(everyModel, makeReply(400, R"({"error":{"message":"Unsupported: 'temperature'"}})"));

    EXPECT_EQ(complete(), RawDecision::failed("HTTP 400: Unsupported: 'temperature'"));
    EXPECT_EQ(bodies().size(), 1u);
}

TEST_F(OpenAITransportTest, TheEndpointMayBeTheBaseOrTheFullPath) {
    const std::string root = "http://127.0.0.1:" + std::to_string(endpoint.port());
    const std::vector<std::pair<std::string, std::string>> cases{
        {root, "/chat/completions"},
        {root + "/v1/", "/v1/chat/completions"},
        {" \n" + root + "/v1/// ", "/v1/chat/completions"},
        {root + "/v1/chat/completions", "/v1/chat/completions"},
        {root + "/chat/completions///", "/chat/completions"},
    };

    for (const auto& [given, path] : cases) {
        request.model.endpoint = given;
        (void)complete();
        EXPECT_EQ(endpoint.requests().back().path, path) << given;
    }
}

TEST_F(OpenAITransportTest, AnEndpointThatIsNoURLIsSaidToBeSo) {
    for (const char* given :
         {"", " \n", "///", "localhost:1234/v1", "http://", "http://a b/v1", "ftp://host"}) {
        request.model.endpoint = given;
        EXPECT_EQ(complete(), RawDecision::failed("The base URL is not valid.")) << given;
    }
}

TEST_F(OpenAITransportTest, WhatIsNoUTF8CannotBeEncoded) {
    request.prompt = "\xff";

    EXPECT_EQ(complete(), RawDecision::failed("Couldn't encode the request."));
    EXPECT_TRUE(bodies().empty());
}

TEST_F(OpenAITransportTest, ReadsTextPartsJoinedWithNothingBetween) {
    EXPECT_EQ(
        completeWith(R"({"choices":[{"message":{"content":[{"type":"text","text":"Up "},{"type":"image"},)"
                     R"({"text":7},{"text":"there."}]}}]})")
            .text,
        "Up there.");
}

TEST_F(OpenAITransportTest, ReadsTheTextOfACompletionStyleServer) {
    EXPECT_EQ(completeWith(R"({"choices":[{"text":"That way."}]})").text, "That way.");
    EXPECT_EQ(completeWith(R"({"choices":[{"message":{"content":null},"text":"That way."}]})").text,
              "That way.");
    EXPECT_EQ(completeWith(R"({"choices":[{"message":{"content":["a"]},"text":"That way."}]})").text,
              "That way.");
}

TEST_F(OpenAITransportTest, ReadsTheFirstChoiceOnly) {
    EXPECT_EQ(completeWith(R"({"choices":[{"text":"First."},{"text":"Second."}]})").text, "First.");
    EXPECT_EQ(completeWith(R"({"choices":[{},{"text":"Second."}]})"),
              RawDecision::failed("OpenAI returned an empty response."));
}

TEST_F(OpenAITransportTest, AnAnswerWithoutTextIsAFailure) {
    for (const char* body :
         {R"({})", R"({"choices":null})", R"({"choices":[]})", R"({"choices":["a"]})",
          R"({"choices":[{"text":"a"},7]})", R"({"choices":[{"message":{"content":""},"text":"a"}]})",
          R"({"choices":[{"message":{"content":[]},"text":"a"}]})", R"({"choices":[{"text":7}]})"})
        EXPECT_EQ(completeWith(body), RawDecision::failed("OpenAI returned an empty response.")) << body;
}

TEST_F(OpenAITransportTest, AReplyThatIsNoJSONObjectIsAFailure) {
    const std::string nul("{\"choices\":\0[]}", 15);
    const std::string notUTF8 = "{\"choices\":[{\"text\":\"\xff\"}]}";
    for (const std::string& body :
         {std::string(), std::string("<html>"), std::string("[]"), std::string("{"), nul, notUTF8})
        EXPECT_EQ(completeWith(body), RawDecision::failed("OpenAI returned a response that wasn't JSON."))
            << body;
}

TEST_F(OpenAITransportTest, AReplyOfAThousandLevelsIsNoJSON) {
    endpoint.answer(everyModel, Fault::nestedBody(1000));
    EXPECT_EQ(complete(), RawDecision::failed("OpenAI returned a response that wasn't JSON."));
    endpoint.answer(everyModel, Fault::nestedBody(1'000'000));
    EXPECT_EQ(complete(), RawDecision::failed("OpenAI returned a response that wasn't JSON."));
}

TEST_F(OpenAITransportTest, ReadsTheCountsThatAreThere) {
    const auto withUsage = [&](const std::string& usage) {
        return completeWith(R"({"choices":[{"text":"a"}],"usage":)" + usage + "}");
    };

    const RawDecision fraction = withUsage(R"({"prompt_tokens":12.7})");
    EXPECT_EQ(fraction.inputTokens, 12);
    EXPECT_EQ(fraction.outputTokens, std::nullopt);
    const RawDecision words = withUsage(R"({"prompt_tokens":"12","completion_tokens":true})");
    EXPECT_EQ(words.inputTokens, std::nullopt);
    EXPECT_EQ(words.outputTokens, std::nullopt);
    for (const char* usage : {"null", "[]", "7"}) {
        EXPECT_EQ(withUsage(usage).inputTokens, std::nullopt) << usage;
        EXPECT_EQ(withUsage(usage).errorMessage, std::nullopt) << usage;
    }
}

TEST_F(OpenAITransportTest, AnHTTPErrorIsShapedAndLeavesNoText) {
    endpoint.answer(everyModel, makeReply(404, ""));
    EXPECT_EQ(complete(), RawDecision::failed("HTTP 404"));
    endpoint.answer(everyModel, makeReply(500, std::string(1000, '<')));
    EXPECT_EQ(complete(), RawDecision::failed("HTTP 500: " + std::string(300, '<')));
    endpoint.answer(everyModel, makeReply(500, "\xff\xfe"));
    EXPECT_EQ(complete(), RawDecision::failed("HTTP 500"));
    endpoint.answer(everyModel, makeReply(199 + 101, R"({"choices":[{"text":"a"}]})"));
    EXPECT_THAT(*complete().errorMessage, HasSubstr("HTTP 300: "));
}

TEST_F(OpenAITransportTest, ARedirectIsAFailureAndTheKeyGoesNowhereElse) {
    SampleEndpoint other;
    endpoint.answer(everyModel, Fault::redirect(307, other.baseURL() + "/chat/completions"));

    EXPECT_EQ(complete(), RawDecision::failed("HTTP 307"));
    EXPECT_TRUE(other.requests().empty());
}

TEST_F(OpenAITransportTest, ATransportErrorIsPassedOn) {
    const UnusedPort port;
    request.model.endpoint = "http://127.0.0.1:" + std::to_string(port.number()) + "/v1";
    EXPECT_THAT(*complete().errorMessage, HasSubstr("Couldn't connect to server"));

    request.model.endpoint = "http://quorl-no-such-host.invalid";
    EXPECT_EQ(complete(), RawDecision::failed("Could not resolve host: quorl-no-such-host.invalid"));
}

TEST_F(OpenAITransportTest, AKeyWithALineEndInsideIsNotSentAndNotQuoted) {
    secret.apiKey = "sk-0123\r\nX-Injected: 456789";

    EXPECT_EQ(complete(), RawDecision::failed(
                              "The credentials hold characters that can't be sent. Check them in Models."));
    EXPECT_TRUE(bodies().empty());
}

TEST_F(OpenAITransportTest, AKeyThatTheServerEchoesIsNotShown) {
    secret.apiKey = " sk-0123456789 ";
    for (const char* body :
         {R"({"error":{"message":"Wrong key: sk-0123456789"}})", "Wrong key: sk-0123456789"}) {
        endpoint.answer(everyModel, makeReply(401, body));
        EXPECT_EQ(complete(), RawDecision::failed("HTTP 401: Wrong key: [API key]"));
    }
}

TEST_F(OpenAITransportTest, WhateverTheWireDoesTheNextAnswerComes) {
    const std::string body = R"({"choices":[{"text":"That way."}]})";
    for (const sample::Reply& fault :
         {Fault::closeBeforeAnswer(), Fault::resetBeforeAnswer(), Fault::resetMidBody(body, 9),
          Fault::truncatedBody(body, 9), Fault::understatedLength(body, 9), Fault::endlessChunks(),
          Fault::endlessLength(), Fault::largeBody(200'000'000), Fault::nestedBody(1000), Fault::garbage()}) {
        endpoint.answer(everyModel, fault);
        const RawDecision failed = complete();
        EXPECT_EQ(failed.text, "");
        ASSERT_TRUE(failed.errorMessage);
        EXPECT_THAT(*failed.errorMessage, Not(HasSubstr("\n")));
        EXPECT_THAT(*failed.errorMessage, Not(HasSubstr(key)));

        EXPECT_EQ(completeWith(body).text, "That way.");
    }
}

} // namespace
} // namespace quorl::test
