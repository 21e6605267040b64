#pragma once

#include "sample-endpoint/Request.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What goes back over the wire. A reply is bytes and an ending and nothing more, so that whatever a server
// could do to its client can be said with it. Thread: any. Failures: none.
namespace quorl::sample {

// Some bytes, repeated: an answer of 200 MB costs a few bytes to say and one buffer to send.
struct Piece {
    static constexpr std::uint64_t forever = UINT64_MAX;

    std::string bytes;
    std::uint64_t times = 1;
};

// What becomes of the connection after the last byte.
enum class Ending {
    keepOpen, // the next request is read
    close,
    reset,   // the client sees "connection reset by peer"
    silence, // nothing more, until the client closes
};

// Slowly: so many bytes at a time, with a pause after each.
struct Drip {
    std::size_t bytes = 1;
    std::chrono::milliseconds pause{1};
};

struct Reply {
    std::vector<Piece> pieces = {}; // the status line, the headers and the body
    Ending ending = Ending::keepOpen;
    std::chrono::milliseconds delay{0}; // before the first byte
    std::optional<Drip> drip = std::nullopt;
};

/// A well-formed reply with its length; "Content-Type: application/json" unless `headers` has another.
[[nodiscard]] Reply makeReply(int status, std::string body, std::vector<Header> headers = {});

[[nodiscard]] Reply delayed(Reply reply, std::chrono::milliseconds delay);

/// The head of a reply, up to and with its empty line, exactly with these headers.
[[nodiscard]] std::string makeHead(int status, const std::vector<Header>& headers);

} // namespace quorl::sample
