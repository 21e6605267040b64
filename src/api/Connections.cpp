#include "api/Connections.h"

#include "api/RequestParser.h"
#include "base/ThreadSafety.h"

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace quorl {

namespace {

using asio::ip::tcp;

constexpr auto partingTime = std::chrono::seconds(5);
constexpr auto overdueCheck = std::chrono::seconds(1);

std::string_view reasonOf(std::int64_t status) {
    switch (status) {
    case 200:
        return "OK";
    case 202:
        return "Accepted";
    case 204:
        return "No Content";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 404:
        return "Not Found";
    case 409:
        return "Conflict";
    case 413:
        return "Payload Too Large";
    default:
        return "Error";
    }
}

std::string written(const HTTPResponse& response) {
    constexpr std::size_t headSize = 320; // spares growing
    std::string text;
    text.reserve(headSize + response.body.size());
    text.append("HTTP/1.1 ").append(std::to_string(response.status)).append(" ");
    text.append(reasonOf(response.status)).append("\r\n");
    text.append("Content-Type: application/json; charset=utf-8\r\n"
                "Content-Length: ");
    text.append(std::to_string(response.body.size())).append("\r\n");
    text.append("Connection: close\r\n"
                "Access-Control-Allow-Origin: *\r\n"
                "Access-Control-Allow-Headers: Authorization, Content-Type\r\n"
                "Access-Control-Allow-Methods: GET, POST, DELETE, OPTIONS\r\n"
                "\r\n");
    return text.append(response.body);
}

// Assigning an empty text would keep the memory.
void release(std::string& text) {
    std::string().swap(text);
}

} // namespace

// Takes replies back to the queue from whatever thread they are given on. It outlives the queue in the
// replies that are still out. Thread: any.
class Connections::ReplyBox {
public:
    ReplyBox(asio::io_context& to, Connections& receiver) : queue(&to), connections(receiver) {}

    void post(std::uint64_t number, HTTPResponse response) EXCLUDES(lock) {
        const MutexLock held(lock);
        if (queue == nullptr)
            return;
        asio::post(*queue,
                   [this, number, response = std::move(response)] { connections.reply(number, response); });
    }

    /// From here on replies go nowhere.
    void close() EXCLUDES(lock) {
        const MutexLock held(lock);
        queue = nullptr;
    }

private:
    Mutex lock;
    asio::io_context* queue GUARDED_BY(lock);
    Connections& connections; // the queue's
};

// One client. At most one operation is under way, so that it ends, and is destroyed, in the handler of its
// last one; each step therefore starts an operation, or drops the connection, as the last thing it does.
class Connections::Connection {
public:
    Connection(Connections& all, std::uint64_t given, tcp::socket accepted)
        : owner(all), number(given), socket(std::move(accepted)) {}

    /// By the time it is taken in, a client has mostly sent its request: that spares waiting for it.
    void start() {
        attempt([this] { receive(); });
    }

    /// A second reply goes nowhere.
    void reply(const HTTPResponse& response) {
        if (std::exchange(isAnswered, true))
            return;
        attempt([&] {
            output = written(response);
            send();
        });
    }

    /// Whoever waits on it learns of an error.
    void close() {
        std::error_code ignored; // a socket is closed whatever close() says
        socket.close(ignored);
    }

private:
    void drop() { owner.connections.erase(number); } // and with it this object

    // Runs a step and drops the connection where there is no memory for it.
    template <class Step>
    void attempt(Step step) {
        try {
            step();
        } catch (const std::exception&) {
            drop();
        }
    }

    template <class Step>
    void waitUntil(tcp::socket::wait_type state, Step step) {
        socket.async_wait(state, [this, step](const std::error_code& error) {
            if (error)
                return drop();
            attempt([&] { step(*this); });
        });
    }

    void read() {
        waitUntil(tcp::socket::wait_read, [](Connection& self) { self.receive(); });
    }

    void receive() {
        std::error_code error;
        const std::size_t count = socket.read_some(asio::buffer(owner.received), error);
        if (error && error != asio::error::would_block)
            return drop(); // the client has gone, or has sent all without the request being whole
        input.append(owner.received.data(), count);
        if (input.size() > maximumRequestBytes) {
            release(input);
            return reply(makeErrorReply(413, "The request is too large."));
        }
        auto request = reader.read(input);
        if (!request)
            return read();
        release(input);
        owner.handle(std::move(*request), number);
    }

    // Nearly every reply fits into the kernel's buffer at once.
    void send() {
        while (sent < output.size()) {
            std::error_code error;
            sent += socket.write_some(asio::buffer(output) + sent, error);
            if (error == asio::error::would_block)
                return waitUntil(tcp::socket::wait_write, [](Connection& self) { self.send(); });
            if (error)
                return drop();
        }
        release(output);
        part();
    }

    // A client may still be sending: a body that was not asked for, the rest of a request that is too large.
    // Closing a socket with bytes that were not read resets the connection, and a client that is told of the
    // reset while it sends never looks at the reply. So it is first told that nothing more will come, which
    // ends the reply, and what it sends is thrown away until it closes or its time is up.
    void part() {
        std::error_code error;
        socket.shutdown(tcp::socket::shutdown_send, error);
        if (error)
            return drop();
        owner.part(number);
        discardNext();
    }

    void discardNext() {
        waitUntil(tcp::socket::wait_read, [](Connection& self) { self.discard(); });
    }

    void discard() {
        std::error_code error;
        socket.read_some(asio::buffer(owner.received), error);
        if (error && error != asio::error::would_block)
            return drop();
        discardNext();
    }

    Connections& owner;
    const std::uint64_t number;
    tcp::socket socket;
    RequestReader reader;
    std::string input;
    bool isAnswered = false;
    std::string output;
    std::size_t sent = 0; // of the output
};

Connections::Connections(asio::io_context& queue, const LocalAPIServer::Handler& given)
    : handler(given), replyBox(std::make_shared<ReplyBox>(queue, *this)), overdue(queue) {}

Connections::~Connections() {
    replyBox->close();
}

void Connections::add(tcp::socket socket) {
    const std::uint64_t number = ++lastNumber;
    const auto [place, isNew] =
        connections.emplace(number, std::make_unique<Connection>(*this, number, std::move(socket)));
    place->second->start();
}

void Connections::handle(HTTPRequest request, std::uint64_t number) {
    if (!handler)
        return reply(number, makeErrorReply(500, "The API is not ready."));
    handler(std::move(request),
            [box = replyBox, number](HTTPResponse response) { box->post(number, std::move(response)); });
}

void Connections::reply(std::uint64_t number, const HTTPResponse& response) {
    // A handler that failed may have kept the way back to a connection that was dropped for it.
    if (const auto found = connections.find(number); found != connections.end())
        found->second->reply(response);
}

void Connections::part(std::uint64_t number) {
    const bool isWatched = !parting.empty();
    parting.push_back({number, std::chrono::steady_clock::now() + partingTime});
    if (!isWatched)
        endOverdue();
}

// Looks once a second and not at each deadline, since a busy server parts from thousands a second.
void Connections::endOverdue() {
    const auto now = std::chrono::steady_clock::now();
    while (!parting.empty() && parting.front().deadline <= now) {
        const auto found = connections.find(parting.front().number);
        if (found != connections.end())
            found->second->close();
        parting.pop_front();
    }
    if (parting.empty())
        return;
    overdue.expires_after(overdueCheck);
    overdue.async_wait([this](const std::error_code&) { endOverdue(); });
}

} // namespace quorl
