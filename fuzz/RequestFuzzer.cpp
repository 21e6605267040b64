#include "Require.h"
#include "api/RequestParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

using quorl::fuzzing::require;

namespace {

// Whether reading it ends the process, as it does on a negative length once the head is whole.
bool isDeadly(std::string_view bytes) {
    const auto head = quorl::parseRequestHead(bytes);
    return head && head->contentLength < 0;
}

void checkRequest(const quorl::HTTPRequest& request, std::string_view bytes) {
    require(!request.method.empty(), "a request has a method");
    require(request.path.find('?') == std::string_view::npos, "a path has no query");
    require(bytes.find(request.body) != std::string_view::npos, "a body is a piece of what came");
}

} // namespace

// The first byte tells where the rest is cut: its bits choose how many bytes arrive at a time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    std::uint32_t random = *data;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (isDeadly(bytes))
        return 0;

    quorl::RequestReader reader;
    std::size_t arrived = 0;
    while (true) {
        const auto present = bytes.substr(0, arrived);
        const auto request = reader.read(present);
        require(request == quorl::parseRequest(present), "pieces are read as the whole is");
        if (request) {
            checkRequest(*request, present);
            return 0;
        }
        if (arrived == bytes.size())
            return 0;
        random = random * 1'664'525 + 1'013'904'223;
        arrived = std::min(bytes.size(), arrived + 1 + (random >> 24) % (1U << (*data % 8)));
    }
}
