#pragma once

#include "app/HTTPMessage.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace quorl {

/// What a client may send in all, head included; one byte more is refused.
inline constexpr std::size_t maximumRequestBytes = 8'000'000;

/// The request at the start of `bytes`, framed by "content-length" alone (RFC 9112, without transfer
/// codings); nothing as long as it is not whole, which a request line of one word never becomes. A negative
/// length ends the process. Thread: any.
[[nodiscard]] std::optional<HTTPRequest> parseRequest(std::string_view bytes);

} // namespace quorl
