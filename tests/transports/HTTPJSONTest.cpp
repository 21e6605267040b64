#include "transports/HTTPJSON.h"

#include "base/Json.h"

#include <gtest/gtest.h>

namespace quorl::test {
namespace {

std::optional<std::int64_t> countOf(std::string_view json) {
    const auto object = Json::parseObject(std::string(R"({"value":)") + std::string(json) + "}");
    return HTTPJSON::count(Json::find(*object, "value"));
}

TEST(HTTPJSON, AFailureHasTheServersMessageFromItsErrorObject) {
    EXPECT_EQ(HTTPJSON::failure(R"({"error":{"message":"No such model."},"message":"outer"})", 404),
              "HTTP 404: No such model.");
}

TEST(HTTPJSON, AFailureElseHasTheMessageAtTheTop) {
    EXPECT_EQ(HTTPJSON::failure(R"({"message":"nope"})", 401), "HTTP 401: nope");
    EXPECT_EQ(HTTPJSON::failure(R"({"error":"text","message":"nope"})", 401), "HTTP 401: nope");
    EXPECT_EQ(HTTPJSON::failure(R"({"error":{"message":7},"message":"nope"})", 401), "HTTP 401: nope");
}

TEST(HTTPJSON, AnErrorThatIsPlainTextIsNotReadAsAMessage) {
    EXPECT_EQ(HTTPJSON::failure(R"( {"error":"Bad gateway"} )", 502), R"(HTTP 502: {"error":"Bad gateway"})");
}

TEST(HTTPJSON, AFailureElseQuotesTheBodyTrimmed) {
    EXPECT_EQ(HTTPJSON::failure("\n <h1>Oh no</h1>\r\n", 500), "HTTP 500: <h1>Oh no</h1>");
    EXPECT_EQ(HTTPJSON::failure(R"(["message"])", 500), R"(HTTP 500: ["message"])");
}

TEST(HTTPJSON, AQuotedBodyIsCutAfterThreeHundredCharacters) {
    std::string accented; // two code points and three bytes to a character
    for (int character = 0; character < 301; ++character)
        accented += "e\u0301";

    EXPECT_EQ(HTTPJSON::failure(std::string(1000, 'x'), 500), "HTTP 500: " + std::string(300, 'x'));
    EXPECT_EQ(HTTPJSON::failure(accented, 500), "HTTP 500: " + accented.substr(0, 900));
}

TEST(HTTPJSON, AMessageOfTheServersIsNotCut) {
    EXPECT_EQ(HTTPJSON::failure(R"({"message":")" + std::string(1000, 'x') + R"("})", 500),
              "HTTP 500: " + std::string(1000, 'x'));
}

TEST(HTTPJSON, AFailureWithoutAnythingToQuoteIsTheStatusAlone) {
    EXPECT_EQ(HTTPJSON::failure("", 404), "HTTP 404");
    EXPECT_EQ(HTTPJSON::failure(" \r\n ", 404), "HTTP 404");
    EXPECT_EQ(HTTPJSON::failure("no UTF-8: \xff", 500), "HTTP 500");
}

TEST(HTTPJSON, AKeyThatTheServerQuotesIsLeftOut) {
    constexpr std::string_view key = "sk-0123456789";

    EXPECT_EQ(
        HTTPJSON::failure(R"({"error":{"message":"Bad key sk-0123456789, sk-0123456789!"}})", 401, {key}),
        "HTTP 401: Bad key [API key], [API key]!");
    EXPECT_EQ(HTTPJSON::failure("Bad key sk-0123456789", 401, {key}), "HTTP 401: Bad key [API key]");
}

TEST(HTTPJSON, NoPartOfAKeyIsLeftWhereTheBodyIsCut) {
    const std::string filler(295, 'x');

    EXPECT_EQ(HTTPJSON::failure(filler + "sk-0123456789", 401, {"sk-0123456789"}),
              "HTTP 401: " + filler + "[API ");
}

// Within the time of a test, that is: with the rest of the text moved at each, these take an hour.
TEST(HTTPJSON, AMillionQuotedKeysAreLeftOut) {
    const std::string key = "sk-0123456789-0123456789";
    std::string body;
    for (int count = 0; count < 1'000'000; ++count)
        body += key + " ";

    EXPECT_EQ(HTTPJSON::withoutKeys(body, {key}).find(key), std::string::npos);
    EXPECT_EQ(HTTPJSON::failure(body, 401, {key}).substr(0, 30), "HTTP 401: [API key] [API key] ");
}

TEST(HTTPJSON, ATextTooShortForAKeyIsLeftInAMessage) {
    EXPECT_EQ(HTTPJSON::failure("none of these", 400, {"none"}), "HTTP 400: none of these");
}

TEST(HTTPJSON, ACountIsAnIntegerOrAFractionCutTowardZero) {
    EXPECT_EQ(countOf("12"), 12);
    EXPECT_EQ(countOf("0"), 0);
    EXPECT_EQ(countOf("-3"), -3);
    EXPECT_EQ(countOf("12.7"), 12);
    EXPECT_EQ(countOf("-12.7"), -12);
    EXPECT_EQ(countOf("5.0"), 5);
    EXPECT_EQ(countOf("9223372036854775807"), INT64_MAX);
}

TEST(HTTPJSON, WhatIsNoNumberOrFitsNoneIsNoCount) {
    EXPECT_EQ(HTTPJSON::count(nullptr), std::nullopt);
    EXPECT_EQ(countOf("null"), std::nullopt);
    EXPECT_EQ(countOf("true"), std::nullopt);
    EXPECT_EQ(countOf(R"("12")"), std::nullopt);
    EXPECT_EQ(countOf("[12]"), std::nullopt);
    EXPECT_EQ(countOf("1e300"), std::nullopt);
    EXPECT_EQ(countOf("9223372036854775808"), std::nullopt);
}

TEST(HTTPJSON, SuccessIsAStatusFrom200To299) {
    EXPECT_FALSE(HTTPJSON::isSuccess(199));
    EXPECT_TRUE(HTTPJSON::isSuccess(200));
    EXPECT_TRUE(HTTPJSON::isSuccess(299));
    EXPECT_FALSE(HTTPJSON::isSuccess(300));
    EXPECT_FALSE(HTTPJSON::isSuccess(0));
}

} // namespace
} // namespace quorl::test
