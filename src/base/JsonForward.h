#pragma once

#include <nlohmann/json_fwd.hpp>

namespace quorl::Json {

/// An object's keys are kept in ascending order of their bytes; of a key that stands twice the last value
/// counts.
using Value = nlohmann::json;

} // namespace quorl::Json
