#pragma once

#include <chrono>

namespace quorl {

// A point in time: double-precision seconds since 1970-01-01 00:00:00 UTC, fraction kept.
using Date = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

inline Date dateFromSeconds(double secondsSince1970) {
    return Date(std::chrono::duration<double>(secondsSince1970));
}

inline double secondsSince1970(Date date) {
    return date.time_since_epoch().count();
}

/// Earlier than anything that ever happened here: 0001-01-01.
inline constexpr Date distantPast{std::chrono::duration<double>(-62135769600.0)};

} // namespace quorl
