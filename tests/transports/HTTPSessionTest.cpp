#include "transports/HTTPSession.h"

#include "sample-endpoint/SampleEndpoint.h"
#include "transports/UnusedPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <optional>
#include <set>
#include <thread>
#include <vector>

namespace quorl::test {
namespace {

using sample::everyModel;
using sample::makeReply;
using sample::SampleEndpoint;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
namespace Fault = sample::Fault;

using Headers = std::map<std::string, std::string>;

const Headers headers{{"Authorization", "Bearer sk-0123456789"}, {"Content-Type", "application/json"}};

std::string urlOf(const SampleEndpoint& endpoint) {
    return endpoint.baseURL() + "/chat/completions";
}

// A message for each of `count` posts, each of them on a thread of its own; empty where it succeeded.
std::vector<std::string> postAtOnce(HTTPSession& session, const std::string& url, std::size_t count) {
    std::vector<std::string> messages(count);
    std::vector<std::thread> callers;
    for (std::string& message : messages) {
        callers.emplace_back([&session, &url, &message] {
            const auto reply = session.post(url, headers, "{}");
            message = reply ? "" : reply.message();
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    return messages;
}

TEST(HTTPSession, SendsThePostAsGivenAndGivesBackBodyAndStatus) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(201, "the body"));
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, R"({"a":"b/c"})");

    ASSERT_TRUE(reply) << reply.message();
    EXPECT_EQ(reply.value().status, 201);
    EXPECT_EQ(reply.value().body, "the body");
    ASSERT_EQ(endpoint.requests().size(), 1u);
    const sample::Request request = endpoint.requests().front();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/v1/chat/completions");
    EXPECT_EQ(request.body, R"({"a":"b/c"})");
    EXPECT_EQ(*request.header("Authorization"), "Bearer sk-0123456789");
    EXPECT_EQ(*request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("Expect"), nullptr);
    EXPECT_EQ(request.header("Cookie"), nullptr);
}

TEST(HTTPSession, SendsALongBodyWithoutAskingLeave) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;
    const std::string body(3 * 1024 * 1024, 'x');

    ASSERT_TRUE(session.post(urlOf(endpoint), headers, body));

    EXPECT_EQ(endpoint.requests().front().body, body);
    EXPECT_EQ(endpoint.requests().front().header("Expect"), nullptr);
}

TEST(HTTPSession, SendsEmptyBodiesAndEmptyHeaders) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;

    ASSERT_TRUE(session.post(urlOf(endpoint), {{"X-Empty", ""}}, ""));

    const sample::Request request = endpoint.requests().front();
    EXPECT_EQ(request.body, "");
    ASSERT_NE(request.header("X-Empty"), nullptr);
    EXPECT_EQ(*request.header("X-Empty"), "");
    EXPECT_EQ(request.header("Authorization"), nullptr);
}

TEST(HTTPSession, LeavesThePathOfAURLAsItIs) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;
    const std::string root = "http://127.0.0.1:" + std::to_string(endpoint.port());

    ASSERT_TRUE(session.post(root + "/a/../b%3A0%7e/./c?q=%20", headers, "{}"));

    EXPECT_EQ(endpoint.requests().front().path, "/a/../b%3A0%7e/./c?q=%20");
}

TEST(HTTPSession, AnyStatusIsASuccess) {
    SampleEndpoint endpoint;
    HTTPSession session;

    for (const int status : {204, 400, 401, 404, 429, 500, 503}) {
        endpoint.answer(everyModel, makeReply(status, status == 204 ? "" : "why"));
        const auto reply = session.post(urlOf(endpoint), headers, "{}");
        ASSERT_TRUE(reply) << reply.message();
        EXPECT_EQ(reply.value().status, status);
    }
}

TEST(HTTPSession, ARedirectIsAStatusAndTheKeyGoesNowhereElse) {
    SampleEndpoint endpoint;
    SampleEndpoint other;
    HTTPSession session;

    for (const int status : {301, 302, 307, 308}) {
        endpoint.answer(everyModel, Fault::redirect(status, urlOf(other)));
        const auto reply = session.post(urlOf(endpoint), headers, "{}");
        ASSERT_TRUE(reply) << reply.message();
        EXPECT_EQ(reply.value().status, status);
    }
    EXPECT_TRUE(other.requests().empty());
}

