#pragma once

#include "transports/LoginBuffer.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

// Claude Code's own login on this machine. Thread: any, each call blocking it; never the main thread.
namespace quorl::ClaudeLogin {

struct Limits {
    std::chrono::milliseconds login{300'000};
    std::chrono::milliseconds termination{3'000}; // after that a login that will not end is left to itself
};

/// Runs the tool's login, opens the sign-in URL that it prints, and answers one sentence on how it ended.
[[nodiscard]] std::string begin(const std::string& executable, const URLOpener& openURL,
                                const Limits& limits = {});

/// Whether the tool says that it is logged in; nothing if it doesn't say. `scratch` holds its output
/// meanwhile.
[[nodiscard]] std::optional<bool> isLoggedIn(const std::string& executable,
                                             const std::filesystem::path& scratch);

/// What the tool's words on its status mean.
[[nodiscard]] std::optional<bool> loggedIn(std::string statusOutput);

} // namespace quorl::ClaudeLogin
