#include "sample-endpoint/Fault.h"

#include <utility>

namespace quorl::sample::Fault {

namespace {

constexpr std::size_t blockSize = 4096;

std::string headFor(std::uint64_t bodySize, int status = 200) {
    return makeHead(status,
                    {{"Content-Type", "application/json"}, {"Content-Length", std::to_string(bodySize)}});
}

void appendRepeated(std::vector<Piece>& pieces, char character, std::uint64_t count) {
    // In blocks, so that sending costs a few copies and not one per character.
    pieces.push_back({std::string(blockSize, character), count / blockSize});
    pieces.push_back({std::string(count % blockSize, character)});
}

Reply cutShort(const std::string& body, std::size_t sent, Ending ending) {
    return {.pieces = {{headFor(body.size())}, {body.substr(0, sent)}}, .ending = ending};
}

} // namespace

Reply neverAnswer() {
    return {.ending = Ending::silence};
}

Reply closeBeforeAnswer() {
    return {.ending = Ending::close};
}

Reply resetBeforeAnswer() {
    return {.ending = Ending::reset};
}

Reply resetMidBody(const std::string& body, std::size_t sent) {
    return cutShort(body, sent, Ending::reset);
}

Reply truncatedBody(const std::string& body, std::size_t sent) {
    return cutShort(body, sent, Ending::close);
}

Reply understatedLength(std::string body, std::size_t claimed) {
    return {.pieces = {{headFor(claimed)}, {std::move(body)}}, .ending = Ending::close};
}

Reply endlessChunks() {
    auto head = makeHead(200, {{"Content-Type", "application/json"}, {"Transfer-Encoding", "chunked"}});
    // 1000 is the block's size in hexadecimal digits.
    static_assert(blockSize == 0x1000);
    auto chunk = "1000\r\n" + std::string(blockSize, 'x') + "\r\n";
    return {.pieces = {{std::move(head)}, {std::move(chunk), Piece::forever}}, .ending = Ending::close};
}

Reply endlessLength() {
    constexpr std::uint64_t moreThanAnyMemory = INT64_MAX;
    return {.pieces = {{headFor(moreThanAnyMemory)}, {std::string(blockSize, 'x'), Piece::forever}},
            .ending = Ending::close};
}

Reply largeBody(std::uint64_t bytes) {
    Reply reply{.pieces = {{headFor(bytes)}}};
    appendRepeated(reply.pieces, 'x', bytes);
    return reply;
}

Reply nestedBody(std::uint64_t levels) {
    Reply reply{.pieces = {{headFor(2 * levels)}}};
    appendRepeated(reply.pieces, '[', levels);
    appendRepeated(reply.pieces, ']', levels);
    return reply;
}

Reply redirect(int status, std::string location) {
    return makeReply(status, "", {{"Location", std::move(location)}});
}

Reply slowDrip(Reply reply, std::size_t bytes, std::chrono::milliseconds pause) {
    reply.drip = {bytes, pause};
    return reply;
}

Reply garbage() {
    return {.pieces = {{std::string("\x16\x03\x01\0 this is no status line\r\n\r\n", 31)}},
            .ending = Ending::close};
}

} // namespace quorl::sample::Fault
