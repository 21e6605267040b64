#pragma once

#include "base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

// How latency, cost, counts and dates are shown. Always with a full stop as decimal mark, whatever the
// locale. Thread: any. Failures: none.
namespace quorl::Format {

/// "999 ms", from a second up "1.0 s".
[[nodiscard]] std::string latency(std::int64_t milliseconds);

/// US dollars; "—" where not known, "$0" for exactly nothing, more decimals the smaller it is.
[[nodiscard]] std::string cost(std::optional<double> dollars);

/// "999", "1.2k", "12k", "1.5M".
[[nodiscard]] std::string compact(std::int64_t count);

/// "1.2k in · 35 out", each present count with "~" in front if `estimated`, "—" where missing.
[[nodiscard]] std::string tokens(std::optional<std::int64_t> input, std::optional<std::int64_t> output,
                                 bool estimated);

/// "Just now" within a minute of `now` on either side, else the user's locale's abbreviated relative date ("3
/// hr. ago").
[[nodiscard]] std::string when(Date date, Date now);

} // namespace quorl::Format
