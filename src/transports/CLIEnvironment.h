#pragma once

#include "transports/ProcessRunner.h"

#include <string>

// The environments of particular command-line tools. Thread: any.
namespace quorl::CLIEnvironment {

/// The child environment without a blank ANTHROPIC_API_KEY or ANTHROPIC_AUTH_TOKEN: Claude Code would take it
/// for a key and pass over its own login.
[[nodiscard]] ProcessRunner::Environment claude(const std::string& executable);

} // namespace quorl::CLIEnvironment
