#include "transports/BedrockTransport.h"

#include "sample-endpoint/SampleEndpoint.h"
#include "support/Builders.h"
#include "transports/HTTPSession.h"
#include "transports/UnusedPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

namespace quorl::test {
namespace {

using sample::BedrockConverse;
using sample::everyModel;
using sample::makeReply;
using sample::SampleEndpoint;
using testing::HasSubstr;
using testing::Not;

constexpr const char* sessionToken = "session/token+1==";

class BedrockTransportTest : public testing::Test {
protected:
    BedrockTransportTest() {
        request.kind = QuorlKind::generation;
        request.prompt = "Which way is up?";
        request.systemPrompt = "Answer directly.";
        request.model = makeModel(ProviderKind::amazonBedrock);
        request.model.modelIdentifier = "amazon.nova-pro-v1:0";
        request.model.endpoint = "eu-west-1";
        secret.awsAccessKey = sample::publishedCredentials.accessKey;
        secret.awsSecretKey = sample::publishedCredentials.secretKey;
    }

    RawDecision completeAt(const SampleEndpoint& at) {
        return BedrockTransport::completeAt("http://127.0.0.1:" + std::to_string(at.port()),
                                            dateFromSeconds(1'440'938'160), session, request, secret);
    }
    RawDecision complete() { return completeAt(endpoint); }

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

TEST_F(BedrockTransportTest, IsSentAndSignedExactlyAsItWasBuilt) {
    endpoint.answer("amazon.nova-pro-v1:0",
                    sample::Completion{.text = "That way.", .inputTokens = 12, .outputTokens = 3});

    EXPECT_EQ(complete(), (RawDecision{.text = "That way.",
                                       .inputTokens = 12,
                                       .outputTokens = 3,
                                       .tokensEstimated = false,
                                       .reportedCost = {},
                                       .errorMessage = {}}));
    const sample::Request sent = endpoint.requests().at(0);
    EXPECT_EQ(sent.method, "POST");
    EXPECT_EQ(sent.path, "/model/amazon.nova-pro-v1%3A0/converse");
    EXPECT_EQ(*sent.header("Host"), "127.0.0.1");
    EXPECT_EQ(*sent.header("content-type"), "application/json");
    EXPECT_EQ(*sent.header("x-amz-date"), "20150830T123600Z");
    EXPECT_EQ(sent.header("x-amz-security-token"), nullptr);
    EXPECT_THAT(*sent.header("Authorization"),
                HasSubstr("Credential=AKIDEXAMPLE/20150830/eu-west-1/bedrock/aws4_request, "
                          "SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date, "));
    EXPECT_EQ(sent.body,
              R"({"inferenceConfig":{"maxTokens":1024},"messages":[{"content":)"
              R"([{"text":"Which way is up?"}],"role":"user"}],"system":[{"text":"Answer directly."}]})");
}

TEST_F(BedrockTransportTest, NoLibraryRewritesThePathOnTheWay) {
    for (const char* const model : {"..", "./a/../b", "a%2fb", "a~b c", "é",
                                    "arn:aws:bedrock:eu-west-1:1:inference-profile/eu.x", "a?b#c"}) {
        request.model.modelIdentifier = model;
        EXPECT_EQ(complete().errorMessage, std::nullopt) << model;
        EXPECT_EQ(endpoint.requests().back().path, BedrockTransport::conversePath(model));
    }
}

TEST_F(BedrockTransportTest, AModelsIdIsPercentEncodedButForLettersDigitsAndThreeMarks) {
    EXPECT_EQ(BedrockTransport::conversePath(" amazon.nova-pro-v1:0\n"),
              "/model/amazon.nova-pro-v1%3A0/converse");
    EXPECT_EQ(BedrockTransport::conversePath("aZ09-._~/?#[]@!$&'()*+,;=% é"),
              "/model/aZ09-._%7E%2F%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D%25%20%C3%A9/converse");
}

TEST_F(BedrockTransportTest, CredentialsAreTrimmed) {
    secret.awsAccessKey = " " + secret.awsAccessKey + "\n";
    secret.awsSecretKey = "\t" + secret.awsSecretKey + " ";
    secret.awsSessionToken = " \n";

    EXPECT_EQ(complete().errorMessage, std::nullopt);
    EXPECT_EQ(endpoint.requests().at(0).header("x-amz-security-token"), nullptr);
}

TEST_F(BedrockTransportTest, ASessionTokenIsSentTrimmedAndSigned) {
    SampleEndpoint guarded({.signers = {{"AKIDEXAMPLE", secret.awsSecretKey, sessionToken}}});
    secret.awsSessionToken = std::string(" ") + sessionToken + "\n";

    EXPECT_EQ(completeAt(guarded).errorMessage, std::nullopt);
    EXPECT_EQ(*guarded.requests().at(0).header("x-amz-security-token"), sessionToken);
}

TEST_F(BedrockTransportTest, AWrongSecretIsRefusedInTheServicesWords) {
    secret.awsSecretKey = "wrong";

    EXPECT_EQ(complete(), RawDecision::failed(
                              "HTTP 403: The request signature we calculated does not match the signature "
                              "you provided. Check your AWS Secret Access Key and signing method. Consult "
                              "the service documentation for details."));
}

TEST_F(BedrockTransportTest, CredentialsThatAreQuotedAreNotShown) {
    secret.awsSessionToken = sessionToken;
    const std::string words = "Expired: " + secret.awsAccessKey + " with " + sessionToken;
    endpoint.answer(everyModel, makeReply(403, R"({"message":")" + words + "\"}"));

    EXPECT_EQ(complete(), RawDecision::failed("HTTP 403: Expired: [API key] with [API key]"));
}

TEST_F(BedrockTransportTest, TheEndpointNamesTheRegion) {
    using BedrockTransport::regionName;

    EXPECT_EQ(regionName(""), "us-east-1");
    EXPECT_EQ(regionName(" \n"), "us-east-1");
    EXPECT_EQ(regionName(" eu-west-1 "), "eu-west-1");
    for (const char* const host :
         {"bedrock-runtime.ap-south-1.amazonaws.com", "https://bedrock-runtime.ap-south-1.amazonaws.com",
          "https://bedrock-runtime.ap-south-1.amazonaws.com:443/model", "bedrock-runtime.ap-south-1"})
        EXPECT_EQ(regionName(host), "ap-south-1") << host;
    for (const char* const text : {"https://example.test", "bedrock-runtime", "bedrock-runtime.",
                                   "bedrock.eu-west-1.x", "vpce.bedrock-runtime.eu-west-1.x", "no region"})
        EXPECT_EQ(regionName(text), text) << text;
}

TEST_F(BedrockTransportTest, TheRuntimesHostHasTheRegionInIt) {
    using BedrockTransport::runtimeURL;

    EXPECT_EQ(runtimeURL("eu-west-1"), "https://bedrock-runtime.eu-west-1.amazonaws.com");
    for (const char* const region :
         {"https://example.test", "evil.test/", "evil.test?", "evil.test#", "a@b", "a b", "é"})
        EXPECT_EQ(runtimeURL(region), std::nullopt) << region;
}

TEST_F(BedrockTransportTest, ARegionThatIsNoneIsSaidToBeSo) {
    request.model.endpoint = "https://example.test";

    EXPECT_EQ(BedrockTransport::complete(session, request, secret),
              RawDecision::failed("Couldn't build the Bedrock URL."));
}

TEST_F(BedrockTransportTest, WhatIsNoUTF8CannotBeEncoded) {
    request.prompt = "\xff";

    EXPECT_EQ(complete(), RawDecision::failed("Couldn't encode the Bedrock request."));
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST_F(BedrockTransportTest, ABlankSystemPromptIsLeftOutAndAnyOtherSentUntrimmed) {
    request.systemPrompt = " \n";
    (void)complete();
    EXPECT_THAT(endpoint.requests().back().body, Not(HasSubstr("system")));

    request.systemPrompt = " Be brief. ";
    (void)complete();
    EXPECT_THAT(endpoint.requests().back().body, HasSubstr(R"("system":[{"text":" Be brief. "}])"));
}

TEST_F(BedrockTransportTest, ADecisionHasTemperatureZero) {
    request.kind = QuorlKind::decision;

    (void)complete();

    EXPECT_THAT(endpoint.requests().at(0).body,
                HasSubstr(R"("inferenceConfig":{"maxTokens":1024,"temperature":0})"));
}

TEST_F(BedrockTransportTest, ReadsTheTextsJoinedWithNothingBetween) {
    endpoint.answer(everyModel,
                    BedrockConverse::reply({.text = "That way."}, BedrockConverse::Content::afterReasoning));
    EXPECT_EQ(complete().text, "That way.");

    EXPECT_EQ(
        completeWith(R"({"output":{"message":{"content":[{"text":"Up "},{"text":7},{},{"text":"there."}]}}})")
            .text,
        "Up there.");
}

TEST_F(BedrockTransportTest, AnAnswerWithoutTextIsAFailure) {
    for (const char* const body :
         {"{}", R"({"output":null})", R"({"output":{"message":[]}})",
          R"({"output":{"message":{"content":"a"}}})", R"({"output":{"message":{"content":[]}}})",
          R"({"output":{"message":{"content":[{"text":"a"},7]}}})",
          R"({"output":{"message":{"content":[{"text":""}]}}})"})
        EXPECT_EQ(completeWith(body), RawDecision::failed("Bedrock returned an empty response.")) << body;
}

TEST_F(BedrockTransportTest, ReadsTheCountsThatAreThere) {
    const auto withUsage = [&](const std::string& usage) {
        return completeWith(R"({"output":{"message":{"content":[{"text":"a"}]}},"usage":)" + usage + "}");
    };

    EXPECT_EQ(withUsage(R"({"inputTokens":12.7})").inputTokens, 12);
    EXPECT_EQ(withUsage(R"({"inputTokens":12.7})").outputTokens, std::nullopt);
    EXPECT_EQ(withUsage(R"({"outputTokens":"3"})").outputTokens, std::nullopt);
    EXPECT_EQ(withUsage("[]").errorMessage, std::nullopt);
}

TEST_F(BedrockTransportTest, ARefusalOrABodyThatIsNoObjectIsShaped) {
    endpoint.answer(everyModel, makeReply(429, R"({"message":"Too many tokens, please wait."})"));
    EXPECT_EQ(complete(), RawDecision::failed("HTTP 429: Too many tokens, please wait."));
    EXPECT_EQ(completeWith("<html>"), RawDecision::failed("HTTP 200: <html>"));
    EXPECT_EQ(completeWith("[]"), RawDecision::failed("HTTP 200: []"));
    EXPECT_EQ(completeWith(""), RawDecision::failed("HTTP 200"));
}

TEST_F(BedrockTransportTest, ATransportErrorIsPassedOn) {
    const UnusedPort port;

    const RawDecision decision =
        BedrockTransport::completeAt("http://127.0.0.1:" + std::to_string(port.number()),
                                     std::chrono::system_clock::now(), session, request, secret);

    EXPECT_THAT(*decision.errorMessage, HasSubstr("Couldn't connect to server"));
}

TEST_F(BedrockTransportTest, AKeyWithALineEndInsideIsNotSent) {
    secret.awsAccessKey = "AKID\r\nX-Injected: 1";

    EXPECT_EQ(complete(), RawDecision::failed(
                              "The credentials hold characters that can't be sent. Check them in Models."));
    EXPECT_TRUE(endpoint.requests().empty());
}

} // namespace
} // namespace quorl::test
