#pragma once

#include "sample-endpoint/ReplyReader.h"
#include "sample-endpoint/RequestParser.h"

#include <asio.hpp>
#include <asio/ssl.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace quorl::sample {

// What decides the reply to a request.
using Judge = std::function<Reply(const Request&)>;

// One client: reads a request, has it judged, sends the reply, reads the next. It lives as long as one of its
// operations is under way, and each of them hands it on to the next. Thread: the endpoint's. Failures: a
// broken connection is dropped.
template <class Stream>
class Connection : public std::enable_shared_from_this<Connection<Stream>> {
public:
    /// `replies` must outlive the connection.
    Connection(Stream accepted, const Judge& replies, std::uint64_t count)
        : stream(std::move(accepted)), timer(stream.get_executor()), judge(replies), number(count) {}

    void start() {
        if constexpr (std::is_same_v<Stream, asio::ip::tcp::socket>)
            read();
        else
            stream.async_handshake(asio::ssl::stream_base::server,
                                   then([](Connection& self) { self.read(); }));
    }

private:
    static constexpr std::size_t smallestRead = 4096;
    static constexpr std::size_t largestRead = 256 * 1024;
    static constexpr std::size_t writeSize = 64 * 1024;

    // A handler that keeps the connection alive until it is called, and lets it die of any error.
    template <class Step>
    auto then(Step step) {
        return [self = this->shared_from_this(), step](const std::error_code& error, auto...) {
            if (!error)
                step(*self);
        };
    }

    auto& socket() { return stream.lowest_layer(); }

    void read() {
        const auto held = input.size();
        input.resize(held + std::clamp(parser.missing(), smallestRead, largestRead));
        stream.async_read_some(
            asio::buffer(input.data() + held, input.size() - held),
            [self = this->shared_from_this(), held](const std::error_code& error, std::size_t count) {
                self->input.resize(held + count);
                if (!error)
                    self->parse();
            });
    }

    void parse() {
        switch (parser.parse(input)) {
        case RequestParser::State::needsMore:
            return read();
        case RequestParser::State::needsContinue:
            output = "HTTP/1.1 100 Continue\r\n\r\n";
            return write([](Connection& self) { self.read(); });
        case RequestParser::State::malformed: {
            auto refusal = makeReply(
                400, R"({"error":{"message":"The request is not HTTP that this endpoint reads."}})");
            refusal.ending = Ending::close;
            return begin(std::move(refusal));
        }
        case RequestParser::State::complete: {
            auto request = parser.take();
            request.arrival = std::chrono::steady_clock::now();
            request.connection = number;
            return begin(judge(request));
        }
        }
    }

    void begin(Reply reply) {
        const auto delay = reply.delay;
        reader.emplace(std::move(reply));
        if (delay.count() == 0)
            return send();
        timer.expires_after(delay);
        timer.async_wait(then([](Connection& self) { self.send(); }));
    }

    void send() {
        const auto& drip = reader->reply().drip;
        reader->read(output, drip ? drip->bytes : writeSize);
        if (output.empty())
            return end();
        if (drip)
            return write([](Connection& self) { self.pause(); });
        // What fits into one buffer is known to be all of it, which spares the usual reply a round.
        if (output.size() < writeSize)
            return write([](Connection& self) { self.end(); });
        write([](Connection& self) { self.send(); });
    }

    void pause() {
        timer.expires_after(reader->reply().drip->pause);
        timer.async_wait(then([](Connection& self) { self.send(); }));
    }

    template <class Step>
    void write(Step step) {
        asio::async_write(stream, asio::buffer(output), then(step));
    }

    void end() {
        std::error_code ignored; // of a socket that the client may have closed already
        switch (reader->reply().ending) {
        case Ending::keepOpen:
            if (!parser.wantsClose())
                return parse(); // the next request may have come with this one
            [[fallthrough]];
        case Ending::close:
            socket().shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
            return;
        case Ending::reset:
            // Closing with this option and a time of zero sends RST instead of FIN.
            socket().set_option(asio::socket_base::linger(true, 0), ignored);
            socket().close(ignored);
            return;
        case Ending::silence:
            return discard();
        }
    }

    // Reads on, so that the client's closing is noticed and the descriptor given back.
    void discard() {
        input.resize(smallestRead);
        stream.async_read_some(asio::buffer(input), then([](Connection& self) { self.discard(); }));
    }

    Stream stream;
    asio::steady_timer timer;
    const Judge& judge;
    const std::uint64_t number;
    RequestParser parser;
    std::optional<ReplyReader> reader;
    std::string input;
    std::string output;
};

} // namespace quorl::sample
