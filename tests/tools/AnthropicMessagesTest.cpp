#include "sample-endpoint/AnthropicMessages.h"

#include "tools/Replies.h"

#include <gtest/gtest.h>

namespace quorl::sample {
namespace {

using test::jsonOf;

constexpr const char* whole =
    R"({"model":"m-1","max_tokens":10,"system":"Be kind.","messages":[{"role":"user","content":"Which way?"}]})";

Request post(std::string body,
             std::vector<Header> headers = {{"X-Api-Key", "k"}, {"anthropic-version", "2023-06-01"}}) {
    return {.method = "POST", .path = "/v1/messages", .headers = std::move(headers), .body = std::move(body)};
}

std::string messageOf(const Request& request, const std::string& status = "HTTP/1.1 400 Bad Request") {
    const auto [line, body] = test::refusalOf(AnthropicMessages(), request);
    EXPECT_EQ(line, status);
    const auto json = Json::parse(body).value();
    EXPECT_EQ(json["type"], "error");
    return json["error"]["message"];
}

TEST(AnthropicMessages, TakesPostsWhateverStandsBeforeThePath) {
    const AnthropicMessages format;
    auto request = post("");

    EXPECT_TRUE(format.takes(request));
    request.path = "/proxy/v1/messages?beta=true";
    EXPECT_TRUE(format.takes(request));
    request.path = "/messages";
    EXPECT_FALSE(format.takes(request));
    request = post("");
    request.method = "GET";
    EXPECT_FALSE(format.takes(request));
}

TEST(AnthropicMessages, ReadsTheQuestion) {
    const auto read = AnthropicMessages().read(post(whole));

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    const auto& question = std::get<Question>(read);
    EXPECT_EQ(question.modelIdentifier, "m-1");
    EXPECT_EQ(question.systemPrompt, "Be kind.");
    EXPECT_EQ(question.prompt, "Which way?");
    EXPECT_EQ(question.parameters, (std::vector<std::string>{"max_tokens", "messages", "model", "system"}));
}

TEST(AnthropicMessages, NeedsAKeyAndAVersion) {
    EXPECT_EQ(messageOf(post(whole, {{"anthropic-version", "2023-06-01"}}), "HTTP/1.1 401 Unauthorized"),
              "x-api-key header is required");
    EXPECT_EQ(messageOf(post(whole, {{"x-api-key", "k"}})), "anthropic-version: header is required");
}

TEST(AnthropicMessages, RefusesBodiesThatAreNoQuestion) {
    EXPECT_EQ(messageOf(post("nonsense")), "The request body is not valid JSON.");
    EXPECT_EQ(messageOf(post(R"({"max_tokens":10})")), "model: Field required");
    EXPECT_EQ(messageOf(post(R"({"model":"m"})")), "max_tokens: Field required");
    EXPECT_EQ(messageOf(post(R"({"model":"m","max_tokens":10,"messages":[]})")), "messages: Field required");
    EXPECT_EQ(messageOf(post(R"({"model":"m","max_tokens":10,"messages":[{"role":"user","content":""}]})")),
              "messages: text content blocks must be non-empty");
}

TEST(AnthropicMessages, WritesTextAndCounts) {
    EXPECT_EQ(Json::write(jsonOf(AnthropicMessages::reply(
                  {.text = "That way.", .inputTokens = 12, .outputTokens = 3}, "m-1"))),
              R"({"content":[{"text":"That way.","type":"text"}],"id":"msg_sample","model":"m-1",)"
              R"("role":"assistant","stop_reason":"end_turn","stop_sequence":null,"type":"message",)"
              R"("usage":{"input_tokens":12,"output_tokens":3}})");
    EXPECT_FALSE(jsonOf(AnthropicMessages::reply({.text = "x"}, "m")).contains("usage"));
}

TEST(AnthropicMessages, ABlockOfAnotherKindHasNoText) {
    const auto content = jsonOf(
        AnthropicMessages::reply({.text = "x"}, "m", AnthropicMessages::Content::afterThinking))["content"];

    ASSERT_EQ(content.size(), 2u);
    EXPECT_FALSE(content[0].contains("text"));
    EXPECT_EQ(content[1]["text"], "x");
}

TEST(AnthropicMessages, AFailureNamesItsKind) {
    const auto typeOf = [](int status) {
        return jsonOf(AnthropicMessages().failure(status, "x"))["error"]["type"].get<std::string>();
    };

    EXPECT_EQ(typeOf(401), "authentication_error");
    EXPECT_EQ(typeOf(429), "rate_limit_error");
    EXPECT_EQ(typeOf(529), "overloaded_error");
    EXPECT_EQ(typeOf(500), "api_error");
}

} // namespace
} // namespace quorl::sample
