#include "sample-endpoint/SampleEndpoint.h"

#include "base/Json.h"
#include "tools/Client.h"

#include <curl/curl.h>
#include <sys/resource.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace quorl::test {
namespace {

using sample::Completion;
using sample::everyModel;
using sample::makeReply;
using sample::OpenAIChat;
using sample::Reply;
using sample::SampleEndpoint;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::StartsWith;
namespace Fault = sample::Fault;

// The one reply to a question to "m", and what became of the connection.
struct Outcome {
    std::string bytes;
    int error = 0;
};

Outcome askUntilClosed(const SampleEndpoint& endpoint) {
    Client client(endpoint.port());
    client.send(postOf(chatBody("m")));
    auto bytes = client.receiveAll();
    return {std::move(bytes), client.error()};
}

std::string ask(const SampleEndpoint& endpoint, std::string_view model = "m") {
    Client client(endpoint.port());
    client.send(postOf(chatBody(model)));
    return client.receiveReply();
}

// The text of an answer, or the sentence of an error.
std::string textIn(const std::string& reply) {
    const auto json = Json::parseObject(bodyOf(reply)).value_or(Json::Value::object());
    if (json.contains("error"))
        return json["error"]["message"];
    return json.contains("choices") ? json["choices"][0]["message"]["content"].get<std::string>() : "";
}

TEST(SampleEndpoint, ListensOnLoopbackAtItsOwnPort) {
    const SampleEndpoint first;
    const SampleEndpoint second;

    EXPECT_NE(first.port(), second.port());
    EXPECT_EQ(first.baseURL(), "http://127.0.0.1:" + std::to_string(first.port()) + "/v1");
}

TEST(SampleEndpoint, APortThatIsTakenIsAnError) {
    const SampleEndpoint first;

    EXPECT_THROW(SampleEndpoint({.port = first.port()}), std::system_error);
}

TEST(SampleEndpoint, AnswersAModelThatHasBeenToldNothing) {
    const SampleEndpoint endpoint;

    const auto reply = ask(endpoint);

    EXPECT_EQ(statusLineOf(reply), "HTTP/1.1 200 OK");
    EXPECT_THAT(reply, HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_THAT(textIn(reply), HasSubstr("Which way is up?"));
}

TEST(SampleEndpoint, TheUnavailableModelIsAnError) {
    const SampleEndpoint endpoint;

    const auto reply = ask(endpoint, "sample-unavailable");

    EXPECT_EQ(statusLineOf(reply), "HTTP/1.1 503 Service Unavailable");
    EXPECT_EQ(textIn(reply), "This sample model is always overloaded.");
}

TEST(SampleEndpoint, AModelAnswersWhatItHasBeenTold) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Completion{.text = "mine"});
    endpoint.answer(everyModel, Completion{.text = "all"});

    EXPECT_EQ(textIn(ask(endpoint, "m")), "mine");
    EXPECT_EQ(textIn(ask(endpoint, "other")), "all");
}

TEST(SampleEndpoint, AnswersInTurnAndTheLastStays) {
    SampleEndpoint endpoint;
    endpoint.answerInTurn("m", {makeReply(429, R"({"error":{"message":"slow down"}})"),
                                Completion{.text = "one"}, Completion{.text = "two"}});

    EXPECT_EQ(textIn(ask(endpoint)), "slow down");
    EXPECT_EQ(textIn(ask(endpoint)), "one");
    EXPECT_EQ(textIn(ask(endpoint)), "two");
    EXPECT_EQ(textIn(ask(endpoint)), "two");
}

TEST(SampleEndpoint, RefusesAParameterAndUsesUpNoTurn) {
    SampleEndpoint endpoint;
    endpoint.answerInTurn("m", {Completion{.text = "one"}, Completion{.text = "two"}});
    endpoint.refuseParameter("m", "max_tokens");

    const auto reply = ask(endpoint);

    EXPECT_EQ(statusLineOf(reply), "HTTP/1.1 400 Bad Request");
    EXPECT_EQ(textIn(reply), "Unsupported parameter: 'max_tokens' is not supported with this model.");
    Client other(endpoint.port());
    other.send(
        postOf(R"({"max_completion_tokens":1,"messages":[{"content":"x","role":"user"}],"model":"m"})"));
    EXPECT_EQ(textIn(other.receiveReply()), "one");
    EXPECT_EQ(statusLineOf(ask(endpoint, "another")), "HTTP/1.1 200 OK");
}

TEST(SampleEndpoint, RefusesAParameterForAll) {
    SampleEndpoint endpoint;
    endpoint.refuseParameter(everyModel, "max_tokens");

    EXPECT_EQ(statusLineOf(ask(endpoint, "any")), "HTTP/1.1 400 Bad Request");
}

