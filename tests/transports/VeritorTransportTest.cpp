#include "transports/VeritorTransport.h"

#include "decision/HostedNuvel.h"
#include "decision/VeritorResults.h"
#include "domain/ServiceHosts.h"
#include "sample-endpoint/SampleEndpoint.h"
#include "support/Builders.h"
#include "transports/HTTPSession.h"
#include "transports/UnusedPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>

namespace quorl::test {
namespace {

using sample::everyModel;
using sample::makeReply;
using sample::SampleEndpoint;
using sample::TypedDecisions;
using testing::HasSubstr;

constexpr const char* key = "kv-0123456789";

class VeritorTransportTest : public testing::Test {
protected:
    VeritorTransportTest() {
        request.kind = QuorlKind::decision;
        request.prompt = " A parcel is late.\n";
        request.model = makeModel(ProviderKind::veritor);
        request.model.endpoint = endpoint.baseURL();
        DecisionQuestion question = DecisionQuestion::starter();
        question.type = DecisionQuestionType::noul;
        question.instructions = "Is it up?";
        request.questions = {question};
        secret.apiKey = key;
    }

    RawDecision complete() { return VeritorTransport::complete(session, request, secret); }

    RawDecision completeWith(int status, std::string body) {
        endpoint.answer(everyModel, makeReply(status, std::move(body)));
        return complete();
    }

    SampleEndpoint endpoint;
    HTTPSession session;
    DecisionRequest request;
    ModelSecret secret;
};

TEST_F(VeritorTransportTest, SendsTheStateUntrimmedAndKeepsTheResponsePretty) {
    endpoint.answer("test-1", sample::Completion{.text = R"({"is_it_up":{"type":"noul","noul":0.875}})",
                                                 .inputTokens = 12,
                                                 .outputTokens = 3});

    EXPECT_EQ(complete(), (RawDecision{.text = R"({
  "answers": {
    "is_it_up": {
      "noul": 0.875,
      "type": "noul"
    }
  },
  "model": "test-1",
  "usage": {
    "input_tokens": 12,
    "output_tokens": 3
  }
})",
                                       .inputTokens = 12,
                                       .outputTokens = 3,
                                       .tokensEstimated = false,
                                       .reportedCost = {},
                                       .errorMessage = {}}));
    const sample::Request sent = endpoint.requests().at(0);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.path, "/v1/veritor");
    EXPECT_EQ(*sent.header("Authorization"), "Bearer kv-0123456789");
    EXPECT_EQ(*sent.header("Content-Type"), "application/json");
    EXPECT_EQ(sent.body,
              R"({"model":"test-1","questions":{"is_it_up":{"instructions":"Is it up?","type":"noul"}},)"
              R"("state":" A parcel is late.\n"})");
}

TEST_F(VeritorTransportTest, OpenAIsDecisionsGoToAPathOfTheirOwn) {
    request.model.provider = ProviderKind::openAIDecisions;

    EXPECT_EQ(complete().errorMessage, std::nullopt);
    EXPECT_EQ(endpoint.requests().at(0).path, "/v1/decisions");
}

TEST_F(VeritorTransportTest, AKeylessServerIsSentNoKeyAndABlankModelNone) {
    secret.apiKey = " \n";
    request.model.modelIdentifier = " ";

    EXPECT_EQ(complete().errorMessage, std::nullopt);
    EXPECT_EQ(endpoint.requests().at(0).header("Authorization"), nullptr);
    EXPECT_EQ(endpoint.requests().at(0).body,
              R"({"questions":{"is_it_up":{"instructions":"Is it up?","type":"noul"}},)"
              R"("state":" A parcel is late.\n"})");
}

TEST_F(VeritorTransportTest, TheKeyIsTrimmed) {
    secret.apiKey = std::string("\n ") + key + " ";

    (void)complete();

    EXPECT_EQ(*endpoint.requests().at(0).header("Authorization"), "Bearer kv-0123456789");
}

TEST_F(VeritorTransportTest, EitherNameOfTheCountsIsRead) {
    endpoint.answer(everyModel, TypedDecisions::reply({.text = "{}", .inputTokens = 12, .outputTokens = 3},
                                                      "test-1", TypedDecisions::Usage::promptAndCompletion));

    EXPECT_EQ(complete().inputTokens, 12);
    EXPECT_EQ(complete().outputTokens, 3);
}

TEST_F(VeritorTransportTest, AnEndpointThatIsNoURLIsSaidToBeSo) {
    for (const char* const given : {"", "///", "a b", "ftp://host", "http://a:b"}) {
        request.model.endpoint = given;
        EXPECT_EQ(complete(), RawDecision::failed("The base URL is not valid.")) << given;
    }
}

