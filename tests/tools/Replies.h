#pragma once

#include "base/Json.h"
#include "sample-endpoint/Format.h"
#include "tools/Client.h"

#include <string>
#include <string_view>
#include <utility>
#include <variant>

// Replies as a client would read them.
namespace quorl::test {

inline std::string bytesOf(const sample::Reply& reply) {
    std::string bytes;
    for (const auto& piece : reply.pieces)
        bytes += piece.bytes;
    return bytes;
}

inline Json::Value jsonOf(const sample::Reply& reply) {
    return Json::parse(bodyOf(bytesOf(reply))).value();
}

/// The status line and the body with which a request is refused; empty where it is read.
inline std::pair<std::string, std::string> refusalOf(const sample::Format& format,
                                                     const sample::Request& request) {
    const auto read = format.read(request);
    const auto* const reply = std::get_if<sample::Reply>(&read);
    if (!reply)
        return {};
    return {statusLineOf(bytesOf(*reply)), bodyOf(bytesOf(*reply))};
}

} // namespace quorl::test
