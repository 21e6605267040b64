#pragma once

#include <filesystem>

// Where the library lives. Thread: any. Failures: a folder that cannot be made shows later, when a file in it
// cannot be opened.
namespace quorl::SupportPaths {

inline constexpr const char* folderName = "com.quorltest.app";

/// The library's folder inside the user's folder for programs' data, made with mode 0700, together with its
/// "cli-scratch".
std::filesystem::path directory(const std::filesystem::path& applicationSupport);

/// The working directory of command-line tools, inside the library's folder.
[[nodiscard]] std::filesystem::path scratch(const std::filesystem::path& directory);

} // namespace quorl::SupportPaths
