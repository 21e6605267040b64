#include "api/RequestParser.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace quorl {
namespace {

using namespace std::string_literals;

using Headers = std::map<std::string, std::string>;

// What the lines after the first make of the headers.
Headers headersOf(const std::string& lines) {
    const auto request = parseRequest("GET / HTTP/1.1\r\n" + lines + "\r\n\r\n");
    return request ? request->headers : Headers{{"(not whole)", ""}};
}

// The body that a length gives a request behind whose head stands "hello".
std::optional<std::string> bodyFor(const std::string& length) {
    const auto request = parseRequest("POST / HTTP/1.1\r\nContent-Length: " + length + "\r\n\r\nhello");
    return request ? std::optional(request->body) : std::nullopt;
}

TEST(RequestParser, ReadsMethodPathHeadersAndBody) {
    const auto request = parseRequest("POST /v1/batches HTTP/1.1\r\nHost: 127.0.0.1:47821\r\n"
                                      "Authorization: Bearer abc\r\nContent-Length: 5\r\n\r\nhello");

    EXPECT_EQ(
        request,
        (HTTPRequest{"POST",
                     "/v1/batches",
                     {{"host", "127.0.0.1:47821"}, {"authorization", "Bearer abc"}, {"content-length", "5"}},
                     "hello"}));
}

TEST(RequestParser, NeedsNoHeader) {
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\r\n\r\n"), (HTTPRequest{"GET", "/", {}, ""}));
}

TEST(RequestParser, WaitsForTheEndOfTheHead) {
    EXPECT_EQ(parseRequest(""), std::nullopt);
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\r\nHost: here\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\r\nHost: here\r\n\r"), std::nullopt);
    EXPECT_EQ(parseRequest("GET / HTTP/1.1\n\n"), std::nullopt);
}

TEST(RequestParser, WaitsForTheWholeBody) {
    const std::string head = "POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\n";

    EXPECT_EQ(parseRequest(head), std::nullopt);
    EXPECT_EQ(parseRequest(head + "hel"), std::nullopt);
    EXPECT_EQ(parseRequest(head + "hello").value().body, "hello");
}

TEST(RequestParser, LeavesWhatFollowsTheRequestAlone) {
    EXPECT_EQ(parseRequest("GET /a HTTP/1.1\r\n\r\nGET /b HTTP/1.1\r\n\r\n"),
              (HTTPRequest{"GET", "/a", {}, ""}));
    EXPECT_EQ(bodyFor("3"), "hel");
}

TEST(RequestParser, KeepsABodyByteForByte) {
    const std::string body = "\0\r\n\r\n\xff\xfe \t"s;

    const auto request =
        parseRequest("PUT / HTTP/1.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);

    EXPECT_EQ(request.value().body, body);
}

TEST(RequestParser, ReadsARequestLineWithDoubledBlanks) {
    const auto request = parseRequest("  GET   /v1/health    HTTP/1.1  \r\n\r\n");

    EXPECT_EQ(request, (HTTPRequest{"GET", "/v1/health", {}, ""}));
}

TEST(RequestParser, SplitsTheRequestLineAtBlanksAlone) {
    EXPECT_EQ(parseRequest("GET\t/a /b\r\n\r\n"), (HTTPRequest{"GET\t/a", "/b", {}, ""}));
}

TEST(RequestParser, LooksNeitherAtTheVersionNorBeyond) {
    EXPECT_EQ(parseRequest("GET /\r\n\r\n"), (HTTPRequest{"GET", "/", {}, ""}));
    EXPECT_EQ(parseRequest("GET / HTTP/9.9 and more words\r\n\r\n"), (HTTPRequest{"GET", "/", {}, ""}));
}

TEST(RequestParser, NeverMakesARequestOfALineWithOneWord) {
    EXPECT_EQ(parseRequest("GET\r\n\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("GET \r\nContent-Length: 0\r\n\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("\r\n\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("   \r\n\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("GET\r\n\r\nGET / HTTP/1.1\r\n\r\n"), std::nullopt);
    EXPECT_EQ(parseRequest("\r\nGET / HTTP/1.1\r\n\r\n"), std::nullopt);
}

TEST(RequestParser, KeepsTheCaseOfTheMethod) {
    EXPECT_EQ(parseRequest("get / HTTP/1.1\r\n\r\n").value().method, "get");
}

TEST(RequestParser, EndsThePathBeforeTheFirstQuestionMark) {
    EXPECT_EQ(parseRequest("GET /v1/x?a=1?b=2 HTTP/1.1\r\n\r\n").value().path, "/v1/x");
    EXPECT_EQ(parseRequest("GET ? HTTP/1.1\r\n\r\n").value().path, "");
    EXPECT_EQ(parseRequest("GET /a%3Fb HTTP/1.1\r\n\r\n").value().path, "/a%3Fb");
}

TEST(RequestParser, TrimsBlanksAndTabsAndLowersNames) {
    EXPECT_EQ(headersOf(" \tX-Mixed-CASE\t : \t Some Value \t"), (Headers{{"x-mixed-case", "Some Value"}}));
}

TEST(RequestParser, TrimsNothingButBlanksAndTabs) {
    EXPECT_EQ(headersOf("\nName\v: \nvalue\r"), (Headers{{"\nname\v", "\nvalue\r"}}));
    EXPECT_EQ(headersOf("a\u00a0:\u00a0b"), (Headers{{"a\u00a0", "\u00a0b"}}));
}

TEST(RequestParser, LowersEveryLetterOfAName) {
    EXPECT_EQ(headersOf("\u00dcBER-\u0394: \u00dc"), (Headers{{"\u00fcber-\u03b4", "\u00dc"}}));
}

TEST(RequestParser, CutsAHeaderAtItsFirstColon) {
    EXPECT_EQ(headersOf("Host: [::1]:47821"), (Headers{{"host", "[::1]:47821"}}));
    EXPECT_EQ(headersOf("Empty:"), (Headers{{"empty", ""}}));
    EXPECT_EQ(headersOf(": nameless"), (Headers{{"", "nameless"}}));
}

TEST(RequestParser, SkipsALineWithoutColon) {
    EXPECT_EQ(headersOf("A: 1\r\nno header at all\r\nB: 2"), (Headers{{"a", "1"}, {"b", "2"}}));
}

TEST(RequestParser, TakesTheLastOfTheSameHeader) {
    EXPECT_EQ(headersOf("Authorization: Bearer first\r\nAUTHORIZATION: Bearer last"),
              (Headers{{"authorization", "Bearer last"}}));
    EXPECT_EQ(headersOf("A: 1\r\nA:"), (Headers{{"a", ""}}));
}

TEST(RequestParser, ReplacesWhatIsNotUTF8InTheHead) {
    const auto request = parseRequest("GET /\xff\xfe HTTP/1.1\r\nX-\xc3: \xe2\x82\r\n\r\n\xff");

    EXPECT_EQ(request, (HTTPRequest{"GET", "/\ufffd\ufffd", {{"x-\ufffd", "\ufffd"}}, ""}));
}

TEST(RequestParser, ReadsALengthAsASignedNumberOf64Bits) {
    EXPECT_EQ(bodyFor("5"), "hello");
    EXPECT_EQ(bodyFor("+5"), "hello");
    EXPECT_EQ(bodyFor("+0005"), "hello");
    EXPECT_EQ(bodyFor("00000000000000000000000000000002"), "he");
    EXPECT_EQ(bodyFor("0"), "");
    EXPECT_EQ(bodyFor("-0"), "");
    EXPECT_EQ(bodyFor("+0"), "");
}

TEST(RequestParser, ReadsNoBodyWhereTheLengthIsNoNumber) {
    for (const std::string length : {"",  "abc", "5x",  "x5",  "5 5", "5,5", "0x5", "5.0",    "5e0", "+",
                                     "-", "++5", "+-5", "-+5", "--5", "- 5", "+ 5", "\u0665", "5\n", "\xff"})
        EXPECT_EQ(bodyFor(length), "") << length;
}

TEST(RequestParser, ReadsNoBodyWhereTheLengthTakesMoreThan64Bits) {
    EXPECT_EQ(bodyFor("9223372036854775808"), "");
    EXPECT_EQ(bodyFor("-9223372036854775809"), "");
    EXPECT_EQ(bodyFor("99999999999999999999999999999999999"), "");
}

TEST(RequestParser, WaitsForABodyThatNoBufferHolds) {
    EXPECT_EQ(bodyFor("9223372036854775807"), std::nullopt);
}

TEST(RequestParser, TakesTheLastOfTwoLengths) {
    EXPECT_EQ(bodyFor("5\r\nContent-Length: 2"), "he");
    EXPECT_EQ(bodyFor("5\r\nContent-Length: none"), "");
}

TEST(RequestParser, KnowsNoChunks) {
    const auto request = parseRequest("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n");

    EXPECT_EQ(request.value().body, "");
}

TEST(RequestParserDeathTest, ANegativeLengthEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const std::string length : {"-1", "-5", "-0000001", "-9223372036854775808"})
        EXPECT_DEATH(static_cast<void>(bodyFor(length)), "a request announced a body of negative length");
}

TEST(RequestParserDeathTest, ANegativeLengthBehindAnotherEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(static_cast<void>(bodyFor("5\r\nContent-Length: -1")), "negative length");
}

TEST(RequestParser, LooksAtTheLengthOfNothingButARequest) {
    EXPECT_EQ(parseRequest("GET\r\nContent-Length: -1\r\n\r\n"), std::nullopt);
    EXPECT_EQ(bodyFor("-1\r\nContent-Length: 5"), "hello");
}

TEST(RequestParser, TellsWhatAHeadAnnounces) {
    const auto head = parseRequestHead("POST /a?b HTTP/1.1\r\nContent-Length: -7\r\n\r\nmore");

    ASSERT_TRUE(head);
    EXPECT_EQ(head->request, (HTTPRequest{"POST", "/a", {{"content-length", "-7"}}, ""}));
    EXPECT_EQ(head->bodyStart, 42U);
    EXPECT_EQ(head->contentLength, -7);
    EXPECT_FALSE(parseRequestHead("POST / HTTP/1.1\r\n"));
    EXPECT_FALSE(parseRequestHead("POST\r\n\r\n"));
}

// Reads `bytes` as they would arrive, cut at `cuts` and at their end, and holds each answer against that of
// parsing all that has come so far.
void expectSameInPieces(const std::string& bytes, std::vector<std::size_t> cuts) {
    RequestReader reader;
    cuts.push_back(bytes.size());
    for (const std::size_t arrived : cuts) {
        const auto present = std::string_view(bytes).substr(0, arrived);
        const auto request = reader.read(present);
        ASSERT_EQ(request, parseRequest(present)) << "after " << arrived << " bytes of " << bytes;
        if (request)
            return;
    }
}

const std::vector<std::string> pieces{
    "GET /v1/health HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n",
    "POST /v1/batches HTTP/1.1\r\nContent-Length: 13\r\n\r\n{\"a\":\r\n\r\n\"b\"}GET / HTTP/1.1\r\n\r\n",
    "POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nhel",
    "GET\r\n\r\nGET / HTTP/1.1\r\n\r\n",
    "\r\n\r\n\r\n\r\n",
    "GET / HTTP/1.1\r\r\n\r\r\n\r\n\r\n",
    "GET /\xff HTTP/1.1\r\nA: \xe2\x82\r\n\r\n",
    "POST / HTTP/1.1\r\nContent-Length: 9223372036854775807\r\n\r\nhello",
};

TEST(RequestReader, ReadsTheSameWhereverARequestIsCut) {
    for (const std::string& bytes : pieces) {
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
            ASSERT_NO_FATAL_FAILURE(expectSameInPieces(bytes, {cut}));
    }
}

TEST(RequestReader, ReadsTheSameByteByByte) {
    for (const std::string& bytes : pieces) {
        std::vector<std::size_t> cuts;
        for (std::size_t cut = 0; cut < bytes.size(); ++cut)
            cuts.push_back(cut);
        ASSERT_NO_FATAL_FAILURE(expectSameInPieces(bytes, cuts));
    }
}

TEST(RequestReader, ReadsTheSameInRandomPiecesOfRandomBytes) {
    constexpr std::string_view alphabet = "\r\r\r\n\n\n:: \tGa5?\xff";
    std::minstd_rand random(1); // NOLINT(bugprone-random-generator-seed): the same bytes with every run
    const auto upTo = [&random](std::size_t most) { return random() % (most + 1); };

    for (int round = 0; round < 20'000; ++round) {
        std::string bytes = upTo(1) == 0 ? "G / \r\nContent-Length: " + std::to_string(upTo(9)) + "\r\n" : "";
        for (std::size_t left = upTo(40); left > 0; --left)
            bytes += alphabet[upTo(alphabet.size() - 1)];
        std::vector<std::size_t> cuts;
        for (std::size_t cut = upTo(5); cut < bytes.size(); cut += 1 + upTo(7))
            cuts.push_back(cut);
        ASSERT_NO_FATAL_FAILURE(expectSameInPieces(bytes, cuts));
    }
}

} // namespace
} // namespace quorl