TEST(SampleEndpoint, AReplyForAllAnswersAnyRequest) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, makeReply(418, "tea"));
    Client client(endpoint.port());

    client.send("DELETE /pot HTTP/1.1\r\n\r\n");
    EXPECT_EQ(bodyOf(client.receiveReply()), "tea");
    client.send(postOf("nonsense"));
    EXPECT_EQ(bodyOf(client.receiveReply()), "tea");
}

TEST(SampleEndpoint, WhatNoFormatTakesIsNotFound) {
    SampleEndpoint endpoint;
    endpoint.answer(everyModel, Completion{.text = "all"});
    Client client(endpoint.port());

    client.send("GET /v1/models HTTP/1.1\r\n\r\n");
    const auto reply = client.receiveReply();

    EXPECT_EQ(statusLineOf(reply), "HTTP/1.1 404 Not Found");
    EXPECT_EQ(textIn(reply), "Nothing answers GET /v1/models here.");
    client.send(postOf("nonsense"));
    EXPECT_EQ(textIn(client.receiveReply()), "The body is not a JSON object.");
}

TEST(SampleEndpoint, WhatIsNoHTTPIsRefusedAndTheConnectionClosed) {
    const SampleEndpoint endpoint;
    Client client(endpoint.port());

    client.send("hello\r\n\r\n");

    EXPECT_THAT(client.receiveAll(), StartsWith("HTTP/1.1 400 Bad Request\r\n"));
}

TEST(SampleEndpoint, KeepsTheConnectionForManyRequests) {
    const SampleEndpoint endpoint;
    Client client(endpoint.port());

    for (int turn = 0; turn < 10; ++turn) {
        client.send(postOf(chatBody("m")));
        ASSERT_EQ(statusLineOf(client.receiveReply()), "HTTP/1.1 200 OK");
    }
    static_cast<void>(ask(endpoint));

    const auto requests = endpoint.requests();
    ASSERT_EQ(requests.size(), 11u);
    for (std::size_t turn = 0; turn < 10; ++turn)
        EXPECT_EQ(requests[turn].connection, 1u);
    EXPECT_EQ(requests[10].connection, 2u);
}

TEST(SampleEndpoint, AnswersRequestsThatCameTogetherInTheirOrder) {
    SampleEndpoint endpoint;
    endpoint.answer("slow", Completion{.text = "slow", .delay = milliseconds(20)});
    endpoint.answer("fast", Completion{.text = "fast"});
    Client client(endpoint.port());

    client.send(postOf(chatBody("slow")) + postOf(chatBody("fast")));

    EXPECT_EQ(textIn(client.receiveReply()), "slow");
    EXPECT_EQ(textIn(client.receiveReply()), "fast");
}

TEST(SampleEndpoint, ClosesForAClientThatWantsIt) {
    const SampleEndpoint endpoint;
    Client client(endpoint.port());

    client.send(postOf(chatBody("m"), "Connection: close\r\n"));

    EXPECT_EQ(statusLineOf(client.receiveAll()), "HTTP/1.1 200 OK");
    EXPECT_EQ(client.error(), 0);
}

TEST(SampleEndpoint, GivesLeaveToAClientThatWaitsForIt) {
    const SampleEndpoint endpoint;
    const auto request = postOf(chatBody("m"), "Expect: 100-continue\r\n");
    const auto body = request.find("\r\n\r\n") + 4;
    Client client(endpoint.port());

    client.send(request.substr(0, body));
    EXPECT_EQ(client.receiveReply(), "HTTP/1.1 100 Continue\r\n\r\n");
    client.send(request.substr(body));

    EXPECT_EQ(statusLineOf(client.receiveReply()), "HTTP/1.1 200 OK");
}

TEST(SampleEndpoint, KeepsWhatItReceived) {
    const SampleEndpoint endpoint;
    const auto before = steady_clock::now();
    Client client(endpoint.port());

    client.send(postOf(chatBody("m"), "Authorization: Bearer sk-1\r\n"));
    static_cast<void>(client.receiveReply());

    const auto requests = endpoint.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].method, "POST");
    EXPECT_EQ(requests[0].path, "/v1/chat/completions");
    EXPECT_EQ(requests[0].body, chatBody("m"));
    ASSERT_NE(requests[0].header("authorization"), nullptr);
    EXPECT_EQ(*requests[0].header("authorization"), "Bearer sk-1");
    EXPECT_GE(requests[0].arrival, before);
    EXPECT_LE(requests[0].arrival, steady_clock::now());
}

