#include "sample-endpoint/Reply.h"

#include <algorithm>
#include <utility>

namespace quorl::sample {

namespace {

// The phrase means nothing to a client (RFC 9112, section 4); it is there for who reads the traffic.
std::string_view reasonPhrase(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    case 503:
        return "Service Unavailable";
    default:
        return "Other";
    }
}

} // namespace

std::string makeHead(int status, const std::vector<Header>& headers) {
    std::string head = "HTTP/1.1 " + std::to_string(status) + ' ';
    head += reasonPhrase(status);
    head += "\r\n";
    for (const auto& [name, value] : headers) {
        head += name;
        head += ": ";
        head += value;
        head += "\r\n";
    }
    head += "\r\n";
    return head;
}

Reply makeReply(int status, std::string body, std::vector<Header> headers) {
    const auto namesType = [](const Header& header) { return sameHeaderName(header.name, "Content-Type"); };
    if (std::ranges::none_of(headers, namesType))
        headers.push_back({"Content-Type", "application/json"});
    headers.push_back({"Content-Length", std::to_string(body.size())});
    return {.pieces = {{makeHead(status, headers)}, {std::move(body)}}};
}

Reply delayed(Reply reply, std::chrono::milliseconds delay) {
    reply.delay = delay;
    return reply;
}

} // namespace quorl::sample
