#include "sample-endpoint/OpenAIChat.h"

#include "tools/Replies.h"

#include <gtest/gtest.h>

namespace quorl::sample {
namespace {

using test::bytesOf;
using test::jsonOf;

Request post(std::string body) {
    return {.method = "POST", .path = "/v1/chat/completions", .headers = {}, .body = std::move(body)};
}

// The sentence with which a body is refused; empty where it is read.
std::string refusalOf(std::string body) {
    const auto read = OpenAIChat().read(post(std::move(body)));
    const auto* const reply = std::get_if<Reply>(&read);
    if (!reply)
        return "";
    EXPECT_EQ(test::statusLineOf(bytesOf(*reply)), "HTTP/1.1 400 Bad Request");
    return jsonOf(*reply)["error"]["message"];
}

TEST(OpenAIChat, TakesPostsWhateverStandsBeforeThePath) {
    const OpenAIChat format;
    auto request = post("");

    for (const auto* const path :
         {"/chat/completions", "/v1/chat/completions", "/a/b/chat/completions?x=1"}) {
        request.path = path;
        EXPECT_TRUE(format.takes(request)) << path;
    }
    for (const auto* const path : {"/v1/completions", "/v1/chat/completions/", "/?x=/chat/completions"}) {
        request.path = path;
        EXPECT_FALSE(format.takes(request)) << path;
    }
    request = post("");
    request.method = "GET";
    EXPECT_FALSE(format.takes(request));
}

TEST(OpenAIChat, ReadsTheQuestion) {
    const auto read = OpenAIChat().read(post(test::chatBody("m-1", "Which\\nway?")));

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    const auto& question = std::get<Question>(read);
    EXPECT_EQ(question.modelIdentifier, "m-1");
    EXPECT_EQ(question.systemPrompt, "Answer directly.");
    EXPECT_EQ(question.prompt, "Which\nway?");
    EXPECT_EQ(question.parameters, (std::vector<std::string>{"max_tokens", "messages", "model"}));
}

TEST(OpenAIChat, TheLastMessageOfTheUserIsTheQuestion) {
    const auto read = OpenAIChat().read(post(
        R"({"model":"m","messages":[{"role":"user","content":"one"},{"role":"assistant","content":"two"},
            {"role":"user","content":[{"type":"text","text":"th"},{"type":"image"},{"type":"text","text":"ree"}]}]})"));

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    EXPECT_EQ(std::get<Question>(read).prompt, "three");
    EXPECT_EQ(std::get<Question>(read).systemPrompt, "");
}

TEST(OpenAIChat, RefusesBodiesThatAreNoQuestion) {
    EXPECT_EQ(refusalOf("nonsense"), "The body is not a JSON object.");
    EXPECT_EQ(refusalOf("[]"), "The body is not a JSON object.");
    EXPECT_EQ(refusalOf(R"({"messages":[]})"), "Missing required parameter: 'model'.");
    EXPECT_EQ(refusalOf(R"({"model":1,"messages":[]})"), "Missing required parameter: 'model'.");
    EXPECT_EQ(refusalOf(R"({"model":"m"})"), "Missing required parameter: 'messages'.");
    EXPECT_EQ(refusalOf(R"({"model":"m","messages":[]})"), "Missing required parameter: 'messages'.");
    EXPECT_EQ(refusalOf(R"({"model":"m","messages":[{"role":"user"}]})"),
              "Invalid 'messages': each needs a role and a content.");
    EXPECT_EQ(refusalOf(R"({"model":"m","messages":[{"content":"x"}]})"),
              "Invalid 'messages': each needs a role and a content.");
    EXPECT_EQ(refusalOf(R"({"model":"m","stream":true,"messages":[{"role":"user","content":"x"}]})"),
              "Unsupported value: 'stream' can only be false here.");
}

TEST(OpenAIChat, WritesTextAndCounts) {
    const auto reply = OpenAIChat::reply({.text = "That way.", .inputTokens = 12, .outputTokens = 3}, "m-1");

    EXPECT_EQ(test::statusLineOf(bytesOf(reply)), "HTTP/1.1 200 OK");
    EXPECT_EQ(
        Json::write(jsonOf(reply)),
        R"({"choices":[{"finish_reason":"stop","index":0,"message":{"content":"That way.","role":"assistant"}}],)"
        R"("created":1790000000,"id":"chatcmpl-sample","model":"m-1","object":"chat.completion",)"
        R"("usage":{"completion_tokens":3,"prompt_tokens":12,"total_tokens":15}})");
}

TEST(OpenAIChat, ReportsOnlyTheCountsThatThereAre) {
    EXPECT_FALSE(jsonOf(OpenAIChat::reply({.text = "x"}, "m")).contains("usage"));
    EXPECT_EQ(jsonOf(OpenAIChat::reply({.text = "x", .outputTokens = 3}, "m"))["usage"],
              Json::Value({{"completion_tokens", 3}}));
}

TEST(OpenAIChat, WritesAUsageOfNull) {
    const auto json = jsonOf(OpenAIChat::reply({.text = "x", .inputTokens = 1}, "m",
                                               OpenAIChat::Content::text, OpenAIChat::Usage::null));

    ASSERT_TRUE(json.contains("usage"));
    EXPECT_TRUE(json["usage"].is_null());
}

TEST(OpenAIChat, WritesPartsThatTogetherAreTheText) {
    for (const std::string text : {"That way.", "そちらです。", "", "é"}) {
        const auto json = jsonOf(OpenAIChat::reply({.text = text}, "m", OpenAIChat::Content::parts));

        const auto& content = json["choices"][0]["message"]["content"];
        ASSERT_EQ(content.size(), 2u) << text;
        EXPECT_EQ(content[0]["type"], "text");
        EXPECT_EQ(content[0]["text"].get<std::string>() + content[1]["text"].get<std::string>(), text);
    }
}

TEST(OpenAIChat, WritesTheOlderFormWithoutAMessage) {
    const auto json = jsonOf(OpenAIChat::reply({.text = "x"}, "m", OpenAIChat::Content::completion));

    EXPECT_EQ(json["choices"][0]["text"], "x");
    EXPECT_FALSE(json["choices"][0].contains("message"));
}

TEST(OpenAIChat, ATextThatIsNotUTF8IsAnErrorOfTheServer) {
    const auto reply = OpenAIChat::reply({.text = "\xff"}, "m");

    EXPECT_EQ(test::statusLineOf(bytesOf(reply)), "HTTP/1.1 500 Internal Server Error");
    EXPECT_EQ(jsonOf(reply)["error"]["message"], "The answer cannot be written as JSON.");
}

} // namespace
} // namespace quorl::sample
