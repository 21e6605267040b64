#include "api/RequestParser.h"

#include "base/Text.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

namespace quorl {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headEnd = "\r\n\r\n";
constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

// With U+FFFD in place of what is not UTF-8, so that whatever a client sends can be put into a reply.
std::string decoded(std::string_view bytes) {
    if (Text::isUTF8(bytes))
        return std::string(bytes);
    std::string text;
    icu::UnicodeString::fromUTF8(icu::StringPiece(bytes.data(), static_cast<std::int32_t>(bytes.size())))
        .toUTF8String(text);
    return text;
}

// Cuts `text` behind the first `separator` and gives what stood before it.
std::string_view takeUntil(std::string_view separator, std::string_view& text) {
    const std::size_t length = text.find(separator);
    const std::string_view taken = text.substr(0, length);
    text.remove_prefix(length == std::string_view::npos ? text.size() : length + separator.size());
    return taken;
}

// Doubled blanks count as one.
std::string_view takeWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return takeUntil(" ", line);
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos)
        return {};
    return text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

void readHeader(std::string_view line, std::map<std::string, std::string>& headers) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return;
    headers.insert_or_assign(Text::lowercased(trimmed(line.substr(0, colon))),
                             trimmed(line.substr(colon + 1)));
}

// What is no length, or one that 64 signed bits cannot hold, announces no body.
std::int64_t lengthOf(std::string_view value) {
    if (value.starts_with('+') && !value.starts_with("+-"))
        value.remove_prefix(1); // which from_chars does not read
    std::int64_t length = 0;
    const auto [stop, error] = std::from_chars(value.data(), value.data() + value.size(), length);
    return error == std::errc() && stop == value.data() + value.size() ? length : 0;
}

// A body that ends before it starts has no meaning, and any that we gave it would be a guess at where one
// message stops and the next begins, which is how one client's bytes get taken for another's. Such a length
// is a broken precondition like any other in this program: it ends here, in the open, in every kind of build.
void requireNoNegativeLength(std::int64_t contentLength) {
    if (contentLength >= 0)
        return;
    std::fputs("quorl: a request announced a body of negative length\n", stderr);
    std::abort();
}

// A sum that no buffer can reach is never waited for in vain: the limit on a request comes first.
std::size_t endOf(const RequestHead& head) {
    requireNoNegativeLength(head.contentLength);
    const auto length = static_cast<std::uint64_t>(head.contentLength);
    return length > never - head.bodyStart ? never : head.bodyStart + length;
}

// The head that takes up the first `length` bytes.
std::optional<RequestHead> readHead(std::string_view bytes, std::size_t length) {
    const std::string text = decoded(bytes.substr(0, length));
    std::string_view lines = text;
    std::string_view requestLine = takeUntil(lineEnd, lines);
    const std::string_view method = takeWord(requestLine);
    const std::string_view target = takeWord(requestLine);
    if (target.empty())
        return std::nullopt;

    RequestHead head;
    head.request.method = method;
    head.request.path = target.substr(0, target.find('?'));
    while (!lines.empty())
        readHeader(takeUntil(lineEnd, lines), head.request.headers);
    head.bodyStart = length + headEnd.size();
    if (const auto found = head.request.headers.find("content-length"); found != head.request.headers.end())
        head.contentLength = lengthOf(found->second);
    return head;
}

} // namespace

std::optional<RequestHead> parseRequestHead(std::string_view bytes) {
    const std::size_t length = bytes.find(headEnd);
    return length == std::string_view::npos ? std::nullopt : readHead(bytes, length);
}

std::optional<HTTPRequest> parseRequest(std::string_view bytes) {
    return RequestReader().read(bytes);
}

std::optional<HTTPRequest> RequestReader::read(std::string_view bytes) {
    if (!end) {
        const std::size_t length = bytes.find(headEnd, searched);
        if (length == std::string_view::npos) {
            // The last three may be the start of what ends the head.
            searched = bytes.size() - std::min(bytes.size(), headEnd.size() - 1);
            return std::nullopt;
        }
        auto parsed = readHead(bytes, length);
        end = parsed ? endOf(*parsed) : never;
        head = std::move(parsed).value_or(RequestHead());
    }
    if (bytes.size() < *end)
        return std::nullopt;
    head.request.body = bytes.substr(head.bodyStart, *end - head.bodyStart);
    return std::move(head.request);
}

} // namespace quorl