TEST(HTTPSession, OneAfterTheOtherGoOverOneConnection) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;

    for (int turn = 0; turn < 20; ++turn)
        ASSERT_TRUE(session.post(urlOf(endpoint), headers, "{}"));

    std::set<std::uint64_t> connections;
    for (const sample::Request& request : endpoint.requests())
        connections.insert(request.connection);
    EXPECT_EQ(connections.size(), 1u);
}

TEST(HTTPSession, ASecondBurstFindsTheConnectionsOfTheFirst) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, delayed(makeReply(200, "ok"), std::chrono::milliseconds(20)));
    HTTPSession session;

    EXPECT_THAT(postAtOnce(session, urlOf(endpoint), 100), testing::Each(""));
    EXPECT_THAT(postAtOnce(session, urlOf(endpoint), 100), testing::Each(""));

    std::set<std::uint64_t> connections;
    for (const sample::Request& request : endpoint.requests())
        connections.insert(request.connection);
    EXPECT_LE(connections.size(), 100u);
}

TEST(HTTPSession, FiveHundredAtOnceAreAnsweredWhileOneNeverIs) {
    SampleEndpoint silent;
    silent.answer(everyModel, Fault::neverAnswer());
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;
    std::optional<Attempt<HTTPReply>> unanswered;
    std::thread waiting([&] { unanswered = session.post(urlOf(silent), headers, "{}"); });
    ASSERT_TRUE(silent.waitForRequests(1));

    EXPECT_THAT(postAtOnce(session, urlOf(endpoint), 500), testing::Each(""));

    session.close();
    waiting.join();
    ASSERT_FALSE(*unanswered);
    EXPECT_EQ(unanswered->message(), "The request ended because Quorl is closing.");
    EXPECT_EQ(endpoint.requests().size(), 500u);
}

TEST(HTTPSession, SilentRequestsToAHostHoldNoOtherBackAndAllEndWithTheSession) {
    constexpr std::size_t count = 200;
    SampleEndpoint endpoint;
    std::vector<sample::Answer> answers(count, Fault::neverAnswer());
    answers.emplace_back(makeReply(200, "ok"));
    endpoint.answerInTurn(everyModel, answers);
    HTTPSession session;
    std::vector<std::string> messages;
    std::thread waiting([&] { messages = postAtOnce(session, urlOf(endpoint), count); });
    ASSERT_TRUE(endpoint.waitForRequests(count));

    EXPECT_TRUE(session.post(urlOf(endpoint), headers, "{}"));

    session.close();
    waiting.join();
    EXPECT_THAT(messages, testing::Each("The request ended because Quorl is closing."));
}

TEST(HTTPSession, OnceClosedARequestFailsAtOnce) {
    SampleEndpoint endpoint;
    HTTPSession session;
    ASSERT_TRUE(session.post(urlOf(endpoint), headers, "{}")); // nothing of it may come back below
    session.close();
    session.close();

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.message(), "The request ended because Quorl is closing.");
    EXPECT_EQ(endpoint.requests().size(), 1u);
}

TEST(HTTPSession, DestructionEndsWhatIsUnderWayAndWaitsForItsCallers) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, Fault::neverAnswer());
    auto session = std::make_unique<HTTPSession>();
    std::atomic<int> returned = 0;
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 8; ++caller) {
        callers.emplace_back([&, raw = session.get()] {
            EXPECT_FALSE(raw->post(urlOf(endpoint), headers, "{}"));
            ++returned;
        });
    }
    ASSERT_TRUE(endpoint.waitForRequests(callers.size()));

    session.reset();

    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(returned, 8);
}

TEST(HTTPSession, ManyCallersMayPostWhileItIsClosed) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "ok"));
    HTTPSession session;
    std::thread closing([&] {
        EXPECT_TRUE(endpoint.waitForRequests(10));
        session.close();
    });

    for (const std::string& message : postAtOnce(session, urlOf(endpoint), 100))
        EXPECT_TRUE(message.empty() || message == "The request ended because Quorl is closing.") << message;

    closing.join();
}

TEST(HTTPSession, AReplyLongerThanTheLimitIsAFailureOfOneLine) {
    SampleEndpoint endpoint;
    HTTPSession session;

    for (const sample::Reply& endless :
         {Fault::endlessChunks(), Fault::endlessLength(), Fault::largeBody(200 * 1024 * 1024)}) {
        endpoint.answer(everyModel, endless);
        const auto reply = session.post(urlOf(endpoint), headers, "{}");
        ASSERT_FALSE(reply);
        EXPECT_EQ(reply.message(), "The response is too long to be read.");
    }
}

