#include "api/ListenerHarness.h"
#include "api/LocalAPIServer.h"
#include "support/ScarceMemory.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <thread>

namespace quorl {
namespace {

using test::ListeningServer;
using test::RawClient;
using test::replyOf;
using test::Told;

constexpr std::string_view plainRequest = "GET / HTTP/1.1\r\n\r\n";

std::string replyTo(HTTPResponse response) {
    const ListeningServer listening(
        [&](const HTTPRequest&, const LocalAPIServer::Reply& reply) { reply(response); });
    return listening.ask(plainRequest);
}

TEST(LocalAPIServerReply, HasSevenHeaderLinesAndTheBody) {
    EXPECT_EQ(replyTo({200, R"({"a":1})"}), "HTTP/1.1 200 OK\r\n"
                                            "Content-Type: application/json; charset=utf-8\r\n"
                                            "Content-Length: 7\r\n"
                                            "Connection: close\r\n"
                                            "Access-Control-Allow-Origin: *\r\n"
                                            "Access-Control-Allow-Headers: Authorization, Content-Type\r\n"
                                            "Access-Control-Allow-Methods: GET, POST, DELETE, OPTIONS\r\n"
                                            "\r\n"
                                            R"({"a":1})");
}

TEST(LocalAPIServerReply, HasThemWithoutABodyToo) {
    EXPECT_EQ(replyTo({204, ""}), "HTTP/1.1 204 No Content\r\n"
                                  "Content-Type: application/json; charset=utf-8\r\n"
                                  "Content-Length: 0\r\n"
                                  "Connection: close\r\n"
                                  "Access-Control-Allow-Origin: *\r\n"
                                  "Access-Control-Allow-Headers: Authorization, Content-Type\r\n"
                                  "Access-Control-Allow-Methods: GET, POST, DELETE, OPTIONS\r\n"
                                  "\r\n");
}

TEST(LocalAPIServerReply, NamesTheReasonOfAStatus) {
    for (const auto& [status, line] : std::vector<std::pair<std::int64_t, std::string>>{
             {200, "200 OK"},
             {202, "202 Accepted"},
             {204, "204 No Content"},
             {400, "400 Bad Request"},
             {401, "401 Unauthorized"},
             {404, "404 Not Found"},
             {409, "409 Conflict"},
             {413, "413 Payload Too Large"},
             {500, "500 Error"},
             {201, "201 Error"},
             {-1, "-1 Error"},
             {9'000'000'000, "9000000000 Error"},
         })
        EXPECT_EQ(replyTo({status, "{}"}), replyOf(line, "{}"));
}

TEST(LocalAPIServerReply, CountsTheBytesOfItsBody) {
    const std::string body = "\"gr\u00fc\u00df\"";

    EXPECT_EQ(replyTo({200, body}), replyOf("200 OK", body));
    EXPECT_NE(replyTo({200, body}).find("Content-Length: 8\r\n"), std::string::npos);
}

TEST(LocalAPIServerReply, IsSentWholeHoweverLargeItIs) {
    const std::string body(20'000'000, 'x');

    EXPECT_TRUE(replyTo({200, body}) == replyOf("200 OK", body));
}

TEST(LocalAPIServerReply, MayComeFromAnotherThreadAndLater) {
    Told<LocalAPIServer::Reply> replies;
    const ListeningServer listening(
        [&](const HTTPRequest&, LocalAPIServer::Reply reply) { replies.add(std::move(reply)); });
    const RawClient client(listening.port());
    client.send(plainRequest);
    const auto reply = replies.first(1).front();
    EXPECT_FALSE(client.hears(std::chrono::milliseconds(0)));

    std::thread([&reply] { reply({200, "from elsewhere"}); }).join();

    EXPECT_EQ(client.receiveAll(), replyOf("200 OK", "from elsewhere"));
}

TEST(LocalAPIServerReply, GoesToItsOwnClientInWhateverOrder) {
    constexpr std::size_t count = 20;
    Told<std::pair<std::string, LocalAPIServer::Reply>> asked;
    const ListeningServer listening([&](const HTTPRequest& request, LocalAPIServer::Reply reply) {
        asked.add({request.path, std::move(reply)});
    });
    std::vector<RawClient> clients;
    for (std::size_t index = 0; index < count; ++index) {
        clients.emplace_back(listening.port());
        clients.back().send("GET /" + std::to_string(index) + " HTTP/1.1\r\n\r\n");
    }

    auto all = asked.first(count);
    for (auto each = all.rbegin(); each != all.rend(); ++each)
        each->second({200, each->first});

    for (std::size_t index = 0; index < count; ++index)
        EXPECT_EQ(clients[index].receiveAll(), replyOf("200 OK", "/" + std::to_string(index)));
}

TEST(LocalAPIServerReply, IsTheFirstThatIsGiven) {
    Told<LocalAPIServer::Reply> replies;
    const std::string body(20'000'000, 'x');
    const ListeningServer listening([&](const HTTPRequest&, const LocalAPIServer::Reply& reply) {
        reply({200, body});
        reply({404, "second"});
        replies.add(reply);
    });
    const RawClient client(listening.port());

    EXPECT_TRUE(client.ask(plainRequest) == replyOf("200 OK", body));
    replies.first(1).front()({404, "third"});
    EXPECT_TRUE(listening.ask(plainRequest) == replyOf("200 OK", body));
}

TEST(LocalAPIServerReply, MayBeGivenUpByTheClient) {
    const std::string body(20'000'000, 'x');
    Told<LocalAPIServer::Reply> replies;
    const ListeningServer listening([&](const HTTPRequest& request, LocalAPIServer::Reply reply) {
        if (request.path == "/later")
            return replies.add(std::move(reply));
        reply({200, request.path == "/large" ? body : "small"});
    });
    RawClient during(listening.port());
    during.send("GET /large HTTP/1.1\r\n\r\n");
    ASSERT_TRUE(during.hears(test::patience));
    RawClient before(listening.port());
    before.send("GET /later HTTP/1.1\r\n\r\n");
    const auto reply = replies.first(1).front();

    during.reset();
    before.reset();
    reply({200, body});

    EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "small"));
}

TEST(LocalAPIServerReply, IsNotSentWhereTheHandlerFails) {
    const ListeningServer listening([](const HTTPRequest& request, const LocalAPIServer::Reply& reply) {
        reply({200, "not this"});
        if (request.path == "/memory")
            throw std::bad_alloc();
        if (request.path == "/other")
            throw std::runtime_error("other");
    });

    EXPECT_EQ(listening.ask("GET /memory HTTP/1.1\r\n\r\n"), "");
    EXPECT_EQ(listening.ask("GET /other HTTP/1.1\r\n\r\n"), "");
    EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "not this"));
}

TEST(LocalAPIServerReply, IsNotSentWhereThereIsNoMemoryForIt) {
    if (!test::ScarceMemory::isSurvived)
        GTEST_SKIP() << "a sanitizer ends a program that finds no memory";
    Told<LocalAPIServer::Reply> replies;
    const ListeningServer listening(
        [&](const HTTPRequest&, LocalAPIServer::Reply reply) { replies.add(std::move(reply)); });
    const RawClient client(listening.port());
    const RawClient next(listening.port());
    client.send(plainRequest);
    const auto large = replies.first(1).front();
    next.send(plainRequest);
    const auto small = replies.first(2).back();
    HTTPResponse response{200, std::string(100'000'000, 'x')};

    {
        const test::ScarceMemory scarce(10'000'000);
        large(std::move(response));
        EXPECT_EQ(client.receiveAll(), "");
    }
    small({200, "small"});

    EXPECT_EQ(next.receiveAll(), replyOf("200 OK", "small"));
}

} // namespace
} // namespace quorl
