#include "sample-endpoint/RequestParser.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace quorl::sample {

namespace {

constexpr std::size_t maximumHead = 64 * 1024;
constexpr std::size_t maximumBody = 256 * 1024 * 1024;
constexpr std::string_view endOfHead = "\r\n\r\n";

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Cuts the part before `separator` off the front of `text`; the whole of it where there is none.
std::string_view cut(std::string_view& text, std::string_view separator) {
    const auto end = std::min(text.find(separator), text.size());
    const auto part = text.substr(0, end);
    text.remove_prefix(std::min(end + separator.size(), text.size()));
    return part;
}

} // namespace

RequestParser::State RequestParser::parse(std::string& bytes) {
    if (headSize == 0) {
        const auto end = bytes.find(endOfHead, searched);
        if (end == std::string::npos) {
            searched = bytes.size() - std::min(bytes.size(), endOfHead.size() - 1);
            return bytes.size() > maximumHead ? State::malformed : State::needsMore;
        }
        if (!readHead(std::string_view(bytes).substr(0, end)))
            return State::malformed;
        headSize = end + endOfHead.size();
    }
    if (bytes.size() - headSize < bodySize) {
        missingBytes = bodySize - (bytes.size() - headSize);
        return std::exchange(expectsContinue, false) ? State::needsContinue : State::needsMore;
    }
    request.body.assign(bytes, headSize, bodySize);
    bytes.erase(0, headSize + bodySize);
    searched = headSize = missingBytes = 0;
    return State::complete;
}

bool RequestParser::readHead(std::string_view head) {
    request = {};
    bodySize = 0;
    expectsContinue = false;

    auto line = cut(head, "\r\n");
    request.method = cut(line, " ");
    request.path = cut(line, " ");
    if (request.method.empty() || request.path.empty() || !line.starts_with("HTTP/1."))
        return false;
    closes = line == "HTTP/1.0";
    while (!head.empty()) {
        if (!readHeader(cut(head, "\r\n")))
            return false;
    }
    return true;
}

bool RequestParser::readHeader(std::string_view line) {
    const auto colon = line.find(':');
    if (colon == 0 || colon == std::string_view::npos)
        return false;
    const auto name = line.substr(0, colon);
    const auto value = withoutBlanks(line.substr(colon + 1));
    request.headers.push_back({std::string(name), std::string(value)});

    if (sameHeaderName(name, "Transfer-Encoding"))
        return false;
    if (sameHeaderName(name, "Content-Length")) {
        const auto [end, error] = std::from_chars(value.begin(), value.end(), bodySize);
        return error == std::errc() && end == value.end() && bodySize <= maximumBody;
    }
    if (sameHeaderName(name, "Connection"))
        closes = sameHeaderName(value, "close");
    if (sameHeaderName(name, "Expect"))
        expectsContinue = sameHeaderName(value, "100-continue");
    return true;
}

} // namespace quorl::sample