TEST(SampleEndpoint, TellsOfEachRequestBeforeItIsAnswered) {
    std::string told; // written on the endpoint's thread, read once its answer is here
    sample::EndpointOptions options;
    options.record = sample::Record::drop;
    options.onRequest = [&](const sample::Request& request) { told = request.body; };
    const SampleEndpoint endpoint(std::move(options));

    static_cast<void>(ask(endpoint));

    EXPECT_EQ(told, chatBody("m"));
    EXPECT_TRUE(endpoint.requests().empty());
}

TEST(SampleEndpoint, WaitsForRequestsUntilTheDeadline) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::neverAnswer());
    Client client(endpoint.port());

    client.send(postOf(chatBody("m")));

    EXPECT_TRUE(endpoint.waitForRequests(1));
    EXPECT_FALSE(endpoint.waitForRequests(2, milliseconds(1)));
}

TEST(SampleEndpoint, WaitsBeforeADelayedAnswer) {
    SampleEndpoint endpoint;
    endpoint.answer("m", delayed(makeReply(200, "late"), milliseconds(30)));

    const auto reply = ask(endpoint);

    EXPECT_EQ(bodyOf(reply), "late");
    EXPECT_GE(steady_clock::now() - endpoint.requests()[0].arrival, milliseconds(30));
}

TEST(SampleEndpoint, FiveHundredClientsAreServedAtOnce) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit); // both ends of each connection are in this process
    SampleEndpoint endpoint;
    // All are answered only once all have asked.
    endpoint.answer("m", Completion{.text = "ok", .delay = milliseconds(200)});
    std::vector<std::unique_ptr<Client>> clients;
    for (int count = 0; count < 500; ++count)
        clients.push_back(std::make_unique<Client>(endpoint.port()));

    for (const auto& client : clients)
        client->send(postOf(chatBody("m")));
    for (const auto& client : clients)
        ASSERT_EQ(textIn(client->receiveReply()), "ok");

    std::set<std::uint64_t> connections;
    for (const auto& request : endpoint.requests())
        connections.insert(request.connection);
    EXPECT_EQ(connections.size(), 500u);
}

TEST(SampleEndpoint, AClientThatLeavesDisturbsNobody) {
    SampleEndpoint endpoint;
    endpoint.answer("gone", Fault::largeBody(10'000'000));
    {
        Client client(endpoint.port());
        client.send(postOf(chatBody("gone")));
        client.drain(1);
    }

    EXPECT_EQ(statusLineOf(ask(endpoint)), "HTTP/1.1 200 OK");
}

TEST(SampleEndpoint, EndsWhileClientsWait) {
    auto endpoint = std::make_unique<SampleEndpoint>();
    endpoint->answer("m", Fault::neverAnswer());
    endpoint->answer("slow", Completion{.delay = std::chrono::hours(1)});
    Client silent(endpoint->port());
    Client slow(endpoint->port());
    silent.send(postOf(chatBody("m")));
    slow.send(postOf(chatBody("slow")));
    ASSERT_TRUE(endpoint->waitForRequests(2));

    endpoint.reset();

    EXPECT_EQ(silent.receiveAll(), "");
    EXPECT_EQ(slow.receiveAll(), "");
}

TEST(Fault, ClosesBeforeAnyByte) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::closeBeforeAnswer());

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_EQ(outcome.bytes, "");
    EXPECT_EQ(outcome.error, 0);
}

TEST(Fault, ResetsBeforeAnyByte) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::resetBeforeAnswer());

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_EQ(outcome.bytes, "");
    EXPECT_EQ(outcome.error, ECONNRESET);
}

TEST(Fault, ResetsInTheBody) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::resetMidBody("0123456789", 4));

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_THAT(outcome.bytes, HasSubstr("Content-Length: 10\r\n"));
    EXPECT_EQ(bodyOf(outcome.bytes), "0123");
    EXPECT_EQ(outcome.error, ECONNRESET);
}

TEST(Fault, CutsABodyShort) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::truncatedBody("0123456789", 4));

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_THAT(outcome.bytes, HasSubstr("Content-Length: 10\r\n"));
    EXPECT_EQ(bodyOf(outcome.bytes), "0123");
    EXPECT_EQ(outcome.error, 0);
}

TEST(Fault, SendsMoreThanItPromised) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::understatedLength("0123456789", 4));

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_THAT(outcome.bytes, HasSubstr("Content-Length: 4\r\n"));
    EXPECT_EQ(bodyOf(outcome.bytes), "0123456789");
}

TEST(Fault, NeverEndsABodyInChunks) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::endlessChunks());
    Client client(endpoint.port());

    client.send(postOf(chatBody("m")));

    EXPECT_THAT(client.receiveReply(), HasSubstr("Transfer-Encoding: chunked\r\n"));
    EXPECT_GE(client.drain(20'000'000), 20'000'000u);
}

