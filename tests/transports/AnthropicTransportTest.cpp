#include "transports/AnthropicTransport.h"

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

using sample::AnthropicMessages;
using sample::everyModel;
using sample::makeReply;
using sample::SampleEndpoint;
using testing::HasSubstr;
using testing::Not;

constexpr const char* key = "sk-ant-0123456789";

class AnthropicTransportTest : public testing::Test {
protected:
    AnthropicTransportTest() {
        request.kind = QuorlKind::generation;
        request.prompt = "Which way is up?";
        request.systemPrompt = "Answer directly.";
        request.model = makeModel(ProviderKind::anthropic);
        request.model.endpoint = endpoint.baseURL();
        secret.apiKey = key;
    }

    RawDecision complete() { return AnthropicTransport::complete(session, request, secret); }

    // The answer to a reply of status 200 with this body.
    RawDecision completeWith(std::string body) {
        endpoint.answer(everyModel, makeReply(200, std::move(body)));
        return complete();
    }

    SampleEndpoint endpoint;
    HTTPSession session;
    DecisionRequest request;
    ModelSecret secret;
};

TEST_F(AnthropicTransportTest, SendsTheMessageWithTheLimitTheKeyAndTheVersion) {
    secret.apiKey = std::string(" ") + key + "\n";
    endpoint.answer("test-1", sample::Completion{.text = "That way.", .inputTokens = 12, .outputTokens = 3});

    EXPECT_EQ(complete(), (RawDecision{.text = "That way.",
                                       .inputTokens = 12,
                                       .outputTokens = 3,
                                       .tokensEstimated = false,
                                       .reportedCost = {},
                                       .errorMessage = {}}));
    const sample::Request sent = endpoint.requests().at(0);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.path, "/v1/messages");
    EXPECT_EQ(*sent.header("x-api-key"), key);
    EXPECT_EQ(*sent.header("anthropic-version"), "2023-06-01");
    EXPECT_EQ(*sent.header("content-type"), "application/json");
    EXPECT_EQ(sent.header("Authorization"), nullptr);
    EXPECT_EQ(sent.body, R"({"max_tokens":1024,"messages":[{"content":"Which way is up?","role":"user"}],)"
                         R"("model":"test-1","system":"Answer directly."})");
}

TEST_F(AnthropicTransportTest, ABlankSystemPromptIsLeftOutAndAnyOtherSentUntrimmed) {
    request.systemPrompt = "  \n";
    request.model.modelIdentifier = " Test-1 ";
    (void)complete();
    EXPECT_EQ(
        endpoint.requests().back().body,
        R"({"max_tokens":1024,"messages":[{"content":"Which way is up?","role":"user"}],"model":" Test-1 "})");

    request.systemPrompt = " Be brief. ";
    (void)complete();
    EXPECT_THAT(endpoint.requests().back().body, HasSubstr(R"("system":" Be brief. ")"));
}

TEST_F(AnthropicTransportTest, ADecisionHasTemperatureZero) {
    request.kind = QuorlKind::decision;

    (void)complete();

    EXPECT_THAT(endpoint.requests().at(0).body, HasSubstr(R"("temperature":0)"));
}

TEST_F(AnthropicTransportTest, TheEndpointMayBeTheHostTheBaseOrTheFullPath) {
    const std::string root = "http://127.0.0.1:" + std::to_string(endpoint.port());
    const std::vector<std::pair<std::string, std::string>> cases{
        {root, "/v1/messages"},
        {" " + root + "/v1///\n", "/v1/messages"},
        {root + "/v1/messages/", "/v1/messages"},
        {root + "/proxy", "/proxy/v1/messages"},
        {root + "/messages", "/messages/v1/messages"},
    };

    for (const auto& [given, path] : cases) {
        request.model.endpoint = given;
        EXPECT_EQ(complete().errorMessage, std::nullopt) << given;
        EXPECT_EQ(endpoint.requests().back().path, path) << given;
    }
}

