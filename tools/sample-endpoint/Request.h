#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorl::sample {

struct Header {
    std::string name; // as it stands on the wire; compared without regard to case
    std::string value;

    bool operator==(const Header&) const = default;
};

[[nodiscard]] bool sameHeaderName(std::string_view left, std::string_view right);

// One request as it came in. Thread: any.
struct Request {
    std::string method = {};
    std::string path = {}; // the request target, query included
    std::vector<Header> headers = {};
    std::string body = {};
    std::chrono::steady_clock::time_point arrival = {}; // when its last byte had come
    std::uint64_t connection = 0; // counted from 1: the same number is the same connection

    /// The first header of that name; null where there is none.
    [[nodiscard]] const std::string* header(std::string_view name) const;
};

} // namespace quorl::sample
