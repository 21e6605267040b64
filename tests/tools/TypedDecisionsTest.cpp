#include "sample-endpoint/TypedDecisions.h"

#include "tools/Replies.h"

#include <gtest/gtest.h>

namespace quorl::sample {
namespace {

Request post(std::string body, std::string path = "/v1/veritor") {
    return {.method = "POST", .path = std::move(path), .headers = {}, .body = std::move(body)};
}

std::string withQuestion(const std::string& question) {
    return R"({"state":"Late.","questions":{"a":)" + question + "}}";
}

TEST(TypedDecisions, TakesPostsToEitherPath) {
    const TypedDecisions format;

    EXPECT_TRUE(format.takes(post("")));
    EXPECT_TRUE(format.takes(post("", "/a/v1/decisions?x")));
    EXPECT_FALSE(format.takes(post("", "/v1/veritor/")));
    auto request = post("");
    request.method = "GET";
    EXPECT_FALSE(format.takes(request));
}

TEST(TypedDecisions, ReadsTheStateAndTheQuestions) {
    const auto read = TypedDecisions().read(
        post(R"({"model":"m-1","state":" Late.","questions":{"a":{"type":"noul","instructions":"Up?"}}})"));

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    const auto& question = std::get<Question>(read);
    EXPECT_EQ(question.modelIdentifier, "m-1");
    EXPECT_EQ(question.prompt, " Late.");
    EXPECT_EQ(question.decisions, R"({"a":{"instructions":"Up?","type":"noul"}})");
    EXPECT_EQ(question.parameters, (std::vector<std::string>{"model", "questions", "state"}));
}

TEST(TypedDecisions, NeedsNoModel) {
    const auto read = TypedDecisions().read(post(withQuestion(R"({"type":"noul","instructions":"Up?"})")));

    ASSERT_TRUE(std::holds_alternative<Question>(read));
    EXPECT_EQ(std::get<Question>(read).modelIdentifier, "");
}

TEST(TypedDecisions, RefusesBodiesThatAreNoQuestion) {
    const auto refusalOf = [](std::string body) {
        const auto [line, reply] = test::refusalOf(TypedDecisions(), post(std::move(body)));
        EXPECT_EQ(line, "HTTP/1.1 400 Bad Request");
        return reply;
    };

    EXPECT_EQ(refusalOf("nonsense"), R"({"error":"The body is not a JSON object."})");
    EXPECT_EQ(refusalOf(R"({"state":" ","questions":{}})"), R"({"error":"A state is required."})");
    EXPECT_EQ(refusalOf(R"({"state":"Late.","questions":{}})"), R"({"error":"Questions are required."})");
    EXPECT_EQ(refusalOf(R"({"state":"Late.","questions":[]})"), R"({"error":"Questions are required."})");
    for (const char* const question :
         {"7", R"({"type":"other","instructions":"Up?"})", R"({"type":"noul","instructions":" "})",
          R"({"type":"noul","instructions":"Up?","criteria":[]})",
          R"({"type":"choice","instructions":"Up?","criteria":{"one":"1"}})",
          R"({"type":"choice","instructions":"Up?","criteria":["one","two"]})",
          R"({"type":"score","instructions":"Up?","criteria":["one"]})",
          R"({"type":"score","instructions":"Up?","criteria":["one",2]})"})
        EXPECT_EQ(refusalOf(withQuestion(question)), R"({"error":"The question 'a' is not one."})")
            << question;
}

TEST(TypedDecisions, WritesAnswersAndCountsUnderEitherName) {
    const Completion completion{
        .text = R"({"a":{"type":"noul","noul":0.5}})", .inputTokens = 12, .outputTokens = 3};

    EXPECT_EQ(
        test::bodyOf(test::bytesOf(TypedDecisions::reply(completion, "m-1"))),
        R"({"answers":{"a":{"noul":0.5,"type":"noul"}},"model":"m-1","usage":{"input_tokens":12,"output_tokens":3}})");
    EXPECT_EQ(
        test::bodyOf(
            test::bytesOf(TypedDecisions::reply(completion, "", TypedDecisions::Usage::promptAndCompletion))),
        R"({"answers":{"a":{"noul":0.5,"type":"noul"}},"usage":{"completion_tokens":3,"prompt_tokens":12}})");
}

TEST(TypedDecisions, WhatIsNoObjectOfAnswersIsAnErrorOfTheServer) {
    EXPECT_EQ(test::statusLineOf(test::bytesOf(TypedDecisions::reply({.text = "That way."}, "m"))),
              "HTTP/1.1 500 Internal Server Error");
}

TEST(TypedDecisions, AFailureHasItsSentenceInOneOfThreePlaces) {
    const auto bodyOf = [](TypedDecisions::Error error) {
        return test::bodyOf(test::bytesOf(TypedDecisions::errorReply(503, "Busy.", error)));
    };

    EXPECT_EQ(bodyOf(TypedDecisions::Error::text), R"({"error":"Busy."})");
    EXPECT_EQ(bodyOf(TypedDecisions::Error::object), R"({"error":{"message":"Busy."}})");
    EXPECT_EQ(bodyOf(TypedDecisions::Error::message), R"({"message":"Busy."})");
}

} // namespace
} // namespace quorl::sample