TEST_F(AnthropicTransportTest, AnEndpointThatIsNoURLIsSaidToBeSo) {
    for (const char* const given : {"///", "localhost:1234", "http://a b", "ftp://host"}) {
        request.model.endpoint = given;
        EXPECT_EQ(complete(), RawDecision::failed("The Anthropic base URL is not valid.")) << given;
    }
}

TEST_F(AnthropicTransportTest, WhatIsNoUTF8CannotBeEncoded) {
    request.prompt = "\xff";

    EXPECT_EQ(complete(), RawDecision::failed("Couldn't encode the request."));
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(AnthropicTransportTest, ReadsTheTextsJoinedWithNothingBetween) {
    endpoint.answer(everyModel, AnthropicMessages::reply({.text = "That way."}, "test-1",
                                                         AnthropicMessages::Content::afterThinking));
    EXPECT_EQ(complete().text, "That way.");

    EXPECT_EQ(
        completeWith(R"({"content":[{"text":"Up "},{"type":"image"},{"text":7},{"text":"there."}]})").text,
        "Up there.");
}

TEST_F(AnthropicTransportTest, AnAnswerWithoutTextIsAFailure) {
    for (const char* const body :
         {"{}", R"({"content":null})", R"({"content":"a"})", R"({"content":[]})",
          R"({"content":[{"text":"a"},7]})", R"({"content":[{"type":"thinking","thinking":"a"}]})",
          R"({"content":[{"text":""}]})"})
        EXPECT_EQ(completeWith(body), RawDecision::failed("Anthropic returned an empty response.")) << body;
}

TEST_F(AnthropicTransportTest, ReadsTheCountsThatAreThere) {
    const auto withUsage = [&](const std::string& usage) {
        return completeWith(R"({"content":[{"text":"a"}],"usage":)" + usage + "}");
    };

    EXPECT_EQ(withUsage(R"({"input_tokens":12.7})").inputTokens, 12);
    EXPECT_EQ(withUsage(R"({"input_tokens":12.7})").outputTokens, std::nullopt);
    EXPECT_EQ(withUsage(R"({"output_tokens":true})").outputTokens, std::nullopt);
    EXPECT_EQ(withUsage("null").errorMessage, std::nullopt);
}

TEST_F(AnthropicTransportTest, ARefusalOrABodyThatIsNoObjectIsShaped) {
    endpoint.answer(everyModel, AnthropicMessages().failure(529, "Overloaded"));
    EXPECT_EQ(complete(), RawDecision::failed("HTTP 529: Overloaded"));
    EXPECT_EQ(completeWith("<html>"), RawDecision::failed("HTTP 200: <html>"));
    EXPECT_EQ(completeWith("[]"), RawDecision::failed("HTTP 200: []"));
    EXPECT_EQ(completeWith(""), RawDecision::failed("HTTP 200"));
}

TEST_F(AnthropicTransportTest, AFailureIsNotRetried) {
    endpoint.answer(everyModel, makeReply(400, R"({"error":{"message":"max_tokens: too large"}})"));

    EXPECT_EQ(complete(), RawDecision::failed("HTTP 400: max_tokens: too large"));
    EXPECT_EQ(endpoint.requests().size(), 1u);
}

TEST_F(AnthropicTransportTest, AKeyThatTheServerEchoesIsNotShown) {
    endpoint.answer(everyModel, AnthropicMessages().failure(401, std::string("invalid x-api-key: ") + key));

    EXPECT_EQ(complete(), RawDecision::failed("HTTP 401: invalid x-api-key: [API key]"));
}

TEST_F(AnthropicTransportTest, ATransportErrorIsPassedOn) {
    const UnusedPort port;
    request.model.endpoint = "http://127.0.0.1:" + std::to_string(port.number());

    EXPECT_THAT(*complete().errorMessage, HasSubstr("Couldn't connect to server"));
}

} // namespace
} // namespace quorl::test
