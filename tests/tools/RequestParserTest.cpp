#include "sample-endpoint/RequestParser.h"

#include <gtest/gtest.h>

namespace quorl::sample {
namespace {

using State = RequestParser::State;

constexpr auto posted =
    "POST /v1/chat/completions?a=b HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Blank:  two words \t\r\n"
    "Content-Length: 5\r\n\r\nhello";

State parseWhole(std::string bytes) {
    return RequestParser().parse(bytes);
}

TEST(RequestParser, ReadsMethodPathHeadersAndBody) {
    RequestParser parser;
    std::string bytes = posted;

    ASSERT_EQ(parser.parse(bytes), State::complete);

    const auto request = parser.take();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/v1/chat/completions?a=b");
    const std::vector<Header> headers{
        {"Host", "127.0.0.1"}, {"X-Blank", "two words"}, {"Content-Length", "5"}};
    EXPECT_EQ(request.headers, headers);
    EXPECT_EQ(request.body, "hello");
    EXPECT_EQ(bytes, "");
    EXPECT_FALSE(parser.wantsClose());
}

TEST(RequestParser, ReadsARequestThatComesByteByByte) {
    RequestParser parser;
    const std::string whole = posted;
    std::string bytes;

    for (const char byte : whole.substr(0, whole.size() - 1)) {
        bytes += byte;
        ASSERT_EQ(parser.parse(bytes), State::needsMore);
    }
    bytes += whole.back();

    ASSERT_EQ(parser.parse(bytes), State::complete);
    EXPECT_EQ(parser.take().body, "hello");
}

TEST(RequestParser, LeavesWhatFollowsARequest) {
    RequestParser parser;
    std::string bytes = std::string(posted) + "GET / HTTP/1.1\r\n\r\n";

    ASSERT_EQ(parser.parse(bytes), State::complete);
    EXPECT_EQ(parser.take().body, "hello");
    ASSERT_EQ(parser.parse(bytes), State::complete);

    const auto second = parser.take();
    EXPECT_EQ(second.method, "GET");
    EXPECT_EQ(second.body, "");
    EXPECT_TRUE(second.headers.empty());
}

TEST(RequestParser, KnowsHowMuchOfABodyIsMissing) {
    RequestParser parser;
    std::string bytes = "POST / HTTP/1.1\r\nContent-Length: 100\r\n\r\nhello";

    EXPECT_EQ(parser.parse(bytes), State::needsMore);

    EXPECT_EQ(parser.missing(), 95u);
}

TEST(RequestParser, AsksOnceForTheBodyOfAClientThatWaitsForLeave) {
    RequestParser parser;
    std::string bytes = "POST / HTTP/1.1\r\nexpect: 100-Continue\r\nContent-Length: 5\r\n\r\n";

    EXPECT_EQ(parser.parse(bytes), State::needsContinue);
    bytes += "he";
    EXPECT_EQ(parser.parse(bytes), State::needsMore);
    bytes += "llo";

    EXPECT_EQ(parser.parse(bytes), State::complete);
}

TEST(RequestParser, HeedsTheWishToClose) {
    for (const std::string head : {"GET / HTTP/1.1\r\nconnection: Close\r\n\r\n", "GET / HTTP/1.0\r\n\r\n"}) {
        RequestParser parser;
        std::string bytes = head;

        ASSERT_EQ(parser.parse(bytes), State::complete) << head;
        EXPECT_TRUE(parser.wantsClose()) << head;
    }
}

TEST(RequestParser, RefusesWhatIsNoHTTP) {
    EXPECT_EQ(parseWhole("\x16\x03\x01 hello\r\n\r\n"), State::malformed);
    EXPECT_EQ(parseWhole("GET /\r\n\r\n"), State::malformed);
    EXPECT_EQ(parseWhole("GET / HTTP/2.0\r\n\r\n"), State::malformed);
    EXPECT_EQ(parseWhole("GET / HTTP/1.1\r\nno colon\r\n\r\n"), State::malformed);
    EXPECT_EQ(parseWhole("GET / HTTP/1.1\r\n: no name\r\n\r\n"), State::malformed);
    EXPECT_EQ(parseWhole("\r\n\r\n"), State::malformed);
}

TEST(RequestParser, RefusesBodiesWhoseLengthItCannotTell) {
    for (const auto* const line :
         {"Content-Length: -1", "Content-Length: 5x", "Content-Length:", "Content-Length: 999999999999",
          "Content-Length: 99999999999999999999999", "Transfer-Encoding: chunked"})
        EXPECT_EQ(parseWhole("POST / HTTP/1.1\r\n" + std::string(line) + "\r\n\r\n"), State::malformed)
            << line;
}

TEST(RequestParser, RefusesAHeadWithoutEnd) {
    EXPECT_EQ(parseWhole("GET / HTTP/1.1\r\nX: " + std::string(64 * 1024, 'x')), State::malformed);
}

TEST(Request, FindsAHeaderWhateverItsCase) {
    const Request request{.method = "GET", .headers = {{"Content-Type", "a"}, {"content-type", "b"}}};

    ASSERT_NE(request.header("CONTENT-TYPE"), nullptr);
    EXPECT_EQ(*request.header("CONTENT-TYPE"), "a");
    EXPECT_EQ(request.header("Content"), nullptr);
}

} // namespace
} // namespace quorl::sample
