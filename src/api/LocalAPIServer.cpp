#include "api/LocalAPIServer.h"

#include "api/Connections.h"
#include "base/ThreadSafety.h"

#include <asio.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quorl {

namespace {

using asio::ip::tcp;

constexpr auto descriptorPause = std::chrono::milliseconds(50);
constexpr int largestWelcome = 64; // clients in a row, before those that are connected have their turn

// One of the sockets that take clients in, one for IPv4 and one for IPv6.
struct Acceptor {
    Acceptor(asio::io_context& queue, const tcp& version) : protocol(version), socket(queue), pause(queue) {}

    const tcp protocol;
    tcp::acceptor socket;
    asio::steady_timer pause;
};

// The socket owns the descriptor from here on, or nobody does.
template <class Socket>
void adopt(Socket& socket, const tcp& protocol, int descriptor) {
    try {
        socket.assign(protocol, descriptor);
    } catch (...) {
        ::close(descriptor);
        throw;
    }
}

// Asio's own sockets would be inherited by the programs that this one starts, and one of those could keep the
// port, or a connection whose end a client waits for, long beyond our own end.
std::shared_ptr<Acceptor> listenOn(asio::io_context& queue, const tcp& protocol, std::uint16_t port) {
    auto acceptor = std::make_shared<Acceptor>(queue, protocol);
    const int descriptor = ::socket(protocol.family(), SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category());
    adopt(acceptor->socket, protocol, descriptor);
    // A port on which an earlier process's connections are still winding up can be had at once.
    acceptor->socket.set_option(tcp::acceptor::reuse_address(true));
    if (protocol == tcp::v6())
        acceptor->socket.set_option(asio::ip::v6_only(true)); // the other socket takes IPv4
    acceptor->socket.bind(tcp::endpoint(protocol, port));
    acceptor->socket.listen();
    return acceptor;
}

bool isWithoutIPv6(const std::error_code& error) {
    return error == std::errc::address_family_not_supported || error == std::errc::address_not_available;
}

// On all interfaces.
std::vector<std::shared_ptr<Acceptor>> listenOn(asio::io_context& queue, std::uint16_t port) {
    std::vector acceptors{listenOn(queue, tcp::v4(), port)};
    try {
        acceptors.push_back(listenOn(queue, tcp::v6(), port));
    } catch (const std::system_error& error) {
        if (!isWithoutIPv6(error.code()))
            throw;
    }
    return acceptors;
}

} // namespace

// The thread, and what is done on it.
class LocalAPIServer::Listener {
public:
    explicit Listener(const LocalAPIServer& owner)
        : onState(owner.onState), connections(queue, owner.handler), thread([this] { queue.run(); }) {}
    ~Listener();

    void start(std::uint16_t port) EXCLUDES(lock);
    std::optional<std::uint16_t> boundPort() const EXCLUDES(lock);
    std::optional<std::string> failure() const EXCLUDES(lock);

private:
    // The queue's.
    void listen(std::uint16_t port, std::uint64_t start);
    void report(const std::optional<std::string>& failure, std::uint64_t start) EXCLUDES(lock);
    void accept(const std::shared_ptr<Acceptor>& acceptor);
    void welcome(const std::shared_ptr<Acceptor>& acceptor);
    void take(int descriptor, const tcp& protocol);
    void pause(const std::shared_ptr<Acceptor>& acceptor);

    const StateObserver& onState;
    asio::io_context queue{1};
    asio::executor_work_guard<asio::io_context::executor_type> work{queue.get_executor()};
    Connections connections;                          // the queue's
    std::vector<std::shared_ptr<Acceptor>> acceptors; // the queue's; shared with what is awaited on them

    mutable Mutex lock;
    std::uint64_t lastStart GUARDED_BY(lock) = 0;
    std::optional<std::uint16_t> lastPort GUARDED_BY(lock);
    std::optional<std::string> lastFailure GUARDED_BY(lock);

    std::thread thread; // last: it uses all of the above
};

LocalAPIServer::Listener::~Listener() {
    queue.stop();
    thread.join();
}

void LocalAPIServer::Listener::start(std::uint16_t port) {
    std::uint64_t start = 0;
    {
        const MutexLock held(lock);
        start = ++lastStart;
        if (port == 0) { // to the system that would be any port
            lastFailure = "Port 0 is not valid.";
        } else {
            lastPort = port;
            lastFailure.reset();
        }
    }
    asio::post(queue, [this, port, start] { listen(port, start); });
}

std::optional<std::uint16_t> LocalAPIServer::Listener::boundPort() const {
    const MutexLock held(lock);
    return lastPort;
}

std::optional<std::string> LocalAPIServer::Listener::failure() const {
    const MutexLock held(lock);
    return lastFailure;
}

void LocalAPIServer::Listener::listen(std::uint16_t port, std::uint64_t start) {
    for (const auto& acceptor : std::exchange(acceptors, {})) {
        std::error_code ignored; // a socket is closed whatever close() says
        acceptor->socket.close(ignored);
        acceptor->pause.cancel();
    }
    if (port == 0)
        return;
    try {
        acceptors = listenOn(queue, port);
    } catch (const std::system_error& error) {
        return report(error.code().message(), start);
    }
    for (const auto& acceptor : acceptors)
        accept(acceptor);
    report(std::nullopt, start);
}

// A start that another has overtaken has nothing to say any more.
void LocalAPIServer::Listener::report(const std::optional<std::string>& failure, std::uint64_t start) {
    {
        const MutexLock held(lock);
        if (start != lastStart)
            return;
        lastFailure = failure;
    }
    if (onState)
        onState(failure);
}

void LocalAPIServer::Listener::accept(const std::shared_ptr<Acceptor>& acceptor) {
    acceptor->socket.async_wait(tcp::acceptor::wait_read, [this, acceptor](const std::error_code& error) {
        if (!error && acceptor->socket.is_open())
            welcome(acceptor);
    });
}

void LocalAPIServer::Listener::welcome(const std::shared_ptr<Acceptor>& acceptor) {
    for (int count = 0; count < largestWelcome; ++count) {
        const int descriptor = ::accept4(acceptor->socket.native_handle(), nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor < 0 && errno == ECONNABORTED)
            continue; // this one has given up waiting
        if (descriptor < 0 && errno != EAGAIN)
            return pause(acceptor);
        if (descriptor < 0)
            break;
        take(descriptor, acceptor->protocol);
    }
    accept(acceptor);
}

void LocalAPIServer::Listener::take(int descriptor, const tcp& protocol) {
    try {
        tcp::socket socket(queue);
        adopt(socket, protocol, descriptor);
        socket.non_blocking(true);
        connections.add(std::move(socket));
    } catch (const std::exception&) {
        // No memory for this one: it is closed, and the next may find some.
    }
}

// Out of descriptors or memory, which others have to give back. The clients stay in the kernel's queue.
void LocalAPIServer::Listener::pause(const std::shared_ptr<Acceptor>& acceptor) {
    acceptor->pause.expires_after(descriptorPause);
    acceptor->pause.async_wait([this, acceptor](const std::error_code& error) {
        if (!error && acceptor->socket.is_open())
            welcome(acceptor);
    });
}

LocalAPIServer::LocalAPIServer() : listener(std::make_unique<Listener>(*this)) {}

LocalAPIServer::~LocalAPIServer() = default;

void LocalAPIServer::start(std::uint16_t port) {
    listener->start(port);
}

std::optional<std::uint16_t> LocalAPIServer::boundPort() const {
    return listener->boundPort();
}

std::optional<std::string> LocalAPIServer::failure() const {
    return listener->failure();
}

} // namespace quorl
