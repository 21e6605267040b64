#pragma once

#include "api/LocalAPIServer.h"
#include "base/ThreadSafety.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

// A listener on loopback and clients that say and hear exact bytes.
namespace quorl::test {

constexpr std::chrono::seconds patience(60); // for what has to come

inline sockaddr_storage addressOf(const std::string& host, std::uint16_t port) {
    sockaddr_storage address{};
    auto* const ipv4 = reinterpret_cast<sockaddr_in*>(&address);
    auto* const ipv6 = reinterpret_cast<sockaddr_in6*>(&address);
    if (inet_pton(AF_INET6, host.c_str(), &ipv6->sin6_addr) == 1) {
        address.ss_family = AF_INET6;
        ipv6->sin6_port = htons(port);
        return address;
    }
    if (inet_pton(AF_INET, host.c_str(), &ipv4->sin_addr) != 1)
        throw std::invalid_argument(host);
    address.ss_family = AF_INET;
    ipv4->sin_port = htons(port);
    return address;
}

class RawClient {
public:
    enum class Family { ipv4 = AF_INET, ipv6 = AF_INET6 };

    /// Not connected yet.
    explicit RawClient(Family family)
        : descriptor(::socket(static_cast<int>(family), SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        require(descriptor);
        const timeval time{patience.count(), 0};
        require(setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time));
        require(setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof time));
    }
    explicit RawClient(std::uint16_t port, const std::string& host = "127.0.0.1")
        : RawClient(static_cast<Family>(addressOf(host, port).ss_family)) {
        connect(port, host);
    }
    RawClient(RawClient&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    RawClient& operator=(RawClient&&) = delete;
    ~RawClient() { close(); }

    void connect(std::uint16_t port, const std::string& host = "127.0.0.1") const {
        const auto address = addressOf(host, port);
        require(::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    }

    void send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const auto count = ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            require(count);
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    void finishSending() const { require(shutdown(descriptor, SHUT_WR)); }

    /// Until the server has finished; throws if it never does or resets the connection.
    [[nodiscard]] std::string receiveAll() const {
        std::string text;
        std::array<char, 65'536> bytes{};
        while (true) {
            const auto count = ::recv(descriptor, bytes.data(), bytes.size(), 0);
            require(count);
            if (count == 0)
                return text;
            text.append(bytes.data(), static_cast<std::size_t>(count));
        }
    }

    [[nodiscard]] std::string ask(std::string_view request) const {
        send(request);
        return receiveAll();
    }

    /// There is something to read, or the end, within that time.
    [[nodiscard]] bool hears(std::chrono::milliseconds within) const { return waitFor(POLLIN, within); }

    /// The connection is broken for both directions within that time.
    [[nodiscard]] bool isCutOff(std::chrono::milliseconds within) const { return waitFor(0, within); }

    void close() {
        if (descriptor >= 0)
            ::close(std::exchange(descriptor, -1));
    }

    /// Without a farewell.
    void reset() {
        const linger option{1, 0};
        require(setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &option, sizeof option));
        close();
    }

private:
    static void require(ssize_t result) {
        if (result < 0)
            throw std::system_error(errno, std::generic_category());
    }

    bool waitFor(short events, std::chrono::milliseconds time) const {
        pollfd waited{descriptor, events, 0};
        return ::poll(&waited, 1, static_cast<int>(time.count())) > 0;
    }

    int descriptor;
};

// A port that nobody listened on a moment ago.
inline std::uint16_t findFreePort() {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = addressOf("127.0.0.1", 0);
    socklen_t size = sizeof address;
    const bool isBound = ::bind(descriptor, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(descriptor);
    if (!isBound)
        throw std::runtime_error("no free port");
    return ntohs(reinterpret_cast<sockaddr_in&>(address).sin_port);
}

// What the server's thread tells, for the test's to wait for.
template <class Value>
class Told {
public:
    void add(Value value) EXCLUDES(lock) {
        const MutexLock held(lock);
        values.push_back(std::move(value));
        changed.notifyAll();
    }

    /// The first `count`, once there are as many; throws if there never are.
    std::vector<Value> first(std::size_t count) EXCLUDES(lock) {
        const auto end = std::chrono::steady_clock::now() + patience;
        MutexLock held(lock);
        while (values.size() < count) {
            if (std::chrono::steady_clock::now() > end)
                throw std::runtime_error("not told in time");
            changed.waitFor(held, std::chrono::milliseconds(100));
        }
        return {values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count)};
    }

    std::size_t size() EXCLUDES(lock) {
        const MutexLock held(lock);
        return values.size();
    }

private:
    Mutex lock;
    Condition changed;
    std::vector<Value> values GUARDED_BY(lock);
};

// The same request, told in one line.
inline HTTPResponse echo(const HTTPRequest& request) {
    return {200, request.method + ' ' + request.path + ' ' + request.body};
}

// A server that listens. Another program may take a free port before it does, and then another is tried.
class ListeningServer {
public:
    using States = Told<std::optional<std::string>>;

    explicit ListeningServer(LocalAPIServer::Handler handler = [](const HTTPRequest& request,
                                                                  const LocalAPIServer::Reply& reply) {
        reply(echo(request));
    }) {
        server.handler = std::move(handler);
        server.onState = [this](const auto& failure) { states.add(failure); };
        start();
    }

    /// On another port than before.
    void start() {
        constexpr int attempts = 20;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            const std::size_t former = states.size();
            server.start(findFreePort());
            if (!states.first(former + 1).back())
                return;
        }
        throw std::runtime_error("no port to listen on");
    }

    [[nodiscard]] std::uint16_t port() const { return server.boundPort().value(); }

    /// What a client of its own is told.
    [[nodiscard]] std::string ask(std::string_view request) const { return RawClient(port()).ask(request); }

    States states; // before the server, whose thread tells it
    LocalAPIServer server;
};

/// A whole reply of that status line, such as "200 OK".
inline std::string replyOf(const std::string& status, const std::string& body) {
    return "HTTP/1.1 " + status +
           "\r\n"
           "Content-Type: application/json; charset=utf-8\r\n"
           "Content-Length: " +
           std::to_string(body.size()) +
           "\r\n"
           "Connection: close\r\n"
           "Access-Control-Allow-Origin: *\r\n"
           "Access-Control-Allow-Headers: Authorization, Content-Type\r\n"
           "Access-Control-Allow-Methods: GET, POST, DELETE, OPTIONS\r\n"
           "\r\n" +
           body;
}

} // namespace quorl::test
