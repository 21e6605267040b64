#pragma once

#include "sample-endpoint/Reply.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace quorl::sample {

// Reads the bytes of a reply from front to end, never more of them at once than asked for. Thread: one.
// Failures: none.
class ReplyReader {
public:
    explicit ReplyReader(Reply reply) : content(std::move(reply)) {}

    [[nodiscard]] const Reply& reply() const { return content; }

    /// Replaces `buffer` with the next bytes, at most `limit`; empty at the end.
    void read(std::string& buffer, std::size_t limit);

private:
    Reply content;
    std::size_t piece = 0;
    std::uint64_t round = 0; // how often the piece has been read whole
    std::size_t offset = 0;  // in the piece's bytes
};

} // namespace quorl::sample
