#include "api/ListenerHarness.h"
#include "api/LocalAPIServer.h"
#include "api/RequestParser.h"

#include <gtest/gtest.h>

#include <thread>

namespace quorl {
namespace {

using test::ListeningServer;
using test::RawClient;
using test::replyOf;
using test::Told;

// How requests are read from a connection.
class LocalAPIServerRequest : public testing::Test {
protected:
    // A request of exactly so many bytes, head included.
    static std::string requestOfSize(std::size_t size) {
        const auto headFor = [](std::size_t body) {
            return "POST / HTTP/1.1\r\nContent-Length: " + std::to_string(body) + "\r\n\r\n";
        };
        const std::string head = headFor(size - headFor(size).size());
        return head + std::string(size - head.size(), 'x');
    }

    std::size_t served() { return requests.size(); }

    Told<HTTPRequest> requests; // before the server, whose thread tells them
    ListeningServer listening{[this](const HTTPRequest& request, const LocalAPIServer::Reply& reply) {
        requests.add(request);
        reply({200, std::to_string(request.body.size())});
    }};
    const std::string tooLarge = replyOf("413 Payload Too Large", R"({"error":"The request is too large."})");
};

TEST_F(LocalAPIServerRequest, ReachesTheHandlerAsItWasSent) {
    EXPECT_EQ(listening.ask("delete  /v1/models/A?force=1 HTTP/1.1\r\n X-Name\t:  Value \r\nnonsense\r\n"
                            "Authorization: first\r\nauthorization: last\r\nContent-Length: +3\r\n\r\nabc"),
              replyOf("200 OK", "3"));

    EXPECT_EQ(requests.first(1).front(),
              (HTTPRequest{"delete",
                           "/v1/models/A",
                           {{"x-name", "Value"}, {"authorization", "last"}, {"content-length", "+3"}},
                           "abc"}));
}

TEST_F(LocalAPIServerRequest, IsServedWhereverItIsCut) {
    for (const std::string request :
         {"GET / HTTP/1.1\r\nHost: a\r\n\r\n", "POST / HTTP/1.1\r\nContent-Length: 9\r\n\r\nab\r\n\r\nxyz"}) {
        const auto reply = replyOf("200 OK", request.starts_with("GET") ? "0" : "9");
        for (std::size_t cut = 1; cut < request.size(); ++cut) {
            const RawClient client(listening.port());
            client.send(request.substr(0, cut));
            client.send(request.substr(cut));
            EXPECT_EQ(client.receiveAll(), reply) << cut;
        }
    }
}

TEST_F(LocalAPIServerRequest, IsServedAfterItsLastByteAndNotBefore) {
    const std::string request = "POST / HTTP/1.1\r\nContent-Length: 4\r\n\r\nbody";
    const RawClient slow(listening.port());

    for (std::size_t sent = 0; sent < request.size(); ++sent) {
        EXPECT_EQ(served(), sent);
        slow.send(request.substr(sent, 1));
        // Whoever comes meanwhile is served at once, and tells that the byte before has been looked at.
        EXPECT_EQ(listening.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "0"));
    }

    EXPECT_EQ(slow.receiveAll(), replyOf("200 OK", "4"));
    EXPECT_EQ(served(), request.size() + 1);
}

TEST_F(LocalAPIServerRequest, IsServedAtTheLimit) {
    EXPECT_EQ(listening.ask(requestOfSize(8'000'000)), replyOf("200 OK", "7999956"));
}

TEST_F(LocalAPIServerRequest, IsRefusedOneByteBeyondTheLimit) {
    EXPECT_EQ(listening.ask(requestOfSize(8'000'001)), tooLarge);
    EXPECT_EQ(served(), 0U);
}

TEST_F(LocalAPIServerRequest, IsRefusedBeyondTheLimitWhileItsHeadIsNotWhole) {
    EXPECT_EQ(listening.ask(std::string(8'000'001, 'x')), tooLarge);
    EXPECT_EQ(listening.ask("GET\r\n\r\n" + std::string(7'999'994, 'x')), tooLarge);
    EXPECT_EQ(served(), 0U);
}

TEST_F(LocalAPIServerRequest, GetsNoReplyAtTheLimitWhileItIsNotWhole) {
    const RawClient client(listening.port());
    client.send(std::string(8'000'000, 'x'));
    client.finishSending();

    EXPECT_EQ(client.receiveAll(), "");
}

TEST_F(LocalAPIServerRequest, ItsRefusalReachesAClientThatGoesOnSending) {
    const RawClient client(listening.port());
    client.send(requestOfSize(60'000'000));

    EXPECT_EQ(client.receiveAll(), tooLarge);
}

TEST_F(LocalAPIServerRequest, ItsReplyReachesAClientThatGoesOnSending) {
    const RawClient client(listening.port());
    client.send("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n");
    ASSERT_TRUE(client.hears(test::patience));
    client.send(std::string(20'000'000, 'x'));

    EXPECT_EQ(client.receiveAll(), replyOf("200 OK", "0"));
}

TEST_F(LocalAPIServerRequest, GetsNoReplyWhereTheClientClosesBeforeItIsWhole) {
    for (const std::string part :
         {"", "GET / HT", "POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nabc", "GET\r\n\r\n"}) {
        const RawClient client(listening.port());
        client.send(part);
        client.finishSending();
        EXPECT_EQ(client.receiveAll(), "") << part;
    }
    EXPECT_EQ(served(), 0U);
}

TEST_F(LocalAPIServerRequest, IsForgottenWhereTheClientResetsBeforeItIsWhole) {
    RawClient client(listening.port());
    client.send("POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nabc");
    client.reset();

    EXPECT_EQ(listening.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "0"));
    EXPECT_EQ(served(), 1U);
}

TEST_F(LocalAPIServerRequest, IsServedWhereTheClientHasFinishedSending) {
    const RawClient client(listening.port());
    client.send("POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nhello");
    client.finishSending();

    EXPECT_EQ(client.receiveAll(), replyOf("200 OK", "5"));
}

TEST_F(LocalAPIServerRequest, WaitsForARequestLineThatNeverComes) {
    const RawClient client(listening.port());
    client.send("GET\r\nHost: a\r\n\r\nGET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(listening.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "0"));

    EXPECT_FALSE(client.hears(std::chrono::milliseconds(0)));
    EXPECT_EQ(served(), 1U);
}

TEST_F(LocalAPIServerRequest, IsServedAtOnceWhereItsLengthIsNoNumber) {
    EXPECT_EQ(listening.ask("POST / HTTP/1.1\r\nContent-Length: five\r\n\r\nhello"), replyOf("200 OK", "0"));
}

TEST_F(LocalAPIServerRequest, IsTheOnlyOneOfItsConnection) {
    const RawClient together(listening.port());
    EXPECT_EQ(together.ask("GET /a HTTP/1.1\r\n\r\nGET /b HTTP/1.1\r\n\r\n"), replyOf("200 OK", "0"));
    const RawClient later(listening.port());
    later.send("GET /c HTTP/1.1\r\n\r\n");
    ASSERT_TRUE(later.hears(test::patience));
    later.send("GET /d HTTP/1.1\r\n\r\n");

    EXPECT_EQ(later.receiveAll(), replyOf("200 OK", "0"));
    EXPECT_EQ(listening.ask("GET /e HTTP/1.1\r\n\r\n"), replyOf("200 OK", "0"));
    std::string paths;
    for (const HTTPRequest& request : requests.first(served()))
        paths += request.path;
    EXPECT_EQ(paths, "/a/c/e");
}

} // namespace
} // namespace quorl
