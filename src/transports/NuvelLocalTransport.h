#pragma once

#include "base/Attempt.h"
#include "transports/Decision.h"
#include "transports/ProcessRunner.h"

#include <filesystem>
#include <string>
#include <string_view>

// The local decision tool nuvel-rs, run once a request on two files in the scratch folder.
// Thread: any; blocks until the tool has ended. Failures: in `errorMessage`.
namespace quorl::NuvelLocalTransport {

[[nodiscard]] RawDecision complete(const DecisionRequest& request, const std::filesystem::path& scratch);

/// The content of the state file: a JSON object or array as the user has written it, any other text as a JSON
/// string. Trimmed. Fails for text that is not UTF-8.
[[nodiscard]] Attempt<std::string> stateData(std::string_view text);

/// What the end of a run comes to, once it may last three minutes.
[[nodiscard]] RawDecision decisionOf(const ProcessRunner::Result& result);

} // namespace quorl::NuvelLocalTransport
