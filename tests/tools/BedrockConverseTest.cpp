#include "sample-endpoint/BedrockConverse.h"

#include "tools/Replies.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quorl::sample {
namespace {

constexpr const char* mismatch =
    R"({"message":"The request signature we calculated does not match the signature you provided. Check your AWS )"
    R"(Secret Access Key and signing method. Consult the service documentation for details."})";

// Signed by another implementation with the published credentials.
Request signedRequest() {
    return {
        .method = "POST",
        .path = "/model/amazon.nova-pro-v1%3A0/converse",
        .headers = {{"Host", "bedrock-runtime.eu-west-1.amazonaws.com"},
                    {"Content-Type", "application/json"},
                    {"X-Amz-Date", "20150830T123600Z"},
                    {"X-Amz-Content-Sha256",
                     "87bfbeef328e8b361f0cc842c8d71351ffe145a4c08eb53aee583fd90d0b2829"},
                    {"Authorization",
                     "AWS4-HMAC-SHA256 Credential=AKIDEXAMPLE/20150830/eu-west-1/bedrock/aws4_request, "
                     "SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date, "
                     "Signature=ece61f8f6d2adee1e3446e6fbf5960afded7a84a89d6aecefebcaa21ad5ad52d"}},
        .body =
            R"({"inferenceConfig":{"maxTokens":1024},"messages":[{"content":[{"text":"Which way is up?"}],)"
            R"("role":"user"}],"system":[{"text":"Answer directly."}]})"};
}

std::string& headerOf(Request& request, std::string_view name) {
    return std::ranges::find_if(request.headers,
                                [&](const Header& header) { return sameHeaderName(header.name, name); })
        ->value;
}

const BedrockConverse& format() {
    static const BedrockConverse one({publishedCredentials});
    return one;
}

std::string refusalOf(const Request& request, const BedrockConverse& by = format()) {
    const auto [line, body] = test::refusalOf(by, request);
    EXPECT_EQ(line, "HTTP/1.1 403 Forbidden");
    return body;
}

TEST(BedrockConverse, TakesPostsToAModel) {
    auto request = signedRequest();
    EXPECT_TRUE(format().takes(request));
    request.path = "/model//converse";
    EXPECT_FALSE(format().takes(request));
    request.path = "/model/m/invoke";
    EXPECT_FALSE(format().takes(request));
    request = signedRequest();
    request.method = "GET";
    EXPECT_FALSE(format().takes(request));
}

TEST(BedrockConverse, ReadsASignedQuestion) {
    const auto read = format().read(signedRequest());

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    const auto& question = std::get<Question>(read);
    EXPECT_EQ(question.modelIdentifier, "amazon.nova-pro-v1:0");
    EXPECT_EQ(question.prompt, "Which way is up?");
    EXPECT_EQ(question.systemPrompt, "Answer directly.");
    EXPECT_EQ(question.parameters, (std::vector<std::string>{"inferenceConfig", "messages", "system"}));
}

TEST(BedrockConverse, AnyByteMoreOrLessBreaksTheSignature) {
    const auto broken = [](auto change) {
        auto request = signedRequest();
        change(request);
        return refusalOf(request);
    };

    EXPECT_EQ(broken([](Request& r) { r.body += ' '; }), mismatch);
    EXPECT_EQ(broken([](Request& r) { r.path = "/model/amazon.nova-pro-v1:0/converse"; }), mismatch);
    EXPECT_EQ(broken([](Request& r) { r.path.insert(r.path.find("%3A"), "%2F"); }), mismatch);
    EXPECT_EQ(broken([](Request& r) { headerOf(r, "host") += ":443"; }), mismatch);
    EXPECT_EQ(broken([](Request& r) { headerOf(r, "content-type") += ";charset=utf-8"; }), mismatch);
    EXPECT_EQ(broken([](Request& r) { headerOf(r, "x-amz-date") = "20150830T123601Z"; }), mismatch);
    EXPECT_EQ(broken([](Request& r) { headerOf(r, "authorization").back() = 'e'; }), mismatch);
    EXPECT_EQ(broken([](Request& r) {
                  auto& header = headerOf(r, "authorization");
                  header.replace(header.find("eu-west-1"), 9, "us-east-1");
              }),
              mismatch);
    EXPECT_EQ(broken([](Request& r) { r.headers.push_back({"X-Amz-Target", "unsigned"}); }), mismatch);
    EXPECT_EQ(broken([](Request& r) { r.headers.erase(r.headers.begin()); }), mismatch);
}

TEST(BedrockConverse, NeedsASignatureOfSomeoneItKnows) {
    auto request = signedRequest();
    request.headers.pop_back();
    EXPECT_EQ(refusalOf(request), R"({"message":"Missing Authentication Token"})");

    request = signedRequest();
    headerOf(request, "authorization") = "Bearer sk-1";
    EXPECT_EQ(
        refusalOf(request),
        R"({"message":"Authorization header requires 'Credential', 'SignedHeaders' and 'Signature'."})");

    constexpr auto unknown = R"({"message":"The security token included in the request is invalid."})";
    EXPECT_EQ(refusalOf(signedRequest(), BedrockConverse({SigningCredentials{"AKIDOTHER", "x"}})), unknown);
    EXPECT_EQ(refusalOf(signedRequest(),
                        BedrockConverse({{"AKIDEXAMPLE", publishedCredentials.secretKey, "a token"}})),
              unknown);
    EXPECT_EQ(
        refusalOf(signedRequest(), BedrockConverse({SigningCredentials{"AKIDEXAMPLE", "another secret"}})),
        mismatch);
}

TEST(BedrockConverse, AcceptsASessionTokenThatIsSigned) {
    auto request = signedRequest();
    request.headers.push_back({"X-Amz-Security-Token", "session/token+1=="});
    headerOf(request, "authorization") =
        "AWS4-HMAC-SHA256 Credential=AKIDEXAMPLE/20150830/eu-west-1/bedrock/aws4_request, "
        "SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date;x-amz-security-token, "
        "Signature=f191605db5764ddd901eb1cbbd80f84d7c0b6888f9bbf7024b53f597118a0d2e";

    const BedrockConverse guarded({{"AKIDEXAMPLE", publishedCredentials.secretKey, "session/token+1=="}});
    EXPECT_TRUE(std::holds_alternative<Question>(guarded.read(request)));
}

TEST(BedrockConverse, WritesTextAndCounts) {
    EXPECT_EQ(Json::write(test::jsonOf(
                  BedrockConverse::reply({.text = "That way.", .inputTokens = 12, .outputTokens = 3}))),
              R"({"metrics":{"latencyMs":0},"output":{"message":{"content":[{"text":"That way."}],)"
              R"("role":"assistant"}},"stopReason":"end_turn",)"
              R"("usage":{"inputTokens":12,"outputTokens":3,"totalTokens":15}})");
    EXPECT_FALSE(test::jsonOf(BedrockConverse::reply({.text = "x"})).contains("usage"));
}

TEST(BedrockConverse, APartOfAnotherKindHasNoText) {
    const auto content = test::jsonOf(BedrockConverse::reply(
        {.text = "x"}, BedrockConverse::Content::afterReasoning))["output"]["message"]["content"];

    ASSERT_EQ(content.size(), 2u);
    EXPECT_FALSE(content[0].contains("text"));
    EXPECT_EQ(content[1]["text"], "x");
}

} // namespace
} // namespace quorl::sample