TEST_F(VeritorTransportTest, WhatCannotBeAskedIsNotSent) {
    request.prompt = "\xff";
    EXPECT_EQ(complete(), RawDecision::failed("Couldn't encode the request."));
    request.prompt = " ";
    EXPECT_EQ(complete(), RawDecision::failed("Write the state this decision is about."));
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(VeritorTransportTest, AnErrorUnderAStatusOfSuccessKeepsItsText) {
    const RawDecision decision = completeWith(200, R"({"error":"overloaded","usage":{"input_tokens":5}})");

    RawDecision expected;
    expected.text = "{\n  \"error\": \"overloaded\",\n  \"usage\": {\n    \"input_tokens\": 5\n  }\n}";
    expected.errorMessage = "overloaded";
    EXPECT_EQ(decision, expected);
    EXPECT_EQ(completeWith(200, ""), RawDecision::failed("The response was not JSON."));
}

TEST_F(VeritorTransportTest, PlainWordsUnderAStatusOfSuccessAreTheAnswer) {
    RawDecision expected;
    expected.text = "Server busy";
    EXPECT_EQ(completeWith(200, "Server busy\n"), expected);
}

TEST_F(VeritorTransportTest, ARefusalSaysWhatTheResponseReports) {
    for (const auto error :
         {TypedDecisions::Error::text, TypedDecisions::Error::object, TypedDecisions::Error::message}) {
        endpoint.answer(everyModel, TypedDecisions::errorReply(500, "overloaded", error));
        EXPECT_EQ(complete(), RawDecision::failed("HTTP 500: overloaded"));
    }
    EXPECT_EQ(completeWith(404, "{}"), RawDecision::failed("HTTP 404: The response had no answers."));
}

TEST_F(VeritorTransportTest, ARefusalInPlainWordsIsCut) {
    EXPECT_EQ(completeWith(500, std::string(1000, '<')),
              RawDecision::failed("HTTP 500: " + std::string(300, '<')));
    EXPECT_EQ(completeWith(500, R"({"answers":{}})"), RawDecision::failed(R"(HTTP 500: {"answers":{}})"));
}

// The response reports that it was not JSON, and that is what is said.
TEST_F(VeritorTransportTest, ARefusalWithoutABodySaysSo) {
    EXPECT_EQ(completeWith(502, ""), RawDecision::failed("HTTP 502: The response was not JSON."));
}

TEST_F(VeritorTransportTest, ARefusedKeyAtAServerOfOnesOwnIsAnOrdinaryRefusal) {
    for (const ProviderKind provider : {ProviderKind::nuvel, ProviderKind::zun, ProviderKind::veritor}) {
        request.model.provider = provider;
        EXPECT_EQ(completeWith(401, R"({"error":"nope"})"), RawDecision::failed("HTTP 401: nope"));
    }
}

// The hosted name leads to the endpoint by way of a proxy.
TEST_F(VeritorTransportTest, ARefusedKeyAtTheHostedNuvelAPISaysWhatToDo) {
    setenv("http_proxy", ("http://127.0.0.1:" + std::to_string(endpoint.port())).c_str(), 1);
    request.model.endpoint = "http://" + std::string(ServiceHosts::nuvelAPIHost);
    request.model.provider = ProviderKind::nuvel;

    const RawDecision refused = completeWith(401, R"({"error":"nope"})");
    const RawDecision broken = completeWith(500, R"({"error":"nope"})");
    request.model.provider = ProviderKind::zun;
    const RawDecision refusedZun = completeWith(401, R"({"error":"nope"})");
    unsetenv("http_proxy");

    EXPECT_EQ(refused, RawDecision::failed(Veritor::hostedKeyMessage()));
    EXPECT_EQ(broken, RawDecision::failed("HTTP 500: nope"));
    EXPECT_EQ(refusedZun, RawDecision::failed("HTTP 401: nope"));
}

TEST_F(VeritorTransportTest, AKeyThatTheServerEchoesIsNotShown) {
    for (const int status : {200, 401}) {
        const RawDecision decision =
            completeWith(status, std::string(R"({"error":"Wrong key: )") + key + "\"}");
        EXPECT_THAT(*decision.errorMessage, HasSubstr("Wrong key: [API key]"));
    }
    EXPECT_EQ(completeWith(401, std::string("Wrong key: ") + key),
              RawDecision::failed("HTTP 401: Wrong key: [API key]"));
}

TEST_F(VeritorTransportTest, ATransportErrorIsPassedOn) {
    const UnusedPort port;
    request.model.endpoint = "http://127.0.0.1:" + std::to_string(port.number());

    EXPECT_THAT(*complete().errorMessage, HasSubstr("Couldn't connect to server"));
}

TEST_F(VeritorTransportTest, TheSampleModelsAnswersAreReadAsTypedResults) {
    request.questions.front().name = "Up";

    const auto results = Veritor::decisionResults(complete().text, request.questions);

    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].prompt, "Up");
    EXPECT_THAT(results[0].answer, HasSubstr("% yes"));
    EXPECT_TRUE(results[0].confidence);
}

} // namespace
} // namespace quorl::test