TEST(HTTPSession, AFailureIsToldInItsOwnWordsAfterAnother) {
    SampleEndpoint endpoint;
    HTTPSession session(HTTPSession::Limits{.maximumReplyBytes = 10});

    for (int turn = 0; turn < 2; ++turn) {
        endpoint.answer(everyModel, Fault::largeBody(11));
        EXPECT_EQ(session.post(urlOf(endpoint), headers, "{}").message(),
                  "The response is too long to be read.");
        endpoint.answer(everyModel, Fault::closeBeforeAnswer());
        EXPECT_EQ(session.post(urlOf(endpoint), headers, "{}").message(), "Empty reply from server");
    }
}

TEST(HTTPSession, AReplyOfExactlyTheLimitIsRead) {
    SampleEndpoint endpoint;
    HTTPSession session(HTTPSession::Limits{.maximumReplyBytes = 5000});

    endpoint.answer(everyModel, Fault::largeBody(5000));
    const auto whole = session.post(urlOf(endpoint), headers, "{}");
    endpoint.answer(everyModel, Fault::largeBody(5001));
    const auto tooLong = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_TRUE(whole) << whole.message();
    EXPECT_EQ(whole.value().body.size(), 5000u);
    EXPECT_FALSE(tooLong);
}

// 100,000 times "x", packed by gzip into 132 bytes.
std::string packedReply() {
    std::string packed("\x1f\x8b\x08\0\0\0\0\0\x02\x03\xed\xc1\x31\x01\0\0\0\xc2\xa0\xda\x8b\x6f\x0d\x0f\xa0",
                       26);
    packed.append(94, '\0');
    packed.append("\0\x80\x57\x03\x71\x11\x07\xfe\xa0\x86\x01\0", 12);
    return packed;
}

TEST(HTTPSession, APackedReplyIsUnpacked) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, packedReply(), {{"Content-Encoding", "gzip"}}));
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_TRUE(reply) << reply.message();
    EXPECT_EQ(reply.value().body, std::string(100'000, 'x'));
}

TEST(HTTPSession, TheLimitCountsUnpackedBytes) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, packedReply(), {{"Content-Encoding", "gzip"}}));
    HTTPSession session(HTTPSession::Limits{.maximumReplyBytes = 99'999});

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.message(), "The response is too long to be read.");
}

TEST(HTTPSession, EndlessHeadersAreAFailure) {
    SampleEndpoint endpoint;
    sample::Reply endless;
    endless.pieces = {{"HTTP/1.1 200 OK\r\n"},
                      {"X-Filler: " + std::string(1000, 'x') + "\r\n", sample::Piece::forever}};
    endpoint.answer(everyModel, endless);
    HTTPSession session;

    EXPECT_FALSE(session.post(urlOf(endpoint), headers, "{}"));
}

TEST(HTTPSession, BytesOfAnyKindComeBackAsTheyAre) {
    SampleEndpoint endpoint;
    const std::string bytes("\0\xff\xfe\r\n\0", 6);
    endpoint.answer(everyModel, makeReply(200, bytes));
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_TRUE(reply) << reply.message();
    EXPECT_EQ(reply.value().body, bytes);
}

TEST(HTTPSession, AnUnderstatedLengthCutsTheBody) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, Fault::understatedLength("0123456789", 4));
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_TRUE(reply) << reply.message();
    EXPECT_EQ(reply.value().body, "0123");
}

TEST(HTTPSession, ASlowReplyIsReadToItsEnd) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel,
                    Fault::slowDrip(makeReply(200, "0123456789"), 3, std::chrono::milliseconds(1)));
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_TRUE(reply) << reply.message();
    EXPECT_EQ(reply.value().body, "0123456789");
}

TEST(HTTPSession, TheTimeoutEndsARequestThatIsNotAnswered) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, Fault::neverAnswer());
    HTTPSession session(HTTPSession::Limits{.timeout = std::chrono::milliseconds(50)});

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_THAT(reply.message(),
                MatchesRegex("Operation timed out after [0-9]+ milliseconds with 0 bytes received"));
}

