#pragma once

#include "base/JsonForward.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace quorl {

// What a client of the local API asks. `path` ends before the first "?"; the names of `headers` are in lower
// case, names and values without blanks at their ends; of a header that stands twice the last one counts.
struct HTTPRequest {
    std::string method; // as sent
    std::string path;
    std::map<std::string, std::string> headers;
    std::string body;

    bool operator==(const HTTPRequest&) const = default;
};

// What it is told. `body` is JSON or empty.
struct HTTPResponse {
    std::int64_t status = 200;
    std::string body;

    bool operator==(const HTTPResponse&) const = default;
};

/// A reply with that JSON: keys sorted, no white space, "/" escaped. A value that cannot be written becomes
/// "{}", and the status stays. Thread: any.
[[nodiscard]] HTTPResponse makeReply(std::int64_t status, const Json::Value& value);

/// A reply with the one key "error". Thread: any.
[[nodiscard]] HTTPResponse makeErrorReply(std::int64_t status, std::string_view message);

} // namespace quorl
