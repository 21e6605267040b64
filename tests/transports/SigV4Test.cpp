#include "transports/SigV4.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorl::test {
namespace {

using SigV4::Credentials;
using SigV4::Headers;
using testing::HasSubstr;
using testing::Not;

// AWS's worked examples: this key, this minute.
// https://docs.aws.amazon.com/IAM/latest/UserGuide/signing-elements.html
constexpr const char* accessKey = "AKIDEXAMPLE";
constexpr const char* secretKey = "wJalrXUtnFEMI/K7MDENG+bPxRfiCYEXAMPLEKEY";
const Date minute = dateFromSeconds(1'440'938'160); // 2015-08-30 12:36:00
constexpr const char* emptyHash = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

constexpr const char* converseURL =
    "https://bedrock-runtime.eu-west-1.amazonaws.com/model/amazon.nova-pro-v1%3A0/converse";
constexpr const char* converseBody =
    R"({"inferenceConfig":{"maxTokens":1024},"messages":[{"content":[{"text":"Which way is up?"}],"role":"user"}],)"
    R"("system":[{"text":"Answer directly."}]})";

SigV4::SignedRequest signConverse(const std::string& sessionToken = "",
                                  Headers extra = {{"content-type", "application/json"}}) {
    return SigV4::sign("POST", converseURL, converseBody, extra, {accessKey, secretKey, sessionToken},
                       {"eu-west-1", "bedrock"}, minute);
}

std::string signatureIn(const SigV4::SignedRequest& request) {
    const std::string& header = request.headers.at("Authorization");
    return header.substr(header.rfind('=') + 1);
}

TEST(SigV4, HashesInLowerCaseHexadecimal) {
    EXPECT_EQ(SigV4::hash(""), emptyHash);
    EXPECT_EQ(SigV4::hash("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(SigV4::hex(std::string("\x00\x0f\xf0\xff", 4)), "000ff0ff");
}

TEST(SigV4, DerivesThePublishedKey) {
    EXPECT_EQ(SigV4::hex(SigV4::signingKey(secretKey, "20150830", {"us-east-1", "iam"})),
              "c4afb1cc5771d871763a393e44b703571b55cc28424d1a5e86da6ed3c154a4b9");
}

TEST(SigV4, WritesThePublishedCanonicalRequests) {
    EXPECT_EQ(SigV4::canonicalRequest("GET", "https://iam.amazonaws.com/?Action=ListUsers&Version=2010-05-08",
                                      {{"Content-Type", "application/x-www-form-urlencoded; charset=utf-8"},
                                       {"Host", "iam.amazonaws.com"},
                                       {"X-Amz-Date", "20150830T123600Z"}},
                                      emptyHash),
              "GET\n"
              "/\n"
              "Action=ListUsers&Version=2010-05-08\n"
              "content-type:application/x-www-form-urlencoded; charset=utf-8\n"
              "host:iam.amazonaws.com\n"
              "x-amz-date:20150830T123600Z\n"
              "\n"
              "content-type;host;x-amz-date\n"
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(SigV4::hash(SigV4::canonicalRequest(
                  "GET", "https://example.amazonaws.com",
                  {{"Host", "example.amazonaws.com"}, {"X-Amz-Date", "20150830T123600Z"}}, emptyHash)),
              "bb579772317eb040ac9ed261061d46c1f17a8133879d6129b6e1c25292927e63");
}

// The published requests with the body's hash among their headers, computed once by another implementation.
TEST(SigV4, SignsThePublishedRequestsWithTheBodysHash) {
    const Credentials credentials{accessKey, secretKey, ""};

    EXPECT_EQ(signatureIn(SigV4::sign("GET", "https://example.amazonaws.com/", "", {}, credentials,
                                      {"us-east-1", "service"}, minute)),
              "726c5c4879a6b4ccbbd3b24edbd6b8826d34f87450fbbf4e85546fc7ba9c1642");
    EXPECT_EQ(
        signatureIn(SigV4::sign("GET", "https://iam.amazonaws.com/?Action=ListUsers&Version=2010-05-08", "",
                                {{"content-type", "application/x-www-form-urlencoded; charset=utf-8"}},
                                credentials, {"us-east-1", "iam"}, minute)),
        "dd479fa8a80364edf2119ec24bebde66712ee9c9cb2b0d92eb3ab9ccdc0c3947");
}

TEST(SigV4, ASignedRequestHasEveryHeaderAndItsBodyUnchanged) {
    const auto request = signConverse();

    EXPECT_EQ(request.url, converseURL);
    EXPECT_EQ(request.body, converseBody);
    EXPECT_EQ(
        request.headers,
        (Headers{{"content-type", "application/json"},
                 {"host", "bedrock-runtime.eu-west-1.amazonaws.com"},
                 {"x-amz-date", "20150830T123600Z"},
                 {"x-amz-content-sha256", "87bfbeef328e8b361f0cc842c8d71351ffe145a4c08eb53aee583fd90d0b2829"},
                 {"Authorization",
                  "AWS4-HMAC-SHA256 Credential=AKIDEXAMPLE/20150830/eu-west-1/bedrock/aws4_request, "
                  "SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date, "
                  "Signature=ece61f8f6d2adee1e3446e6fbf5960afded7a84a89d6aecefebcaa21ad5ad52d"}}));
}

TEST(SigV4, ASessionTokenIsSentAndSigned) {
    const auto request = signConverse("session/token+1==");

    EXPECT_EQ(request.headers.at("x-amz-security-token"), "session/token+1==");
    EXPECT_THAT(
        request.headers.at("Authorization"),
        HasSubstr("SignedHeaders=content-type;host;x-amz-content-sha256;x-amz-date;x-amz-security-token,"));
    EXPECT_EQ(signatureIn(request), "f191605db5764ddd901eb1cbbd80f84d7c0b6888f9bbf7024b53f597118a0d2e");
}

TEST(SigV4, ThePathIsNotEncodedAgain) {
    EXPECT_THAT(SigV4::canonicalRequest("POST", converseURL, {}, emptyHash),
                HasSubstr("POST\n/model/amazon.nova-pro-v1%3A0/converse\n\n"));
}

TEST(SigV4, TheSpellingOfHeadersDoesNotChangeWhatIsSigned) {
    EXPECT_EQ(signatureIn(signConverse("", {{"Content-Type", " application/json\n"}})),
              signatureIn(signConverse()));
}

TEST(SigV4, TheSameInputGivesTheSameSignatureAndAnyOtherAnother) {
    EXPECT_EQ(signConverse(), signConverse());
    const auto with = [](Date date, const std::string& secret, const std::string& body) {
        return signatureIn(SigV4::sign("POST", converseURL, body, {}, {accessKey, secret, ""},
                                       {"eu-west-1", "bedrock"}, date));
    };
    const auto base = with(minute, "s", "b");
    EXPECT_NE(with(minute + std::chrono::seconds(1), "s", "b"), base);
    EXPECT_NE(with(minute, "t", "b"), base);
    EXPECT_NE(with(minute, "s", "c"), base);
}

TEST(SigV4, AHostIsSignedWithoutItsPort) {
    EXPECT_EQ(SigV4::sign("GET", "http://127.0.0.1:8080/", "", {}, {}, {}, minute).headers.at("host"),
              "127.0.0.1");
}

TEST(SigV4, ATimestampIsTheSecondInUTC) {
    EXPECT_EQ(SigV4::timestamp(minute), "20150830T123600Z");
    EXPECT_EQ(SigV4::timestamp(minute + std::chrono::duration<double>(59.999)), "20150830T123659Z");
    EXPECT_EQ(SigV4::timestamp(dateFromSeconds(0)), "19700101T000000Z");
    EXPECT_EQ(SigV4::timestamp(dateFromSeconds(1'709'164'800)), "20240229T000000Z");
}

} // namespace
} // namespace quorl::test
