#include "api/LocalAPIServer.h"

#include "api/ListenerHarness.h"

#include <gtest/gtest.h>

#include <ifaddrs.h>

#include <csignal>
#include <future>
#include <memory>
#include <thread>

namespace quorl {
namespace {

using test::ListeningServer;
using test::RawClient;
using test::replyOf;
using test::Told;

bool hasIPv6() {
    const auto address = test::addressOf("::1", 0);
    const int descriptor = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int result = ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(descriptor);
    return result == 0;
}

// An IPv4 address of this machine that others reach it by; empty if it has none.
std::string outerAddress() {
    ifaddrs* all = nullptr;
    if (getifaddrs(&all) != 0)
        return "";
    std::string found;
    for (const ifaddrs* each = all; each != nullptr; each = each->ifa_next) {
        if (each->ifa_addr == nullptr || each->ifa_addr->sa_family != AF_INET)
            continue;
        std::array<char, INET_ADDRSTRLEN> text{};
        const auto& address = reinterpret_cast<const sockaddr_in*>(each->ifa_addr)->sin_addr;
        inet_ntop(AF_INET, &address, text.data(), text.size());
        if (!std::string_view(text.data()).starts_with("127."))
            found = text.data();
    }
    freeifaddrs(all);
    return found;
}

TEST(LocalAPIServer, ListensOnEveryAddressOfIPv4) {
    const ListeningServer listening;

    for (const std::string& host : {std::string("127.0.0.1"), std::string("127.0.0.2"), outerAddress()}) {
        if (host.empty())
            continue;
        const RawClient client(listening.port(), host);
        EXPECT_EQ(client.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / ")) << host;
    }
}

TEST(LocalAPIServer, ListensOnIPv6) {
    if (!hasIPv6())
        GTEST_SKIP() << "this machine has no IPv6";
    const ListeningServer listening;

    EXPECT_EQ(RawClient(listening.port(), "::1").ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / "));
}

TEST(LocalAPIServer, KnowsNothingBeforeItsStart) {
    const LocalAPIServer server;

    EXPECT_EQ(server.boundPort(), std::nullopt);
    EXPECT_EQ(server.failure(), std::nullopt);
}

TEST(LocalAPIServer, KnowsItsPortAsSoonAsItIsStarted) {
    LocalAPIServer server;
    const auto port = test::findFreePort();

    server.start(port);

    EXPECT_EQ(server.boundPort(), port);
}

TEST(LocalAPIServer, TellsOnItsOwnThreadThatItListens) {
    std::promise<std::thread::id> told;
    LocalAPIServer server;
    server.onState = [&](const auto&) { told.set_value(std::this_thread::get_id()); };

    server.start(test::findFreePort());

    EXPECT_NE(told.get_future().get(), std::this_thread::get_id());
}

TEST(LocalAPIServer, TellsTheSystemsReasonWhereThePortIsTaken) {
    const ListeningServer first;
    Told<std::optional<std::string>> states;
    LocalAPIServer second;
    second.onState = [&](const auto& failure) { states.add(failure); };

    second.start(first.port());

    EXPECT_EQ(states.first(1).front(), "Address already in use");
    EXPECT_EQ(second.failure(), "Address already in use");
    EXPECT_EQ(second.boundPort(), first.port());
    EXPECT_EQ(first.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / "));
}

TEST(LocalAPIServer, TellsTheReasonWhereThePortIsTakenForIPv6Alone) {
    if (!hasIPv6())
        GTEST_SKIP() << "this machine has no IPv6";
    const int other = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(other, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
    auto address = test::addressOf("::1", 0);
    socklen_t size = sizeof address;
    ASSERT_EQ(::bind(other, reinterpret_cast<const sockaddr*>(&address), size), 0);
    ASSERT_EQ(::listen(other, 1), 0);
    ASSERT_EQ(::getsockname(other, reinterpret_cast<sockaddr*>(&address), &size), 0);
    const auto port = ntohs(reinterpret_cast<sockaddr_in6&>(address).sin6_port);
    Told<std::optional<std::string>> states;
    LocalAPIServer server;
    server.onState = [&](const auto& failure) { states.add(failure); };

    server.start(port);

    EXPECT_EQ(states.first(1).front(), "Address already in use");
    EXPECT_THROW(RawClient{port}, std::system_error); // nor does it stay on IPv4
    ::close(other);
}

TEST(LocalAPIServer, DoesNotTryAgain) {
    auto first = std::make_unique<ListeningServer>();
    const auto port = first->port();
    Told<std::optional<std::string>> states;
    LocalAPIServer second;
    second.onState = [&](const auto& failure) { states.add(failure); };
    second.start(port);
    static_cast<void>(states.first(1));

    first.reset();

    EXPECT_THROW(RawClient{port}, std::system_error);
    EXPECT_EQ(states.size(), 1U);
}

TEST(LocalAPIServer, ClearsAFailureOnceItListens) {
    const ListeningServer first;
    ListeningServer second;
    const std::size_t former = second.states.size();
    second.server.start(first.port());
    EXPECT_EQ(second.states.first(former + 1).back(), "Address already in use");

    second.start();

    EXPECT_EQ(second.server.failure(), std::nullopt);
    EXPECT_EQ(second.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / "));
}

TEST(LocalAPIServer, RefusesPortZeroAtOnce) {
    LocalAPIServer server;

    server.start(0);

    EXPECT_EQ(server.failure(), "Port 0 is not valid.");
    EXPECT_EQ(server.boundPort(), std::nullopt);
}

TEST(LocalAPIServer, StopsListeningForPortZeroAndKeepsThePortInMind) {
    ListeningServer listening;
    const auto port = listening.port();
    // The answer on another port comes from the thread that closed the first.
    listening.server.start(0);
    EXPECT_EQ(listening.server.failure(), "Port 0 is not valid.");
    EXPECT_EQ(listening.server.boundPort(), port);

    listening.start();

    EXPECT_EQ(listening.server.failure(), std::nullopt);
    EXPECT_THROW(RawClient{port}, std::system_error);
}

TEST(LocalAPIServer, TellsNothingOfAStartThatAnotherHasOvertaken) {
    const ListeningServer other;
    Told<std::optional<std::string>> states;
    std::promise<void> allStarted;
    LocalAPIServer server;
    server.onState = [&, wait = allStarted.get_future().share()](const auto& failure) {
        wait.wait(); // holds up the starts that follow the first
        states.add(failure);
    };

    server.start(test::findFreePort());
    server.start(test::findFreePort());
    server.start(0);
    server.start(other.port());
    allStarted.set_value();

    const auto told = states.first(1);
    EXPECT_EQ(told.front() ? told.front() : states.first(2).back(), "Address already in use");
    EXPECT_EQ(server.failure(), "Address already in use");
}

TEST(LocalAPIServer, ListensOnAnotherPortInPlaceOfTheFirst) {
    ListeningServer listening;
    const auto former = listening.port();

    listening.start();

    ASSERT_NE(listening.port(), former);
    EXPECT_EQ(listening.ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / "));
    EXPECT_THROW(RawClient{former}, std::system_error);
}

TEST(LocalAPIServer, FinishesOnItsFormerPortWhatItHasBegun) {
    Told<LocalAPIServer::Reply> replies;
    ListeningServer listening(
        [&](const HTTPRequest&, LocalAPIServer::Reply reply) { replies.add(std::move(reply)); });
    const RawClient client(listening.port());
    client.send("GET / HTTP/1.1\r\n\r\n");
    const auto reply = replies.first(1).front();

    listening.start();
    reply({200, "late"});

    EXPECT_EQ(client.receiveAll(), replyOf("200 OK", "late"));
}

TEST(LocalAPIServer, StartsAgainAtOnceOnAPortThatHasServed) {
    auto first = std::make_unique<ListeningServer>();
    const auto port = first->port();
    // The side that closes first, as the server does, keeps the port in its books for a minute.
    EXPECT_EQ(first->ask("GET / HTTP/1.1\r\n\r\n"), replyOf("200 OK", "GET / "));
    first.reset();
    Told<std::optional<std::string>> states;
    LocalAPIServer second;
    second.onState = [&](const auto& failure) { states.add(failure); };

    second.start(port);

    EXPECT_EQ(states.first(1).front(), std::nullopt);
}

TEST(LocalAPIServer, TellsThatItIsNotReadyWithoutAHandler) {
    const ListeningServer listening(nullptr);

    EXPECT_EQ(listening.ask("GET / HTTP/1.1\r\n\r\n"),
              replyOf("500 Error", R"({"error":"The API is not ready."})"));
}

TEST(LocalAPIServer, NeedsNoObserver) {
    LocalAPIServer server;
    const auto port = test::findFreePort();
    server.start(port);

    const auto listens = [port] {
        try {
            RawClient client(port);
            return true;
        } catch (const std::system_error&) {
            return false;
        }
    };
    const auto end = std::chrono::steady_clock::now() + test::patience;
    while (!listens() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();

    EXPECT_TRUE(listens());
}

TEST(LocalAPIServer, DropsItsConnectionsAtItsEnd) {
    auto listening = std::make_unique<ListeningServer>(
        [](const HTTPRequest&, const LocalAPIServer::Reply&) {}); // never answers
    const RawClient silent(listening->port());
    const RawClient waiting(listening->port());
    waiting.send("GET / HTTP/1.1\r\n\r\n");
    const RawClient halfway(listening->port());
    halfway.send("GET / HT");

    listening.reset();

    for (const RawClient* client : {&silent, &waiting, &halfway})
        EXPECT_TRUE(client->hears(test::patience));
}

TEST(LocalAPIServer, LetsAReplyComeAfterItsEnd) {
    Told<LocalAPIServer::Reply> replies;
    auto listening = std::make_unique<ListeningServer>(
        [&](const HTTPRequest&, LocalAPIServer::Reply reply) { replies.add(std::move(reply)); });
    const RawClient client(listening->port());
    client.send("GET / HTTP/1.1\r\n\r\n");
    const auto reply = replies.first(1).front();

    listening.reset();
    reply({200, "too late"});

    EXPECT_TRUE(client.hears(test::patience));
}

TEST(LocalAPIServer, EndsWhileRepliesAreGiven) {
    constexpr std::size_t count = 50;
    Told<LocalAPIServer::Reply> replies;
    auto listening = std::make_unique<ListeningServer>(
        [&](const HTTPRequest&, LocalAPIServer::Reply reply) { replies.add(std::move(reply)); });
    std::vector<RawClient> clients;
    for (std::size_t index = 0; index < count; ++index) {
        clients.emplace_back(listening->port());
        clients.back().send("GET / HTTP/1.1\r\n\r\n");
    }
    const auto all = replies.first(count);

    std::thread other([&all] {
        for (const auto& reply : all)
            reply({200, "now or never"});
    });
    listening.reset();
    other.join();

    for (const RawClient& client : clients)
        EXPECT_TRUE(client.hears(test::patience));
}

TEST(LocalAPIServerDeathTest, ANegativeLengthEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto askForIt = [] {
        const ListeningServer listening;
        static_cast<void>(listening.ask("POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n"));
    };

    EXPECT_EXIT(askForIt(), testing::KilledBySignal(SIGABRT), "negative length");
}

} // namespace
} // namespace quorl