TEST(HTTPSession, TheTimeoutEndsAnAnswerThatNeverEnds) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, Fault::slowDrip(Fault::endlessChunks(), 1, std::chrono::milliseconds(5)));
    HTTPSession session(HTTPSession::Limits{.timeout = std::chrono::milliseconds(100)});

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_THAT(reply.message(), HasSubstr("timed out"));
}

TEST(HTTPSession, AnUnknownHostIsAFailure) {
    HTTPSession session;

    const auto reply = session.post("http://quorl-no-such-host.invalid/v1", headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.message(), "Could not resolve host: quorl-no-such-host.invalid");
}

TEST(HTTPSession, ARefusedConnectionIsAFailure) {
    const UnusedPort port;
    HTTPSession session;

    const auto reply = session.post("http://127.0.0.1:" + std::to_string(port.number()), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_THAT(reply.message(), MatchesRegex("Failed to connect to 127.0.0.1 port [0-9]+ after [0-9]+ ms: "
                                              "Couldn't connect to server"));
}

// What goes wrong on the wire, and the words for it.
struct WireFault {
    const char* name;
    sample::Reply reply;
    const char* message;
};

class HTTPSessionFault : public testing::TestWithParam<WireFault> {};

TEST_P(HTTPSessionFault, IsOneLineAndTheNextRequestSucceeds) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, GetParam().reply);
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");
    endpoint.answer(everyModel, makeReply(200, "ok"));
    const auto next = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.message(), GetParam().message);
    ASSERT_TRUE(next) << next.message();
    EXPECT_EQ(next.value().body, "ok");
}

INSTANTIATE_TEST_SUITE_P(
    OnTheWire, HTTPSessionFault,
    testing::Values(WireFault{"CloseBeforeAnswer", Fault::closeBeforeAnswer(), "Empty reply from server"},
                    WireFault{"ResetBeforeAnswer", Fault::resetBeforeAnswer(),
                              "Recv failure: Connection reset by peer"},
                    WireFault{"ResetMidBody", Fault::resetMidBody("0123456789", 4),
                              "Recv failure: Connection reset by peer"},
                    WireFault{"Truncated", Fault::truncatedBody("0123456789", 4),
                              "transfer closed with 6 bytes remaining to read"},
                    WireFault{"NoHTTP", Fault::garbage(), "Received HTTP/0.9 when not allowed"},
                    WireFault{"BrokenPacking", makeReply(200, "no gzip", {{"Content-Encoding", "gzip"}}),
                              "Error while processing content unencoding: incorrect header check"}),
    [](const auto& instance) { return instance.param.name; });

