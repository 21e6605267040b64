#pragma once

#include "api/LocalAPIServer.h"

#include <asio.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>

namespace quorl {

// The clients of the local API: reads a request from each, has it handled, sends the reply and parts from the
// client. Thread: the queue's, but for construction and destruction, with which the queue stands still.
// Failures: a connection that breaks, or for which there is no memory, is dropped.
class Connections {
public:
    /// Both outlive the connections.
    Connections(asio::io_context& queue, const LocalAPIServer::Handler& handler);
    ~Connections(); // a reply that comes later goes nowhere

    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    void add(asio::ip::tcp::socket socket);

private:
    class Connection;
    class ReplyBox;

    // One whose reply is sent, and that the client may take until then to close.
    struct Parting {
        std::uint64_t number = 0;
        std::chrono::steady_clock::time_point deadline;
    };

    void handle(HTTPRequest request, std::uint64_t number);
    void reply(std::uint64_t number, const HTTPResponse& response);
    void part(std::uint64_t number);
    void endOverdue();

    const LocalAPIServer::Handler& handler;
    const std::shared_ptr<ReplyBox> replyBox; // shared with the replies that are out
    std::array<char, 65'536> received{};      // what the receive under way brings, of whichever connection
    std::unordered_map<std::uint64_t, std::unique_ptr<Connection>> connections; // by number
    std::uint64_t lastNumber = 0;
    std::deque<Parting> parting; // by deadline; may name connections that have ended
    asio::steady_timer overdue;
};

} // namespace quorl
