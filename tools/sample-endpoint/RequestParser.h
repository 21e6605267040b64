#pragma once

#include "sample-endpoint/Request.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace quorl::sample {

// Cuts the requests of one connection out of its bytes (RFC 9112), as they come. Bodies have a
// Content-Length. Thread: one. Failures: `malformed`, after which nothing more can be read from the
// connection.
class RequestParser {
public:
    enum class State {
        needsMore,
        needsContinue, // as `needsMore`, and the client waits for "100 Continue"; said once per request
        complete,
        malformed,
    };

    /// Looks at all the bytes held so far. Those of a complete request are taken off their front.
    [[nodiscard]] State parse(std::string& bytes);

    /// The request of the last `complete`.
    [[nodiscard]] Request take() { return std::move(request); }

    /// Whether its client wants the connection closed after the answer.
    [[nodiscard]] bool wantsClose() const { return closes; }

    /// How many bytes of a body are known to be missing.
    [[nodiscard]] std::size_t missing() const { return missingBytes; }

private:
    [[nodiscard]] bool readHead(std::string_view head);
    [[nodiscard]] bool readHeader(std::string_view line);

    Request request;
    std::size_t searched = 0; // where the search for the end of the head goes on
    std::size_t headSize = 0; // 0 until the head is complete
    std::size_t bodySize = 0;
    std::size_t missingBytes = 0;
    bool closes = false;
    bool expectsContinue = false;
};

} // namespace quorl::sample
