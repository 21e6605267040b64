#pragma once

#include "app/HTTPMessage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorl {

/// What a client may send in all, head included; one byte more is refused.
inline constexpr std::size_t maximumRequestBytes = 8'000'000;

/// The request at the start of `bytes`, framed by "content-length" alone (RFC 9112, without transfer
/// codings); nothing as long as it is not whole, which a request line of one word never becomes. A negative
/// length ends the process. Thread: any.
[[nodiscard]] std::optional<HTTPRequest> parseRequest(std::string_view bytes);

struct RequestHead {
    HTTPRequest request; // without its body
    std::size_t bodyStart = 0;
    std::int64_t contentLength = 0; // as announced
};

/// The head at the start of `bytes`; nothing as long as it is not whole or if its first line is no request
/// line. Thread: any.
[[nodiscard]] std::optional<RequestHead> parseRequestHead(std::string_view bytes);

// Reads a request that arrives in pieces. It answers as `parseRequest` does and looks at no byte twice, so
// that a client that sends byte by byte costs no more than one that sends all at once. Thread: any, one at a
// time.
class RequestReader {
public:
    /// `bytes` is all that has arrived, the bytes of the calls before included. Not to be called again once
    /// it has given the request.
    [[nodiscard]] std::optional<HTTPRequest> read(std::string_view bytes);

private:
    std::size_t searched = 0;       // no head ends within so many bytes
    std::optional<std::size_t> end; // of the request, once its head is known
    RequestHead head;
};

} // namespace quorl
