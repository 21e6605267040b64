#include "sample-endpoint/ReplyReader.h"

#include <algorithm>

namespace quorl::sample {

void ReplyReader::read(std::string& buffer, std::size_t limit) {
    buffer.clear();
    while (buffer.size() < limit && piece < content.pieces.size()) {
        const auto& [bytes, times] = content.pieces[piece];
        if (round == times || bytes.empty()) {
            ++piece;
            round = 0;
            continue;
        }
        const auto count = std::min(limit - buffer.size(), bytes.size() - offset);
        buffer.append(bytes, offset, count);
        offset += count;
        if (offset < bytes.size())
            continue;
        offset = 0;
        if (times != Piece::forever)
            ++round;
    }
}

} // namespace quorl::sample
