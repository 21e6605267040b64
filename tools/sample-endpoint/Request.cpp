#include "sample-endpoint/Request.h"

#include <strings.h>

#include <algorithm>

namespace quorl::sample {

bool sameHeaderName(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

const std::string* Request::header(std::string_view name) const {
    const auto found = std::ranges::find_if(
        headers, [&](const Header& header) { return sameHeaderName(header.name, name); });
    return found == headers.end() ? nullptr : &found->value;
}

} // namespace quorl::sample
