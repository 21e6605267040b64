#pragma once

#include "transports/Decision.h"

#include <filesystem>

// The Claude Code tool, run once a question with its own tools switched off.
// Thread: any; blocks until the tool has ended. Failures: in `errorMessage`.
namespace quorl::ClaudeCodeTransport {

[[nodiscard]] RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch);

} // namespace quorl::ClaudeCodeTransport
