#pragma once

#include <filesystem>

namespace quorl {

/// The user's home: $HOME, or the password database's where that is unset or empty. Thread: any.
[[nodiscard]] std::filesystem::path homeDirectory();

} // namespace quorl
