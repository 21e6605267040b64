#include "api/ListenerHarness.h"
#include "api/LocalAPIServer.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>

#include <filesystem>
#include <thread>

namespace quorl {
namespace {

using test::ListeningServer;
using test::RawClient;
using test::replyOf;

constexpr std::string_view plainRequest = "GET / HTTP/1.1\r\n\r\n";

// The limit on this process's descriptors, as it was again at the end of the scope.
class DescriptorLimit {
public:
    DescriptorLimit() { getrlimit(RLIMIT_NOFILE, &former); }
    ~DescriptorLimit() {
        setrlimit(RLIMIT_NOFILE, &former);
        for (const int descriptor : taken)
            ::close(descriptor);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

    /// False if the system does not grant as many.
    bool raiseTo(rlim_t count) const {
        const rlimit wanted{std::max(count, former.rlim_cur), former.rlim_max};
        return former.rlim_cur >= count || setrlimit(RLIMIT_NOFILE, &wanted) == 0;
    }

    /// So many more can be had, and no more.
    void leave(std::size_t count) {
        const rlimit scarce{200, former.rlim_max};
        setrlimit(RLIMIT_NOFILE, &scarce);
        for (int next = 0; (next = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0;)
            taken.push_back(next);
        for (; count > 0; --count) {
            ::close(taken.back());
            taken.pop_back();
        }
    }

private:
    rlimit former{};
    std::vector<int> taken;
};

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

std::chrono::microseconds processorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto of = [](const timeval& time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return of(usage.ru_utime) + of(usage.ru_stime);
}

TEST(LocalAPIServerLoad, ServesFiveHundredClientsAtOnce) {
    constexpr std::size_t count = 500;
    const DescriptorLimit limit;
    if (!limit.raiseTo(2 * count + 100))
        GTEST_SKIP() << "the system grants too few descriptors";
    const ListeningServer listening;
    std::vector<RawClient> clients;
    for (std::size_t index = 0; index < count; ++index)
        clients.emplace_back(listening.port());

    for (std::size_t index = 0; index < count; ++index)
        clients[index].send("GET /" + std::to_string(index) + " HTTP/1.1\r\n\r\n");

    for (std::size_t index = 0; index < count; ++index)
        EXPECT_EQ(clients[index].receiveAll(), replyOf("200 OK", "GET /" + std::to_string(index) + " "));
}

TEST(LocalAPIServerLoad, ServesTheNextClientBesideFourThousandSilentOnes) {
    constexpr std::size_t count = 4'000;
    const DescriptorLimit limit;
    if (!limit.raiseTo(2 * count + 100))
        GTEST_SKIP() << "the system grants too few descriptors";
    const ListeningServer listening;
    std::vector<RawClient> silent;
    for (std::size_t index = 0; index < count; ++index)
        silent.emplace_back(listening.port());

    EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "GET / "));
    EXPECT_EQ(silent.front().ask(plainRequest), replyOf("200 OK", "GET / "));
}

TEST(LocalAPIServerLoad, ServesFastClientsBesideASlowOne) {
    const ListeningServer listening;
    const RawClient slow(listening.port());

    for (const char byte : std::string("POST / HTTP/1.1\r\nContent-Length: 3\r\n\r\nabc")) {
        EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "GET / "));
        slow.send(std::string(1, byte));
    }

    EXPECT_EQ(slow.receiveAll(), replyOf("200 OK", "POST / abc"));
}

TEST(LocalAPIServerLoad, ServesFromManyThreadsAtOnce) {
    const ListeningServer listening;
    std::vector<std::thread> threads;
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([&listening] {
            for (int round = 0; round < 50; ++round)
                EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "GET / "));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(LocalAPIServerLoad, GivesBackEveryDescriptor) {
    const ListeningServer listening;
    const auto before = openDescriptors();

    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(listening.ask(plainRequest), replyOf("200 OK", "GET / "));
        const RawClient quitter(listening.port());
        quitter.send("GET / HT");
        RawClient breaker(listening.port());
        breaker.send(plainRequest);
        breaker.reset();
    }

    const auto end = std::chrono::steady_clock::now() + test::patience;
    while (openDescriptors() > before && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(openDescriptors(), before);
}

TEST(LocalAPIServerLoad, CutsOffAClientThatNeverCloses) {
    const ListeningServer listening;
    const RawClient client(listening.port());
    EXPECT_EQ(client.ask(plainRequest), replyOf("200 OK", "GET / "));

    const auto end = std::chrono::steady_clock::now() + test::patience;
    const auto talks = [&client] {
        try {
            client.send("still here");
            return true;
        } catch (const std::system_error&) {
            return false;
        }
    };
    while (talks() && std::chrono::steady_clock::now() < end)
        static_cast<void>(client.isCutOff(std::chrono::milliseconds(50)));

    EXPECT_FALSE(talks());
}

TEST(LocalAPIServerLoad, WaitsPatientlyForDescriptors) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The check of virtual calls that comes with it needs descriptors of its own.";
#endif
    const ListeningServer listening;
    std::vector<RawClient> clients; // made beforehand, since they need descriptors of their own
    for (int index = 0; index < 5; ++index)
        clients.emplace_back(RawClient::Family::ipv4);
    DescriptorLimit limit;
    limit.leave(3);

    for (const RawClient& client : clients)
        client.connect(listening.port());
    const auto before = processorTime();
    clients[3].send(plainRequest);
    clients[4].send(plainRequest);
    // Nothing comes, and waiting for it takes hardly any of the processor's time.
    EXPECT_FALSE(clients[3].hears(std::chrono::milliseconds(500)));
    EXPECT_LT(processorTime() - before, std::chrono::milliseconds(100));

    clients[0].close();
    EXPECT_EQ(clients[3].receiveAll(), replyOf("200 OK", "GET / "));
    clients[3].close();
    EXPECT_EQ(clients[4].receiveAll(), replyOf("200 OK", "GET / "));
}

} // namespace
} // namespace quorl
