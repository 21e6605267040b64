#pragma once

#include "transports/Decision.h"

#include <filesystem>

// The Codex tool, run once a question, read-only.
// Thread: any; blocks until the tool has ended. Failures: in `errorMessage`.
namespace quorl::CodexTransport {

[[nodiscard]] RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch);

} // namespace quorl::CodexTransport
