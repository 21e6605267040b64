#pragma once

#include "app/HTTPMessage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quorl {

// A small HTTP/1.1 server (RFC 9112) that reads one request from a connection, hands it to `handler`, writes
// the reply and closes. It knows nothing of routes or tokens. It listens on all interfaces of the machine,
// IPv4 and IPv6, and works on one thread of its own. Thread: the owner's, before and while it listens.
class LocalAPIServer {
public:
    static constexpr std::uint16_t defaultPort = 47821;

    /// Sends the reply; to be called once, from any thread.
    using Reply = std::function<void(HTTPResponse)>;
    /// Called on the server's thread, which must not be held up. Without one, clients are told that the API
    /// is not ready.
    using Handler = std::function<void(HTTPRequest, Reply)>;
    /// Called on the server's thread when it listens, with nothing, or cannot, with the system's reason.
    using StateObserver = std::function<void(const std::optional<std::string>& failure)>;

    LocalAPIServer();
    ~LocalAPIServer(); // drops every connection

    LocalAPIServer(const LocalAPIServer&) = delete;
    LocalAPIServer& operator=(const LocalAPIServer&) = delete;

    /// Both are set before `start` and not changed afterwards.
    Handler handler;
    StateObserver onState;

    /// Listens on that port in place of the one before. A failure shows in `failure`, at once or, where the
    /// system refuses the port, by way of `onState`. There is no other port and no second try.
    void start(std::uint16_t port);

    /// The port last started on, from the moment it was handed to the system.
    [[nodiscard]] std::optional<std::uint16_t> boundPort() const;
    /// Why it does not listen; nothing once it does.
    [[nodiscard]] std::optional<std::string> failure() const;

private:
    class Listener;
    std::unique_ptr<Listener> listener;
};

} // namespace quorl