// A plain server takes the start of TLS for the start of a request and waits for its end.
TEST(HTTPSession, TLSOnAPlainPortIsAFailure) {
    SampleEndpoint endpoint;
    HTTPSession session(HTTPSession::Limits{.timeout = std::chrono::milliseconds(100)});

    const auto reply =
        session.post("https://127.0.0.1:" + std::to_string(endpoint.port()) + "/v1", headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_THAT(reply.message(), MatchesRegex("(SSL connection timeout|Connection timed out.*)"));
}

TEST(HTTPSession, ACertificateThatNobodyVouchesForIsAFailure) {
    SampleEndpoint endpoint({.security = sample::Security::selfSignedTLS});
    HTTPSession session;

    const auto reply = session.post(urlOf(endpoint), headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_THAT(reply.message(), HasSubstr("certificate"));
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST(HTTPSession, NoFailureQuotesAHeaderOrTheBody) {
    SampleEndpoint endpoint;
    HTTPSession session;

    for (const sample::Reply& fault : {Fault::closeBeforeAnswer(), Fault::resetBeforeAnswer(),
                                       Fault::garbage(), Fault::truncatedBody("0123456789", 4)}) {
        endpoint.answer(everyModel, fault);
        const auto reply = session.post(urlOf(endpoint), headers, "a secret question");
        ASSERT_FALSE(reply);
        EXPECT_THAT(reply.message(), Not(HasSubstr("sk-0123456789")));
        EXPECT_THAT(reply.message(), Not(HasSubstr("secret")));
        EXPECT_THAT(reply.message(), Not(HasSubstr("\n")));
    }
}

TEST(HTTPSession, AHeaderWithALineEndIsNotSentAndNotQuoted) {
    SampleEndpoint endpoint;
    HTTPSession session;

    for (const std::string& value : {std::string("Bearer a\r\nX-Injected: b"), std::string("Bearer a\nb"),
                                     std::string("Bearer a\0b", 10), std::string("Bearer a\x7f")}) {
        const auto reply = session.post(urlOf(endpoint), {{"Authorization", value}}, "{}");
        ASSERT_FALSE(reply);
        EXPECT_EQ(reply.message(),
                  "The credentials hold characters that can't be sent. Check them in Models.");
    }
    EXPECT_TRUE(endpoint.requests().empty());
}

// Sets a variable of the environment for the length of a test.
class Environment {
public:
    Environment(const char* variable, const std::string& value) : name(variable) {
        setenv(name, value.c_str(), 1);
    }
    ~Environment() { unsetenv(name); }

    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name;
};

TEST(HTTPSession, AProxyOfTheEnvironmentIsUsedForOtherHostsOnly) {
    SampleEndpoint proxy;
    proxy.answer(everyModel, makeReply(200, "from the proxy"));
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(200, "from the endpoint"));
    const Environment proxied("http_proxy", "http://127.0.0.1:" + std::to_string(proxy.port()));
    HTTPSession session;

    const auto far = session.post("http://quorl-no-such-host.invalid/v1", headers, "{}");
    const auto near = session.post(urlOf(endpoint), headers, "{}");
    const auto named =
        session.post("http://localhost:" + std::to_string(endpoint.port()) + "/v1", headers, "{}");

    ASSERT_TRUE(far) << far.message();
    EXPECT_EQ(far.value().body, "from the proxy");
    ASSERT_TRUE(near) << near.message();
    EXPECT_EQ(near.value().body, "from the endpoint");
    ASSERT_TRUE(named) << named.message();
    EXPECT_EQ(named.value().body, "from the endpoint");
}

TEST(HTTPSession, ThisMachineIsReachedDirectlyBesideTheUsersExceptions) {
    SampleEndpoint proxy;
    SampleEndpoint endpoint;
    const Environment proxied("http_proxy", "http://127.0.0.1:" + std::to_string(proxy.port()));
    const Environment exception("no_proxy", "other.invalid");
    HTTPSession session;

    EXPECT_TRUE(session.post(urlOf(endpoint), headers, "{}"));

    EXPECT_EQ(endpoint.requests().size(), 1u);
    EXPECT_TRUE(proxy.requests().empty());
}

TEST(HTTPSession, HostsThatTheUserExceptsFromTheProxyAreReachedDirectly) {
    SampleEndpoint proxy;
    proxy.answer(everyModel, makeReply(200, "from the proxy"));
    const Environment proxied("http_proxy", "http://127.0.0.1:" + std::to_string(proxy.port()));

    for (const char* excepted : {"quorl-no-such-host.invalid", "*"}) {
        const Environment exception("no_proxy", excepted);
        HTTPSession session;
        EXPECT_FALSE(session.post("http://quorl-no-such-host.invalid/v1", headers, "{}"));
    }
    EXPECT_TRUE(proxy.requests().empty());
}

TEST(HTTPSession, AURLHasASchemeOfTheWebAndAHost) {
    for (const char* url : {"http://127.0.0.1:1234/v1", "https://host", "HTTPS://Host/path?query",
                            "http://[::1]:8000/", "http://localhost/a%20b"})
        EXPECT_TRUE(HTTPSession::isURL(url)) << url;

    for (const char* url : {"",
                            "host",
                            "host/v1",
                            "localhost:1234/v1",
                            "/v1",
                            "//host/v1",
                            "http://",
                            "http:///v1",
                            "http:/host",
                            "http://:80/",
                            "http://host:port",
                            "http://host:99999",
                            "http://a b/",
                            "http://host/a b",
                            "http://host/\r\nX: y",
                            "http://[::1",
                            "ftp://host",
                            "file:///etc/passwd",
                            "gopher://host",
                            "://host"})
        EXPECT_FALSE(HTTPSession::isURL(url)) << url;
    EXPECT_FALSE(HTTPSession::isURL(std::string("http://host\0.other", 17)));
}

TEST(HTTPSession, WhatIsNoURLIsNotAsked) {
    HTTPSession session;

    const auto reply = session.post("ftp://127.0.0.1/v1", headers, "{}");

    ASSERT_FALSE(reply);
    EXPECT_EQ(reply.message(), "The base URL is not valid.");
}

} // namespace
} // namespace quorl::test
