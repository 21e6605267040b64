#pragma once

#include <optional>
#include <string_view>

namespace quorl {

/// The host name of an absolute URL (RFC 3986, section 3), a view into the argument; nothing for a text that
/// is none or that holds an IPv6 address in the name's place. Thread: any.
[[nodiscard]] std::optional<std::string_view> findHostName(std::string_view url);

} // namespace quorl
