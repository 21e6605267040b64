#pragma once

#include <filesystem>

namespace quorl {

// Where a user's programs keep their files (freedesktop.org, XDG base directories 0.8), each without our own
// folder in it. Absolute paths; the folders need not exist.
struct XDGDirectories {
    std::filesystem::path config;
    std::filesystem::path data;
    std::filesystem::path state;

    bool operator==(const XDGDirectories&) const = default;
};

/// By the environment, else below the home folder. A variable that is empty or holds a relative path counts
/// as unset.
[[nodiscard]] XDGDirectories xdgDirectories();

/// The folder of ours in each of them.
inline constexpr const char* applicationFolder = "com.quorltest.app";

/// The user's settings; QSettings, INI.
[[nodiscard]] std::filesystem::path defaultsFile(const XDGDirectories& directories);

/// Where the window stood when it was last closed; QSettings, INI.
[[nodiscard]] std::filesystem::path windowStateFile(const XDGDirectories& directories);

/// The user's folder for programs' data, without ours in it.
[[nodiscard]] std::filesystem::path applicationSupportDirectory(const XDGDirectories& directories);

/// Makes `folder` and what is missing above it, all with mode 0700; what is there already stays as it is.
/// Failures are unseen: they show when a file in the folder cannot be made.
void makePrivateFolder(const std::filesystem::path& folder);

} // namespace quorl