TEST(Fault, EachChunkIsAsLongAsItSays) {
    const auto chunk = Fault::endlessChunks().pieces.at(1).bytes;

    EXPECT_EQ(chunk, "1000\r\n" + std::string(0x1000, 'x') + "\r\n");
}

TEST(Fault, NeverEndsABodyWithALength) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::endlessLength());
    Client client(endpoint.port());

    client.send(postOf(chatBody("m")));

    EXPECT_GE(client.drain(20'000'000), 20'000'000u);
}

TEST(Fault, SendsALargeBodyToTheByte) {
    for (const std::uint64_t size : {0u, 1u, 4095u, 4096u, 4097u, 65'536u, 50'000'001u}) {
        SampleEndpoint endpoint;
        auto reply = Fault::largeBody(size);
        const auto head = reply.pieces.front().bytes;
        reply.ending = sample::Ending::close;
        endpoint.answer("m", std::move(reply));
        Client client(endpoint.port());

        client.send(postOf(chatBody("m")));

        EXPECT_THAT(head, HasSubstr("Content-Length: " + std::to_string(size) + "\r\n"));
        EXPECT_EQ(client.drain(), head.size() + size);
    }
}

TEST(Fault, NestsArrays) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::nestedBody(5000));

    EXPECT_EQ(bodyOf(ask(endpoint)), std::string(5000, '[') + std::string(5000, ']'));
}

TEST(Fault, SendsBytesThatAreNoText) {
    const std::string bytes("\xff\0\xc3(", 4);
    SampleEndpoint endpoint;
    endpoint.answer("m", makeReply(200, bytes, {{"Content-Type", "text/html"}}));

    const auto reply = ask(endpoint);

    EXPECT_EQ(bodyOf(reply), bytes);
    EXPECT_THAT(reply, HasSubstr("Content-Type: text/html\r\n"));
    EXPECT_THAT(reply, Not(HasSubstr("application/json")));
}

TEST(Fault, Redirects) {
    for (const int status : {301, 302, 307, 308}) {
        SampleEndpoint endpoint;
        endpoint.answer("m", Fault::redirect(status, "http://127.0.0.1:9/elsewhere"));

        const auto reply = ask(endpoint);

        EXPECT_THAT(reply, StartsWith("HTTP/1.1 " + std::to_string(status) + ' '));
        EXPECT_THAT(reply, HasSubstr("Location: http://127.0.0.1:9/elsewhere\r\n"));
        EXPECT_EQ(bodyOf(reply), "");
    }
}

TEST(Fault, DripsTheWholeReply) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::slowDrip(makeReply(200, "0123456789"), 16, milliseconds(1)));

    const auto reply = ask(endpoint);

    EXPECT_EQ(bodyOf(reply), "0123456789");
    const auto pauses = static_cast<int>(reply.size() / 16);
    EXPECT_GE(steady_clock::now() - endpoint.requests()[0].arrival, milliseconds(pauses));
}

TEST(Fault, SendsGarbage) {
    SampleEndpoint endpoint;
    endpoint.answer("m", Fault::garbage());

    const auto outcome = askUntilClosed(endpoint);

    EXPECT_EQ(outcome.bytes, std::string("\x16\x03\x01\0 this is no status line\r\n\r\n", 31));
    EXPECT_EQ(outcome.error, 0);
}

// A POST through libcurl, whose TLS is what there is to be met.
struct Fetched {
    CURLcode code = CURLE_OK;
    std::string body;
};

Fetched fetch(const std::string& url, bool trusting) {
    Fetched fetched;
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(curl_easy_init(), curl_easy_cleanup);
    const auto body = chatBody("m");
    const auto append = +[](char* bytes, std::size_t, std::size_t count, void* text) {
        static_cast<std::string*>(text)->append(bytes, count);
        return count;
    };
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &fetched.body);
    curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
    if (trusting) {
        curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYPEER, 0L);
        // Its name is right; it is only unknown who vouches for it.
        curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYHOST, 2L);
    }
    fetched.code = curl_easy_perform(curl.get());
    return fetched;
}

TEST(SampleEndpoint, SpeaksTLSUnderACertificateThatNobodyTrusts) {
    SampleEndpoint endpoint({.security = sample::Security::selfSignedTLS});
    endpoint.answer("m", Completion{.text = "under cover"});
    const auto url = endpoint.baseURL() + "/chat/completions";
    EXPECT_THAT(url, StartsWith("https://127.0.0.1:"));

    EXPECT_EQ(fetch(url, false).code, CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_TRUE(endpoint.requests().empty());

    const auto fetched = fetch(url, true);
    EXPECT_EQ(fetched.code, CURLE_OK);
    EXPECT_THAT(fetched.body, HasSubstr("under cover"));
}

} // namespace
} // namespace quorl::test
